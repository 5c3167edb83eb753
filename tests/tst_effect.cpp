// Conditions: how they read, when they end, what they modify, and what the turn cycle makes of
// them.
#include <QGuiApplication>

#include "coreobjects.h"
#include "creatures.h"
#include "datatable.h"
#include "effect.h"
#include "encounter.h"
#include "event.h"
#include "findcreature.h"
#include "history.h"
#include "tables.h"
#include "testdata.h"
#include "testhome.h"
#include "turncycle.h"

using namespace Qt::StringLiterals;

namespace {

constexpr EffectedAttributes attributes(unsigned int flags)
{
    return {.ac = (flags & 1) != 0,
            .fortitude = (flags & 2) != 0,
            .reflex = (flags & 4) != 0,
            .will = (flags & 8) != 0,
            .hit = (flags & 16) != 0,
            .damage = (flags & 32) != 0,
            .savingThrows = (flags & 64) != 0};
}

} // namespace

class TestEffect : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void types();
    void texts();
    void durations();
    void modifiers();
    void endsWithATurn();
    void neverEndsInTheTurnThatSetIt();
    void savesWaitForTheNextTurn();
    void diesOffItsTarget();
    void startOfTurnRaisesEvents();
    void powersRecharge_data();
    void powersRecharge();
    void theDeadCanLeave();

private:
    QStringList logged() const;

    std::unique_ptr<TestDataFolder> m_folder;
    std::unique_ptr<CoreObjects> m_objects;
    std::unique_ptr<Creature> m_aria;
    std::unique_ptr<Creature> m_bren;
    std::unique_ptr<Creature> m_rat;
};

void TestEffect::init()
{
    failOnWarnings();
    m_folder = std::make_unique<TestDataFolder>();
    m_objects = std::make_unique<CoreObjects>();
    m_aria = makeCharacter(u"Aria"_s);
    m_bren = makeCharacter(u"Bren"_s);
    m_rat = makeMonster(u"Rat"_s, u"1"_s);
    theEncounter->setOrder(
        CreatureList(QList<Creature *> {m_aria.get(), m_bren.get(), m_rat.get()}));
    theEncounter->setPosition({1, 0, {}});
}

void TestEffect::cleanup()
{
    // The events of the history hold effects on these creatures.
    m_objects.reset();
    m_aria.reset();
    m_bren.reset();
    m_rat.reset();
    m_folder.reset();
}

QStringList TestEffect::logged() const
{
    QStringList texts;
    for (int i = 0; i < theHistory->eventCount(); ++i)
        texts.append(theHistory->eventText(i));
    return texts;
}

// Every type in the order of its code: a "+" in front where it is good, a "~" behind where the log
// doesn't name who caused it.
void TestEffect::types()
{
    const QStringList forms =
        QStringLiteral("|Blinded|Dazed|Deafened|Dominated|Grabbed|Helpless|Hidden|"
                       "Immobilized|Marked|Petrified|Prone|Restrained|Slowed|Stunned|"
                       "Surprised|Unconscious|Weakened|+Total Defence~|+Second Wind|"
                       "Ongoing 2 Damage|+Regeneration 2|-2 Penalty|++2 Bonus|"
                       "+Partial Cover~|+Superior Cover~|+Concealment~|"
                       "+Total Concealment~|+Resist 2|Vulnerable 2|+||+Insubstantial|"
                       "+Phasing|")
            .split(u'|');
    QCOMPARE(forms.size(), EffectType::End + 1);
    for (int type = 0; type < forms.size(); ++type) {
        const Effect effect(nullptr, m_aria.get(), type, EffectEnd::Special, QString(), 2);
        QString form = effect.conditionText();
        if (effect.isBeneficial())
            form.prepend(u'+');
        if (!Effect::showsOrigin(type))
            form.append(u'~');
        QCOMPARE(form, forms[type]);
    }
}

void TestEffect::texts()
{
    const auto textOf = [this](const QStringList &row) -> QString {
        const Effect effect(m_rat.get(), m_aria.get(), row[0].toInt(), EffectEnd::Special, row[2],
                            2, attributes(row[1].toUInt()));
        return effect.conditionText();
    };
    QCOMPARE(differences(u"effects"_s, 4, textOf), QString());
}

void TestEffect::durations()
{
    const QStringList texts {u"Prone end special"_s,
                             u"Prone until end of Rat (1)'s next turn"_s,
                             u"Prone until end of my next turn"_s,
                             u"Prone until save ends"_s,
                             u"Prone until end of encounter"_s,
                             u"Prone until start of Rat (1)'s next turn"_s,
                             u"Prone until start of my next turn"_s,
                             u"Prone"_s};
    for (int code = 0; code < texts.size(); ++code) {
        const Effect effect(m_rat.get(), m_aria.get(), EffectType::Prone, code);
        QCOMPARE(effect.fullText(), texts[code]);
        QCOMPARE(effect.endsAtEndOfEncounter(), code != EffectEnd::Special);
    }
}

void TestEffect::modifiers()
{
    constexpr int Least = std::numeric_limits<int>::min();
    constexpr int Most = std::numeric_limits<int>::max();
    struct Case {
        int type, amount;
        bool fromOther;
        int ac, hit;
    };
    const Case cases[] = {
        {EffectType::TotalDefence, 0, false, 2, 0},    {EffectType::SecondWind, 0, false, 2, 0},
        {EffectType::SecondWind, 0, true, 0, 0},       {EffectType::Bonus, 3, true, 3, 3},
        {EffectType::Penalty, 3, true, -3, -3},        {EffectType::Prone, 3, true, 0, 0},
        {EffectType::Penalty, Least, true, Most, Most}};
    for (const Case &each : cases) {
        Creature *origin = each.fromOther ? m_bren.get() : m_aria.get();
        Effect effect(origin, m_aria.get(), each.type, EffectEnd::Special, QString(), each.amount,
                      attributes(1 + 16));
        m_aria->addEffect(&effect);
        const AttributeModifiers sum = m_aria->accumulateModifiers();
        QCOMPARE(sum.ac, each.ac);
        QCOMPARE(sum.hit, each.hit);
        // They stack, up to the end of the numbers, and what isn't named stays.
        Effect more(origin, m_aria.get(), EffectType::Bonus, EffectEnd::Special, QString(), 1,
                    attributes(16));
        m_aria->addEffect(&more);
        QVERIFY(m_aria->accumulateModifiers().hit >= sum.hit);
        QCOMPARE(m_aria->accumulateModifiers().savingThrows, 0);
    }
}

// Bren is the origin, the rat the target.
void TestEffect::endsWithATurn()
{
    for (const bool good : {false, true}) {
        for (int code = 0; code < 8; ++code) {
            const Effect effect(m_bren.get(), m_rat.get(),
                                good ? EffectType::Phasing : EffectType::Prone, code);
            const bool endsWithOrigin = code == EffectEnd::EndOfOriginsTurn;
            const bool endsWithTarget = code == EffectEnd::EndOfTargetsTurn;
            QCOMPARE(effect.endsAtEndOfTurn(m_bren.get(), false), endsWithOrigin);
            QCOMPARE(effect.endsAtEndOfTurn(m_rat.get(), false), endsWithTarget);
            // On the foe, bad is to the delayer's liking; on the delayer itself, good is.
            QCOMPARE(effect.endsAtEndOfTurn(m_bren.get(), true), endsWithOrigin && !good);
            QCOMPARE(effect.endsAtEndOfTurn(m_rat.get(), true), endsWithTarget && good);
            QCOMPARE(effect.endsAtStartOfTurn(m_bren.get()), code == EffectEnd::StartOfOriginsTurn);
            QCOMPARE(effect.endsAtStartOfTurn(m_rat.get()), code == EffectEnd::StartOfTargetsTurn);
            for (Creature *other : {m_aria.get(), static_cast<Creature *>(nullptr)}) {
                QVERIFY(!effect.endsAtEndOfTurn(other, false));
                QVERIFY(!effect.endsAtStartOfTurn(other));
                QVERIFY(!effect.needsSave(other));
            }
        }
    }
}

void TestEffect::neverEndsInTheTurnThatSetIt()
{
    // It is Aria's turn.
    const Effect onHerself(m_aria.get(), m_aria.get(), EffectType::Dazed,
                           EffectEnd::EndOfTargetsTurn);
    const Effect byAria(m_aria.get(), m_rat.get(), EffectType::Dazed, EffectEnd::EndOfOriginsTurn);
    const Effect byRat(m_rat.get(), m_aria.get(), EffectType::Dazed, EffectEnd::EndOfOriginsTurn);
    QVERIFY(!onHerself.endsAtEndOfTurn(m_aria.get(), false));
    QVERIFY(!byAria.endsAtEndOfTurn(m_aria.get(), false));
    QVERIFY(byRat.endsAtEndOfTurn(m_rat.get(), false));
    m_aria->setTurnCount(1);
    QVERIFY(onHerself.endsAtEndOfTurn(m_aria.get(), false));
    QVERIFY(byAria.endsAtEndOfTurn(m_aria.get(), false));

    const Effect byNobody(nullptr, m_aria.get(), EffectType::Dazed, EffectEnd::EndOfOriginsTurn);
    QVERIFY(!byNobody.endsAtEndOfTurn(m_aria.get(), false));
    QVERIFY(!byNobody.endsAtEndOfTurn(nullptr, false));
    QVERIFY(byNobody.endsAtEndOfEncounter());
}

void TestEffect::savesWaitForTheNextTurn()
{
    const Effect onAria(m_rat.get(), m_aria.get(), EffectType::Slowed, EffectEnd::SaveEnds);
    const Effect onBren(m_rat.get(), m_bren.get(), EffectType::Slowed, EffectEnd::SaveEnds);
    QVERIFY(!onAria.needsSave(m_aria.get()));
    QVERIFY(onBren.needsSave(m_bren.get()));
    m_aria->setTurnCount(1);
    QVERIFY(onAria.needsSave(m_aria.get()));
    QVERIFY(!onAria.needsSave(m_rat.get()));
}

void TestEffect::diesOffItsTarget()
{
    auto prone =
        std::make_unique<Effect>(nullptr, m_aria.get(), EffectType::Prone, EffectEnd::Special);
    m_aria->addEffect(prone.get());
    // Nobody else may hold it: it would not know where to leave.
    m_bren->addEffect(prone.get());
    QCOMPARE(m_bren->effectCount(), 0);
    int changes = 0;
    connect(m_aria.get(), &Creature::doCreatureEffectsChanged, this, [&changes](Creature *aria) {
        ++changes;
        QCOMPARE(aria->effectCount(), 0);
    });
    prone.reset();
    QCOMPARE(m_aria->effectCount(), 0);
    QCOMPARE(changes, 1);
}

void TestEffect::startOfTurnRaisesEvents()
{
    Effect burn(m_rat.get(), m_aria.get(), EffectType::OngoingDamage, EffectEnd::SaveEnds,
                u"fire"_s, 5);
    Effect mend(nullptr, m_aria.get(), EffectType::Regeneration, EffectEnd::Special, QString(), 2);
    Effect until(m_aria.get(), m_rat.get(), EffectType::Dazed, EffectEnd::StartOfOriginsTurn);
    Effect shield(m_aria.get(), m_aria.get(), EffectType::TotalDefence,
                  EffectEnd::StartOfTargetsTurn);
    for (Effect *effect : {&burn, &mend, &until, &shield})
        effect->target()->addEffect(effect);
    applyOngoingDamage(m_aria.get());
    QCOMPARE(m_aria->currHP(), 25);
    QCOMPARE(m_aria->lastHitBy(), u"Rat (1)"_s);
    applyRegeneration(m_aria.get());
    QCOMPARE(m_aria->currHP(), 27);
    for (Creature *creature : theEncounter->creatures())
        removeEffectsAtStartOfTurn(creature, m_aria.get());
    QCOMPARE(
        logged(),
        (QStringList {u"On Going Damage 5: Aria"_s, u"Regeneration 2: Aria"_s,
                      u"Start of Turn: Remove Total Defence"_s, u"Start of Turn: Remove Dazed"_s}));
    QCOMPARE(m_aria->effects(), (QList<Effect *> {&burn, &mend}));
    theHistory->moveTo(-1);
    QCOMPARE(m_aria->currHP(), 30);
    QCOMPARE(m_aria->effects(), (QList<Effect *> {&burn, &mend, &shield}));
}

void TestEffect::powersRecharge_data()
{
    addColumns<int, int, int>({"kind", "state", "events"});
    QTest::addColumn<bool>("sure"); // whether it is back whatever the die
    for (int kind = 0; kind < 11; ++kind) {
        for (int state = 0; state < 5; ++state) {
            const bool isUsed = state == 1 || state == 3;
            const bool isSure = kind == 1 || (kind == 3 && state == 1);
            const bool isRolled = kind >= 5 && kind <= 9;
            QTest::addRow("kind %d state %d", kind, state)
                << kind << state << int(isUsed && (isSure || isRolled)) << (isUsed && isSure);
        }
    }
}

void TestEffect::powersRecharge()
{
    auto [kind, state, sure] = fetch<int, int, bool>({"kind", "state", "sure"});
    // The log names the creature, so it must be one that can be found.
    Creature *creature = findCreature(u"Cato"_s, true);
    CreatureData data = creature->data();
    Power power;
    power.name = u"Flare"_s;
    power.usageKind = kind;
    power.usageState = state;
    data.powers = {power};
    creature->assign(data);
    rechargePowers(creature);
    QTEST(theHistory->eventCount(), "events");
    const bool isBack = creature->powers().first().usageState == state + 1;
    QVERIFY(isBack || creature->powers().first().usageState == state);
    QVERIFY(isBack || !sure);
    QVERIFY(!isBack || theHistory->eventCount() == 1);
    theHistory->moveTo(-1);
    QCOMPARE(creature->powers().first().usageState, state);
}

void TestEffect::theDeadCanLeave()
{
    TurnCycle cycle([](Creature *, const QList<Effect *> &, bool) { return std::nullopt; });
    cycle.kill(m_rat.get(), false);
    QCOMPARE(theHistory->eventCount(), 0);
    m_rat->takeDamage(50, m_aria.get());
    cycle.kill(m_rat.get(), false);
    QVERIFY(!theEncounter->contains(m_rat.get()));
    QVERIFY(theEncounter->fallen().contains(m_rat.get()));
    QCOMPARE(theEncounter->current(), m_aria.get());
    // The current creature's turn is passed on, unless told otherwise.
    m_aria->takeDamage(100, nullptr);
    cycle.removeDead(false);
    QCOMPARE(theEncounter->current(), m_bren.get());
    QCOMPARE(m_bren->turnCount(), 1);
    m_bren->takeDamage(100, nullptr);
    cycle.removeDead(true);
    QVERIFY(!theEncounter->isRunning());
    QCOMPARE(theHistory->eventText(theHistory->position()), u"* Stop Encounter *"_s);
    theHistory->moveTo(-1);
    QCOMPARE(theEncounter->count(), 3);
    QVERIFY(theEncounter->isRunning());
}

MORVANE_TEST_MAIN(QGuiApplication, TestEffect)
#include "tst_effect.moc"
