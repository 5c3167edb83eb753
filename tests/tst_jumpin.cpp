// Jumping in: whom the dialog offers, and the events of a delayed and of a readied creature.
// links: morvane_ui
#include <QComboBox>

#include "effect.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "jumpindialog.h"
#include "testhome.h"
#include "turnevents.h"

class TestJumpIn : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void delayedTakesTheTurn();
    void readiedKeepsTheTurnWhereItIs();
    void oneOfSeveralIsAsked_data();
    void oneOfSeveralIsAsked();
    void nothingOfTheTurnsStartIsRaised();

private:
    void trigger(const char *action) { m_fight->action(action)->trigger(); }
    void stepBackTo(int events)
    {
        while (theHistory->position() >= events)
            theHistory->stepBack();
    }
    // Round, order with the current creature in front of a "|", and the turns that each has had.
    QString state() const;

    std::unique_ptr<FightFixture> m_fight;
    Creature *m_aria = nullptr;
    Creature *m_bram = nullptr;
    Creature *m_rat = nullptr;
};

void TestJumpIn::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->openWithThree();
    m_aria = theEncounter->at(0);
    m_bram = theEncounter->at(1);
    m_rat = theEncounter->at(2);
    m_fight->start({30, 20, 10});
    QCOMPARE(state(), QStringLiteral("1: Aria| 0, Bram 0, Rat (A) 0"));
}

QString TestJumpIn::state() const
{
    QStringList rows;
    for (const Creature *creature : theEncounter->creatures())
        rows << QStringLiteral("%1%2 %3").arg(creature->displayName(),
                                              creature == theEncounter->current() ? u"|" : u"",
                                              QString::number(creature->turnCount()));
    return QStringLiteral("%1: ").arg(theEncounter->round()) + rows.join(QStringLiteral(", "));
}

void TestJumpIn::delayedTakesTheTurn()
{
    trigger("delay");
    trigger("nextTurn");
    const QString before = state();
    QCOMPARE(before, QStringLiteral("1: Aria 1, Bram 1, Rat (A)| 0"));
    QVERIFY(m_aria->isDelayed());
    // Ends with the turn that is interrupted.
    appendEvent<EffectEvent>(m_rat, QList<Creature *> {m_bram}, QString(),
                             int(EffectEnd::EndOfOriginsTurn), int(EffectType::Dazed));
    m_rat->setTurnCount(2);
    const int first = theHistory->eventCount();
    QCOMPARE(m_fight->action("jumpIn")->text(), QStringLiteral("Jump In"));
    trigger("jumpIn");
    QCOMPARE(FightFixture::eventClasses(first), QStringList({"RemoveAtEndOfTurn", "JumpIn"}));
    QCOMPARE(state(), QStringLiteral("1: Bram 1, Rat (A) 3, Aria| 1"));
    QVERIFY(!m_aria->isDelayed());
    QVERIFY(!m_fight->action("jumpIn")->isEnabled());
    m_fight->window().onJumpIn(); // nobody waits
    QCOMPARE(theHistory->eventCount(), first + 2);

    stepBackTo(first);
    m_rat->setTurnCount(0);
    QCOMPARE(state(), before);
    QVERIFY(m_aria->isDelayed());
    QVERIFY(m_fight->action("jumpIn")->isEnabled());
}

void TestJumpIn::readiedKeepsTheTurnWhereItIs()
{
    trigger("ready");
    trigger("nextTurn");
    const QString before = state();
    const int first = theHistory->eventCount();
    trigger("jumpIn");
    QCOMPARE(FightFixture::eventClasses(first), QStringList({"EndReady"}));
    QCOMPARE(state(), QStringLiteral("1: Bram 1, Aria 1, Rat (A)| 0"));
    QVERIFY(!m_aria->isReadied());
    stepBackTo(first);
    QCOMPARE(state(), before);
    QVERIFY(m_aria->isReadied());
}

void TestJumpIn::oneOfSeveralIsAsked_data()
{
    QTest::addColumn<int>("index"); // -1 cancels
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<QString>("after");
    const QString before = QStringLiteral("1: Aria 1, Bram 1, Rat (A)| 0");
    QTest::newRow("delayed") << 0 << QStringList {QStringLiteral("JumpIn")}
                             << QStringLiteral("1: Aria 1, Rat (A) 1, Bram| 1");
    QTest::newRow("readied") << 1 << QStringList {QStringLiteral("EndReady")}
                             << QStringLiteral("1: Bram 1, Aria 1, Rat (A)| 0");
    QTest::newRow("cancelled") << -1 << QStringList() << before;
}

void TestJumpIn::oneOfSeveralIsAsked()
{
    QFETCH(int, index);
    trigger("ready"); // Aria
    trigger("delay"); // Bram
    QCOMPARE(m_fight->action("jumpIn")->text(), QStringLiteral("Jump In..."));
    const int first = theHistory->eventCount();
    QStringList offered;
    Answer answer([&] {
        auto *dialog = qobject_cast<JumpInDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        auto *box = dialog->findChild<QComboBox *>(QStringLiteral("whoBox"));
        for (int i = 0; i < box->count(); ++i)
            offered << box->itemText(i);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(box, Qt::Key_Down);
        QTest::keyClick(box, index < 0 ? Qt::Key_Escape : Qt::Key_Return);
        return true;
    });
    QTest::keyClick(&m_fight->window(), Qt::Key_J, Qt::ControlModifier);
    QVERIFY(answer.wasAnswered);
    QCOMPARE(offered, QStringList({"Bram (Delayed)", "Aria (Ready'ed)"}));
    QTEST(FightFixture::eventClasses(first), "events");
    QTEST(state(), "after");
}

void TestJumpIn::nothingOfTheTurnsStartIsRaised()
{
    trigger("delay");
    appendEvent<EffectEvent>(m_rat, QList<Creature *> {m_aria}, QString(), int(EffectEnd::SaveEnds),
                             int(EffectType::OngoingDamage), -5);
    appendEvent<EffectEvent>(m_aria, QList<Creature *> {m_rat}, QString(),
                             int(EffectEnd::StartOfOriginsTurn), int(EffectType::Dazed));
    const int first = theHistory->eventCount();
    trigger("jumpIn");
    QCOMPARE(FightFixture::eventClasses(first), QStringList({"JumpIn"}));
    QCOMPARE(theEncounter->current(), m_aria);
    QCOMPARE(m_aria->currHP(), m_aria->maxHP());
    QCOMPARE(m_rat->effectCount(), 1);
}

MORVANE_TEST_MAIN(QApplication, TestJumpIn)

#include "tst_jumpin.moc"
