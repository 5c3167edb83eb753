// The architecture, checked on the sources themselves: who may include whom. The rooms and what
// each may use stand in the list that the build is made from.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype largestCircle = 3;

struct Room {
    QString library;
    QStringList uses; // as listed
};

struct House {
    QMap<QString, Room> rooms;
    QStringList order; // lowest first
    QMap<QString, QString> roomOf; // by file name
};

// What one source file includes.
struct Includes {
    QStringList own; // in quotes, without what the toolkit's tools generate
    QStringList foreign; // in angle brackets
};
using Sources = QMap<QString, Includes>; // by file name

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

House readHouse(QString cmake)
{
    cmake.remove(QRegularExpression(u"#[^\n]*"_s));
    static const QRegularExpression call(
        u"\\broom\\((\\w+)\\s+LIBRARY\\s+(\\w+)(?:\\s+USES\\s+([\\w\\s]*?))?\\s+FILES([^)]*)\\)"_s);
    static const QRegularExpression space(u"\\s+"_s);
    House house;
    for (auto it = call.globalMatch(cmake); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString name = match.captured(1);
        house.order << name;
        house.rooms.insert(name,
                           {match.captured(2), match.captured(3).split(space, Qt::SkipEmptyParts)});
        for (const QString &file : match.captured(4).split(space, Qt::SkipEmptyParts))
            house.roomOf.insert(file, name);
    }
    return house;
}

// The room itself, what it uses, and what these use in turn.
QSet<QString> reachOf(const House &house, const QString &room)
{
    QSet<QString> reach {room};
    for (const QString &used : house.rooms.value(room).uses)
        reach += reachOf(house, used);
    return reach;
}

Includes readIncludes(const QString &source)
{
    static const QRegularExpression line(u"^\\s*#\\s*include\\s*([\"<])([^\">]+)[\">]"_s,
                                         QRegularExpression::MultilineOption);
    Includes includes;
    for (auto it = line.globalMatch(source); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString name = match.captured(2);
        if (match.captured(1) == u'<')
            includes.foreign << name;
        else if (!name.startsWith("moc_"_L1) && !name.endsWith(".moc"_L1))
            includes.own << name;
    }
    return includes;
}

QStringList forbiddenEdges(const Sources &sources, const House &house)
{
    QStringList found;
    for (auto it = sources.begin(); it != sources.end(); ++it) {
        const QSet<QString> reach = reachOf(house, house.roomOf.value(it.key()));
        for (const QString &name : it->own) {
            if (!reach.contains(house.roomOf.value(name)))
                found << u"%1 -> %2"_s.arg(it.key(), name);
        }
    }
    return found;
}

// A header and its source count as one.
QString stem(const QString &file)
{
    return file.section(u'.', 0, 0);
}

// Files that include one another around, in groups of more than `largest`, each sorted.
QList<QStringList> circles(const Sources &sources, qsizetype largest)
{
    QMap<QString, QSet<QString>> reach;
    for (auto it = sources.begin(); it != sources.end(); ++it) {
        for (const QString &name : it->own) {
            if (stem(name) != stem(it.key()))
                reach[stem(it.key())].insert(stem(name));
        }
    }
    for (bool grows = true; grows;) {
        grows = false;
        for (QSet<QString> &far : reach) {
            QSet<QString> farther = far;
            for (const QString &name : std::as_const(far))
                farther += reach.value(name);
            grows |= farther.size() != far.size();
            far = farther;
        }
    }
    QSet<QString> seen;
    QList<QStringList> found;
    for (auto it = reach.begin(); it != reach.end(); ++it) {
        QStringList circle;
        for (const QString &name : std::as_const(*it)) {
            if (reach.value(name).contains(it.key()))
                circle << name;
        }
        if (circle.size() > largest && !seen.contains(it.key())) {
            circle.sort();
            found << circle;
            seen += QSet<QString>(circle.begin(), circle.end());
        }
    }
    return found;
}

// The same among headers alone, of which no two may include one another.
QList<QStringList> circlesOfHeaders(Sources sources)
{
    sources.removeIf([](Sources::iterator it) { return !it.key().endsWith(".h"_L1); });
    return circles(sources, 0);
}

Sources sourcesOf(const QMap<QString, QString> &texts)
{
    Sources sources;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        sources.insert(it.key(), readIncludes(it.value()));
    return sources;
}

} // namespace

class LayersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theCheckSeesWhatIsPlanted();
    void roomsStandInOrder();
    void everyFileHasItsRoom();
    void noEdgeLeadsOutOfReach();
    void circlesAreSmall();
    void everySourceBeginsWithItsHeader();
    void everyTypeHasItsOwnName();
    void noWidgetsBelowTheWindows();
    void nothingIsLeftToDo();

private:
    QDir m_folder {QStringLiteral(SOURCE_ROOT "/src")};
    House m_house;
    Sources m_sources;
};

void LayersTest::initTestCase()
{
    m_house = readHouse(readText(m_folder.filePath(u"CMakeLists.txt"_s)));
    const QStringList files = m_folder.entryList({u"*.h"_s, u"*.cpp"_s}, QDir::Files);
    for (const QString &name : files)
        m_sources.insert(name, readIncludes(readText(m_folder.filePath(name))));
    QVERIFY(m_sources.size() > 50);
    QVERIFY(m_house.rooms.size() > 5);
}

// On a copy of the real list and sources with one include more.
void LayersTest::theCheckSeesWhatIsPlanted()
{
    const auto edges = [this](const QString &file, const QString &include) {
        Sources sources = m_sources;
        sources[file].own << include;
        return forbiddenEdges(sources, m_house);
    };
    QCOMPARE(edges(u"creature.h"_s, u"history.h"_s), QStringList(u"creature.h -> history.h"_s));
    QCOMPARE(edges(u"effect.cpp"_s, u"creaturefile.h"_s),
             QStringList(u"effect.cpp -> creaturefile.h"_s));
    QCOMPARE(edges(u"history.cpp"_s, u"nowhere.h"_s), QStringList(u"history.cpp -> nowhere.h"_s));
    QCOMPARE(edges(u"mainwindow.cpp"_s, u"creature.h"_s), QStringList());

    const Sources around = sourcesOf({{u"a.h"_s, u"#include \"b.h\"\n"_s},
                                      {u"b.cpp"_s, u"# include \"c.h\"\n"_s},
                                      {u"c.h"_s, u"#include <QString>\n#include \"a.h\"\n"_s},
                                      {u"d.h"_s, u"#include \"a.h\"\n"_s}});
    QCOMPARE(circles(around, 2), QList<QStringList>({{u"a"_s, u"b"_s, u"c"_s}}));
    QCOMPARE(circles(around, 3), QList<QStringList>());
    QCOMPARE(circlesOfHeaders(around), QList<QStringList>());
}

// A room that stands lower may not use a higher one, or the list would tell of no order.
void LayersTest::roomsStandInOrder()
{
    for (const QString &name : std::as_const(m_house.order)) {
        for (const QString &used : m_house.rooms.value(name).uses)
            QVERIFY2(m_house.order.indexOf(used) >= 0
                         && m_house.order.indexOf(used) < m_house.order.indexOf(name),
                     qPrintable(name + u" -> " + used));
    }
}

void LayersTest::everyFileHasItsRoom()
{
    const QStringList files = m_house.roomOf.keys();
    QCOMPARE(files, QStringList(m_sources.keys()));
}

void LayersTest::noEdgeLeadsOutOfReach()
{
    QCOMPARE(forbiddenEdges(m_sources, m_house), QStringList());
}

void LayersTest::circlesAreSmall()
{
    QCOMPARE(circles(m_sources, largestCircle), QList<QStringList>());
    QCOMPARE(circlesOfHeaders(m_sources), QList<QStringList>());
}

// That proves that the header compiles by itself.
void LayersTest::everySourceBeginsWithItsHeader()
{
    QStringList found;
    for (auto it = m_sources.begin(); it != m_sources.end(); ++it) {
        const QString header = stem(it.key()) + u".h"_s;
        if (header != it.key() && m_sources.contains(header) && it->own.value(0) != header)
            found << it.key();
    }
    QCOMPARE(found, QStringList());
}

// Two types of one name in one program are none that the compiler or linker tells of, and share the
// functions that are made for them.
void LayersTest::everyTypeHasItsOwnName()
{
    static const QRegularExpression type(u"^(?:class|struct|enum class) (\\w+)\\b(?! *;)"_s,
                                         QRegularExpression::MultilineOption);
    QMap<QString, QStringList> files;
    for (const QString &name : m_sources.keys()) {
        if (!name.endsWith(".h"_L1))
            continue;
        for (auto it = type.globalMatch(readText(m_folder.filePath(name))); it.hasNext();)
            files[it.next().captured(1)] << name;
    }
    QVERIFY(files.contains(u"Creature"_s) && files.contains(u"CreatureState"_s));
    files.removeIf([](auto it) { return it.value().size() == 1; });
    QCOMPARE(files, (QMap<QString, QStringList>()));
}

void LayersTest::noWidgetsBelowTheWindows()
{
    const QDir widgets(QLibraryInfo::path(QLibraryInfo::HeadersPath) + u"/QtWidgets"_s);
    QVERIFY(widgets.exists(u"QWidget"_s));
    QStringList found;
    for (auto it = m_sources.begin(); it != m_sources.end(); ++it) {
        const QString library = m_house.rooms.value(m_house.roomOf.value(it.key())).library;
        if (library != u"morvane_base" && library != u"morvane_core")
            continue;
        for (const QString &name : it->foreign) {
            if (name.startsWith("QtWidgets"_L1) || widgets.exists(name))
                found << u"%1 -> %2"_s.arg(it.key(), name);
        }
    }
    QCOMPARE(found, QStringList());
}

void LayersTest::nothingIsLeftToDo()
{
    static const QRegularExpression marker(u"\\b(TODO|FIXME|XXX|HACK)\\b"_s);
    QStringList found;
    for (const QString &name : m_sources.keys()) {
        if (readText(m_folder.filePath(name)).contains(marker))
            found << name;
    }
    QCOMPARE(found, QStringList());
}

MORVANE_TEST_MAIN(QGuiApplication, LayersTest)

#include "tst_layers.moc"
