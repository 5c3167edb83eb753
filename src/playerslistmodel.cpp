#include "playerslistmodel.h"

#include <QColor>
#include <QPalette>

#include "creature.h"
#include "effect.h"
#include "encounter.h"
#include "playersview.h"
#include "readablecolours.h"
#include "switchboard.h"
#include "text.h"

namespace {

// Of each size that there is, since the list grows with its window.
QIcon listIcon(std::initializer_list<const char *> files)
{
    QIcon icon;
    for (const char *file : files)
        icon.addFile(QStringLiteral(":/images/") + QLatin1String(file));
    return icon;
}

bool isGreyed(const Creature *creature)
{
    return creature->isHidden() || creature->isDelayed() || creature->isReadied();
}

// A monster that lies dead only because of an open form's preview is alive to the players.
QString stateText(const Creature *creature)
{
    if (creature->isMonster() && !creature->isMissing() && !creature->isDead(true))
        return QString();
    return creature->statusText();
}

} // namespace

QString playersEffectsText(const Creature *creature)
{
    const PlayersNames names;
    QStringList texts;
    for (const Effect *effect : creature->effects())
        texts << effect->fullText();
    return texts.join(QStringLiteral("; "));
}

PlayersListModel::PlayersListModel(QObject *parent)
    : QAbstractTableModel(parent), m_encounter(theEncounter),
      m_currentIcon(listIcon({"arrow-right-red128.png"})), m_noIcon(listIcon({"no-icon.png"})),
      m_delayIcon(listIcon({"delay-turn16.png", "delay-turn32.png", "delay-turn128.png"})),
      m_readyIcon(listIcon({"ready-action16.png", "ready-action32.png", "ready-action128.png"})),
      m_hiddenIcon(listIcon({"faided-eye128.png"}))
{
    const SwitchBoard *hub = switchBoard();
    connect(hub, &SwitchBoard::doCreatureUpdated, this, &PlayersListModel::onCreatureInListUpdated);
    connect(hub, &SwitchBoard::doCreatureEffectsChanged, this,
            &PlayersListModel::onCreatureInListUpdated);
    connect(hub, &SwitchBoard::doNameShownChanged, this, &PlayersListModel::onNameShownChanged);
    connect(hub, &SwitchBoard::doDisableWidgetDisplay, this,
            &PlayersListModel::onDisableWidgetDisplay);
    connect(hub, &SwitchBoard::doEnableWidgetDisplay, this,
            &PlayersListModel::onEnableWidgetDisplay);
    if (!m_encounter)
        return;
    connect(m_encounter, &Encounter::doCreatureCountChanged, this,
            &PlayersListModel::onCreatureCountChanged);
    connect(m_encounter, &Encounter::doCurrentCreatureChanged, this,
            &PlayersListModel::onCurrentCreatureChanged);
    connect(m_encounter, &QObject::destroyed, this, &PlayersListModel::forgetEncounter);
}

void PlayersListModel::attachTo(PlayersView *view)
{
    m_view = view;
    view->attach(this);
    refresh();
}

// --- what the players see ---

void PlayersListModel::refresh()
{
    if (m_displayDisabled)
        return;
    readEncounter();
    if (!m_creatures.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    if (m_view)
        m_view->fitAnew();
    refreshCurrent();
}

void PlayersListModel::forgetEncounter()
{
    applyRows({});
    m_rows.clear();
    m_kills.clear();
    refreshCurrent();
}

bool PlayersListModel::readEncounter()
{
    const VisibleCreatures seen = m_encounter ? m_encounter->playersView() : VisibleCreatures();
    const bool isSame = seen.rows == m_creatures && seen.kills == m_kills;
    m_kills = seen.kills;
    if (seen.rows != m_creatures)
        applyRows(seen.rows);
    // The numbers also move with hidden creatures that come and go.
    m_rows.clear();
    for (int i = 0; m_rows.size() < m_creatures.size() && i < m_encounter->count(); ++i)
        if (m_encounter->at(i) == m_creatures.at(m_rows.size()))
            m_rows << i;
    return !isSame;
}

void PlayersListModel::matchRowCount(const QList<Creature *> &creatures)
{
    const int before = int(m_creatures.size());
    const int after = int(creatures.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_creatures.resize(after);
        endRemoveRows();
    } else if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_creatures = creatures;
        endInsertRows();
    }
}

void PlayersListModel::applyRows(const QList<Creature *> &creatures)
{
    matchRowCount(creatures);
    // Nothing is selected or edited here, so that a row is but a place.
    Q_EMIT layoutAboutToBeChanged();
    m_creatures = creatures;
    Q_EMIT layoutChanged();
    if (m_view)
        m_view->fitRows();
}

bool PlayersListModel::isEncounterRunning() const
{
    return m_encounter && m_encounter->isRunning();
}

// The hidden creatures aren't rows: the arrow marks the place in the visible order.
int PlayersListModel::findCurrentRow() const
{
    const int current = m_encounter ? m_encounter->currentIndex() : -1;
    if (current < 0 || m_rows.isEmpty())
        return -1;
    const int last = int(m_rows.size()) - 1;
    if (current < m_rows.first())
        return m_encounter->round() == 1 ? 0 : last;
    for (int row = 0; row < last; ++row)
        if (m_rows.at(row) <= current && current < m_rows.at(row + 1))
            return row;
    return current < m_encounter->count() ? last : -1;
}

void PlayersListModel::refreshCurrent()
{
    const int before = std::exchange(m_currentRow, findCurrentRow());
    m_currentCreature = m_creatures.value(m_currentRow);
    if (before != m_currentRow) {
        noteRowChanged(before, {Qt::DecorationRole});
        noteRowChanged(m_currentRow, {Qt::DecorationRole});
    }
    if (m_view && m_currentRow >= 0)
        m_view->showRow(m_currentRow);
    Q_EMIT doCurrentChanged();
}

void PlayersListModel::noteRowChanged(int row, const QList<int> &roles)
{
    if (row >= 0 && row < rowCount())
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1), roles);
}

Creature *PlayersListModel::nextCreature() const
{
    for (int i = 1; m_currentRow >= 0 && i < m_creatures.size(); ++i) {
        Creature *creature = m_creatures.at((m_currentRow + i) % m_creatures.size());
        if (!creature->isDead(true) && creature->takesTurns())
            return creature;
    }
    return nullptr;
}

void PlayersListModel::setShowDamage(bool show)
{
    if (show == m_showDamage)
        return;
    m_showDamage = show;
    refresh();
}

// --- what tells of changes ---

// The number signal is also emitted when only the DM's selection changed, which the players' window
// must not show.
void PlayersListModel::onCreatureCountChanged()
{
    if (!m_displayDisabled && (readEncounter() || findCurrentRow() != m_currentRow))
        refreshCurrent();
}

void PlayersListModel::onCurrentCreatureChanged()
{
    if (m_displayDisabled)
        return;
    readEncounter();
    refreshCurrent();
}

void PlayersListModel::onCreatureInListUpdated(Creature *creature)
{
    if (m_displayDisabled)
        return;
    if (!creature) {
        refresh();
        return;
    }
    // A creature that dies or hides leaves its row.
    if (readEncounter())
        refreshCurrent();
    const int row = int(m_creatures.indexOf(creature));
    if (row < 0)
        return;
    noteRowChanged(row);
    if (m_view)
        m_view->fitRow(row);
}

// The name may stand in any row, as an effect's origin, and below a kill.
void PlayersListModel::onNameShownChanged()
{
    if (m_displayDisabled)
        return;
    if (!m_creatures.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    Q_EMIT doCurrentChanged();
}

void PlayersListModel::onDisableWidgetDisplay()
{
    m_displayDisabled = true;
}

void PlayersListModel::onEnableWidgetDisplay()
{
    m_displayDisabled = false;
    refresh();
}

// --- content ---

int PlayersListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_creatures.size());
}

int PlayersListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PlayersListModel::data(const QModelIndex &index, int role) const
{
    // While the state is in flux a creature may be gone already.
    if (index.model() != this || index.row() >= m_creatures.size() || m_displayDisabled)
        return {};
    const Creature *creature = m_creatures.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return displayText(creature, index.column());
    case Qt::DecorationRole:
        return index.column() == NameColumn ? QVariant(stateIcon(index.row())) : QVariant();
    case Qt::ForegroundRole:
        return foreground(creature, index.column());
    case Qt::AccessibleTextRole:
        return spokenText(creature, index.column());
    case Qt::AccessibleDescriptionRole:
        return spokenState(index.row(), index.column());
    default:
        return {};
    }
}

QString PlayersListModel::displayText(const Creature *creature, int column) const
{
    switch (column) {
    case NameColumn:
        return shortened(creature->playersName(), LongestName);
    case HealthColumn:
        return healthText(creature);
    case EffectsColumn: {
        QStringList texts {stateText(creature), playersEffectsText(creature)};
        texts.removeAll(QString());
        return shortened(texts.join(QStringLiteral("; ")));
    }
    case DescriptionColumn:
        return shortened(creature->description());
    default:
        return {};
    }
}

QString PlayersListModel::healthText(const Creature *creature) const
{
    const int size = m_view ? m_view->fontSize() : PlayersView::SmallestFont;
    return QStringLiteral("%1&%2&%3&%4")
        .arg(QString::number(size), QString::number(creature->playersHpPercent()),
             creature->playersHealthText(m_showDamage),
             isGreyed(creature) ? QStringLiteral("gray") : QStringLiteral("black"));
}

QIcon PlayersListModel::stateIcon(int row) const
{
    const Creature *creature = m_creatures.at(row);
    if (row == m_currentRow)
        return m_currentIcon;
    if (creature->isDelayed())
        return m_delayIcon;
    if (creature->isReadied())
        return m_readyIcon;
    return creature->isHidden() ? m_hiddenIcon : m_noIcon;
}

// For screen readers: no more than the bar and its text tell.
QVariant PlayersListModel::spokenText(const Creature *creature, int column) const
{
    if (column != HealthColumn)
        return {};
    const QString text = plainText(creature->playersHealthText(m_showDamage));
    const QString percent = tr("%1 %").arg(creature->playersHpPercent());
    return text.isEmpty() ? percent : tr("%1; %2").arg(percent, text);
}

// What the icon tells.
QVariant PlayersListModel::spokenState(int row, int column) const
{
    if (column != NameColumn)
        return {};
    if (row == m_currentRow)
        return tr("It is this creature's turn");
    if (m_creatures.at(row)->isDelayed())
        return tr("Delayed");
    return m_creatures.at(row)->isReadied() ? QVariant(tr("Readied")) : QVariant();
}

QVariant PlayersListModel::foreground(const Creature *creature, int column) const
{
    const QPalette palette = m_view ? m_view->palette() : QPalette();
    if (isGreyed(creature))
        return readableColour(QLatin1String("gray"), palette);
    if (column == NameColumn && !creature->isMonster())
        return readableColour(QLatin1String("blue"), palette);
    return {};
}

QVariant PlayersListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    switch (section) {
    case NameColumn:
        return tr("Name");
    case HealthColumn:
        return tr(" Health ");
    case EffectsColumn:
        return tr("Conditions and Effects");
    case DescriptionColumn:
        return tr("Description");
    default:
        return {};
    }
}

#include "moc_playerslistmodel.cpp"
