#include "coreobjects.h"

#include "characters.h"
#include "encounter.h"
#include "encounters.h"
#include "history.h"
#include "monsters.h"

Encounter *theEncounter = nullptr;
History *theHistory = nullptr;
Characters *theCharacters = nullptr;
Monsters *theMonsters = nullptr;
Encounters *theEncounters = nullptr;

namespace {

template <typename T>
void destroy(T *&object)
{
    delete object;
    object = nullptr;
}

} // namespace

CoreObjects::CoreObjects()
{
    theEncounter = new Encounter;
    theHistory = new History;
    theCharacters = new Characters;
    theMonsters = new Monsters;
    theEncounters = new Encounters;
}

CoreObjects::~CoreObjects()
{
    theEncounter->reset();
    destroy(theHistory);
    destroy(theEncounter);
    destroy(theCharacters);
    destroy(theMonsters);
    destroy(theEncounters);
}

Creature *findCreature(const QString &displayName, bool create)
{
    const qsizetype bracket = displayName.indexOf(QStringLiteral(" ("));
    if (bracket < 0)
        return displayName.isEmpty() || !theCharacters
            ? nullptr
            : theCharacters->ensureCharacter(displayName, create);
    QString group = displayName.left(bracket);
    QString id = displayName.mid(bracket + 2);
    if (id.endsWith(u')'))
        id.chop(1);
    return theMonsters ? theMonsters->ensureTemplate(group, id, create) : nullptr;
}
