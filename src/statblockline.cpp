#include "statblockline.h"

#include <algorithm>
#include <utility>

int StatBlockLine::indexOf(int kind, int from) const
{
    for (int i = from; i < size(); ++i) {
        if (m_tokens.at(i).kind == kind)
            return i;
    }
    return -1;
}

int StatBlockLine::indexOfBulletOrStar(int from) const
{
    for (int i = from; i < size(); ++i) {
        if (TokenKind::isBulletOrStar(m_tokens.at(i).kind))
            return i;
    }
    return -1;
}

bool StatBlockLine::endsInFullStop() const
{
    const int end = size() - 1;
    return kindAt(end) == TokenKind::FullStop
        || (kindAt(end) == TokenKind::Symbol && kindAt(end - 1) == TokenKind::FullStop);
}

StatBlockLine::Shape StatBlockLine::shape() const
{
    if (m_shape < 0)
        m_shape = computeShape();
    return static_cast<Shape>(m_shape);
}

StatBlockLine::Shape StatBlockLine::computeShape() const
{
    const auto opens = [](const Token &token) { return token.kind == TokenKind::OpenBracket; };
    const auto isMark = [&](const Token &token) {
        return opens(token) || token.kind == TokenKind::CloseBracket
            || TokenKind::isBulletOrStar(token.kind);
    };
    const auto first = std::find_if(m_tokens.cbegin(), m_tokens.cend(), isMark);
    if (first == m_tokens.cend())
        return NoMarks;
    const auto last = std::find_if(m_tokens.crbegin(), m_tokens.crend(), isMark);
    if (!opens(*first))
        return opens(*last) ? ClosesAndOpens : OnlyCloses;
    if (opens(*last))
        return OnlyOpens;
    const int bracket = indexOf(TokenKind::CloseBracket);
    return bracket >= 0 && kindAt(bracket + 1) == TokenKind::Colon ? BracketedLabel
                                                                   : OpensAndCloses;
}

void StatBlockLine::append(const Token &token)
{
    m_tokens.append(token);
    m_shape = -1;
}

void StatBlockLine::append(const StatBlockLine &other)
{
    m_tokens.append(other.m_tokens);
    m_shape = -1;
}

void StatBlockLine::insert(int index, const Token &token)
{
    m_tokens.insert(index, token);
    if (m_position >= index)
        ++m_position;
    m_shape = -1;
}

void StatBlockLine::removeFirst()
{
    m_tokens.removeFirst();
    m_position = std::max(0, m_position - 1);
    m_shape = -1;
}

void StatBlockLine::removeLast()
{
    m_tokens.removeLast();
    m_shape = -1;
}

// Copies the head and not the tail, so that a long line that is split again and again stays cheap.
StatBlockLine StatBlockLine::splitAt(int index)
{
    const qsizetype size = std::clamp<qsizetype>(index, 0, m_tokens.size());
    QList<Token> tail = std::exchange(m_tokens, m_tokens.first(size));
    tail.remove(0, size);
    m_shape = -1;
    return StatBlockLine(std::move(tail));
}

const Token &StatBlockLine::take()
{
    const Token &token = current();
    if (!atEnd())
        ++m_position;
    return token;
}
