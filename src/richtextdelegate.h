// Draws rich text in the cells of a view.
#pragma once

#include <QCache>
#include <QItemDelegate>

class QTextDocument;

// The named colours of a text are mapped while painting so that they stay readable on a dark
// palette; a text is laid out once and kept for as long as text, size and font stay.
class RichTextDelegate : public QItemDelegate {
    Q_OBJECT

public:
    // `scaleFont`: half as high as the cell; smaller where a line that can't wrap would be cut.
    RichTextDelegate(bool scaleFont, bool noWrap, bool centre, QObject *parent = nullptr);
    ~RichTextDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    QTextDocument *documentFor(const QString &html, const QFont &font, const QSize &cell) const;

    bool m_scaleFont;
    bool m_noWrap;
    bool m_centre;
    mutable QCache<QString, QTextDocument> m_documents;
};
