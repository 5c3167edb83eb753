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
#include "encounter.h"
#include "history.h"
#include "paths.h"
#include "tables.h"
#include "testdata.h"
#include "testhome.h"

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
        result << path + it.fileInfo().lastModified().toString(Qt::ISODateWithMs)
                + QString::fromLatin1(bytes.toHex());
    }
    result.sort();
    return result;
}

} // namespace

class InspectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void tellsEachPosition();
    void tellsTheLibrary();
    void refuses();
    void leavesNoTrace_data();
    void leavesNoTrace();

private:
    Run fight(const QStringList &more = {}) const;

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

Run InspectTest::fight(const QStringList &more) const
{
    return inspect(QStringList {u"fight"_s, m_folder->path()} + more);
}

// Each position looks as it does in the running program at that position.
void InspectTest::tellsEachPosition()
{
    QVERIFY(QFile::copy(QStringLiteral(SOURCE_ROOT "/fuzz/corpus/log/good-every-event.log"),
                        m_folder->file(u"history.log"_s)));
    QVERIFY(theHistory->load());
    const Run run = fight();
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(fight().out, run.out);
    QCOMPARE(run.object()[u"header"][u"version"].toString(), u"1.5.09 Beta"_s);
    QCOMPARE(run.object()[u"position"].toInt(-9), theHistory->position());
    for (int at = -1; at < theHistory->eventCount(); ++at) {
        theHistory->moveTo(at);
        const QJsonObject report = fight({u"--at"_s, QString::number(at)}).object();
        QCOMPARE(report[u"position"].toInt(-9), at);
        const QJsonValue encounter = report[u"encounter"];
        QCOMPARE(encounter[u"name"].toString(), theEncounter->name());
        QCOMPARE(encounter[u"currentIndex"].toInt(-9), theEncounter->currentIndex());
        QCOMPARE(strings(encounter[u"order"]), displayNamesOf(theEncounter->creatures().list()));
        QCOMPARE(strings(report[u"players"][u"kills"]),
                 displayNamesOf(theEncounter->playersView().kills.values()));
        for (Creature *creature : theEncounter->creatures()) {
            const QJsonObject told = report[u"creatures"][creature->displayName()].toObject();
            QCOMPARE(told[u"currHP"].toInt(-99), creature->currHP());
            QCOMPARE(told[u"lastHitBy"].toString(), creature->lastHitBy());
            QCOMPARE(told[u"status"].toString(), creature->statusText());
        }
    }
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
    useTable(u"inspectedlogs"_s, {"log", "told"});
}

void InspectTest::leavesNoTrace()
{
    QFETCH(QString, log);
    if (log.isEmpty()) {
        QVERIFY(QDir(m_folder->file(u"Encounters"_s)).removeRecursively());
    } else {
        QFile file(m_folder->file(u"history.log"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(QByteArray::fromHex(log.toLatin1())) > 0);
    }
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

    const Run run = fight();
    QCOMPARE(run.exitCode, 0);
    const QJsonObject report = run.object();
    QTEST(u"%1 %2 %3"_s.arg(report[u"header"].isObject())
              .arg(report[u"known"].toBool())
              .arg(report[u"events"].toArray().size()),
          "told");
    QCOMPARE(inspect({u"creature"_s, m_folder->file(u"Characters/odo.dnd4e"_s)}).exitCode, 0);
    QCOMPARE(fight({u"--at"_s, u"-1"_s}).exitCode, 0);
    QCOMPARE(inspect({u"encounters"_s, m_folder->path()}).exitCode, 0);
    QCOMPARE(inspect({u"creature"_s, m_folder->file(u"Monsters/cave-rat.txt"_s)}).exitCode, 0);
    QCOMPARE(traces(m_folder->path()), before);
}

MORVANE_TEST_MAIN(QGuiApplication, InspectTest)

#include "tst_inspect.moc"
