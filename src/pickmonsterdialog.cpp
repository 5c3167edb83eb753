#include "pickmonsterdialog.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include "coreobjects.h"
#include "creature.h"
#include "eventsignaler.h"
#include "messagedialog.h"
#include "monsters.h"
#include "picktable.h"

namespace {

constexpr int FieldsWidth = 220;

QString levelText(const Creature &monster)
{
    return PickMonsterModel::tr("Level %1 %2")
        .arg(QString::number(monster.level()), monster.role())
        .trimmed();
}

} // namespace

// --- the model ---

void PickMonsterModel::attachTo(QTableView *view)
{
    m_view = view;
    setUpPickTable(view, this);
    setFilter(QString());
}

void PickMonsterModel::setFilter(const QString &filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    clearPick(m_view);
    for (int row = 0; row < rowCount(); ++row) {
        const Creature *monster = theMonsters->at(row);
        m_view->setRowHidden(
            row, monster->isDeleted() || !monster->group().contains(filter, Qt::CaseInsensitive));
    }
}

int PickMonsterModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !theMonsters ? 0 : theMonsters->count();
}

int PickMonsterModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PickMonsterModel::data(const QModelIndex &index, int role) const
{
    if (index.model() != this || !hasIndex(index.row(), index.column()) || role != Qt::DisplayRole)
        return {};
    const Creature *monster = theMonsters->at(index.row());
    if (!monster)
        return {};
    switch (index.column()) {
    case NameColumn:
        return monster->group();
    case LevelColumn:
        return levelText(*monster);
    default:
        return monster->typeAndRace();
    }
}

QVariant PickMonsterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case LevelColumn:
        return tr("Level/Role");
    case TypeColumn:
        return tr("Type/Race");
    default:
        return {};
    }
}

// --- the dialog ---

PickMonsterDialog::PickMonsterDialog(QWidget *parent) : FlatDialog(tr("Select a Monster"), parent)
{
    setObjectName(QStringLiteral("pickMonsterDialog"));
    m_table = new QTableView;
    m_table->setObjectName(QStringLiteral("pickMonsterTable"));
    m_model.attachTo(m_table);
    m_filter = filterEdit();
    auto *signaler = new EventSignaler(this);
    m_filter->installEventFilter(signaler);
    // Queued: the event has only reached the filter, not yet the edit.
    connect(signaler, &EventSignaler::doEventReceived, this, &PickMonsterDialog::onFilterChanged,
            Qt::QueuedConnection);

    QHBoxLayout *columns = hBox(vWidget(m_filter, m_table), buildFields());
    columns->setStretch(0, 1);
    columns->setSpacing(12);
    setLayout(vBox(wrap(columns), buildButtons()));
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PickMonsterDialog::localSelectionChanged);
    connect(m_table, &QTableView::doubleClicked, this, [this] { accept(); });
    setFocusProxy(m_filter);
}

QWidget *PickMonsterDialog::buildFields()
{
    m_id = new QLineEdit;
    m_id->setObjectName(QStringLiteral("monsterIdEdit"));
    m_id->setPlaceholderText(tr("Enter monster ID"));
    m_id->setToolTip(tr("All Monsters require a unique ID before entering an encounter"));
    m_alias = new QLineEdit;
    m_alias->setObjectName(QStringLiteral("monsterAliasEdit"));
    m_alias->setPlaceholderText(tr("Enter an Alias (optional)"));
    m_alias->setToolTip(tr("The alias will be displayed in place of the Monster's name"));

    QVBoxLayout *box =
        vBox(label(tr("<b>Monster ID:</b>")), m_id, label(tr("<b>Monster Alias:</b>")), m_alias);
    box->addStretch();
    QWidget *fields = wrap(box);
    fields->setFixedWidth(FieldsWidth);
    return fields;
}

QWidget *PickMonsterDialog::buildButtons()
{
    m_buttons = buttonRow({{tr("Add"), Add}, {tr("Add Hidden"), AddHidden}, {tr("Cancel"), 0}});
    qobject_cast<QPushButton *>(m_buttons->buttons().constFirst())->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::clicked, this, &PickMonsterDialog::onClicked);
    enableButtons(false);
    return m_buttons;
}

void PickMonsterDialog::enableButtons(bool enabled)
{
    for (QAbstractButton *button : m_buttons->buttons())
        button->setEnabled(enabled || resultOf(button) == 0);
}

void PickMonsterDialog::onClicked(QAbstractButton *button)
{
    done(resultOf(button));
}

void PickMonsterDialog::localSelectionChanged(const QItemSelection &, const QItemSelection &)
{
    enableButtons(m_table->selectionModel()->hasSelection());
}

void PickMonsterDialog::onFilterChanged(QObject *)
{
    m_model.setFilter(m_filter->text());
}

void PickMonsterDialog::keyPressEvent(QKeyEvent *event)
{
    if (!sendToPickTable(m_table, event))
        FlatDialog::keyPressEvent(event);
}

void PickMonsterDialog::accept()
{
    m_buttons->buttons().constFirst()->click();
}

void PickMonsterDialog::done(int result)
{
    if (result != 0 && monsterId().isEmpty()) {
        showMessage(tr("Monster ID"),
                    tr("Please enter a unique ID for the %1, before it can be added to the "
                       "encounter.")
                        .arg(selectedGroup().toHtmlEscaped()));
        m_id->setFocus();
        return;
    }
    FlatDialog::done(result);
}

QString PickMonsterDialog::selectedGroup() const
{
    const int row = selectedPickRow(m_table);
    const Creature *monster = row >= 0 && theMonsters ? theMonsters->at(row) : nullptr;
    return monster ? monster->group() : QString();
}

QString PickMonsterDialog::monsterId() const
{
    return m_id->text().trimmed();
}

Creature *PickMonsterDialog::selectedMonster(QString &alias) const
{
    QString group = selectedGroup();
    if (group.isEmpty())
        return nullptr;
    alias = m_alias->text().trimmed();
    return theMonsters->ensureTemplate(group, monsterId(), true);
}

#include "moc_pickmonsterdialog.cpp"
