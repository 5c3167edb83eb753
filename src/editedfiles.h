// Heroes whose files were edited while the program didn't run.
#pragma once

#include <QList>
#include <QPointer>

#include "creature.h"

class QDateTime;

// The characters whose files were written after the log. Their numbers are those that their texts
// state, in place of those that the log knew; the next command logs the difference.
class EditedFiles {
public:
    // After a replay of a log that was last written at that time.
    void find(const QDateTime &logWritten);
    // Around each step through the history: what an event does hangs on the numbers of the log.
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
