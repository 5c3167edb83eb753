#include "playersview.h"

#include <QFontInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>

#include "fittedtext.h"
#include "framelessdelegate.h"
#include "longtextdelegate.h"
#include "playershealthdelegate.h"
#include "playerslistmodel.h"

namespace {

using Model = PlayersListModel;

constexpr int LeastWidth = 360;
// Around the text of a cell, on both sides together.
constexpr int CellMargin = 4;
constexpr int HeaderMargin = 6;
// Where not all fits, no column but the last may take more of the width than this.
constexpr qreal LargestShare = 0.4;

// Titles that end in an ellipsis where their column is narrow.
class ElidedHeader : public QHeaderView {
public:
    explicit ElidedHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) { }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int section) const override
    {
        QHeaderView::initStyleOptionForIndex(option, section);
        const int margin = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, option, this);
        option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight,
                                                      sectionSize(section) - margin);
    }
};

} // namespace

PlayersView::PlayersView(QWidget *parent)
    : QTableView(parent), m_healthDelegate(new PlayersHealthDelegate(this))
{
    setObjectName(QStringLiteral("playersView"));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setFocusPolicy(Qt::TabFocus);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerItem);
    setItemDelegate(new FramelessDelegate(this));
    setItemDelegateForColumn(Model::HealthColumn, m_healthDelegate);
    setItemDelegateForColumn(Model::EffectsColumn, new LongTextDelegate(this));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    setHorizontalHeader(new ElidedHeader(this));
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(1);
    setMinimumWidth(LeastWidth);
    setMinimumHeight(heightOfRow(SmallestFont) + 1);
    applySize(m_fontSize);
}

void PlayersView::attach(PlayersListModel *model)
{
    m_model = model;
    setModel(model);
    // A last section that is stretched would not become narrower than any section at first.
    horizontalHeader()->setSectionResizeMode(Model::EffectsColumn, QHeaderView::Stretch);
}

// --- sizes ---

int PlayersView::pixels(qreal size) const
{
    return zoomed(size, m_zoom);
}

QFont PlayersView::fontOfSize(int size) const
{
    QFont sized = font();
    sized.setPixelSize(pixels(size));
    return sized;
}

int PlayersView::heightOfRow(int size) const
{
    return m_healthDelegate->heightFor(fontOfSize(size));
}

int PlayersView::headerHeight(int size) const
{
    return QFontMetrics(fontOfSize(size)).height() + pixels(HeaderMargin);
}

void PlayersView::setFontMode(int mode)
{
    if (mode == 1)
        m_fixedFontSize = m_fontSize;
    else
        m_fixedFontSize = mode == 0 ? 0 : qBound(SmallestFont, mode, LargestFont);
    fit(width(), height());
}

void PlayersView::setZoom(int percent)
{
    m_zoom = percent;
    m_healthDelegate->setZoom(percent);
    m_widths.clear();
    // A window that is wider than its screen would be cut.
    setMinimumWidth(qMax(LeastWidth, qMin(pixels(LeastWidth), screen()->size().width() / 2)));
    setMinimumHeight(qMin(heightOfRow(SmallestFont) + 1, screen()->size().height() / 4));
    applySize(m_fontSize);
    fitAnew();
}

// --- fitting ---

PlayersView::Widths PlayersView::measureRow(int row, int size)
{
    const QFont font = fontOfSize(size);
    const QFontMetrics metrics(font);
    const auto text = [&](int column) { return m_model->index(row, column).data().toString(); };
    const int edges = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
    const int margin = edges + pixels(CellMargin);
    return {metrics.horizontalAdvance(text(Model::NameColumn)) + pixels(size) + edges + margin,
            m_healthDelegate->widthFor(text(Model::HealthColumn), font),
            metrics.horizontalAdvance(text(Model::EffectsColumn)) + margin};
}

PlayersView::Widths PlayersView::contentWidths(int size)
{
    if (std::exchange(m_measuredSize, size) != size)
        m_widths.clear();
    Widths widest {};
    QFont headerFont = fontOfSize(size);
    headerFont.setBold(true);
    for (int column = 0; column < Model::ColumnCount; ++column)
        widest[column] =
            QFontMetrics(headerFont)
                .horizontalAdvance(model()->headerData(column, Qt::Horizontal).toString())
            + pixels(2 * CellMargin);
    const QList<Creature *> &creatures = m_model->creatures();
    for (int row = 0; row < creatures.size(); ++row) {
        auto known = m_widths.constFind(creatures.at(row));
        if (known == m_widths.constEnd())
            known = m_widths.insert(creatures.at(row), measureRow(row, size));
        for (int column = 0; column < Model::ColumnCount; ++column)
            widest[column] = qMax(widest[column], known->at(column));
    }
    return widest;
}

bool PlayersView::fitsAt(int size, int width, int height)
{
    // The height costs nothing, and decides where a list is long.
    if (headerHeight(size) + qint64(model()->rowCount()) * heightOfRow(size) >= height)
        return false;
    const Widths widths = contentWidths(size);
    return widths[0] + widths[1] + widths[2] < width;
}

void PlayersView::fit(int width, int height)
{
    if (!m_model || m_model->rowCount() == 0)
        return;
    int size = m_fontSize;
    if (m_fixedFontSize != 0) {
        size = m_fixedFontSize;
    } else {
        bool wasReduced = false;
        while (size >= SmallestFont && size <= LargestFont) {
            const bool fits = fitsAt(size, width, height);
            if (fits && wasReduced)
                break;
            wasReduced |= !fits;
            size += fits ? 1 : -1;
        }
        size = qBound(SmallestFont, size, LargestFont);
    }
    applySize(size);
    applyWidths();
}

void PlayersView::fitHeader()
{
    horizontalHeader()->setHidden(height() <= headerHeight(m_fontSize) + heightOfRow(m_fontSize));
}

void PlayersView::applySize(int size)
{
    const QFont sized = fontOfSize(size);
    m_fontSize = size;
    if (font() != sized)
        setFont(sized);
    horizontalHeader()->setFixedHeight(headerHeight(size));
    verticalHeader()->setDefaultSectionSize(heightOfRow(size));
    setIconSize(QSize(pixels(size), pixels(size)));
    fitHeader();
}

void PlayersView::applyWidths()
{
    Widths widths = contentWidths(m_fontSize);
    if (widths[0] + widths[1] + widths[2] >= viewport()->width()) {
        const int most = int(viewport()->width() * LargestShare);
        widths[0] = qMin(widths[0], most);
        widths[1] = qMin(widths[1], most);
    }
    for (const int column : {Model::NameColumn, Model::HealthColumn})
        setColumnWidth(column, widths[column]);
}

void PlayersView::fitRows()
{
    // Those that stay are still known. Another creature may come to stand where one that went was.
    const QList<Creature *> &creatures = m_model->creatures();
    const QSet<const Creature *> present(creatures.cbegin(), creatures.cend());
    m_widths.removeIf([&](const auto &known) { return !present.contains(known.key()); });
    fit(width(), height());
    showRow(m_shownRow);
}

void PlayersView::fitAnew()
{
    m_widths.clear();
    fit(width(), height());
    showRow(m_shownRow);
}

void PlayersView::fitRow(int row)
{
    if (m_measuredSize == 0)
        return;
    const Creature *creature = m_model->creatures().at(row);
    const Widths before = m_widths.value(creature);
    const Widths widths = measureRow(row, m_measuredSize);
    if (widths == before)
        return;
    m_widths.insert(creature, widths);
    fit(width(), height());
}

void PlayersView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    if (width() == m_lastWidth && height() == m_lastHeight)
        return;
    m_lastWidth = width();
    m_lastHeight = height();
    fitHeader();
    fit(m_lastWidth, m_lastHeight);
    showRow(m_shownRow);
}

// --- what is shown ---

void PlayersView::showRow(int row)
{
    m_shownRow = row;
    if (m_model && row >= 0 && row < m_model->rowCount())
        scrollTo(m_model->index(row, Model::NameColumn), PositionAtCenter);
}

void PlayersView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    const int row = rowAt(viewport()->height() - 1);
    const int top = row < 0 ? 0 : rowViewportPosition(row);
    if (top <= 0 || top + heightOfRow(m_fontSize) <= viewport()->height())
        return;
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect().adjusted(0, top, 0, 0), palette().base());
}

void PlayersView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    // The colours of the cells were made for the palette before.
    if (event->type() == QEvent::PaletteChange)
        viewport()->update();
}

// Nothing here is chosen by keys: they are the window's.
void PlayersView::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
}

#include "moc_playersview.cpp"
