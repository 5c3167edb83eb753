// links: morvane_ui
// The Player's Display: what it shows, what it never shows, and how it fits its screen.
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryFile>
#include <QTest>
#include <QTimer>

#include "appendevent.h"
#include "creature.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "fittedtext.h"
#include "global.h"
#include "lastkillwidget.h"
#include "playerslistmodel.h"
#include "playerstexts.h"
#include "playersview.h"
#include "playerswindow.h"
#include "readablecolours.h"
#include "rosterevents.h"
#include "switchboard.h"
#include "testfight.h"
#include "testhome.h"
#include "tickerwidget.h"
#include "turnevents.h"
#include "vitalityevents.h"
#include "yourturnwidget.h"

using namespace Qt::StringLiterals;

namespace {

// Two screens side by side, laid out before the application starts.
const bool hasTwoScreens = [] {
    static QTemporaryFile file;
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != "offscreen"_L1 || !file.open())
        return false;
    file.write(R"({"screens": [
        {"name": "Desk", "x": 0, "y": 0, "width": 1280, "height": 800,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "Table & TV", "x": 1280, "y": 0, "width": 1920, "height": 1080,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    file.flush();
    return qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toUtf8());
}();

} // namespace

class PlayersWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listsWhomThePlayersMaySee_data();
    void listsWhomThePlayersMaySee();
    void tellsHealthInBands_data();
    void tellsHealthInBands();
    void coloursAndIcons();
    void keepsWhatTheDMKeeps();
    void namesTheKillsInTheirOrder();
    void saysWhoseTurnItIs();
    void namesTheNext_data();
    void namesTheNext();
    void tickerFollowsTheHistory();
    void fitsTheType_data();
    void fitsTheType();
    void longListShowsTheCurrentRow();
    void changesNothingWhileInFlux();
    void menuAndKeys();
    void curtainHidesAll();
    void takesTheChosenScreen();
    void remembers();
    void outlivesTheFight();

private:
    template <typename Event, typename... Arguments>
    void append(Arguments &&...arguments)
    {
        appendEvent<Event>(std::forward<Arguments>(arguments)...);
    }
    // All of them fight, in this order; the first one is current.
    static void start(const QStringList &displayNames)
    {
        setRoster(displayNames);
        theEncounter->setPosition({1, 0, {}});
    }
    QString text(const char *label) const
    {
        return m_window->findChild<QLabel *>(QLatin1String(label))->text();
    }
    QString cell(int row, int column) const
    {
        return m_window->listModel()->index(row, column).data().toString();
    }
    QStringList ticker() const
    {
        QStringList lines;
        const auto *list = m_window->findChild<QListWidget *>(u"tickerList"_s);
        for (int line = 0; line < list->count(); ++line)
            lines << list->item(line)->text();
        return lines;
    }
    QAction *menuAction(const QString &text) const
    {
        const QList<QMenu *> menus = m_window->findChildren<QMenu *>();
        for (QMenu *menu : menus)
            for (QAction *action : menu->actions())
                if (action->text() == text)
                    return action;
        return nullptr;
    }
    // Triggers the entry of a fresh menu.
    void choose(const QString &text)
    {
        const std::unique_ptr<QMenu> menu(m_window->createPopupMenu());
        QAction *action = menuAction(text);
        QVERIFY2(action, qPrintable(text));
        action->trigger();
    }

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

// --- what a row says ---

void PlayersWindowTest::tellsHealthInBands_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("maxHP");
    QTest::addColumn<int>("currHP");
    QTest::addColumn<int>("preview");
    QTest::addColumn<QString>("cell"); // behind the size of the type
    const QString rat = u"Rat (1)"_s;
    const QString aria = u"Aria"_s;
    const QString heals = u"&Damage 0; Heals 0&black"_s;
    QTest::newRow("whole") << rat << 100 << 100 << 0 << u"&100"_s + heals;
    QTest::newRow("hurt") << rat << 100 << 60 << 0 << u"&90"_s + heals;
    QTest::newRow("half") << rat << 100 << 50 << 0 << u"&50"_s + heals;
    QTest::newRow("a scratch") << rat << 100 << 1 << 0 << u"&50"_s + heals;
    QTest::newRow("a preview shows nothing") << rat << 100 << 60 << -30 << u"&90"_s + heals;
    QTest::newRow("not even death") << rat << 100 << 60 << -90 << u"&90"_s + heals;
    QTest::newRow("hero") << aria << 30 << 10 << 0
                          << u"&34&<b>HP </b>10/30; <b>HS </b>8; <b>AP </b>1&black"_s;
    QTest::newRow("dying") << aria << 30 << -6 << 0
                           << u"&-20&<b>HP </b>-6/30; <b>HS </b>8; <b>AP </b>1&black"_s;
}

void PlayersWindowTest::tellsHealthInBands()
{
    QFETCH(QString, name);
    QFETCH(int, maxHP);
    QFETCH(int, currHP);
    QFETCH(int, preview);
    QFETCH(QString, cell);
    start({name, u"Borin"_s});
    Creature *creature = TestFight::creature(name);
    CreatureData data = creature->data();
    data.maxHP = maxHP;
    data.maxHS = 8;
    creature->assign(data);
    creature->setCurrHS(8);
    creature->setCurrAP(1);
    creature->setCurrHP(currHP);
    creature->setRestAdditions(preview, 0, 0);
    QCOMPARE(this->cell(0, 1).section(u'&', 0, 0).toInt(), m_window->view()->fontSize());
    QCOMPARE(this->cell(0, 1).mid(2), cell);
    creature->clearRestAdditions();
    m_window->setShowDamage(false);
    QCOMPARE(this->cell(0, 1).contains(u"Damage"_s), false);
}

void PlayersWindowTest::coloursAndIcons()
{
    start({u"Aria"_s, u"Borin"_s, u"Cleo"_s, u"Rat (1)"_s});
    TestFight::creature(u"Borin"_s)->setDelayed(true);
    TestFight::creature(u"Cleo"_s)->setReadied(true);
    const auto icon = [this](int row) {
        return qvariant_cast<QIcon>(m_window->listModel()->index(row, 0).data(Qt::DecorationRole))
            .pixmap(16)
            .toImage();
    };
    QList<QImage> icons {icon(0), icon(1), icon(2), icon(3)};
    for (int i = 0; i < icons.size(); ++i)
        QCOMPARE(icons.indexOf(icons.at(i)), i); // each its own
    // The same in words.
    QStringList spoken;
    for (int row = 0; row < 4; ++row)
        spoken
            << m_window->listModel()->index(row, 0).data(Qt::AccessibleDescriptionRole).toString();
    QCOMPARE(spoken,
             (QStringList {u"It is this creature's turn"_s, u"Delayed"_s, u"Readied"_s, {}}));
    QCOMPARE(m_window->listModel()->index(3, 1).data(Qt::AccessibleTextRole).toString(),
             u"100 %; Damage 0; Heals 0"_s);
    theEncounter->setPosition({1, 1, {}});
    QCOMPARE(icon(1), icons.at(0));
    for (const bool dark : {false, true}) {
        QPalette palette = QApplication::palette();
        if (dark) {
            palette.setColor(QPalette::Base, Qt::black);
            palette.setColor(QPalette::Text, Qt::white);
        }
        m_window->view()->setPalette(palette);
        const auto colour = [this](int row, int column) {
            return m_window->listModel()->index(row, column).data(Qt::ForegroundRole);
        };
        const QVariant grey = readableColour("gray"_L1, palette);
        QCOMPARE(colour(0, 0), QVariant(readableColour("blue"_L1, palette)));
        QCOMPARE(colour(0, 1), QVariant());
        QCOMPARE(colour(1, 0), grey);
        QCOMPARE(colour(2, 2), grey);
        QCOMPARE(colour(3, 0), QVariant());
        QCOMPARE(grey == QVariant(QColor("gray"_L1)), !dark);
    }
    QVERIFY(cell(1, 1).endsWith(u"&gray"_s));
}

// Neither the hidden creature nor the name behind an alias stands anywhere, and a hidden creature
// that isn't current changes no pixel.
void PlayersWindowTest::keepsWhatTheDMKeeps()
{
    start({u"Aria"_s, u"Ogre (1)"_s, u"Borin"_s, u"Rat (1)"_s});
    Creature *ogre = TestFight::creature(u"Ogre (1)"_s);
    Creature *aria = TestFight::creature(u"Aria"_s);
    CreatureData data = ogre->data();
    data.maxHP = 7919;
    data.armourClass = 6007;
    ogre->assign(data);
    ogre->setCurrHP(5087);
    append<SetAliasEvent>(ogre, true, u"Stranger"_s);
    append<EffectEvent>(ogre, QList<Creature *> {aria}, QString(), EffectEnd::Special,
                        EffectType::Marked);
    append<DamageEvent>(ogre, aria, 3);
    append<DamageEvent>(ogre, TestFight::creature(u"Rat (1)"_s), 1000);
    m_window->setShowNext(true);
    const auto allText = [this] { return playersTexts(*m_window); };
    QVERIFY2(!allText().contains(u"Ogre"_s), qPrintable(allText()));
    QVERIFY(allText().count(u"Stranger (1)"_s) > 5); // row, mark, ticker, killer, next
    for (const int secret : {7919, 6007, 5087})
        QVERIFY(!allText().contains(QString::number(secret)));
    append<ShowHideEvent>(ogre, true);
    QCOMPARE(text("killName0"), u"<b>Somebody</b>"_s);
    append<RenameCreatureEvent>(u"Ogre (0)"_s, u"Ogre (1)"_s);
    const QString shown = allText();
    QVERIFY2(!shown.contains(u"Ogre"_s) && !shown.contains(u"Stranger"_s), qPrintable(shown));
    m_window->setInitiativeMessage(ogre, u"Initiative?"_s);
    QCOMPARE(allText(), shown);

    const QImage with = m_window->grab().toImage();
    theEncounter->remove(ogre);
    QCOMPARE(allText(), shown);
    QCOMPARE(m_window->grab().toImage(), with);
}

// --- the panels ---

void PlayersWindowTest::namesTheKillsInTheirOrder()
{
    QStringList names {u"Aria"_s, u"Borin"_s};
    for (int i = 1; i <= 12; ++i)
        names << u"Rat (%1)"_s.arg(i);
    start(names);
    for (int i = 12; i >= 1; --i)
        TestFight::creature(u"Rat (%1)"_s.arg(i))
            ->takeDamage(99, TestFight::creature(i % 2 == 0 ? u"Aria"_s : u"Borin"_s));
    TestFight::creature(u"Aria"_s)->setHidden(false);
    QCOMPARE(this->names(), (QStringList {u"Aria"_s, u"Borin"_s}));
    QCOMPARE(m_window->listModel()->kills().first()->name(), u"12"_s);
    for (int slot = 0; slot < 10; ++slot)
        QCOMPARE(text(qPrintable(u"killName%1"_s.arg(slot))),
                 slot % 2 == 0 ? u"<b>Aria</b>"_s : u"<b>Borin</b>"_s);
    // What was removed counts as well; who fell by nobody's hand doesn't.
    Creature *last = TestFight::creature(u"Rat (12)"_s);
    theEncounter->remove(last);
    QVERIFY(m_window->listModel()->kills().values().contains(last));
    for (int i = 2; i <= 12; ++i)
        TestFight::creature(u"Rat (%1)"_s.arg(i))->setHidden(true);
    QCOMPARE(text("killName0"), u"<b>Borin</b>"_s);
    QCOMPARE(text("killName1"), QString());

    auto *kills = m_window->findChild<LastKillWidget *>();
    for (const QSize size : {QSize(400, 100), QSize(2000, 100), QSize(300, 200), QSize(200, 900)}) {
        kills->resize(size);
        const int side = kills->findChild<QLabel *>(u"killPortrait0"_s)->height();
        QVERIFY(side > 0 && side <= size.height() * 3 / 4);
        QCOMPARE(kills->visibleCount(), qMin(10, (size.width() - 4) / (side + 5)));
        QVERIFY(kills->visibleCount() > 0);
        QCOMPARE(kills->findChild<QLabel *>(u"killName9"_s)->isHidden(),
                 kills->visibleCount() < 10);
    }
}

void PlayersWindowTest::saysWhoseTurnItIs()
{
    QCOMPARE(text("nameLabel"), QString());
    m_window->setInitiativeMessage(TestFight::creature(u"Rat (1)"_s), u"Initiative?"_s);
    QCOMPARE(text("nameLabel"), u"<b>Rat (1)</b>"_s);
    QCOMPARE(text("stateLabel"), u"Initiative?"_s);
    m_window->setInitiativeMessage(nullptr, QString());
    QCOMPARE(text("stateLabel"), QString());

    start({u"Aria"_s, u"Rat (1)"_s});
    Creature *aria = TestFight::creature(u"Aria"_s);
    aria->setDelayed(true);
    append<EffectEvent>(nullptr, QList<Creature *> {aria}, u"<i>odd</i> & free"_s,
                        EffectEnd::Special, EffectType::OtherGood);
    QCOMPARE(text("nameLabel"), u"<b>Aria</b>"_s);
    QCOMPARE(text("stateLabel"), u"Delayed"_s);
    QVERIFY(text("hpLabel").startsWith(u"<b>HP </b>30/30"_s));
    QVERIFY(text("conditionLabel").startsWith(u"&lt;i&gt;odd&lt;/i&gt; &amp; free "_s));
    append<DamageEvent>(nullptr, aria, 4);
    QVERIFY(text("hpLabel").startsWith(u"<b>HP </b>26/30"_s));
    m_window->setInitiativeMessage(aria, u"Resting"_s);
    QCOMPARE(text("stateLabel"), u"Delayed; Resting"_s);
    // The type shrinks until the lines are whole.
    YourTurnWidget *panel = m_window->yourTurn();
    for (const int width : {1200, 400, 260}) {
        panel->resize(width, 200);
        const auto *line = panel->findChild<FittedLabel *>(u"hpLabel"_s);
        QVERIFY(line->widthIn(line->font()) <= line->width() || panel->fontSize() == 14);
        QCOMPARE(panel->fontSize() == 28, width == 1200);
    }
    append<NextTurnEvent>();
    QCOMPARE(text("nameLabel"), u"<b>Rat (1)</b>"_s);
    QCOMPARE(text("hpLabel") + text("conditionLabel"), QString());

    setRoster({u"Aria"_s, u"Rat (2):D"_s});
    m_window->setInitiativeMessage(TestFight::creature(u"Rat (2)"_s), u"Initiative?"_s);
    QCOMPARE(text("nameLabel"), u"<b>Aria</b>"_s);
}

void PlayersWindowTest::namesTheNext_data()
{
    QTest::addColumn<QStringList>("roster");
    QTest::addColumn<QString>("next");
    QTest::newRow("the next one") << QStringList {u"Aria"_s, u"Borin"_s} << u"Next: Borin"_s;
    QTest::newRow("past the hidden and the dead")
        << QStringList {u"Aria"_s, u"Rat (1):H"_s, u"Borin:X"_s, u"Rat (2):X"_s, u"Cleo"_s}
        << u"Next: Cleo"_s;
    QTest::newRow("alone") << QStringList {u"Aria"_s, u"Rat (1):H"_s} << QString();
}

void PlayersWindowTest::namesTheNext()
{
    QFETCH(QStringList, roster);
    start(roster);
    QCOMPARE(text("nextLabel"), QString());
    choose(u"Show Who Is Next"_s);
    QTEST(text("nextLabel"), "next");
    if (roster.contains(u"Borin"_s)) {
        append<SetAliasEvent>(TestFight::creature(u"Borin"_s), true, u"B<"_s);
        QCOMPARE(text("nextLabel"), u"Next: B&lt;"_s);
    }
}

void PlayersWindowTest::tickerFollowsTheHistory()
{
    start({u"Aria"_s, u"Rat (1)"_s});
    auto *widget = m_window->findChild<TickerWidget *>();
    for (int amount = 1; amount <= 9; ++amount)
        append<DamageEvent>(TestFight::creature(u"Rat (1)"_s), TestFight::creature(u"Aria"_s),
                            amount);
    append<ShowHideEvent>(TestFight::creature(u"Rat (1)"_s), true); // no line of its own
    for (const int lines : {1, 4}) {
        const int height = widget->minimumSizeHint().height();
        widget->resize(500, height * lines + height / 2);
        QCOMPARE(widget->lineCount(), lines);
        QCOMPARE(ticker().size(), lines);
        QCOMPARE(ticker().first(), u"Somebody -> Damaged 9: Aria"_s);
    }
    theHistory->stepBack();
    theHistory->stepBack();
    QCOMPARE(ticker().first(), u"Rat (1) -> Damaged 8: Aria"_s);

    widget->setFontSize(99);
    QCOMPARE(widget->fontSize(), 28);
    widget->setFontSize(-3);
    QCOMPARE(widget->fontSize(), 14);
    m_window.reset();
    QCOMPARE(QSettings().value(u"playersWindow/tickerFontSize"_s).toInt(), 14);
}

// --- fitting ---

void PlayersWindowTest::fitsTheType_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("zoom");
    for (const int rows : {1, 3, 14, 30})
        for (const int zoom : {100, 125, 200, 400})
            QTest::addRow("%d rows at %d", rows, zoom) << rows << zoom;
}

// The size is the largest at which all is in sight, however the window came to its size.
void PlayersWindowTest::fitsTheType()
{
    QFETCH(int, rows);
    QFETCH(int, zoom);
    QStringList names;
    for (int i = 1; i <= rows; ++i)
        names << u"Rat (%1)"_s.arg(i);
    start(names);
    m_window->setZoom(zoom);
    PlayersView *view = m_window->view();
    const auto isWhole = [view] {
        const int width = view->columnWidth(0) + view->columnWidth(1);
        const int height =
            view->horizontalHeader()->height() + view->model()->rowCount() * view->rowHeight(0);
        return height < view->height() && width < view->width();
    };
    QSet<int> seen;
    for (const int height : {2000, 900, 600, 400, 200, 105, 200, 400, 600, 900, 2000}) {
        view->resize(40 * zoom, height);
        const int size = view->fontSize();
        seen << size;
        QVERIFY(size >= 14 && size <= 28);
        QCOMPARE(view->font().pixelSize(), qRound(size * zoom / 100.0));
        QVERIFY(isWhole() || size == 14);
        // One more would not fit.
        view->setFontMode(size + 1);
        QVERIFY(size == 28 || !isWhole());
        view->setFontMode(0);
        QCOMPARE(view->fontSize(), size);
    }
    QVERIFY(seen.size() > 1 || rows == 1 || rows * zoom >= 3000);
    // Where not all fits, the last column ends with the window all the same.
    view->resize(360, 400);
    QTRY_COMPARE(view->horizontalHeader()->length(), view->viewport()->width());
}

void PlayersWindowTest::longListShowsTheCurrentRow()
{
    QStringList names;
    for (int i = 1; i <= 60; ++i)
        names << u"Rat (%1)"_s.arg(i);
    start(names);
    PlayersView *view = m_window->view();
    for (const int current : {0, 1, 30, 59, 0}) {
        theEncounter->setPosition({2, current, {}});
        const QRect row = view->visualRect(view->model()->index(current, 0));
        QVERIFY(view->viewport()->rect().contains(row.center()));
        QVERIFY(row.bottom() < view->viewport()->height());
        QVERIFY(!view->verticalScrollBar()->isVisible());
    }
    // At the largest zoom too, the window with panels at its sides is no larger than its screen.
    m_window->setZoom(400);
    m_window->addDockWidget(Qt::LeftDockWidgetArea,
                            m_window->findChild<QDockWidget *>(u"yourTurn"_s));
    m_window->addDockWidget(Qt::RightDockWidgetArea,
                            m_window->findChild<QDockWidget *>(u"lastKills"_s));
    const QSize least = m_window->minimumSizeHint();
    QVERIFY(least.boundedTo(m_window->screen()->size()) == least);
    // As low as the window can be, there is a row, and room for no header.
    m_window->setZoom(200);
    view->resize(700, view->minimumHeight());
    QVERIFY(view->visualRect(view->model()->index(0, 0)).bottom() < view->viewport()->height());
    QVERIFY(view->horizontalHeader()->isHidden());
    view->resize(700, 900);
    QVERIFY(!view->horizontalHeader()->isHidden());
}

void PlayersWindowTest::changesNothingWhileInFlux()
{
    start({u"Aria"_s, u"Rat (1)"_s});
    Q_EMIT switchBoard()->doDisableWidgetDisplay();
    TestFight::setRoster({u"Borin"_s});
    theEncounter->setPosition({1, 0, {}});
    QCOMPARE(text("nameLabel"), u"<b>Aria</b>"_s);
    Q_EMIT switchBoard()->doEnableWidgetDisplay();
    QCOMPARE(names(), QStringList {u"Borin"_s});
    QCOMPARE(text("nameLabel"), u"<b>Borin</b>"_s);
}

// --- the window ---

void PlayersWindowTest::menuAndKeys()
{
    const auto texts = [this] {
        const std::unique_ptr<QMenu> menu(m_window->createPopupMenu());
        QStringList result;
        for (const QAction *action : menu->actions())
            result << (action->isSeparator() ? u"-"_s : action->text());
        return result;
    };
    const QStringList beyond {u"-"_s, u"Zoom"_s, u"Full Screen"_s, u"Curtain"_s,
                              u"Show Who Is Next"_s};
    QCOMPARE(texts(),
             (QStringList {u"Your Turn!"_s, u"Last Kills"_s, u"Ticker"_s,
                           u"Hide Damage and Heals"_s, u"Fix Font Size"_s}
              + beyond));
    choose(u"Hide Damage and Heals"_s);
    choose(u"Fix Font Size"_s);
    QCOMPARE(m_window->view()->fixedFontSize(), m_window->view()->fontSize());
    QCOMPARE(texts().mid(3, 2), (QStringList {u"Show Damage and Heals"_s, u"Scale Font Size"_s}));
    choose(u"Scale Font Size"_s);
    QCOMPARE(m_window->view()->fixedFontSize(), 0);
    choose(u"Ticker"_s);
    QVERIFY(!m_window->findChild<QDockWidget *>(u"ticker"_s)->isVisible());

    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QList<int> zooms;
    for (const Qt::Key key :
         {Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_0, Qt::Key_Minus}) {
        QTest::keyClick(m_window.get(), key, Qt::ControlModifier);
        zooms << m_window->zoom();
    }
    QCOMPARE(zooms, (QList<int> {125, 150, 125, 100, 100}));
    QString opened;
    QTimer::singleShot(0, this, [&opened] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            opened = menu->objectName();
            menu->close();
        }
    });
    QTest::keyClick(m_window.get(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(opened, u"playersMenu"_s);
    choose(u"400 %"_s);
    QTest::keyClick(m_window.get(), Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(m_window->zoom(), 400);
}

// Also over a dock that floats.
void PlayersWindowTest::curtainHidesAll()
{
    start({u"Aria"_s, u"Rat (1)"_s});
    auto *floating = m_window->findChild<QDockWidget *>(u"ticker"_s);
    floating->setFloating(true);
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    const auto pictures = [&] {
        return std::pair(m_window->grab().toImage(), floating->grab().toImage());
    };
    const auto open = pictures();
    QTest::keyClick(m_window.get(), Qt::Key_F9);
    QVERIFY(m_window->isCurtained());
    const auto closed = pictures();
    QVERIFY(closed.first != open.first && closed.second != open.second);
    append<DamageEvent>(TestFight::creature(u"Rat (1)"_s), TestFight::creature(u"Aria"_s), 9);
    m_window->setInitiativeMessage(TestFight::creature(u"Rat (1)"_s), u"Initiative?"_s);
    QCOMPARE(pictures(), closed);
    m_window->resize(m_window->size() + QSize(50, 50));
    const QImage larger = m_window->grab().toImage();
    QCOMPARE(larger.pixel(2, 2), larger.pixel(larger.width() - 3, larger.height() - 3));
    choose(u"Curtain"_s);
    QVERIFY(!m_window->isCurtained());
    QVERIFY(m_window->grab().toImage() != larger);
}

void PlayersWindowTest::takesTheChosenScreen()
{
    const QString name = u"Table & TV"_s;
    if (QGuiApplication::screens().size() < 2)
        QSKIP("the platform has one screen");
    QScreen *table = QGuiApplication::screens().at(1);
    QCOMPARE(table->name(), name);
    m_window->setGeometry(100, 100, 900, 600);
    const auto isOnTable = [&] {
        return m_window->isFullScreen() && m_window->geometry() == table->geometry();
    };
    choose(u"Table && TV"_s);
    QTRY_VERIFY(isOnTable());
    QCOMPARE(m_window->fullScreenName(), name);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->cursor().shape(), Qt::BlankCursor, 5000);
    QTest::mouseMove(m_window->windowHandle(), QPoint(50, 50));
    QTRY_VERIFY(m_window->cursor().shape() != Qt::BlankCursor);

    // The screen goes and comes back.
    Q_EMIT qApp->screenRemoved(table);
    QVERIFY(!m_window->isFullScreen());
    QCOMPARE(m_window->size(), QSize(900, 600));
    Q_EMIT qApp->screenAdded(table);
    QTRY_VERIFY(isOnTable());

    const auto dockSize = [&] { return m_window->yourTurn()->size(); };
    QTRY_COMPARE(dockSize().height(), m_window->yourTurn()->sizeHint().height());
    const QSize before = dockSize();
    m_window.reset();
    m_window = std::make_unique<PlayersWindow>();
    m_window->show();
    QTRY_VERIFY(isOnTable());
    QTRY_COMPARE(dockSize(), before);
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QVERIFY(!m_window->isFullScreen());
    QCOMPARE(m_window->size(), QSize(900, 600));
    QTest::keyClick(m_window.get(), Qt::Key_F11);
    QTRY_VERIFY(m_window->isFullScreen());
    QCOMPARE(m_window->fullScreenName(), u"Desk"_s);
    QTest::keyClick(m_window.get(), Qt::Key_F11);
    QVERIFY(!m_window->isFullScreen());

    // A screen that isn't there is waited for.
    m_window.reset();
    QSettings().setValue(u"playersWindow/screen"_s, u"Projector"_s);
    QSettings().setValue(u"playersWindow/fullScreen"_s, true);
    m_window = std::make_unique<PlayersWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(!m_window->isFullScreen());
    QCOMPARE(m_window->size(), QSize(900, 600));
    m_window.reset();
    QCOMPARE(QSettings().value(u"playersWindow/screen"_s).toString(), u"Projector"_s);
    QVERIFY(QSettings().value(u"playersWindow/fullScreen"_s).toBool());
}

void PlayersWindowTest::remembers()
{
    auto *kills = m_window->findChild<QDockWidget *>(u"lastKills"_s);
    m_window->addDockWidget(Qt::RightDockWidgetArea, kills);
    m_window->findChild<QDockWidget *>(u"ticker"_s)->hide();
    m_window->setZoom(150);
    auto *turn = m_window->findChild<QDockWidget *>(u"yourTurn"_s);
    QTest::mousePress(m_window.get(), Qt::LeftButton); // on the edge of a dock
    m_window->resizeDocks({turn}, {230}, Qt::Vertical);
    QTRY_COMPARE(turn->height(), 230);
    m_window->setFontMode(19);
    m_window->setShowDamage(false);
    m_window->setShowNext(true);
    m_window->close();
    QVERIFY(m_window->isHidden());
    m_window = std::make_unique<PlayersWindow>();
    m_window->show();
    QTRY_COMPARE(m_window->findChild<QDockWidget *>(u"yourTurn"_s)->height(), 230);
    kills = m_window->findChild<QDockWidget *>(u"lastKills"_s);
    QCOMPARE(m_window->dockWidgetArea(kills), Qt::RightDockWidgetArea);
    QVERIFY(m_window->findChild<QDockWidget *>(u"ticker"_s)->isHidden());
    QCOMPARE(m_window->zoom(), 150);
    QCOMPARE(m_window->view()->fixedFontSize(), 19);
    QVERIFY(!m_window->listModel()->showsDamage());
    QVERIFY(m_window->yourTurn()->showsNext());
    for (const auto &[value, zoom] : {std::pair(-5, 100), {7000, 400}, {130, 130}}) {
        m_window.reset();
        QSettings().setValue(u"playersWindow/zoom"_s, value);
        QSettings().setValue(u"playersWindow/fontSize"_s, value);
        m_window = std::make_unique<PlayersWindow>();
        QCOMPARE(m_window->zoom(), zoom);
        QCOMPARE(m_window->view()->fixedFontSize(), value < 0 ? 14 : 28);
    }
}

// The encounter and the creatures go before the window.
void PlayersWindowTest::outlivesTheFight()
{
    start({u"Aria"_s, u"Rat (1)"_s});
    TestFight::creature(u"Rat (1)"_s)->takeDamage(99, TestFight::creature(u"Aria"_s));
    m_fight.reset();
    QVERIFY(names().isEmpty());
    QVERIFY(m_window->listModel()->kills().isEmpty());
    QCOMPARE(text("nameLabel") + text("killName0"), QString());
    m_window->refresh();
    QVERIFY(!m_window->grab().isNull());
}

MORVANE_TEST_MAIN(QApplication, PlayersWindowTest)
#include "tst_playerswindow.moc"
