// The box in the head of a creature panel: a few lines that must fit into a fixed height and
// whatever width the dock leaves.
#pragma once

#include <QFrame>
#include <QList>

class QLabel;

// A line that is too long wraps while there is height left, and is cut with an ellipsis where there
// is none.
class PanelHead : public QFrame {
    Q_OBJECT

public:
    explicit PanelHead(int height, QWidget *parent = nullptr);

    // From the top. The frame becomes the label's owner.
    void addLine(QLabel *line);
    // HTML. Takes effect with fitLines().
    void setLine(const QLabel *line, const QString &html);
    // Where not all lines can wrap, the last ones may.
    void fitLines();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Line {
        QLabel *label;
        QString html;
    };
    QList<Line> m_lines;
};
