#include "characterform.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QCompleter>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

#include "creature.h"
#include "outcome.h"
#include "terms.h"
#include "text.h"

namespace {

constexpr int MostLevel = 40;
constexpr int MostHP = 9999;
constexpr int MostSurges = 99;
constexpr int LeastBonus = -20;
constexpr int MostValue = 99;
// One below what a box can hold stands for a value that no file states.
constexpr int LeastDefence = 0;
constexpr int LeastScore = 1;

const QStringList classes {
    QStringLiteral("Ardent"),     QStringLiteral("Artificer"),   QStringLiteral("Assassin"),
    QStringLiteral("Avenger"),    QStringLiteral("Barbarian"),   QStringLiteral("Bard"),
    QStringLiteral("Battlemind"), QStringLiteral("Cavalier"),    QStringLiteral("Cleric"),
    QStringLiteral("Druid"),      QStringLiteral("Executioner"), QStringLiteral("Fighter"),
    QStringLiteral("Hexblade"),   QStringLiteral("Hunter"),      QStringLiteral("Invoker"),
    QStringLiteral("Knight"),     QStringLiteral("Mage"),        QStringLiteral("Monk"),
    QStringLiteral("Paladin"),    QStringLiteral("Psion"),       QStringLiteral("Ranger"),
    QStringLiteral("Rogue"),      QStringLiteral("Runepriest"),  QStringLiteral("Scout"),
    QStringLiteral("Seeker"),     QStringLiteral("Sentinel"),    QStringLiteral("Shaman"),
    QStringLiteral("Slayer"),     QStringLiteral("Sorcerer"),    QStringLiteral("Swordmage"),
    QStringLiteral("Thief"),      QStringLiteral("Warden"),      QStringLiteral("Warlock"),
    QStringLiteral("Warlord"),    QStringLiteral("Warpriest"),   QStringLiteral("Wizard")};

const QStringList races {QStringLiteral("Bladeling"),
                         QStringLiteral("Bugbear"),
                         QStringLiteral("Bullywug"),
                         QStringLiteral("Changeling"),
                         QStringLiteral("Deva"),
                         QStringLiteral("Dragonborn"),
                         QStringLiteral("Drow"),
                         QStringLiteral("Duergar"),
                         QStringLiteral("Dwarf"),
                         QStringLiteral("Eladrin"),
                         QStringLiteral("Elf"),
                         QStringLiteral("Genasi"),
                         QStringLiteral("Githyanki"),
                         QStringLiteral("Githzerai"),
                         QStringLiteral("Gnoll"),
                         QStringLiteral("Gnome"),
                         QStringLiteral("Goblin"),
                         QStringLiteral("Goliath"),
                         QStringLiteral("Half-Elf"),
                         QStringLiteral("Half-Orc"),
                         QStringLiteral("Halfling"),
                         QStringLiteral("Hobgoblin"),
                         QStringLiteral("Human"),
                         QStringLiteral("Kalashtar"),
                         QStringLiteral("Kenku"),
                         QStringLiteral("Kobold"),
                         QStringLiteral("Longtooth Shifter"),
                         QStringLiteral("Minotaur"),
                         QStringLiteral("Mul"),
                         QStringLiteral("Orc"),
                         QStringLiteral("Razorclaw Shifter"),
                         QStringLiteral("Revenant"),
                         QStringLiteral("Shadar-kai"),
                         QStringLiteral("Shardmind"),
                         QStringLiteral("Thri-Kreen"),
                         QStringLiteral("Tiefling"),
                         QStringLiteral("Vryloka"),
                         QStringLiteral("Warforged"),
                         QStringLiteral("Wilden")};

const QStringList roles {QStringLiteral("Controller"), QStringLiteral("Defender"),
                         QStringLiteral("Leader"), QStringLiteral("Striker")};

const QStringList alignments {QStringLiteral("Lawful Good"), QStringLiteral("Good"),
                              QStringLiteral("Neutral"), QStringLiteral("Evil"),
                              QStringLiteral("Chaotic Evil")};

} // namespace

// What a field shows is a text or a number of the record, the score of an ability, or a running
// value of the creature.
struct CharacterForm::Field {
    CharacterField field;
    Kind kind;
    const char *name; // of the widget
    const char *label;
    QString CreatureData::*text = nullptr;
    const QStringList *choices = nullptr;
    int CreatureData::*number = nullptr;
    Ability CreatureData::*ability = nullptr;
    int (Creature::*running)() const = nullptr;
    void (Creature::*setRunning)(int) = nullptr;
    int least = 0;
    int most = 0;
    bool mayBeUnstated = false;
};

#define MORVANE_TEXT(field, kind, name, label, member, choices)                                    \
    {                                                                                              \
        CharacterField::field, Kind::kind, name, label, &CreatureData::member, choices             \
    }
#define MORVANE_NUMBER(field, name, label, member, least, most, unstated)                          \
    {                                                                                              \
        CharacterField::field, Kind::Number, name, label, nullptr, nullptr, &CreatureData::member, \
            nullptr, nullptr, nullptr, least, most, unstated                                       \
    }
#define MORVANE_RUNNING(field, name, label, getter, setter, least, most)                           \
    {                                                                                              \
        CharacterField::field, Kind::Number, name, label, nullptr, nullptr, nullptr, nullptr,      \
            &Creature::getter, &Creature::setter, least, most                                      \
    }
#define MORVANE_ABILITY(field, name, label, member)                                                \
    {                                                                                              \
        CharacterField::field, Kind::Number, name, label, nullptr, nullptr, nullptr,               \
            &CreatureData::member, nullptr, nullptr, LeastScore, MostValue, true                   \
    }

// In the order of CharacterField.
const CharacterForm::Field CharacterForm::fields[] = {
    MORVANE_TEXT(Name, Line, "nameEdit", "Name:", name, nullptr),
    MORVANE_TEXT(Class, Combo, "classBox", "Class:", charClass, &classes),
    MORVANE_TEXT(Race, Combo, "raceBox", "Race:", race, &races),
    MORVANE_TEXT(Role, Combo, "roleBox", "Role:", role, &roles),
    MORVANE_NUMBER(Level, "levelBox", "Level:", level, 1, MostLevel, false),
    MORVANE_TEXT(Alignment, Combo, "alignmentBox", "Alignment:", alignment, &alignments),
    MORVANE_TEXT(Languages, Line, "languagesEdit", "Languages:", languages, nullptr),
    MORVANE_NUMBER(ArmourClass, "acBox", "AC", armourClass, LeastDefence, MostValue, true),
    MORVANE_NUMBER(Fortitude, "fortitudeBox", "Fortitude", fortitude, LeastDefence, MostValue,
                   true),
    MORVANE_NUMBER(Reflex, "reflexBox", "Reflex", reflex, LeastDefence, MostValue, true),
    MORVANE_NUMBER(Will, "willBox", "Will", will, LeastDefence, MostValue, true),
    MORVANE_RUNNING(CurrentHP, "currentHPBox", "Hit Points", currHP, setCurrHP, -MostHP, MostHP),
    MORVANE_NUMBER(HP, "hpBox", "Hit Points", maxHP, 0, MostHP, false),
    MORVANE_RUNNING(CurrentSurges, "currentSurgesBox", "Healing Surges", currHS, setCurrHS, 0,
                    MostSurges),
    MORVANE_NUMBER(Surges, "surgesBox", "Healing Surges", maxHS, 0, MostSurges, false),
    MORVANE_NUMBER(SurgeValue, "surgeValueBox", nullptr, hsValue, 0, MostHP, false),
    MORVANE_TEXT(Speed, Line, "speedEdit", "Speed", speed, nullptr),
    MORVANE_NUMBER(Initiative, "initiativeBox", "Initiative", initBonus, LeastBonus, MostValue,
                   false),
    MORVANE_RUNNING(ActionPoints, "actionPointsBox", "Action Points", currAP, setCurrAP, 0,
                    MostSurges),
    MORVANE_NUMBER(Perception, "perceptionBox", "Perception", perception, LeastBonus, MostValue,
                   true),
    MORVANE_NUMBER(Insight, "insightBox", "Insight", insight, LeastBonus, MostValue, true),
    MORVANE_ABILITY(Strength, "strengthBox", "STR", strength),
    MORVANE_ABILITY(Constitution, "constitutionBox", "CON", constitution),
    MORVANE_ABILITY(Dexterity, "dexterityBox", "DEX", dexterity),
    MORVANE_ABILITY(Intelligence, "intelligenceBox", "INT", intelligence),
    MORVANE_ABILITY(Wisdom, "wisdomBox", "WIS", wisdom),
    MORVANE_ABILITY(Charisma, "charismaBox", "CHA", charisma),
};

#undef MORVANE_TEXT
#undef MORVANE_NUMBER
#undef MORVANE_RUNNING
#undef MORVANE_ABILITY

const CharacterForm::Field &CharacterForm::fieldOf(CharacterField field)
{
    return fields[int(field)];
}

CharacterForm::CharacterForm(QWidget *parent) : QWidget(parent)
{
    using F = CharacterField;
    for (const Field &field : fields)
        m_widgets[std::size_t(field.field)] = createWidget(field);
    QWidget *left =
        vWidget(createGroup(tr("Defenses"), {F::ArmourClass, F::Fortitude, F::Reflex, F::Will}),
                createGroup(tr("Abilities"),
                            {F::Strength, F::Constitution, F::Dexterity, F::Intelligence, F::Wisdom,
                             F::Charisma},
                            2));
    QWidget *right =
        vWidget(createGroup(tr("Health"), {F::CurrentHP, F::CurrentSurges, F::SurgeValue}),
                createGroup(tr("Actions"),
                            {F::Speed, F::Initiative, F::ActionPoints, F::Perception, F::Insight}));
    for (QWidget *column : {left, right})
        static_cast<QBoxLayout *>(column->layout())->addStretch();
    setLayout(vBox(createTopFields(), hWidget(left, right)));
    updateTerms();
}

QWidget *CharacterForm::createWidget(const Field &field)
{
    const CharacterField which = field.field;
    const auto changed = [this, which] { Q_EMIT doFieldChanged(which); };
    QWidget *made = nullptr;
    if (field.kind == Kind::Combo) {
        auto *box = new QComboBox;
        box->addItems(*field.choices);
        box->setEditable(true);
        box->setInsertPolicy(QComboBox::NoInsert);
        // What is typed stays as it is: neither completed nor spelled as in the list.
        box->completer()->setCompletionMode(QCompleter::PopupCompletion);
        box->completer()->setCaseSensitivity(Qt::CaseSensitive);
        connect(box, &QComboBox::editTextChanged, this, changed);
        made = box;
    } else if (field.kind == Kind::Line) {
        auto *line = new QLineEdit;
        // A name is compared with others once it is whole.
        if (which == CharacterField::Name)
            connect(line, &QLineEdit::editingFinished, this, changed);
        else
            connect(line, &QLineEdit::textChanged, this, changed);
        made = line;
    } else {
        auto *box = new QSpinBox;
        box->setRange(field.least - (field.mayBeUnstated ? 1 : 0), field.most);
        if (field.mayBeUnstated)
            box->setSpecialValueText(QStringLiteral("\u2013"));
        connect(box, &QSpinBox::valueChanged, this, changed);
        made = box;
    }
    made->setObjectName(QLatin1String(field.name));
    made->setFocusPolicy(Qt::StrongFocus);
    made->installEventFilter(this);
    if (field.label)
        made->setAccessibleName(tr(field.label).remove(u':'));
    return made;
}

QLabel *CharacterForm::labelFor(CharacterField field)
{
    const Field &row = fieldOf(field);
    QLabel *made = label(row.label ? QStringLiteral("<b>%1</b>").arg(tr(row.label)) : QString());
    if (!row.label)
        m_surgeValueLabel = made;
    made->setBuddy(widget(field));
    return made;
}

QWidget *CharacterForm::createTopFields()
{
    using F = CharacterField;
    auto *grid = new QGridLayout;
    int row = 0;
    for (const F field :
         {F::Name, F::Class, F::Race, F::Role, F::Level, F::Alignment, F::Languages}) {
        grid->addWidget(labelFor(field), row, 0);
        grid->addWidget(widget(field), row++, 1);
    }
    grid->setColumnStretch(1, 1);
    return wrap(grid);
}

QGroupBox *CharacterForm::createGroup(const QString &title, const QList<CharacterField> &members,
                                      int columns)
{
    auto *group = new QGroupBox(title);
    auto *grid = new QGridLayout(group);
    const int rows = int(members.size()) / columns;
    for (int i = 0; i < members.size(); ++i) {
        const CharacterField field = members.at(i);
        const int row = i % rows;
        const int column = i / rows * 2;
        grid->addWidget(labelFor(field), row, column);
        grid->addWidget(widget(field), row, column + 1);
        grid->setColumnStretch(column + 1, 1);
        // Behind a running value stands what it can come to.
        if (field == CharacterField::CurrentHP || field == CharacterField::CurrentSurges) {
            grid->addWidget(new QLabel(QStringLiteral("/")), row, 2);
            grid->addWidget(widget(CharacterField(int(field) + 1)), row, 3);
            widget(field)->setAccessibleName(tr("Current %1").arg(tr(fieldOf(field).label)));
        }
    }
    return group;
}

void CharacterForm::updateTerms()
{
    m_surgeValueLabel->setText(
        QStringLiteral("<b>%1</b>").arg(asHtml(term(Term::SurgeValue), LongestName)));
    widget(CharacterField::SurgeValue)->setAccessibleName(term(Term::SurgeValue));
}

// --- between the fields and the creature ---

void CharacterForm::fill(const Field &field, const Creature *creature)
{
    QWidget *target = widget(field.field);
    if (field.text) {
        const QString text = creature ? creature->data().*field.text : QString();
        if (auto *box = qobject_cast<QComboBox *>(target)) {
            if (box->currentText() != text) {
                // The arrow keys go on from the item that is shown.
                box->setCurrentIndex(box->findText(text, Qt::MatchExactly));
                box->setEditText(text);
            }
        } else if (auto *line = qobject_cast<QLineEdit *>(target); line->text() != text) {
            line->setText(text);
        }
        return;
    }
    auto *box = qobject_cast<QSpinBox *>(target);
    if (!creature) {
        box->clear();
        return;
    }
    int value = field.running ? (creature->*field.running)()
        : field.ability       ? (creature->data().*field.ability).score
                              : creature->data().*field.number;
    if (value == NotStated && !field.running)
        value = field.mayBeUnstated ? box->minimum() : 0;
    // An emptied box shows its value again only when the value changes.
    if (box->cleanText().isEmpty() && box->value() == value)
        box->setValue(value == box->maximum() ? value - 1 : value + 1);
    box->setValue(value);
}

void CharacterForm::show(const Creature *creature)
{
    for (const Field &field : fields) {
        fill(field, creature);
        // A text that could not be read is no hero yet: the fields can't be written into it.
        widget(field.field)->setEnabled(creature && !creature->isMonster());
    }
}

QString CharacterForm::text(CharacterField field) const
{
    if (const auto *box = qobject_cast<QComboBox *>(widget(field)))
        return box->currentText();
    const auto *line = qobject_cast<QLineEdit *>(widget(field));
    return line ? line->text() : QString();
}

void CharacterForm::store(CharacterField which, Creature &creature)
{
    const Field &field = fieldOf(which);
    if (field.text) {
        creature.setField(field.text, text(which));
        return;
    }
    const auto *box = qobject_cast<QSpinBox *>(widget(which));
    const bool isUnstated = field.mayBeUnstated && box->value() == box->minimum();
    const int value = isUnstated ? NotStated : box->value();
    if (field.running) {
        (creature.*field.setRunning)(value);
        creature.statBlockChanged(); // the history hears of it with the next command
        return;
    }
    if (field.ability) {
        creature.setAbilityScore(field.ability, value);
        return;
    }
    const int before = creature.data().*field.number;
    creature.setField(field.number, value);
    if (which == CharacterField::HP)
        creature.setCurrHP(afterNewMaximum(creature.currHP(), before, value));
    if (which == CharacterField::Surges)
        creature.setCurrHS(afterNewMaximum(creature.currHS(), before, value));
}

void CharacterForm::focusOnName()
{
    auto *line = qobject_cast<QLineEdit *>(widget(CharacterField::Name));
    line->setFocus();
    line->selectAll();
}

// Who scrolls the form by the wheel doesn't change the number that comes to lie under the mouse.
bool CharacterForm::eventFilter(QObject *object, QEvent *event)
{
    const auto *field = qobject_cast<QWidget *>(object);
    if (event->type() != QEvent::Wheel || !field || field->hasFocus())
        return QWidget::eventFilter(object, event);
    event->ignore();
    return true;
}

#include "moc_characterform.cpp"
