// Every picture that the sources name must be in the program, in the size that its name tells.
// links: morvane_ui
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QRegularExpression>
#include <QSet>

#include "testhome.h"

class ImagesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void namedInSources_data();
    void namedInSources();
    void everyPictureComesInDoubleSize();
    void noPictureIsEmpty();
};

namespace {

// The pictures' file names in all literals of the sources, without the prefix: some stand in full,
// others are put behind it by a helper.
QSet<QString> namesInSources()
{
    static const QRegularExpression name(QStringLiteral("(?<=[\"'/])[\\w-]+\\.(?:png|gif)\\b"));
    QSet<QString> names;
    const QDir sources(QStringLiteral(SOURCE_ROOT "/src"));
    for (const QString &entry :
         sources.entryList({QStringLiteral("*.cpp"), QStringLiteral("*.h")})) {
        QFile file(sources.filePath(entry));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(entry));
        auto matches = name.globalMatch(QString::fromUtf8(file.readAll()));
        while (matches.hasNext())
            names << matches.next().captured();
    }
    return names;
}

// The number at the end of the name, as in "play32.png" and "d20-logo-128.png"; 0 for the names of
// the stat block's symbols, where a number counts something else.
int sizeInName(const QString &name)
{
    static const QRegularExpression digits(QStringLiteral("(\\d\\d+)\\.\\w+$"));
    return digits.match(name).captured(1).toInt();
}

// Null when neither folder has it.
QImage picture(const QString &name)
{
    for (const char *folder : {":/images/", ":/images/stats/"}) {
        const QString path = QLatin1String(folder) + name;
        if (QFile::exists(path))
            return QImage(path);
    }
    return {};
}

QStringList allPictures()
{
    QStringList paths;
    for (const char *folder : {":/images", ":/images/stats"}) {
        for (const QFileInfo &file : QDir(QLatin1String(folder)).entryInfoList(QDir::Files))
            paths << file.filePath();
    }
    return paths;
}

QString doubleName(QString path)
{
    return path.insert(path.lastIndexOf(u'.'), QStringLiteral("@2x"));
}

} // namespace

void ImagesTest::namedInSources_data()
{
    QTest::addColumn<QString>("name");
    const QSet<QString> names = namesInSources();
    if (names.isEmpty())
        QSKIP("no source names a picture");
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void ImagesTest::namedInSources()
{
    QFETCH(QString, name);
    const QImage image = picture(name);
    QVERIFY2(!image.isNull(), "not in the resources, or unreadable");
    if (const int size = sizeInName(name))
        QCOMPARE(image.size(), QSize(size, size));
}

void ImagesTest::everyPictureComesInDoubleSize()
{
    const QStringList paths = allPictures();
    int checked = 0;
    for (const QString &path : paths) {
        if (path.contains(QStringLiteral("@2x")))
            continue;
        ++checked;
        const QImage normal(path);
        QVERIFY2(!normal.isNull(), qPrintable(path));
        QVERIFY2(QImage(doubleName(path)).size() == 2 * normal.size(), qPrintable(path));
    }
    QCOMPARE(2 * checked, int(paths.size()));
    QVERIFY(checked > 0);
}

void ImagesTest::noPictureIsEmpty()
{
    // A source that draws nothing would pass the tests above.
    for (const QString &path : allPictures()) {
        const QString name = QFileInfo(path).baseName();
        if (name.startsWith(QStringLiteral("no-icon")) || name.startsWith(QStringLiteral("blank")))
            continue;
        const QImage image(path);
        bool seen = false;
        for (int y = 0; y < image.height() && !seen; ++y) {
            for (int x = 0; x < image.width() && !seen; ++x)
                seen = qAlpha(image.pixel(x, y)) > 128;
        }
        QVERIFY2(seen, qPrintable(path));
    }
}

MORVANE_TEST_MAIN(QGuiApplication, ImagesTest)
#include "tst_images.moc"
