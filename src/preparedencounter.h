// A prepared encounter: a named list of monsters, kept as one text file.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "encounterentry.h"

class CreatureList;
class Encounters;
struct ChangeCounters;

struct EncounterMonster {
    QString group; // name of the template
    QString id; // tells it from others of its group
    QString alias;
    bool hidden = false;
};

// A value with the managers' flags, like those of a Creature.
class PreparedEncounter {
public:
    // False when the file can't be read or has no name.
    bool read(const QString &fileName, const QString &dataFolder);
    // A new file gets a name of its own. False when the file isn't written in full.
    bool write();
    // Deletes the file.
    bool remove();
    // The bytes of the file; `withLevel` false leaves out what is worked out.
    QByteArray image(bool withLevel) const;
    void recompute() const;
    // Null when there is none.
    const EncounterMonster *find(const QString &group, const QString &id) const;
    enum IdScheme { Numbers = 0, Letters = 1, LetterAndNumber = 2 };
    // The next free ID for a monster of `group`; `scheme` may be changed by the choice.
    QString defaultId(const QString &group, const QString &prefix, int &scheme,
                      bool perEncounter) const;

    const QString &fileName() const { return m_fileName; }
    const QString &name() const { return m_name; }
    const QString &adventure() const { return m_adventure; }
    const QString &description() const { return m_description; }
    // Worked out from the templates' XP and the party size when they are stale.
    int level() const;
    int xp() const;
    const QList<EncounterMonster> &monsters() const { return m_monsters; }
    const QList<int> &groupStarts() const { return m_groupStarts; }
    EncounterEntry entry() const;
    // The clones that stand for the monsters, each with its alias and hidden mark untouched: the
    // caller's events set those.
    CreatureList creatures() const;

    void setName(const QString &name);
    void setAdventure(const QString &adventure);
    void setDescription(const QString &description);
    void setMonsters(const QList<EncounterMonster> &monsters);
    // The templates' XP may have changed.
    void setLevelStale() const { m_levelStale = true; }

    bool isNew() const { return m_isNew; }
    bool isModified() const { return m_isModified; }
    bool isDeleted() const { return m_isDeleted; }
    void setNew(bool value);
    void setModified(bool value);
    void setDeleted(bool value);
    void setCounters(ChangeCounters *counters) { m_counters = counters; }
    void refreshChanged();

private:
    void rebuildGroupStarts();
    void setFlag(bool &flag, bool value, int ChangeCounters::*counter);

    ChangeCounters *m_counters = nullptr;
    bool m_isNew = false;
    bool m_isModified = false;
    bool m_isDeleted = false;
    QString m_fileName;
    QString m_name;
    QString m_adventure;
    QString m_description;
    QByteArray m_savedImage;
    mutable bool m_levelStale = true;
    mutable int m_partySize = 0;
    mutable int m_level = 1;
    mutable int m_xp = 0;
    QList<EncounterMonster> m_monsters;
    QList<int> m_groupStarts;
    Encounters *m_owner = nullptr;

    friend class Encounters;
};
