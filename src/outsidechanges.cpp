#include "outsidechanges.h"

#include <algorithm>

#include "appendevent.h"
#include "characters.h"
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

struct NewName {
    Creature *creature;
    QString before;
    QString name;
};

bool isSameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// One rename in the log, which gives the creature the name.
void logRename(const NewName &rename, ObjectStream *stream)
{
    Creature *creature = rename.creature;
    appendTo<RenameCreatureEvent>(stream, nameInLog(creature, creature->name()),
                                  nameInLog(creature, rename.name));
    // Of one that isn't in the fight the event knows nothing.
    creature->setName(rename.name);
    creature->setNameBefore(rename.name);
}

// For the log everybody has the old name until the rename is logged. Each goes once its new name is
// free; heroes who change places go by a name that nobody has.
void logRenames(const QList<Creature *> &creatures, ObjectStream *stream)
{
    QList<NewName> renames;
    for (Creature *creature : creatures) {
        if (hasNewName(creature))
            renames.append({creature, creature->nameBefore(), creature->name()});
    }
    for (const NewName &rename : std::as_const(renames))
        rename.creature->setName(rename.before);
    while (!renames.isEmpty()) {
        const auto isFree = [&renames](const NewName &rename) {
            return std::none_of(renames.begin(), renames.end(), [&](const NewName &other) {
                return other.creature != rename.creature
                    && isSameName(nameInLog(other.creature, other.creature->name()),
                                  nameInLog(rename.creature, rename.name));
            });
        };
        const auto next = std::find_if(renames.begin(), renames.end(), isFree);
        if (next == renames.end()) {
            const NewName &first = renames.first();
            logRename({first.creature, first.before,
                       theCharacters->uniqueName(first.name, first.creature)},
                      stream);
            continue;
        }
        const NewName rename = *next;
        renames.erase(next);
        logRename(rename, stream);
    }
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

// Steps back through the history leave heroes with names that their files don't have any more.
void takeNamesOfFiles(const QList<Creature *> &creatures)
{
    for (Creature *creature : creatures) {
        const QString name = creature->nameInFile();
        if (!name.isEmpty() && name != creature->name()
            && theCharacters->nameState(name, creature) == NameState::Free)
            creature->setName(name);
    }
}

} // namespace

void checkVitality(ObjectStream *stream)
{
    if (!stream || !theEncounter->isVitalityStale())
        return;
    theEncounter->markVitalityStale(false);
    // A copy: the events may change the list.
    const QList<Creature *> creatures = namedInLog();
    takeNamesOfFiles(creatures);
    // Names first, since a record names its creature as it is called by now, and whoever reads the
    // log must know of that name. Without a name before, no log names the creature.
    logRenames(creatures, stream);
    for (Creature *creature : creatures) {
        if (hasNewNumbers(creature))
            appendTo<SetVitalityEvent>(stream, creature->liveVitality());
    }
}

void logBeforeSave()
{
    if (!theEncounter->isVitalityStale())
        return;
    const QList<Creature *> creatures = namedInLog();
    takeNamesOfFiles(creatures);
    if (std::any_of(creatures.begin(), creatures.end(), [](Creature *creature) {
            return hasNewName(creature) || hasNewNumbers(creature);
        }))
        checkVitality(theHistory->getStream(true));
}
