// A fight on a small library of its own, without windows.
#pragma once

#include <QList>
#include <QString>
#include <memory>

#include "coreobjects.h"
#include "scriptedwindows.h"
#include "testdata.h"

class Creature;
class Event;

// The characters "Aria" (30 hit points), "Borin" and "Cleo" (25 each) and the templates "Rat", with
// the powers "Bite" (back on 5 or 6) and "Squeal" (once), and "Ogre".
class TestFight {
public:
    TestFight();
    ~TestFight();
    TestFight(const TestFight &) = delete;
    TestFight &operator=(const TestFight &) = delete;

    // New objects on the same folder, as after a start of the program, and the log replayed.
    void restart();
    // Takes everything back to the state before the log, in the same objects.
    void forget();

    const TestDataFolder &folder() const { return m_folder; }
    ScriptedWindows &windows() { return m_windows; }
    // The creature of a display name; a monster's clone is made if need be.
    static Creature *creature(const QString &displayName);
    static QList<Creature *> creatures(const QStringList &displayNames);
    // Puts them into the encounter without an event.
    static void setRoster(const QStringList &displayNames);
    // Everything about the encounter and these creatures that the history keeps, as text that
    // doesn't depend on addresses. Turn marks and the numbers of hits are left out on demand.
    enum Detail { TurnMarks = 1, HitNumbers = 2 };
    Q_DECLARE_FLAGS(Details, Detail)
    static QString stateText(const QList<Creature *> &creatures, Details details);

private:
    void makeObjects();

    TestDataFolder m_folder;
    ScriptedWindows m_windows;
    std::unique_ptr<CoreObjects> m_core;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TestFight::Details)
