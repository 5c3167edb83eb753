#include "initiativedialog.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QToolButton>
#include <algorithm>

#include "dice.h"
#include "monsters.h"
#include "text.h"

namespace {

constexpr int Columns = 3;
constexpr int ButtonSize = 20;
constexpr int LowestRoll = 1;
constexpr int HighestRoll = 100;
// Sorts a creature that takes no turns to the head of the order.
constexpr int NoTurnsRoll = 1000;

QString expandAllKey()
{
    return QStringLiteral("initiativeDialog/expandAll");
}

bool expandAll()
{
    return QSettings().value(expandAllKey(), false).toBool();
}

} // namespace

// --- the rolls ---

void InitiativeData::add(Creature *creature)
{
    if (!creature->takesTurns()) {
        m_noInitiative << creature->displayName();
        return;
    }
    const int roll = Dice::roll(20) + creature->initBonus();
    if (creature->isMonster())
        addMonster(creature, roll);
    else
        addCharacter(creature, roll);
}

void InitiativeData::addCharacter(Creature *creature, int roll)
{
    Entry entry;
    entry.name = creature->name();
    entry.creature = creature;
    entry.initBonus = creature->initBonus();
    entry.roll = roll;
    m_entries << entry;
}

void InitiativeData::addMonster(Creature *creature, int roll)
{
    const Member member {.creature = creature,
                         .name = creature->name(),
                         .displayName = creature->displayName(),
                         .roll = roll};
    const auto same = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return entry.name == creature->group();
    });
    if (same != m_entries.end()) {
        same->members << member;
        return;
    }
    Creature *source = theMonsters ? theMonsters->findGroup(creature->group()) : nullptr;
    Entry entry;
    entry.expanded = expandAll();
    entry.name = creature->group();
    entry.creature = source && source->takesTurns() ? source : creature;
    entry.initBonus = entry.creature->initBonus();
    entry.roll = roll;
    entry.members << member;
    m_entries << entry;
}

void InitiativeData::setAllExpanded(bool expanded)
{
    for (Entry &entry : m_entries)
        entry.expanded = expanded;
}

QList<CreatureInit> InitiativeData::items() const
{
    QList<CreatureInit> items;
    for (const QString &name : m_noInitiative)
        items << CreatureInit {name, NoTurnsRoll, 0};
    for (const Entry &entry : m_entries) {
        if (!entry.expanded)
            items << CreatureInit {entry.name, entry.roll, Dice::random()};
        else
            for (const Member &member : entry.members)
                items << CreatureInit {member.displayName, member.roll, Dice::random()};
    }
    return items;
}

// --- the form ---

QWidget *InitiativeData::buildForm(int verticalSpacing)
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(verticalSpacing);
    for (int i = 0; i < m_entries.size(); ++i)
        grid->addWidget(buildEntry(m_entries[i]), i / Columns, i % Columns, Qt::AlignTop);
    return wrap(grid);
}

QWidget *InitiativeData::buildEntry(Entry &entry)
{
    entry.button = nullptr;
    entry.spinBox = nullptr;
    for (Member &member : entry.members)
        member.spinBox = nullptr;

    auto *grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    if (entry.members.isEmpty())
        fillCharacter(grid, entry);
    else if (entry.expanded)
        fillMembers(grid, entry);
    else
        fillGroup(grid, entry);
    return wrap(grid);
}

QLabel *InitiativeData::heading(const Entry &entry)
{
    return label(QStringLiteral("%1 (+%2)")
                     .arg(asHtml(entry.name, LongestName), QString::number(entry.initBonus)));
}

void InitiativeData::addGroupHeading(QGridLayout *grid, Entry &entry, const QString &text,
                                     const QString &toolTip)
{
    entry.button =
        toolButton(QString(), ButtonSize, ButtonSize, entry.expanded ? DownArrow : RightArrow);
    entry.button->setText(text);
    entry.button->setAccessibleName(text);
    entry.button->setToolTip(toolTip);
    entry.button->setObjectName(QStringLiteral("expandButton:") + entry.name);
    connect(entry.button, &QToolButton::clicked, this, &InitiativeData::onOpenCloseClicked);
    grid->addWidget(entry.button, 0, 0);
    grid->addWidget(heading(entry), 0, 1);
}

void InitiativeData::fillCharacter(QGridLayout *grid, Entry &entry)
{
    entry.spinBox = rollBox(entry.roll, entry.name);
    grid->addWidget(heading(entry), 0, 0);
    grid->addWidget(entry.spinBox, 1, 0);
}

void InitiativeData::fillGroup(QGridLayout *grid, Entry &entry)
{
    addGroupHeading(grid, entry, tr("Open"),
                    tr("Roll initiative once for all monsters in this group"));
    entry.spinBox = rollBox(entry.roll, entry.name);
    grid->addWidget(label(tr("x %1").arg(entry.members.size())), 1, 0);
    grid->addWidget(entry.spinBox, 1, 1);
}

void InitiativeData::fillMembers(QGridLayout *grid, Entry &entry)
{
    addGroupHeading(grid, entry, tr("Close"), tr("Roll initiative for each monster in this group"));
    for (Member &member : entry.members) {
        member.spinBox = rollBox(member.roll, member.displayName);
        const int row = grid->rowCount();
        grid->addWidget(label(asHtml(member.name, LongestName)), row, 0);
        grid->addWidget(member.spinBox, row, 1);
    }
}

// A roll outside the box's range is kept until the DM changes the box, which shows the nearest
// value.
QSpinBox *InitiativeData::rollBox(int roll, const QString &name)
{
    const int shown = qBound(LowestRoll, roll, HighestRoll);
    QSpinBox *box = spinBox(HighestRoll, LowestRoll, shown, false);
    box->setValue(shown);
    box->setObjectName(QStringLiteral("initiative:") + name);
    box->setAccessibleName(name);
    connect(box, &QSpinBox::valueChanged, this, &InitiativeData::onInitValueChanged);
    return box;
}

QSpinBox *InitiativeData::firstSpinBox() const
{
    if (m_entries.isEmpty())
        return nullptr;
    const Entry &first = m_entries.first();
    return first.spinBox ? first.spinBox : first.members.first().spinBox;
}

Creature *InitiativeData::lookAt(const QWidget *box, QString &message)
{
    const auto look = [&](auto &rolled) -> Creature * {
        const bool asks = rolled.untouched || rolled.roll < LowestRoll;
        rolled.untouched = false;
        message = asks ? tr("Initiative?") : tr("Initiative <b>%1</b>").arg(rolled.roll);
        return rolled.creature;
    };
    for (Entry &entry : m_entries) {
        if (entry.spinBox && entry.spinBox == box)
            return look(entry);
        for (Member &member : entry.members) {
            if (member.spinBox && member.spinBox == box)
                return look(member);
        }
    }
    return nullptr;
}

Creature *InitiativeData::playersCreature(Creature *creature,
                                          const QSet<const Creature *> &kept) const
{
    const auto isKnown = [&kept](const Creature *each) {
        return each && !each->isHidden() && !each->isDisabled() && !kept.contains(each);
    };
    const auto group = std::find_if(m_entries.cbegin(), m_entries.cend(), [&](const Entry &entry) {
        return entry.creature == creature && !entry.expanded && !entry.members.isEmpty();
    });
    if (group == m_entries.cend())
        return isKnown(creature) ? creature : nullptr;
    Creature *shown = nullptr;
    for (const Member &member : group->members) {
        if (!isKnown(member.creature))
            continue;
        if (member.creature->aliasMode() == 0)
            return isKnown(creature) ? creature : member.creature.data();
        if (!shown)
            shown = member.creature;
    }
    return shown;
}

void InitiativeData::onInitValueChanged(int value)
{
    for (Entry &entry : m_entries) {
        if (entry.spinBox && entry.spinBox == sender()) {
            entry.roll = value;
            Q_EMIT doInitValueChanged(entry.creature, value);
        }
        for (Member &member : entry.members) {
            if (member.spinBox && member.spinBox == sender()) {
                member.roll = value;
                Q_EMIT doInitValueChanged(member.creature, value);
            }
        }
    }
}

void InitiativeData::onOpenCloseClicked()
{
    for (Entry &entry : m_entries)
        if (entry.button && entry.button == sender())
            entry.expanded = !entry.expanded;
    Q_EMIT doOpenCloseClicked();
}

// --- the dialog ---

InitiativeDialog::InitiativeDialog(const CreatureList &creatures, QWidget *parent)
    : FlatDialog(tr("Initiative"), parent)
{
    setObjectName(QStringLiteral("initiativeDialog"));
    for (Creature *creature : creatures)
        (creature->isMonster() ? m_monsters : m_characters).add(creature);
    for (const InitiativeData *half : {&m_characters, &m_monsters}) {
        connect(half, &InitiativeData::doInitValueChanged, this,
                &InitiativeDialog::onSpinBoxValueChanged);
        connect(half, &InitiativeData::doOpenCloseClicked, this,
                &InitiativeDialog::onOpenCloseClicked);
    }
    m_holder = vWidget();
    setContent(m_holder);
    rebuildForm();
}

void InitiativeDialog::rebuildForm()
{
    // A button of the old form may have asked for this.
    if (m_form) {
        m_form->hide();
        m_form->deleteLater();
    }
    m_form = buildForm();
    m_holder->layout()->addWidget(m_form);

    QSpinBox *firstBox = m_characters.firstSpinBox();
    if (!firstBox)
        firstBox = m_monsters.firstSpinBox();
    QWidget *first = firstBox;
    if (firstBox)
        firstBox->selectAll(); // the others do so themselves when Tab reaches them
    else
        first = m_form->findChild<QPushButton *>(QStringLiteral("okButton"));
    setFocusProxy(first);
    if (isVisible()) {
        m_form->show();
        first->setFocus();
    }
}

QWidget *InitiativeDialog::buildForm()
{
    QWidget *characters = nullptr;
    if (m_characters.hasEntries())
        characters = groupBox(tr("Heros"), QStringLiteral("herosBox"), m_characters, 5);

    auto *expandBox = new QCheckBox(tr("Roll initiative for all monsters in a group"));
    expandBox->setObjectName(QStringLiteral("expandAllBox"));
    expandBox->setChecked(expandAll());
    connect(expandBox, &QCheckBox::clicked, this, &InitiativeDialog::onAllExpandedClicked);

    QWidget *monsters = nullptr;
    if (m_monsters.hasEntries())
        monsters = groupBox(tr("Monsters"), QStringLiteral("monstersBox"), m_monsters, 2);

    QVBoxLayout *box = vBox(characters, expandBox, monsters, okCancelRow());
    box->setSpacing(10);
    return wrap(box);
}

QWidget *InitiativeDialog::groupBox(const QString &title, const QString &objectName,
                                    InitiativeData &entries, int verticalSpacing)
{
    auto *group = new QGroupBox(title);
    group->setObjectName(objectName);
    group->setLayout(vBox(entries.buildForm(verticalSpacing)));
    return group;
}

void InitiativeDialog::keepFromPlayers(const QList<Creature *> &creatures)
{
    m_kept = QSet<const Creature *>(creatures.cbegin(), creatures.cend());
}

void InitiativeDialog::tellOf(Creature *creature, const QString &message)
{
    Creature *shown = m_monsters.playersCreature(creature, m_kept);
    tellPlayers(shown, shown ? message : QString());
}

int InitiativeDialog::exec()
{
    const QMetaObject::Connection focus =
        connect(qApp, &QApplication::focusChanged, this, &InitiativeDialog::onInitFocusChanged);
    const int result = FlatDialog::exec();
    disconnect(focus);
    tellPlayers(nullptr);
    returnPanel();
    return result;
}

void InitiativeDialog::onInitFocusChanged(QWidget *, QWidget *now)
{
    // Another program may have the focus for a while.
    if (!now)
        return;
    QString message;
    Creature *creature = m_characters.lookAt(now, message);
    if (!creature)
        creature = m_monsters.lookAt(now, message);
    tellOf(creature, message);
    showInPanel(creature);
}

void InitiativeDialog::onSpinBoxValueChanged(Creature *creature, int value)
{
    tellOf(creature, tr("Initiative <b>%1</b>").arg(value));
}

void InitiativeDialog::onOpenCloseClicked()
{
    rebuildForm();
}

void InitiativeDialog::onAllExpandedClicked(bool checked)
{
    QSettings().setValue(expandAllKey(), checked);
    m_monsters.setAllExpanded(checked);
    rebuildForm();
}

#include "moc_initiativedialog.cpp"
