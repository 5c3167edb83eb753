#include "creaturekeyform.h"

#include <QStringList>
#include <algorithm>
#include <variant>

#include "creaturedata.h"
#include "creatureportrait.h"
#include "keyvalue.h"
#include "statblockparser.h"
#include "terms.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

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

bool isPortraitLine(const QString &line)
{
    KeyValue parts;
    return parseKeyValue(line.toUtf8(), Escapes::Keep, parts) && parts.key == "portrait"_L1;
}

} // namespace

bool readKeyForm(const QByteArray &bytes, CreatureData &data, const QString &dataFolder)
{
    if (!scanKeyForm(bytes, data))
        return false;
    resolvePortrait(data.portraitFile, dataFolder);
    return true;
}

bool isKeyForm(const QByteArray &bytes)
{
    CreatureData character;
    character.isMonster = false;
    CreatureData monster;
    return scanKeyForm(bytes, monster) || scanKeyForm(bytes, character);
}

QString keyFormOf(const CreatureData &data)
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

bool putPortraitIntoKeyForm(QString &text, const QString &portrait)
{
    CreatureData ignored;
    if (!scanKeyForm(text.toUtf8(), ignored))
        return false;
    QStringList lines = text.split(u'\n');
    const QString line = QStringLiteral("portrait=") + portrait;
    const auto own = std::find_if(lines.begin(), lines.end(), isPortraitLine);
    if (own != lines.end())
        *own = line;
    else
        lines.insert(1, line);
    text = lines.join(u'\n');
    return true;
}

bool takePortraitFromKeyForm(QString &text)
{
    CreatureData ignored;
    if (!scanKeyForm(text.toUtf8(), ignored))
        return false;
    QStringList lines = text.split(u'\n');
    lines.removeIf(isPortraitLine);
    text = lines.join(u'\n');
    return true;
}
