// links: morvane_ui
//
// A DM who works at random in both library windows, with a fight beside them: what carries no mark
// is as its file has it, the counters are right, no encounter loses a template, and the fight comes
// back with the next start. "--seed N --count M" plays M others from N on.
#include <QClipboard>
#include <QListView>
#include <QPlainTextEdit>
#include <QTreeView>

#include "characterwindow.h"
#include "dice.h"
#include "encounter.h"
#include "encounters.h"
#include "fightfixture.h"
#include "history.h"
#include "managerwindow.h"
#include "monstereditor.h"
#include "randomanswers.h"
#include "testhome.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Of the fight, and so left alone: the log knows it by its name.
const QString Fighter = u"Rat"_s;

// Whatever else a button opens is no part of this.
bool opensFileDialog(const QPushButton *button)
{
    return button->text() == u"Select..." || button->objectName() == u"selectImportDir";
}

template <typename Entry>
QString flagsOf(const Collection<Entry> &collection)
{
    ChangeCounters counted;
    for (int i = 0; i < collection.count(); ++i) {
        const Entry *entry = collection.at(i);
        counted.isNew += entry->isNew() ? 1 : 0;
        counted.isModified += entry->isModified() ? 1 : 0;
        counted.isDeleted += entry->isDeleted() ? 1 : 0;
    }
    return u"%1 %2 %3"_s.arg(counted.isNew).arg(counted.isModified).arg(counted.isDeleted);
}

QString told(const ChangeCounters &counters)
{
    return u"%1 %2 %3"_s.arg(counters.isNew).arg(counters.isModified).arg(counters.isDeleted);
}

// Order and state of those in the fight whom a start still finds.
QStringList fightOf(const QStringList &gone)
{
    QStringList lines {QString::number(theEncounter->isRunning() ? theEncounter->round() : 0)};
    for (Creature *creature : theEncounter->creatures()) {
        const CreatureVitality vitality = creature->liveVitality();
        if (!gone.contains(creature->name()))
            lines << u"%1: %2/%3 %4/%5 %6"_s.arg(creature->displayName())
                         .arg(vitality.currHP)
                         .arg(vitality.maxHP)
                         .arg(vitality.currHS)
                         .arg(vitality.maxHS)
                         .arg(vitality.hsValue);
    }
    return lines;
}

} // namespace

class TestRandomLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void keepsWhatIsMade_data();
    void keepsWhatIsMade();

private:
    void open();
    void act(Chance &chance);
    void actInWindow(QWidget &window, Chance &chance);
    void edit(QPlainTextEdit &text, Chance &chance);
    void fight(Chance &chance);
    void checkTemplates(const QMap<QString, Creature *> &before);
    void checkFiles();
    void restart();

    FightFixture *m_fight = nullptr;
};

void TestRandomLibrary::keepsWhatIsMade_data()
{
    QTest::addColumn<unsigned int>("seed");
    const int count = RandomTest::count(0);
    const unsigned int first = count == 0 ? 101 : RandomTest::seed();
    for (int i = 0; i < qMax(2, count); ++i)
        QTest::addRow("--seed %u", first + i) << first + unsigned(i);
}

void TestRandomLibrary::keepsWhatIsMade()
{
    constexpr int batches = 6;
    constexpr int actions = 150;
    QFETCH(unsigned int, seed);
    Chance chance(seed);
    Dice::seed(seed);
    FightFixture fixture;
    m_fight = &fixture;
    for (const QString &name : {u"Aria"_s, u"Bram"_s, u"Cleo"_s})
        fixture.folder.addCharacter(name);
    for (const QString &group : {Fighter, u"Wolf"_s, u"Ogre"_s})
        fixture.folder.addMonster(group);
    fixture.folder.write(u"Encounters/den.txt"_s,
                         u"name=Den\nadventure=Mill\ndescription=\nRat=A,B\nWolf=1\n"_s);
    open();
    fixture.setParty();
    fixture.addMonster(Fighter, u"A"_s);
    for (int batch = 0; batch < batches; ++batch) {
        for (int i = 0; i < actions && !QTest::currentTestFailed(); ++i)
            act(chance);
        if (!QTest::currentTestFailed())
            checkFiles();
        if (!QTest::currentTestFailed() && batch % 2 == 1)
            restart();
        if (QTest::currentTestFailed())
            return;
    }
}

void TestRandomLibrary::open()
{
    makeManagerWindow = []() -> std::unique_ptr<LibraryWindow> {
        return std::make_unique<ManagerWindow>();
    };
    makeCharacterWindow = []() -> std::unique_ptr<LibraryWindow> {
        return std::make_unique<CharacterWindow>();
    };
    m_fight->open();
    makeManagerWindow = nullptr;
    makeCharacterWindow = nullptr;
    theManagerWindow->libraryWindow()->show();
    theCharacterWindow->libraryWindow()->show();
}

void TestRandomLibrary::act(Chance &chance)
{
    QMap<QString, Creature *> before;
    for (int i = 0; i < theMonsters->count(); ++i)
        before.insert(theMonsters->at(i)->group().toCaseFolded(), theMonsters->at(i));
    {
        RandomAnswers answers(chance);
        if (chance.percent(20))
            fight(chance);
        else if (chance.percent(60))
            actInWindow(*theManagerWindow->libraryWindow(), chance);
        else
            actInWindow(*theCharacterWindow->libraryWindow(), chance);
        QCoreApplication::processEvents();
    }
    checkTemplates(before);
    QCOMPARE(told(theMonsters->counters()), flagsOf(*theMonsters));
    QCOMPARE(told(theEncounters->counters()), flagsOf(*theEncounters));
}

void TestRandomLibrary::actInWindow(QWidget &window, Chance &chance)
{
    auto *monsters = window.findChild<MonsterEditor *>();
    const Creature *selected = monsters ? monsters->selected() : nullptr;
    bool isFighter = selected && selected->group() == Fighter;
    if (const auto *heroes = qobject_cast<CharacterWindow *>(&window))
        isFighter = heroes->selected() && theEncounter->contains(heroes->selected());
    QGuiApplication::clipboard()->setText(
        u"Level %1 Brute XP 50\nMill Foe %2\nHP: %3\nAC 15; Fort 12"_s.arg(chance.upTo(9))
            .arg(chance.upTo(5))
            .arg(chance.upTo(90)));
    switch (chance.upTo(6)) {
    case 0:
    case 1: {
        QList<QPushButton *> buttons = usable<QPushButton>(window);
        buttons.removeIf([isFighter](const QPushButton *button) {
            return opensFileDialog(button) || (isFighter && button->text() == u"Delete");
        });
        if (QPushButton *button = chance.anyOf(buttons))
            button->click();
        break;
    }
    case 2:
        if (QLineEdit *line = chance.anyOf(usable<QLineEdit>(window));
            line && !qobject_cast<QSpinBox *>(line->parent())) {
            line->setText(chance.percent(30) ? QString() : u"Name %1"_s.arg(chance.upTo(9)));
            Q_EMIT line->textEdited(line->text());
            Q_EMIT line->editingFinished();
        }
        break;
    case 3:
        if (QSpinBox *box = chance.anyOf(usable<QSpinBox>(window)))
            box->setValue(chance.upTo(60));
        break;
    case 4:
        if (QAbstractItemView *view = chance.anyOf(usable<QAbstractItemView>(window));
            view && view->model()) {
            QModelIndex index = view->model()->index(chance.upTo(9), 0);
            if (index.isValid() && view->model()->rowCount(index) > 0 && chance.percent(60))
                index = view->model()->index(0, 0, index);
            view->setCurrentIndex(index);
        }
        break;
    case 5:
        if (QComboBox *box = chance.anyOf(usable<QComboBox>(window)); box && box->count() > 0) {
            box->setCurrentIndex(chance.upTo(box->count() - 1));
            Q_EMIT box->activated(box->currentIndex());
        }
        break;
    default:
        if (QPlainTextEdit *text = chance.anyOf(usable<QPlainTextEdit>(window));
            text && !text->isReadOnly() && !(isFighter && monsters))
            edit(*text, chance);
    }
}

void TestRandomLibrary::edit(QPlainTextEdit &text, Chance &chance)
{
    QTextCursor cursor(text.document());
    switch (chance.upTo(3)) {
    case 0:
        text.undo();
        break;
    case 1:
        text.redo();
        break;
    case 2:
        cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        // No file of an encounter holds a name with the sign.
        cursor.insertText((text.toPlainText().contains(u"xp=") ? u"group="_s : QString())
                          + u"Foe "_s + QString::number(chance.upTo(9)));
        break;
    default:
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(u"\nxp=%1"_s.arg(chance.upTo(900)));
    }
}

void TestRandomLibrary::fight(Chance &chance)
{
    const char *const names[] = {"hit",         "heal",      "nextTurn", "startStop",
                                 "stepBack",    "hit",       "nextTurn", "surge",
                                 "stepForward", "shortRest", "hit",      "pickParty"};
    if (const int rows = m_fight->table()->model()->rowCount(); rows > 0)
        m_fight->window().setSelection({chance.upTo(rows - 1)});
    m_fight->hpBox()->setValue(chance.upTo(9));
    m_fight->action(names[chance.upTo(int(std::size(names)) - 1)])->trigger();
}

// An encounter follows a template to its new name.
void TestRandomLibrary::checkTemplates(const QMap<QString, Creature *> &before)
{
    QSet<const Creature *> present;
    for (int i = 0; i < theMonsters->count(); ++i)
        present << theMonsters->at(i);
    for (int i = 0; i < theEncounters->count(); ++i) {
        for (const EncounterMonster &monster : theEncounters->at(i)->monsters()) {
            Creature *known = before.value(monster.group.toCaseFolded());
            QVERIFY2(theMonsters->findGroup(monster.group) || !known || !present.contains(known),
                     qPrintable(monster.group));
        }
    }
}

void TestRandomLibrary::checkFiles()
{
    const auto check = [](const Collection<Creature> &creatures, bool isMonster) {
        for (int i = 0; i < creatures.count(); ++i) {
            const Creature *creature = creatures.at(i);
            if (creature->isNew() || creature->isModified() || creature->isDeleted())
                continue;
            Creature saved;
            QVERIFY2(saved.load(creature->fileName(), isMonster, QString()),
                     qPrintable(creature->fileName()));
            QCOMPARE(creature->statBlock(), saved.statBlock());
            QCOMPARE(creature->level(), saved.level());
        }
    };
    check(*theMonsters, true);
    check(*theCharacters, false);
    for (int i = 0; i < theEncounters->count(); ++i) {
        const PreparedEncounter *encounter = theEncounters->at(i);
        PreparedEncounter saved;
        if (encounter->isNew() || encounter->isModified() || encounter->isDeleted())
            continue;
        QVERIFY2(saved.read(encounter->fileName(), QString()), qPrintable(encounter->fileName()));
        QCOMPARE(encounter->image(false), saved.image(false));
    }
}

// Everything is saved, and the program started again.
void TestRandomLibrary::restart()
{
    // A start plays again what was taken back, and a hero's file that is younger than the log
    // counts.
    theHistory->moveTo(theHistory->eventCount() - 1);
    theManagerWindow->saveAll();
    theCharacterWindow->saveAll();
    QCOMPARE(theMonsters->changedNames() + theCharacters->changedNames()
                 + theEncounters->changedNames(),
             QStringList());
    QStringList heroes;
    for (int i = 0; i < theCharacters->count(); ++i)
        heroes << theCharacters->at(i)->name();
    QStringList gone;
    for (const Creature *creature : theEncounter->creatures())
        if (!creature->isMonster() && !heroes.contains(creature->name()))
            gone << creature->name();
    const QStringList before = fightOf(gone);
    m_fight->close();
    Answer nothingLeft(inMessage(u"Continue"_s));
    open();
    QCOMPARE(fightOf(gone), before);
}

MORVANE_TEST_MAIN(QApplication, TestRandomLibrary)
#include "tst_randomlibrary.moc"
