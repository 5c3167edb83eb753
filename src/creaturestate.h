// The small value records of a creature in a fight: what undo restores, the eight vitality numbers,
// a place in the initiative, a share of a short rest.
#pragma once

#include <QList>
#include <QString>

#include "creaturedata.h"

class Creature;

// The whole live state that an event restores when it is undone. CreatureSnapshots packs all of it.
struct CreatureState {
    int currHP = 0;
    int tempHP = 0;
    int currHS = 0;
    int currAP = 0;
    int failedDeathSaves = 0;
    int secondWindUsed = 0; // tested for non-zero
    int apUsedInEncounter = 1;
    bool stable = true;
    bool delayed = false;
    bool readied = false;
    int turnCount = 0;
    QString lastHitBy;
    int lastHitOrder = 0;
    int baseCurrHP = 0;
    int baseCurrHS = 0;
    int baseCurrAP = 0;
    int damageTaken = 0;
    int healCount = 0;

    bool operator==(const CreatureState &) const = default;
};

struct CreatureVitality {
    Creature *creature = nullptr;
    int initBonus = NotStated;
    int maxHP = 0;
    int currHP = 0;
    int maxHS = 0;
    int currHS = 0;
    int hsValue = 0;
    int initAP = 0;
    int currAP = 0;

    // The eight numbers; whose they are isn't compared.
    bool operator==(const CreatureVitality &other) const;
};

struct CreatureItem {
    Creature *creature = nullptr;
    int roll = 0;
    int random = 0;
};

struct RestedCreature {
    Creature *creature = nullptr;
    int usedHS = 0;
    int addedHP = 0;
    int addedAP = 0;
};
