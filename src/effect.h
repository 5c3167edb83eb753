// One condition, bonus, penalty or other ongoing state on one creature.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include "creature.h"
#include "effectedattributes.h"
#include "effectkinds.h"
#include "memorytracker.h"

// Owned by the event that made it; a creature's list only points at it. Origin and target are not
// owned. When it dies it takes itself off its target, unless the target is already gone.
class Effect : public QObject {
    Q_OBJECT

public:
    // `type` and `endCode` outside their tables are kept as they are and shown as text alone.
    Effect(Creature *origin, Creature *target, int type, int endCode,
           const QString &text = QString(), int amount = 0,
           const EffectedAttributes &attributes = {});
    ~Effect() override;

    Creature *origin() const { return m_origin; }
    Creature *target() const { return m_target; }
    int type() const { return m_type; }
    int endCode() const { return m_endCode; }
    const QString &text() const { return m_text; }
    int amount() const { return m_amount; }
    const EffectedAttributes &attributes() const { return m_attributes; }
    // The deciding creature's turnCount from which the effect may end.
    int endTurn() const { return m_endTurn; }

    virtual QString fullText() const;
    virtual QString conditionText() const;
    virtual QString durationText() const;
    virtual bool isBeneficial() const;
    // Whether the effect is to the liking of `b`'s side when it stands on `a`.
    virtual bool favours(const Creature *a, const Creature *b) const;
    virtual bool endsAtEndOfTurn(const Creature *creature, bool favourableOnly) const;
    virtual bool endsAtStartOfTurn(const Creature *creature) const;
    virtual bool needsSave(const Creature *creature) const;
    virtual bool endsAtEndOfEncounter() const;
    virtual void accumulate(AttributeModifiers &modifiers) const;

    // Whether the log names who caused it: not for total defence, cover and concealment.
    static bool showsOrigin(int type);
    // The text of an effect that isn't there yet; `origin` may be null.
    static QString describe(const Creature *origin, int type, const QString &text, int amount,
                            const EffectedAttributes &attributes);

private:
    Creature *decidingCreature() const;

    QPointer<Creature> m_origin;
    QPointer<Creature> m_target;
    int m_type;
    int m_endCode;
    QString m_text;
    int m_amount;
    EffectedAttributes m_attributes;
    int m_endTurn = 0;
    TrackerMember m_tracker {__LINE__, "effect"};
};

// The row of a dying creature's death saving throw among its other saves. Made for one pass of
// saves and never put on the creature.
class DyingEffect : public Effect {
    Q_OBJECT

public:
    explicit DyingEffect(Creature *target);

    QString conditionText() const override;
};
