// The one record of a monster or a character, in the library and in the fight alike.
#pragma once

#include <QObject>
#include <functional>
#include <type_traits>

#include "creaturedata.h"
#include "creaturestate.h"
#include "editflags.h"
#include "memorytracker.h"
#include "outcome.h"

class Effect;
struct AttributeModifiers;

class Creature;
// Gives a name that no other creature of the collection has: `name`, or `name` with a number behind
// it. `self` may have it already. An empty function stands for one that gives `name`.
using UniqueName = std::function<QString(const QString &name, const Creature *self)>;

// While one lives, displayName() gives what the players may know: the alias while it is shown, and
// nothing for a hidden creature.
class PlayersNames {
public:
    PlayersNames() { ++s_count; }
    ~PlayersNames() { --s_count; }
    PlayersNames(const PlayersNames &) = delete;
    PlayersNames &operator=(const PlayersNames &) = delete;

    static bool areUsed() { return s_count > 0; }

private:
    inline static int s_count = 0;
};

// Three layers side by side: what the file says (data()), the live state that events change
// (state()), and shadows of the eight vitality numbers, which tell the Encounter whether something
// changed outside the history. Owned by its collection; it owns neither its effects nor its
// counters. Each setter emits doCreatureUpdated() last.
class Creature : public QObject {
    Q_OBJECT

public:
    explicit Creature(QObject *parent = nullptr);
    ~Creature() override;

    // --- the record of the file ---
    const CreatureData &data() const { return m_data; }
    // Copies every field, with the first letter of `senses` raised; the live state stays.
    void assign(const CreatureData &data);
    // Takes the other's record. Neither live state nor effects are copied.
    void copyFrom(const Creature *other);

    const QString &name() const { return m_data.name; }
    const QString &group() const { return m_data.group; }
    // group for a monster, name for a character.
    const QString &keyName() const { return m_data.keyName(); }
    const QString &charClass() const { return m_data.charClass; }
    const QString &type() const { return m_data.type; }
    const QString &race() const { return m_data.race; }
    const QString &role() const { return m_data.role; }
    const QString &speed() const { return m_data.speed; }
    const QString &senses() const { return m_data.senses; }
    const QString &savingThrows() const { return m_data.savingThrows; }
    const QString &description() const { return m_data.description; }
    const QString &statBlock() const { return m_data.statBlock; }
    const QString &portraitFile() const { return m_data.portraitFile; }
    const QString &importFile() const { return m_data.importFile; }
    bool isMonster() const { return m_data.isMonster; }
    bool isDisabled() const { return m_data.disabled; }
    bool isLinked() const { return m_data.linked; }
    bool isMissing() const { return m_data.missing; }
    int level() const { return m_data.level; }
    int xp() const { return m_data.xp; }
    int maxHP() const { return m_data.maxHP; }
    int maxHS() const { return m_data.maxHS; }
    int hsValue() const { return m_data.hsValue; }
    int initBonus() const { return m_data.initBonus; }
    int initAP() const { return m_data.initAP; }
    // False for a creature without a stated initiative bonus: its turn is passed over.
    bool takesTurns() const { return m_data.initBonus != NotStated; }
    // Decoded when first asked for, not larger than it is ever shown, and null when there is no
    // readable picture.
    const QPixmap &portrait() const;

    const QList<Power> &powers() const { return m_data.powers; }
    Power *powerAt(int index);
    // First power of exactly this name, or null.
    Power *powerByName(const QString &name);

    void setMissing(bool missing);
    // The bare field, without touching the text: a clone's ID, or the undo of a rename.
    void setName(const QString &name);
    // Sets the name and rebuilds statBlock.
    void rename(const QString &name);
    void setGroup(const QString &group);
    // Sets any other field of a character, for its editor, and rebuilds statBlock. A new score of
    // an ability drops the modifier that its file stated.
    template <typename Value>
    void setField(Value CreatureData::*field, const std::type_identity_t<Value> &value)
    {
        m_data.*field = value;
        noteFieldChange();
    }
    void setAbilityScore(Ability CreatureData::*ability, int score);

    const QString &nameBefore() const { return m_nameBefore; }
    void setNameBefore(const QString &name) { m_nameBefore = name; }

    // --- the file (creaturefile.cpp) ---
    // Reads the file of that name in its folder. False when it gives no creature at all; a bad text
    // gives a creature named after its file.
    bool load(const QString &fileName, bool isMonster, const QString &dataFolder,
              const UniqueName &uniqueName = {});
    // Writes statBlock to fileName(), which is derived from the key name when empty.
    bool save();
    // Back to what a load makes of savedStatBlock(), but for the live state and a name of its own,
    // which revertAll() sees to. A new creature has nothing to go back to and loses its flags.
    void revert();
    // The text of the creature from its fields: key form for a character, a starter stat block for
    // a monster.
    QString generateText() const;
    // The key name stands for a text that could not be read.
    bool isInvalid() const;
    void setPortrait(const QString &path);
    // --- the file it is imported from (creaturelink.cpp) ---
    // Takes what the import file states, and a free name if it states another. False, and nothing
    // changed, when the file can't be read. A relative path stands in "Characters".
    bool refreshFromImport(const QString &path);
    // The same for a linked character with the file it is linked to; a character that had no
    // changes of its own is saved at once. Nothing for others.
    void refreshIfLinked();
    // The file at `path` holds what was saved, but for a portrait that was given here.
    bool importIsCurrent(const QString &path) const;
    // Hit points, surges, surge value, initiative and action points become those that the text
    // states, which is again as it was before the history wrote into it; the history hears of it
    // with the next command. Nothing for a text that can't be read.
    void takeNumbersOfText();
    // The running state starts anew, as after a load: current values from the maxima, the name as
    // the history's, the shadows set. For a creature that no fight has seen yet.
    void readyForPlay();
    // As after a load of its text: no trace of any fight, and what the text states.
    void resetForEncounter(const UniqueName &uniqueName);

    // The name that the character's text states, whatever the history has made of it; empty for a
    // monster.
    QString nameInText() const;
    const QString &fileName() const { return m_fileName; }
    void setFileName(const QString &fileName) { m_fileName = fileName; }
    const QString &savedStatBlock() const { return m_savedStatBlock; }
    void setSavedStatBlock(const QString &text) { m_savedStatBlock = text; }
    void setStatBlock(const QString &text);
    // Compares the text with the saved one, and has the Encounter check the shadows.
    void statBlockChanged();

    // --- flags of the managers ---
    bool isNew() const { return m_flags.isNew(); }
    bool isModified() const { return m_flags.isModified(); }
    bool isDeleted() const { return m_flags.isDeleted(); }
    void setNew(bool value);
    void setModified(bool value);
    void setDeleted(bool value);
    void setChangeCounters(ChangeCounters *counters) { m_flags.setCounters(counters); }

    // --- live state ---
    const CreatureState &state() const { return m_state; }
    void restoreState(const CreatureState &state);
    int currHP() const { return m_state.currHP; }
    int tempHP() const { return m_state.tempHP; }
    int currHS() const { return m_state.currHS; }
    int currAP() const { return m_state.currAP; }
    int failedDeathSaves() const { return m_state.failedDeathSaves; }
    bool secondWindUsed() const { return m_state.secondWindUsed != 0; }
    int apUsedInEncounter() const { return m_state.apUsedInEncounter; }
    bool isStable() const { return m_state.stable; }
    bool isDelayed() const { return m_state.delayed; }
    bool isReadied() const { return m_state.readied; }
    int turnCount() const { return m_state.turnCount; }
    const QString &lastHitBy() const { return m_state.lastHitBy; }
    int lastHitOrder() const { return m_state.lastHitOrder; }
    int damageTaken() const { return m_state.damageTaken; }
    int healCount() const { return m_state.healCount; }
    bool isHidden() const { return m_hidden; }
    const QString &alias() const { return m_alias; }
    int aliasMode() const { return m_aliasMode; } // not 0: the alias is shown
    int initRoll() const { return m_initRoll; }
    int initRandom() const { return m_initRandom; }
    // Amounts that an open dialog has added into the live fields for preview.
    int restHP() const { return m_restHP; }
    int restTempHP() const { return m_restTempHP; }
    int restHS() const { return m_restHS; } // negative while surges are spent
    int restAP() const { return m_restAP; }

    void setTurnCount(int count);
    void setDelayed(bool delayed);
    void setReadied(bool readied);
    void setHidden(bool hidden);
    void setAlias(const QString &alias);
    void setAliasMode(int mode);
    void setCurrHP(int hp);
    void setCurrHS(int surges);
    void setCurrAP(int points);
    void setInitRoll(int roll);
    void setInitRandom(int random);
    CreatureItem item();
    // Sets roll and random, and tells listeners only when one of them changed.
    void setItem(const CreatureItem &item);

    // It is this creature's turn.
    bool isCurrent() const;

    // --- vitality rules (creaturevitality.cpp) ---
    bool isDead(bool ignoringRest = false) const;
    bool isDying() const;
    bool isBloodied() const;
    int bloodiedValue() const;
    bool hasBeenInCombat() const;
    // -100 to 100; a character below 0 hit points has a negative bar.
    int hpPercent() const;
    // What the players may see: a monster's health in steps of 0, 50, 90 and 100.
    int playersHpPercent() const;

    // The numbers that a blow or a healing starts from, previews included.
    Health health() const { return {currHP(), tempHP(), currHS()}; }
    // `attacker` may be null; with one, the hit gets a number in the order of all hits.
    void takeDamage(int amount, const Creature *attacker);
    // Negative `surgesUsed` adds surges. Healing counts from 0 hit points and stops at maxHP.
    void heal(int hp, int surgesUsed);
    void shortRest(int hp, int surgesUsed, bool addActionPoint);
    void extendedRest(bool clearEffects);
    // Nothing of a fight is left on it, but for effects and spent powers.
    bool isRested() const { return m_state == restedState(); }
    void stopEncounter();
    // Only raises.
    void setTempHP(int amount);
    void useActionPoint(int count);
    void setFailedDeathSaves(int count);
    void setStable(bool stable);
    void setSecondWindUsed(bool used);
    void setRestAdditions(int hp, int tempHP, int surges);
    void setRestAP(int points);
    void clearRestAdditions();

    // Without what an open dialog shows beforehand, which never reaches log or shadows.
    CreatureVitality liveVitality();
    CreatureVitality shadowVitality();
    // Live fields, to which an open dialog's preview stays added; rebuilds the text of the record.
    void setVitality(const CreatureVitality &vitality);
    // The same without the text, which stays as its file has it.
    void setVitalityNumbers(const CreatureVitality &vitality);
    void setShadowVitality(const CreatureVitality &vitality);
    // The shadows take the live numbers, as after a load or a save.
    void syncShadows() { setShadowVitality(liveVitality()); }

    // --- effects ---
    const QList<Effect *> &effects() const { return m_effects; }
    int effectCount() const { return int(m_effects.size()); }
    Effect *effectAt(int index) const;
    // Searched from the end; -1 when absent.
    int indexOfEffect(const Effect *effect) const;
    // An effect that is null, stands here already or has another target stays away.
    void addEffect(Effect *effect);
    void insertEffect(int index, Effect *effect);
    // The index that it had, or -1; the signals fire in any case.
    int removeEffect(Effect *effect);
    AttributeModifiers accumulateModifiers() const;
    void accumulateModifiers(AttributeModifiers &modifiers) const;

    // --- display strings (creaturesummary.cpp) ---
    QString displayName() const;
    QString playersName() const;
    QString typeAndRace() const;
    QString statusText() const;
    QString headerLine() const;
    QString defencesText(bool compact) const;
    QString conditionsText(bool rich, bool withModifiers, bool hideMissing,
                           bool ignoringRest) const;
    QString healthText(bool maxOnly) const;
    QString playersHealthText(bool showTotals) const;
    // `total` and `complex` may be null. See creaturesummary.cpp for the forms.
    QString savingThrowsText(bool compact, int *total = nullptr, bool *complex = nullptr) const;
    // Mode 0 is the bare figure, 1 a figure with the bonus, 2 the form of the panels.
    QString initiativeText(bool showBonus, int mode) const;
    QString speedLine(bool maxOnly) const;
    QString abilityText(const QString &label, const Ability &ability) const;
    QString sensesText() const;

Q_SIGNALS:
    void doCreatureUpdated(Creature *creature);
    void doCreatureEffectsChanged(Creature *creature);

private:
    CreatureState restedState() const;
    // The record becomes what a load makes of `text`.
    void takeText(const QString &text, const UniqueName &uniqueName);
    // A change by preview, which may bring a creature down or up again.
    void changeHP(int change);
    void replaceRestAP(int points);
    void notifyUpdated() { Q_EMIT doCreatureUpdated(this); }
    void notifyEffectsChanged();
    // An invalid character counts as a monster, but its file stays among the characters.
    bool hasMonsterFile() const { return m_data.isMonster && !m_isCharacterFile; }
    // Live field of an editor: tells listeners only of a change.
    void setValue(int &field, int value);
    void updateText();
    // The text follows the fields, and ownText() stays as it is.
    void writeHistoryIntoText();
    const QString &ownText() const { return m_ownText.isNull() ? m_data.statBlock : m_ownText; }
    void noteFieldChange();
    QString dyingText() const;
    QString turnStateText() const;
    QString attackModifiersText(bool rich) const;
    QString hitPointsText() const;
    QString surgesText() const;
    QString surgeValueText() const;
    QString actionPointsText() const;

    CreatureData m_data;
    CreatureState m_state;
    bool m_hidden = false;
    QString m_alias;
    int m_aliasMode = 0;
    EditFlags m_flags;
    QString m_fileName;
    QString m_savedStatBlock;
    // The text as it was before the history wrote other numbers into it; null if it hasn't.
    QString m_ownText;
    QString m_nameBefore;
    int m_baseMaxHP = 0;
    int m_baseHsValue = 0;
    int m_baseMaxHS = 0;
    int m_baseInitBonus = 0;
    int m_baseInitAP = 0;
    int m_restHP = 0;
    int m_restTempHP = 0;
    int m_restHS = 0;
    int m_restAP = 0;
    int m_initRoll = 0;
    int m_initRandom = 0;
    bool m_isCharacterFile = false;
    // The text that nameInText() has read, and what it found.
    mutable QString m_readText;
    mutable QString m_readName;
    // What m_shownPortrait was decoded from.
    mutable QString m_decodedPortraitFile;
    mutable QPixmap m_shownPortrait;
    QList<Effect *> m_effects;
    TrackerMember m_tracker {__LINE__, "creature"};
};
