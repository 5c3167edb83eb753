// The inspector as it is called: what it prints, what it refuses, and that it leaves no trace.
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <sys/stat.h>

#include "characters.h"
#include "coreobjects.h"
#include "creaturelist.h"
#include "datatable.h"
#include "encounter.h"
#include "event.h"
#include "history.h"
#include "monsters.h"
#include "paths.h"
#include "rosterevents.h"
#include "testdata.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

using namespace Qt::StringLiterals;

namespace {

struct Run {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    QJsonObject object() const { return QJsonDocument::fromJson(out).object(); }
    QJsonArray array() const { return QJsonDocument::fromJson(out).array(); }
};

Run inspect(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(BINARY_ROOT "/morvane-inspect"), arguments);
    if (!process.waitForFinished(60000))
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QStringList strings(const QJsonValue &array)
{
    return array.toVariant().toStringList();
}

QStringList displayNamesOf(const QList<Creature *> &creatures)
{
    QStringList names;
    for (const Creature *creature : creatures)
        names << creature->displayName();
    return names;
}

// Everything that can be told of a folder from outside.
QStringList traces(const QString &folder)
{
    QStringList result;
    for (QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
         it.hasNext();) {
        const QString path = it.next();
        QFile file(path);
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        result << path + u' ' + it.fileInfo().lastModified().toString(Qt::ISODateWithMs) + u' '
                + QString::fromLatin1(bytes.toHex());
    }
    result.sort();
    return result;
}

QByteArray eventTypeField(int type)
{
    QByteArray field = QByteArray::fromHex("2c0104"); // tag 300, four bytes
    for (int shift = 0; shift < 32; shift += 8)
        field += char(type >> shift);
    return field;
}

} // namespace

class InspectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void tellsTheFight();
    void tellsEachPosition();
    void stopsAtAnUnknownEvent();
    void tellsTheLibrary();
    void refuses();
    void leavesNoTrace_data();
    void leavesNoTrace();

private:
    void playFight();
    Run fight(const QStringList &more = {}) const;
    void writeLog(const QByteArray &bytes) const;

    std::unique_ptr<TestDataFolder> m_folder;
    std::unique_ptr<CoreObjects> m_objects;
};

void InspectTest::init()
{
    failOnWarnings();
    m_folder = std::make_unique<TestDataFolder>();
    m_folder->addCharacter(u"Aria"_s, 30, 4);
    m_folder->addCharacter(u"Bran"_s, 25, 1);
    m_folder->addMonster(u"Cave Rat"_s, 12, 3);
    m_folder->write(u"Encounters/cellar.txt"_s,
                    QStringLiteral("name=The Cellar\nadventure=Below\ndescription=Dark\\nand "
                                   "damp\nCave Rat=1,2\nalias#2=Something\nhidden#2=true\n"));
    m_objects = std::make_unique<CoreObjects>();
    m_folder->load();
}

void InspectTest::cleanup()
{
    m_objects.reset();
    m_folder.reset();
}

// Aria and Bran against two rats, one of which dies.
void InspectTest::playFight()
{
    ObjectStream *stream = theHistory->getStream();
    QVERIFY(stream);
    QString group = u"Cave Rat"_s;
    CreatureList rats;
    rats.insertAt(0, theMonsters->ensureTemplate(group, u"1"_s, true));
    rats.insertAt(1, theMonsters->ensureTemplate(group, u"2"_s, true));
    CreatureList party;
    party.insertAt(0, theCharacters->at(0));
    party.insertAt(1, theCharacters->at(1));

    theHistory->doEvent(new SetPartyEvent(party, false, {}, stream));
    EncounterEntry entry;
    entry.name = u"The Cellar"_s;
    theHistory->doEvent(new SetEncounterEvent(entry, rats, false, stream));
    theHistory->doEvent(
        new StartEncounterEvent({{u"Aria"_s, 20, 0}, {u"Bran"_s, 10, 0}},
                                {{u"Cave Rat (1)"_s, 15, 0}, {u"Cave Rat (2)"_s, 5, 0}}, stream));
    theHistory->doEvent(new DamageEvent(party.at(0), rats.at(1), 40, stream));
    theHistory->doEvent(new NextTurnEvent(stream, false));
    theHistory->doEvent(new DamageEvent(rats.at(0), party.at(0), 9, stream));
    theHistory->doEvent(new HealEvent(nullptr, party.at(0), 1, 4, stream));
}

Run InspectTest::fight(const QStringList &more) const
{
    return inspect(QStringList {u"fight"_s, m_folder->path()} + more);
}

void InspectTest::writeLog(const QByteArray &bytes) const
{
    QFile file(m_folder->file(u"history.log"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void InspectTest::tellsTheFight()
{
    playFight();
    const Run run = fight();
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(fight().out, run.out);

    const QJsonObject report = run.object();
    QCOMPARE(report[u"header"][u"version"].toString(), u"1.5.09 Beta"_s);
    QCOMPARE(report[u"known"].toBool(), true);
    QCOMPARE(report[u"encounter"][u"name"].toString(), u"The Cellar"_s);
    QCOMPARE(strings(report[u"players"][u"kills"]),
             displayNamesOf(theEncounter->playersView().kills.values()));
    const QJsonObject aria = report[u"creatures"][u"Aria"].toObject();
    QCOMPARE(aria[u"currHP"].toInt(), 25);
    QCOMPARE(aria[u"lastHitBy"].toString(), u"Cave Rat (1)"_s);
}

// Each position looks as it does in the running program at that position.
void InspectTest::tellsEachPosition()
{
    playFight();
    const int last = theHistory->eventCount() - 1;
    for (int at = -1; at <= last; ++at) {
        theHistory->moveTo(at);
        const QJsonObject report = fight({u"--at"_s, QString::number(at)}).object();
        QCOMPARE(report[u"position"].toInt(-9), at);
        QCOMPARE(report[u"events"].toArray().size(), last + 1);
        QCOMPARE(report[u"encounter"][u"currentIndex"].toInt(-9), theEncounter->currentIndex());
        QCOMPARE(strings(report[u"encounter"][u"order"]),
                 displayNamesOf(theEncounter->creatures().list()));
        for (Creature *creature : theEncounter->creatures()) {
            const QJsonObject told = report[u"creatures"][creature->displayName()].toObject();
            QCOMPARE(told[u"currHP"].toInt(-99), creature->currHP());
            QCOMPARE(told[u"status"].toString(), creature->statusText());
        }
    }
    QCOMPARE(fight().object()[u"position"].toInt(-9), last);
}

void InspectTest::stopsAtAnUnknownEvent()
{
    playFight();
    const int count = theHistory->eventCount();
    theHistory->clear();
    QByteArray log = m_folder->read(u"history.log"_s);
    log.chop(2);
    writeLog(log + eventTypeField(999) + QByteArray(2, '\0'));
    const QJsonObject report = fight().object();
    QCOMPARE(report[u"known"].toBool(), false);
    QCOMPARE(report[u"events"].toArray().size(), count);
}

void InspectTest::tellsTheLibrary()
{
    const QJsonObject cellar =
        inspect({u"encounters"_s, u"--party"_s, u"1"_s, m_folder->path()}).array()[0].toObject();
    QCOMPARE(cellar[u"description"].toString(), u"Dark\nand damp"_s);
    QCOMPARE(cellar[u"level"].toInt(), 5);
    QCOMPARE(cellar[u"monsters"][1][u"alias"].toString(), u"Something"_s);
    const QString path = m_folder->file(u"Monsters/cave-rat.txt"_s);
    const auto tell = [&path] { return inspect({u"creature"_s, path}).array()[0].toObject(); };
    QVERIFY(tell()[u"valid"].toBool());
    QCOMPARE(tell()[u"record"][u"maxHP"].toInt(), 12);
    // Of a giant nothing is kept.
    QVERIFY(QFile::resize(path, 17 * 1024 * 1024));
    QVERIFY(!tell()[u"valid"].toBool());
    QCOMPARE(tell()[u"record"][u"group"].toString(), QString());
}

void InspectTest::refuses()
{
    QVERIFY(QDir().mkpath(m_folder->file(u"piped"_s)));
    const QByteArray pipe = QFile::encodeName(historyPath(m_folder->file(u"piped"_s)));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    for (const char *each :
         {"", "monsters FOLDER", "fight", "fight FOLDER/nowhere", "fight FOLDER/piped",
          "encounters FOLDER/Monsters/cave-rat.txt", "fight FOLDER FOLDER", "fight FOLDER --at",
          "fight FOLDER --at last", "fight FOLDER --at 0", "encounters FOLDER --party 0",
          "creature", "creature FOLDER/Monsters/cave-rat.txt FOLDER/x.txt", "creature FOLDER"}) {
        const QString arguments = QString::fromLatin1(each).replace(u"FOLDER"_s, m_folder->path());
        const Run run = inspect(arguments.split(u' ', Qt::SkipEmptyParts));
        QVERIFY2(run.exitCode == 2, each);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err.count('\n'), 1);
    }
}

void InspectTest::leavesNoTrace_data()
{
    addColumns<QByteArray, bool>({"log", "complete"});
    const QByteArray header = QByteArray::fromHex("020004010000000300040000000004000b")
        + "1.5.09 Beta" + QByteArray::fromHex("050013") + "2026-01-31-20-15-00"
        + QByteArray::fromHex("010000");
    QByteArray tooNew = header;
    tooNew[3] = 2;
    QTest::newRow("no log") << QByteArray() << true;
    QTest::newRow("no Encounters folder") << QByteArray() << false;
    QTest::newRow("heading only") << header << true;
    QTest::newRow("no heading") << QByteArray("rubbish") << true;
    QTest::newRow("heading cut short") << header.left(20) << true;
    QTest::newRow("too new") << tooNew + QByteArray(2, '\0') << true;
    // The party, Odo among them, and a rest.
    QTest::newRow("rest")
        << header
            + QByteArray::fromHex(
                "2c01041e000000ff01034f646f00020400000000c90004010000006700034f646f68"
                "0000a1000400000000a2000400000000a00000c80000fe01002c01041a000000e00100")
        << true;
    QTest::newRow("unknown event") << header + eventTypeField(999) << true;
    QTest::newRow("record cut short") << header + eventTypeField(4) << true;
}

void InspectTest::leavesNoTrace()
{
    auto [log, complete] = fetch<QByteArray, bool>({"log", "complete"});
    if (!log.isEmpty())
        writeLog(log);
    if (!complete)
        QVERIFY(QDir(m_folder->file(u"Encounters"_s)).removeRecursively());
    // A hero whose builder's file has changed and tells of a picture elsewhere.
    m_folder->write(u"stray.xpm"_s,
                    u"/* XPM */ static char*x[]={\"1 1 1 1\",\"a c #f00\",\"a\"};"_s);
    m_folder->write(u"Characters/odo.dnd4e"_s,
                    QStringLiteral("<D20Character><Details><name>Odo</name><Level>3</Level>"
                                   "<Portrait>%1</Portrait></Details></D20Character>")
                        .arg(m_folder->file(u"stray.xpm"_s)));
    m_folder->write(
        u"Characters/odo.txt"_s,
        u"name=Odo\nimport=odo.dnd4e\nlinked=yes\nclass=Monk\nlevel=2\nhit-points=30\n"_s);
    const QStringList before = traces(m_folder->path());

    const Run told = fight();
    QCOMPARE(told.exitCode, 0);
    QCOMPARE(inspect({u"creature"_s, m_folder->file(u"Characters/odo.dnd4e"_s)}).exitCode, 0);
    QCOMPARE(told.object()[u"header"].isObject(),
             log.size() > 40); // a whole heading
    QCOMPARE(fight({u"--at"_s, u"-1"_s}).exitCode, 0);
    QCOMPARE(inspect({u"encounters"_s, m_folder->path()}).exitCode, 0);
    QCOMPARE(inspect({u"creature"_s, m_folder->file(u"Monsters/cave-rat.txt"_s)}).exitCode, 0);
    QCOMPARE(traces(m_folder->path()), before);
}

MORVANE_TEST_MAIN(QGuiApplication, InspectTest)

#include "tst_inspect.moc"
