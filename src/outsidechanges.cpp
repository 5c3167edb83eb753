#include "outsidechanges.h"

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

void logOutsideChanges(Creature *creature, ObjectStream *stream)
{
    // First, since a record names its creature as it is called by now, and whoever reads the log
    // must know of that name. Without a name before, no log names the creature.
    const QString before = creature->nameBefore();
    if (!before.isEmpty() && before != creature->name()) {
        appendTo<RenameCreatureEvent>(stream, nameInLog(creature, before),
                                      nameInLog(creature, creature->name()));
    }
    const CreatureVitality vitality = creature->liveVitality();
    if (!(vitality == creature->shadowVitality()))
        appendTo<SetVitalityEvent>(stream, vitality);
}

} // namespace

void checkVitality(ObjectStream *stream)
{
    if (!stream || !theEncounter->isVitalityStale())
        return;
    theEncounter->markVitalityStale(false);
    // A copy: the events may change the list. Whoever isn't here now would be forgotten, as the log
    // is newer than the file from now on.
    QList<Creature *> creatures = theEncounter->creatures().list();
    const QList<Creature *> edited = theHistory->editedCharacters();
    for (Creature *character : edited) {
        if (!theEncounter->contains(character))
            creatures << character;
    }
    for (Creature *creature : std::as_const(creatures))
        logOutsideChanges(creature, stream);
}
