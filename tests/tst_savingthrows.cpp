// links: morvane_ui
// Saving throws at the end of a turn: the dialog, the events that follow, and the way to death.
#include <QCheckBox>

#include "datatable.h"
#include "dice.h"
#include "effect.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "savingthrowdialog.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

constexpr ColumnNames<QString, int, int, QString, QString> RollColumns {"text", "bonus", "roll",
                                                                        "row", "modifications"};

// Seeds the dice so that this d20 comes first.
void nextRollIs(int roll)
{
    unsigned int seed = 0;
    do
        Dice::seed(++seed);
    while (Dice::roll(20) != roll);
    Dice::seed(seed);
}

} // namespace

class SavingThrowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void rollsShowTheirResult_data();
    void rollsShowTheirResult();
    void namesAreNoMarkup();
    void boxesDecide();
    void cancelLeavesAllAsItWas_data();
    void cancelLeavesAllAsItWas();
    void withoutCancelTheBoxesAreRead_data();
    void withoutCancelTheBoxesAreRead();
    void delayThatRunsOutCostsTheSaves();
    void passingOverTheDeadAsks();
    void threeFailuresKill();
    void stabilizedNeedsNoSave();
    void endOfTheProgramStopsTheTurn_data();
    void endOfTheProgramStopsTheTurn();

private:
    // Ends the next saving throw dialog; `m_asked` and `m_canCancel` tell of it.
    std::function<bool()> inDialog(std::function<void(SavingThrowDialog &)> work);
    // Sets the boxes from the first on, and presses Return.
    std::function<bool()> tick(const QList<bool> &saved);
    // The action with an answer to its one dialog.
    void trigger(const char *action, const std::function<bool()> &answer);
    void addEffect(Creature *target, int end, const QString &text);
    void fall() { appendEvent<DamageEvent>(m_rat, m_aria, m_aria->currHP() + 2); }
    // Until it is Aria's turn again; nobody else has saves.
    void finishRound();

    std::unique_ptr<FightFixture> m_fight;
    Creature *m_aria = nullptr;
    Creature *m_bram = nullptr;
    Creature *m_rat = nullptr;
    QStringList m_asked; // the effects of the rows
    bool m_canCancel = false;
};

// It is Aria's turn, then the rat's, then Bram's.
void SavingThrowsTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addCharacter(QStringLiteral("Bram"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_fight->start({30, 10, 20});
    m_aria = theEncounter->at(0);
    m_rat = theEncounter->at(1);
    m_bram = theEncounter->at(2);
    m_asked.clear();
}

std::function<bool()> SavingThrowsTest::inDialog(std::function<void(SavingThrowDialog &)> work)
{
    return [this, work] {
        auto *dialog = qobject_cast<SavingThrowDialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isActiveWindow())
            return false;
        for (int i = 0;
             const auto *name = dialog->findChild<QLabel *>(QStringLiteral("effect:%1").arg(i));
             ++i)
            m_asked << name->text();
        m_canCancel = dialog->findChild<QAbstractButton *>(QStringLiteral("cancelButton"));
        work(*dialog);
        if (QTest::currentTestFailed())
            dialog->done(0);
        return true;
    };
}

std::function<bool()> SavingThrowsTest::tick(const QList<bool> &saved)
{
    return inDialog([saved](SavingThrowDialog &dialog) {
        for (int i = 0; i < saved.size(); ++i)
            dialog.findChild<QCheckBox *>(QStringLiteral("saved:%1").arg(i))->setChecked(saved[i]);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
}

void SavingThrowsTest::trigger(const char *action, const std::function<bool()> &answer)
{
    m_asked.clear();
    Answer once(answer);
    m_fight->action(action)->trigger();
    QVERIFY(once.wasAnswered);
}

void SavingThrowsTest::addEffect(Creature *target, int end, const QString &text)
{
    appendEvent<EffectEvent>(nullptr, QList<Creature *> {target}, text, end, EffectType::OtherBad,
                             0);
}

void SavingThrowsTest::finishRound()
{
    while (theEncounter->current() != m_aria)
        m_fight->action("nextTurn")->trigger();
}

void SavingThrowsTest::rollsShowTheirResult_data()
{
    const QString note =
        QStringLiteral("<font color=#333333><p>If you or a player rolled the saving throw, then "
                       "add the modifier and check the checkbox on successful save.%1</font>");
    const QString complex = QStringLiteral("<p><b>Note</b>, the modifications are complex. "
                                           "Adjustment other than %1 may apply.");
    addColumns<QString, int, int, QString, QString>(RollColumns);
    QTest::newRow("ten saves") << QString() << 0 << 10
                               << "<b> d20</b> 10<b> &gt;=</b> 10 &bull; <b>Saved</b>"
                               << "No adjustment" + note.arg(QString());
    QTest::newRow("nine fails") << QString() << 0 << 9
                                << "<b> d20</b> 9<b> &lt;</b> 10 &bull; <b>Failed</b>"
                                << "No adjustment" + note.arg(QString());
    QTest::newRow("a natural one saves")
        << "+5" << 4 << 1 << "<b> d20</b> 1<b> Adj</b> +9<b> &gt;=</b> 10 &bull; <b>Saved</b>"
        << "<b>Saving Throws </b><font color=blue>+9</font>" + note.arg(QString());
    QTest::newRow("penalty") << QString() << -3 << 12
                             << "<b> d20</b> 12<b> Adj</b> -3<b> &lt;</b> 10 &bull; <b>Failed</b>"
                             << "<b>Saving Throws </b><font color=red>-3</font>"
            + note.arg(QString());
    QTest::newRow("words") << "+2 against poison" << 0 << 8
                           << "<b> d20</b> 8<b> Adj</b> +2<b> &gt;=</b> 10 &bull; <b>Saved</b>"
                           << "<b>Saving Throws </b>+2 against poison"
            + note.arg(complex.arg(QStringLiteral("+2")));
}

void SavingThrowsTest::rollsShowTheirResult()
{
    const auto [text, bonus, roll, row, modifications] =
        fetch<QString, int, int, QString, QString>(RollColumns);
    m_aria->setField(&CreatureData::savingThrows, text);
    Effect adjustment(nullptr, m_aria, bonus > 0 ? EffectType::Bonus : EffectType::Penalty,
                      EffectEnd::Special, QString(), qAbs(bonus), {.savingThrows = true});
    m_aria->addEffect(&adjustment);
    Effect effect(nullptr, m_aria, EffectType::Dazed, EffectEnd::SaveEnds);
    nextRollIs(roll);
    SavingThrowDialog dialog(m_aria, {&effect}, true);
    const auto shown = [&](const char *name) {
        return dialog.findChild<QLabel *>(QLatin1String(name))->text();
    };
    QCOMPARE(shown("roll:0"), row);
    QCOMPARE(shown("modificationsLabel"), modifications);
    QCOMPARE(dialog.savedEffects().size(), row.contains(QStringLiteral("Saved")) ? 1 : 0);
}

void SavingThrowsTest::namesAreNoMarkup()
{
    m_rat->setAlias(QStringLiteral("<u>Old & Grey</u>"));
    m_rat->setAliasMode(1);
    const QString name = m_rat->displayName().toHtmlEscaped();
    Effect effect(nullptr, m_rat, EffectType::OtherBad, EffectEnd::SaveEnds,
                  QStringLiteral("<s>rot</s> & woe"));
    SavingThrowDialog dialog(m_rat, {&effect}, true);
    QCOMPARE(dialog.findChild<QLabel *>()->text(),
             QStringLiteral("Saving Throws for <b>%1</b>:").arg(name));
    QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("effect:0"))->text(),
             QStringLiteral("&lt;s&gt;rot&lt;/s&gt; &amp; woe:"));
}

void SavingThrowsTest::boxesDecide()
{
    finishRound();
    addEffect(m_rat, EffectEnd::SaveEnds, QStringLiteral("one"));
    addEffect(m_rat, EffectEnd::EndOfTargetsTurn, QStringLiteral("two"));
    addEffect(m_rat, EffectEnd::SaveEnds, QStringLiteral("three"));
    m_fight->action("nextTurn")->trigger();
    addEffect(m_rat, EffectEnd::SaveEnds, QStringLiteral("four")); // within its own turn
    const int before = theHistory->eventCount();
    trigger("nextTurn", tick({false, true}));
    QCOMPARE(m_asked, QStringList({"one:", "three:"}));
    QVERIFY(m_canCancel);
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"RemoveOnSave", "RemoveAtEndOfTurn", "NextTurn"}));
    QStringList left;
    for (const Effect *effect : m_rat->effects())
        left << effect->text();
    QCOMPARE(left, QStringList({"one", "four"}));
}

void SavingThrowsTest::cancelLeavesAllAsItWas_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"button", "escape", "frame"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void SavingThrowsTest::cancelLeavesAllAsItWas()
{
    QFETCH(const QString, way);
    fall();
    const int before = theHistory->eventCount();
    const CreatureState state = m_aria->state();
    trigger("nextTurn", inDialog([&way](SavingThrowDialog &dialog) {
                if (way == QLatin1String("button"))
                    dialog.findChild<QAbstractButton *>(QStringLiteral("cancelButton"))->click();
                else if (way == QLatin1String("escape"))
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                else
                    dialog.close();
            }));
    QCOMPARE(m_asked, QStringList {"Death Saving Throw:"});
    QCOMPARE(theHistory->eventCount(), before);
    QCOMPARE(theEncounter->current(), m_aria);
    QCOMPARE(m_aria->effectCount(), 0);
    QVERIFY(m_aria->state() == state);
}

void SavingThrowsTest::withoutCancelTheBoxesAreRead_data()
{
    QTest::addColumn<bool>("byFrame");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("escape, failed") << false << false;
    QTest::newRow("escape, saved") << false << true;
    QTest::newRow("frame, failed") << true << false;
}

void SavingThrowsTest::withoutCancelTheBoxesAreRead()
{
    QFETCH(const bool, byFrame);
    QFETCH(const bool, isSaved);
    fall();
    const int before = theHistory->eventCount();
    trigger("ready", inDialog([&](SavingThrowDialog &dialog) {
                dialog.findChild<QCheckBox *>()->setChecked(isSaved);
                if (byFrame)
                    dialog.close();
                else
                    QTest::keyClick(&dialog, Qt::Key_Escape);
            }));
    QVERIFY(!m_canCancel);
    QStringList events {"Ready", "FailedDeathSavingThrow", "NextTurn"};
    if (isSaved)
        events.removeAt(1);
    QCOMPARE(FightFixture::eventClasses(before), events);
    QCOMPARE(m_aria->failedDeathSaves(), isSaved ? 0 : 1);
}

void SavingThrowsTest::delayThatRunsOutCostsTheSaves()
{
    addEffect(m_rat, EffectEnd::SaveEnds, QStringLiteral("one"));
    appendEvent<EffectEvent>(nullptr, QList<Creature *> {m_rat}, QString(), EffectEnd::SaveEnds,
                             EffectType::OngoingDamage, -5);
    appendEvent<DelayEvent>(m_rat);
    const int before = theHistory->eventCount();
    trigger("nextTurn", tick({true, false}));
    QVERIFY(!m_canCancel);
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"JumpIn", "RemoveOnSave", "OnGoingDamage"}));
    QCOMPARE(theEncounter->current(), m_rat);
}

void SavingThrowsTest::passingOverTheDeadAsks()
{
    addEffect(m_rat, EffectEnd::SaveEnds, QStringLiteral("one"));
    appendEvent<DamageEvent>(m_aria, m_rat, 50);
    const int before = theHistory->eventCount();
    trigger("nextTurn", inDialog([](SavingThrowDialog &dialog) { dialog.reject(); }));
    QVERIFY(m_canCancel);
    QCOMPARE(FightFixture::eventClasses(before), QStringList {"NextTurn"});
    QCOMPARE(theEncounter->current(), m_rat);
    trigger("nextTurn", tick({true}));
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"NextTurn", "RemoveOnSave", "NextTurn"}));
    QCOMPARE(theEncounter->current(), m_bram);
}

void SavingThrowsTest::threeFailuresKill()
{
    fall();
    QVERIFY(m_aria->isDying() && !m_aria->isStable());
    for (const bool saved : {false, true, false}) {
        trigger("nextTurn", tick({saved}));
        finishRound();
    }
    QCOMPARE(m_aria->statusText(), QStringLiteral("Dying 2/3"));
    appendEvent<AdministerFirstAidEvent>(m_bram, m_aria);
    QVERIFY(!m_aria->isDying() && m_aria->isStable());
    QCOMPARE(m_aria->failedDeathSaves(), 2);
    fall();
    addEffect(m_aria, EffectEnd::SaveEnds, QStringLiteral("one"));
    // The effect was set within her turn, so that only death is at stake.
    int before = theHistory->eventCount();
    trigger("nextTurn", tick({false}));
    QCOMPARE(m_asked, QStringList {"Death Saving Throw:"});
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"FailedDeathSavingThrow", "NextTurn"}));
    QCOMPARE(m_aria->statusText(), QStringLiteral("Dead"));
    m_fight->action("stepBack")->trigger();
    m_fight->action("stepBack")->trigger();
    QCOMPARE(m_aria->statusText(), QStringLiteral("Dying 2/3"));
    m_fight->action("stepForward")->trigger();
    m_fight->action("stepForward")->trigger();
    // The dead are passed over, but what ails them still asks for its save.
    m_fight->action("nextTurn")->trigger();
    before = theHistory->eventCount();
    trigger("nextTurn", tick({true}));
    QCOMPARE(m_asked, QStringList {"one:"});
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"NextTurn", "RemoveOnSave", "NextTurn"}));
    m_fight->action("startStop")->trigger();
    QVERIFY(m_aria->isDead());
    QCOMPARE(m_aria->failedDeathSaves(), 0);
    QCOMPARE(m_aria->currHP(), -15);
}

void SavingThrowsTest::stabilizedNeedsNoSave()
{
    fall();
    trigger("nextTurn", tick({false}));
    finishRound();
    appendEvent<StabilizeEvent>(m_bram, m_aria);
    m_fight->action("nextTurn")->trigger();
    QCOMPARE(m_aria->statusText(), QStringLiteral("Stabilized 1/3"));
    finishRound();
    appendEvent<DamageEvent>(m_rat, m_aria, 1);
    trigger("nextTurn", tick({false}));
    QCOMPARE(m_aria->statusText(), QStringLiteral("Dying 2/3"));
}

void SavingThrowsTest::endOfTheProgramStopsTheTurn_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("way");
    for (const char *action : {"nextTurn", "ready", "remove"})
        for (const char *way : {"close", "quit", "delete"})
            QTest::addRow("%s, %s", action, way)
                << QString::fromLatin1(action) << QString::fromLatin1(way);
}

// Nothing is logged that the DM hasn't confirmed, and the log is one that the next start takes up.
void SavingThrowsTest::endOfTheProgramStopsTheTurn()
{
    QFETCH(const QString, action);
    QFETCH(const QString, way);
    fall();
    QStringList logged = FightFixture::eventClasses();
    if (action == QLatin1String("ready"))
        logged << QStringLiteral("Ready");
    if (action == QLatin1String("remove")) {
        // The dead rat's save is asked when Aria, who leaves, passes the turn on.
        addEffect(m_rat, EffectEnd::SaveEnds, QStringLiteral("one"));
        appendEvent<DamageEvent>(m_aria, m_rat, 50);
        m_fight->click(0);
        logged = FightFixture::eventClasses() << QStringLiteral("NextTurn");
        if (way != QLatin1String("delete"))
            logged << QStringLiteral("RemoveCurrent");
    }
    Answer answer(inDialog([&](SavingThrowDialog &dialog) {
        dialog.findChild<QCheckBox *>()->setChecked(true);
        if (way == QLatin1String("close"))
            m_fight->window().close();
        else if (way == QLatin1String("quit"))
            QCoreApplication::quit();
        else
            m_fight->close();
    }));
    QTimer::singleShot(0, qApp, [&] {
        m_fight->action(qPrintable(action))->trigger();
        QCoreApplication::exit();
    });
    QCoreApplication::exec();
    QVERIFY(answer.wasAnswered);
    if (way != QLatin1String("delete"))
        QCOMPARE(FightFixture::eventClasses(), logged);
    m_fight->close();
    m_fight->open();
    QCOMPARE(FightFixture::eventClasses(), logged);
    QVERIFY(theEncounter->isRunning());
}

MORVANE_TEST_MAIN(QApplication, SavingThrowsTest)
#include "tst_savingthrows.moc"
