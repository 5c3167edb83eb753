#include "statblockassembler.h"

#include <QVarLengthArray>

#include <algorithm>

#include "power.h"

namespace {

using namespace LineKind;
using namespace StatBlockClassifier;

// How far a sentence may run on, and a header with an open bracket.
constexpr int maxSentenceLines = 12;
constexpr int maxBracketLines = 3;

// A header such as "Trigger" or "Attack 2" with its text behind it in the same line: how many
// tokens are the header's; 0 for none.
int trapHeadingSize(const StatBlockLine &line)
{
    if (line.size() <= 4)
        return 0;
    const int first = line.first().kind;
    if (first == TokenKind::Trigger || first == TokenKind::Special || first == TokenKind::Attack) {
        if (line.at(1).isCapitalised())
            return 1;
        return line.kindAt(1) == TokenKind::Number && line.at(2).isCapitalised() ? 2 : 0;
    }
    return line.first().text == u"Portal" && line.at(1).text == u"Effects"
            && line.at(2).isCapitalised()
        ? 2
        : 0;
}

// "Initiative +4", or "Perception" as a heading. Only a portrait's line keeps its white space.
bool isStatistic(const StatBlockLine &line)
{
    const int next = line.kindAt(1);
    return TokenKind::isStatWord(line.first().kind)
        && (line.size() == 1 || next == TokenKind::Number || next == TokenKind::WhiteSpace);
}

bool isOnly(const StatBlockLine &line, int kind)
{
    return line.size() == 1 && line.first().kind == kind;
}

} // namespace

StatBlockAssembler::StatBlockAssembler(const QString &text, QList<LineNote> *notes)
    : m_scanner(text), m_notes(notes)
{
}

// --- reading ---

bool StatBlockAssembler::hasAhead(int index)
{
    while (m_pending.size() <= size_t(index)) {
        if (!readLine())
            return false;
    }
    return true;
}

// Adds one line of the text to the pending ones, as the pieces that it holds. False at the end.
bool StatBlockAssembler::readLine()
{
    Token token = m_scanner.next();
    while (token.kind == TokenKind::LineEnd)
        token = m_scanner.next();
    if (token.kind == TokenKind::End)
        return false;
    // Blanks and capitals belong to a path. The text's first line is a name.
    const bool isPath = token.kind == TokenKind::Portrait && !m_line.isEmpty();
    m_scanner.setTrapMode(m_trapMode && !isPath);
    QVarLengthArray<Token, 64> tokens;
    while (token.kind != TokenKind::End) {
        if (token.kind != TokenKind::LineEnd)
            tokens.append(token);
        else if (isPath || !goesOn(tokens.last().kind))
            break;
        token = m_scanner.next(isPath);
    }
    m_scanner.setTrapMode(m_trapMode);
    const QList<Token> line(tokens.cbegin(), tokens.cend());
    QList<Token> words = line;
    words.removeIf([](const Token &each) { return each.kind == TokenKind::WhiteSpace; });
    if (isPath && namesPicture(StatBlockLine(words)))
        m_pending.emplace_back(line);
    else
        addPieces(words);
    return true;
}

// Whether a line that ends in a token of that kind was wrapped. Its line end has been taken.
bool StatBlockAssembler::goesOn(int last)
{
    if (last == TokenKind::Comma)
        return true;
    if (last != TokenKind::LowLight && !TokenKind::isBulletOrStar(last))
        return false;
    while (m_scanner.peek().kind == TokenKind::LineEnd)
        m_scanner.next();
    const int next = m_scanner.peek().kind;
    return last == TokenKind::LowLight ? next == TokenKind::Vision
                                       : TokenKind::isUsageOrDamageWord(next);
}

// A bullet behind a full stop begins a line of its own.
void StatBlockAssembler::addPieces(const QList<Token> &tokens)
{
    qsizetype start = 0;
    for (qsizetype i = 1; i <= tokens.size(); ++i) {
        const bool isEnd = i == tokens.size()
            || (TokenKind::isBulletOrStar(tokens[i].kind)
                && tokens[i - 1].kind == TokenKind::FullStop);
        if (!isEnd)
            continue;
        StatBlockLine piece(tokens.mid(start, i - start));
        if (dropMarks(piece))
            m_pending.push_back(std::move(piece));
        start = i;
    }
}

// False when nothing is left of the line.
bool StatBlockAssembler::dropMarks(StatBlockLine &line) const
{
    if (m_trapMode && m_bulletXp) {
        while (line.first().kind == TokenKind::Greater || line.first().kind == TokenKind::Star)
            line.removeFirst();
    }
    return !line.isEmpty();
}

// For lines that were read ahead before both flags were set.
void StatBlockAssembler::dropPendingMarks()
{
    std::erase_if(m_pending, [this](StatBlockLine &line) { return !dropMarks(line); });
}

void StatBlockAssembler::setBulletXp()
{
    m_bulletXp = true;
    dropPendingMarks();
}

void StatBlockAssembler::enterTrapMode()
{
    m_trapMode = true;
    m_headerFirst = false;
    m_section = PowerSection::TrapOpening;
    m_scanner.setTrapMode(true);
    dropPendingMarks();
}

int StatBlockAssembler::kindAhead(int index, int state)
{
    return hasAhead(index) ? classify(ahead(index), context(state)).kind : NO_LINE;
}

void StatBlockAssembler::joinAhead(int count)
{
    for (; count > 0; --count) {
        m_line.append(m_pending.front());
        m_pending.pop_front();
    }
}

// --- the kind of a line ---

Context StatBlockAssembler::context(int state) const
{
    return {state, m_headerFirst, m_trapMode};
}

void StatBlockAssembler::setReading(LineReading reading, bool isSkipped)
{
    m_note.reading = reading;
    m_note.isSkipped = isSkipped;
}

// Tokens that the assembler put in have no place in the text and are passed over.
void StatBlockAssembler::noteLine()
{
    const auto isOfText = [this](const Token &token) { return m_scanner.indexOf(token) >= 0; };
    const QList<Token> &tokens = m_line.tokens();
    const auto first = std::find_if(tokens.cbegin(), tokens.cend(), isOfText);
    const auto last = std::find_if(tokens.crbegin(), tokens.crend(), isOfText);
    if (first == tokens.cend())
        return;
    m_note.first = m_scanner.indexOf(*first);
    m_note.last = m_scanner.indexOf(*last) + last->text.size() - 1;
    m_notes->append(m_note);
}

void StatBlockAssembler::advance()
{
    if (m_notes)
        noteLine();
    const int state = m_lineKind;
    if (!hasAhead(0)) {
        m_line = StatBlockLine();
        m_lineKind = NO_LINE;
        return;
    }
    m_line = std::move(m_pending.front());
    m_pending.pop_front();
    const Result result = classify(m_line, context(state));
    splitOff(result.split);
    m_lineKind = settle(result.kind, state);
    m_line.setPosition(0);
}

void StatBlockAssembler::splitOff(int index)
{
    if (index > 0 && index < m_line.size())
        m_pending.push_front(m_line.splitAt(index));
}

int StatBlockAssembler::settle(int kind, int state)
{
    if (isPowerHeader(kind))
        return settleHeader();
    if (kind == UNKNOWN_LINE && dropHeaderMarks())
        return settleHeader();
    // A trait whose name is one word reads as a sentence, and would end the header for good.
    if (kind == POWER_DETAIL && isHeader(state) && m_headerFirst && hasName())
        return settleDetail(HEADER_TRAIT);
    if (kind == UNKNOWN_LINE)
        return settleUnknown(state);
    // What a trap does may be the first word that it is one.
    if (kind == POWER_DETAIL_W_TRAP && isHeader(state) && !m_trapMode)
        enterTrapMode();
    return isDetail(kind) || kind == HEADER_TRAIT ? settleDetail(kind) : kind;
}

int StatBlockAssembler::settleDetail(int kind)
{
    if (m_trapMode) {
        if (const int action = trapActionKind(m_line); action != UNKNOWN_LINE)
            return action;
        const bool isInText =
            m_section == PowerSection::TrapWarning || m_section == PowerSection::TrapSkills;
        if (const int heading = trapHeadingSize(m_line); isInText && !m_bulletXp && heading > 0) {
            splitOff(heading);
            return settleHeader();
        }
    }
    if (!m_line.endsInFullStop()) {
        if (m_section == PowerSection::Countermeasures)
            m_line.append(Token {TokenKind::FullStop, u"."});
        else
            joinContinuations(kind);
    }
    return kind;
}

// Joins the lines that a sentence was wrapped onto, through its full stop. Text that goes on
// without one is no sentence.
void StatBlockAssembler::joinContinuations(int kind)
{
    for (int count = 0; count < maxSentenceLines; ++count) {
        const int next = kindAhead(count, kind);
        const bool goesOn =
            next == UNKNOWN_LINE || (next >= POWER_DETAIL && next <= TRAP_DETAIL_SKILL);
        if (!goesOn || (kind == POWER_DETAIL_W_TRAP && isStatistic(ahead(count)))) {
            joinAhead(count);
            return;
        }
        if (ahead(count).endsInFullStop()) {
            joinAhead(count + 1);
            return;
        }
    }
}

int StatBlockAssembler::settleUnknown(int state)
{
    if (m_trapMode) {
        if (isDoubleHeading())
            return settleHeader();
        if (isInitiativeLine())
            return HEADER_LINE;
        if (m_section == PowerSection::TrapOpening && !hasName())
            return settleDetail(POWER_DETAIL);
    }
    if (isHeader(state))
        return m_headerFirst ? settleDetail(HEADER_TRAIT) : settleName();
    if (state == POWER_SECTION && m_section != PowerSection::Countermeasures)
        return settleName();
    if (!isPowerHeader(state) && hasName())
        return settleHeader();
    return settleDetail(POWER_DETAIL);
}

// The letter in a bracket is the power's icon and stays.
bool StatBlockAssembler::dropHeaderMarks()
{
    const int marks = headerMarks(m_line);
    if (marks == 0)
        return false;
    const Token letter = marks >= 3 ? m_line.at(marks - 2) : Token();
    for (int i = 0; i < marks; ++i)
        m_line.removeFirst();
    if (TokenKind::isIconLetter(letter.kind))
        m_line.insert(0, letter);
    return true;
}

// A header if it begins with a name at all, in lower case too, so that no power goes without one.
int StatBlockAssembler::settleName()
{
    const Token &first = m_line.first();
    const bool isName = first.isCapitalised()
        || (TokenKind::isWord(first.kind) && !TokenKind::isUsageWord(first.kind));
    return isName ? settleHeader() : settleDetail(POWER_DETAIL);
}

int StatBlockAssembler::settleHeader()
{
    if (m_trapMode && m_section == PowerSection::Countermeasures && m_line.endsInFullStop())
        return POWER_DETAIL;
    if (isDoubleHeading())
        m_pending.pop_front();
    if (m_line.shape() == StatBlockLine::OnlyOpens)
        joinBracket();
    return POWER_HEADER;
}

// Two headings of one attack of a trap, on a line each.
bool StatBlockAssembler::isDoubleHeading()
{
    return m_trapMode && isOnly(m_line, TokenKind::Trigger) && hasAhead(0)
        && isOnly(ahead(0), TokenKind::Attack);
}

// A trap states its initiative among its powers, on one line or on two.
bool StatBlockAssembler::isInitiativeLine()
{
    if (m_line.first().kind != TokenKind::Initiative)
        return false;
    if (m_line.kindAt(1) == TokenKind::Number) {
        const int last = m_line.last().kind;
        if (m_line.size() > 4 && (last == TokenKind::Trigger || last == TokenKind::Attack))
            splitOff(m_line.size() - 1);
        return true;
    }
    if (m_line.size() != 1 || !hasAhead(0) || !isOnly(ahead(0), TokenKind::Number))
        return false;
    joinAhead(1);
    return true;
}

// Joins the lines that hold the rest of a header's bracket.
void StatBlockAssembler::joinBracket()
{
    const auto closes = [this](int index) {
        return hasAhead(index) && ahead(index).shape() == StatBlockLine::OnlyCloses;
    };
    int stop = 0;
    while (stop < maxBracketLines && kindAhead(stop, POWER_DETAIL) == UNKNOWN_LINE && !closes(stop))
        ++stop;
    if (stop == maxBracketLines)
        return;
    int count = 0;
    for (bool closed = false; !closed; ++count) {
        const int kind = kindAhead(count, POWER_DETAIL);
        if (kind != UNKNOWN_LINE && kind != POWER_HEADER_DOT)
            break;
        closed = closes(count);
    }
    joinAhead(count);
}

bool StatBlockAssembler::hasName() const
{
    return nameEnd(m_line, 0, 1).isHeader;
}
