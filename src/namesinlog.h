// The names by which a log knows the heroes. Who was renamed since stands in it under an older
// name, which somebody else may have by now.
#pragma once

#include <QList>
#include <QPointer>
#include <QString>

#include "creature.h"

class ObjectStream;

// Around a replay: the heroes go back to the names that they had when the log began, and the
// renames in the log give them those of their files one by one.
class NamesInLog {
public:
    // Of the renames ahead of the stream's position, which stays.
    void takeBack(ObjectStream &stream);
    // Behind each rename of the replay.
    void notePassed();
    // Whom the replay didn't bring to the last name that the log has for them is called as the file
    // says.
    void finish();

private:
    struct Hero {
        QPointer<Creature> creature;
        QString nameOfFile;
        QString lastInLog;
    };
    // Has its name only once the rename of that index has freed it.
    struct Waiting {
        QPointer<Creature> creature;
        QString name;
        qsizetype freedBy;
    };

    QList<Hero> m_heroes;
    QList<Waiting> m_waiting;
    qsizetype m_passed = 0;
};
