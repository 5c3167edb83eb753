// A label that shows another text while the mouse is over it, and can be clicked.
#pragma once

#include <QLabel>

class DynLabel : public QLabel {
    Q_OBJECT

public:
    // Rich texts. `index` is what clicked() tells.
    DynLabel(const QString &normalText, const QString &hoverText, int index,
             QWidget *parent = nullptr);

    // Exchanges the two texts.
    void swap();

Q_SIGNALS:
    void clicked(int index);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QString m_normalText;
    QString m_hoverText;
    int m_index;
};
