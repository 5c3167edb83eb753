#include "fightreport.h"

#include <QFile>
#include <QJsonArray>

#include "characters.h"
#include "effect.h"
#include "encounter.h"
#include "event.h"
#include "history.h"
#include "monsters.h"
#include "objectstream.h"
#include "paths.h"

namespace {

QJsonArray names(const QList<Creature *> &creatures)
{
    QJsonArray result;
    for (const Creature *creature : creatures)
        result.append(creature->displayName());
    return result;
}

QJsonArray sortedNames(const QSet<Creature *> &creatures)
{
    QStringList sorted;
    for (const Creature *creature : creatures)
        sorted << creature->displayName();
    sorted.sort();
    return QJsonArray::fromStringList(sorted);
}

QJsonArray eventsReport()
{
    QJsonArray events;
    for (int i = 0; i < theHistory->eventCount(); ++i) {
        const Event &event = *theHistory->eventAt(i);
        events.append(QJsonObject {
            {QStringLiteral("type"), event.type()},
            {QStringLiteral("offset"), theHistory->eventOffset(i)},
            {QStringLiteral("size"), event.size()},
            {QStringLiteral("text"), event.text()},
            {QStringLiteral("visible"), event.isVisibleToPlayers()},
            {QStringLiteral("starts"), event.startsEncounter()},
        });
    }
    return events;
}

QJsonObject encounterReport(const Encounter &encounter)
{
    return {
        {QStringLiteral("name"), encounter.name()},
        {QStringLiteral("description"), encounter.description()},
        {QStringLiteral("level"), encounter.level()},
        {QStringLiteral("xp"), encounter.xp()},
        {QStringLiteral("round"), encounter.round()},
        {QStringLiteral("currentIndex"), encounter.currentIndex()},
        {QStringLiteral("order"), names(encounter.creatures().list())},
        {QStringLiteral("fallen"), sortedNames(encounter.fallen())},
    };
}

QJsonObject playersReport(const VisibleCreatures &view)
{
    return {
        {QStringLiteral("rows"), names(view.rows)},
        {QStringLiteral("kills"), names(view.kills.values())},
    };
}

QJsonArray effectsReport(const QList<Effect *> &effects)
{
    QJsonArray result;
    for (const Effect *effect : effects) {
        const Creature *origin = effect->origin();
        result.append(QJsonObject {
            {QStringLiteral("type"), effect->type()},
            {QStringLiteral("endCode"), effect->endCode()},
            {QStringLiteral("text"), effect->text()},
            {QStringLiteral("amount"), effect->amount()},
            {QStringLiteral("attributes"), qint64(effect->attributes().flags())},
            {QStringLiteral("endTurn"), effect->endTurn()},
            {QStringLiteral("origin"), origin ? origin->displayName() : QString()},
            {QStringLiteral("full"), effect->fullText()},
        });
    }
    return result;
}

QJsonArray powersReport(const QList<Power> &powers)
{
    QJsonArray result;
    for (const Power &power : powers) {
        result.append(QJsonObject {
            {QStringLiteral("name"), power.name},
            {QStringLiteral("usageKind"), power.usageKind},
            {QStringLiteral("usageState"), power.usageState},
        });
    }
    return result;
}

QJsonObject vitalityReport(const CreatureVitality &vitality)
{
    return {
        {QStringLiteral("initBonus"), vitality.initBonus},
        {QStringLiteral("maxHP"), vitality.maxHP},
        {QStringLiteral("currHP"), vitality.currHP},
        {QStringLiteral("maxHS"), vitality.maxHS},
        {QStringLiteral("currHS"), vitality.currHS},
        {QStringLiteral("hsValue"), vitality.hsValue},
        {QStringLiteral("initAP"), vitality.initAP},
        {QStringLiteral("currAP"), vitality.currAP},
    };
}

QJsonObject creatureReport(Creature &creature)
{
    QJsonObject report = vitalityReport(creature.liveVitality());
    const QJsonObject more {
        {QStringLiteral("isMonster"), creature.isMonster()},
        {QStringLiteral("missing"), creature.isMissing()},
        {QStringLiteral("disabled"), creature.isDisabled()},
        {QStringLiteral("hidden"), creature.isHidden()},
        {QStringLiteral("delayed"), creature.isDelayed()},
        {QStringLiteral("readied"), creature.isReadied()},
        {QStringLiteral("alias"), creature.alias()},
        {QStringLiteral("aliasMode"), creature.aliasMode()},
        {QStringLiteral("turnCount"), creature.turnCount()},
        {QStringLiteral("tempHP"), creature.tempHP()},
        {QStringLiteral("initRoll"), creature.initRoll()},
        {QStringLiteral("initRandom"), creature.initRandom()},
        {QStringLiteral("apUsedInEncounter"), creature.apUsedInEncounter()},
        {QStringLiteral("secondWindUsed"), creature.secondWindUsed()},
        {QStringLiteral("failedDeathSaves"), creature.failedDeathSaves()},
        {QStringLiteral("stable"), creature.isStable()},
        {QStringLiteral("damageTaken"), creature.damageTaken()},
        {QStringLiteral("healCount"), creature.healCount()},
        {QStringLiteral("lastHitBy"), creature.lastHitBy()},
        {QStringLiteral("lastHitOrder"), creature.lastHitOrder()},
        {QStringLiteral("base"), vitalityReport(creature.shadowVitality())},
        {QStringLiteral("status"), creature.statusText()},
        {QStringLiteral("defences"), creature.defencesText(true)},
        {QStringLiteral("effects"), effectsReport(creature.effects())},
        {QStringLiteral("powers"), powersReport(creature.powers())},
    };
    for (auto it = more.begin(); it != more.end(); ++it)
        report.insert(it.key(), it.value());
    return report;
}

QJsonObject creaturesReport()
{
    // Those in the encounter come last: where a damaged log gave two creatures one name, the one
    // that fights is shown.
    const QList<Creature *> creatures =
        theCharacters->all() + theMonsters->clones() + theEncounter->creatures().list();
    QJsonObject report;
    for (Creature *creature : creatures)
        report.insert(creature->displayName(), creatureReport(*creature));
    return report;
}

// Null where there is no log, or one without a heading that makes sense.
QJsonValue headerReport(const QString &path)
{
    auto *file = new QFile(path);
    if (!file->open(QIODevice::ReadOnly)) {
        delete file;
        return QJsonValue::Null;
    }
    ObjectStream stream(file);
    stream.readHeader(true);
    if (stream.version().isEmpty())
        return QJsonValue::Null;
    return QJsonObject {
        {QStringLiteral("major"), stream.majorVersion()},
        {QStringLiteral("minor"), stream.minorVersion()},
        {QStringLiteral("version"), stream.version()},
        {QStringLiteral("created"), stream.created()},
    };
}

} // namespace

QJsonObject fightReport(bool known)
{
    return {
        {QStringLiteral("header"), headerReport(historyPath())},
        {QStringLiteral("known"), known},
        {QStringLiteral("position"), theHistory->position()},
        {QStringLiteral("events"), eventsReport()},
        {QStringLiteral("encounter"), encounterReport(*theEncounter)},
        {QStringLiteral("players"), playersReport(theEncounter->playersView())},
        {QStringLiteral("creatures"), creaturesReport()},
    };
}
