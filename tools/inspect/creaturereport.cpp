#include "creaturereport.h"

#include <QFileInfo>
#include <QJsonArray>

#include "creaturefile.h"
#include "creaturekeyform.h"
#include "creatureportrait.h"
#include "creaturetext.h"
#include "statblockhandler.h"
#include "text.h"

namespace {

struct Reading {
    CreatureForm form = CreatureForm::StatBlock;
    bool read = false;
    CreatureData data;
};

QString formName(CreatureForm form)
{
    switch (form) {
    case CreatureForm::Key:
        return QStringLiteral("key");
    case CreatureForm::StatBlock:
        return QStringLiteral("statblock");
    case CreatureForm::MonsterXml:
        return QStringLiteral("monster-xml");
    case CreatureForm::CharacterXml:
        return QStringLiteral("character-xml");
    }
    return QString();
}

// The folder that the file would be in a data folder of: pictures are looked for there.
QString dataFolderOf(const QString &path)
{
    return QFileInfo(QFileInfo(path).absolutePath()).path();
}

// A picture that the character's own folder has is found where the file says; nothing is copied.
Reading readImportFile(const QString &path, const QByteArray &content)
{
    Reading reading {CreatureForm::CharacterXml, false, {}};
    reading.data.isMonster = false;
    reading.read = StatBlockHandler::parse(toLF(content), reading.data, dataFolderOf(path),
                                           PortraitCopy::Forbidden);
    return reading;
}

// Outside a collection only the content can tell a character from a monster: a key form without a
// group is a character's.
Reading readCreature(const QString &path, const QByteArray &content)
{
    const QString dataFolder = dataFolderOf(path);
    if (path.endsWith(QStringLiteral(".dnd4e"), Qt::CaseInsensitive))
        return readImportFile(path, content);
    const QByteArray text = withoutByteOrderMark(toLF(content));
    if (!isXmlText(text)) {
        Reading character {CreatureForm::Key, true, {}};
        character.data.isMonster = false;
        Reading monster {CreatureForm::Key, true, {}};
        if (!readKeyForm(text, monster.data, dataFolder)
            && readKeyForm(text, character.data, dataFolder))
            return character;
    }
    Reading reading;
    reading.read = parseText(true, text, reading.data, dataFolder, &reading.form);
    return reading;
}

QJsonArray abilityReport(const Ability &ability)
{
    return {ability.score, ability.modifier};
}

QJsonObject powerReport(const Power &power)
{
    return {
        {QStringLiteral("icon"), power.icon},
        {QStringLiteral("section"), power.section},
        {QStringLiteral("usageKind"), power.usageKind},
        {QStringLiteral("name"), power.name},
        {QStringLiteral("keywords"), power.keywords},
        {QStringLiteral("flavour"), power.flavour},
        {QStringLiteral("details"), QJsonArray::fromStringList(power.details)},
    };
}

} // namespace

QJsonObject recordReport(const CreatureData &data)
{
    QJsonArray powers;
    for (const Power &power : data.powers)
        powers.append(powerReport(power));
    return {
        {QStringLiteral("portraitFile"), data.portraitFile},
        {QStringLiteral("importFile"), data.importFile},
        {QStringLiteral("linked"), data.linked},
        {QStringLiteral("missing"), data.missing},
        {QStringLiteral("name"), data.name},
        {QStringLiteral("isMonster"), data.isMonster},
        {QStringLiteral("disabled"), data.disabled},
        {QStringLiteral("charClass"), data.charClass},
        {QStringLiteral("group"), data.group},
        {QStringLiteral("headerText"), data.headerText},
        {QStringLiteral("type"), data.type},
        {QStringLiteral("race"), data.race},
        {QStringLiteral("role"), data.role},
        {QStringLiteral("level"), data.level},
        {QStringLiteral("xp"), data.xp},
        {QStringLiteral("maxHP"), data.maxHP},
        {QStringLiteral("maxHS"), data.maxHS},
        {QStringLiteral("hsValue"), data.hsValue},
        {QStringLiteral("initBonus"), data.initBonus},
        {QStringLiteral("speed"), data.speed},
        {QStringLiteral("initAP"), data.initAP},
        {QStringLiteral("senses"), data.senses},
        {QStringLiteral("perception"), data.perception},
        {QStringLiteral("insight"), data.insight},
        {QStringLiteral("armourClass"), data.armourClass},
        {QStringLiteral("fortitude"), data.fortitude},
        {QStringLiteral("reflex"), data.reflex},
        {QStringLiteral("will"), data.will},
        {QStringLiteral("resist"), data.resist},
        {QStringLiteral("immune"), data.immune},
        {QStringLiteral("detect"), data.detect},
        {QStringLiteral("regeneration"), data.regeneration},
        {QStringLiteral("vulnerable"), data.vulnerable},
        {QStringLiteral("savingThrows"), data.savingThrows},
        {QStringLiteral("unplacedText"), data.unplacedText},
        {QStringLiteral("alignment"), data.alignment},
        {QStringLiteral("languages"), data.languages},
        {QStringLiteral("skills"), data.skills},
        {QStringLiteral("equipment"), data.equipment},
        {QStringLiteral("description"), data.description},
        {QStringLiteral("trailerText"), data.trailerText},
        {QStringLiteral("strength"), abilityReport(data.strength)},
        {QStringLiteral("dexterity"), abilityReport(data.dexterity)},
        {QStringLiteral("wisdom"), abilityReport(data.wisdom)},
        {QStringLiteral("constitution"), abilityReport(data.constitution)},
        {QStringLiteral("intelligence"), abilityReport(data.intelligence)},
        {QStringLiteral("charisma"), abilityReport(data.charisma)},
        {QStringLiteral("powers"), powers},
        {QStringLiteral("currentPower"), data.currentPower},
    };
}

QJsonObject creatureReport(const QString &path, const QByteArray &content)
{
    const Reading reading = readCreature(path, content);
    CreatureData validated = reading.data;
    const bool valid = validate(validated, reading.data.isMonster, QFileInfo(path).fileName());
    return {
        {QStringLiteral("file"), path},
        {QStringLiteral("form"), formName(reading.form)},
        {QStringLiteral("read"), reading.read},
        {QStringLiteral("valid"), valid},
        {QStringLiteral("record"), recordReport(reading.data)},
    };
}
