#include "monsterxmlhandler.h"

#include <QHash>
#include <algorithm>

#include "creatureportrait.h"
#include "powertext.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

void addTo(QString &text, const QString &more, QLatin1StringView separator)
{
    if (!text.isEmpty() && !more.isEmpty())
        text += separator;
    text += more;
}

struct Named {
    QLatin1StringView name;
    int number;
};

const Named icons[] = {
    {"Melee"_L1, PowerIcon::Melee},   {"Weapon"_L1, PowerIcon::Weapon},
    {"Ranged"_L1, PowerIcon::Ranged}, {"Area"_L1, PowerIcon::Area},
    {"Close"_L1, PowerIcon::Close},   {"Aura"_L1, PowerIcon::Aura},
};

// The first word that an action holds decides.
const Named sections[] = {
    {"standard"_L1, PowerSection::Standard},     {"move"_L1, PowerSection::Move},
    {"minor"_L1, PowerSection::Minor},           {"free"_L1, PowerSection::Free},
    {"opportunity"_L1, PowerSection::Triggered}, {"interrupt"_L1, PowerSection::Triggered},
    {"reaction"_L1, PowerSection::Triggered},    {"trait"_L1, PowerSection::Traits},
    {"aura"_L1, PowerSection::Traits},
};
// The icon of a basic attack stands before each of these.
constexpr int iconsWithBasic[] = {PowerIcon::Melee, PowerIcon::Ranged, PowerIcon::Area,
                                  PowerIcon::Close};

// Actions of a whole section of their own need no word for it in their paragraphs.
bool namesItsAction(int section)
{
    return section >= PowerSection::Standard && section <= PowerSection::Minor;
}

// "Close Burst" is as good as "close".
int iconOf(const QString &type)
{
    const QString word = type.section(u' ', 0, 0);
    for (const Named &icon : icons) {
        if (word.compare(icon.name, Qt::CaseInsensitive) == 0)
            return icon.number;
    }
    return PowerIcon::None;
}

int sectionOf(const QString &action)
{
    for (const Named &section : sections) {
        if (action.contains(section.name, Qt::CaseInsensitive))
            return section.number;
    }
    return PowerSection::Other;
}

// A power's texts become rich text, in which a "<" of the file would begin a tag.
QString powerHtml(QString text)
{
    return text.replace(u'&', "&amp;"_L1).replace(u'<', "&lt;"_L1).replace(u'>', "&gt;"_L1);
}

QString ordinal(int number)
{
    constexpr const char *words[] = {"First", "Second",  "Third",  "Fourth", "Fifth",
                                     "Sixth", "Seventh", "Eighth", "Ninth",  "Tenth"};
    if (number <= int(std::size(words)))
        return QString::fromLatin1(words[number - 1]);
    return QString::number(number) + QStringLiteral("'th");
}

const QStringView powersPath = u"Powers/";
const QStringView attacksPath = u"Powers/MonsterPower/Attacks/MonsterAttack/";
const QStringView attackElement = u"/MonsterAttack/";

} // namespace

// --- the tables ---

// Behind the name of the root element. Paths not listed mean nothing here.
const MonsterXmlHandler::Row MonsterXmlHandler::monsterRows[] = {
    {u"Name/", [](auto &h, auto &text) { h.m_record.group = text; }},
    {u"PortraitFile/",
     [](auto &h, auto &text) {
         h.m_record.portraitFile = text;
         resolvePortrait(h.m_record.portraitFile, h.m_dataFolder);
     }},
    {u"Level/", [](auto &h, auto &text) { h.m_record.level = text.toInt(); }},
    {u"Experience/FinalValue", [](auto &h, auto &text) { h.m_record.xp = text.toInt(); }},
    {u"GroupRole/", [](auto &h, auto &text) { h.addRole(h.m_record.role, text); }},
    {u"GroupRole/ReferencedObject/Name/",
     [](auto &h, auto &text) { h.addRole(h.m_record.role, text); }},
    {u"Role/ReferencedObject/Name/", [](auto &h, auto &text) { h.addRole(h.m_roleName, text); }},
    {u"IsLeader/", [](auto &h, auto &text) { h.m_isLeader = text == "true"_L1; }},
    {u"Size/ReferencedObject/Name/", [](auto &h, auto &text) { h.m_sizeName = text; }},
    {u"Origin/ReferencedObject/Name/", [](auto &h, auto &text) { h.m_originName = text; }},
    {u"Type/ReferencedObject/Name/", [](auto &h, auto &text) { h.m_typeName = text; }},
    {u"Keywords/ObjectReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_keywords, text, ", "_L1); }},
    {u"Resistances/CreatureSusceptibility/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_susceptibility, text, " "_L1); }},
    {u"Resistances/CreatureSusceptibility/Amount/FinalValue",
     [](auto &h, auto &text) { addTo(h.m_susceptibility, text, " "_L1); }},
    {u"=Resistances/CreatureSusceptibility/#end",
     [](auto &h, auto &) { h.addSusceptibility(h.m_record.resist); }},
    {u"Weaknesses/CreatureSusceptibility/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_susceptibility, text, " "_L1); }},
    {u"Weaknesses/CreatureSusceptibility/Amount/FinalValue",
     [](auto &h, auto &text) { addTo(h.m_susceptibility, text, " "_L1); }},
    {u"=Weaknesses/CreatureSusceptibility/#end",
     [](auto &h, auto &) { h.addSusceptibility(h.m_record.vulnerable); }},
    {u"=Immunities/ObjectReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_record.immune, text, ", "_L1); }},
    {u"Initiative/FinalValue", [](auto &h, auto &text) { h.m_record.initBonus = text.toInt(); }},
    {u"Skills/Values/SkillNumber/FinalValue",
     [](auto &h, auto &text) { h.m_number = text.toInt(); }},
    {u"Skills/Values/SkillNumber/Name/", [](auto &h, auto &text) { h.takeSkill(text); }},
    {u"Senses/ObjectReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { h.m_record.senses = text; }},
    {u"HitPoints/FinalValue", [](auto &h, auto &text) { h.m_record.maxHP = text.toInt(); }},
    {u"ActionPoints/FinalValue", [](auto &h, auto &text) { h.m_record.initAP = text.toInt(); }},
    {u"Defenses/Values/SimpleAdjustableNumber/FinalValue",
     [](auto &h, auto &text) { h.m_number = text.toInt(); }},
    {u"Defenses/Values/SimpleAdjustableNumber/Name/",
     [](auto &h, auto &text) { h.takeDefence(text); }},
    {u"Senses/SenseReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { h.m_senseName = text; }},
    {u"Senses/SenseReference/Range/", [](auto &h, auto &text) { h.m_senseRange = text; }},
    {u"Senses/SenseReference/Range/FinalValue",
     [](auto &h, auto &text) { h.m_senseRange = text; }},
    {u"Senses/SenseReference/#end", [](auto &h, auto &) { h.finishSense(); }},
    {u"AbilityScores/Values/AbilityScoreNumber/FinalValue",
     [](auto &h, auto &text) { h.m_number = text.toInt(); }},
    {u"AbilityScores/Values/AbilityScoreNumber/Name/",
     [](auto &h, auto &text) { h.takeAbility(text); }},
    {u"Alignment/ReferencedObject/Name/",
     [](auto &h, auto &text) { h.m_record.alignment = text; }},
    {u"Languages/ObjectReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_record.languages, text, ", "_L1); }},
    {u"Items/ItemAndQuantity/Quantity/",
     [](auto &h, auto &text) { h.m_itemQuantity = text.toInt(); }},
    {u"Items/ItemAndQuantity/Item/ReferencedObject/Name/",
     [](auto &h, auto &text) { h.takeItem(text); }},
    {u"LandSpeed/FinalValue", [](auto &h, auto &text) { addTo(h.m_record.speed, text, ", "_L1); }},
    {u"LandSpeed/Speed/FinalValue",
     [](auto &h, auto &text) { addTo(h.m_record.speed, text, ", "_L1); }},
    {u"LandSpeed/Details/", [](auto &h, auto &text) { addTo(h.m_record.speed, text, " "_L1); }},
    {u"Speeds/CreatureSpeed/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_record.speed, text, ", "_L1); }},
    {u"Speeds/CreatureSpeed/Speed/FinalValue",
     [](auto &h, auto &text) { addTo(h.m_record.speed, text, " "_L1); }},
    {u"Speeds/CreatureSpeed/Details/",
     [](auto &h, auto &text) { addTo(h.m_record.speed, text, " "_L1); }},
    {u"SavingThrows/MonsterSavingThrow/FinalValue",
     [](auto &h, auto &text) { h.takeSavingThrows(text); }},

    {u"Powers/MonsterPower/Name/", [](auto &h, auto &text) { h.m_power.name = text; }},
    {u"Powers/MonsterTrait/Name/",
     [](auto &h, auto &text) {
         h.m_power.name = text;
         h.m_power.section = PowerSection::Traits;
     }},
    {u"Powers/MonsterTrait/Details/", [](auto &h, auto &text) { h.m_power.details << text; }},
    {u"Powers/MonsterTrait/Range/FinalValue",
     [](auto &h, auto &text) {
         if (text.toInt() > 0) {
             h.m_power.icon = PowerIcon::Aura;
             h.m_usageText = QStringLiteral("<b>Aura %1</b>").arg(text.toInt());
         }
     }},
    {u"=Powers/MonsterTrait/#end", [](auto &h, auto &) { h.finishPower(); }},
    {u"Powers/MonsterPower/Type/",
     [](auto &h, auto &text) {
         if (const int icon = iconOf(text); icon != PowerIcon::None)
             h.m_power.icon = icon;
     }},
    {u"Powers/MonsterTrait/Keywords/ObjectReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_powerKeywords, text, ", "_L1); }},
    {u"=Powers/MonsterPower/#end", [](auto &h, auto &) { h.finishPower(); }},
    {u"Powers/MonsterPower/IsBasic/",
     [](auto &h, auto &text) { h.m_isBasic = text == "true"_L1; }},
    {u"Powers/MonsterPower/Action/", [](auto &h, auto &text) { h.takeAction(text); }},
    {u"Powers/MonsterPower/Usage/", [](auto &h, auto &text) { h.takeUsage(text); }},
    {u"Powers/MonsterPower/UsageDetails/", [](auto &h, auto &text) { h.takeUsageDetails(text); }},
    {u"Powers/MonsterPower/Keywords/ObjectReference/ReferencedObject/Name/",
     [](auto &h, auto &text) { addTo(h.m_powerKeywords, text, ", "_L1); }},
    {u"Powers/MonsterPower/Trigger/", [](auto &h, auto &text) { h.takeTrigger(text); }},
    {u"Powers/MonsterPower/Requirements/", [](auto &h, auto &text) { h.takeRequirement(text); }},
};

// The ends of paths within an attack, whatever stands between.
const MonsterXmlHandler::Row MonsterXmlHandler::attackRows[] = {
    {u"/MonsterAttack/Name/", [](auto &h, auto &text) { h.m_attack.name = text; }},
    {u"/MonsterAttack/Range/", [](auto &h, auto &text) { addTo(h.m_attack.line, text, " "_L1); }},
    {u"/MonsterAttack/Description/",
     [](auto &h, auto &text) { addTo(h.m_attack.line, text, " "_L1); }},
    {u"/MonsterAttack/Targets/", [](auto &h, auto &text) { addTo(h.m_attack.line, text, " "_L1); }},
    {u"/MonsterAttack/AttackBonuses/MonsterPowerAttackNumber/FinalValue",
     [](auto &h, auto &text) { addTo(h.m_attack.line, signedNumber(text.toInt()), " "_L1); }},
    {u"/MonsterPowerAttackNumber/Defense/ReferencedObject/DefenseName/",
     [](auto &h, auto &text) { addTo(h.m_attack.line, u"vs. "_s + text, " "_L1); }},
    {u"/Hit/Name/", [](auto &h, auto &text) { h.m_attack.entry.label = text; }},
    {u"/Effect/Name/", [](auto &h, auto &text) { h.m_attack.entry.label = text; }},
    {u"/Miss/Name/", [](auto &h, auto &text) { h.m_attack.entry.label = text; }},
    {u"/Hit/Damage/Expression/",
     [](auto &h, auto &text) { addTo(h.m_attack.entry.text, text, " "_L1); }},
    {u"/Effect/Damage/Expression/",
     [](auto &h, auto &text) { addTo(h.m_attack.entry.text, text, " "_L1); }},
    {u"/Miss/Damage/Expression/",
     [](auto &h, auto &text) { addTo(h.m_attack.entry.text, text, " "_L1); }},
    {u"/Hit/Description/", [](auto &h, auto &text) { h.describeEntry(text); }},
    {u"/Effect/Description/", [](auto &h, auto &text) { h.describeEntry(text); }},
    {u"/Miss/Description/", [](auto &h, auto &text) { h.describeEntry(text); }},
    {u"/Hit/#end", [](auto &h, auto &) { h.finishEntry(true); }},
    {u"/Effect/#end", [](auto &h, auto &) { h.finishEntry(false); }},
    {u"/Miss/#end", [](auto &h, auto &) { h.finishEntry(true); }},
    {u"/MonsterAttack/#end", [](auto &h, auto &) { h.finishAttack(); }},
};

MonsterXmlHandler::Action MonsterXmlHandler::actionFor(QStringView path, QStringView key)
{
    struct Entry {
        Action take = nullptr;
        bool isWhole = false; // must not stand deeper in a document
    };
    static const QHash<QStringView, Entry> entries = [] {
        QHash<QStringView, Entry> result;
        for (const Row &row : monsterRows) {
            const bool isWhole = row.path.startsWith(u'=');
            result.insert(row.path.mid(isWhole ? 1 : 0), {row.take, isWhole});
        }
        return result;
    }();
    const Entry entry = entries.value(key);
    const QStringView root = path.chopped(key.size());
    // The one path that is taken under any root whose name ends so.
    const bool anyRoot = key == u"Senses/ObjectReference/ReferencedObject/Name/";
    if (!anyRoot && !root.endsWith(u"Monster/"))
        return nullptr;
    return entry.isWhole && root != u"/Monster/" ? nullptr : entry.take;
}

// --- reading ---

MonsterXmlHandler::MonsterXmlHandler(const QString &dataFolder) : m_dataFolder(dataFolder) { }

void MonsterXmlHandler::parse(const QByteArray &bytes, CreatureData &record,
                              const QString &dataFolder)
{
    MonsterXmlHandler handler(dataFolder);
    if (handler.read(bytes))
        record = handler.m_record;
    record.statBlock = QString::fromUtf8(bytes);
}

bool MonsterXmlHandler::value(const QString &path, const QString &text)
{
    const QString trimmed = text.trimmed();
    // White space between two tags is layout, not a value.
    if (trimmed.isEmpty() && path.endsWith(u'/'))
        return true;
    const QStringView root = u"onster/";
    const qsizetype place = path.lastIndexOf(root);
    if (place < 0)
        return true;
    const QStringView key = QStringView(path).mid(place + root.size());
    const QString taken = key.startsWith(powersPath) ? powerHtml(trimmed) : trimmed;
    if (key.startsWith(attacksPath)) {
        const QStringView sequelKey = enterSequel(enterAttack(key));
        if (!sequelKey.isNull()) {
            setSequelValue(sequelKey, taken);
            return true;
        }
        const auto *row =
            std::find_if(std::begin(attackRows), std::end(attackRows),
                         [&path](const Row &each) { return path.endsWith(each.path); });
        if (row != std::end(attackRows))
            row->take(*this, taken);
    } else if (const Action take = actionFor(path, key)) {
        take(*this, taken);
    }
    return true;
}

void MonsterXmlHandler::onEnd()
{
    CreatureData &record = m_record;
    addTo(record.type, m_sizeName, " "_L1);
    addTo(record.type, m_originName.toLower(), " "_L1);
    addTo(record.type, m_typeName.toLower(), " "_L1);
    if (!m_keywords.isEmpty())
        record.type += QStringLiteral(" (%1)").arg(m_keywords);
    if (m_isLeader)
        addTo(m_roleName, QStringLiteral("(Leader)"), " "_L1);
    addTo(record.role, m_roleName, " "_L1);
    finishPower();
    sortPowers(record);
}

// --- statistics ---

void MonsterXmlHandler::addRole(QString &role, const QString &text)
{
    if (text != "Standard"_L1 && text != "No Role"_L1)
        addTo(role, text, " "_L1);
}

void MonsterXmlHandler::addSusceptibility(QString &list)
{
    addTo(list, m_susceptibility, ", "_L1);
    m_susceptibility.clear();
}

void MonsterXmlHandler::finishSense()
{
    if (m_senseRange != "0"_L1 && !m_senseName.isEmpty())
        addTo(m_senseName, m_senseRange, " "_L1);
    addTo(m_record.senses, std::exchange(m_senseName, {}), ", "_L1);
    m_senseRange.clear();
}

void MonsterXmlHandler::takeSkill(const QString &name)
{
    if (name == "Perception"_L1)
        m_record.perception = m_number;
    else if (name == "Insight"_L1)
        m_record.insight = m_number;
    else
        addTo(m_record.skills, name + u' ' + signedNumber(m_number), ", "_L1);
}

void MonsterXmlHandler::takeDefence(const QString &name)
{
    if (name == "AC"_L1)
        m_record.armourClass = m_number;
    else if (name == "Fortitude"_L1)
        m_record.fortitude = m_number;
    else if (name == "Reflex"_L1)
        m_record.reflex = m_number;
    else if (name == "Will"_L1)
        m_record.will = m_number;
}

void MonsterXmlHandler::takeAbility(const QString &name)
{
    if (name == "Strength"_L1)
        m_record.strength.score = m_number;
    else if (name == "Dexterity"_L1)
        m_record.dexterity.score = m_number;
    else if (name == "Wisdom"_L1)
        m_record.wisdom.score = m_number;
    else if (name == "Constitution"_L1)
        m_record.constitution.score = m_number;
    else if (name == "Intelligence"_L1)
        m_record.intelligence.score = m_number;
    else if (name == "Charisma"_L1)
        m_record.charisma.score = m_number;
}

void MonsterXmlHandler::takeItem(const QString &name)
{
    const QString count =
        m_itemQuantity > 1 ? QStringLiteral(" x%1").arg(m_itemQuantity) : QString();
    addTo(m_record.equipment, name + count, ", "_L1);
    m_itemQuantity = 0;
}

void MonsterXmlHandler::takeSavingThrows(const QString &text)
{
    bool isNumber = false;
    const int bonus = text.toInt(&isNumber);
    if (!isNumber)
        m_record.savingThrows = text;
    else
        m_record.savingThrows = bonus == 0 ? QString() : signedNumber(bonus);
}

// --- powers ---

void MonsterXmlHandler::takeAction(const QString &text)
{
    m_actionName = text;
    m_power.section = sectionOf(text);
}

void MonsterXmlHandler::takeUsage(const QString &text)
{
    const QString recharge = QStringLiteral("Recharge");
    const auto bold = [](const QString &usage) { return QStringLiteral("<b>%1</b>").arg(usage); };
    m_usageText = bold(text);
    if (text == "Encounter"_L1) {
        m_power.usageKind = 2;
    } else if (text == "2/Encounter"_L1) {
        m_power.usageKind = 3;
    } else if (text.compare("at-will"_L1, Qt::CaseInsensitive) == 0) {
        m_power.usageKind = 1;
        m_usageText = bold(QStringLiteral("At-Will"));
    } else if (text.startsWith(recharge)) {
        m_power.usageKind = 4;
        takeRecharge(text.mid(recharge.size()).trimmed());
    }
}

void MonsterXmlHandler::takeUsageDetails(const QString &text)
{
    if (text == "2/Encounter"_L1) {
        // Says all that "Encounter" does.
        if (m_power.usageKind == 2 || m_power.usageKind == 3)
            m_usageText.clear();
        m_power.usageKind = 3;
    } else if (m_power.usageKind == 4) {
        takeRecharge(text);
        return;
    }
    addTo(m_usageText, text, " "_L1);
}

void MonsterXmlHandler::takeRecharge(const QString &text)
{
    m_usageText = QStringLiteral("<b>Recharge</b>");
    bool isNumber = false;
    const int n = text.toInt(&isNumber);
    if (!isNumber) {
        addTo(m_usageText, text, " "_L1);
        return;
    }
    // No die shows more than 6: such a power doesn't come back by one.
    if (n > 1 && n <= 6)
        m_power.usageKind = n + 3;
    m_usageText += rechargeImages(n);
}

void MonsterXmlHandler::takeTrigger(const QString &text)
{
    m_power.section = PowerSection::Triggered;
    addToHead(m_headSize, QStringLiteral("<i>Trigger:</i> ") + text);
}

void MonsterXmlHandler::takeRequirement(const QString &text)
{
    addToHead(0, QStringLiteral("<i>Requirement:</i> ") + text);
}

// Requirements and triggers stand ahead of all attacks, wherever the file has them.
void MonsterXmlHandler::addToHead(int place, const QString &paragraph)
{
    m_power.details.insert(place, paragraph);
    ++m_headSize;
}

void MonsterXmlHandler::finishPower()
{
    if (!m_power.name.isEmpty()) {
        if (m_isBasic && std::ranges::count(iconsWithBasic, m_power.icon) > 0)
            --m_power.icon;
        if (!m_powerKeywords.isEmpty())
            m_power.keywords = QStringLiteral("(%1)").arg(m_powerKeywords);
        if (!m_usageText.isEmpty())
            m_power.keywords += u" \u2022 "_s + m_usageText;
        addPower(m_record, std::move(m_power));
    }
    m_power = Power();
    m_isBasic = false;
    m_actionName.clear();
    m_powerKeywords.clear();
    m_usageText.clear();
    m_headSize = 0;
    m_attack = Attack();
    m_outerAttacks.clear();
}

// --- attacks ---

// Opens what the path leads through. What is left of it behind the innermost attack.
QStringView MonsterXmlHandler::enterAttack(QStringView attackPath)
{
    const qsizetype elementSize = attackElement.size() - 1; // the "/" begins the next one, too
    QStringView inner = attackPath.mid(attackPath.indexOf(attackElement) + elementSize);
    qsizetype next = 0;
    for (qsizetype level = 0; (next = inner.indexOf(attackElement)) >= 0; ++level) {
        if (level == m_outerAttacks.size()) {
            enterSequel(inner.first(next + 1));
            m_outerAttacks.append(std::exchange(m_attack, {}));
        }
        inner = inner.mid(next + elementSize);
    }
    return inner;
}

// Opens the sequels that a path within an attack leads through. What is left of it behind the
// innermost; null for none.
QStringView MonsterXmlHandler::enterSequel(QStringView path)
{
    static const struct {
        QStringView element;
        Sequel::Kind kind;
    } elements[] = {{u"/FailedSavingThrows/MonsterAttackEntry/", Sequel::FailedSave},
                    {u"/Aftereffects/MonsterAttackEntry/", Sequel::Aftereffect},
                    {u"/Sustains/MonsterSustainEffect/", Sequel::Sustain}};
    qsizetype depth = 0;
    QStringView inner;
    while (!path.isEmpty()) {
        const auto *element =
            std::find_if(std::begin(elements), std::end(elements),
                         [path](const auto &each) { return path.startsWith(each.element); });
        if (element != std::end(elements)) {
            path = path.mid(element->element.size() - 1);
            inner = path.mid(1);
            if (m_attack.openSequels.size() < ++depth)
                m_attack.openSequels.append({element->kind, {}, {}, {}, {}, {}});
        } else {
            const qsizetype next = path.indexOf(u'/', 1);
            path = next < 0 ? QStringView() : path.mid(next);
        }
    }
    return inner;
}

void MonsterXmlHandler::setSequelValue(QStringView key, const QString &text)
{
    Sequel &sequel = m_attack.openSequels.last();
    if (key == u"Name/")
        sequel.label = text;
    else if (key == u"Action/")
        sequel.action = text;
    else if (key == u"Damage/Expression/" || key == u"Description/")
        addTo(sequel.text, text, " "_L1);
    else if (key == u"#end")
        finishSequel();
}

void MonsterXmlHandler::finishSequel()
{
    addSequel(m_attack.openSequels.takeLast());
}

void MonsterXmlHandler::addSequel(Sequel sequel)
{
    QList<Sequel> &list = m_attack.openSequels.isEmpty() ? m_attack.entry.sequels
                                                         : m_attack.openSequels.last().sequels;
    list.append(std::move(sequel));
}

QString MonsterXmlHandler::entryParagraph(const QString &label, const QString &text,
                                          bool withAction)
{
    const QString name = label.isEmpty() ? QStringLiteral("Attack") : label;
    // The action is the outermost attack's.
    const QString action =
        withAction && !isInnerAttack() ? std::exchange(m_actionName, {}) : QString();
    if (action.isEmpty() || namesItsAction(m_power.section))
        return QStringLiteral("<i>%1:</i> %2").arg(name, text);
    return QStringLiteral("<i>%1 (%2):</i> %3").arg(name, action, text);
}

void MonsterXmlHandler::describeEntry(const QString &text)
{
    addTo(m_attack.entry.text, text, " "_L1);
    addTo(m_attack.entry.description, text, " "_L1);
}

void MonsterXmlHandler::finishEntry(bool needsAttack)
{
    Entry &entry = m_attack.entry;
    entry.needsAttack = needsAttack;
    // An attack of that name tells its action in its own line.
    entry.tellsAction = m_attack.name != "Attack"_L1;
    m_attack.entries.append(std::exchange(entry, {}));
}

void MonsterXmlHandler::finishAttack()
{
    QStringList paragraphs;
    // What stands outside an entry belongs to the last one.
    m_attack.entries.append(std::exchange(m_attack.entry, {}));
    for (const Entry &entry : std::as_const(m_attack.entries)) {
        // The builder of these files fills in a damage even where nothing is attacked.
        const bool isMadeUp = entry.needsAttack && m_attack.line.isEmpty();
        const QString &text = isMadeUp ? entry.description : entry.text;
        if (!text.isEmpty())
            paragraphs << entryParagraph(entry.label, text, entry.tellsAction);
        int failedSaves = 0;
        addSequels(paragraphs, entry.sequels, failedSaves);
    }
    if (!m_attack.line.isEmpty())
        paragraphs.prepend(entryParagraph(m_attack.name, m_attack.line, true));
    if (isInnerAttack()) {
        m_attack = m_outerAttacks.takeLast();
        addSequel({Sequel::InnerAttack, {}, {}, {}, paragraphs, {}});
    } else {
        m_power.details << paragraphs;
        m_attack = Attack();
    }
}

QString MonsterXmlHandler::sequelParagraph(const Sequel &sequel, int &failedSaves)
{
    QString label = sequel.label;
    switch (sequel.kind) {
    case Sequel::FailedSave:
        label = ordinal(++failedSaves) + " Failed Saving Throw"_L1;
        break;
    case Sequel::Aftereffect:
        if (label.isEmpty())
            label = QStringLiteral("Aftereffect");
        break;
    default:
        if (label.isEmpty())
            label = QStringLiteral("Sustain");
        if (label == "Sustain"_L1)
            addTo(label, sequel.action, " "_L1);
    }
    QString lines = sequel.text;
    lines.replace(u'\n', "<br>"_L1);
    return QStringLiteral("<i>%1:</i> %2").arg(label, lines);
}

// In the order in which they happen, wherever the file has them: failed saves and further attacks,
// then what comes when the effect has ended, then what keeps it going.
void MonsterXmlHandler::addSequels(QStringList &paragraphs, QList<Sequel> sequels, int &failedSaves)
{
    const auto rank = [](const Sequel &sequel) {
        return qMax<int>(sequel.kind, Sequel::FailedSave);
    };
    std::ranges::stable_sort(sequels, {}, rank);
    for (const Sequel &sequel : std::as_const(sequels)) {
        if (!sequel.text.isEmpty())
            paragraphs << sequelParagraph(sequel, failedSaves);
        paragraphs << sequel.paragraphs;
        addSequels(paragraphs, sequel.sequels, failedSaves);
    }
}
