#include "encounterview.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include "encounters.h"
#include "readablecolours.h"
#include "richtextdelegate.h"
#include "text.h"

namespace {

constexpr int RowMargin = 4; // above and below a text, as in a rich one

// The mark of a monster that doesn't fit the party stands at the right end of its row: a triangle
// that points up or down.
class EncounterDelegate : public RichTextDelegate {
public:
    explicit EncounterDelegate(QObject *parent) : RichTextDelegate(false, true, false, parent) { }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const bool isRich = index.data(EncounterListModel::IsRichTextRole).toBool();
        if (isRich && option.state.testFlag(QStyle::State_Selected))
            paintSelected(painter, option, index);
        else if (isRich)
            RichTextDelegate::paint(painter, option, index);
        else
            QItemDelegate::paint(painter, option, index);
        const auto fit = MonsterFit(index.data(EncounterListModel::FitRole).toInt());
        if (fit != MonsterFit::Fits)
            drawMark(painter, option, fit);
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QSize text = QItemDelegate::sizeHint(option, index);
        return {text.width(), qMax(text.height(), option.fontMetrics.height() + 2 * RowMargin)};
    }

private:
    // Draws the text in the palette's colour for a selection, on which its own ones can't be read.
    void paintSelected(QPainter *painter, const QStyleOptionViewItem &option,
                       const QModelIndex &index) const
    {
        const QStyleOptionViewItem cell = setOptions(index, option);
        drawBackground(painter, cell, index);
        drawDisplay(painter, cell, cell.rect, plainText(index.data().toString()));
        drawFocus(painter, cell, cell.rect);
    }

    static void drawMark(QPainter *painter, const QStyleOptionViewItem &option, MonsterFit fit)
    {
        const int side = option.fontMetrics.height() / 2;
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        QRect place(0, 0, side, side);
        place.moveCenter(option.rect.center());
        place.moveRight(option.rect.right() - side / 2);
        const bool isHigh = fit == MonsterFit::TooHigh;
        const int base = isHigh ? place.bottom() : place.top();
        const int tip = isHigh ? place.top() : place.bottom();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        // A long name ends in front of the mark.
        painter->fillRect(place.adjusted(-side / 2, 0, 0, 0),
                          option.palette.brush(isSelected ? QPalette::Highlight : QPalette::Base));
        painter->setPen(Qt::NoPen);
        painter->setBrush(
            isSelected ? option.palette.color(QPalette::HighlightedText)
                       : readableColour(isHigh ? QLatin1String("red") : QLatin1String("blue"),
                                        option.palette));
        painter->drawPolygon(
            QPolygon({{place.left(), base}, {place.right(), base}, {place.center().x(), tip}}));
        painter->restore();
    }
};

} // namespace

EncounterView::EncounterView(EncounterListModel *model, QWidget *parent)
    : QTreeView(parent), m_model(model)
{
    setModel(model);
    setItemDelegate(new EncounterDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, model,
            &EncounterListModel::onInternalSelectionChanged);
    hideRows(-1);
}

void EncounterView::setFilter(const QString &text, const QString &adventure)
{
    if (text == m_text && adventure == m_adventure)
        return;
    m_text = text;
    m_adventure = adventure;
    hideRows(-1);
    const int row = m_model->selected().encounter;
    if (row >= 0 && isRowHidden(row, {}))
        select({});
    else
        scrollTo(currentIndex());
}

void EncounterView::applyFilter()
{
    hideRows(m_model->selected().encounter);
}

void EncounterView::hideRows(int keptRow)
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const PreparedEncounter *encounter = m_model->encounterAt(row);
        const bool isShown = encounter && !encounter->isDeleted()
            && (row == keptRow || Encounters::matches(*encounter, m_text, m_adventure));
        if (isRowHidden(row, {}) == isShown)
            setRowHidden(row, {}, !isShown);
    }
}

void EncounterView::refresh()
{
    const EncounterPath selected = m_model->pathOf(m_model->selected());
    const bool hasSelected = m_model->selected().encounter >= 0;
    const int scrolled = verticalScrollBar()->value();
    QList<EncounterPath> open;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (isExpanded(m_model->index(row, 0)))
            open << m_model->pathOf({row, -1, -1});
        for (int group = 0; group < m_model->rowCount(m_model->index(row, 0)); ++group)
            if (isExpanded(m_model->indexAt({row, group, -1})))
                open << m_model->pathOf({row, group, -1});
    }
    m_model->refresh();
    for (const EncounterPath &path : open) {
        const QModelIndex index = m_model->indexAt(m_model->find(path));
        // Of a group that went nothing is left to open.
        if (index.isValid() && index.parent().isValid() == !path.group.isEmpty())
            expand(index);
    }
    const EncounterPlace now = hasSelected ? m_model->find(selected) : EncounterPlace();
    hideRows(now.encounter);
    verticalScrollBar()->setValue(scrolled);
    if (now.encounter >= 0 && !isRowHidden(now.encounter, {}))
        select(now);
}

void EncounterView::select(const EncounterPlace &position)
{
    const QModelIndex index = m_model->indexAt(position);
    if (!index.isValid()) {
        clearSelection();
        setCurrentIndex({});
        return;
    }
    setCurrentIndex(index);
    scrollTo(index);
}

int EncounterView::neighbourOf(int row) const
{
    for (int i = row + 1; i < m_model->rowCount(); ++i)
        if (!isRowHidden(i, {}))
            return i;
    for (int i = row - 1; i >= 0; --i)
        if (!isRowHidden(i, {}))
            return i;
    return -1;
}

void EncounterView::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers others =
        event->modifiers() & ~(Qt::ControlModifier | Qt::KeypadModifier);
    // A key that is held takes one entry only.
    if (event->key() == Qt::Key_Delete && others == Qt::NoModifier) {
        if (!event->isAutoRepeat())
            Q_EMIT doDeletePressed();
    } else {
        QTreeView::keyPressEvent(event);
    }
}

#include "moc_encounterview.cpp"
