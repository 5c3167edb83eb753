#include "statblockclassifier.h"

#include <array>

#include "power.h"

namespace {

using StatBlockClassifier::Result;

// "DC 15:", with or without the skill in front.
Result dcPattern(const StatBlockLine &line)
{
    const bool hasSkill = TokenKind::isSkillOrPerception(line.first().kind);
    const int dc = hasSkill ? 1 : 0;
    if (line.kindAt(dc) != TokenKind::Dc || line.kindAt(dc + 1) != TokenKind::Number
        || line.kindAt(dc + 2) != TokenKind::Colon)
        return {};
    return {hasSkill ? LineKind::TRAP_DETAIL_SKILL_DC : LineKind::TRAP_DETAIL_DC};
}

// A trap's line that begins with a skill.
Result skillLine(const StatBlockLine &line)
{
    int chainEnd = 1;
    while (line.kindAt(chainEnd) == TokenKind::Or && TokenKind::isSkill(line.kindAt(chainEnd + 1)))
        chainEnd += 2;
    if (chainEnd > 1) {
        if (line.kindAt(chainEnd) == TokenKind::Dc)
            return {LineKind::TRAP_DETAIL_SKILL_DC};
        return {LineKind::POWER_HEADER, chainEnd < line.size() ? chainEnd : 0};
    }
    return {line.contains(TokenKind::Colon) ? LineKind::TRAP_DETAIL_SKILL_DC
                                            : LineKind::TRAP_DETAIL_SKILL};
}

// "Trap: Darts fly." tells what it does; a trap's role has no colon.
bool beginsTrapText(const StatBlockLine &line)
{
    const int first = line.first().kind;
    return (first == TokenKind::Trap || first == TokenKind::Hazard)
        && line.kindAt(1) == TokenKind::Colon;
}

bool beginsWithLabel(const StatBlockLine &line)
{
    const int first = line.first().kind;
    if (!TokenKind::isLabelWord(first) && first != TokenKind::Action)
        return false;
    switch (line.kindAt(1)) {
    case TokenKind::Colon:
        return true;
    case TokenKind::Attack:
        return line.kindAt(2) == TokenKind::Colon;
    case TokenKind::OpenBracket:
        return line.shape() == StatBlockLine::BracketedLabel;
    default:
        return false;
    }
}

// What ends the creature: alignment, scores, equipment. It may stand anywhere but in the headings.
Result footer(const StatBlockLine &line, int state)
{
    const int first = line.first().kind;
    if (TokenKind::isFooterWord(first))
        return {LineKind::FOOTER_LINE};
    if (TokenKind::isFooterHeaderWord(first))
        return {LineKind::FOOTER_HEADER};
    return {LineKind::isFooter(state) ? LineKind::FOOTER_DETAIL : LineKind::UNKNOWN_LINE};
}

bool beginsStatistics(const StatBlockLine &line, bool trapMode)
{
    const int first = line.first().kind;
    return TokenKind::isIn(first, TokenKind::Tiny, TokenKind::Saving)
        && !(trapMode && first == TokenKind::Perception)
        && !(first == TokenKind::Portrait && !StatBlockClassifier::namesPicture(line));
}

Result powerSection(const StatBlockLine &line, bool trapMode)
{
    const bool alone = line.size() == 1;
    switch (line.first().kind) {
    case TokenKind::Traits:
        return {alone ? LineKind::POWER_SECTION : LineKind::UNKNOWN_LINE};
    case TokenKind::Countermeasures:
        return {alone || trapMode ? LineKind::POWER_SECTION : LineKind::UNKNOWN_LINE,
                trapMode && !alone ? 1 : 0};
    case TokenKind::Other:
        return {line.size() == 2 && line.kindAt(1) == TokenKind::Powers ? LineKind::POWER_SECTION
                                                                        : LineKind::UNKNOWN_LINE};
    default:
        return {StatBlockClassifier::sectionOf(line.first().kind) != 0 && line.size() == 2
                        && line.kindAt(1) == TokenKind::Actions
                    ? LineKind::POWER_SECTION
                    : LineKind::UNKNOWN_LINE};
    }
}

// A power's header by the symbol in front or the bullet within.
Result markedHeader(const StatBlockLine &line)
{
    const int first = line.first().kind;
    if (TokenKind::isIconLetter(first)) {
        const bool isArticle = first == TokenKind::LowerA || first == TokenKind::UpperA;
        if (!isArticle || line.at(1).isCapitalised())
            return {LineKind::POWER_HEADER};
    }
    if (line.first().isCapitalised() && line.indexOfBulletOrStar() >= 0)
        return {LineKind::POWER_HEADER_DOT};
    return {};
}

// "Trigger", "Special" or "Attack" alone, or with a number.
bool isTrapHeading(const StatBlockLine &line)
{
    const Token &first = line.first();
    if (first.kind != TokenKind::Trigger && first.kind != TokenKind::Special
        && first.kind != TokenKind::Attack)
        return false;
    return first.isCapitalised()
        && (line.size() == 1 || (line.size() == 2 && line.kindAt(1) == TokenKind::Number));
}

// A word that ends the name, whatever its case.
bool isNameWord(const Token &token)
{
    return token.isCapitalised() && !TokenKind::isUsageWord(token.kind);
}

// How many tokens of a name's small words stand at `index`; 0 for none.
int gapAt(const StatBlockLine &line, int index)
{
    const Token &token = line.at(index);
    if (token.kind == TokenKind::Apostrophe)
        return line.at(index + 1).text == u"s" ? 2 : 0;
    if ((token.kind == TokenKind::Of || token.kind == TokenKind::To)
        && line.kindAt(index + 1) == TokenKind::The)
        return 2;
    const bool isSmallWord = TokenKind::isWord(token.kind) && !TokenKind::isUsageWord(token.kind)
        && !token.isCapitalised() && token.text.size() <= 5;
    return isSmallWord ? 1 : 0;
}

// Index behind the last token of the name at `start`; that itself where no name begins there.
int endOfName(const StatBlockLine &line, int start)
{
    if (!line.at(start).isCapitalised())
        return start;
    int end = start + 1;
    int lastGap = 0; // tokens of small words in front of the last word
    for (int gap = 0;; end += gap + 1) {
        gap = isNameWord(line.at(end)) ? 0 : gapAt(line, end);
        if (!isNameWord(line.at(end + gap)))
            break;
        lastGap = gap;
    }
    // "Quick Step The troll moves": the name's last word begins the sentence behind it.
    const Token &next = line.at(end);
    const bool inSentence = next.kind == TokenKind::Apostrophe
        || (TokenKind::isWord(next.kind) && !TokenKind::isUsageWord(next.kind));
    if (inSentence && end - start > 1 && lastGap == 0)
        --end;
    return end;
}

bool isWordsOnly(const StatBlockLine &line, int from)
{
    for (int i = from; i < line.size(); ++i) {
        if (!TokenKind::isWord(line.kindAt(i)) && line.kindAt(i) != TokenKind::Apostrophe)
            return false;
    }
    return true;
}

bool mayFollowName(const StatBlockLine &line, int index)
{
    const Token &token = line.at(index);
    if (token.kind == TokenKind::LineEnd)
        return true;
    if (token.kind == TokenKind::OpenBracket)
        return line.shape() != StatBlockLine::BracketedLabel;
    if (token.isCapitalised()) // a sentence if more than words follow, else wrapped prose
        return index + 1 >= line.size() || !isWordsOnly(line, index + 1);
    return TokenKind::isUsageWord(token.kind);
}

bool isHeaderMark(int kind)
{
    return TokenKind::isBulletOrStar(kind) || kind == TokenKind::Symbol;
}

// The letter or the word of an icon in round brackets, or a letter in others. Within a line a word
// in round brackets belongs to the value in front.
bool isBracketedIcon(const StatBlockLine &line, int index)
{
    if (!TokenKind::isWord(line.kindAt(index + 1)))
        return false;
    const bool isLetter = line.at(index + 1).text.size() == 1;
    const int close = line.kindAt(index + 2);
    if (line.kindAt(index) == TokenKind::OpenBracket)
        return close == TokenKind::CloseBracket && (isLetter || index == 0);
    return line.kindAt(index) == TokenKind::Symbol && isLetter && close == TokenKind::Symbol;
}

// Whether what stands behind a name at `index` says how a power is used: "at-will", or a bracket or
// the text behind a bullet that holds such a word. In a bracket an action says it too.
bool tellsUsage(const StatBlockLine &line, int index)
{
    const int next = line.kindAt(index);
    const bool isBracket = next == TokenKind::OpenBracket;
    if (!isBracket && !TokenKind::isBulletOrStar(next))
        return TokenKind::isUsageWord(next);
    const auto isUsage = [isBracket](int kind) {
        return TokenKind::isUsageWord(kind)
            || (isBracket && TokenKind::isIn(kind, TokenKind::Standard, TokenKind::Free));
    };
    const auto isEnd = [](int kind) {
        return kind == TokenKind::LineEnd || kind == TokenKind::OpenBracket
            || kind == TokenKind::CloseBracket || TokenKind::isBulletOrStar(kind);
    };
    int end = index + 1;
    while (!isEnd(line.kindAt(end)) && !isUsage(line.kindAt(end)))
        ++end;
    return !isEnd(line.kindAt(end));
}

} // namespace

QString lineKindName(int kind)
{
    static constexpr std::array names {
        "UNKNOWN_LINE",         "HEADER_TITLE",     "HEADER_LINE",           "HEADER_TRAIT",
        "POWER_SECTION",        "POWER_HEADER",     "POWER_HEADER_DOT",      "POWER_DETAIL",
        "TRAP_DETAIL_STANDARD", "TRAP_DETAIL_FREE", "TRAP_DETAIL_TRIGGERED", "TRAP_DETAIL_SKILL",
        "TRAP_DETAIL_SKILL_DC", "TRAP_DETAIL_DC",   "POWER_DETAIL_W_LABEL",  "POWER_DETAIL_W_TRAP",
        "FOOTER_LINE",          "FOOTER_HEADER",    "FOOTER_DETAIL",         "NO_LINE",
    };
    static_assert(names.size() == LineKind::NO_LINE + 1);
    return kind >= 0 && kind <= LineKind::NO_LINE ? QString::fromLatin1(names[size_t(kind)])
                                                  : QString();
}

Result StatBlockClassifier::classify(const StatBlockLine &line, const Context &context)
{
    const int state = context.state;
    if (line.isEmpty())
        return {LineKind::NO_LINE};
    if (state == LineKind::HEADER_TITLE)
        return {LineKind::HEADER_TITLE};

    const auto known = [](const Result &result) { return result.kind != LineKind::UNKNOWN_LINE; };
    const auto byLabel = [&] { return labelTest(line, context.trapMode); };
    const bool afterPowerHeader = LineKind::isPowerHeader(state);
    const bool beginsWithNumber = TokenKind::isNumberOrDice(line.first().kind);
    Result result;

    if (LineKind::isHeader(state) || LineKind::isDetail(state) || LineKind::isFooter(state)) {
        if (result = footer(line, state); known(result))
            return result;
    }
    if (LineKind::isHeader(state) && beginsTrapText(line))
        return {LineKind::POWER_DETAIL_W_TRAP};
    if (LineKind::isHeader(state) && beginsStatistics(line, context.trapMode))
        return {LineKind::HEADER_LINE};
    if (!afterPowerHeader && state != LineKind::POWER_SECTION) {
        if (result = powerSection(line, context.trapMode); known(result))
            return result;
    }

    if (afterPowerHeader || LineKind::isDetail(state)) {
        if (!afterPowerHeader) {
            if (result = markedHeader(line); known(result))
                return result;
        }
        if (beginsWithNumber)
            return {LineKind::POWER_DETAIL};
        if (result = byLabel(); known(result))
            return result;
    } else if (result = markedHeader(line); known(result)) {
        return result;
    }

    if (!afterPowerHeader && nameEnd(line, 0, 2).isHeader) {
        const bool isTrait = LineKind::isHeader(state) && context.headerFirst;
        return {isTrait ? LineKind::HEADER_TRAIT : LineKind::POWER_HEADER};
    }
    if (context.trapMode) {
        if (result = byLabel(); known(result))
            return result;
        if (isTrapHeading(line))
            return {LineKind::POWER_HEADER};
    }
    if (line.contains(TokenKind::FullStop)) {
        result = byLabel();
        return known(result) ? result : Result {LineKind::POWER_DETAIL};
    }
    return {LineKind::UNKNOWN_LINE};
}

Result StatBlockClassifier::labelTest(const StatBlockLine &line, bool trapMode)
{
    const int first = line.first().kind;
    if (beginsTrapText(line))
        return {LineKind::POWER_DETAIL_W_TRAP};
    if (const Result result = dcPattern(line); result.kind != LineKind::UNKNOWN_LINE)
        return result;
    if (trapMode && TokenKind::isSkill(first))
        return skillLine(line);
    return {beginsWithLabel(line) ? LineKind::POWER_DETAIL_W_LABEL : LineKind::UNKNOWN_LINE};
}

StatBlockClassifier::NameEnd StatBlockClassifier::nameEnd(const StatBlockLine &line, int start,
                                                          int minTokens)
{
    const int end = endOfName(line, start);
    return {end, end > start && end - start >= minTokens && mayFollowName(line, end)};
}

bool StatBlockClassifier::namesPicture(const StatBlockLine &line)
{
    if (line.endsInFullStop())
        return false;
    // A picture may have any name; what it has for sure is a full stop.
    const bool isPlain =
        !line.contains(TokenKind::FullStop) && !TokenKind::isUsageWord(line.kindAt(1));
    return !isPlain || !tellsUsage(line, endOfName(line, 0));
}

int StatBlockClassifier::headerMarks(const StatBlockLine &line, int start)
{
    // Of many marks the first one counts.
    if (isHeaderMark(line.kindAt(start - 1)))
        return 0;
    int end = start;
    while (isHeaderMark(line.kindAt(end)) && !isBracketedIcon(line, end))
        ++end;
    if (isBracketedIcon(line, end))
        end += 3;
    if (end == start)
        return 0;
    // What follows the name has to say that it is one: behind such a mark stands any text.
    const int name = endOfName(line, end);
    bool isHeader = name > end && tellsUsage(line, name);
    // A line's own first mark is surer than one in the middle of a value.
    if (start == 0 && line.kindAt(name) == TokenKind::OpenBracket)
        isHeader = nameEnd(line, end, 1).isHeader;
    return isHeader ? end - start : 0;
}

LineKind::Code StatBlockClassifier::trapActionKind(const StatBlockLine &line)
{
    const int second = line.kindAt(1);
    switch (line.first().kind) {
    case TokenKind::Standard:
        return second == TokenKind::Action ? LineKind::TRAP_DETAIL_STANDARD
                                           : LineKind::UNKNOWN_LINE;
    case TokenKind::Free:
        return second == TokenKind::Action ? LineKind::TRAP_DETAIL_FREE : LineKind::UNKNOWN_LINE;
    case TokenKind::Immediate:
        return second == TokenKind::Interrupt || second == TokenKind::Reaction
            ? LineKind::TRAP_DETAIL_TRIGGERED
            : LineKind::UNKNOWN_LINE;
    case TokenKind::Opportunity:
        return second == TokenKind::Action ? LineKind::TRAP_DETAIL_TRIGGERED
                                           : LineKind::UNKNOWN_LINE;
    default:
        return LineKind::UNKNOWN_LINE;
    }
}

int StatBlockClassifier::sectionOf(int tokenKind)
{
    switch (tokenKind) {
    case TokenKind::Traits:
        return PowerSection::Traits;
    case TokenKind::Standard:
        return PowerSection::Standard;
    case TokenKind::Move:
        return PowerSection::Move;
    case TokenKind::Minor:
        return PowerSection::Minor;
    case TokenKind::Free:
        return PowerSection::Free;
    case TokenKind::Triggered:
        return PowerSection::Triggered;
    case TokenKind::Countermeasures:
        return PowerSection::Countermeasures;
    case TokenKind::Other:
        return PowerSection::Other;
    default:
        return PowerSection::None;
    }
}
