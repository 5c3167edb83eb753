// links: morvane_ui
// The dock with the effects of the selected creature, as a user works it.
#include <QAbstractItemModelTester>
#include <QDockWidget>
#include <QMenuBar>

#include "effect.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "testhome.h"

class EffectListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsTheOneSelectedCreature();
    void followsTheHistory();
    void clickRemovesThatEffect();

private:
    void put(int row, EffectType::Code type) const
    {
        appendEvent<EffectEvent>(nullptr, QList<Creature *> {theEncounter->at(row)}, QString(),
                                 EffectEnd::Special, type);
    }
    QTableView *list() const
    {
        return m_fight->window().findChild<QTableView *>(QStringLiteral("effectsList"));
    }
    QStringList texts() const
    {
        QStringList result;
        for (int row = 0; row < list()->model()->rowCount(); ++row)
            result << list()->model()->index(row, 1).data().toString().section(u' ', 0, 0);
        return result;
    }
    void clickIn(int row, int column) const
    {
        const QPoint place = list()->visualRect(list()->model()->index(row, column)).center();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
    }
    QDockWidget *dock(const char *name) const
    {
        return m_fight->window().findChild<QDockWidget *>(QLatin1String(name));
    }

    std::unique_ptr<FightFixture> m_fight;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void EffectListTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->open();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        list()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("1"));
    for (const auto type : {EffectType::Dazed, EffectType::Prone, EffectType::Slowed})
        put(0, type);
    put(1, EffectType::Blinded);
}

void EffectListTest::cleanup()
{
    m_tester.reset();
    m_fight.reset();
}

void EffectListTest::showsTheOneSelectedCreature()
{
    QCOMPARE(texts(), QStringList());
    m_fight->click(0);
    QCOMPARE(texts(), QStringList({"Dazed", "Prone", "Slowed"}));
    m_fight->click(1, Qt::ControlModifier);
    QCOMPARE(texts(), QStringList());
    m_fight->click(1);
    QCOMPARE(texts(), QStringList({"Blinded"}));
    m_fight->window().clearSelection();
    QCOMPARE(texts(), QStringList());
}

void EffectListTest::followsTheHistory()
{
    m_fight->click(0);
    put(0, EffectType::Weakened);
    put(1, EffectType::Weakened);
    QCOMPARE(texts(), QStringList({"Dazed", "Prone", "Slowed", "Weakened"}));
    for (int step = 0; step < 4; ++step)
        m_fight->action("stepBack")->trigger();
    QCOMPARE(texts(), QStringList({"Dazed", "Prone"}));
    theHistory->moveTo(theHistory->eventCount() - 1);
    QCOMPARE(texts(), QStringList({"Dazed", "Prone", "Slowed", "Weakened"}));
    // An undone event takes its effect with it when another one replaces it.
    m_fight->action("stepBack")->trigger();
    m_fight->action("stepBack")->trigger();
    put(0, EffectType::Stunned);
    QCOMPARE(texts(), QStringList({"Dazed", "Prone", "Slowed", "Stunned"}));
}

void EffectListTest::clickRemovesThatEffect()
{
    m_fight->click(0);
    const int before = theHistory->eventCount();
    clickIn(1, 0);
    QCOMPARE(FightFixture::eventClasses(before), QStringList({"RemoveOnGoing"}));
    QCOMPARE(texts(), QStringList({"Dazed", "Slowed"}));
    m_fight->action("stepBack")->trigger();
    QCOMPARE(texts(), QStringList({"Dazed", "Prone", "Slowed"}));
    m_fight->action("stepForward")->trigger();
    QCOMPARE(texts(), QStringList({"Dazed", "Slowed"}));
    // The keys still go where they went before.
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(m_fight->table()));
}

MORVANE_TEST_MAIN(QApplication, EffectListTest)
#include "tst_effectlist.moc"
