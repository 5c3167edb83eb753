// What a new user meets first must load without a word and keep to the rules of the game.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSet>

#include "characters.h"
#include "coreobjects.h"
#include "creature.h"
#include "encounters.h"
#include "monsters.h"
#include "paths.h"
#include "preparedencounter.h"
#include "scriptedwindows.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

const QString demoData = QStringLiteral(SOURCE_ROOT "/demo-data");

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class DemoDataTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init() { failOnWarnings(); }
    void loadsWithoutComplaint();
    void filesAreSafeToRewrite();
    void creatures_data();
    void creatures();
    void importIsTheHerosOwn();
    void portraitsAreAllUsedAndDrawnHere();
    void encounters();

private:
    QList<Creature *> allCreatures() const;

    std::unique_ptr<CoreObjects> m_objects;
    ScriptedWindows m_windows;
    QList<LoadResult> m_results;
};

void DemoDataTest::initTestCase()
{
    m_objects = std::make_unique<CoreObjects>();
    dataRoot = demoData;
    NoProgress progress;
    m_results << theCharacters->load(demoData, demoData, progress)
              << theMonsters->load(demoData, demoData, progress)
              << theEncounters->load(demoData, demoData, progress);
}

void DemoDataTest::cleanupTestCase()
{
    m_objects.reset();
    dataRoot = QString();
}

QList<Creature *> DemoDataTest::allCreatures() const
{
    QList<Creature *> creatures;
    for (int i = 0; i < theCharacters->count(); ++i)
        creatures << theCharacters->at(i);
    for (int i = 0; i < theMonsters->count(); ++i)
        creatures << theMonsters->at(i);
    return creatures;
}

void DemoDataTest::loadsWithoutComplaint()
{
    QCOMPARE(m_results, QList<LoadResult>(3, LoadResult::Loaded));
    QCOMPARE(m_windows.shown, QStringList());
    QCOMPARE(theCharacters->count(), 6);
    QCOMPARE(theMonsters->count(), 19);
    QCOMPARE(theEncounters->count(), 4);
}

void DemoDataTest::filesAreSafeToRewrite()
{
    // The program writes CR LF; a file that came without would change as a whole at its first save.
    for (const char *folder : {"Characters", "Monsters", "Encounters"}) {
        const QDir dir(demoData + u'/' + QLatin1String(folder));
        for (const QFileInfo &file : dir.entryInfoList(QDir::Files)) {
            const QByteArray bytes = readFile(file.filePath());
            QVERIFY2(bytes.endsWith("\r\n") && bytes.count('\n') == bytes.count("\r\n")
                         && bytes.count('\r') == bytes.count("\r\n"),
                     qPrintable(file.fileName()));
        }
    }
}

void DemoDataTest::creatures_data()
{
    QTest::addColumn<Creature *>("creature");
    for (Creature *creature : allCreatures())
        QTest::newRow(qPrintable(creature->fileName())) << creature;
}

void DemoDataTest::creatures()
{
    QFETCH(Creature *, creature);
    QVERIFY(!creature->isInvalid());
    QVERIFY(!creature->isMissing());
    QCOMPARE(creature->currHP(), creature->maxHP());
    QVERIFY(!creature->portrait().isNull());
    QCOMPARE(QImage(portraitPath(creature->portraitFile())).size(), QSize(300, 300));
    // An edit of one field writes a hero's file anew from all of them.
    QVERIFY(creature->isMonster() || creature->generateText() == creature->statBlock());
}

// A rest rereads it, and must not change the hero of a new user.
void DemoDataTest::importIsTheHerosOwn()
{
    Creature *maeve = theCharacters->find(u"Maeve Ashdown"_s);
    QVERIFY(maeve && maeve->isLinked());
    QVERIFY(maeve->refreshFromImport(maeve->importFile()));
    QVERIFY(!maeve->isModified());
    QCOMPARE(maeve->statBlock(), maeve->savedStatBlock());
}

void DemoDataTest::portraitsAreAllUsedAndDrawnHere()
{
    QSet<QString> named;
    for (const Creature *creature : allCreatures())
        named << creature->portraitFile();
    const QStringList shipped = QDir(demoData + u"/Portraits").entryList(QDir::Files);
    QCOMPARE(QSet<QString>(shipped.begin(), shipped.end()), named);
    for (const QString &name : shipped) {
        const QString source = QFileInfo(name).completeBaseName() + u".svg";
        QVERIFY2(QFile::exists(QStringLiteral(SOURCE_ROOT "/images/portraits/") + source),
                 qPrintable(source));
    }
}

void DemoDataTest::encounters()
{
    for (int i = 0; i < theEncounters->count(); ++i) {
        const PreparedEncounter &encounter = *theEncounters->at(i);
        QVERIFY(!encounter.adventure().isEmpty());
        QVERIFY(encounter.description().contains(u'\n'));
        QSet<QString> names;
        for (const EncounterMonster &monster : encounter.monsters()) {
            QVERIFY2(theMonsters->findGroup(monster.group), qPrintable(monster.group));
            names << monster.group + u'/' + monster.id;
        }
        QCOMPARE(names.size(), encounter.monsters().size());
        // Level and XP in the file are those worked out from the library, for a party of five.
        QCOMPARE(encounter.image(true), readFile(encounterPath(encounter.fileName())));
    }
}

MORVANE_TEST_MAIN(QGuiApplication, DemoDataTest)
#include "tst_demodata.moc"
