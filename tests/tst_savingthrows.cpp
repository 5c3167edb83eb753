// links: morvane_ui
// Saving throws at the end of a turn: the dialog, the events that follow, and the way to death.
#include <QCheckBox>
#include <QScreen>
#include <QScrollArea>

#include "dice.h"
#include "effect.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "savingthrowdialog.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

class SavingThrowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void rollsShowTheirResult();
    void boxesDecide();
    void waysOut_data();
    void waysOut();
    void threeFailuresKill();

private:
    // Does `work` in the next saving throw dialog, of which m_asked and m_canCancel tell then.
    std::function<bool()> inDialog(const std::function<void(SavingThrowDialog &)> &work)
    {
        return [this, work] {
            auto *dialog = qobject_cast<SavingThrowDialog *>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isActiveWindow())
                return false;
            m_asked.clear();
            for (int i = 0; auto *name = dialog->findChild<QLabel *>(rowName("effect", i)); ++i)
                m_asked << name->text();
            m_canCancel = buttonWithText(*dialog, QStringLiteral("Cancel"));
            work(*dialog);
            return true;
        };
    }
    static QString rowName(const char *name, int row)
    {
        return QStringLiteral("%1:%2").arg(QLatin1String(name)).arg(row);
    }
    // Sets the boxes of the one dialog of the next turn, and presses Return.
    void nextTurn(const QList<bool> &saved)
    {
        Answer answer(inDialog([saved](SavingThrowDialog &dialog) {
            for (int i = 0; i < saved.size(); ++i)
                dialog.findChild<QCheckBox *>(rowName("saved", i))->setChecked(saved.at(i));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        }));
        nextTurn();
        QVERIFY(answer.wasAnswered);
    }
    void nextTurn() { m_fight->action("nextTurn")->trigger(); }
    // To Aria's turn; nobody else has saves.
    void finishRound()
    {
        while (theEncounter->current() != m_aria)
            nextTurn();
    }
    static void add(Creature *target, int end, const char *text, int type = EffectType::OtherBad,
                    int amount = 0)
    {
        appendEvent<EffectEvent>(nullptr, QList<Creature *> {target}, QLatin1String(text), end,
                                 type, amount);
    }
    void fall() { appendEvent<DamageEvent>(m_rat, m_aria, m_aria->currHP() + 2); }

    std::unique_ptr<FightFixture> m_fight;
    Creature *m_aria = nullptr;
    Creature *m_bram = nullptr;
    Creature *m_rat = nullptr;
    QStringList m_asked;
    bool m_canCancel = false;
};

// It is Aria's turn, then the rat's, then Bram's.
void SavingThrowsTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->openWithThree();
    m_fight->start({30, 10, 20});
    m_aria = theEncounter->at(0);
    m_rat = theEncounter->at(1);
    m_bram = theEncounter->at(2);
}

void SavingThrowsTest::rollsShowTheirResult()
{
    struct Case {
        const char *text;
        int bonus;
        int roll;
        const char *row;
        const char *adjustment;
        const char *note;
    };
    const char *complexNote = "<p><b>Note</b>, the modifications are complex. Adjustment other "
                              "than +2 may apply.";
    const Case cases[] = {
        {"", 0, 10, "<b> d20</b> 10<b> &gt;=</b> 10 &bull; <b>Saved</b>", "No adjustment", ""},
        {"", 0, 9, "<b> d20</b> 9<b> &lt;</b> 10 &bull; <b>Failed</b>", "No adjustment", ""},
        {"+5", 4, 1, "<b> d20</b> 1<b> Adj</b> +9<b> &gt;=</b> 10 &bull; <b>Saved</b>",
         "<b>Saving Throws </b><font color=blue>+9</font>", ""},
        {"", -13, 20, "<b> d20</b> 20<b> Adj</b> -13<b> &lt;</b> 10 &bull; <b>Failed</b>",
         "<b>Saving Throws </b><font color=red>-13</font>", ""},
        {"+2 against poison", 0, 8,
         "<b> d20</b> 8<b> Adj</b> +2<b> &gt;=</b> 10 &bull; <b>Saved</b>",
         "<b>Saving Throws </b>+2 against poison", complexNote},
    };
    Effect dazed(nullptr, m_aria, EffectType::Dazed, EffectEnd::SaveEnds);
    for (const Case &row : cases) {
        m_aria->setField(&CreatureData::savingThrows, QLatin1String(row.text));
        Effect adjustment(nullptr, m_aria, row.bonus > 0 ? EffectType::Bonus : EffectType::Penalty,
                          EffectEnd::Special, QString(), qAbs(row.bonus), {.savingThrows = true});
        m_aria->addEffect(&adjustment);
        unsigned int seed = 0;
        do
            Dice::seed(++seed);
        while (Dice::roll(20) != row.roll);
        Dice::seed(seed);
        SavingThrowDialog dialog(m_aria, {&dazed}, true);
        const QString shown = dialog.findChild<QLabel *>(QStringLiteral("roll:0"))->text();
        QCOMPARE(shown, QLatin1String(row.row));
        QCOMPARE(!dialog.savedEffects().isEmpty(), shown.contains(QStringLiteral("Saved")));
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("modificationsLabel"))->text(),
                 QLatin1String(row.adjustment)
                     + QStringLiteral("<font color=#333333><p>If you or a player rolled the saving "
                                      "throw, then add the modifier and check the checkbox on "
                                      "successful save.")
                     + QLatin1String(row.note) + QStringLiteral("</font>"));
    }
}

void SavingThrowsTest::boxesDecide()
{
    add(m_rat, EffectEnd::SaveEnds, "one");
    add(m_rat, EffectEnd::EndOfTargetsTurn, "two");
    add(m_rat, EffectEnd::SaveEnds, "three");
    nextTurn();
    add(m_rat, EffectEnd::SaveEnds, "four"); // within its own turn
    const int before = theHistory->eventCount();
    nextTurn({false, true});
    QCOMPARE(m_asked, QStringList({"one:", "three:"}));
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"RemoveOnSave", "RemoveAtEndOfTurn", "NextTurn"}));
    QCOMPARE(m_rat->effectCount(), 2);
    QCOMPARE(m_rat->effectAt(0)->text(), QStringLiteral("one"));
}

void SavingThrowsTest::waysOut_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("way");
    QTest::addColumn<QStringList>("events");
    const QStringList turn {"Ready", "FailedDeathSavingThrow", "NextTurn"};
    const auto row = [](const char *action, const char *way, const QStringList &events) {
        QTest::addRow("%s, %s", action, way)
            << QString::fromLatin1(action) << QString::fromLatin1(way) << events;
    };
    for (const char *way : {"button", "escape", "frame", "close", "quit", "delete"})
        row("nextTurn", way, {});
    for (const char *way : {"escape", "frame"})
        row("ready", way, turn);
    // Nobody confirmed the rolls: the next start takes up the turn before its saves.
    for (const char *way : {"close", "quit", "delete"})
        row("ready", way, {"Ready"});
    row("remove", "quit", {"NextTurn", "RemoveCurrent"});
    row("remove", "delete", {"NextTurn"});
}

void SavingThrowsTest::waysOut()
{
    QFETCH(const QString, action);
    QFETCH(const QString, way);
    QFETCH(const QStringList, events);
    fall();
    if (action == QLatin1String("remove")) {
        // Aria's turn passes on to a dead rat, whose save is asked.
        add(m_rat, EffectEnd::SaveEnds, "one");
        appendEvent<DamageEvent>(m_aria, m_rat, 50);
        m_fight->click(0);
    }
    const QStringList logged = FightFixture::eventClasses() + events;
    Answer answer(inDialog([&](SavingThrowDialog &dialog) {
        dialog.findChild<QCheckBox *>()->setChecked(false);
        if (way == QLatin1String("button"))
            buttonWithText(dialog, QStringLiteral("Cancel"))->click();
        else if (way == QLatin1String("escape"))
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else if (way == QLatin1String("frame"))
            dialog.close();
        else if (way == QLatin1String("close"))
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
    QCOMPARE(m_canCancel, action != QLatin1String("ready"));
    m_fight->close();
    m_fight->open();
    QCOMPARE(FightFixture::eventClasses(), logged);
    QVERIFY(theEncounter->isRunning());
}

void SavingThrowsTest::threeFailuresKill()
{
    fall();
    for (const bool saved : {false, true, false}) {
        nextTurn({saved});
        finishRound();
    }
    QCOMPARE(m_aria->statusText(), QStringLiteral("Dying 2/3"));
    appendEvent<AdministerFirstAidEvent>(m_bram, m_aria);
    QVERIFY(!m_aria->isDying() && m_aria->isStable());
    fall();
    add(m_aria, EffectEnd::SaveEnds, "one"); // not to be saved within this turn
    const int before = theHistory->eventCount();
    nextTurn({false});
    QCOMPARE(m_asked, QStringList {"Death Saving Throw:"});
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"FailedDeathSavingThrow", "NextTurn"}));
    QCOMPARE(m_aria->statusText(), QStringLiteral("Dead"));
    for (const char *step : {"stepBack", "stepBack", "stepForward", "stepForward"})
        m_fight->action(step)->trigger();
    // The dead make no death saves.
    nextTurn();
    nextTurn({true});
    QCOMPARE(m_asked, QStringList {"one:"});
    m_fight->action("startStop")->trigger();
    QVERIFY(m_aria->isDead());
    QCOMPARE(m_aria->failedDeathSaves(), 0);
    QCOMPARE(m_aria->currHP(), -15);
}

MORVANE_TEST_MAIN(QApplication, SavingThrowsTest)
#include "tst_savingthrows.moc"
