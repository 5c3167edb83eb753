// Draws pictures from SVG sources:
//   renderimages MANIFEST OUTPUT-FOLDER     every picture, and at double size as "NAME@2x"
//   renderimages --single MANIFEST FOLDER   the normal size alone
//   renderimages --sheet MANIFEST FILE      all pictures on one sheet, on light and on dark
// The sources lie beside the manifest.
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>
#include <memory>
#include <unordered_map>

#include "manifest.h"

namespace {

void complain(const QString &text)
{
    std::fprintf(stderr, "renderimages: %s\n", qPrintable(text));
}

// The sources of a folder. One that serves several pictures is parsed once.
class Sources {
public:
    explicit Sources(const QString &folder) : m_folder(folder) { }

    // Null when the source can't be read.
    QImage draw(const Picture &picture, int scale)
    {
        std::unique_ptr<QSvgRenderer> &renderer = m_renderers[picture.source];
        if (!renderer)
            renderer = std::make_unique<QSvgRenderer>(m_folder.filePath(picture.source + ".svg"));
        if (!renderer->isValid())
            return {};
        QImage image(picture.size * scale, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer->render(&painter);
        return image;
    }

private:
    QDir m_folder;
    std::unordered_map<QString, std::unique_ptr<QSvgRenderer>> m_renderers;
};

bool save(const QImage &image, const QString &fileName)
{
    // The toolkit goes by content, so that a name that ends in .gif may hold PNG too.
    if (QDir().mkpath(QFileInfo(fileName).path()) && image.save(fileName, "PNG"))
        return true;
    complain(QStringLiteral("cannot write %1").arg(fileName));
    return false;
}

bool renderAll(const QList<Picture> &pictures, Sources &sources, const QString &folder,
               int greatestScale)
{
    for (const Picture &picture : pictures) {
        for (int scale = 1; scale <= greatestScale; ++scale) {
            const QImage image = sources.draw(picture, scale);
            if (image.isNull()) {
                complain(QStringLiteral("cannot draw %1.svg").arg(picture.source));
                return false;
            }
            if (!save(image, QDir(folder).filePath(picture.fileName(scale))))
                return false;
        }
    }
    return true;
}

// Cells of equal size, one for each picture, drawn in its true size where it fits.
void drawSheet(QPainter &painter, const QList<Picture> &pictures, Sources &sources, int columns,
               int cell)
{
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        const QImage image = sources.draw(pictures.at(i), 1);
        const QSize size = image.size().boundedTo(QSize(cell - 8, cell - 8));
        const QPoint corner(int(i % columns) * cell + 4, int(i / columns) * cell + 4);
        painter.drawImage(QRect(corner, size), image);
    }
}

bool saveSheet(const QList<Picture> &pictures, Sources &sources, const QString &fileName)
{
    constexpr int Columns = 10;
    constexpr int Cell = 72;
    const int height = int((pictures.size() + Columns - 1) / Columns) * Cell;
    QImage sheet(2 * Columns * Cell, height, QImage::Format_RGB32);
    sheet.fill(QColor(0xf4f4f4));
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    drawSheet(painter, pictures, sources, Columns, Cell);
    painter.translate(Columns * Cell, 0);
    painter.fillRect(0, 0, Columns * Cell, height, QColor(0x26292e));
    drawSheet(painter, pictures, sources, Columns, Cell);
    painter.end();
    return save(sheet, fileName);
}

} // namespace

int main(int argc, char **argv)
{
    // Shapes on an image need no window system, so that a build machine needs no display.
    QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    const bool sheet = arguments.removeAll(QStringLiteral("--sheet")) > 0;
    const bool single = arguments.removeAll(QStringLiteral("--single")) > 0;
    if (arguments.size() != 2) {
        complain(QStringLiteral("usage: renderimages [--single | --sheet] MANIFEST OUTPUT"));
        return 2;
    }
    QList<Picture> pictures;
    QString error;
    if (!readManifest(arguments.at(0), pictures, error)) {
        complain(error);
        return 1;
    }
    Sources sources(QFileInfo(arguments.at(0)).path());
    const bool done = sheet ? saveSheet(pictures, sources, arguments.at(1))
                            : renderAll(pictures, sources, arguments.at(1), single ? 1 : 2);
    return done ? 0 : 1;
}
