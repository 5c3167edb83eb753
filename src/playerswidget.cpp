#include "playerswidget.h"

#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QListWidget>
#include <QMenu>
#include <QSettings>

#include "creature.h"
#include "encounter.h"
#include "event.h"
#include "findcreature.h"
#include "fittedtext.h"
#include "history.h"
#include "playerslistmodel.h"
#include "playersview.h"
#include "switchboard.h"
#include "text.h"

namespace {

constexpr int SmallestFont = PlayersView::SmallestFont;
constexpr int LargestFont = PlayersView::LargestFont;
// Name, state, health, conditions: the last may take two lines.
constexpr int TurnLines = 5;
constexpr int UsualFont = 28; // of the panels at the bottom, before the DM resizes them
constexpr int UsualTickerLines = 3;
constexpr int NameLines = 2; // of a killer
constexpr int Spacing = 5;
constexpr int EdgeMargin = 2;
constexpr qreal LineSpacing = 1.25;
constexpr qreal RichTextSlack = 1.1; // a laid out text may be wider than its letters
constexpr int DefaultTickerFont = 16;
const QString TickerFontKey = QStringLiteral("playersWindow/tickerFontSize");

// "Initiative" once it is rolled, in the words of the message that asks for it.
QString initiativeText(const Creature &creature)
{
    const bool isRolled = theEncounter && theEncounter->isRunning() && creature.initRoll() != 0
        && creature.initRoll() != NotStated;
    return isRolled ? YourTurnWidget::tr("Initiative <b>%1</b>").arg(creature.initRoll())
                    : QString();
}

QString joined(QStringList texts)
{
    texts.removeAll(QString());
    return texts.join(QStringLiteral("; "));
}

// As the players know it.
QString killerName(const QString &displayName)
{
    const Creature *killer = findCreature(displayName, false);
    const PlayersNames names;
    return killer ? killer->displayName() : displayName;
}

} // namespace

// --- the common base ---

void PlayersWidget::setFontSize(int size)
{
    m_fontSize = qBound(SmallestFont, size, LargestFont);
    QFont sized = font();
    sized.setPixelSize(pixels(m_fontSize));
    if (sized != font())
        setFont(sized);
}

void PlayersWidget::setZoom(int percent)
{
    m_zoom = percent;
    setFontSize(m_fontSize);
    updateGeometry();
    fit();
}

int PlayersWidget::pixels(qreal size) const
{
    return zoomed(size, m_zoom);
}

// --- whose turn it is ---

YourTurnWidget::YourTurnWidget(PlayersListModel *model, QWidget *parent)
    : PlayersWidget(parent), m_model(model), m_portraitLabel(new PortraitLabel(this)),
      m_nameLabel(new FittedLabel(false, this)), m_stateLabel(new FittedLabel(false, this)),
      m_hpLabel(new FittedLabel(false, this)), m_conditionLabel(new FittedLabel(true, this)),
      m_nextLabel(new FittedLabel(false, this))
{
    setObjectName(QStringLiteral("yourTurnWidget"));
    m_portraitLabel->setObjectName(QStringLiteral("portraitLabel"));
    m_nameLabel->setObjectName(QStringLiteral("nameLabel"));
    m_stateLabel->setObjectName(QStringLiteral("stateLabel"));
    m_hpLabel->setObjectName(QStringLiteral("hpLabel"));
    m_conditionLabel->setObjectName(QStringLiteral("conditionLabel"));
    m_nextLabel->setObjectName(QStringLiteral("nextLabel"));
    m_conditionLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setFontSize(SmallestFont);
    connect(model, &PlayersListModel::doCurrentChanged, this, &YourTurnWidget::onCurrentChanged);
    connect(switchBoard(), &SwitchBoard::doCreatureUpdated, this,
            &YourTurnWidget::onCreatureUpdated);
    onCurrentChanged();
}

void YourTurnWidget::onCurrentChanged()
{
    show(nullptr, QString());
}

void YourTurnWidget::onCreatureUpdated(Creature *creature)
{
    if (creature && creature == m_model->currentCreature())
        show(nullptr, QString());
    else if (m_showsNext)
        showNext(m_model->currentCreature()); // it may have died, or taken an alias
}

void YourTurnWidget::show(Creature *creature, const QString &message)
{
    const Creature *shown = creature ? creature : m_model->currentCreature();
    if (!shown) {
        clear();
        return;
    }
    m_portraitLabel->setPortrait(shown->portrait());
    m_nameLabel->setText(tr("<b>%1</b>").arg(asHtml(shown->playersName(), LongestName)));
    m_stateLabel->setText(
        joined({shown->conditionsText(true, false, true, true), initiativeText(*shown), message}));
    m_conditionLabel->setText(asHtml(playersEffectsText(shown)));
    m_hpLabel->setText(shown->isMonster() ? QString()
                                          : shown->playersHealthText(m_model->showsDamage()));
    showNext(shown);
    fit(); // an empty line takes no room
}

void YourTurnWidget::clear()
{
    m_portraitLabel->setPortrait({});
    for (QLabel *label : {m_nameLabel, m_stateLabel, m_hpLabel, m_conditionLabel, m_nextLabel})
        label->clear();
}

// Not beside a creature that a form asks about.
void YourTurnWidget::showNext(const Creature *shown)
{
    const Creature *next =
        m_showsNext && shown == m_model->currentCreature() ? m_model->nextCreature() : nullptr;
    m_nextLabel->setText(next ? tr("Next: %1").arg(asHtml(next->playersName(), LongestName))
                              : QString());
}

void YourTurnWidget::setShowNext(bool show)
{
    m_showsNext = show;
    updateGeometry();
    fit();
    onCurrentChanged();
}

int YourTurnWidget::lineCount() const
{
    return TurnLines + (m_showsNext ? 1 : 0);
}

QSize YourTurnWidget::minimumSizeHint() const
{
    // One line for the conditions is enough where room is scarce.
    return {pixels(SmallestFont * 8),
            pixels(SmallestFont * LineSpacing * (lineCount() - 1) + 2 * EdgeMargin)};
}

QSize YourTurnWidget::sizeHint() const
{
    return {pixels(400), pixels(UsualFont * LineSpacing * lineCount())};
}

// The type grows with the panel; the portrait is as high as the panel.
void YourTurnWidget::fit()
{
    const int margin = pixels(EdgeMargin);
    const int height = this->height() - 2 * margin;
    const int line = height / lineCount();
    setFontSize(int(line / LineSpacing * 100 / zoom()));
    const int portrait = qMin(height, width() / 3);
    m_portraitLabel->setGeometry(margin, margin, portrait, portrait);
    const int left = margin + portrait + pixels(Spacing);
    const int textWidth = qMax(0, width() - left - margin);
    const int textHeight = fontMetrics().height();
    int top = margin;
    const auto place = [&](QLabel *label, int space) {
        label->setGeometry(left, top, textWidth, space);
        top += space;
    };
    for (QLabel *label : {m_nameLabel, m_stateLabel, m_hpLabel})
        place(label, label->text().isEmpty() ? 0 : textHeight);
    const int below = m_showsNext ? textHeight : 0;
    place(m_conditionLabel, qMax(textHeight, margin + height - below - top));
    place(m_nextLabel, below);
}

void YourTurnWidget::resizeEvent(QResizeEvent *event)
{
    PlayersWidget::resizeEvent(event);
    fit();
}

// --- the last kills ---

LastKillWidget::LastKillWidget(PlayersListModel *model, QWidget *parent)
    : PlayersWidget(parent), m_model(model)
{
    setObjectName(QStringLiteral("lastKillWidget"));
    for (int slot = 0; slot < m_slotCount; ++slot) {
        m_portraits << new PortraitLabel(this);
        m_names << new FittedLabel(true, this);
        m_portraits.last()->setObjectName(QStringLiteral("killPortrait%1").arg(slot));
        m_names.last()->setObjectName(QStringLiteral("killName%1").arg(slot));
        m_names.last()->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    }
    setFontSize(SmallestFont);
    connect(model, &PlayersListModel::doCurrentChanged, this, &LastKillWidget::onCreatureChanged);
    onCreatureChanged();
}

void LastKillWidget::onCreatureChanged()
{
    QStringList killers;
    for (const Creature *creature : m_model->kills()) {
        if (killers.size() == m_slotCount)
            break;
        if (creature->lastHitBy().isEmpty())
            continue;
        m_portraits.at(killers.size())->setPortrait(creature->portrait());
        killers << shortened(killerName(creature->lastHitBy()), LongestName);
    }
    for (qsizetype slot = 0; slot < m_slotCount; ++slot) {
        const bool isUsed = slot < killers.size();
        if (!isUsed)
            m_portraits.at(slot)->setPortrait({});
        m_names.at(slot)->setText(isUsed ? tr("<b>%1</b>").arg(asHtml(killers.at(slot)))
                                         : QString());
    }
    if (killers == m_killers)
        return;
    m_killers = killers;
    fit();
}

QSize LastKillWidget::minimumSizeHint() const
{
    return {pixels(SmallestFont * 8),
            pixels(SmallestFont * LineSpacing * (NameLines + 3) + 2 * EdgeMargin)};
}

QSize LastKillWidget::sizeHint() const
{
    return {pixels(400), pixels(UsualFont * LineSpacing * TurnLines)};
}

int LastKillWidget::portraitSide() const
{
    const int names = NameLines * fontMetrics().height();
    return qMax(1, qMin(height() - names - 2 * pixels(EdgeMargin), height() * 3 / 4));
}

// The largest type in which each word is narrower than the portrait above it.
void LastKillWidget::fitNames()
{
    setFontSize(int(height() / (LineSpacing * TurnLines) * 100 / zoom()));
    const QStringList words = m_killers.join(u' ').split(u' ');
    const auto areWordsWhole = [&] {
        QFont bold = font();
        bold.setBold(true);
        const QFontMetrics metrics(bold);
        return std::all_of(words.cbegin(), words.cend(), [&](const QString &word) {
            return metrics.horizontalAdvance(word) * RichTextSlack < portraitSide();
        });
    };
    while (fontSize() > SmallestFont && !areWordsWhole())
        setFontSize(fontSize() - 1);
}

void LastKillWidget::fit()
{
    fitNames();
    const int margin = pixels(EdgeMargin);
    const int side = portraitSide();
    const int step = side + pixels(Spacing);
    m_visibleCount = qBound(0, (width() - 2 * margin) / step, m_slotCount);
    for (int slot = 0; slot < m_slotCount; ++slot) {
        const int left = margin + slot * step;
        m_portraits.at(slot)->setGeometry(left, margin, side, side);
        m_names.at(slot)->setGeometry(left, margin + side, side,
                                      NameLines * fontMetrics().height());
        m_portraits.at(slot)->setVisible(slot < m_visibleCount);
        m_names.at(slot)->setVisible(slot < m_visibleCount);
    }
}

void LastKillWidget::resizeEvent(QResizeEvent *event)
{
    PlayersWidget::resizeEvent(event);
    fit();
}

// --- the ticker ---

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
    const int saved = QSettings().value(TickerFontKey).toInt();
    setFontSize(saved == 0 ? DefaultTickerFont : saved);
    if (m_history)
        connect(m_history, &History::doHistoryChanged, this, &TickerWidget::onHistoryChanged);
    onHistoryChanged();
}

TickerWidget::~TickerWidget()
{
    QSettings().setValue(TickerFontKey, fontSize());
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
    return {pixels(400), UsualTickerLines * lineHeight()};
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

#include "moc_playerswidget.cpp"
