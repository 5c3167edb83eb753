#include "pickencounterdialog.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>

#include "encounter.h"
#include "encounters.h"
#include "text.h"

namespace {

constexpr int WidestAdventure = 320; // pixels

} // namespace

// --- the model ---

void PickEncounterModel::attachTo(QTableView *view)
{
    m_view = view;
    setUpPickTable(view, this);
    hideRows();
    // A description takes fewer lines in a wider column.
    connect(view->horizontalHeader(), &QHeaderView::sectionResized, view,
            &QTableView::resizeRowsToContents);
}

void PickEncounterModel::setFilter(const QString &filter, const QString &adventure)
{
    if (filter == m_filter && adventure == m_adventure)
        return;
    m_filter = filter;
    m_adventure = adventure;
    clearPick(m_view);
    hideRows();
}

void PickEncounterModel::hideRows()
{
    for (int row = 0; row < rowCount(); ++row)
        m_view->setRowHidden(row,
                             !Encounters::matches(*theEncounters->at(row), m_filter, m_adventure));
}

int PickEncounterModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !theEncounters ? 0 : theEncounters->count();
}

int PickEncounterModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PickEncounterModel::data(const QModelIndex &index, int role) const
{
    if (index.model() != this || !hasIndex(index.row(), index.column()))
        return {};
    const PreparedEncounter *encounter = theEncounters->at(index.row());
    const bool isNumber = index.column() == LevelColumn || index.column() == XPColumn;
    if (role == Qt::TextAlignmentRole)
        return int((isNumber ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
    if (!encounter || role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case NameColumn:
        return shortened(encounter->name(), LongestName);
    case LevelColumn:
        return encounter->level();
    case XPColumn:
        return encounter->xp();
    default:
        return shortened(encounter->description(), LongestParagraph);
    }
}

QVariant PickEncounterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case LevelColumn:
        return tr("Level");
    case XPColumn:
        return tr("XP");
    case DescriptionColumn:
        return tr("Description");
    default:
        return {};
    }
}

// --- the dialog ---

PickEncounterDialog::PickEncounterDialog(QWidget *parent)
    : PickTableDialog(tr("Select an Encounter"), parent)
{
    setObjectName(QStringLiteral("pickEncounterDialog"));
    m_adventures = new QComboBox;
    m_adventures->setObjectName(QStringLiteral("adventureBox"));
    m_adventures->addItem(Encounters::allAdventures());
    const QStringList adventures = theEncounters ? theEncounters->adventures() : QStringList();
    for (const QString &adventure : adventures)
        m_adventures->addItem(shortened(adventure, LongestName), adventure);
    m_adventures->setMaximumWidth(WidestAdventure);
    connect(m_adventures, &QComboBox::activated, this,
            &PickEncounterDialog::onEncounterAdventureSelected);

    table()->setObjectName(QStringLiteral("pickEncounterTable"));
    m_model.attachTo(table());

    QHBoxLayout *top = hBox(m_adventures, filter());
    top->setStretch(1, 1);
    setLayout(vBox(wrap(top), table(), buildButtons(offeredButtons())));
}

QList<FlatDialog::Button> PickEncounterDialog::offeredButtons()
{
    const int count = theEncounter ? theEncounter->count() : 0;
    const bool running = theEncounter && theEncounter->isRunning();
    QList<Button> buttons;
    if (count == 0)
        buttons << Button {tr("Set"), Set} << Button {tr("Set Hidden"), SetHidden};
    else if (!running)
        buttons << Button {tr("Replace"), Set} << Button {tr("Replace Hidden"), SetHidden};
    if (count > 0)
        buttons << Button {tr("Add"), Add} << Button {tr("Add Hidden"), AddHidden};
    return buttons << Button {tr("Cancel"), 0};
}

void PickEncounterDialog::onFilterChanged(QObject *)
{
    m_model.setFilter(filter()->text(), m_adventures->currentData().toString());
}

void PickEncounterDialog::onEncounterAdventureSelected(int)
{
    m_model.setFilter(filter()->text(), m_adventures->currentData().toString());
}

const PreparedEncounter *PickEncounterDialog::selectedEncounter() const
{
    const int row = selectedRow();
    return row >= 0 && theEncounters ? theEncounters->at(row) : nullptr;
}

#include "moc_pickencounterdialog.cpp"
