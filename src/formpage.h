// The page of the DM's Display that a form takes while it stands in the initiative list's place.
#pragma once

#include <QFrame>

class QLabel;
class ResizableScrollArea;

class FormPage : public QFrame {
    Q_OBJECT

public:
    explicit FormPage(QWidget *parent = nullptr);

    void setTitle(const QString &title);
    // The form is as wide as the page and, with `fixed`, as high. It stays the caller's; null takes
    // it out again.
    void setForm(QWidget *form, bool fixed);
    // How wide the page must be, in pixels, to show the form whole.
    int neededWidth(const QWidget &form) const;

private:
    QLabel *m_title;
    ResizableScrollArea *m_area;
};
