// Tells what a line of a stat block is, by its first words and the kind of the line before.
#pragma once

#include "statblockline.h"

#include <QString>

namespace LineKind {

enum Code : int {
    UNKNOWN_LINE,
    HEADER_TITLE,
    HEADER_LINE,
    HEADER_TRAIT,
    POWER_SECTION,
    POWER_HEADER,
    POWER_HEADER_DOT,
    POWER_DETAIL,
    TRAP_DETAIL_STANDARD,
    TRAP_DETAIL_FREE,
    TRAP_DETAIL_TRIGGERED,
    TRAP_DETAIL_SKILL,
    TRAP_DETAIL_SKILL_DC,
    TRAP_DETAIL_DC,
    POWER_DETAIL_W_LABEL,
    POWER_DETAIL_W_TRAP,
    FOOTER_LINE,
    FOOTER_HEADER,
    FOOTER_DETAIL,
    NO_LINE,
};

constexpr bool isHeader(int kind)
{
    return kind >= HEADER_TITLE && kind <= HEADER_TRAIT;
}
constexpr bool isPowerHeader(int kind)
{
    return kind == POWER_HEADER || kind == POWER_HEADER_DOT;
}
constexpr bool isDetail(int kind)
{
    return kind >= POWER_DETAIL && kind <= POWER_DETAIL_W_TRAP;
}
constexpr bool isFooter(int kind)
{
    return kind >= FOOTER_LINE && kind <= FOOTER_DETAIL;
}

} // namespace LineKind

// As a dump prints it; empty for a kind that there isn't.
QString lineKindName(int kind);

namespace StatBlockClassifier {

struct Context {
    int state = LineKind::HEADER_TITLE; // the kind of the line before
    bool headerFirst = false; // the statistics haven't begun: a name line is a trait
    bool trapMode = false;
};

struct Result {
    LineKind::Code kind = LineKind::UNKNOWN_LINE;
    // Where the line is two lines: index of the second one's first token; 0 for no split.
    int split = 0;

    bool operator==(const Result &) const = default;
};

Result classify(const StatBlockLine &line, const Context &context);

// By a label such as "Hit:" or "DC 15:"; UNKNOWN_LINE when the line begins with none.
Result labelTest(const StatBlockLine &line, bool trapMode);

struct NameEnd {
    int end = 0; // index behind the name's last token, told in either case
    bool isHeader = false; // what follows the name shows a power's header
};

NameEnd nameEnd(const StatBlockLine &line, int start, int minTokens);

// Whether a line that begins with the word portrait states a picture's path, and isn't a power's
// name or a sentence. Without the white space in it.
bool namesPicture(const StatBlockLine &line);

// How many tokens from `start` on only mark the power's header behind them: bullets, daggers, or a
// bracket around a letter. 0 where no header follows them.
int headerMarks(const StatBlockLine &line, int start = 0);

// "standard" or "free" with "action", "immediate" or "opportunity" at the start of a trap's line;
// UNKNOWN_LINE otherwise.
LineKind::Code trapActionKind(const StatBlockLine &line);

// The section that a section word begins (traits 4 to other 11); 0 for any other kind of token.
int sectionOf(int tokenKind);

} // namespace StatBlockClassifier
