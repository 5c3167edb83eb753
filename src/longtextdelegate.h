// Draws one line of plain text in the cells of a view, with an ellipsis where it is too long.
#pragma once

#include <QCache>
#include <QStaticText>
#include <QStyledItemDelegate>

// The toolkit lays a long line out several times for each frame; this keeps it laid out for as long
// as text, width and font stay.
class LongTextDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit LongTextDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    QStaticText lineFor(const QString &text, const QFont &font, int width) const;

    mutable QCache<QString, QStaticText> m_lines;
};
