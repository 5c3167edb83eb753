// How hard a prepared encounter is for the party.
#pragma once

#include <QList>

// Up to 1 level below the party's, up to 1 above, up to 4 above, and beyond.
enum class Difficulty { Easy, Standard, Hard, Deadly };
Difficulty difficultyOf(int encounterLevel, int partyLevel);

// A monster more than 5 levels above the party is hardly ever hit, one more than 3 below hardly
// ever hits.
enum class MonsterFit { Fits, TooHigh, TooLow };
MonsterFit monsterFit(int monsterLevel, int partyLevel);

// Rounded down. Less than one hero counts as one.
int xpForEachHero(int xp, int heroes);

// The mean, halves rounded up; levels below 1 don't count. 0 without any.
int partyLevelOf(const QList<int> &levels);
// Of the heroes in the library.
int libraryPartyLevel();
