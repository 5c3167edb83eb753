#include "encounterdifficulty.h"

#include <algorithm>

#include "characters.h"

Difficulty difficultyOf(int encounterLevel, int partyLevel)
{
    const int above = encounterLevel - partyLevel;
    if (above <= -1)
        return Difficulty::Easy;
    if (above <= 1)
        return Difficulty::Standard;
    return above <= 4 ? Difficulty::Hard : Difficulty::Deadly;
}

MonsterFit monsterFit(int monsterLevel, int partyLevel)
{
    if (monsterLevel > partyLevel + 5)
        return MonsterFit::TooHigh;
    return monsterLevel < partyLevel - 3 ? MonsterFit::TooLow : MonsterFit::Fits;
}

int xpForEachHero(int xp, int heroes)
{
    return xp / std::max(1, heroes);
}

int partyLevelOf(const QList<int> &levels)
{
    qint64 sum = 0;
    qint64 count = 0;
    for (const int level : levels) {
        if (level < 1)
            continue;
        sum += level;
        ++count;
    }
    return count == 0 ? 0 : int((2 * sum + count) / (2 * count));
}

int libraryPartyLevel()
{
    QList<int> levels;
    for (int i = 0; theCharacters && i < theCharacters->count(); ++i) {
        const Creature *hero = theCharacters->at(i);
        if (!hero->isDeleted() && !hero->isInvalid())
            levels << hero->level();
    }
    return partyLevelOf(levels);
}
