#include "text.h"

#include <QList>

#include <cstdlib>

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Length of the entity ("&amp;") that starts at `start`, 1 for a lone "&". Looks no further than
// the first character that no entity holds, so that a text full of "&" stays linear.
qsizetype entityLength(const QString &html, qsizetype start)
{
    qsizetype end = start + 1;
    while (end < html.size() && (html[end].isLetterOrNumber() || html[end] == u'#'))
        ++end;
    const bool closed = end < html.size() && html[end] == u';' && end > start + 1;
    return closed ? end + 1 - start : 1;
}

// Words of more letters are rare, and hardly a panel is wide enough for them.
constexpr qsizetype LongestWord = 20;
constexpr qsizetype WordPart = 10;
constexpr QChar ZeroWidthSpace = u'\u200b';
// A path that is copied from a message stays what it is.
constexpr QStringView WordEnds = u"/\\-_.";
constexpr qsizetype MostMarkup = 8; // characters for each visible one

// More than any script sets on one letter. Fonts take their time with hundreds of them.
constexpr int MostMarks = 8;

// The text without the marks that stand behind so many others.
QString withoutPiles(const QString &text)
{
    QString result;
    result.reserve(text.size());
    int marks = 0;
    for (const QChar c : text) {
        marks = c.isMark() ? marks + 1 : 0;
        if (marks <= MostMarks)
            result += c;
    }
    return result;
}

// A place at which wrapRichText() may end a line.
struct BreakPoint {
    enum Kind { Space, Slash, Paragraph };
    Kind kind;
    qsizetype index; // in the plain copy: of the space itself, or just behind a slash or "<p>"
    int count; // visible characters before the index
};

// First pass of wrapRichText(): the text with white space made plain, and where it may break.
class BreakScanner {
public:
    explicit BreakScanner(const QString &html) { scan(html); }

    QString copy;
    QList<BreakPoint> points;

private:
    void scan(const QString &html)
    {
        copy.reserve(html.size());
        for (qsizetype i = 0; i < html.size();)
            i += takeToken(html, i);
    }

    // Returns how many characters were used up.
    qsizetype takeToken(const QString &html, qsizetype start)
    {
        const QChar c = html[start];
        if (c == u'<')
            return takeTag(html, start);
        if (c.isSpace())
            return takeSpace();
        const qsizetype length = c == u'&' ? entityLength(html, start) : 1;
        copy += QStringView(html).mid(start, length);
        ++m_count;
        m_inSpace = false;
        if (c == u'/' || c == u'\\')
            points.append({BreakPoint::Slash, copy.size(), m_count});
        return length;
    }

    qsizetype takeTag(const QString &html, qsizetype start)
    {
        const qsizetype close = html.indexOf(u'>', start);
        // A tag that never ends swallows the rest, as it does in every reader of rich text.
        const qsizetype length = close < 0 ? html.size() - start : close + 1 - start;
        const QStringView tag = QStringView(html).mid(start, length);
        if (tag.compare(u"<br>", Qt::CaseInsensitive) == 0) {
            takeSpace();
            return length;
        }
        copy += tag;
        if (tag.compare(u"<p>", Qt::CaseInsensitive) == 0) {
            points.append({BreakPoint::Paragraph, copy.size(), m_count});
            m_inSpace = false;
        }
        return length;
    }

    qsizetype takeSpace()
    {
        if (!m_inSpace) {
            points.append({BreakPoint::Space, copy.size(), m_count});
            copy += u' ';
            ++m_count;
            m_inSpace = true;
        }
        return 1;
    }

    int m_count = 0;
    bool m_inSpace = false;
};

// Second pass of wrapRichText(): walks the break points and ends lines at the ones that lie
// nearest to the width.
class LineBreaker {
public:
    LineBreaker(const BreakScanner &scan, int width) : m_copy(scan.copy), m_width(width)
    {
        m_result.reserve(m_copy.size());
        for (const BreakPoint &point : scan.points)
            take(point);
        m_result += QStringView(m_copy).mid(m_start);
    }

    QString result() const { return m_result; }

private:
    void take(const BreakPoint &point)
    {
        if (point.kind == BreakPoint::Paragraph) {
            flush(point.index, point.index, point.count);
            return;
        }
        // A line that was ended at the previous point may already be full again here.
        while (lineLength(point) >= m_width) {
            const bool previousIsNearer = m_previous
                && std::abs(m_width - lineLength(*m_previous)) < lineLength(point) - m_width;
            const BreakPoint chosen = previousIsNearer ? *m_previous : point;
            endLine(chosen);
            if (!previousIsNearer)
                return;
        }
        m_previous = &point;
    }

    int lineLength(const BreakPoint &point) const { return point.count - m_startCount; }

    void endLine(const BreakPoint &point)
    {
        const int dropped = point.kind == BreakPoint::Space ? 1 : 0;
        flush(point.index, point.index + dropped, point.count + dropped);
        m_result += QStringLiteral("<br>");
    }

    void flush(qsizetype end, qsizetype nextStart, int nextCount)
    {
        m_result += QStringView(m_copy).mid(m_start, end - m_start);
        m_start = nextStart;
        m_startCount = nextCount;
        m_previous = nullptr;
    }

    const QString &m_copy;
    const int m_width;
    QString m_result;
    qsizetype m_start = 0;
    int m_startCount = 0;
    const BreakPoint *m_previous = nullptr; // on the current line, null for none
};

QByteArray withLineEnds(const QByteArray &bytes, const char *lineEnd)
{
    QByteArray result;
    result.reserve(bytes.size() + bytes.size() / 16);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if (c != '\r' && c != '\n') {
            result += c;
            continue;
        }
        result += lineEnd;
        if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n')
            ++i;
    }
    return result;
}

qsizetype trailingDigits(const QString &text)
{
    qsizetype start = text.size();
    while (start > 0 && isDigit(text[start - 1]))
        --start;
    return start;
}

// Compares runs of digits as numbers of any length.
int compareDigits(QStringView a, QStringView b)
{
    while (a.startsWith(u'0'))
        a = a.mid(1);
    while (b.startsWith(u'0'))
        b = b.mid(1);
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

} // namespace

int plainLength(const QString &html)
{
    int length = 0;
    bool inTag = false;
    for (const QChar c : html) {
        if (c == u'<')
            inTag = true;
        else if (c == u'>' && inTag)
            inTag = false;
        else if (!inTag)
            ++length;
    }
    return length;
}

QString plainText(const QString &html)
{
    QString text;
    text.reserve(html.size());
    for (qsizetype i = 0; i < html.size();) {
        if (html[i] != u'<') {
            text += html[i++];
            continue;
        }
        const qsizetype close = html.indexOf(u'>', i);
        const QStringView tag = QStringView(html).mid(i, close < 0 ? -1 : close + 1 - i);
        if (tag == u"<p>" || tag == u"<br>")
            text += u'\n';
        i += tag.size();
    }
    // The ampersand comes last: "&amp;lt;" is the text "&lt;".
    text.replace(QStringLiteral("&nbsp;"), QStringLiteral(" "));
    text.replace(QStringLiteral("&lt;"), QStringLiteral("<"));
    text.replace(QStringLiteral("&gt;"), QStringLiteral(">"));
    text.replace(QStringLiteral("&quot;"), QStringLiteral("\""));
    text.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    return text;
}

QString shortened(const QString &text, qsizetype most)
{
    if (text.size() <= most)
        return withoutPiles(text);
    QString head = text.left(most - 1);
    if (head.back().isHighSurrogate())
        head.chop(1);
    return withoutPiles(head) + u'\u2026';
}

QString asHtml(const QString &text, qsizetype most)
{
    return shortenedHtml(shortened(text, most).toHtmlEscaped(), most);
}

QString shortenedHtml(const QString &html, qsizetype most)
{
    if (html.size() <= LongestWord)
        return html;
    QString result;
    result.reserve(qMin(html.size(), 2 * most));
    qsizetype count = 0;
    qsizetype word = 0; // characters since the last place where a line may end
    int marks = 0;
    for (qsizetype i = 0; i < html.size();) {
        const QChar c = html[i];
        qsizetype length = 1;
        marks = c.isMark() ? marks + 1 : 0;
        if (marks > MostMarks) {
            ++i;
            continue;
        }
        if (c == u'<') {
            const qsizetype close = html.indexOf(u'>', i);
            length = close < 0 ? html.size() - i : close + 1 - i;
        } else if (++count > most || result.size() > MostMarkup * most) {
            return result + QStringLiteral("&hellip;");
        } else if (c.isSpace() || c == ZeroWidthSpace || WordEnds.contains(c)) {
            word = 0;
        } else {
            if (c == u'&')
                length = entityLength(html, i);
            // Never between a letter and its marks, or the halves of one character.
            if (++word > LongestWord && !c.isMark() && !c.isLowSurrogate()) {
                result += ZeroWidthSpace;
                word = LongestWord - WordPart + 1;
            }
        }
        result += QStringView(html).mid(i, length);
        i += length;
    }
    return result;
}

QString withLiteralAmpersands(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

QString bold(const QString &text)
{
    return QStringLiteral("<b>") + text;
}

QString wrapRichText(const QString &html, int width)
{
    return LineBreaker(BreakScanner(html), width).result();
}

void lowerFirst(QString &text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toLower();
}

void upperFirst(QString &text)
{
    if (!text.isEmpty() && text.at(0).isLower())
        text[0] = text.at(0).toUpper();
}

QString afterLast(const QString &text, const QString &separator)
{
    const qsizetype at = text.lastIndexOf(separator);
    return at < 0 ? text : text.mid(at + separator.size());
}

QString beforeFirst(const QString &text, const QString &separator)
{
    const qsizetype at = text.indexOf(separator);
    return at < 0 ? text : text.left(at);
}

QString afterFirst(const QString &text, const QString &separator)
{
    const qsizetype at = text.indexOf(separator);
    return at < 0 ? QString() : text.mid(at + separator.size());
}

QString beforeLast(const QString &text, const QString &separator)
{
    const qsizetype at = text.lastIndexOf(separator);
    return at < 0 ? QString() : text.left(at);
}

bool isNumber(const QString &text)
{
    for (const QChar c : text) {
        if (!isDigit(c) && c != u',' && c != u'-' && c != u'+' && c != u'.')
            return false;
    }
    return true;
}

int leadingInt(const QString &text)
{
    qsizetype start = 0;
    while (start < text.size() && text[start].isSpace())
        ++start;
    qsizetype end = start;
    while (end < text.size() && (text[end] == u'-' || text[end] == u'+'))
        ++end;
    while (end < text.size() && isDigit(text[end]))
        ++end;
    return QStringView(text).mid(start, end - start).toInt();
}

QString signedNumber(int number)
{
    const QString digits = QString::number(number);
    return number > 0 ? QString(u'+' + digits) : digits;
}

QByteArray toCRLF(const QByteArray &bytes)
{
    return withLineEnds(bytes, "\r\n");
}

QByteArray toLF(const QByteArray &bytes)
{
    return withLineEnds(bytes, "\n");
}

QByteArray withoutByteOrderMark(const QByteArray &bytes)
{
    return bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
}

QByteArray escapeText(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    QByteArray result;
    result.reserve(bytes.size());
    for (const char c : bytes) {
        if (c == '\r')
            result += "\\r";
        else if (c == '\n')
            result += "\\n";
        else if (c == '\\')
            result += "\\\\\\"; // three, a quirk of the file format
        else
            result += c;
    }
    return result;
}

QString unescapeText(const QByteArray &bytes)
{
    QByteArray result;
    result.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\\') {
            result += bytes[i];
            continue;
        }
        ++i;
        const char escaped = i < bytes.size() ? bytes[i] : '\0';
        if (escaped == 'n')
            result += '\n';
        else if (escaped == 'r')
            result += '\r';
        else
            result += escaped;
    }
    return QString::fromUtf8(result);
}

int naturalCompare(const QString &a, const QString &b)
{
    const qsizetype digitsA = trailingDigits(a);
    const qsizetype digitsB = trailingDigits(b);
    const int stems =
        QStringView(a).left(digitsA).compare(QStringView(b).left(digitsB), Qt::CaseInsensitive);
    if (stems != 0)
        return stems;
    return compareDigits(QStringView(a).mid(digitsA), QStringView(b).mid(digitsB));
}
