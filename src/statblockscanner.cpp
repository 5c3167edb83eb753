#include "statblockscanner.h"

#include <array>
#include <functional>
#include <utility>

namespace {

constexpr char16_t enDash = u'\u2013';

// What an ASCII character is: most of a stat block is in ASCII, and a look into a table is quick.
enum Class : quint8 { Upper = 1, Lower = 2, Letter = Upper | Lower, Digit = 4, White = 8 };

// White are blanks of any width, and the control characters; not the ends of lines and of the text.
constexpr auto asciiClasses = [] {
    std::array<quint8, 0x80> classes {};
    for (char16_t c = u'\1'; c <= u' '; ++c)
        classes[c] = c != u'\n' && c != u'\r' ? White : 0;
    for (char16_t c = u'0'; c <= u'9'; ++c)
        classes[c] = Digit;
    for (char16_t c = u'A'; c <= u'Z'; ++c) {
        classes[c] = Upper;
        classes[c + u'a' - u'A'] = Lower;
    }
    return classes;
}();

bool isAscii(char16_t c, int classes)
{
    return c < 0x80 && (asciiClasses[c] & classes) != 0;
}

// Of other scripts' digits none makes a number.
bool isDigit(char16_t c)
{
    return isAscii(c, Digit);
}

bool isUpper(char16_t c)
{
    return isAscii(c, Upper) || (c >= 0x80 && QChar(c).isUpper());
}

bool isLower(char16_t c)
{
    return isAscii(c, Lower) || (c >= 0x80 && QChar(c).isLower());
}

bool isLetter(char16_t c)
{
    return isAscii(c, Letter) || (c >= 0x80 && QChar(c).isLetter());
}

bool isWhite(char16_t c)
{
    return isAscii(c, White) || (c >= 0x80 && QChar(c).isSpace());
}

// The kind of a character that is a token by itself wherever it stands; Symbol for all others.
int ofCharacter(char16_t c)
{
    switch (c) {
    case u'\n':
    case u'\r':
        return TokenKind::LineEnd;
    case u',':
        return TokenKind::Comma;
    case u':':
        return TokenKind::Colon;
    case u';':
        return TokenKind::Semicolon;
    case u'.':
        return TokenKind::FullStop;
    case u'(':
        return TokenKind::OpenBracket;
    case u')':
        return TokenKind::CloseBracket;
    case u'+':
        return TokenKind::Plus;
    case u'-':
        return TokenKind::Minus;
    case u'\u2022':
    case u'\u2726':
        return TokenKind::Bullet;
    case u'*':
        return TokenKind::Star;
    case u'\'':
    case u'\u2019':
        return TokenKind::Apostrophe;
    case u'\u00A9':
        return TokenKind::Copyright;
    case u'>':
        return TokenKind::Greater;
    default:
        return c >= u'\u2680' && c <= u'\u2685' ? TokenKind::DieFace1 + (c - u'\u2680')
                                                : TokenKind::Symbol;
    }
}

} // namespace

StatBlockScanner::StatBlockScanner(const QString &source)
    : m_source(source), m_begin(reinterpret_cast<const char16_t *>(m_source.constData())),
      m_end(m_source.size())
{
}

Token StatBlockScanner::next(bool keepWhite)
{
    if (m_peeked && !keepWhite) {
        m_cursor = m_behindPeeked;
        const Token token = *m_peeked;
        m_peeked.reset();
        return token;
    }
    m_peeked.reset();
    return scan(m_cursor, keepWhite);
}

Token StatBlockScanner::peek()
{
    if (!m_peeked) {
        m_behindPeeked = m_cursor;
        m_peeked = scan(m_behindPeeked, false);
    }
    return *m_peeked;
}

void StatBlockScanner::setTrapMode(bool on)
{
    m_trapMode = on;
    m_peeked.reset();
}

qsizetype StatBlockScanner::indexOf(const Token &token) const
{
    const char16_t *start = token.text.utf16();
    const bool isOfSource = std::less_equal<>()(m_begin, start)
        && std::less_equal<>()(start + token.text.size(), m_begin + m_end);
    return isOfSource ? start - m_begin : -1;
}

Token StatBlockScanner::scan(Cursor &cursor, bool keepWhite) const
{
    if (cursor.lineEndFirst) {
        cursor.lineEndFirst = false;
        return {TokenKind::LineEnd, u"\n"};
    }
    const qsizetype start = skipWhite(cursor.pos);
    if (keepWhite && start > cursor.pos)
        return token(TokenKind::WhiteSpace, std::exchange(cursor.pos, start), start);
    cursor.pos = start;
    const char16_t c = at(start);
    if (c == u'\0')
        return token(TokenKind::End, start, start);
    if (isDigit(c))
        return scanNumber(cursor);
    if (isLetter(c))
        return scanWord(cursor);

    int kind = ofCharacter(c);
    qsizetype end = start + 1;
    if ((c == u'+' || c == u'-' || c == enDash) && isDigit(at(end))) {
        kind = TokenKind::Number;
        end = skipDigits(end);
    } else if (c == u'\r' && at(end) == u'\n') {
        ++end;
    } else if (QChar::isHighSurrogate(c) && QChar::isLowSurrogate(at(end))) {
        ++end;
    }
    cursor = {end, breaksAfter(kind, end)};
    return token(kind, start, end);
}

Token StatBlockScanner::scanNumber(Cursor &cursor) const
{
    const qsizetype start = cursor.pos;
    // "1H" and "2H" tell how many hands a weapon takes.
    const char16_t third = at(start + 2);
    if (at(start + 1) == u'H' && !isLetter(third) && !isDigit(third)) {
        cursor.pos = start + 2;
        return token(TokenKind::Word, start, cursor.pos);
    }
    qsizetype end = skipDigits(start);
    while ((at(end) == u',' || at(end) == u'.') && isDigit(at(end + 1)))
        end = skipDigits(end + 1);
    if ((at(end) == u'/' || at(end) == u'-') && isLetter(at(end + 1))) {
        cursor = behindLetters(end + 1, false);
        return word(start, cursor.pos);
    }
    int kind = TokenKind::Number;
    if (at(end) == u'd' && isDigit(at(end + 1))) {
        kind = TokenKind::Dice;
        end = skipDigits(end + 1);
        if (at(end) == u'+' && isDigit(at(end + 1)))
            end = skipDigits(end + 1);
    }
    cursor = {end, breaksAfter(kind, end)};
    return token(kind, start, end);
}

Token StatBlockScanner::scanWord(Cursor &cursor) const
{
    const qsizetype start = cursor.pos;
    cursor = behindLetters(start, true);
    // "w/" stands for "with".
    if (cursor.pos == start + 1 && at(start) == u'w' && at(start + 1) == u'/') {
        cursor.pos = start + 2;
        return token(TokenKind::Word, start, cursor.pos);
    }
    return word(start, cursor.pos);
}

StatBlockScanner::Cursor StatBlockScanner::behindLetters(qsizetype first, bool withSigns) const
{
    bool lowerSeen = false;
    qsizetype pos = first;
    for (;; ++pos) {
        char16_t c = at(pos);
        while (isAscii(c, Lower)) { // nearly all of them
            lowerSeen = true;
            c = at(++pos);
        }
        if (isLower(c)) {
            lowerSeen = true;
        } else if (!isLetter(c)) {
            if (!withSigns || (c != u'-' && c != u'\''))
                return {pos, false};
        } else if (m_trapMode && pos > first && breaksWord(pos, lowerSeen)) {
            return {pos, true};
        }
    }
}

// A word that was run on: "damageMiss", "DCThe".
bool StatBlockScanner::breaksWord(qsizetype pos, bool lowerSeen) const
{
    const char16_t c = at(pos);
    if (!isUpper(c))
        return false;
    if (lowerSeen)
        return at(pos - 1) != u'-';
    return c == u'A' || (isLower(at(pos + 1)) && isLower(at(pos + 2)));
}

// A line that was run on behind a token of the kind that ends before `pos`.
bool StatBlockScanner::breaksAfter(int kind, qsizetype pos) const
{
    if (!m_trapMode)
        return false;
    const char16_t c = at(pos);
    switch (kind) {
    case TokenKind::CloseBracket:
        return isUpper(c) || (isDigit(c) && isLetter(at(pos - 2)));
    case TokenKind::FullStop:
        return isUpper(c) || (isDigit(c) && (isLetter(at(pos - 2)) || !isDigit(at(pos + 1))));
    case TokenKind::Number:
        return isUpper(c);
    default:
        return false;
    }
}

qsizetype StatBlockScanner::skipDigits(qsizetype pos) const
{
    while (isDigit(at(pos)))
        ++pos;
    return pos;
}

qsizetype StatBlockScanner::skipWhite(qsizetype pos) const
{
    while (isWhite(at(pos)))
        ++pos;
    return pos;
}

Token StatBlockScanner::token(int kind, qsizetype start, qsizetype end) const
{
    return {kind, QStringView(m_begin + start, end - start)};
}

Token StatBlockScanner::word(qsizetype start, qsizetype end) const
{
    return token(TokenKind::ofWord({m_begin + start, end - start}), start, end);
}
