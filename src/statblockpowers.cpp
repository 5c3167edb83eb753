#include "statblockpowers.h"

#include "powertext.h"
#include "statblocktext.h"

using namespace LineKind;

namespace {

PowerIcon::Code iconOfLetter(int kind)
{
    switch (kind) {
    case TokenKind::LowerM:
        return PowerIcon::BasicMelee;
    case TokenKind::UpperM:
        return PowerIcon::Melee;
    case TokenKind::LowerR:
        return PowerIcon::BasicRanged;
    case TokenKind::UpperR:
        return PowerIcon::Ranged;
    case TokenKind::LowerA:
        return PowerIcon::BasicArea;
    case TokenKind::UpperA:
        return PowerIcon::Area;
    case TokenKind::LowerC:
        return PowerIcon::BasicClose;
    case TokenKind::UpperC:
        return PowerIcon::Close;
    case TokenKind::LowerO:
    case TokenKind::UpperO:
        return PowerIcon::Aura;
    case TokenKind::LowerX:
        return PowerIcon::Trap;
    default:
        return PowerIcon::None;
    }
}

PowerSection::Code sectionOfAction(int kind, int next)
{
    switch (kind) {
    case TokenKind::Standard:
    case TokenKind::Std:
        return PowerSection::Standard;
    case TokenKind::Move:
        return PowerSection::Move;
    case TokenKind::Minor:
        return PowerSection::Minor;
    case TokenKind::Free:
        return PowerSection::Free;
    case TokenKind::Immediate:
    case TokenKind::Imm:
        return next == TokenKind::Int
                || TokenKind::isIn(next, TokenKind::Interrupt, TokenKind::Reac)
            ? PowerSection::Triggered
            : PowerSection::None;
    default:
        return PowerSection::None;
    }
}

bool isCount(int kind)
{
    return kind == TokenKind::Number || TokenKind::isDieFace(kind);
}

// 0 where the token tells nothing of how a power comes back.
int usageOf(int kind, const Token &next)
{
    switch (kind) {
    case TokenKind::AtWill:
        return 1;
    case TokenKind::Encounter:
        return 2;
    case TokenKind::TwicePerEncounter:
        return 3;
    case TokenKind::Recharge:
    case TokenKind::Rchg: {
        const int die = isCount(next.kind) ? next.number() : 0;
        return die >= 2 && die <= 6 ? 3 + die : 4;
    }
    default:
        return 0;
    }
}

bool isWeaponWord(int kind)
{
    return kind == TokenKind::Melee || kind == TokenKind::Reach || kind == TokenKind::Ranged
        || kind == TokenKind::Close || kind == TokenKind::Area;
}

bool isActionKind(int kind)
{
    return kind >= TRAP_DETAIL_STANDARD && kind <= TRAP_DETAIL_TRIGGERED;
}

bool isLabelKind(int kind)
{
    return kind >= TRAP_DETAIL_SKILL_DC && kind <= POWER_DETAIL_W_TRAP;
}

// The whole line with its label, up to `labelEnd`, between the tags.
QString labelledText(const StatBlockLine &line, int labelEnd, QStringView start, QStringView end)
{
    TokenText text(TokenText::Html);
    if (labelEnd > 0) {
        text.addHtml(start);
        text.add(line, 0, labelEnd);
        text.addHtml(end);
    }
    text.add(line, labelEnd, line.size());
    return text.text();
}

// Where the bracket that may stand at `index`, and the ":" behind it, end.
int endOfLabel(const StatBlockLine &line, int index)
{
    if (line.kindAt(index) == TokenKind::OpenBracket) {
        const int close = line.indexOf(TokenKind::CloseBracket, index);
        index = close < 0 ? line.size() : close + 1;
    }
    return line.kindAt(index) == TokenKind::Colon ? index + 1 : index;
}

// From `from` on, with what follows "Success:" or "Failure (by 5 or more):" set off.
void addBody(TokenText &text, const StatBlockLine &line, int from)
{
    for (int i = from; i < line.size();) {
        const int kind = line.kindAt(i);
        const int next = line.kindAt(i + 1);
        const bool isOutcome = (kind == TokenKind::Success || kind == TokenKind::Failure)
            && (next == TokenKind::Colon || next == TokenKind::OpenBracket);
        if (!isOutcome) {
            text.add(line.at(i++));
            continue;
        }
        const int end = endOfLabel(line, i + 1);
        text.openTag(u"<i>");
        text.add(line, i, end);
        text.addHtml(u"</i> ");
        i = end;
    }
}

} // namespace

StatBlockPowers::StatBlockPowers(StatBlockAssembler &lines, CreatureData &record)
    : m_lines(lines), m_record(record)
{
}

// --- a power's header ---

void StatBlockPowers::readPower(bool isTrait)
{
    m_lines.setReading(LineReading::Power);
    Power power;
    power.section = isTrait ? PowerSection::Traits : m_lines.section();
    const bool hasLetter = !isTrait && readIconLetter(power);
    if (m_lines.isTrap())
        placeInTrap(power);
    readName(power);
    if (m_lines.line().current().kind == TokenKind::OpenBracket)
        readBracket(power);
    readKeywords(power);
    readRemainder(power);
    readDetails(power, isTrait);
    settleIcon(power, isTrait, hasLetter);
    addPower(m_record, std::move(power));
}

bool StatBlockPowers::readIconLetter(Power &power)
{
    StatBlockLine &line = m_lines.line();
    const PowerIcon::Code icon = iconOfLetter(line.current().kind);
    if (icon == PowerIcon::None)
        return false;
    line.take();
    power.icon = icon;
    if (icon == PowerIcon::BasicMelee || icon == PowerIcon::Melee)
        m_firstMelee = false;
    if (icon == PowerIcon::BasicRanged || icon == PowerIcon::Ranged)
        m_firstRanged = false;
    return true;
}

void StatBlockPowers::placeInTrap(Power &power)
{
    const StatBlockLine &line = m_lines.line();
    const int first = line.first().kind;
    if (line.size() < 5 && first == TokenKind::Trigger)
        power.section = PowerSection::Triggered;
    const bool isOpening =
        power.section >= PowerSection::TrapOpening && power.section <= PowerSection::TrapSkills;
    if (isOpening && power.icon == PowerIcon::None)
        power.section = TokenKind::isSkillOrPerception(first) ? PowerSection::TrapSkills
                                                              : PowerSection::TrapWarning;
}

// The next token of the header, judged as to how the power is used.
Token StatBlockPowers::takeHeaderToken(Power &power)
{
    StatBlockLine &line = m_lines.line();
    const Token token = line.take();
    testUsage(power, token.kind, line.current());
    return token;
}

void StatBlockPowers::readName(Power &power)
{
    StatBlockLine &line = m_lines.line();
    int end = StatBlockClassifier::nameEnd(line, line.position(), 1).end;
    // A name in lower case behind a letter goes on to what is no word.
    if (end == line.position()) {
        while (TokenKind::isWord(line.kindAt(end)) && !TokenKind::isUsageWord(line.kindAt(end)))
            ++end;
    }
    TokenText text(TokenText::Html);
    while (line.position() < end)
        text.add(takeHeaderToken(power));
    power.name = text.text();
}

void StatBlockPowers::readBracket(Power &power)
{
    StatBlockLine &line = m_lines.line();
    TokenText text(TokenText::Html);
    while (!line.atEnd() && !TokenKind::isBulletOrStar(line.current().kind)) {
        const Token token = takeHeaderToken(power);
        text.add(token);
        addRecharge(text, token.kind);
        if (token.kind == TokenKind::CloseBracket)
            break;
    }
    power.keywords = text.text();
}

// What follows the bullet: bold but for the text that tells more of a usage word.
void StatBlockPowers::readKeywords(Power &power)
{
    StatBlockLine &line = m_lines.line();
    if (TokenKind::isBulletOrStar(line.current().kind))
        line.take();
    const auto isOver = [&line] {
        return line.atEnd() || line.current().kind == TokenKind::Semicolon;
    };
    if (isOver())
        return;
    TokenText text(TokenText::Html);
    text.addHtml(u" &bull; ");
    text.openTag(u"<b>");
    text.raiseNextWord();
    bool isBold = true;
    while (!isOver()) {
        const Token token = takeHeaderToken(power);
        text.add(token);
        if (isBold && TokenKind::isUsageWord(token.kind)) {
            text.closeTag(u"</b>");
            isBold = false;
        }
        addRecharge(text, token.kind);
        if (!isBold && token.kind == TokenKind::Comma) {
            text.openTag(u"<b>");
            isBold = true;
        }
    }
    if (isBold)
        text.closeTag(u"</b>");
    power.keywords += text.text();
}

// The sentence behind a ";".
void StatBlockPowers::readRemainder(Power &power)
{
    StatBlockLine &line = m_lines.line();
    if (line.atEnd())
        return;
    line.take();
    if (line.atEnd())
        return;
    TokenText text(TokenText::Html);
    if (TokenKind::isWord(line.current().kind))
        text.raiseNextWord();
    text.add(line, line.position(), line.size());
    power.details.append(text.text());
}

// The faces of the die in place of the numbers that a recharge names.
void StatBlockPowers::addRecharge(TokenText &text, int kind)
{
    StatBlockLine &line = m_lines.line();
    if ((kind != TokenKind::Recharge && kind != TokenKind::Rchg) || !isCount(line.current().kind))
        return;
    const QString images = rechargeImages(line.current().number());
    if (images.isEmpty())
        return;
    text.addHtml(images);
    while (isCount(line.current().kind))
        line.take();
}

void StatBlockPowers::testUsage(Power &power, int kind, const Token &next)
{
    if (power.section == PowerSection::None)
        power.section = sectionOfAction(kind, next.kind);
    if (const int usage = usageOf(kind, next); usage != 0)
        power.usageKind = usage;
    if (kind == TokenKind::Aura && next.kind == TokenKind::Number) {
        if (power.section == PowerSection::None)
            power.section = PowerSection::Traits;
        if (power.icon == PowerIcon::None)
            power.icon = PowerIcon::Aura;
    }
    if (kind == TokenKind::Weapon && power.icon == PowerIcon::None)
        power.icon = PowerIcon::Weapon;
    if (TokenKind::isRangedWeapon(kind) && power.icon < PowerIcon::BasicMelee)
        power.icon = PowerIcon::RangedWeapon;
}

// --- the lines below a header ---

void StatBlockPowers::readDetails(Power &power, bool isTrait)
{
    bool hasAction = false;
    bool hasLabel = false;
    bool isFirst = true;
    for (m_lines.advance(); isDetail(m_lines.lineKind()); m_lines.advance()) {
        m_lines.setReading(LineReading::PowerText);
        const StatBlockLine &line = m_lines.line();
        const bool isLabel = mendLabel() || isLabelKind(m_lines.lineKind());
        if (isFirst && isLabel && line.first().kind == TokenKind::Secondary)
            power.icon = PowerIcon::Secondary;
        isFirst = false;
        for (int i = 0; i < line.size() && !isTrait; ++i)
            testWeapon(power, line.kindAt(i));
        if (isActionKind(m_lines.lineKind())) {
            addAction(power, !hasAction);
            hasAction = true;
            continue;
        }
        if (isLabel && !hasLabel) {
            hasLabel = true;
            power.flavour = !power.details.isEmpty();
        }
        const int labelEnd = isLabel ? line.indexOf(TokenKind::Colon) + 1 : 0;
        power.details.append(labelledText(line, labelEnd, u"<i>", u"</i> "));
    }
    if (power.flavour)
        power.details.first() = QStringLiteral("<i>%1</i>").arg(power.details.first());
}

// How a trap acts stands below the header and not in it.
void StatBlockPowers::addAction(Power &power, bool isFirst)
{
    const StatBlockLine &line = m_lines.line();
    switch (m_lines.lineKind()) {
    case TRAP_DETAIL_STANDARD:
        power.section = PowerSection::Standard;
        break;
    case TRAP_DETAIL_FREE:
        power.section = PowerSection::Free;
        break;
    default:
        power.section = PowerSection::Triggered;
    }
    int end = 0;
    while (end < line.size() && line.kindAt(end) != TokenKind::Number
           && !isWeaponWord(line.kindAt(end)))
        ++end;
    const QString text = labelledText(line, end, u"<b>", u"</b> ");
    if (isFirst)
        power.keywords += QStringLiteral(" &bull; ") + text;
    else
        power.details.append(text);
}

void StatBlockPowers::testWeapon(Power &power, int kind)
{
    if (power.icon > PowerIcon::RangedWeapon)
        return;
    switch (kind) {
    case TokenKind::Melee:
    case TokenKind::Reach:
        power.icon = takeFirst(m_firstMelee, PowerIcon::BasicMelee);
        break;
    case TokenKind::Ranged:
        power.icon = takeFirst(m_firstRanged, PowerIcon::BasicRanged);
        break;
    case TokenKind::Close:
        power.icon = PowerIcon::Close;
        break;
    case TokenKind::Area:
        power.icon = PowerIcon::Area;
        break;
    case TokenKind::Number:
        if (power.icon == PowerIcon::None)
            power.icon = PowerIcon::Weapon;
        break;
    default:
        break;
    }
}

// The first attack of a kind is the basic one; the icon behind it is for all others.
int StatBlockPowers::takeFirst(bool &isFirst, int icon)
{
    return std::exchange(isFirst, false) ? icon : icon + 1;
}

void StatBlockPowers::settleIcon(Power &power, bool isTrait, bool hasLetter)
{
    if (isTrait) {
        if (power.icon != PowerIcon::Aura)
            power.icon = PowerIcon::None;
        return;
    }
    if (power.icon == PowerIcon::Weapon)
        power.icon = takeFirst(m_firstMelee, PowerIcon::BasicMelee);
    else if (power.icon == PowerIcon::RangedWeapon)
        power.icon = takeFirst(m_firstRanged, PowerIcon::BasicRanged);
    // Where a bullet stands before the XP, a dot marks the basic attacks.
    if (m_lines.hasBulletXp() && hasLetter && power.icon <= PowerIcon::Close)
        power.icon += power.icon % 2 == 1 ? 1 : -1;
}

// Gives a trap's line that begins with a label the ":" that the paste lost. False where it has
// none.
bool StatBlockPowers::mendLabel()
{
    StatBlockLine &line = m_lines.line();
    const int first = line.first().kind;
    const bool isLabel = first == TokenKind::Trigger || first == TokenKind::Special
        || first == TokenKind::Targets || TokenKind::isSkillOrPerception(first);
    if (!m_lines.isTrap() || !isLabel || isLabelKind(m_lines.lineKind())
        || !line.at(1).isCapitalised())
        return false;
    line.insert(1, Token {TokenKind::Colon, u":"});
    return true;
}

// --- text that belongs to no power ---

void StatBlockPowers::readText()
{
    StatBlockLine &line = m_lines.line();
    const int kind = m_lines.lineKind();
    const int section = m_lines.section();
    const bool isSkill = kind >= TRAP_DETAIL_SKILL && kind <= TRAP_DETAIL_DC;
    if (isSkill && (section == PowerSection::TrapOpening || section == PowerSection::TrapWarning))
        m_lines.setSection(PowerSection::TrapSkills);
    if (kind == POWER_DETAIL_W_TRAP && section == PowerSection::TrapOpening)
        m_lines.setSection(PowerSection::TrapWarning);
    if (kind == TRAP_DETAIL_SKILL_DC)
        m_lastSkill = line.first();
    if (kind == TRAP_DETAIL_DC && m_lastSkill.kind != TokenKind::End)
        line.insert(0, m_lastSkill);

    Power power;
    power.icon = PowerIcon::Text;
    power.section = m_lines.section();
    const bool isMainLine =
        kind == POWER_DETAIL_W_TRAP && m_record.powers.isEmpty() && m_record.unplacedText.isEmpty();
    do {
        // A trap tells of itself in such lines.
        m_lines.setReading(m_lines.isTrap() ? LineReading::PowerText : LineReading::NotUnderstood);
        power.details.append(paragraph());
        if (isMainLine && statisticsGoOn())
            m_lines.setLineKind(HEADER_LINE);
        m_lines.advance();
    } while (m_lines.lineKind() == POWER_DETAIL
             && m_lines.section() != PowerSection::Countermeasures);
    addPower(m_record, std::move(power));
}

// A trap's main line may stand among its statistics. A sentence is none, whatever its first word.
bool StatBlockPowers::statisticsGoOn()
{
    return m_lines.kindAhead(0, HEADER_LINE) == HEADER_LINE && !m_lines.ahead(0).endsInFullStop()
        && m_lines.ahead(0).first().kind != TokenKind::Initiative;
}

QString StatBlockPowers::paragraph()
{
    const int kind = m_lines.lineKind();
    const bool isLabel = kind == POWER_DETAIL_W_LABEL || kind == POWER_DETAIL_W_TRAP || mendLabel();
    const StatBlockLine &line = m_lines.line();
    const int labelEnd = isLabel ? line.indexOf(TokenKind::Colon) + 1 : 0;
    TokenText text(TokenText::Html);
    if (labelEnd > 0) {
        text.addHtml(u"<b>");
        text.add(line, 0, labelEnd);
        text.addHtml(u"</b> ");
    }
    addBody(text, line, labelEnd);
    return text.text();
}
