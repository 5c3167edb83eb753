#include "xmlhandler.h"

#include <QStringDecoder>
#include <QXmlStreamReader>

namespace {

// Real paths have about 150 characters. Every value is compared with the end of its path, so an
// endless one would make the work quadratic.
constexpr qsizetype maxPathLength = 600;

// The reader compares each attribute of an element with each other.
constexpr qint64 maxAttributePairs = 100'000'000;

// Counts quotes behind "=" in each tag: at least as many as there are attributes, since no value
// may hold a "<", and cheaper than parsing them.
bool hasBearableAttributes(const QByteArray &bytes)
{
    qint64 pairs = 0;
    qint64 inElement = 0;
    bool afterEquals = false; // blanks, and the zero bytes of UTF-16, may stand between
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

// A letter that names may hold and that nobody writes here. With four digits behind it, it stands
// for a sign that they may not.
constexpr QChar standIn = QChar(u'\u2182');

bool isPlain(QChar c)
{
    return c.unicode() < 0x80 && c.isLetterOrNumber();
}

// The name at the start of `tag` with its brackets, and what stands in them, written as XML allows;
// empty where it has none, or they don't match. `size` becomes that of the name in the text.
QString withoutBrackets(QStringView tag, qsizetype &size)
{
    static constexpr QStringView forbidden = u"<>/=&\"'\r\n";
    size = 0;
    if (tag.isEmpty() || !tag.front().isLetter())
        return QString();
    QString name;
    QChar close; // of the bracket that is open
    bool hasBrackets = false;
    for (; size < tag.size(); ++size) {
        const QChar c = tag[size];
        if (forbidden.contains(c) || (close.isNull() && c.isSpace()))
            break;
        const bool opens = c == u'[' || c == u'(';
        const bool closes = c == u']' || c == u')';
        if ((opens && !close.isNull()) || (closes && c != close))
            return QString();
        if (opens || closes || (!close.isNull() && !isPlain(c)))
            name += standIn + QStringLiteral("%1").arg(c.unicode(), 4, 16, QChar(u'0'));
        else
            name += c;
        hasBrackets = hasBrackets || opens;
        if (opens)
            close = c == u'[' ? u']' : u')';
        else if (closes)
            close = QChar();
    }
    return hasBrackets && close.isNull() ? name : QString();
}

QString withBrackets(const QString &name)
{
    QString result;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (name.at(i) == standIn) {
            result += QChar(name.mid(i + 1, 4).toUShort(nullptr, 16));
            i += 4;
        } else {
            result += name.at(i);
        }
    }
    return result;
}

// Where a comment, a section of plain characters or an instruction ends that begins at `start`;
// `start` itself for any other markup.
qsizetype endOfPlainMarkup(QStringView text, qsizetype start)
{
    static constexpr struct {
        QStringView begin, end;
    } kinds[] = {{u"<!--", u"-->"}, {u"<![CDATA[", u"]]>"}, {u"<?", u"?>"}};
    for (const auto &kind : kinds) {
        if (text.mid(start).startsWith(kind.begin)) {
            const qsizetype end = text.indexOf(kind.end, start + kind.begin.size());
            return end < 0 ? text.size() : end + kind.end.size();
        }
    }
    return start;
}

// Gives the elements names that XML allows, each one of its own, so that what doesn't match stays
// unmatched. False, and the text as it was, where no name needs it.
bool replaceNames(QString &text)
{
    if (text.contains(standIn))
        return false;
    QString result;
    qsizetype taken = 0;
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at)) {
        if (const qsizetype end = endOfPlainMarkup(text, at); end > at) {
            at = end;
            continue;
        }
        ++at;
        if (at < text.size() && text.at(at) == u'/')
            ++at;
        qsizetype size = 0;
        const QString name = withoutBrackets(QStringView(text).mid(at), size);
        if (name.isEmpty())
            continue;
        result += QStringView(text).mid(taken, at - taken) + name;
        at += size;
        taken = at;
    }
    if (taken == 0)
        return false;
    text = result + QStringView(text).mid(taken);
    return true;
}

} // namespace

// A text in UTF-8 is read as such whatever it declares: programs write the encoding that they had
// in memory. Other bytes are left to the declaration.
void XmlHandler::addText(QXmlStreamReader &xml, const QByteArray &bytes, BracketsInNames brackets)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    m_hasNewNames = false;
    if (decoder.hasError()) {
        xml.addData(bytes);
        return;
    }
    m_hasNewNames = brackets == BracketsInNames::Allowed && replaceNames(text);
    xml.addData(text);
}

bool XmlHandler::read(const QByteArray &bytes, BracketsInNames brackets)
{
    m_path.clear();
    m_elementCount = 0;
    if (declaresExpansions(bytes) || !hasBearableAttributes(bytes))
        return false;
    QXmlStreamReader xml;
    xml.setNamespaceProcessing(false);
    addText(xml, bytes, brackets);
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
        case QXmlStreamReader::StartElement:
            endRun();
            beginElement(xml);
            break;
        case QXmlStreamReader::Characters:
            run += xml.text();
            break;
        case QXmlStreamReader::EndElement:
            endRun();
            m_path += QStringLiteral("#end");
            value(m_path, QString());
            m_path.truncate(m_path.lastIndexOf(nameOf(xml) + u'/'));
            break;
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

// As it stands in the text.
QString XmlHandler::nameOf(const QXmlStreamReader &xml) const
{
    const QString name = xml.qualifiedName().toString();
    return m_hasNewNames ? withBrackets(name) : name;
}

void XmlHandler::beginElement(const QXmlStreamReader &xml)
{
    ++m_elementCount;
    m_path += nameOf(xml) + u'/';
    const qsizetype length = m_path.size();
    bool goOn = true;
    const QXmlStreamAttributes attributes = xml.attributes();
    for (auto each = attributes.begin(); goOn && each != attributes.end(); ++each) {
        m_path += each->qualifiedName();
        goOn = value(m_path, each->value().toString());
        m_path.truncate(length);
    }
}
