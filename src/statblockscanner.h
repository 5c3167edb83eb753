// Cuts the text of a stat block into tokens, and mends the run-on lines that a trap has when it is
// pasted from a PDF.
#pragma once

#include "statblocktokens.h"

#include <QString>

#include <optional>

// Owns the text that its tokens view: they live as long as the scanner.
class StatBlockScanner {
public:
    explicit StatBlockScanner(const QString &source);
    Q_DISABLE_COPY_MOVE(StatBlockScanner)

    // The next token; at the end of the text (a zero character ends it too) always TokenKind::End.
    // With `keepWhite` a run of white space is a token of its own, otherwise it is skipped.
    Token next(bool keepWhite = false);
    // What next(false) will give.
    Token peek();

    // From the next token on, one that was only looked at included.
    void setTrapMode(bool on);

    // Index into the source of what next() will read.
    qsizetype position() const { return m_cursor.pos; }
    // Index into the source of the token's start; -1 for one that isn't of the source.
    qsizetype indexOf(const Token &token) const;

private:
    struct Cursor {
        qsizetype pos = 0;
        // A line end that isn't in the source stands before the character at `pos`.
        bool lineEndFirst = false;
    };

    Token scan(Cursor &cursor, bool keepWhite) const;
    Token scanNumber(Cursor &cursor) const;
    Token scanWord(Cursor &cursor) const;
    // The end of the run of letters that begins at `first`; with `withSigns`, "-" and "'" belong to
    // it.
    Cursor behindLetters(qsizetype first, bool withSigns) const;
    bool breaksWord(qsizetype pos, bool lowerSeen) const;
    bool breaksAfter(int kind, qsizetype pos) const;
    qsizetype skipDigits(qsizetype pos) const;
    qsizetype skipWhite(qsizetype pos) const;
    // A zero character beyond both ends.
    char16_t at(qsizetype pos) const { return size_t(pos) < size_t(m_end) ? m_begin[pos] : u'\0'; }
    Token token(int kind, qsizetype start, qsizetype end) const;
    Token word(qsizetype start, qsizetype end) const;

    const QString m_source;
    const char16_t *const m_begin;
    const qsizetype m_end;
    Cursor m_cursor;
    bool m_trapMode = false;
    std::optional<Token> m_peeked;
    Cursor m_behindPeeked;
};
