// Heroes whose files were edited while the program didn't run.
#pragma once

#include <QList>
#include <QPointer>

#include "creature.h"

class QDateTime;

// The characters whose files were written after the log. They have the numbers of their files, no
// longer those of the log; the next command logs the difference.
class EditedFiles {
public:
    // After a replay of a log that was last written at that time.
    void find(const QDateTime &logWritten);
    // Called before and after each step through the history: events must run with the numbers of
    // the log.
    void putNumbersBack() const;
    void takeNumbers();
    QList<Creature *> characters() const;
    // The log knows of them by now.
    void forget() { m_characters.clear(); }

private:
    struct Edited {
        QPointer<Creature> character;
        CreatureVitality logged;
    };

    QList<Edited> m_characters;
};
