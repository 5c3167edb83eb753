// The players' health cell: rich text on a bar.
#pragma once

#include <QCache>
#include <QStyledItemDelegate>

#include "progressbar.h"

class QTextDocument;

// Takes texts of the form "size&percentage&text&colour": the type in pixels at a zoom of 100 per
// cent, the bar from -100 to 100, rich text, and "gray" or "black". The text itself may hold a "&".
class PlayersHealthDelegate : public QStyledItemDelegate, public ProgressBarPainter {
    Q_OBJECT

public:
    explicit PlayersHealthDelegate(QObject *parent = nullptr);
    ~PlayersHealthDelegate() override;

    void setZoom(int percent) { m_zoom = percent; }
    // Pixels of the screen that a cell of that text, or of any, needs in that font.
    int widthFor(const QString &text, const QFont &font) const;
    int heightFor(const QFont &font) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    // Laid out in one line, cut with an ellipsis behind `width`.
    QTextDocument *documentFor(const QString &html, const QFont &font, int width) const;

    int m_zoom = 100;
    mutable QCache<QString, QTextDocument> m_documents;
    mutable QCache<QString, int> m_widths;
};
