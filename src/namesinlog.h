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
    // Called after each rename of the replay. The event itself renames only a hero in the
    // encounter; this renames the others.
    void notePassed();
    // A hero whom the replay didn't bring to the last name in the log takes the name of the file.
    // With another name than in the file, the next command takes that one.
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

    struct Rename {
        QString oldName;
        QString newName;
        QPointer<Creature> hero; // null for one whose file doesn't know of it
    };
    static QList<Rename> renamesAhead(ObjectStream &stream);
    QString lastName(QString name, qsizetype from) const;

    QList<Rename> m_renames;
    QList<Hero> m_heroes;
    QList<Waiting> m_waiting;
    qsizetype m_passed = 0;
};
