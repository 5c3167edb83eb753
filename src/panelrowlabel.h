// A label in a row of a creature panel: its height follows from the width that it is given.
#pragma once

#include <QHash>
#include <QLabel>

// Laying rich text out is most of what a panel costs, and the toolkit would do it a dozen times for
// each label. This one asks for no room of its own and remembers its heights.
class PanelRowLabel : public QLabel {
    Q_OBJECT

public:
    explicit PanelRowLabel(const QString &html, QWidget *parent = nullptr);

    // What the text takes without a break.
    int oneLineWidth() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    mutable QString m_measured; // the text of the heights
    mutable QHash<int, int> m_heights; // by width
};
