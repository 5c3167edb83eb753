// Everything about a creature that comes from its file: the carrier between readers and Creature.
#pragma once

#include <QList>
#include <QPixmap>
#include <QString>

#include "power.h"

// A score or value that no file states: initiative bonus, defences, Perception, Insight, abilities.
constexpr int NotStated = 1000;
// The same for the modifier of an ability.
constexpr int NoModifier = -1000000;

struct Ability {
    int score = NotStated;
    int modifier = NoModifier;

    bool operator==(const Ability &) const = default;
};

struct CreatureData {
    QString statBlock; // the whole file as text, with LF as line end
    QString portraitFile; // below "Portraits" where possible
    QPixmap portrait;
    QString importFile;
    bool linked = false;
    bool missing = false;
    QString name;
    bool isMonster = true;
    bool disabled = false; // not a living foe: a trap or a hazard
    QString charClass;
    QString group;
    QString headerText;
    QString type;
    QString race;
    QString role;
    int level = 0;
    int xp = 0;
    int maxHP = 0;
    int maxHS = 0;
    int hsValue = 0;
    int initBonus = NotStated; // a creature whose bonus is not stated takes no turns
    QString speed;
    int initAP = 0;
    QString senses;
    int perception = NotStated;
    int insight = NotStated;
    int armourClass = NotStated;
    int fortitude = NotStated;
    int reflex = NotStated;
    int will = NotStated;
    QString resist;
    QString immune;
    QString detect;
    QString regeneration;
    QString vulnerable;
    QString savingThrows;
    QString unplacedText;
    QString alignment;
    QString languages;
    QString skills;
    QString equipment;
    QString description;
    QString trailerText;
    Ability strength;
    Ability dexterity;
    Ability wisdom;
    Ability constitution;
    Ability intelligence;
    Ability charisma;
    QList<Power> powers;
    int currentPower = 0; // index of the power that was read last

    // `group` for a monster, `name` for a character: what the library sorts and finds by.
    const QString &keyName() const { return isMonster ? group : name; }
    QString &keyName() { return isMonster ? group : name; }
};
