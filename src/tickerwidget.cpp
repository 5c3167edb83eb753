#include "tickerwidget.h"

#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QListWidget>
#include <QMenu>
#include <QSettings>

#include "event.h"
#include "history.h"
#include "text.h"

namespace {

constexpr int DefaultFont = 16;
constexpr int UsualLines = 3; // before the DM resizes it
const QString FontKey = QStringLiteral("playersWindow/tickerFontSize");

} // namespace

TickerWidget::TickerWidget(QWidget *parent)
    : PlayersWidget(parent), m_list(new QListWidget), m_history(theHistory)
{
    setObjectName(QStringLiteral("tickerWidget"));
    setFocusPolicy(Qt::TabFocus);
    m_list->setObjectName(QStringLiteral("tickerList"));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setAlternatingRowColors(true);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setTextElideMode(Qt::ElideRight);
    setLayout(hBox(m_list));
    const int saved = QSettings().value(FontKey).toInt();
    setFontSize(saved == 0 ? DefaultFont : saved);
    if (m_history)
        connect(m_history, &History::doHistoryChanged, this, &TickerWidget::onHistoryChanged);
    onHistoryChanged();
}

TickerWidget::~TickerWidget()
{
    QSettings().setValue(FontKey, fontSize());
}

int TickerWidget::lineHeight() const
{
    return QFontMetrics(font()).height() + pixels(EdgeMargin);
}

void TickerWidget::onHistoryChanged()
{
    m_list->clear();
    if (!m_history)
        return;
    const QList<Event *> events = m_history->recentVisibleEvents(m_lineCount);
    for (const Event *event : events) {
        auto *line = new QListWidgetItem(shortened(event->playersText()), m_list);
        line->setSizeHint(QSize(0, lineHeight()));
    }
    m_list->scrollToTop();
}

void TickerWidget::fit()
{
    const int count = qMax(1, height() / lineHeight());
    const bool isHigher =
        m_list->count() > 0 && m_list->item(0)->sizeHint().height() != lineHeight();
    if (count == m_lineCount && !isHigher)
        return;
    m_lineCount = count;
    onHistoryChanged();
}

QSize TickerWidget::minimumSizeHint() const
{
    return {0, lineHeight()};
}

QSize TickerWidget::sizeHint() const
{
    return {pixels(400), UsualLines * lineHeight()};
}

void TickerWidget::resizeEvent(QResizeEvent *event)
{
    PlayersWidget::resizeEvent(event);
    fit();
}

void TickerWidget::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu;
    menu.setObjectName(QStringLiteral("tickerMenu"));
    for (const int step : {5, 1, -1, -5}) {
        const QString text = step > 0 ? tr("Font Size +%1") : tr("Font Size %1");
        menu.addAction(text.arg(step), this, [this, step] {
            setFontSize(fontSize() + step);
            updateGeometry();
            fit();
        });
    }
    menu.exec(event->globalPos());
}

#include "moc_tickerwidget.cpp"
