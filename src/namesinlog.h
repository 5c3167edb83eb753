// The names by which a log knows the heroes. Who was renamed since stands in it under an older
// name, which somebody else may have by now.
#pragma once

#include <QList>
#include <QPointer>
#include <QString>

#include "creature.h"

class ObjectStream;

// Used around a replay: before it the heroes go back to the names that they had when the log began,
// and the renames in the log then lead to those of their files one by one.
class NamesInLog {
public:
    // Gives the heroes their old names, by the renames that lie ahead in the stream. Its position
    // stays.
    void takeBack(ObjectStream &stream);
    // Called after each rename of the replay.
    void notePassed();
    // A hero whom the replay didn't bring to the last name in the log takes the name of the file.
    void finish();

private:
    struct Hero {
        QPointer<Creature> creature;
        QString nameOfFile;
        QString lastInLog;
    };
    // Gets its name only after the rename of that index, which frees it.
    struct Waiting {
        QPointer<Creature> creature;
        QString name;
        qsizetype freedBy;
    };

    QList<Hero> m_heroes;
    QList<Waiting> m_waiting;
    qsizetype m_passed = 0;
};
