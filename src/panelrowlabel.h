// A label in a row of a creature panel: its height follows from the width that it is given.
#pragma once

#include <QHash>
#include <QLabel>

// Laying out rich text takes most of a panel's time, and the toolkit would do it a dozen times for
// each label. This one asks for no width and remembers its heights.
class PanelRowLabel : public QLabel {
    Q_OBJECT

public:
    explicit PanelRowLabel(const QString &html, QWidget *parent = nullptr);

    // Width of the text in pixels if it doesn't wrap.
    int oneLineWidth() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    mutable QString m_measured; // the text that m_heights belong to
    mutable QHash<int, int> m_heights; // by width
};
