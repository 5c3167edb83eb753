#include "statblocktext.h"

namespace {

bool isBlankBetween(int before, int after)
{
    const auto isTight = [](int kind) {
        return kind == TokenKind::Apostrophe || kind == TokenKind::Symbol
            || kind == TokenKind::WhiteSpace;
    };
    const bool clings = TokenKind::isIn(after, TokenKind::Comma, TokenKind::FullStop)
        || after == TokenKind::CloseBracket || isTight(after);
    return !clings && before != 0 && before != TokenKind::OpenBracket && !isTight(before);
}

} // namespace

void TokenText::add(const Token &token)
{
    if (isBlankBetween(m_last, token.kind))
        m_text.append(u' ');
    append(std::exchange(m_openTag, {}));
    m_last = token.kind;
    if (m_raises && TokenKind::isWord(token.kind)) {
        m_raises = false;
        m_text.append(token.text.front().toUpper());
        append(token.text.sliced(1));
    } else {
        addEscaped(token.text);
    }
}

void TokenText::add(const StatBlockLine &line, int from, int to)
{
    for (int i = from; i < to; ++i)
        add(line.at(i));
}

void TokenText::addHtml(QStringView html)
{
    append(html);
    if (html.endsWith(u' '))
        m_last = 0;
}

void TokenText::closeTag(QStringView tag)
{
    if (m_openTag.isEmpty())
        append(tag);
    m_openTag = {};
}

void TokenText::addEscaped(QStringView text)
{
    // Only signs of one character need it.
    const char16_t sign = m_form == Html && text.size() == 1 ? text.front().unicode() : u'\0';
    switch (sign) {
    case u'&':
        append(u"&amp;");
        break;
    case u'<':
        append(u"&lt;");
        break;
    case u'>':
        append(u"&gt;");
        break;
    default:
        append(text);
    }
}

QString clauseText(const StatBlockLine &line, int from, int to)
{
    const int last = to - 1;
    if (last >= from && TokenKind::isIn(line.kindAt(last), TokenKind::Comma, TokenKind::FullStop))
        to = last;
    TokenText text(TokenText::Plain);
    text.add(line, from, to);
    return text.text();
}
