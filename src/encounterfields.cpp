#include "encounterfields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>

#include "creature.h"
#include "difficultybar.h"
#include "encounterdifficulty.h"
#include "encounterlistmodel.h"
#include "global.h"
#include "preparedencounter.h"
#include "readablecolours.h"
#include "text.h"

namespace {

constexpr int LargestParty = 12;
constexpr int HighestLevel = 40;
constexpr int ShortestText = 10; // characters that a box shows at least

// A text that isn't edited, but can be read to its end and copied.
QLineEdit *readOnlyLine(const QString &objectName, const QString &name)
{
    auto *line = new QLineEdit;
    line->setObjectName(objectName);
    line->setAccessibleName(name);
    line->setReadOnly(true);
    line->setFrame(false);
    line->setTextMargins(-2, 0, 0, 0); // where a label's text would begin
    QPalette flat = line->palette();
    flat.setColor(QPalette::Base, Qt::transparent);
    line->setPalette(flat);
    return line;
}

QLineEdit *editLine(const QString &objectName, const QString &name)
{
    auto *line = new QLineEdit;
    line->setObjectName(objectName);
    line->setAccessibleName(name);
    return line;
}

QComboBox *choice(const QString &objectName, const QString &name, const QStringList &items)
{
    auto *box = new QComboBox;
    box->setObjectName(objectName);
    box->setAccessibleName(name);
    box->addItems(items);
    return box;
}

void setKept(QLineEdit *line, GivenText &given, const QString &text)
{
    if (line->text() != text) {
        line->setText(text);
        line->setCursorPosition(0);
    }
    given = {text, line->text()};
}

// Two widgets that belong together, the second taking what room there is.
QWidget *pair(WindowsAndDialogs &builder, QWidget *first, QWidget *second)
{
    QHBoxLayout *box = builder.hBox(first, second);
    box->setStretch(1, 1);
    return builder.wrap(box);
}

} // namespace

// --- an encounter ---

EncounterFields::EncounterFields(QWidget *parent)
    : QGroupBox(tr("Selected Encounter"), parent),
      m_name(editLine(QStringLiteral("encounterNameEdit"), tr("Name"))),
      m_adventure(choice(QStringLiteral("encounterAdventureBox"), tr("Adventure"), {})),
      m_file(readOnlyLine(QStringLiteral("encounterFileLine"), tr("File"))),
      m_description(new QPlainTextEdit)
{
    m_adventure->setEditable(true);
    m_adventure->setInsertPolicy(QComboBox::NoInsert);
    m_adventure->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_adventure->setMinimumContentsLength(ShortestText);
    // One that finished a word by itself would change the adventure before the user has typed it.
    m_adventure->completer()->setCompletionMode(QCompleter::PopupCompletion);
    m_description->setObjectName(QStringLiteral("encounterDescriptionEdit"));
    m_description->setAccessibleName(tr("Description"));
    m_description->setTabChangesFocus(true);
    const int margins =
        2 * (m_description->frameWidth() + int(m_description->document()->documentMargin()));
    m_description->setMinimumHeight(3 * m_description->fontMetrics().lineSpacing() + margins);

    connect(m_name, &QLineEdit::textChanged, this, &EncounterFields::doDataChanged);
    connect(m_adventure, &QComboBox::editTextChanged, this, &EncounterFields::doDataChanged);
    connect(m_description, &QPlainTextEdit::textChanged, this, &EncounterFields::doDataChanged);
    connect(m_name, &QLineEdit::editingFinished, this, &EncounterFields::doDataEntered);
    connect(m_adventure->lineEdit(), &QLineEdit::editingFinished, this,
            &EncounterFields::doDataEntered);
    connect(m_adventure, &QComboBox::activated, this, &EncounterFields::doDataEntered);

    buildLevels();
    auto *grid = new QGridLayout(this);
    const auto addRow = [this, grid](const QString &text, QWidget *field) {
        const int row = grid->rowCount();
        grid->addWidget(label(text), row, 0);
        grid->addWidget(field, row, 1);
    };
    addRow(tr("<b>Name</b>"), m_name);
    addRow(tr("<b>Adventure</b>"), m_adventure);
    addRow(tr("<b>File</b>"), m_file);
    addRow(tr("<b>Description</b>"), m_description);
    grid->itemAtPosition(grid->rowCount() - 1, 0)->setAlignment(Qt::AlignTop);
    grid->setRowStretch(grid->rowCount() - 1, 1);
    addRow(tr("<b>XP</b>"), pair(*this, m_xp, m_xpForEach));
    QHBoxLayout *difficulty = hBox(m_level, m_bar, m_difficulty);
    difficulty->setStretch(2, 1);
    addRow(tr("<b>Level</b>"), wrap(difficulty));
    addRow(tr("<b>Party Size</b>"), m_partySize);
    addRow(tr("<b>Party Level</b>"), m_partyLevel);
    setEncounter(nullptr);
    showNumbers(nullptr);
}

void EncounterFields::buildLevels()
{
    m_xp = label(QString());
    m_xp->setObjectName(QStringLiteral("encounterXpLabel"));
    m_xpForEach = label(QString());
    m_xpForEach->setObjectName(QStringLiteral("xpForEachLabel"));
    m_level = label(QString());
    m_level->setObjectName(QStringLiteral("encounterLevelLabel"));
    m_bar = new DifficultyBar;
    m_bar->setObjectName(QStringLiteral("difficultyBar"));
    m_bar->setAccessibleName(tr("Difficulty"));
    m_difficulty = label(QString());
    m_difficulty->setObjectName(QStringLiteral("difficultyLabel"));

    QStringList sizes;
    for (int size = 1; size <= LargestParty; ++size)
        sizes << QString::number(size);
    m_partySize = choice(QStringLiteral("partySizeBox"), tr("Party Size"), sizes);
    m_partySize->setToolTip(tr("The party size determines the level of the encounter"));
    m_partyLevel = spinBox(HighestLevel, 0, 0, true);
    m_partyLevel->setObjectName(QStringLiteral("partyLevelBox"));
    m_partyLevel->setAccessibleName(tr("Party Level"));
    m_partyLevel->setToolTip(tr("How hard the encounter is depends on the level of the party"));
    setHeroesLevel(0);
    showPartySize();
    connect(m_partySize, &QComboBox::currentIndexChanged, this,
            &EncounterFields::doPartySizeChanged);
    connect(m_partyLevel, &QSpinBox::valueChanged, this, &EncounterFields::doPartyLevelChanged);
}

void EncounterFields::setEncounter(const PreparedEncounter *encounter)
{
    for (QWidget *field : {static_cast<QWidget *>(m_name), static_cast<QWidget *>(m_adventure),
                           static_cast<QWidget *>(m_description)})
        field->setEnabled(encounter);
    setKept(m_name, m_givenName, encounter ? encounter->name() : QString());
    setKept(m_adventure->lineEdit(), m_givenAdventure,
            encounter ? encounter->adventure() : QString());
    const QString description = encounter ? encounter->description() : QString();
    if (m_givenDescription.read(m_description->toPlainText()) != description)
        m_description->setPlainText(description);
    m_givenDescription = {description, m_description->toPlainText()};
    m_file->setText(encounter ? encounter->fileName() : QString());
    m_file->setCursorPosition(0);
}

void EncounterFields::showNumbers(const PreparedEncounter *encounter)
{
    const int level = partyLevel();
    const bool isRated = encounter && level > 0 && !encounter->monsters().isEmpty();
    m_xp->setText(encounter ? QString::number(encounter->xp()) : QString());
    m_level->setText(encounter ? QString::number(encounter->level()) : QString());
    m_xpForEach->setText(
        encounter ? tr("(%1 for each hero)").arg(xpForEachHero(encounter->xp(), partySize()))
                  : QString());
    if (isRated)
        m_bar->setDifficulty(difficultyOf(encounter->level(), level));
    else
        m_bar->clear();
    m_difficulty->setText(isRated ? difficultyText(difficultyOf(encounter->level(), level))
                                  : QString());
    m_bar->setAccessibleDescription(m_difficulty->text());
}

void EncounterFields::setAdventures(const QStringList &adventures)
{
    const QString text = m_adventure->currentText();
    const QSignalBlocker blocker(m_adventure);
    m_adventure->clear();
    m_adventure->addItems(adventures);
    m_adventure->setEditText(text);
}

void EncounterFields::setHeroesLevel(int level)
{
    m_heroesLevel = level;
    m_partyLevel->setSpecialValueText(level > 0 ? tr("%1 (heroes)").arg(level) : tr("unknown"));
}

void EncounterFields::showPartySize()
{
    m_partySize->setCurrentIndex(qMin(::partySize(), LargestParty) - 1);
}

void EncounterFields::editName()
{
    m_name->setFocus();
    m_name->selectAll();
}

QString EncounterFields::name() const
{
    return m_givenName.read(m_name->text());
}

QString EncounterFields::adventure() const
{
    return m_givenAdventure.read(m_adventure->currentText());
}

QString EncounterFields::description() const
{
    return m_givenDescription.read(m_description->toPlainText());
}

int EncounterFields::partySize() const
{
    return m_partySize->currentIndex() + 1;
}

int EncounterFields::partyLevel() const
{
    return m_partyLevel->value() > 0 ? m_partyLevel->value() : m_heroesLevel;
}

// --- a monster ---

EncounterMonsterFields::EncounterMonsterFields(QWidget *parent)
    : QGroupBox(tr("Selected Monster"), parent),
      m_name(readOnlyLine(QStringLiteral("encounterMonsterLine"), tr("Name"))),
      m_xp(label(QString())), m_level(label(QString())), m_fit(label(QString())),
      m_id(editLine(QStringLiteral("monsterIdEdit"), tr("ID"))),
      m_alias(editLine(QStringLiteral("monsterAliasEdit"), tr("Alias"))),
      m_hidden(new QCheckBox(tr("Hide at start of encounter"))),
      m_add(new QPushButton(tr("Add Monster"))), m_remove(new QPushButton(tr("Remove Monster")))
{
    m_xp->setObjectName(QStringLiteral("monsterXpLabel"));
    m_level->setObjectName(QStringLiteral("monsterLevelLabel"));
    m_fit->setObjectName(QStringLiteral("monsterFitLabel"));
    m_id->setToolTip(tr("The ID identifies a Monster uniquely in an encounter"));
    m_alias->setToolTip(tr("Hide the Monster's name by providing an alias"));
    m_hidden->setObjectName(QStringLiteral("monsterHiddenBox"));
    m_hidden->setToolTip(tr("Check if you want this monster to be hidden when the encounter "
                            "starts"));
    m_add->setObjectName(QStringLiteral("addMonsterButton"));
    m_add->setToolTip(tr("Add one more"));
    m_remove->setObjectName(QStringLiteral("removeMonsterButton"));
    m_remove->setToolTip(tr("Remove this monster from the encounter"));
    for (QPushButton *button : {m_add, m_remove})
        button->setAutoDefault(false);

    connect(m_id, &QLineEdit::textChanged, this, &EncounterMonsterFields::doNameChanged);
    connect(m_alias, &QLineEdit::textChanged, this, &EncounterMonsterFields::doDataChanged);
    connect(m_hidden, &QCheckBox::toggled, this, &EncounterMonsterFields::doDataChanged);
    connect(m_id, &QLineEdit::editingFinished, this, &EncounterMonsterFields::doDataEntered);
    connect(m_alias, &QLineEdit::editingFinished, this, &EncounterMonsterFields::doDataEntered);
    connect(m_add, &QPushButton::clicked, this, &EncounterMonsterFields::doAddClicked);
    connect(m_remove, &QPushButton::clicked, this, &EncounterMonsterFields::doRemoveClicked);

    buildNumbering();
    auto *grid = new QGridLayout(this);
    const auto addRow = [this, grid](const QString &text, QWidget *field) {
        const int row = grid->rowCount();
        grid->addWidget(label(text), row, 0);
        grid->addWidget(field, row, 1);
    };
    addRow(tr("<b>Name</b>"), m_name);
    addRow(tr("<b>XP</b>"), m_xp);
    addRow(tr("<b>Level</b>"), pair(*this, m_level, m_fit));
    addRow(tr("<b>ID</b>"), m_id);
    addRow(tr("<b>Alias</b>"), m_alias);
    grid->addWidget(m_hidden, grid->rowCount(), 0, 1, 2);
    grid->addWidget(hWidget(m_add, m_remove), grid->rowCount(), 0, 1, 2);
    // By itself, because its labels are longer than the others.
    auto *numbering = new QGridLayout;
    numbering->setColumnStretch(1, 1);
    numbering->addWidget(label(tr("<b>Default Numbering</b>")), 0, 0);
    numbering->addWidget(m_numbering, 0, 1);
    numbering->addWidget(label(tr("<b>Unique IDs</b>")), 1, 0);
    numbering->addWidget(m_uniqueIds, 1, 1);
    grid->addLayout(numbering, grid->rowCount(), 0, 1, 2);
    setMonster(nullptr, false, nullptr, 0);
}

void EncounterMonsterFields::buildNumbering()
{
    m_numbering = choice(QStringLiteral("numberingBox"), tr("Default Numbering"),
                         {tr("1, 2, 3, ..."), tr("A, B, C, ..."), tr("X1, X2, X3, ...")});
    m_numbering->setToolTip(tr("Select the numbering schema used to generated default IDs"));
    m_uniqueIds = choice(QStringLiteral("uniqueIdsBox"), tr("Unique IDs"),
                         {tr("per Group"), tr("per Encounter")});
    m_uniqueIds->setToolTip(tr("Select if you want IDs to be unique per Monster group or for the "
                               "entire Encounter"));
}

void EncounterMonsterFields::setMonster(const EncounterMonster *monster, bool isGroup,
                                        const Creature *original, int partyLevel)
{
    const EncounterMonster *single = isGroup ? nullptr : monster;
    for (QWidget *field : {static_cast<QWidget *>(m_id), static_cast<QWidget *>(m_alias),
                           static_cast<QWidget *>(m_hidden)})
        field->setEnabled(single);
    m_add->setEnabled(monster);
    m_remove->setEnabled(monster);
    m_name->setText(monster ? monster->group : QString());
    m_name->setCursorPosition(0);
    const bool hasNumbers = monster && original;
    m_xp->setText(hasNumbers ? QString::number(original->xp()) : QString());
    m_level->setText(hasNumbers ? QString::number(original->level()) : QString());
    const QString fit = hasNumbers && partyLevel > 0 && original->level() > 0
        ? fitText(original->level(), partyLevel)
        : QString();
    m_fit->setText(fit.isEmpty() ? fit : tr("(%1)").arg(fit));
    setKept(m_id, m_givenId, single ? single->id : QString());
    setKept(m_alias, m_givenAlias, single ? single->alias : QString());
    m_hidden->setChecked(single && single->hidden);
    setIdRefused(false);
}

void EncounterMonsterFields::setIdRefused(bool refused)
{
    QPalette colours;
    if (refused)
        colours.setColor(QPalette::Text, readableColour(QLatin1String("red"), palette()));
    m_id->setPalette(colours);
    m_id->setAccessibleDescription(refused ? tr("This ID is taken or can't be used.") : QString());
}

void EncounterMonsterFields::editId()
{
    m_id->setFocus();
    m_id->selectAll();
}

void EncounterMonsterFields::setScheme(int scheme)
{
    m_numbering->setCurrentIndex(scheme);
}

QString EncounterMonsterFields::id() const
{
    return m_givenId.read(m_id->text());
}

QString EncounterMonsterFields::alias() const
{
    return m_givenAlias.read(m_alias->text());
}

bool EncounterMonsterFields::isHiddenAtStart() const
{
    return m_hidden->isChecked();
}

int EncounterMonsterFields::scheme() const
{
    return m_numbering->currentIndex();
}

bool EncounterMonsterFields::isPerEncounter() const
{
    return m_uniqueIds->currentIndex() == 1;
}

#include "moc_encounterfields.cpp"
