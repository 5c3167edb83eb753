#include "encounterreport.h"

#include <QJsonObject>

#include "encounters.h"

namespace {

QJsonObject monsterReport(const EncounterMonster &monster)
{
    return {
        {QStringLiteral("group"), monster.group},
        {QStringLiteral("id"), monster.id},
        {QStringLiteral("alias"), monster.alias},
        {QStringLiteral("hidden"), monster.hidden},
    };
}

QJsonObject encounterReport(const PreparedEncounter &encounter)
{
    QJsonArray monsters;
    for (const EncounterMonster &monster : encounter.monsters())
        monsters.append(monsterReport(monster));
    return {
        {QStringLiteral("fileName"), encounter.fileName()},
        {QStringLiteral("name"), encounter.name()},
        {QStringLiteral("adventure"), encounter.adventure()},
        {QStringLiteral("description"), encounter.description()},
        {QStringLiteral("level"), encounter.level()},
        {QStringLiteral("xp"), encounter.xp()},
        {QStringLiteral("monsters"), monsters},
    };
}

} // namespace

QJsonArray encounterReport()
{
    QJsonArray report;
    for (int i = 0; i < theEncounters->count(); ++i)
        report.append(encounterReport(*theEncounters->at(i)));
    return report;
}
