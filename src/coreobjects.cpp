#include "coreobjects.h"

#include "characters.h"
#include "encounter.h"
#include "encounters.h"
#include "history.h"
#include "monsters.h"

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
