// A line of a stat block as tokens, without its line end.
#pragma once

#include "statblocktokens.h"

#include <QList>

class StatBlockLine {
public:
    // How the brackets of a line open and close; a bullet and a star close too.
    enum Shape {
        NoMarks = 0,
        OnlyOpens = 2, // first and last mark open
        OnlyCloses = 3, // first and last mark close
        OpensAndCloses = 4,
        ClosesAndOpens = 5,
        BracketedLabel = 6, // as OpensAndCloses, and ":" stands behind the first ")"
    };

    StatBlockLine() = default;
    explicit StatBlockLine(QList<Token> tokens) : m_tokens(std::move(tokens)) { }

    const QList<Token> &tokens() const { return m_tokens; }
    int size() const { return static_cast<int>(m_tokens.size()); }
    bool isEmpty() const { return m_tokens.isEmpty(); }
    // A line end for an index out of range.
    const Token &at(int index) const
    {
        return index >= 0 && index < size() ? *(m_tokens.constData() + index) : lineEnd;
    }
    const Token &first() const { return at(0); }
    const Token &last() const { return at(size() - 1); }
    int kindAt(int index) const { return at(index).kind; }
    // Index of the first token of the kind, at `from` or behind it; -1 for none.
    int indexOf(int kind, int from = 0) const;
    bool contains(int kind) const { return indexOf(kind) >= 0; }
    // -1 for none.
    int indexOfBulletOrStar(int from = 0) const;
    // A "." last, or a "." and a symbol, such as a closing quotation mark.
    bool endsInFullStop() const;
    Shape shape() const;

    // Each edit keeps the read position on the token that it was on.
    void append(const Token &token);
    void append(const StatBlockLine &other);
    void insert(int index, const Token &token);
    void removeFirst();
    void removeLast();
    // Cuts the line before `index` and gives the tail, which reads from its start.
    StatBlockLine splitAt(int index);

    // The read position.
    int position() const { return m_position; }
    void setPosition(int position) { m_position = position; }
    bool atEnd() const { return m_position >= size(); }
    const Token &current() const { return at(m_position); }
    // `ahead` tokens behind the current one.
    const Token &peek(int ahead = 1) const { return at(m_position + ahead); }
    // The current token; moves on, not beyond the end.
    const Token &take();

private:
    static constexpr Token lineEnd {TokenKind::LineEnd, {}};

    Shape computeShape() const;

    QList<Token> m_tokens;
    int m_position = 0;
    mutable int m_shape = -1; // -1 until asked for
};
