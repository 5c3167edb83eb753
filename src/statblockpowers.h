// Reads the powers of a stat block: a header with the lines below it, a trait of the header, and
// text that belongs to no power.
#pragma once

#include "creaturedata.h"
#include "statblockassembler.h"

class TokenText;

class StatBlockPowers {
public:
    // Borrows both. Each reading begins at the current line and leaves the first line that it
    // didn't take as the current one.
    StatBlockPowers(StatBlockAssembler &lines, CreatureData &record);

    void readTrait() { readPower(true); }
    void readPower() { readPower(false); }
    void readText();

private:
    void readPower(bool isTrait);
    bool readIconLetter(Power &power);
    void placeInTrap(Power &power);
    void readName(Power &power);
    void readBracket(Power &power);
    void readKeywords(Power &power);
    void readRemainder(Power &power);
    Token takeHeaderToken(Power &power);
    void addRecharge(TokenText &text, int kind);
    void testUsage(Power &power, int kind, const Token &next);

    void readDetails(Power &power, bool isTrait);
    void addAction(Power &power, bool isFirst);
    void testWeapon(Power &power, int kind);
    int takeFirst(bool &isFirst, int icon);
    void settleIcon(Power &power, bool isTrait, bool hasLetter);
    bool mendLabel();
    bool statisticsGoOn();
    QString paragraph();

    StatBlockAssembler &m_lines;
    CreatureData &m_record;
    Token m_lastSkill; // of the last line that began with a skill and its DC
    bool m_firstMelee = true; // the basic attack is still to come
    bool m_firstRanged = true;
};
