// A prepared encounter: a named list of monsters, kept as one text file.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "creaturelist.h"
#include "editflags.h"
#include "encounterentry.h"
#include "revertednames.h"

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
    // Replaces the content by that of a file's bytes; a bad line ends the reading. False without a
    // name.
    bool parse(const QByteArray &bytes);
    // A new file gets a name of its own. False when the file isn't written in full.
    bool write();
    // Deletes the file. True too when there is none.
    bool remove();
    // The bytes of the file; `withLevel` false leaves out what is worked out.
    QByteArray image(bool withLevel) const;
    void recompute() const;
    // Null when there is none. The group's letters may be of either case.
    const EncounterMonster *find(const QString &group, const QString &id) const;
    enum IdScheme { Numbers = 0, Letters = 1, LetterAndNumber = 2 };
    // The next free ID for a monster of `group`; `scheme` may be changed by the choice. With
    // `perEncounter` no monster of the encounter may have it, otherwise none of the group.
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
    // Index of the first monster of each run of one group.
    const QList<int> &groupStarts() const { return m_groupStarts; }
    EncounterEntry entry() const;
    // The clones that stand for the monsters, each with its alias and hidden mark untouched: the
    // caller's events set those. Two entries that name the same clone give it once.
    CreatureList creatures() const;

    void setName(const QString &name);
    // Without blanks at either end, which a file doesn't keep.
    void setAdventure(const QString &adventure) { m_adventure = adventure.trimmed(); }
    void setDescription(const QString &description) { m_description = description.trimmed(); }
    void setMonsters(const QList<EncounterMonster> &monsters);
    // Replaces all at once. False when no entry has one of the old groups.
    bool renameGroups(const QList<Renamed> &renamed);
    // Changes of one monster. An index out of range changes nothing. Each keeps groupStarts() and
    // isModified() true to the content, as refreshChanged() does.
    // Behind the last of its group, whose spelling of the group it takes, or at the end. Returns
    // its index.
    int insertMonster(const EncounterMonster &monster);
    void removeMonster(int index);
    // The same monster with another ID, trimmed. False, and nothing changed, for one that another
    // monster of the group has, whatever its case, or that the file can't hold: empty, too long,
    // unprintable, or with a "," or "=".
    // `perEncounter`: no monster of the whole encounter may have it.
    bool setMonsterId(int index, const QString &id, bool perEncounter = false);
    // Trimmed, as the file gives it back.
    void setMonsterAlias(int index, const QString &alias);
    void setMonsterHidden(int index, bool hidden);
    // Index in groupStarts() of the run that the monster stands in; -1 out of range.
    int groupOf(int monsterIndex) const;
    // The templates' XP may have changed.
    void setLevelStale() const { m_levelStale = true; }

    bool isNew() const { return m_flags.isNew(); }
    bool isModified() const { return m_flags.isModified(); }
    bool isDeleted() const { return m_flags.isDeleted(); }
    void setNew(bool value) { m_flags.setNew(value); }
    void setModified(bool value) { m_flags.setModified(value); }
    void setDeleted(bool value) { m_flags.setDeleted(value); }
    void setChangeCounters(ChangeCounters *counters) { m_flags.setCounters(counters); }
    // Compares the content with what the file holds, unless the encounter is new.
    void refreshChanged();

private:
    struct Reading;
    bool readLine(const QByteArray &line, Reading &reading);
    void readMonsterLine(const QString &key, const QString &value, Reading &reading);
    QByteArray groupImage(qsizetype start, qsizetype end) const;
    void recomputeIfStale() const;
    void rebuildGroupStarts();
    bool isTaken(int index, const QString &id, bool perEncounter) const;
    bool hasMonster(int index) const { return index >= 0 && index < m_monsters.size(); }

    EditFlags m_flags;
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
};
