#include "pickmonsterdialog.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include "creature.h"
#include "messagedialog.h"
#include "monsters.h"
#include "text.h"

namespace {

constexpr int FieldsWidth = 220;

QString levelText(const Creature &monster)
{
    return PickMonsterModel::tr("Level %1 %2")
        .arg(QString::number(monster.level()), shortened(monster.role(), LongestName))
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
        return shortened(monster->group(), LongestName);
    case LevelColumn:
        return levelText(*monster);
    default:
        return shortened(monster->typeAndRace());
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

PickMonsterDialog::PickMonsterDialog(QWidget *parent)
    : PickTableDialog(tr("Select a Monster"), parent)
{
    setObjectName(QStringLiteral("pickMonsterDialog"));
    table()->setObjectName(QStringLiteral("pickMonsterTable"));
    m_model.attachTo(table());

    QHBoxLayout *columns = hBox(vWidget(filter(), table()), buildFields());
    columns->setStretch(0, 1);
    columns->setSpacing(12);
    QWidget *buttons =
        buildButtons({{tr("Add"), Add}, {tr("Add Hidden"), AddHidden}, {tr("Cancel"), 0}});
    setLayout(vBox(wrap(columns), buttons));
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

void PickMonsterDialog::onFilterChanged(QObject *)
{
    m_model.setFilter(filter()->text());
}

void PickMonsterDialog::done(int result)
{
    if (result != 0 && monsterId().isEmpty()) {
        showMessage(tr("Monster ID"),
                    tr("Please enter a unique ID for the %1, before it can be added to the "
                       "encounter.")
                        .arg(asHtml(selectedGroup(), LongestName)));
        m_id->setFocus();
        return;
    }
    FlatDialog::done(result);
}

QString PickMonsterDialog::selectedGroup() const
{
    const int row = selectedRow();
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
