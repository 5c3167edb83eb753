// A creature by its name, in a fight or in the library.
#pragma once

class Creature;
class QString;

// The creature of a display name as events and files write it: a character of the whole name, else
// the monster of "Group (Name)", the name being what the last brackets hold that stand behind the
// group of a template, or all behind the first " (". Empty gives null. With `create` false a name
// that nobody has gives null; with `create` true a stand-in with isMissing() set.
Creature *findCreature(const QString &displayName, bool create);
