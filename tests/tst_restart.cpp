// links: morvane_ui morvane_reports
// The fight after the end of the program: everything comes back from the data folder alone.
#include <QJsonObject>

#include "effectevents.h"
#include "fightfixture.h"
#include "fightreport.h"
#include "testhome.h"

namespace {

// What a DM sees of the fight.
QStringList fightAsShown()
{
    QStringList lines {QStringLiteral("round %1").arg(theEncounter->round()),
                       theEncounter->current() ? theEncounter->current()->displayName() : QString(),
                       theEncounter->name()};
    for (const Creature *creature : theEncounter->creatures())
        lines << QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                     .arg(creature->displayName(), creature->healthText(false),
                          creature->conditionsText(true, true, false, false))
                     .arg(creature->currHS())
                     .arg(creature->isHidden())
                     .arg(creature->alias())
                     .arg(creature->initRoll());
    return lines;
}

QStringList historyTexts()
{
    QStringList texts;
    for (int i = 0; i < theHistory->eventCount(); ++i)
        texts << theHistory->eventText(i);
    return texts;
}

} // namespace

class RestartTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void fightSurvivesALostFile();
    void linkedHeroComesBack();
    void editedFileCountsForTheNextCommand();
    void savedChangesAreTheSameHero();
    void namesHoldBrackets();

private:
    void fight();
    void hit(int row, int damage);
    void restart();
    void clearHistory(const QString &button);

    std::unique_ptr<FightFixture> m_fight;
};

void RestartTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addCharacter(QStringLiteral("Bram"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->folder.addMonster(QStringLiteral("Wolf"));
    m_fight->open();
    fight();
}

void RestartTest::hit(int row, int damage)
{
    m_fight->click(row);
    m_fight->hpBox()->setValue(damage);
    m_fight->action("hit")->trigger();
}

void RestartTest::fight()
{
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("B"));
    m_fight->addMonster(QStringLiteral("Wolf"), QStringLiteral("A"));
    m_fight->start({25, 15, 20, 10});
    hit(0, 11);
    m_fight->action("surge")->trigger();
    m_fight->action("heal")->trigger();
    hit(2, 60);
    for (int turn = 0; turn < 6; ++turn)
        m_fight->action("nextTurn")->trigger();
    m_fight->click(1);
    m_fight->action("showHide")->trigger();
    m_fight->action("downInitiative")->trigger();
    hit(4, 3);
}

void RestartTest::restart()
{
    m_fight->close();
    m_fight->open();
}

void RestartTest::fightSurvivesALostFile()
{
    const QStringList order = FightFixture::order();
    const QStringList texts = historyTexts();
    const int round = theEncounter->round();
    m_fight->close();
    QVERIFY(QFile::remove(m_fight->folder.file(QStringLiteral("Monsters/wolf.txt"))));
    QVERIFY(QFile::remove(m_fight->folder.file(QStringLiteral("Characters/bram.txt"))));
    m_fight->open();
    QCOMPARE(FightFixture::order(), order);
    QCOMPARE(historyTexts(), texts);
    QCOMPARE(theEncounter->round(), round);
    int missing = 0;
    for (const Creature *creature : theEncounter->creatures())
        missing += creature->isMissing();
    QCOMPARE(missing, 2);
}

// The file of a character builder changes between two rests, its name at last. Each start reads the
// file of the last rest, and the log must tell what held before.
void RestartTest::linkedHeroComesBack()
{
    m_fight = std::make_unique<FightFixture>();
    const TestDataFolder &folder = m_fight->folder;
    const auto builderFile = [&folder](const QString &name, int hitPoints) {
        folder.write(QStringLiteral("Characters/odo.dnd4e"),
                     QStringLiteral("<D20Character><Details><name>%1</name><Level> 3 </Level>"
                                    "</Details><StatBlock><Stat value=\" %2 \">"
                                    "<alias name=\"Hit Points\"/></Stat></StatBlock>"
                                    "</D20Character>")
                         .arg(name, QString::number(hitPoints)));
    };
    folder.addCharacter(QStringLiteral("Aria"));
    folder.addMonster(QStringLiteral("Rat"));
    folder.write(QStringLiteral("Characters/odo.txt"),
                 QStringLiteral("name=Odo\nimport=odo.dnd4e\nlinked=yes\nclass=Monk\nlevel=3\n"
                                "hit-points=30\nhs-resources=6\n"));
    m_fight->open();
    m_fight->setParty();
    const auto restAndFight = [&](const QString &name, int hitPoints, int damage) {
        builderFile(name, hitPoints);
        m_fight->action("extendedRest")->trigger();
        const Creature *odo = theEncounter->at(1);
        QCOMPARE(odo->name(), name);
        QCOMPARE(odo->currHP(), hitPoints);
        QVERIFY(!odo->isModified());
        QVERIFY(folder.read(QStringLiteral("Characters/odo.txt"))
                    .contains(QStringLiteral("hit-points=%1\r\n").arg(hitPoints).toUtf8()));
        hit(1, damage);
        m_fight->hpBox()->setValue(damage);
        m_fight->action("setTempHP")->trigger();
        const QJsonObject report = fightReport(true);
        const QStringList texts = historyTexts();
        restart();
        QCOMPARE(fightReport(true), report);
        QCOMPARE(historyTexts(), texts);
        QCOMPARE(theEncounter->at(1)->currHP(), hitPoints - damage);
    };
    restAndFight(QStringLiteral("Odo"), 48, 7);
    restAndFight(QStringLiteral("Odo"), 52, 9);
    restAndFight(QStringLiteral("Odo Oak"), 56, 11);
    QVERIFY(!theEncounter->at(1)->isModified());

    // The evening ends with the rest.
    builderFile(QStringLiteral("Odo Ash"), 60);
    m_fight->action("extendedRest")->trigger();
    const QStringList rested = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), rested);
    QVERIFY(!theEncounter->at(1)->isMissing());

    // A level gained between two evenings is taken with the next rest, and not by the start.
    builderFile(QStringLiteral("Odo Elm"), 90);
    const QMap<QString, QByteArray> files = folder.files();
    restart();
    QCOMPARE(fightAsShown(), rested);
    QCOMPARE(folder.files(), files);
    builderFile(QStringLiteral("Odo Ash"), 60);

    // A file that is as it was puts nothing into the log but the rest.
    hit(1, 1);
    const int events = theHistory->eventCount();
    m_fight->action("extendedRest")->trigger();
    hit(1, 1);
    QCOMPARE(theHistory->eventCount(), events + 2);

    // Cleared while the name that a rest brought is taken back.
    builderFile(QStringLiteral("Odo Fir"), 64);
    m_fight->action("extendedRest")->trigger();
    while (theHistory->canStepBack())
        m_fight->action("stepBack")->trigger();
    clearHistory(QStringLiteral("Continue"));
}

void RestartTest::editedFileCountsForTheNextCommand()
{
    const QString file = QStringLiteral("Characters/aria.txt");
    const QByteArray text = m_fight->folder.read(file);
    const Creature *aria = theCharacters->find(QStringLiteral("Aria"));
    const int hp = aria->currHP();
    m_fight->close();
    QByteArray edited = text;
    edited.replace("hit-points=30", "hit-points=20");
    QVERIFY(edited != text);
    m_fight->folder.write(file, QString::fromUtf8(edited).remove(u'\r'));
    m_fight->open();
    aria = theCharacters->find(QStringLiteral("Aria"));
    QCOMPARE(aria->maxHP(), 20);
    QCOMPARE(aria->currHP(), hp);
    QVERIFY(!aria->isModified());
    QCOMPARE(m_fight->folder.read(file), edited);
    // Nor does looking through the history take it away again, or have it count for old events.
    const QString statBlock = aria->statBlock();
    while (theHistory->canStepBack())
        m_fight->action("stepBack")->trigger();
    while (theHistory->canStepForward())
        m_fight->action("stepForward")->trigger();
    QCOMPARE(aria->maxHP(), 20);
    QCOMPARE(aria->currHP(), hp);
    QCOMPARE(aria->statBlock(), statBlock);
    QVERIFY(!aria->isModified());
    const int events = theHistory->eventCount();
    hit(1, 1);
    QCOMPARE(historyTexts().mid(events, 1), QStringList(QStringLiteral("Changed Aria: Max HP 20")));
    QCOMPARE(theHistory->eventCount(), events + 2);
    // The log knows of it now, and is newer than the file.
    const QStringList shown = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), shown);
    m_fight->action("stepBack")->trigger();
    m_fight->action("stepBack")->trigger();
    QCOMPARE(theCharacters->find(QStringLiteral("Aria"))->maxHP(), 30);

    // Also of a hero who isn't in the fight when the command comes.
    appendEvent<RemoveCreaturesEvent>(theEncounter->creatures().list());
    m_fight->close();
    m_fight->folder.write(file,
                          QString::fromUtf8(text).remove(u'\r').replace(
                              QStringLiteral("hit-points=30"), QStringLiteral("hit-points=44")));
    m_fight->open();
    m_fight->addMonster(QStringLiteral("Wolf"), QStringLiteral("B"));
    restart();
    QCOMPARE(theCharacters->find(QStringLiteral("Aria"))->maxHP(), 44);
}

// Edited in the library while they fight, and saved: the log hears of it first.
void RestartTest::savedChangesAreTheSameHero()
{
    Creature *aria = theCharacters->find(QStringLiteral("Aria"));
    const int hp = aria->currHP();
    aria->rename(QStringLiteral("Zoe"));
    aria->setField(&CreatureData::maxHP, 44);
    theCharacters->resort(aria);
    theCharacters->saveAll();
    const QStringList saved = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), saved);
    aria = theCharacters->find(QStringLiteral("Zoe"));
    QVERIFY(aria && theEncounter->contains(aria) && !aria->isMissing());
    QCOMPARE(aria->maxHP(), 44);
    QCOMPARE(aria->currHP(), hp);

    // The same at the end of the program, behind a rename that no save knows of.
    aria->rename(QStringLiteral("Yva"));
    hit(0, 2);
    aria->rename(QStringLiteral("Zed"));
    aria->setField(&CreatureData::hsValue, 9);
    Answer answer(inMessage(QStringLiteral("Save Changes and Quit")));
    QVERIFY(m_fight->window().close());
    QVERIFY(answer.wasAnswered);
    const QStringList closed = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), closed);
    for (const Creature *creature : theEncounter->creatures())
        QVERIFY2(!creature->isMissing(), qPrintable(creature->displayName()));
    // Names change hands, and one who isn't here takes one of them.
    Creature *zed = theCharacters->find(QStringLiteral("Zed"));
    Creature *bram = theCharacters->find(QStringLiteral("Bram"));
    zed->rename(QStringLiteral("Bram"));
    bram->rename(QStringLiteral("Zed"));
    theCharacters->saveAll();
    hit(0, 1);
    Creature *cole = theCharacters->addNew(theCharacters->newCharacter());
    zed->rename(QStringLiteral("Yva"));
    cole->rename(QStringLiteral("Bram"));
    theCharacters->saveAll();
    hit(1, 1);
    const QStringList swapped = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), swapped);
    QVERIFY(!theEncounter->contains(theCharacters->find(QStringLiteral("Bram"))));
    // A command that drops renames from the log has those logged anew that the files know.
    while (theHistory->canStepBack())
        m_fight->action("stepBack")->trigger();
    for (int event = 0; event < 8; ++event)
        m_fight->action("stepForward")->trigger();
    hit(1, 1);
    const QStringList taken = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), taken);
    QVERIFY(theEncounter->contains(theCharacters->find(QStringLiteral("Yva"))));

    // A save without such changes leaves the log alone.
    const QByteArray log = m_fight->folder.read(QStringLiteral("history.log"));
    theCharacters->at(0)->setField(&CreatureData::role, QStringLiteral("Leader"));
    theCharacters->saveAll();
    QCOMPARE(m_fight->folder.read(QStringLiteral("history.log")), log);
}

void RestartTest::namesHoldBrackets()
{
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Sir Bob (Paladin)"));
    for (const char *group : {"Rat", "Rat (swarm)", "Rat (swarm) (big)"})
        m_fight->folder.addMonster(QString::fromLatin1(group));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat (swarm)"), QStringLiteral("1"));
    m_fight->addMonster(QStringLiteral("Rat (swarm) (big)"), QStringLiteral("2"));
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("a (b)"));
    m_fight->start({25, 15, 20, 10});
    hit(0, 3);
    const QStringList shown = fightAsShown();
    restart();
    QCOMPARE(fightAsShown(), shown);
    for (const Creature *creature : theEncounter->creatures())
        QVERIFY(!creature->isMissing());
}

// What is left is what a fresh start gives.
void RestartTest::clearHistory(const QString &button)
{
    Answer answer(inMessage(button));
    m_fight->action("newHistory")->trigger();
    QVERIFY(answer.wasAnswered);
    const QJsonObject report = fightReport(true);
    restart();
    QCOMPARE(fightReport(true).value(QStringLiteral("creatures")),
             report.value(QStringLiteral("creatures")));
    QCOMPARE(theEncounter->count(), 0);
}

MORVANE_TEST_MAIN(QApplication, RestartTest)
#include "tst_restart.moc"
