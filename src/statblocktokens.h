// The words and signs that a stat block is made of: kinds of tokens, and the keywords' look-up.
#pragma once

#include <QStringView>

namespace TokenKind {

// Keywords stand in the order of the groups that the parser's rules ask for. "m" and "M" are kinds
// of their own; any other keyword is found in either case.
enum Code : int {
    End = 1, // of the text
    LineEnd,
    WhiteSpace,
    Comma,
    Colon,
    Semicolon,
    FullStop,
    OpenBracket,
    CloseBracket,
    Plus,
    Minus,
    Bullet,
    Star,
    Apostrophe,
    Copyright,
    Symbol,
    Number,
    Dice,
    DieFace1,
    DieFace6 = DieFace1 + 5,
    Word,

    // sizes
    Tiny,
    Small,
    Medium,
    Large,
    Huge,
    Gargantuan,

    // roles
    Artillery,
    Brute,
    Controller,
    Defender,
    Elite,
    Leader,
    Lurker,
    Minion,
    Skirmisher,
    Soldier,
    Solo,
    Striker,

    // traps and hazards
    Hazard,
    Trap,
    Blaster,
    Warder,
    Obstacle,
    Terrain,

    // senses
    LowLight,
    Darkvision,
    Truesight,
    AllRound,
    Blindsight,
    Tremorsense,

    // header and footer
    Portrait,
    Level,
    Xp,
    Hp,
    Bloodied,
    Initiative,
    Ac,
    Fortitude,
    Reflex,
    Will,
    Senses,
    Perception,
    Speed,
    Action,
    Resist,
    Immune,
    Detect,
    Regeneration,
    Vulnerable,
    Saving,
    Vision,
    Points,
    Throws,
    Alignment,
    Languages,
    Skills,
    Str,
    Dex,
    Wis,
    Con,
    Int,
    Cha,
    Equipment,
    Description,
    Published,
    Monster,

    // skills
    Acrobatics,
    Arcana,
    Athletics,
    Bluff,
    Diplomacy,
    Dungeoneering,
    Endurance,
    Heal,
    History,
    Insight,
    Intimidate,
    Nature,
    Religion,
    Stealth,
    Streetwise,
    Thievery,

    // letters that stand for the symbol in front of a power
    LowerM,
    UpperM,
    LowerR,
    UpperR,
    LowerA,
    UpperA,
    LowerC,
    UpperC,
    LowerO,
    UpperO,
    LowerX,

    Greater,

    // labels
    Attack,
    Ranged,
    Hit,
    Effect,
    Miss,
    Trigger,
    Secondary,
    Prerequisite,
    Requirements,
    Requirement,
    Requires,
    Disable,
    Evade,
    Target,
    Special,
    Targets,
    Trample,
    Aftereffect,
    Success,
    Failure,

    // usage
    AtWill,
    Recharge,
    Rchg,
    Encounter,
    TwicePerEncounter,
    Aura,

    // keywords of powers
    Fear,
    Zone,
    Necrotic,
    Teleportation,
    Cold,
    Gaze,
    Fire,
    Poison,
    Radiant,
    Polymorph,
    Acid,
    Lightning,
    Thunder,
    Weapon,
    Psychic,
    Illusion,
    Moun,
    Healing,

    // sections and actions
    Traits,
    Standard,
    Std,
    Move,
    Minor,
    Free,
    Other,
    Triggered,
    Countermeasures,
    Immediate,
    Imm,
    Interrupt,
    Reaction,
    Reac,
    Opportunity,
    Actions,
    Powers,

    // the rest of a power's text
    Melee,
    Close,
    Area,
    Blast,
    Burst,
    Reach,
    Dc,
    Creature,
    Character,
    If,
    Or,
    Of,
    To,
    The,

    // ranged weapons
    Crossbow,
    Longbow,
    Shortbow,
    Sling,
    Blowgun,
    Bola,
    Greatbow,
    Shuriken,
    Boomerang,
};

constexpr bool isIn(int kind, int first, int last)
{
    return kind >= first && kind <= last;
}

constexpr bool isBulletOrStar(int kind)
{
    return kind == Bullet || kind == Star;
}
constexpr bool isDieFace(int kind)
{
    return isIn(kind, DieFace1, DieFace6);
}
constexpr bool isNumberOrDice(int kind)
{
    return kind == Number || kind == Dice;
}
// Made of letters: a plain word or a keyword.
constexpr bool isWord(int kind)
{
    return kind >= Word && kind != Greater;
}
constexpr bool isSizeWord(int kind)
{
    return isIn(kind, Tiny, Gargantuan);
}
constexpr bool isRoleWord(int kind)
{
    return isIn(kind, Artillery, Striker);
}
// With "terrain"; isTrapRole() is without.
constexpr bool isHazardWord(int kind)
{
    return isIn(kind, Hazard, Terrain);
}
constexpr bool isTrapRole(int kind)
{
    return isIn(kind, Hazard, Obstacle);
}
constexpr bool isSensesWord(int kind)
{
    return isIn(kind, LowLight, Tremorsense);
}
// "portrait" to "saving": what begins a clause of the header.
constexpr bool isStatWord(int kind)
{
    return isIn(kind, Portrait, Saving);
}
// "alignment" to "cha".
constexpr bool isFooterWord(int kind)
{
    return isIn(kind, Alignment, Cha);
}
constexpr bool isFooterHeaderWord(int kind)
{
    return isIn(kind, Equipment, Monster) || kind == Copyright;
}
constexpr bool isAbility(int kind)
{
    return isIn(kind, Str, Cha);
}
constexpr bool isSkill(int kind)
{
    return isIn(kind, Acrobatics, Thievery);
}
constexpr bool isSkillOrPerception(int kind)
{
    return isSkill(kind) || kind == Perception;
}
constexpr bool isIconLetter(int kind)
{
    return isIn(kind, LowerM, LowerX);
}
// "attack" to "aftereffect": what may stand before the ":" of a label.
constexpr bool isLabelWord(int kind)
{
    return isIn(kind, Attack, Aftereffect);
}
constexpr bool isUsageWord(int kind)
{
    return isIn(kind, AtWill, Aura);
}
// "at-will" to "healing": what may follow the bullet of a power's header.
constexpr bool isUsageOrDamageWord(int kind)
{
    return isIn(kind, AtWill, Healing);
}
constexpr bool isRangedWeapon(int kind)
{
    return isIn(kind, Crossbow, Boomerang);
}

// The kind of a run of letters: a keyword as written, a keyword in lower case, "F" as the bullet
// that it is pasted for, or Word. Allocates nothing.
int ofWord(QStringView word);

} // namespace TokenKind

// A view into the text that was scanned (StatBlockScanner owns it), or into a literal.
struct Token {
    int kind = TokenKind::End;
    QStringView text;

    // A word that begins with an upper-case letter.
    bool isCapitalised() const
    {
        return kind >= TokenKind::Word && !text.isEmpty() && text.front().isUpper();
    }
    // The number that it stands for, a die face included; an en dash is a minus sign, separators
    // don't count, and what doesn't fit an int or isn't a number is 0.
    int number() const;
};

Q_DECLARE_TYPEINFO(Token, Q_PRIMITIVE_TYPE);
