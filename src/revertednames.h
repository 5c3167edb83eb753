// The names of creatures whose files' texts came back: each gets one of its own again, but only
// once all have theirs back, so that two that had swapped their names swap them back.
#pragma once

#include <QList>
#include <QString>

#include "librarylist.h"

class Creature;

struct Renamed {
    QString oldName;
    QString newName;
};

class RevertedNames {
public:
    // One that has the name of its text by now, and had `oldName`.
    void add(Creature *creature, const QString &oldName);
    // A name that several state goes to the one that a load reads first, the others get a number.
    // Sorts the entries. Returns those whose names are others now, to be replaced all at once.
    QList<Renamed> settle(LibraryList<Creature> &entries,
                          void (Creature::*setName)(const QString &));

private:
    struct Reverted {
        Creature *creature;
        QString oldName;
    };

    QList<Reverted> m_reverted;
};
