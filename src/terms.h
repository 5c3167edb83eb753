// The eleven words of the rule system that texts, labels and file keys ask for by index.
#pragma once

#include <QString>

namespace Term {
enum Index {
    ShortRest,
    ExtendedRest,
    ActionPoint,
    SecondWind,
    TotalDefence,
    Bloodied,
    HealingSurge,
    SurgeValue,
    DeathSavingThrow,
    TemporaryHP,
    Marked,
    Count
};
}

// Written by setDefaultTerms() and loadTerms(), read by nothing yet.
extern bool defaultTerms;

void setDefaultTerms();
// Overwrites terms from "terms.txt" of the data folder. Not connected: nothing calls it in this
// version, so the defaults are in force.
void loadTerms();

// The index is not checked.
QString term(int index);
// "Action Point" as "action-point", the key in a creature file, and "action-points".
QString termKey(int index);
QString termKeyPlural(int index);
