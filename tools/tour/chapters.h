// What the tour plays, chapter by chapter: each adds its steps and begins where the one before
// ends.
#pragma once

#include <QStringList>

class Tour;

// --- the first run of the program ---
void pickTheParty(Tour &tour);
void loadAndStart(Tour &tour);
// Damage, healing, hiding, and the way back and forward.
void fight(Tour &tour);
// The form of conditions and effects, and the mark of the context menu.
void conditions(Tour &tour);
void savingThrows(Tour &tour);
void aliases(Tour &tour);
// Powers ticked off in the current creature's panel, and what its next turn gives back.
void powers(Tour &tour);
// Turns that are delayed and readied.
void waiting(Tour &tour);
void dying(Tour &tour);
// What the players see on their screen of it all.
void playersDisplay(Tour &tour);

// --- the second ---
void stopAndRest(Tour &tour);
void throughTheHistory(Tour &tour);
// A monster pasted, an encounter of it, a hero: kept in the library.
void library(Tour &tour);

// All of the fight that must come back when the program starts again.
QStringList fightSummary();
void expectSameFight(Tour &tour, const QStringList &before);
