#include "creaturefile.h"

#include <QDir>
#include <algorithm>
#include <variant>

#include "characters.h"
#include "creature.h"
#include "creatureportrait.h"
#include "keyvalue.h"
#include "libraryfolder.h"
#include "monsters.h"
#include "monsterxmlhandler.h"
#include "paths.h"
#include "safefile.h"
#include "statblockparser.h"
#include "terms.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// --- the key form ---

using Field = std::variant<QString CreatureData::*, int CreatureData::*, Ability CreatureData::*,
                           bool CreatureData::*>;

struct KeyField {
    QLatin1StringView key;
    Field field;
    bool isSign = true; // counts towards the verdict that a text is in key form
};

// "intellegence" is how the files spell it.
const KeyField keyFields[] = {
    {"portrait"_L1, &CreatureData::portraitFile, false},
    {"import"_L1, &CreatureData::importFile, false},
    {"linked"_L1, &CreatureData::linked},
    {"name"_L1, &CreatureData::name},
    {"class"_L1, &CreatureData::charClass},
    {"group"_L1, &CreatureData::group},
    {"type"_L1, &CreatureData::type},
    {"race"_L1, &CreatureData::race},
    {"role"_L1, &CreatureData::role},
    {"level"_L1, &CreatureData::level},
    {"xp"_L1, &CreatureData::xp},
    {"hit-points"_L1, &CreatureData::maxHP},
    {"hs-resources"_L1, &CreatureData::maxHS},
    {"healing-surges"_L1, &CreatureData::maxHS},
    {"hs-value"_L1, &CreatureData::hsValue},
    {"surge-value"_L1, &CreatureData::hsValue},
    {"initiative"_L1, &CreatureData::initBonus},
    {"speed"_L1, &CreatureData::speed},
    {"ap-resources"_L1, &CreatureData::initAP},
    {"action-points"_L1, &CreatureData::initAP},
    {"vision"_L1, &CreatureData::senses},
    {"perception"_L1, &CreatureData::perception},
    {"insight"_L1, &CreatureData::insight},
    {"armour-class"_L1, &CreatureData::armourClass},
    {"fortitude"_L1, &CreatureData::fortitude},
    {"reflex"_L1, &CreatureData::reflex},
    {"will"_L1, &CreatureData::will},
    {"str"_L1, &CreatureData::strength},
    {"strength"_L1, &CreatureData::strength},
    {"dex"_L1, &CreatureData::dexterity},
    {"dexterity"_L1, &CreatureData::dexterity},
    {"wis"_L1, &CreatureData::wisdom},
    {"wisdom"_L1, &CreatureData::wisdom},
    {"con"_L1, &CreatureData::constitution},
    {"constitution"_L1, &CreatureData::constitution},
    {"int"_L1, &CreatureData::intelligence},
    {"intellegence"_L1, &CreatureData::intelligence},
    {"cha"_L1, &CreatureData::charisma},
    {"charisma"_L1, &CreatureData::charisma},
    {"alignment"_L1, &CreatureData::alignment},
    {"languages"_L1, &CreatureData::languages},
};

constexpr Ability CreatureData::*abilities[] = {
    &CreatureData::strength,     &CreatureData::dexterity,    &CreatureData::wisdom,
    &CreatureData::constitution, &CreatureData::intelligence, &CreatureData::charisma};

// Three keys follow the words in force, so that a file may use the table's own.
int CreatureData::*fieldOfTerm(const QString &key)
{
    if (key == termKeyPlural(Term::HealingSurge))
        return &CreatureData::maxHS;
    if (key == termKey(Term::SurgeValue))
        return &CreatureData::hsValue;
    if (key == termKeyPlural(Term::ActionPoint))
        return &CreatureData::initAP;
    return nullptr;
}

void store(CreatureData &data, const Field &field, const QString &value)
{
    if (const auto *text = std::get_if<QString CreatureData::*>(&field))
        data.*(*text) = value;
    else if (const auto *number = std::get_if<int CreatureData::*>(&field))
        data.*(*number) = value.toInt();
    else if (const auto *ability = std::get_if<Ability CreatureData::*>(&field))
        (data.*(*ability)).score = value.toInt();
    else if (const auto *flag = std::get_if<bool CreatureData::*>(&field))
        data.*(*flag) = value == "yes"_L1;
}

// True when the line counts as a sign of the key form.
bool storeLine(CreatureData &data, const KeyValue &line)
{
    for (const KeyField &known : keyFields) {
        if (line.key == known.key) {
            store(data, known.field, line.value);
            return known.isSign;
        }
    }
    if (int CreatureData::*field = fieldOfTerm(line.key)) {
        data.*field = line.value.toInt();
        return true;
    }
    return false;
}

// A hero's powers and the texts that the key form has no keys for come from the stat block that its
// file once was, kept in one line.
constexpr QLatin1StringView StatBlockKey("stat-block");

constexpr QString CreatureData::*textsWithoutKey[] = {
    &CreatureData::resist,       &CreatureData::immune,      &CreatureData::detect,
    &CreatureData::regeneration, &CreatureData::vulnerable,  &CreatureData::savingThrows,
    &CreatureData::skills,       &CreatureData::equipment,   &CreatureData::description,
    &CreatureData::trailerText,  &CreatureData::unplacedText};

QString asOneLine(QString text)
{
    return text.replace(u'\\', "\\\\"_L1).replace(u'\n', "\\n"_L1);
}

QString asManyLines(const QString &line)
{
    QString text;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const bool isEscape = line.at(i) == u'\\' && i + 1 < line.size();
        if (isEscape)
            ++i;
        text += isEscape && line.at(i) == u'n' ? QChar(u'\n') : line.at(i);
    }
    return text;
}

void takeKeptStatBlock(CreatureData &data, const QString &line)
{
    CreatureData kept;
    kept.isMonster = data.isMonster;
    StatBlockParser::parse(kept, asManyLines(line), data.isMonster, QString());
    data.powers = kept.powers;
    for (const auto text : textsWithoutKey)
        data.*text = kept.*text;
}

// The line that keeps the stat block of the text so far; empty where it never was one with powers.
QString keptStatBlockLine(const CreatureData &data)
{
    if (data.powers.isEmpty() || data.statBlock.isEmpty())
        return QString();
    const QString key = StatBlockKey + u'=';
    if (data.statBlock.startsWith("name="_L1)) {
        const qsizetype start = data.statBlock.indexOf(u'\n' + key);
        if (start < 0)
            return QString();
        const qsizetype end = data.statBlock.indexOf(u'\n', start + 1);
        return data.statBlock.mid(start + 1, end < 0 ? -1 : end - start - 1) + u'\n';
    }
    return key + asOneLine(data.statBlock) + u'\n';
}

QByteArrayView upToNul(QByteArrayView bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    return end < 0 ? bytes : bytes.first(end);
}

// The key form without its picture, so that a mere look at a text searches no folder.
bool scanKeyForm(const QByteArray &bytes, CreatureData &data)
{
    CreatureData result;
    result.isMonster = data.isMonster;
    int signs = 0;
    QString keptStatBlock;
    for (const QByteArray &line : toLF(bytes).split('\n')) {
        KeyValue parts;
        if (!parseKeyValue(line, Escapes::Keep, parts))
            return false;
        if (!data.isMonster && parts.key == StatBlockKey)
            keptStatBlock = parts.value;
        else if (storeLine(result, parts))
            ++signs;
    }
    if (signs <= 3 || result.keyName().isEmpty())
        return false;
    result.statBlock = QString::fromUtf8(upToNul(bytes));
    for (const auto ability : abilities)
        (result.*ability).modifier = NoModifier;
    if (!keptStatBlock.isEmpty())
        takeKeptStatBlock(result, keptStatBlock);
    data = result;
    return true;
}

QString keyLine(QLatin1StringView key, const QString &value)
{
    // A line end inside a value would begin a line of its own.
    QString flat = value;
    flat.replace(u'\n', u' ').replace(u'\r', u' ');
    return key + u'=' + flat + u'\n';
}

QString keyLine(QLatin1StringView key, int value)
{
    return keyLine(key, QString::number(value));
}

QString optionalLine(QLatin1StringView key, const QString &value)
{
    return value.isEmpty() ? QString() : keyLine(key, value);
}

QString optionalLine(QLatin1StringView key, int value)
{
    return value == NotStated ? QString() : keyLine(key, value);
}

QString yesOrNo(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

QString characterText(const CreatureData &data)
{
    QString text = keyLine("name"_L1, data.name) + optionalLine("portrait"_L1, data.portraitFile);
    if (!data.importFile.isEmpty())
        text += keyLine("import"_L1, data.importFile) + keyLine("linked"_L1, yesOrNo(data.linked));
    text += keyLine("class"_L1, data.charClass) + keyLine("race"_L1, data.race)
        + keyLine("role"_L1, data.role);
    text += keyLine("level"_L1, data.level) + keyLine("hit-points"_L1, data.maxHP)
        + keyLine("hs-value"_L1, data.hsValue) + keyLine("hs-resources"_L1, data.maxHS);
    text += optionalLine("initiative"_L1, data.initBonus) + keyLine("speed"_L1, data.speed)
        + keyLine("ap-resources"_L1, data.initAP);
    text += optionalLine("armour-class"_L1, data.armourClass)
        + optionalLine("fortitude"_L1, data.fortitude) + optionalLine("reflex"_L1, data.reflex)
        + optionalLine("will"_L1, data.will) + optionalLine("perception"_L1, data.perception)
        + optionalLine("insight"_L1, data.insight);
    text += optionalLine("str"_L1, data.strength.score)
        + optionalLine("dex"_L1, data.dexterity.score) + optionalLine("wis"_L1, data.wisdom.score)
        + optionalLine("con"_L1, data.constitution.score)
        + optionalLine("int"_L1, data.intelligence.score)
        + optionalLine("cha"_L1, data.charisma.score);
    text +=
        optionalLine("alignment"_L1, data.alignment) + optionalLine("languages"_L1, data.languages);
    return text + keptStatBlockLine(data);
}

// --- the starter stat block of a monster ---

// A stat block prints a plus sign in front of 0, and a dash for what isn't stated.
QString statBlockNumber(int value)
{
    if (value == NotStated)
        return QStringLiteral("-");
    return (value >= 0 ? QStringLiteral("+") : QString()) + QString::number(value);
}

QString defencesLine(const CreatureData &data)
{
    const auto part = [](const char *form, int value) {
        return value == NotStated ? QString() : QString::fromLatin1(form).arg(value);
    };
    const QString line = part("AC %1; ", data.armourClass) + part("Fortitude %1, ", data.fortitude)
        + part("Reflex %1, ", data.reflex) + part("Will %1", data.will);
    return line.isEmpty() ? QString() : QString(line + u'\n');
}

QString sensesLine(const CreatureData &data)
{
    QString line = QStringLiteral("Initiative %1 Senses Perception %2")
                       .arg(statBlockNumber(data.initBonus), statBlockNumber(data.perception));
    if (data.insight != NotStated)
        line += QStringLiteral("; Insight ") + statBlockNumber(data.insight);
    if (!data.senses.isEmpty())
        line += QStringLiteral("; ") + data.senses;
    return line + u'\n';
}

QString orElse(const QString &text, QLatin1StringView otherwise)
{
    return text.isEmpty() ? QString(otherwise) : text;
}

QString monsterText(const CreatureData &data)
{
    QString text = data.group + u'\n';
    if (!data.portraitFile.isEmpty())
        text += QStringLiteral("Portrait ") + data.portraitFile + u'\n';
    if (!data.importFile.isEmpty())
        text += QStringLiteral("Import ") + data.importFile + QStringLiteral("\nLinked ")
            + yesOrNo(data.linked) + u'\n';
    text += orElse(data.type, "Medium monster"_L1);
    if (!data.race.isEmpty())
        text += QStringLiteral(", ") + data.race;
    text += QStringLiteral("\nLevel %1 ").arg(data.level) + orElse(data.role, "Soldier"_L1)
        + QStringLiteral(" XP %1\n").arg(data.xp);
    text += sensesLine(data);
    text += QStringLiteral("HP %1").arg(data.maxHP);
    if (data.maxHS != 0 && data.hsValue != 0)
        text += QStringLiteral("; HS %1 x %2").arg(data.maxHS).arg(data.hsValue);
    text += u'\n' + defencesLine(data);
    text += QStringLiteral("Speed ") + orElse(data.speed, "0"_L1) + u'\n';
    text += QStringLiteral("Action Points %1\n").arg(data.initAP);
    return text;
}

// --- the portrait in a monster's text ---

QString withPortraitInXml(const QString &text, const QString &portrait)
{
    static const QString startTag = QStringLiteral("<PortraitFile>");
    static const QString endTag = QStringLiteral("</PortraitFile>");
    const QString element = startTag + portrait.toHtmlEscaped() + endTag;
    const qsizetype start = text.indexOf(startTag);
    if (start >= 0) {
        const qsizetype end = text.indexOf(endTag, start);
        const qsizetype tail = end >= 0 ? end + endTag.size() : start + startTag.size();
        return text.left(start) + element + text.mid(tail);
    }
    const qsizetype monster = text.indexOf("<Monster"_L1);
    const qsizetype head = monster < 0 ? -1 : text.indexOf(u'>', monster);
    if (head < 0)
        return text;
    return text.left(head + 1) + QStringLiteral("\n  ") + element + text.mid(head + 1);
}

// The line of a stat block would be passed over, and the picture gone with the next start.
QString withPortraitInKeyForm(const QString &text, const QString &portrait)
{
    QStringList lines = text.split(u'\n');
    const QString line = QStringLiteral("portrait=") + portrait;
    for (QString &old : lines) {
        KeyValue parts;
        if (parseKeyValue(old.toUtf8(), Escapes::Keep, parts) && parts.key == "portrait"_L1) {
            old = line;
            return lines.join(u'\n');
        }
    }
    lines.insert(1, line);
    return lines.join(u'\n');
}

// Index behind the first line that isn't blank, or the whole text.
qsizetype endOfTitle(const QString &text)
{
    qsizetype title = 0;
    while (title < text.size() && text.at(title).isSpace())
        ++title;
    const qsizetype end = text.indexOf(u'\n', title);
    return end < 0 ? text.size() : end + 1;
}

QString withPortraitInStatBlock(const QString &text, const QString &portrait)
{
    const QString line = QStringLiteral("Portrait ") + portrait + u'\n';
    const qsizetype word = text.indexOf("Portrait"_L1);
    if (word >= 0) {
        const qsizetype end = text.indexOf(u'\n', word);
        return text.left(word) + line + (end < 0 ? QString() : text.mid(end + 1));
    }
    const qsizetype end = endOfTitle(text);
    const QString title = text.left(end);
    return title + (title.endsWith(u'\n') ? u""_s : u"\n"_s) + line + text.mid(end);
}

// --- names ---

constexpr qsizetype maxNameLength = 70;

QString invalidName()
{
    return QStringLiteral("Invalid Stat Block");
}

// Such files hold patterns for creatures, not creatures.
bool isTemplateFile(const QString &fileName)
{
    return fileName.startsWith("template"_L1, Qt::CaseInsensitive);
}

QString newFileName(const Creature &creature)
{
    const bool isMonster = creature.isMonster();
    QString stem = fileStem(creature.keyName(),
                            isMonster ? QStringLiteral("monster") : QStringLiteral("character"));
    // Or the next start would pass the file over.
    if (isTemplateFile(stem))
        stem.prepend(QStringLiteral("the-"));
    const bool isXml = isMonster && isXmlText(creature.statBlock().toUtf8());
    return unusedFileName(creaturePath(QString(), isMonster), stem,
                          isXml ? QStringLiteral("monster") : QStringLiteral("txt"));
}

} // namespace

// --- reading ---

bool isXmlText(const QByteArray &bytes)
{
    const QByteArray head = bytes.left(200);
    return (head.contains("<?xml") && head.contains("?>")) || head.contains("xsi:type=\"Monster\"");
}

bool isForeignCharacterFile(const QString &fileName, const QByteArray &bytes)
{
    if (fileName.endsWith(".dnd4e"_L1, Qt::CaseInsensitive))
        return true;
    static const QByteArray passedOver = " \t\n\v\f\r\xEF\xBB\xBF"_ba;
    const auto first =
        std::find_if(bytes.begin(), bytes.end(), [](char c) { return !passedOver.contains(c); });
    return (first != bytes.end() && *first == '<') || isXmlText(bytes);
}

bool readKeyForm(const QByteArray &bytes, CreatureData &data, const QString &dataFolder)
{
    if (!scanKeyForm(bytes, data))
        return false;
    resolvePortrait(data.portraitFile, dataFolder);
    return true;
}

bool parseText(bool isMonster, const QByteArray &text, CreatureData &data,
               const QString &dataFolder, CreatureForm *form)
{
    const QByteArray bytes = withoutByteOrderMark(toLF(text));
    data = CreatureData();
    data.isMonster = isMonster;
    data.statBlock = QString::fromUtf8(bytes);
    CreatureForm found = CreatureForm::StatBlock;
    if (isXmlText(bytes)) {
        found = isMonster ? CreatureForm::MonsterXml : CreatureForm::CharacterXml;
        if (isMonster)
            MonsterXmlHandler::parse(bytes, data, dataFolder);
    } else if (readKeyForm(bytes, data, dataFolder)) {
        found = CreatureForm::Key;
    }
    if (form)
        *form = found;
    if (found == CreatureForm::StatBlock)
        return StatBlockParser::parse(data, data.statBlock, isMonster, dataFolder);
    return found == CreatureForm::Key || found == CreatureForm::MonsterXml;
}

bool isUsableName(const QString &name)
{
    if (name.isEmpty() || name.size() > maxNameLength)
        return false;
    const auto characters = name.toStdU32String();
    return std::all_of(characters.begin(), characters.end(),
                       [](char32_t c) { return QChar::isPrint(c); });
}

bool validate(CreatureData &data, bool isMonster, const QString &fileName)
{
    if (isUsableName(isMonster ? data.group : data.name) && (data.level != 0 || data.xp != 0))
        return true;
    // The record counts as a monster even in a character's file: an unread text is nobody's hero.
    CreatureData invalid;
    invalid.statBlock = data.statBlock;
    (isMonster ? invalid.group : invalid.name) = fileName.isEmpty() ? invalidName() : fileName;
    data = invalid;
    return false;
}

void makeUnique(CreatureData &data, bool isMonster, const Monsters *monsters,
                const Characters *characters, const Creature *self)
{
    if (isMonster && monsters)
        data.group = monsters->uniqueGroup(data.group, self);
    else if (!isMonster && characters)
        data.name = characters->uniqueName(data.name, self);
}

QString textOf(const CreatureData &data)
{
    return data.isMonster ? monsterText(data) : characterText(data);
}

QString withPortraitInText(const QString &text, const QString &portrait)
{
    const QByteArray bytes = text.toUtf8();
    if (isXmlText(bytes))
        return withPortraitInXml(text, portrait);
    CreatureData ignored;
    if (scanKeyForm(bytes, ignored))
        return withPortraitInKeyForm(text, portrait);
    return withPortraitInStatBlock(text, portrait);
}

// --- the creature's own file ---

bool Creature::load(const QString &fileName, bool isMonster, const QString &dataFolder,
                    const Monsters *monsters, const Characters *characters)
{
    if (fileName.startsWith(u'.') || isTemplateFile(fileName))
        return false;
    QByteArray bytes;
    const FileText text = readTextFile(creaturePath(fileName, isMonster, dataFolder), bytes);
    if (text == FileText::None)
        return false;
    if (!isMonster && isForeignCharacterFile(fileName, bytes))
        return false;
    CreatureData data;
    // Of a giant nothing is kept but its name, so that it can be seen and deleted.
    if (text == FileText::Read)
        parseText(isMonster, bytes, data, dataFolder);
    validate(data, isMonster, fileName);
    makeUnique(data, isMonster, monsters, characters);
    assign(data);
    m_isCharacterFile = !isMonster;
    m_savedStatBlock = m_data.statBlock;
    m_fileName = fileName;
    m_nameBefore = m_data.name;
    extendedRest(false);
    syncShadows();
    return true;
}

bool Creature::save()
{
    // A file that was too large to be read isn't written over either.
    const bool isUnread = !m_fileName.isEmpty() && m_savedStatBlock.isEmpty();
    if (m_data.statBlock.isEmpty() || isUnread)
        return false;
    const QString fileName = m_fileName.isEmpty() ? newFileName(*this) : m_fileName;
    if (dataReadOnly
        || !saveWhole(creaturePath(fileName, hasMonsterFile()), toCRLF(m_data.statBlock.toUtf8())))
        return false;
    m_fileName = fileName;
    m_savedStatBlock = m_data.statBlock;
    m_ownText.clear();
    m_nameBefore = m_data.name;
    syncShadows();
    return true;
}

void Creature::revert(const Monsters *monsters, const Characters *characters)
{
    if (m_isNew) {
        setNew(false);
        setModified(false);
        return;
    }
    if (!m_isModified)
        return;
    setModified(false);
    // A saved text that can't be read is nothing to go back to.
    if (readText(m_savedStatBlock, monsters, characters))
        statBlockChanged();
}

bool Creature::readText(const QString &text, const Monsters *monsters, const Characters *characters)
{
    const bool isMonster = hasMonsterFile();
    CreatureData data;
    if (!parseText(isMonster, text.toUtf8(), data, QString()))
        return false;
    validate(data, isMonster, m_fileName);
    makeUnique(data, isMonster, monsters, characters, this);
    assign(data);
    return true;
}

void Creature::takeNumbersOfText()
{
    CreatureData data;
    if (isInvalid() || !parseText(hasMonsterFile(), ownText().toUtf8(), data, QString()))
        return;
    CreatureVitality vitality = liveVitality();
    vitality.initBonus = data.initBonus;
    vitality.maxHP = data.maxHP;
    vitality.maxHS = data.maxHS;
    vitality.hsValue = data.hsValue;
    vitality.initAP = data.initAP;
    if (vitality == liveVitality())
        return;
    setVitalityNumbers(vitality);
    m_data.statBlock = ownText();
    m_ownText.clear();
    statBlockChanged();
}

void Creature::resetForEncounter(const Monsters *monsters, const Characters *characters)
{
    clearRestAdditions();
    // Steps through the history leave another name, other numbers and used powers in the record,
    // and some of it in the text.
    if (!isInvalid() && readText(ownText(), monsters, characters))
        statBlockChanged();
    m_nameBefore = m_data.name;
    m_hidden = false;
    m_alias.clear();
    m_aliasMode = 0;
    m_initRoll = m_initRandom = 0;
    extendedRest(true);
    syncShadows();
}

QString Creature::generateText() const
{
    return textOf(m_data);
}

bool Creature::isInvalid() const
{
    const QString &key = hasMonsterFile() ? m_data.group : m_data.name;
    return key.contains(invalidName()) || key == m_fileName;
}
