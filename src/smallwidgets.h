// Two small widgets of the dialogs.
#pragma once

#include <QLabel>
#include <QPointer>
#include <QScrollArea>

class QAbstractButton;

// The label of a check box or radio button that stands apart from its text, in which a "&" marks a
// key.
class ClickableLabel : public QLabel {
    Q_OBJECT

public:
    explicit ClickableLabel(const QString &text, QAbstractButton *button,
                            QWidget *parent = nullptr);

Q_SIGNALS:
    // The button's new state, after a press on the label toggled it.
    void clicked(bool checked);

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    QPointer<QAbstractButton> m_button;
};

// Its widget follows the viewport: in width only, or in both directions when `fixed`.
class ResizableScrollArea : public QScrollArea {
    Q_OBJECT

public:
    explicit ResizableScrollArea(QWidget *parent = nullptr);

    void setFixed(bool fixed);
    // Brings the widget to the size that it should have now.
    void fitWidget();

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool m_fixed = false;
};
