#include "statblockhandler.h"

#include <QFileInfo>

#include "paths.h"
#include "safefile.h"
#include "saturated.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct TextField {
    QLatin1StringView key;
    QString CreatureData::*field;
};

struct NumberField {
    QLatin1StringView key;
    int CreatureData::*field;
};

struct ScoreField {
    QLatin1StringView key;
    Ability CreatureData::*field;
};

const NumberField numberAliases[] = {
    {"AC"_L1, &CreatureData::armourClass},
    {"Fortitude Defense"_L1, &CreatureData::fortitude},
    {"Reflex Defense"_L1, &CreatureData::reflex},
    {"Will Defense"_L1, &CreatureData::will},
    {"Hit Points"_L1, &CreatureData::maxHP},
    {"Healing Surges"_L1, &CreatureData::maxHS},
    {"Initiative"_L1, &CreatureData::initBonus},
    {"_BaseActionPoints"_L1, &CreatureData::initAP},
    {"Healing Surge Value"_L1, &CreatureData::hsValue},
    {"Perception"_L1, &CreatureData::perception},
    {"Insight"_L1, &CreatureData::insight},
};

const TextField textAliases[] = {
    {"Speed"_L1, &CreatureData::speed},
    {"Vision"_L1, &CreatureData::senses},
};

const ScoreField scoreAliases[] = {
    {"Strength"_L1, &CreatureData::strength},   {"Constitution"_L1, &CreatureData::constitution},
    {"Dexterity"_L1, &CreatureData::dexterity}, {"Intelligence"_L1, &CreatureData::intelligence},
    {"Wisdom"_L1, &CreatureData::wisdom},       {"Charisma"_L1, &CreatureData::charisma},
};

const TextField ruleTypes[] = {
    {"Class"_L1, &CreatureData::charClass},
    {"Role"_L1, &CreatureData::role},
    {"Race"_L1, &CreatureData::race},
    {"Alignment"_L1, &CreatureData::alignment},
};

// Nobody speaks more languages; each new one is looked for among those before it.
constexpr qsizetype maxListLength = 2000;

template <typename Table>
auto fieldFor(const Table &table, const QString &key)
{
    for (const auto &row : table) {
        if (key == row.key)
            return row.field;
    }
    return decltype(table[0].field)(nullptr);
}

// Numbers stand padded with blanks.
int toNumber(const QString &text)
{
    return text.trimmed().toInt();
}

} // namespace

StatBlockHandler::StatBlockHandler(const CreatureData &record, const QString &dataFolder,
                                   PortraitCopy copy)
    : m_dataFolder(dataFolder), m_copy(copy), m_record(record)
{
}

bool StatBlockHandler::parse(const QByteArray &bytes, CreatureData &record,
                             const QString &dataFolder, PortraitCopy copy)
{
    StatBlockHandler handler(record, dataFolder, copy);
    if (!handler.read(bytes, BracketsInNames::Allowed))
        return false;
    record = handler.m_record;
    return true;
}

void StatBlockHandler::onBegin()
{
    m_record.isMonster = false;
    // The file states a bonus, and onEnd() adds the rest: an old value would grow with each reading
    // of a file without one.
    m_record.hsValue = 0;
}

bool StatBlockHandler::value(const QString &path, const QString &text)
{
    if (path.endsWith("StatBlock/Stat/value"_L1)) {
        m_lastValue = text.trimmed();
    } else if (path.endsWith("Details/name/"_L1)) {
        m_record.name = text.trimmed();
    } else if (path.endsWith("Details/Level/"_L1)) {
        m_record.level = toNumber(text);
    } else if (path.endsWith("Details/Experience/"_L1)) {
        m_record.xp = toNumber(text);
    } else if (path.endsWith("Details/Portrait/"_L1)) {
        takePortrait(text.trimmed());
    } else if (path.endsWith("RulesElement/name"_L1)) {
        m_lastName = text.trimmed();
        m_nameElement = elementCount();
        takeRule();
    } else if (path.endsWith("StatBlock/Stat/alias/name"_L1)) {
        takeAlias(text);
    } else if (path.endsWith("/RulesElement/type"_L1)) {
        m_lastType = text;
        m_typeElement = elementCount();
        takeRule();
    }
    return true;
}

void StatBlockHandler::takePortrait(const QString &url)
{
    const QString scheme = QStringLiteral("file://");
    const QString file = url.startsWith(scheme) ? url.mid(scheme.size()) : url;
    if (!QFileInfo(file).isFile())
        return;
    const QString adopted = adoptPortrait(file, m_dataFolder, m_copy);
    if (!adopted.isEmpty())
        m_record.portraitFile = adopted;
}

void StatBlockHandler::takeAlias(const QString &alias)
{
    if (const auto number = fieldFor(numberAliases, alias))
        m_record.*number = toNumber(m_lastValue);
    else if (const auto text = fieldFor(textAliases, alias))
        m_record.*text = m_lastValue;
    else if (const auto score = fieldFor(scoreAliases, alias))
        m_record.*score = {toNumber(m_lastValue), NoModifier};
    m_hasActionPoints = m_hasActionPoints || alias == "_BaseActionPoints"_L1;
    m_hasSenses = m_hasSenses || (alias == "Vision"_L1 && !m_lastValue.isEmpty());
}

// The two attributes come in either order.
void StatBlockHandler::takeRule()
{
    if (m_nameElement != m_typeElement)
        return;
    if (const auto field = fieldFor(ruleTypes, m_lastType)) {
        m_record.*field = m_lastName;
    } else if (m_lastType == "Paragon Path"_L1) {
        m_paragonPath = m_lastName;
    } else if (m_lastType == "Epic Destiny"_L1) {
        m_epicDestiny = m_lastName;
    } else if (m_lastType == "Language"_L1) {
        addRule(m_record.languages);
    } else if (m_lastType == "Vision"_L1) {
        addRule(m_vision);
    }
}

void StatBlockHandler::addRule(QString &list) const
{
    if (list.size() > maxListLength || list.contains(m_lastName))
        return;
    if (!list.isEmpty())
        list += QStringLiteral(", ");
    list += m_lastName;
}

void StatBlockHandler::onEnd()
{
    if (!m_paragonPath.isEmpty())
        m_record.charClass = m_paragonPath;
    if (!m_epicDestiny.isEmpty())
        m_record.charClass = m_epicDestiny;
    if (!m_hasSenses && !m_vision.isEmpty())
        m_record.senses = m_vision;
    // Everybody has one; builders state it only where they know of more. A record's own number
    // stays.
    if (!m_hasActionPoints && m_record.initAP == 0)
        m_record.initAP = 1;
    m_record.hsValue = saturatedSum(m_record.hsValue, m_record.maxHP / 4);
}

bool readImport(const QString &path, CreatureData &record, const QString &dataFolder)
{
    QByteArray bytes;
    const QString file =
        QFileInfo(path).isRelative() ? creaturePath(path, false, dataFolder) : path;
    return readTextFile(file, bytes) == FileText::Read
        && StatBlockHandler::parse(toLF(bytes), record, dataFolder);
}
