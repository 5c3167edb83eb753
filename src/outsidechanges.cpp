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
    // The event doesn't rename a creature outside the encounter.
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
QList<Creature *> numberedInLog()
{
    QList<Creature *> creatures = theEncounter->creatures().list();
    const QList<Creature *> edited = theHistory->editedCharacters();
    for (Creature *character : edited) {
        if (!theEncounter->contains(character))
            creatures << character;
    }
    return creatures;
}

// Steps back through the history give heroes older names than their texts have. What the text has
// counts with the next command.
void takeNamesOfTexts()
{
    QList<NewName> heroes;
    for (int i = 0; i < theCharacters->count(); ++i) {
        Creature *hero = theCharacters->at(i);
        const QString stated = hero->nameInText();
        heroes.append({hero, hero->name(), stated.isEmpty() ? hero->name() : stated});
    }
    for (const NewName &each : std::as_const(heroes)) {
        const auto isSame = [&each](const NewName &other) {
            return other.creature != each.creature && isSameName(other.name, each.name);
        };
        // Two files may state the same name: one hero has it, the other has a number behind it.
        if (each.name != each.before && std::none_of(heroes.begin(), heroes.end(), isSame))
            each.creature->setName(each.name);
    }
}

// The creatures of the encounter and all heroes: the log may name a hero who has left, whose name
// another can take over. A log without events names nobody.
QList<Creature *> namedInLog()
{
    takeNamesOfTexts();
    QList<Creature *> creatures = theEncounter->creatures().list();
    for (int i = 0; i < theCharacters->count(); ++i) {
        Creature *hero = theCharacters->at(i);
        if (theEncounter->contains(hero))
            continue;
        if (theHistory->eventCount() == 0)
            hero->setNameBefore(hero->name());
        creatures << hero;
    }
    return creatures;
}

} // namespace

void checkVitality(ObjectStream *stream)
{
    if (!stream || !theEncounter->isVitalityStale())
        return;
    theEncounter->markVitalityStale(false);
    // A copy: the events may change the list. Names first: a record calls its creature by the
    // present name, which the log must have told before.
    const QList<Creature *> numbered = numberedInLog();
    logRenames(namedInLog(), stream);
    for (Creature *creature : numbered) {
        if (hasNewNumbers(creature))
            appendTo<SetVitalityEvent>(stream, creature->liveVitality());
    }
}

void logOutsideChanges()
{
    if (!theEncounter->isVitalityStale())
        return;
    const QList<Creature *> named = namedInLog();
    const QList<Creature *> numbered = numberedInLog();
    if (std::any_of(named.begin(), named.end(), hasNewName)
        || std::any_of(numbered.begin(), numbered.end(), hasNewNumbers))
        checkVitality(theHistory->getStream(true));
}
