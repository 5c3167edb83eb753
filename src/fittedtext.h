// Rich text that ends in an ellipsis where its place is too small.
#pragma once

#include <QLabel>
#include <QTextDocument>

#include <memory>

// A size of the Player's Display in pixels of the screen, at least one; the zoom in per cent.
int zoomed(qreal size, int percent);

// Height of a line of rich text, bold or not. The toolkit rounds each line up.
int lineHeight(const QFont &font);

// Lays the document out in the width of `room` and cuts what doesn't fit, with an ellipsis in its
// place. Whether it wraps is the document's own option.
void fitText(QTextDocument &document, const QSizeF &room);

// A label of rich text that is never cut without an ellipsis. Its place decides how much is shown,
// never the text.
class FittedLabel : public QLabel {
    Q_OBJECT

public:
    explicit FittedLabel(bool wraps, QWidget *parent = nullptr);
    ~FittedLabel() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int) const override { return -1; }
    // Width of the text on one line in that font.
    qreal widthIn(const QFont &font) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QTextDocument &document();

    bool m_wraps;
    std::unique_ptr<QTextDocument> m_document;
    QString m_key; // what it was laid out for
};

// A creature's picture in a square as large as there is room for.
class PortraitLabel : public QLabel {
    Q_OBJECT

public:
    explicit PortraitLabel(QWidget *parent = nullptr);

    // The blank image stands for one that is null.
    void setPortrait(const QPixmap &portrait);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_portrait;
    QPixmap m_scaled;
};
