// The architecture, checked on the sources themselves: who may include whom.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include "testhome.h"

namespace {

// Lowest first; a file may include files of its own layer and of those before it.
const QStringList layerNames = {QStringLiteral("morvane_base"), QStringLiteral("morvane_core"),
                                QStringLiteral("morvane_ui"), QStringLiteral("morvane")};
const int firstLayerWithWidgets = 2;

// What one source file includes.
struct Includes {
    QStringList own; // in quotes, without what the toolkit's tools generate
    QStringList foreign; // in angle brackets
};
using Layers = QMap<QString, int>; // file name to index in layerNames
using Sources = QMap<QString, Includes>; // by file name

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

Layers readLayers(QString cmake)
{
    cmake.remove(QRegularExpression(QStringLiteral("#[^\n]*")));
    static const QRegularExpression list(
        QStringLiteral("(?:add_library|qt_add_executable)\\((\\w+)([^)]*)\\)"));
    static const QRegularExpression space(QStringLiteral("\\s+"));
    Layers layers;
    for (auto it = list.globalMatch(cmake); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const int layer = int(layerNames.indexOf(match.captured(1)));
        for (const QString &file : match.captured(2).split(space, Qt::SkipEmptyParts))
            layers.insert(file, layer);
    }
    return layers;
}

Includes readIncludes(const QString &source)
{
    static const QRegularExpression line(
        QStringLiteral("^\\s*#\\s*include\\s*([\"<])([^\">]+)[\">]"),
        QRegularExpression::MultilineOption);
    Includes includes;
    for (auto it = line.globalMatch(source); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString name = match.captured(2);
        if (match.captured(1) == u'<')
            includes.foreign << name;
        else if (!name.startsWith(QStringLiteral("moc_")) && !name.endsWith(QStringLiteral(".moc")))
            includes.own << name;
    }
    return includes;
}

QStringList upwardEdges(const Sources &sources, const Layers &layers)
{
    QStringList found;
    for (auto it = sources.begin(); it != sources.end(); ++it) {
        for (const QString &name : it->own) {
            if (!layers.contains(name))
                found << it.key() + QStringLiteral(" -> ") + name + QStringLiteral(" (unknown)");
            else if (layers.value(name) > layers.value(it.key()))
                found << it.key() + QStringLiteral(" -> ") + name;
        }
    }
    return found;
}

// Removes headers that include no header that is left until nothing changes; circles, and what
// leads into one, remain.
QStringList headersInCircles(const Sources &sources)
{
    QMap<QString, QSet<QString>> left;
    for (auto it = sources.begin(); it != sources.end(); ++it) {
        if (it.key().endsWith(QStringLiteral(".h")))
            left.insert(it.key(), QSet<QString>(it->own.begin(), it->own.end()));
    }
    for (bool changed = true; changed;) {
        changed = false;
        for (auto it = left.begin(); it != left.end();) {
            const bool leadsOn = std::any_of(
                it->begin(), it->end(), [&](const QString &name) { return left.contains(name); });
            changed |= !leadsOn;
            it = leadsOn ? std::next(it) : left.erase(it);
        }
    }
    return left.keys();
}

} // namespace

class LayersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theCheckSeesAnUpwardEdge();
    void theCheckSeesACircle();
    void everyFileBelongsToALayer();
    void noEdgeLeadsUpwards();
    void noHeadersFormACircle();
    void everySourceBeginsWithItsHeader();
    void noWidgetsBelowTheWindows();
    void nothingIsLeftToDo();

private:
    QDir m_folder {QStringLiteral(SOURCE_ROOT "/src")};
    Layers m_layers;
    Sources m_sources;
};

void LayersTest::initTestCase()
{
    m_layers = readLayers(readText(m_folder.filePath(QStringLiteral("CMakeLists.txt"))));
    const QStringList files =
        m_folder.entryList({QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files);
    for (const QString &name : files)
        m_sources.insert(name, readIncludes(readText(m_folder.filePath(name))));
    QVERIFY(m_sources.size() > 50);
}

void LayersTest::theCheckSeesAnUpwardEdge()
{
    const Layers layers = readLayers(QStringLiteral("add_library(morvane_base\n a.h # text\n)\n"
                                                    "add_library(morvane_core b.h b.cpp)\n"));
    Sources sources;
    sources.insert(QStringLiteral("a.h"), readIncludes(QStringLiteral("#include \"b.h\"\n")));
    sources.insert(QStringLiteral("b.h"), readIncludes(QStringLiteral("#include \"a.h\"\n")));
    QCOMPARE(upwardEdges(sources, layers), QStringList(QStringLiteral("a.h -> b.h")));
}

void LayersTest::theCheckSeesACircle()
{
    Sources sources;
    sources.insert(QStringLiteral("a.h"), readIncludes(QStringLiteral("# include \"b.h\"\n")));
    sources.insert(QStringLiteral("b.h"), readIncludes(QStringLiteral("#include \"c.h\"\n")));
    sources.insert(QStringLiteral("c.h"), readIncludes(QStringLiteral("#include <QString>\n")));
    QCOMPARE(headersInCircles(sources), QStringList());
    sources[QStringLiteral("c.h")].own << QStringLiteral("a.h");
    QCOMPARE(headersInCircles(sources),
             QStringList({QStringLiteral("a.h"), QStringLiteral("b.h"), QStringLiteral("c.h")}));
}

void LayersTest::everyFileBelongsToALayer()
{
    QStringList strays;
    for (const QString &name : m_sources.keys()) {
        if (m_layers.value(name, -1) < 0)
            strays << name;
    }
    QCOMPARE(strays, QStringList());
}

void LayersTest::noEdgeLeadsUpwards()
{
    QCOMPARE(upwardEdges(m_sources, m_layers), QStringList());
}

void LayersTest::noHeadersFormACircle()
{
    QCOMPARE(headersInCircles(m_sources), QStringList());
}

// That proves that the header compiles by itself.
void LayersTest::everySourceBeginsWithItsHeader()
{
    QStringList found;
    for (auto it = m_sources.begin(); it != m_sources.end(); ++it) {
        QString header = it.key();
        header.replace(QStringLiteral(".cpp"), QStringLiteral(".h"));
        if (header != it.key() && m_sources.contains(header) && it->own.value(0) != header)
            found << it.key();
    }
    QCOMPARE(found, QStringList());
}

void LayersTest::noWidgetsBelowTheWindows()
{
    const QDir widgets(QLibraryInfo::path(QLibraryInfo::HeadersPath)
                       + QStringLiteral("/QtWidgets"));
    QVERIFY(widgets.exists(QStringLiteral("QWidget")));
    QStringList found;
    for (auto it = m_sources.begin(); it != m_sources.end(); ++it) {
        if (m_layers.value(it.key()) >= firstLayerWithWidgets)
            continue;
        for (const QString &name : it->foreign) {
            if (name.startsWith(QStringLiteral("QtWidgets")) || widgets.exists(name))
                found << it.key() + QStringLiteral(" -> ") + name;
        }
    }
    QCOMPARE(found, QStringList());
}

void LayersTest::nothingIsLeftToDo()
{
    static const QRegularExpression marker(QStringLiteral("\\b(TODO|FIXME|XXX|HACK)\\b"));
    QStringList found;
    for (const QString &name : m_sources.keys()) {
        if (readText(m_folder.filePath(name)).contains(marker))
            found << name;
    }
    QCOMPARE(found, QStringList());
}

MORVANE_TEST_MAIN(QGuiApplication, LayersTest)

#include "tst_layers.moc"
