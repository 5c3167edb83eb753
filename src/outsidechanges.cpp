#include "outsidechanges.h"

#include <algorithm>

#include "appendevent.h"
#include "creature.h"
#include "encounter.h"
#include "rosterevents.h"
#include "vitalityevents.h"

namespace {

// How the log names the creature before and after a change of its name.
QString nameInLog(const Creature *creature, const QString &name)
{
    if (!creature->isMonster())
        return name;
    return Encounter::tr("%1 (%2)").arg(creature->group(), name);
}

bool hasNewName(const Creature *creature)
{
    const QString &before = creature->nameBefore();
    return !before.isEmpty() && before != creature->name();
}

bool hasNewNumbers(Creature *creature)
{
    return !(creature->liveVitality() == creature->shadowVitality());
}

void logOutsideChanges(Creature *creature, ObjectStream *stream)
{
    // First, since a record names its creature as it is called by now, and whoever reads the log
    // must know of that name. Without a name before, no log names the creature.
    if (hasNewName(creature)) {
        appendTo<RenameCreatureEvent>(stream, nameInLog(creature, creature->nameBefore()),
                                      nameInLog(creature, creature->name()));
    }
    if (hasNewNumbers(creature))
        appendTo<SetVitalityEvent>(stream, creature->liveVitality());
}

// Whoever isn't in the encounter now would be forgotten, as the log is newer than the file from now
// on.
QList<Creature *> namedInLog()
{
    QList<Creature *> creatures = theEncounter->creatures().list();
    const QList<Creature *> edited = theHistory->editedCharacters();
    for (Creature *character : edited) {
        if (!theEncounter->contains(character))
            creatures << character;
    }
    return creatures;
}

} // namespace

void checkVitality(ObjectStream *stream)
{
    if (!stream || !theEncounter->isVitalityStale())
        return;
    theEncounter->markVitalityStale(false);
    // A copy: the events may change the list.
    const QList<Creature *> creatures = namedInLog();
    for (Creature *creature : creatures)
        logOutsideChanges(creature, stream);
}

void logBeforeSave()
{
    if (!theEncounter->isVitalityStale())
        return;
    const QList<Creature *> creatures = namedInLog();
    if (std::any_of(creatures.begin(), creatures.end(), [](Creature *creature) {
            return hasNewName(creature) || hasNewNumbers(creature);
        }))
        checkVitality(theHistory->getStream(true));
}
