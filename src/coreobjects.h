// The objects of the running program that the core works with, one of each.
#pragma once

class QString;

class Characters;
class Creature;
class Encounter;
class Encounters;
class History;
class Monsters;

// Null before the main window (or a test's fixture) has made them and after shut-down.
extern Encounter *theEncounter;
extern History *theHistory;
extern Characters *theCharacters;
extern Monsters *theMonsters;
extern Encounters *theEncounters;

// Makes and owns all five in the order in which the program needs them, and deletes them in the
// order of shut-down. The main window holds one; tests and the inspector hold their own.
class CoreObjects {
public:
    CoreObjects();
    ~CoreObjects();
    CoreObjects(const CoreObjects &) = delete;
    CoreObjects &operator=(const CoreObjects &) = delete;
};

// The creature of a display name as events and files write it: a character of the whole name, else
// the monster of "Group (Name)", the name being what the last brackets hold that stand behind the
// group of a template, or all behind the first " (". Empty gives null. With `create` false a name
// that nobody has gives null; with `create` true a stand-in with isMissing() set.
Creature *findCreature(const QString &displayName, bool create);
