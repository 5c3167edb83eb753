#include "xmlhandler.h"

#include <QStringDecoder>
#include <QXmlStreamReader>

namespace {

// Real paths have about 150 characters. Every value is compared with the end of its path, so an
// endless one would make the work quadratic.
constexpr qsizetype maxPathLength = 600;

// The reader compares each attribute of an element with each other.
constexpr qint64 maxAttributePairs = 100'000'000;

// Cheaper than any count of true attributes, and never below it: no value may hold a "<".
bool hasBearableAttributes(const QByteArray &bytes)
{
    qint64 pairs = 0;
    qint64 inElement = 0;
    bool afterEquals = false; // but for blanks, or the zeros of two bytes a character
    for (const char c : bytes) {
        if (c == '<')
            inElement = 0;
        else if (afterEquals && (c == '"' || c == '\''))
            pairs += ++inElement;
        afterEquals = c == '=' || (afterEquals && c >= '\0' && c <= ' ');
    }
    return pairs <= maxAttributePairs;
}

// No program that writes these files declares an entity or a default. The reader bounds each
// expansion but not their sum, and such a document can be made to grow without end.
bool declaresExpansions(const QByteArray &bytes)
{
    // Two bytes a character hide no declaration.
    QByteArray plain = bytes;
    if (plain.contains('\0'))
        plain.replace(QByteArrayView("\0", 1), QByteArrayView());
    return plain.contains("<!ENTITY") || plain.contains("<!ATTLIST");
}

// A text in UTF-8 is read as such whatever it declares: programs write the encoding that they had
// in memory. Other bytes are left to the declaration.
void addText(QXmlStreamReader &xml, const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        xml.addData(bytes);
    else
        xml.addData(text);
}

} // namespace

bool XmlHandler::read(const QByteArray &bytes)
{
    m_path.clear();
    m_elementCount = 0;
    if (declaresExpansions(bytes) || !hasBearableAttributes(bytes))
        return false;
    QXmlStreamReader xml;
    xml.setNamespaceProcessing(false);
    addText(xml, bytes);
    QString run;
    const auto endRun = [this, &run] {
        if (!run.isEmpty())
            value(m_path, run);
        run.clear();
    };
    while (!xml.atEnd() && m_path.size() <= maxPathLength) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartDocument:
            m_path += u'/';
            onBegin();
            break;
        case QXmlStreamReader::StartElement: {
            endRun();
            ++m_elementCount;
            m_path += xml.qualifiedName() + u'/';
            const qsizetype length = m_path.size();
            bool goOn = true;
            const QXmlStreamAttributes attributes = xml.attributes();
            for (auto each = attributes.begin(); goOn && each != attributes.end(); ++each) {
                m_path += each->qualifiedName();
                goOn = value(m_path, each->value().toString());
                m_path.truncate(length);
            }
            break;
        }
        case QXmlStreamReader::Characters:
            run += xml.text();
            break;
        case QXmlStreamReader::EndElement: {
            endRun();
            m_path += QStringLiteral("#end");
            value(m_path, QString());
            m_path.truncate(m_path.lastIndexOf(QString(xml.qualifiedName() + u'/')));
            break;
        }
        case QXmlStreamReader::EndDocument:
            onEnd();
            m_path.chop(1);
            return !xml.hasError();
        default:
            break;
        }
    }
    return false;
}
