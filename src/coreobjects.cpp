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

constexpr QLatin1String NameBracket(" (");

// Of "Group (ID)" the ID.
QString idBehind(const QString &displayName, qsizetype bracket)
{
    QString id = displayName.mid(bracket + NameBracket.size());
    if (id.endsWith(u')'))
        id.chop(1);
    return id;
}

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
    if (displayName.isEmpty() || !theCharacters || !theMonsters)
        return nullptr;
    // Any name may hold brackets of its own: a hero's as a whole, or that of a group in front of
    // the last one.
    if (Creature *character = theCharacters->ensureCharacter(displayName, false))
        return character;
    qsizetype bracket = displayName.lastIndexOf(NameBracket);
    const qsizetype first = displayName.indexOf(NameBracket);
    if (bracket < 0)
        return theCharacters->ensureCharacter(displayName, create);
    while (bracket > first && !theMonsters->findGroup(displayName.left(bracket)))
        bracket = displayName.lastIndexOf(NameBracket, bracket - 1);
    QString group = displayName.left(bracket);
    return theMonsters->ensureTemplate(group, idBehind(displayName, bracket), create);
}
