// links: morvane_ui
// The Player's Display: what it shows, what it never shows, and how it fits its screen.
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QSettings>
#include <QTest>

#include "creature.h"
#include "encounter.h"
#include "global.h"
#include "playerslistmodel.h"
#include "playersview.h"
#include "playerswidget.h"
#include "playerswindow.h"
#include "testfight.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class PlayersWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listsWhomThePlayersMaySee_data();
    void listsWhomThePlayersMaySee();

private:
    // "H" hidden, "D" disabled, "X" dead, as letters behind a colon: "Rat (1):HX".
    static void setRoster(const QStringList &entries);
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < m_window->listModel()->rowCount(); ++row)
            names << m_window->listModel()->index(row, 0).data().toString();
        return names;
    }

    std::unique_ptr<TestFight> m_fight;
    std::unique_ptr<PlayersWindow> m_window;
};

void PlayersWindowTest::init()
{
    failOnWarnings();
    QSettings().clear();
    m_fight = std::make_unique<TestFight>();
    m_window = std::make_unique<PlayersWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PlayersWindowTest::cleanup()
{
    m_window.reset();
    m_fight.reset();
}

void PlayersWindowTest::setRoster(const QStringList &entries)
{
    QStringList displayNames;
    for (const QString &entry : entries)
        displayNames << entry.section(u':', 0, 0);
    TestFight::setRoster(displayNames);
    for (const QString &entry : entries) {
        Creature *creature = TestFight::creature(entry.section(u':', 0, 0));
        const QString flags = entry.section(u':', 1);
        creature->setHidden(flags.contains(u'H'));
        if (flags.contains(u'D')) {
            CreatureData data = creature->data();
            data.disabled = true;
            creature->assign(data);
        }
        if (flags.contains(u'X'))
            creature->takeDamage(1000, TestFight::creature(u"Aria"_s));
    }
}

void PlayersWindowTest::listsWhomThePlayersMaySee_data()
{
    QTest::addColumn<QStringList>("roster");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("round");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QString>("marked");
    const QStringList four {u"Aria"_s, u"Rat (1):H"_s, u"Borin"_s, u"Rat (2)"_s};
    const QStringList seen {u"Aria"_s, u"Borin"_s, u"Rat (2)"_s};
    const QStringList ambush {u"Rat (1):H"_s, u"Aria"_s, u"Borin"_s};
    const QStringList party {u"Aria"_s, u"Borin"_s};
    QTest::newRow("stopped: characters only") << four << -1 << 0 << party << QString();
    QTest::newRow("running") << four << 0 << 1 << seen << u"Aria"_s;
    QTest::newRow("a hidden one is current") << four << 1 << 1 << seen << u"Aria"_s;
    QTest::newRow("the last") << four << 3 << 1 << seen << u"Rat (2)"_s;
    QTest::newRow("coming up in round 1") << ambush << 0 << 1 << party << u"Aria"_s;
    QTest::newRow("before the first later") << ambush << 0 << 2 << party << u"Borin"_s;
    QTest::newRow("dead and disabled leave")
        << QStringList {u"Aria"_s, u"Rat (1):X"_s, u"Rat (2):D"_s, u"Rat (3):DX"_s} << 0 << 1
        << QStringList {u"Aria"_s} << u"Aria"_s;
    QTest::newRow("all hidden") << QStringList {u"Rat (1):H"_s} << 0 << 1 << QStringList()
                                << QString();
}

void PlayersWindowTest::listsWhomThePlayersMaySee()
{
    QFETCH(QStringList, roster);
    QFETCH(int, current);
    QFETCH(int, round);
    QAbstractItemModelTester tester(m_window->listModel(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    setRoster(roster);
    theEncounter->setPosition({round, current, {}});
    QTEST(names(), "shown");
    const Creature *marked = m_window->listModel()->currentCreature();
    QTEST(marked ? marked->displayName() : QString(), "marked");
}

MORVANE_TEST_MAIN(QApplication, PlayersWindowTest)
#include "tst_playerswindow.moc"
