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
    // The event passes over a creature outside the encounter.
    creature->setName(rename.name);
    creature->setNameBefore(rename.name);
}

// Until its rename is logged, each creature goes back to its old name, which the log knows. A
// rename is logged as soon as its new name is free; where heroes swapped their names, one first
// takes a name that nobody has.
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

// Edited heroes outside the encounter count too: once the log is newer than their files, nothing
// would tell that these were edited.
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
    // Names first: a record calls its creature by the present name, which the log must have told
    // before.
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
