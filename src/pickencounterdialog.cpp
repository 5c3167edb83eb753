#include "pickencounterdialog.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include "coreobjects.h"
#include "encounter.h"
#include "encounters.h"
#include "eventsignaler.h"
#include "picktable.h"

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
        m_view->setRowHidden(row, !matches(*theEncounters->at(row)));
}

bool PickEncounterModel::matches(const PreparedEncounter &encounter) const
{
    const bool anyAdventure = m_adventure.isEmpty() || m_adventure == allAdventures();
    return !encounter.isDeleted() && encounter.name().contains(m_filter, Qt::CaseInsensitive)
        && (anyAdventure || encounter.adventure() == m_adventure);
}

QString PickEncounterModel::allAdventures()
{
    return tr("All Adventures");
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
        return encounter->name();
    case LevelColumn:
        return encounter->level();
    case XPColumn:
        return encounter->xp();
    default:
        return encounter->description();
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
    : FlatDialog(tr("Select an Encounter"), parent)
{
    setObjectName(QStringLiteral("pickEncounterDialog"));
    m_adventures = new QComboBox;
    m_adventures->setObjectName(QStringLiteral("adventureBox"));
    m_adventures->addItem(PickEncounterModel::allAdventures());
    if (theEncounters)
        m_adventures->addItems(theEncounters->adventures());
    connect(m_adventures, &QComboBox::activated, this,
            &PickEncounterDialog::onEncounterAdventureSelected);

    m_table = new QTableView;
    m_table->setObjectName(QStringLiteral("pickEncounterTable"));
    m_model.attachTo(m_table);
    m_filter = filterEdit();
    auto *signaler = new EventSignaler(this);
    m_filter->installEventFilter(signaler);
    // Queued: the event has only reached the filter, not yet the edit.
    connect(signaler, &EventSignaler::doEventReceived, this, &PickEncounterDialog::onFilterChanged,
            Qt::QueuedConnection);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PickEncounterDialog::localSelectionChanged);
    connect(m_table, &QTableView::doubleClicked, this, [this] { accept(); });

    QHBoxLayout *top = hBox(m_adventures, m_filter);
    top->setStretch(1, 1);
    setLayout(vBox(wrap(top), m_table, buildButtons()));
    setFocusProxy(m_filter);
}

QWidget *PickEncounterDialog::buildButtons()
{
    const int count = theEncounter ? theEncounter->count() : 0;
    const bool running = theEncounter && theEncounter->isRunning();
    QList<Button> texts;
    if (count == 0)
        texts << Button {tr("Set"), Set} << Button {tr("Set Hidden"), SetHidden};
    else if (!running)
        texts << Button {tr("Replace"), Set} << Button {tr("Replace Hidden"), SetHidden};
    if (count > 0)
        texts << Button {tr("Add"), Add} << Button {tr("Add Hidden"), AddHidden};
    texts << Button {tr("Cancel"), 0};

    m_buttons = buttonRow(texts);
    m_default = qobject_cast<QPushButton *>(m_buttons->buttons().constFirst());
    m_default->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::clicked, this, &PickEncounterDialog::onClicked);
    enableButtons(false);
    return m_buttons;
}

void PickEncounterDialog::enableButtons(bool enabled)
{
    for (QAbstractButton *button : m_buttons->buttons())
        button->setEnabled(enabled || resultOf(button) == 0);
}

void PickEncounterDialog::onClicked(QAbstractButton *button)
{
    done(resultOf(button));
}

void PickEncounterDialog::localSelectionChanged(const QItemSelection &, const QItemSelection &)
{
    enableButtons(m_table->selectionModel()->hasSelection());
}

void PickEncounterDialog::onFilterChanged(QObject *)
{
    m_model.setFilter(m_filter->text(), comboText(m_adventures));
}

void PickEncounterDialog::onEncounterAdventureSelected(int)
{
    m_model.setFilter(m_filter->text(), comboText(m_adventures));
}

void PickEncounterDialog::keyPressEvent(QKeyEvent *event)
{
    if (!sendToPickTable(m_table, event))
        FlatDialog::keyPressEvent(event);
}

void PickEncounterDialog::accept()
{
    m_default->click();
}

const PreparedEncounter *PickEncounterDialog::selectedEncounter() const
{
    const int row = selectedPickRow(m_table);
    return row >= 0 && theEncounters ? theEncounters->at(row) : nullptr;
}

#include "moc_pickencounterdialog.cpp"
