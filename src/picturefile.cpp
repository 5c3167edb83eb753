#include "picturefile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 maxPictureBytes = 32 * 1024 * 1024;

// A packed SVG is left out: nobody knows what it unpacks to.
constexpr QLatin1StringView formats[] = {
    "bmp"_L1,  "gif"_L1,  "icns"_L1, "ico"_L1, "jpeg"_L1, "jpg"_L1, "mng"_L1,
    "pbm"_L1,  "pgm"_L1,  "png"_L1,  "ppm"_L1, "svg"_L1,  "tga"_L1, "tif"_L1,
    "tiff"_L1, "wbmp"_L1, "webp"_L1, "xbm"_L1, "xpm"_L1,
};

// Empty for anything that isn't one of the formats. The device is back at its start.
QByteArray formatOf(QIODevice &device)
{
    QImageReader reader(&device);
    // By its name alone any text could pass for a picture.
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.canRead() ? reader.format() : QByteArray();
    device.seek(0);
    return std::find(std::begin(formats), std::end(formats), format) == std::end(formats)
        ? QByteArray()
        : format;
}

bool openPicture(QFile &file)
{
    // A pipe or device would keep the program waiting.
    return QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly)
        && file.size() <= maxPictureBytes;
}

// Walks an SVG and adds up what it takes to draw. Shapes can be drawn again by reference, and a few
// references that nest come to billions of shapes.
class SvgCheck {
public:
    bool run(const QByteArray &bytes);

private:
    static constexpr double maxCost = 4e6; // of characters; a second or so
    static constexpr double elementCost = 32;
    static constexpr double letterCost = 64; // of a text, which is laid out
    static constexpr int maxNesting = 16; // of references

    struct Element {
        qsizetype parent;
        QString uses; // the ID of what is drawn again here
        double cost;
    };

    static bool isSvg(QStringView element)
    {
        return element == "svg"_L1 || element.endsWith(":svg"_L1);
    }
    bool takeElement(const QXmlStreamReader &xml);
    static bool isHarmlessLink(QStringView element, const QString &target);
    bool isDrawnInTime() const;

    QList<Element> m_elements;
    QHash<QString, qsizetype> m_byId;
};

bool SvgCheck::run(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    xml.setNamespaceProcessing(false);
    QList<qsizetype> open;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            // The reader takes any XML for a picture until it comes to draw it.
            if (m_elements.isEmpty() && !isSvg(xml.qualifiedName()))
                return false;
            m_elements.append({open.isEmpty() ? -1 : open.constLast(), QString(), elementCost});
            open.append(m_elements.size() - 1);
            if (!takeElement(xml))
                return false;
            break;
        case QXmlStreamReader::EndElement:
            open.removeLast();
            break;
        case QXmlStreamReader::Characters:
            if (!open.isEmpty() && !xml.isWhitespace())
                m_elements[open.constLast()].cost += letterCost * double(xml.text().size());
            break;
        case QXmlStreamReader::DTD:
            if (xml.text().contains("<!ENTITY"_L1))
                return false;
            break;
        case QXmlStreamReader::ProcessingInstruction:
            if (xml.processingInstructionTarget() == "xml-stylesheet"_L1)
                return false;
            break;
        default:
            break;
        }
    }
    return !xml.hasError() && !m_elements.isEmpty() && isDrawnInTime();
}

bool SvgCheck::takeElement(const QXmlStreamReader &xml)
{
    const qsizetype index = m_elements.size() - 1;
    const QXmlStreamAttributes attributes = xml.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QStringView name = attribute.qualifiedName();
        m_elements[index].cost += double(attribute.value().size());
        if (name == "id"_L1 || name == "xml:id"_L1)
            m_byId.insert(attribute.value().toString(), index);
        if (name != "href"_L1 && !name.endsWith(":href"_L1))
            continue;
        const QString target = attribute.value().trimmed().toString();
        if (!isHarmlessLink(xml.qualifiedName(), target))
            return false;
        if (xml.qualifiedName().endsWith("use"_L1))
            m_elements[index].uses = target.mid(1);
    }
    return true;
}

// A place in the SVG itself, or a picture that stands in it as a whole and is no SVG in turn.
bool SvgCheck::isHarmlessLink(QStringView element, const QString &target)
{
    if (target.startsWith(u'#') || target.isEmpty() || element == "a"_L1)
        return true;
    const qsizetype start = target.lastIndexOf("base64,"_L1);
    if (!target.startsWith("data:"_L1) || start < 0)
        return false;
    const QByteArray picture =
        QByteArray::fromBase64(QStringView(target).mid(start + 7).toLatin1());
    return picture.startsWith("\x89PNG") || picture.startsWith("\xFF\xD8\xFF")
        || picture.startsWith("GIF8");
}

bool SvgCheck::isDrawnInTime() const
{
    QList<double> costs(m_elements.size());
    // Each round adds the cost of what is drawn by one more step of reference. With a reference to
    // itself the costs grow in every round.
    for (int round = 0; round <= maxNesting; ++round) {
        QList<double> next(m_elements.size());
        for (qsizetype i = m_elements.size() - 1; i >= 0; --i) {
            const Element &element = m_elements.at(i);
            const auto used = m_byId.constFind(element.uses);
            next[i] += element.cost + (used != m_byId.constEnd() ? costs.at(*used) : 0);
            if (next.at(i) > maxCost)
                return false;
            if (element.parent >= 0)
                next[element.parent] += next.at(i);
        }
        if (next == costs)
            return true;
        costs = std::move(next);
    }
    return false;
}

} // namespace

bool isPictureFile(const QString &path)
{
    QFile file(path);
    if (!openPicture(file))
        return false;
    const QByteArray format = formatOf(file);
    return !format.isEmpty() && (format != "svg" || isHarmlessSvg(file.readAll()));
}

QImage readPicture(const QString &path, int maxSize)
{
    QFile file(path);
    if (!openPicture(file))
        return QImage();
    // From memory, so that no reader looks for what may lie beside the file.
    QByteArray bytes = file.readAll();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = formatOf(buffer);
    if (format.isEmpty() || (format == "svg" && !isHarmlessSvg(bytes)))
        return QImage();
    QImageReader reader(&buffer, format);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.width() > maxSize || size.height() > maxSize)
        reader.setScaledSize(size.scaled(maxSize, maxSize, Qt::KeepAspectRatio));
    return reader.read();
}

bool isHarmlessSvg(const QByteArray &bytes)
{
    return SvgCheck().run(bytes);
}
