#include "statblockparser.h"

#include "creatureportrait.h"
#include "powertext.h"
#include "statblockassembler.h"
#include "statblockpowers.h"
#include "statblocktext.h"

#include <algorithm>

using namespace LineKind;

namespace {

class Reader {
public:
    Reader(CreatureData &record, const QString &text, QList<LineNote> *notes);

    // False for a text without a line.
    bool read();
    // Of the text that was read. The last line that names a portrait counts.
    const StatBlockParser::PortraitPlace &portraitPlace() const { return m_portraitPlace; }

private:
    void advanceInHeader();
    void readTitle();
    bool titleRunsOn();
    void nameCreature(const QString &title);
    bool readHeader();
    bool isPowerAt(int index);
    bool readStat(const Token &word);
    void readPortrait();
    bool readNumber(int &field);
    bool readClause(QString &field, int start);
    bool clauseRunsOn();
    void readRole();
    void readSense(const Token &sense);
    void enterTrapMode();

    void readSection();
    void readFooter();
    void readFooterText(QString &field);
    void readAbility(Ability &ability);
    void readSkill(const Token &skill);
    void readFooterHeader();

    StatBlockLine &line() { return m_lines.line(); }

    CreatureData &m_record;
    StatBlockParser::PortraitPlace m_portraitPlace;
    StatBlockAssembler m_lines;
    StatBlockPowers m_powers;
};

bool isNumber(int kind)
{
    return kind == TokenKind::Number || TokenKind::isDieFace(kind);
}

bool isBulletXp(const StatBlockLine &line, int index)
{
    return line.kindAt(index) == TokenKind::Bullet && line.kindAt(index + 1) == TokenKind::Xp;
}

// Whether the title's name ends before the token. Names hold words such as "Will" or "Trap", so a
// word counts by what stands behind it: its number, or in a trap's title another word for its role.
bool endsName(const StatBlockLine &line, int index, int lastRole)
{
    const int kind = line.kindAt(index);
    if (index == 0)
        return TokenKind::isStatWord(kind) && line.kindAt(1) == TokenKind::Number;
    if (isBulletXp(line, index))
        return true;
    if (TokenKind::isHazardWord(kind))
        return index == lastRole && index + 1 < line.size();
    switch (kind) {
    case TokenKind::Will:
    case TokenKind::Reflex:
    case TokenKind::Fortitude:
    case TokenKind::Speed:
    case TokenKind::Perception:
    case TokenKind::Bloodied:
        return line.kindAt(index + 1) == TokenKind::Number;
    case TokenKind::Action:
        return line.kindAt(index + 1) == TokenKind::Points;
    case TokenKind::Saving:
        return line.kindAt(index + 1) == TokenKind::Throws;
    case TokenKind::Portrait:
        return false;
    default:
        return TokenKind::isStatWord(kind);
    }
}

// Index behind the name that begins at `from`; the line's size if the whole rest is the name.
int endOfName(const StatBlockLine &line, int from)
{
    int lastRole = line.size() - 1;
    while (lastRole >= from && !TokenKind::isHazardWord(line.kindAt(lastRole))
           && !TokenKind::isRoleWord(line.kindAt(lastRole)))
        --lastRole;
    int end = from;
    while (end < line.size() && !endsName(line, end, lastRole))
        ++end;
    return end;
}

// Whether a clause of the header ends before the token.
bool endsClause(const StatBlockLine &line, int index)
{
    const int next = line.kindAt(index + 1);
    switch (line.kindAt(index)) {
    case TokenKind::Semicolon:
        return next == TokenKind::Resist || next == TokenKind::Immune
            || next == TokenKind::Vulnerable;
    case TokenKind::LowLight:
    case TokenKind::Darkvision:
    case TokenKind::Truesight:
    case TokenKind::AllRound:
    case TokenKind::Tremorsense:
    case TokenKind::Xp:
        return true;
    case TokenKind::Level:
        return next == TokenKind::Number;
    case TokenKind::Action:
        return next == TokenKind::Points;
    default:
        return isBulletXp(line, index);
    }
}

bool isFooterStop(int kind)
{
    return TokenKind::isFooterWord(kind) || TokenKind::isFooterHeaderWord(kind);
}

Ability CreatureData::*abilityOf(int kind)
{
    switch (kind) {
    case TokenKind::Str:
        return &CreatureData::strength;
    case TokenKind::Dex:
        return &CreatureData::dexterity;
    case TokenKind::Wis:
        return &CreatureData::wisdom;
    case TokenKind::Con:
        return &CreatureData::constitution;
    case TokenKind::Int:
        return &CreatureData::intelligence;
    default:
        return &CreatureData::charisma;
    }
}

int CreatureData::*numberOf(int kind)
{
    switch (kind) {
    case TokenKind::Level:
        return &CreatureData::level;
    case TokenKind::Xp:
        return &CreatureData::xp;
    case TokenKind::Hp:
        return &CreatureData::maxHP;
    case TokenKind::Initiative:
        return &CreatureData::initBonus;
    case TokenKind::Ac:
        return &CreatureData::armourClass;
    case TokenKind::Fortitude:
        return &CreatureData::fortitude;
    case TokenKind::Reflex:
        return &CreatureData::reflex;
    case TokenKind::Will:
        return &CreatureData::will;
    case TokenKind::Perception:
        return &CreatureData::perception;
    default:
        return nullptr;
    }
}

QString CreatureData::*clauseOf(int kind)
{
    switch (kind) {
    case TokenKind::Speed:
        return &CreatureData::speed;
    case TokenKind::Resist:
        return &CreatureData::resist;
    case TokenKind::Immune:
        return &CreatureData::immune;
    case TokenKind::Detect:
        return &CreatureData::detect;
    case TokenKind::Regeneration:
        return &CreatureData::regeneration;
    case TokenKind::Vulnerable:
        return &CreatureData::vulnerable;
    default:
        return nullptr;
    }
}

// What shows that the statistics have begun. The initiative stands above the traits.
bool endsTraits(int kind)
{
    return kind == TokenKind::Hp || kind == TokenKind::Ac || kind == TokenKind::Fortitude
        || kind == TokenKind::Reflex || kind == TokenKind::Will || kind == TokenKind::Speed;
}

void appendItem(QString &list, const QString &item, QLatin1StringView between)
{
    list += list.isEmpty() ? item : between + item;
}

Reader::Reader(CreatureData &record, const QString &text, QList<LineNote> *notes)
    : m_record(record), m_lines(text, notes), m_powers(m_lines, record)
{
}

bool Reader::read()
{
    m_lines.advance();
    if (m_lines.lineKind() == NO_LINE)
        return false;
    m_lines.setReading(LineReading::Title);
    readTitle();
    m_lines.setLineKind(HEADER_LINE);
    advanceInHeader();
    while (m_lines.lineKind() != NO_LINE) {
        switch (m_lines.lineKind()) {
        case HEADER_TITLE:
        case HEADER_LINE:
            if (readHeader())
                m_lines.setReading(LineReading::Header);
            else
                m_lines.setReading(LineReading::NotUnderstood, true);
            advanceInHeader();
            break;
        case HEADER_TRAIT:
            m_powers.readTrait();
            break;
        case POWER_SECTION:
            readSection();
            break;
        case POWER_HEADER:
        case POWER_HEADER_DOT:
            m_powers.readPower();
            break;
        case FOOTER_LINE:
        case FOOTER_DETAIL:
            readFooter();
            m_lines.advance();
            break;
        case FOOTER_HEADER:
            readFooterHeader();
            break;
        default:
            m_powers.readText();
        }
    }
    return true;
}

// --- the header ---

void Reader::advanceInHeader()
{
    m_lines.advance();
    if (m_lines.lineKind() != POWER_DETAIL_W_TRAP || m_record.disabled)
        return;
    m_record.disabled = true;
    if (m_record.role.isEmpty())
        m_record.role = line().first().text.toString();
}

void Reader::readTitle()
{
    int end = endOfName(line(), 0);
    while (end == line().size() && titleRunsOn()) {
        m_lines.joinAhead(1);
        end = endOfName(line(), end);
    }
    TokenText title(TokenText::Plain);
    title.add(line(), 0, end);
    nameCreature(title.text());
    line().setPosition(end);
    readHeader();
    m_portraitPlace.titleEnd = m_lines.indexOf(line().last()) + line().last().text.size();
}

// A title is wrapped as any line is.
bool Reader::titleRunsOn()
{
    const int next = m_lines.kindAhead(0, HEADER_LINE);
    return next == UNKNOWN_LINE || next == HEADER_TRAIT
        || (isDetail(next) && next != POWER_DETAIL_W_TRAP);
}

void Reader::nameCreature(const QString &title)
{
    const qsizetype bracket = title.lastIndexOf(u'(');
    if (!title.endsWith(u')') || bracket < 0) {
        m_record.keyName() = title;
        return;
    }
    m_record.headerText = title.sliced(bracket + 1, title.size() - bracket - 2);
    m_record.keyName() = title.first(bracket).trimmed();
}

// From the read position to the end of the line, or to a power that was run on to it. False when
// nothing of it says anything.
bool Reader::readHeader()
{
    bool isRead = false;
    while (!line().atEnd()) {
        const int index = line().position();
        if (isPowerAt(index))
            m_lines.splitOff(index);
        else
            isRead = readStat(line().take()) || isRead;
    }
    return isRead;
}

bool Reader::isPowerAt(int index)
{
    return index > 0 && StatBlockClassifier::headerMarks(line(), index) > 0;
}

bool Reader::readStat(const Token &word)
{
    const int kind = word.kind;
    const int start = line().position() - 1;
    const bool isAlone = line().size() == 1;
    if (endsTraits(kind))
        m_lines.endTraits();
    if (int CreatureData::*number = numberOf(kind))
        return readNumber(m_record.*number);
    if (QString CreatureData::*clause = clauseOf(kind))
        return readClause(m_record.*clause, start + 1);
    if (isBulletXp(line(), start)) {
        m_lines.setBulletXp();
    } else if (TokenKind::isSizeWord(kind)) {
        readClause(m_record.type, start);
    } else if (kind == TokenKind::Terrain
               || (TokenKind::isTrapRole(kind) && isAlone && m_record.level == 0)) {
        readClause(m_record.type, start);
        enterTrapMode();
    } else if (TokenKind::isRoleWord(kind) || TokenKind::isTrapRole(kind)) {
        readRole();
    } else if (TokenKind::isSensesWord(kind)) {
        readSense(word);
    } else if (kind == TokenKind::Portrait) {
        readPortrait();
    } else if (kind == TokenKind::Action && line().current().kind == TokenKind::Points) {
        line().take();
        return readNumber(m_record.initAP);
    } else if (kind == TokenKind::Saving && line().current().kind == TokenKind::Throws) {
        line().take();
        return readClause(m_record.savingThrows, start + 2);
    } else {
        // Known, though nothing keeps them.
        return kind == TokenKind::Bloodied || kind == TokenKind::Senses;
    }
    return true;
}

void Reader::readPortrait()
{
    QString path;
    m_portraitPlace.word = m_lines.indexOf(line().peek(-1));
    while (!line().atEnd())
        path += line().take().text;
    m_record.portraitFile = path.trimmed();
}

bool Reader::readNumber(int &field)
{
    if (!isNumber(line().current().kind))
        return false;
    field = line().take().number();
    return true;
}

// Fills an empty field from `start`, to where the next clause begins. False when it stays empty.
bool Reader::readClause(QString &field, int start)
{
    if (!field.isEmpty())
        return true;
    int end = line().position();
    for (;; ++end) {
        if (end >= line().size()) {
            if (!clauseRunsOn())
                break;
            m_lines.joinAhead(1);
        }
        if (endsClause(line(), end) || isPowerAt(end))
            break;
    }
    field = clauseText(line(), start, end);
    line().setPosition(end);
    return !field.isEmpty();
}

bool Reader::clauseRunsOn()
{
    return m_lines.kindAhead(0, HEADER_LINE) == UNKNOWN_LINE
        && !m_lines.ahead(0).first().isCapitalised()
        && StatBlockClassifier::headerMarks(m_lines.ahead(0)) == 0;
}

// A run of roles, with the bracket that may tell of a leader.
void Reader::readRole()
{
    const int start = line().position() - 1;
    bool isTrap = TokenKind::isTrapRole(line().kindAt(start));
    // In a later line's sentence the word is only a word.
    if (!m_record.role.isEmpty()) {
        if (isTrap && start == 0 && !m_lines.isTrap())
            enterTrapMode();
        return;
    }
    int end = start + 1;
    for (;; ++end) {
        const int kind = line().kindAt(end);
        if (kind == TokenKind::OpenBracket) {
            const int close = line().indexOf(TokenKind::CloseBracket, end);
            end = close < 0 ? line().size() - 1 : close;
        } else if (TokenKind::isTrapRole(kind)) {
            isTrap = true;
        } else if (!TokenKind::isRoleWord(kind)) {
            break;
        }
    }
    TokenText role(TokenText::Plain);
    role.add(line(), start, end);
    m_record.role = role.text();
    line().setPosition(end);
    if (isTrap)
        enterTrapMode();
}

void Reader::readSense(const Token &sense)
{
    QString item = sense.text.toString();
    const int next = line().current().kind;
    if (next == TokenKind::Vision || next == TokenKind::Number)
        item += u' ' + line().take().text;
    appendItem(m_record.senses, item, QLatin1StringView(", "));
    const int separator = line().current().kind;
    if (separator == TokenKind::Comma || separator == TokenKind::Semicolon)
        line().take();
}

void Reader::enterTrapMode()
{
    m_record.disabled = true;
    m_lines.enterTrapMode();
}

// --- between the powers ---

void Reader::readSection()
{
    m_lines.setReading(LineReading::Power);
    if (const int section = StatBlockClassifier::sectionOf(line().first().kind); section != 0)
        m_lines.setSection(section);
    m_lines.advance();
}

// --- the footer ---

void Reader::readFooter()
{
    m_lines.setReading(LineReading::Header);
    while (!line().atEnd()) {
        const Token word = line().take();
        if (word.kind == TokenKind::Alignment)
            readFooterText(m_record.alignment);
        else if (word.kind == TokenKind::Languages)
            readFooterText(m_record.languages);
        else if (TokenKind::isAbility(word.kind))
            readAbility(m_record.*abilityOf(word.kind));
        else if (TokenKind::isSkill(word.kind))
            readSkill(word);
    }
}

// To the line's next keyword.
void Reader::readFooterText(QString &field)
{
    const int start = line().position();
    int end = start;
    while (end < line().size() && !isFooterStop(line().kindAt(end)))
        ++end;
    if (field.isEmpty())
        field = clauseText(line(), start, end);
    line().setPosition(end);
}

// "16 (+4)", or "16 +4".
void Reader::readAbility(Ability &ability)
{
    if (!isNumber(line().current().kind))
        return;
    ability.score = line().take().number();
    const Token next = line().current();
    const bool isSigned = next.kind == TokenKind::Number && !next.text.front().isDigit();
    if (isSigned) {
        ability.modifier = line().take().number();
    } else if (next.kind == TokenKind::OpenBracket && isNumber(line().peek(1).kind)
               && line().peek(2).kind == TokenKind::CloseBracket) {
        line().take();
        ability.modifier = line().take().number();
        line().take();
    }
}

void Reader::readSkill(const Token &skill)
{
    QString item = skill.text.toString();
    if (line().current().kind == TokenKind::Number)
        item += u' ' + line().take().text;
    appendItem(m_record.skills, item, QLatin1StringView(", "));
    const int separator = line().current().kind;
    if (separator == TokenKind::Comma || separator == TokenKind::Semicolon)
        line().take();
}

// Equipment and description have a label of their own where they are shown; a note on the source
// has none, so it keeps its first word.
void Reader::readFooterHeader()
{
    m_lines.setReading(LineReading::Header);
    const Token word = line().take();
    const bool isNote = word.kind != TokenKind::Equipment && word.kind != TokenKind::Description;
    QString &field = isNote                 ? m_record.trailerText
        : word.kind == TokenKind::Equipment ? m_record.equipment
                                            : m_record.description;
    if (line().current().kind == TokenKind::Colon)
        line().take();
    TokenText text(isNote ? TokenText::Html : TokenText::Plain);
    if (isNote)
        text.add(word);
    text.add(line(), line().position(), line().size());
    for (m_lines.advance(); m_lines.lineKind() == FOOTER_DETAIL; m_lines.advance()) {
        text.addHtml(u" ");
        text.add(line(), 0, line().size());
    }
    appendItem(field, text.text(), QLatin1StringView(isNote ? "<br>" : " "));
}

} // namespace

bool StatBlockParser::parse(CreatureData &record, const QString &text, bool isMonster,
                            const QString &dataFolder, QList<LineNote> *notes)
{
    record.isMonster = isMonster;
    Reader reader(record, text, notes);
    if (!reader.read())
        return false;
    if (reader.portraitPlace().word >= 0)
        resolvePortrait(record.portraitFile, dataFolder);
    sortPowers(record);
    const QString *signs[] = {&record.portraitFile, &record.name, &record.charClass, &record.group,
                              &record.type,         &record.race, &record.role,      &record.speed};
    return std::count_if(std::begin(signs), std::end(signs),
                         [](const QString *sign) { return !sign->isEmpty(); })
        >= 4;
}

StatBlockParser::PortraitPlace StatBlockParser::portraitPlace(const QString &text)
{
    CreatureData ignored;
    Reader reader(ignored, text, nullptr);
    reader.read();
    return reader.portraitPlace();
}
