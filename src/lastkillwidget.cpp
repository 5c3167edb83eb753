#include "lastkillwidget.h"

#include <algorithm>

#include "creature.h"
#include "findcreature.h"
#include "fittedtext.h"
#include "playerslistmodel.h"
#include "text.h"

namespace {

constexpr int NameLines = 2; // of a killer
constexpr qreal RichTextSlack = 1.1; // a laid out text may be wider than its letters

// As the players know it.
QString killerName(const QString &displayName)
{
    const Creature *killer = findCreature(displayName, false);
    const PlayersNames names;
    return killer ? killer->displayName() : displayName;
}

} // namespace

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
    return {leastWidth(), pixels(SmallestFont * LineSpacing * (NameLines + 3) + 2 * EdgeMargin)};
}

QSize LastKillWidget::sizeHint() const
{
    return {pixels(400), pixels(LargestFont * LineSpacing * BottomLines)};
}

int LastKillWidget::portraitSide() const
{
    const int names = NameLines * lineHeight(font());
    const int edges = 2 * pixels(EdgeMargin);
    const int high = qMin(height() - names - edges, height() * 3 / 4);
    // In a dock at the side too, there is room for one.
    return qMax(1, qMin(high, width() - edges - pixels(Spacing)));
}

// The largest type in which each word is narrower than the portrait above it.
void LastKillWidget::fitNames()
{
    setFontSize(int(height() / (LineSpacing * BottomLines) * 100 / zoom()));
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
        m_names.at(slot)->setGeometry(left, margin + side, side, NameLines * lineHeight(font()));
        m_portraits.at(slot)->setVisible(slot < m_visibleCount);
        m_names.at(slot)->setVisible(slot < m_visibleCount);
    }
}

void LastKillWidget::resizeEvent(QResizeEvent *event)
{
    PlayersWidget::resizeEvent(event);
    fit();
}

#include "moc_lastkillwidget.cpp"
