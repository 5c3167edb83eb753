#include "coreobjects.h"

#include "characters.h"
#include "encounter.h"
#include "encounters.h"
#include "history.h"
#include "monsters.h"
#include "outsidechanges.h"
#include "switchboard.h"
#include "windowinterface.h"

namespace {

template <typename T>
void destroy(T *&object)
{
    delete object;
    object = nullptr;
}

// What one of them has to know of another that stands above it.
void connectObjects()
{
    SwitchBoard *hub = switchBoard();
    QObject::connect(hub, &SwitchBoard::doRecordChanged, theEncounter,
                     [] { theEncounter->markVitalityStale(); });
    QObject::connect(hub, &SwitchBoard::doWaitingChanged, theEncounter,
                     [] { windows().refreshJumpInAction(); });
    QObject::connect(hub, &SwitchBoard::doNameShownChanged, theEncounter,
                     [] { windows().refreshInitiativeList(); });
    QObject::connect(theMonsters, &Monsters::doTemplatesRenamed, theEncounters,
                     &Encounters::templatesRenamed);
    QObject::connect(theMonsters, &Monsters::doXpChanged, theEncounters,
                     &Encounters::markLevelsStale);
    QObject::connect(hub, &SwitchBoard::doTellHistory, theEncounter, &logOutsideChanges);
}

} // namespace

CoreObjects::CoreObjects(std::function<void()> beforeEncounters)
    : m_beforeEncounters(std::move(beforeEncounters))
{
    theEncounter = new Encounter;
    theHistory = new History;
    theCharacters = new Characters;
    theMonsters = new Monsters;
    theEncounters = new Encounters;
    connectObjects();
}

CoreObjects::~CoreObjects()
{
    theEncounter->reset();
    destroy(theHistory);
    destroy(theEncounter);
    destroy(theCharacters);
    destroy(theMonsters);
    if (m_beforeEncounters)
        m_beforeEncounters();
    destroy(theEncounters);
}
