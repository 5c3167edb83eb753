// Creatures for tests of the combat model, made without a file.
#pragma once

#include <memory>

#include "creature.h"

// Rested, and known to the history as it is.
inline std::unique_ptr<Creature> makeCreature(const CreatureData &data)
{
    auto creature = std::make_unique<Creature>();
    creature->assign(data);
    creature->extendedRest(false);
    creature->syncShadows();
    creature->setNameBefore(data.name);
    return creature;
}

inline std::unique_ptr<Creature> makeCharacter(const QString &name, int maxHP = 30,
                                               int initBonus = 2)
{
    CreatureData data;
    data.isMonster = false;
    data.name = name;
    data.level = 1;
    data.maxHP = maxHP;
    data.maxHS = 8;
    data.hsValue = maxHP / 4;
    data.initBonus = initBonus;
    data.initAP = 1;
    return makeCreature(data);
}

inline std::unique_ptr<Creature> makeMonster(const QString &group, const QString &id,
                                             int maxHP = 20, int initBonus = 1)
{
    CreatureData data;
    data.group = group;
    data.name = id;
    data.level = 1;
    data.xp = 100;
    data.maxHP = maxHP;
    data.initBonus = initBonus;
    return makeCreature(data);
}
