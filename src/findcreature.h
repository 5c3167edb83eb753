// A creature by its name, in a fight or in the library.
#pragma once

class Creature;
class QString;

// The creature that events and files mean by a display name: a character with that whole name, or
// else the monster of "Group (Name)". The last bracket that stands behind the group of a template
// begins the name; without such a template the first " (" does. Empty gives null. With `create`
// false a name that nobody has gives null; with `create` true a stand-in with isMissing() set.
Creature *findCreature(const QString &displayName, bool create);
