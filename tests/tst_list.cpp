// The initiative list and the list of the history, worked through the real window.
// links: morvane_ui
#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>

#include "appendevent.h"
#include "creaturelistmodel.h"
#include "creaturetableview.h"
#include "eventlistmodel.h"
#include "fightfixture.h"
#include "flatdialog.h"
#include "progressbar.h"
#include "readablecolours.h"
#include "richtextdelegate.h"
#include "rosterevents.h"
#include "tables.h"
#include "testhome.h"
#include "vitalityevents.h"

using Rows = QList<int>;
using Model = CreatureListModel;

class TestList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tellsEachState_data();
    void tellsEachState();
    void showsTheColumnsOfACreature();
    void keepsTheSelectionOnItsCreatures();

    void selectsByMouse_data();
    void selectsByMouse();
    void selectsByKey_data();
    void selectsByKey();
    void actsOnAClick();
    void menuActsOnTheSelection_data();
    void menuActsOnTheSelection();

    void remembersItsColumns();
    void opensTheMenuOfTheHeader();

    void listsTheHistory();
    void jumpsOnAClick();

    void mapsColoursForADarkPalette();
    void centresTextOnDemand();

private:
    QString text(const Creature *creature, int column, int role = Qt::DisplayRole) const;
    QPoint cell(int row, int column) const;
    void click(int row, int column, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {}) const;
    void doubleClick(int row, int column, Qt::MouseButton button = Qt::LeftButton) const;
    // "menu", "form" or nothing.
    static QString whatBlocks();
    void setRoster(int monsters) const;
    // Right-clicks on the conditions of the row, or with -1 presses the menu key, and chooses the
    // entry, if any; gives all entries.
    QStringList menu(int row, const QString &entry = {}) const;

    std::unique_ptr<FightFixture> m_fixture;
    CreatureTableView *m_view = nullptr;
    Model *m_model = nullptr;
    Creature *m_hero = nullptr;
    Creature *m_rat = nullptr;
};

void TestList::init()
{
    failOnWarnings();
    m_fixture = std::make_unique<FightFixture>();
    m_fixture->folder.addCharacter(QStringLiteral("Aria"));
    m_fixture->folder.addMonster(QStringLiteral("Rat"), 20);
    m_fixture->folder.addMonster(QStringLiteral("Gnat"), 1);
    m_fixture->open();
    m_view = m_fixture->find<CreatureTableView>("initiativeList");
    m_model = qobject_cast<Model *>(m_view->model());
    m_hero = FightFixture::character(QStringLiteral("Aria"));
    m_rat = FightFixture::monster(QStringLiteral("Rat"), QStringLiteral("1"));
    QVERIFY(m_hero && m_rat);
}

void TestList::cleanup()
{
    m_fixture.reset();
}

void TestList::setRoster(int monsters) const
{
    QList<Creature *> creatures {m_hero};
    for (int i = 0; i < monsters; ++i)
        creatures << FightFixture::monster(QStringLiteral("Rat"), QString::number(i + 1));
    theEncounter->setOrder(CreatureList(creatures));
}

QString TestList::text(const Creature *creature, int column, int role) const
{
    return m_model->data(m_model->index(theEncounter->indexOf(creature), column), role).toString();
}

QPoint TestList::cell(int row, int column) const
{
    return m_view->visualRect(m_model->index(row, column)).center();
}

void TestList::click(int row, int column, Qt::MouseButton button,
                     Qt::KeyboardModifiers modifiers) const
{
    QTest::mouseClick(m_view->viewport(), button, modifiers, cell(row, column));
}

void TestList::doubleClick(int row, int column, Qt::MouseButton button) const
{
    const QPoint place = cell(row, column);
    QTest::mouseClick(m_view->viewport(), button, {}, place);
    QTest::mouseEvent(QTest::MouseDClick, m_view->viewport(), button, {}, place);
    QTest::mouseRelease(m_view->viewport(), button, {}, place);
}

QString TestList::whatBlocks()
{
    if (QApplication::activePopupWidget())
        return QStringLiteral("menu");
    return activeFlatDialog() ? QStringLiteral("form") : QString();
}

// --- content ---

void TestList::tellsEachState_data()
{
    useTable(QStringLiteral("liststates"), {"state", "who", "name", "tip", "effects"});
}

void TestList::tellsEachState()
{
    QFETCH(QString, state);
    QFETCH(QString, who);
    setRoster(1);
    Creature *creature = who == u"Aria" ? m_hero : m_rat;
    if (state == QLatin1String("delayed"))
        creature->setDelayed(true);
    else if (state == QLatin1String("readied"))
        creature->setReadied(true);
    else if (state == QLatin1String("hidden"))
        creature->setHidden(true);
    else if (state == QLatin1String("dead"))
        creature->takeDamage(100, nullptr);
    else if (state == QLatin1String("dying"))
        creature->takeDamage(35, nullptr);
    else if (state == QLatin1String("current"))
        theEncounter->setCurrentIndex(theEncounter->indexOf(creature));

    QTEST(text(creature, Model::NameColumn), "name");
    QTEST(text(creature, Model::IconColumn, Qt::ToolTipRole), "tip");
    QTEST(text(creature, Model::EffectsColumn), "effects");
    // A screen reader says the state, and no mark-up.
    const QString tip = text(creature, Model::IconColumn, Qt::ToolTipRole);
    QCOMPARE(text(creature, Model::IconColumn, Qt::AccessibleTextRole),
             tip.startsWith(u"Right-click") ? QString() : tip);
    for (const int column : {Model::NameColumn, Model::DefencesColumn, Model::HealthColumn}) {
        const QString spoken = text(creature, column, Qt::AccessibleTextRole);
        QVERIFY(!spoken.isEmpty() && !spoken.contains(u'<') && !spoken.contains(u';'));
    }
    const bool greyed = text(creature, Model::NameColumn).contains(QLatin1String("gray"));
    const int row = theEncounter->indexOf(creature);
    for (int column = 0; column < Model::ColumnCount; ++column)
        QCOMPARE(m_model->index(row, column).data(Qt::ForegroundRole).isValid(), greyed);
}

void TestList::showsTheColumnsOfACreature()
{
    setRoster(1);
    theEncounter->setCurrentIndex(1);
    m_hero->setInitRoll(14);
    QCOMPARE(text(m_hero, Model::InitiativeColumn), QStringLiteral("14"));
    m_view->setColumnWidth(Model::InitiativeColumn, 60);
    QCOMPARE(text(m_hero, Model::InitiativeColumn), m_hero->initiativeText(false, 1));
    QCOMPARE(text(m_hero, Model::DefencesColumn),
             QStringLiteral("<b>AC</b>17 <b>F</b>15 <b>R</b>13 <b>W</b>12"));

    QCOMPARE(text(m_hero, Model::HealthColumn), QStringLiteral("100;30;black"));
    m_hero->takeDamage(12, nullptr);
    QCOMPARE(text(m_hero, Model::HealthColumn), QStringLiteral("60;18/30;black"));
    m_hero->setTempHP(4);
    QCOMPARE(text(m_hero, Model::HealthColumn), QStringLiteral("60;18+4/30;black"));
    m_rat->setHidden(true);
    QCOMPARE(text(m_rat, Model::HealthColumn), QStringLiteral("100;20;gray"));
    Creature *minion = FightFixture::monster(QStringLiteral("Gnat"), QStringLiteral("1"));
    theEncounter->insert(0, minion);
    QCOMPARE(text(minion, Model::HealthColumn), QStringLiteral("100;Minion;black"));
    // A name from a file isn't markup.
    minion->setName(QStringLiteral("<b>&"));
    QCOMPARE(text(minion, Model::NameColumn), QStringLiteral("Gnat (&lt;b&gt;&amp;)"));
    QVERIFY(!m_model->data(m_model->index(0, Model::DescriptionColumn), Qt::DisplayRole).isValid());
}

// --- following the encounter ---

void TestList::keepsTheSelectionOnItsCreatures()
{
    setRoster(4);
    const QList<Creature *> chosen {theEncounter->at(1), theEncounter->at(3)};
    m_model->setSelectedRows({1, 3});
    const auto selected = [&] { return m_fixture->window().selectedCreatures(); };
    QCOMPARE(selected(), chosen);

    m_rat->takeDamage(3, nullptr);
    theEncounter->setCurrentIndex(2);
    QCoreApplication::processEvents();
    QCOMPARE(selected(), chosen);
    theEncounter->insert(0, FightFixture::monster(QStringLiteral("Gnat"), QStringLiteral("1")));
    QCOMPARE(m_view->selectedRows(), (Rows {2, 4}));
    QCOMPARE(selected(), chosen);
    theEncounter->move(4, 0);
    QCOMPARE(m_view->selectedRows(), (Rows {0, 3}));
    theEncounter->remove(chosen.at(1));
    QCOMPARE(selected(), (QList<Creature *> {chosen.at(0)}));
}

// --- selection ---

void TestList::selectsByMouse_data()
{
    useTable(QStringLiteral("listclicks"),
             {"before", "row", "column", "button", "modifiers", "after", "opens"});
}

void TestList::selectsByMouse()
{
    QFETCH(QString, before);
    QFETCH(QString, row);
    QFETCH(QString, column);
    QFETCH(QString, button);
    QFETCH(QString, modifiers);
    QFETCH(QString, after);
    const QHash<QString, int> columns {{QStringLiteral("icon"), Model::IconColumn},
                                       {QStringLiteral("name"), Model::NameColumn},
                                       {QStringLiteral("init"), Model::InitiativeColumn},
                                       {QStringLiteral("health"), Model::HealthColumn},
                                       {QStringLiteral("effects"), Model::EffectsColumn}};
    QVERIFY(columns.contains(column));
    Qt::KeyboardModifiers held;
    held.setFlag(Qt::ControlModifier, modifiers.contains(QStringLiteral("control")));
    held.setFlag(Qt::ShiftModifier, modifiers.contains(QStringLiteral("shift")));
    held.setFlag(Qt::MetaModifier, modifiers.contains(QStringLiteral("meta")));
    m_fixture->window().resize(1000, 700);
    setRoster(8);
    m_model->setSelectedRows(numbers(before));
    const bool isBelow = row == u"-1";
    const QPoint place =
        cell(isBelow ? 8 : row.toInt(), columns.value(column)) + QPoint(0, isBelow ? 40 : 0);
    QString opened;
    whenDialogRuns([&] {
        opened = whatBlocks();
        endMenuOrDialog();
    });
    QTest::mouseClick(m_view->viewport(), button == u"left" ? Qt::LeftButton : Qt::RightButton,
                      held, place);
    QCoreApplication::processEvents();
    QTEST(opened, "opens");
    QCOMPARE(m_view->selectedRows(), numbers(after));
    QCOMPARE(m_fixture->window().selectedRows(), numbers(after));
}

void TestList::selectsByKey_data()
{
    useTable(QStringLiteral("listkeys"), {"before", "key", "after"});
}

void TestList::selectsByKey()
{
    QFETCH(QString, before);
    QFETCH(QString, key);
    QFETCH(QString, after);
    const QKeyCombination pressed = QKeySequence(key)[0];
    setRoster(8);
    m_view->setFocus();
    // The toolkit's own current cell stands at an edge and must not matter.
    for (const int current : {0, 8}) {
        m_view->selectionModel()->setCurrentIndex(m_model->index(current, 0),
                                                  QItemSelectionModel::NoUpdate);
        m_model->setSelectedRows(numbers(before));
        QTest::keyClick(m_view, pressed.key(), pressed.keyboardModifiers());
        QCOMPARE(m_view->selectedRows(), numbers(after));
    }
}

void TestList::actsOnAClick()
{
    m_fixture->window().resize(1000, 700);
    setRoster(3);
    auto *hpBox = m_fixture->window().findChild<QSpinBox *>();
    m_view->setFocus();
    click(1, Model::NameColumn);
    QVERIFY(!hpBox->hasFocus());
    click(1, Model::HealthColumn);
    QTRY_VERIFY(hpBox->hasFocus());

    click(2, Model::IconColumn);
    QCOMPARE(theEncounter->count(), 4);
    Creature *dead = theEncounter->at(2);
    dead->takeDamage(100, nullptr);
    m_model->setSelectedRows({0, 1});
    click(2, Model::IconColumn);
    QCOMPARE(theEncounter->count(), 3);
    QVERIFY(!theEncounter->contains(dead));
    QCOMPARE(theHistory->eventCount(), 1);
}

QStringList TestList::menu(int row, const QString &entry) const
{
    QStringList entries;
    whenDialogRuns([&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        for (QAction *action : menu->actions()) {
            entries << action->text();
            if (action->text() == entry)
                menu->setActiveAction(action);
        }
        QTest::keyClick(menu, entry.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    });
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
    if (row < 0)
        QCoreApplication::sendEvent(m_view, &byKey);
    else
        click(row, Model::EffectsColumn, Qt::RightButton);
    return entries;
}

void TestList::menuActsOnTheSelection_data()
{
    useTable(QStringLiteral("listmenu"), {"entry", "event", "after"});
}

void TestList::menuActsOnTheSelection()
{
    QFETCH(QString, entry);
    QFETCH(QString, event);
    QFETCH(QString, after);
    m_fixture->window().resize(1000, 700);
    setRoster(3);
    m_hero->setName(QStringLiteral("A&a"));
    m_hero->syncShadows();
    m_hero->setNameBefore(m_hero->name());
    m_rat->setAlias(QStringLiteral("Nib"));
    theEncounter->setCurrentIndex(0);
    m_model->setSelectedRows({1, 2});
    QCoreApplication::processEvents();
    QStringList expected {QStringLiteral("Conditions and Effects..."),
                          QStringLiteral("Marked by A&&a"),
                          QStringLiteral("Remove Selected"),
                          QStringLiteral("Initiative Up"),
                          QStringLiteral("Initiative Down"),
                          QStringLiteral("Show Alias"),
                          QStringLiteral("Set Alias..."),
                          QStringLiteral("Need help selecting?")};
    QCOMPARE(menu(1, entry), expected);
    QCOMPARE(theHistory->eventCount(), event.isEmpty() ? 0 : 1);
    for (int i = 0; i < theHistory->eventCount(); ++i)
        QCOMPARE(QString::fromLatin1(theHistory->eventAt(i)->metaObject()->className()), event);
    QCOMPARE(m_view->selectedRows(), numbers(after));

    if (!entry.isEmpty())
        return;
    // Nobody's turn, and nothing to show.
    theEncounter->setCurrentIndex(-1);
    m_rat->setAliasMode(1);
    expected.removeAt(1);
    expected.replace(4, QStringLiteral("Hide Alias"));
    QCOMPARE(menu(2), expected);
    QCOMPARE(menu(-1), expected);
}

// --- columns ---

void TestList::remembersItsColumns()
{
    m_view->setColumnWidth(Model::NameColumn, 177);
    m_view->setColumnWidth(Model::DefencesColumn, 133);
    m_view->setColumnHidden(Model::DefencesColumn, true);
    m_view->horizontalHeader()->moveSection(Model::HealthColumn, 1);
    m_fixture->close();

    const auto saved = [](const char *key) {
        return QSettings().value(QStringLiteral("initiativeList/") + QLatin1String(key));
    };
    QCOMPARE(saved("defensesColumnVisible").toBool(), false);
    QCOMPARE(saved("defensesColumnWidth").toInt(), 133);
    QCOMPARE(saved("healthColumnPosition").toInt(), 1);
    QVERIFY(!saved("iconColumnWidth").isValid());

    m_fixture->open();
    m_view = m_fixture->find<CreatureTableView>("initiativeList");
    QCOMPARE(m_view->columnWidth(Model::NameColumn), 177);
    QVERIFY(m_view->isColumnHidden(Model::DefencesColumn));
    QCOMPARE(m_view->horizontalHeader()->visualIndex(Model::HealthColumn), 1);
    QCOMPARE(m_view->horizontalHeader()->visualIndex(Model::NameColumn), 2);

    // Two columns on one place: the later one keeps it; and nonsense does no harm.
    m_fixture->close();
    QSettings().setValue(QStringLiteral("initiativeList/initColumnPosition"), 1);
    QSettings().setValue(QStringLiteral("initiativeList/healthColumnPosition"), 1);
    QSettings().setValue(QStringLiteral("initiativeList/nameColumnPosition"), -70);
    QSettings().setValue(QStringLiteral("initiativeList/nameColumnWidth"), -9);
    m_fixture->open();
    m_view = m_fixture->find<CreatureTableView>("initiativeList");
    QCOMPARE(m_view->horizontalHeader()->visualIndex(Model::HealthColumn), 1);
    QCOMPARE(m_view->horizontalHeader()->visualIndex(Model::IconColumn), 0);
    QVERIFY(m_view->columnWidth(Model::NameColumn) > 0);
}

void TestList::opensTheMenuOfTheHeader()
{
    QHeaderView *header = m_view->horizontalHeader();
    QStringList entries;
    const auto choose = [&entries](const QString &entry) {
        whenDialogRuns([&entries, entry] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu);
            entries.clear();
            for (QAction *action : menu->actions()) {
                entries << action->text() + (action->isChecked() ? u"*" : u"");
                if (action->text() == entry)
                    menu->setActiveAction(action);
            }
            QTest::keyClick(menu, Qt::Key_Return);
        });
    };
    choose(QStringLiteral("Defenses Column"));
    const QPoint name(header->sectionViewportPosition(Model::NameColumn) + 20, 8);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, name);
    QVERIFY(m_view->isColumnHidden(Model::DefencesColumn));
    QCOMPARE(
        entries,
        (QStringList {QStringLiteral("Init Column*"), QStringLiteral("Defenses Column*"),
                      QStringLiteral("Health Column*"), QStringLiteral("Need help selecting?")}));

    choose(QStringLiteral("Defenses Column"));
    QContextMenuEvent rightClick(QContextMenuEvent::Mouse, name, header->mapToGlobal(name));
    QApplication::sendEvent(header->viewport(), &rightClick);
    QVERIFY(!m_view->isColumnHidden(Model::DefencesColumn));
    QVERIFY(!entries.contains(QStringLiteral("Defenses Column*")));
}

// --- history ---

void TestList::listsTheHistory()
{
    auto *list = m_fixture->find<QTableView>("historyList");
    auto *events = qobject_cast<EventListModel *>(list->model());
    QAbstractItemModelTester tester(events, QAbstractItemModelTester::FailureReportingMode::QtTest);
    setRoster(1);
    for (int i = 0; i < 3; ++i)
        appendEvent<DamageEvent>(nullptr, QList<Creature *> {m_rat}, i + 1);
    QCOMPARE(events->rowCount(), 3);
    const auto isGrey = [events](int row) {
        return events->index(row, 0).data(Qt::ForegroundRole).isValid();
    };
    QCOMPARE(events->index(1, 0).data().toString(), theHistory->eventText(1));
    QVERIFY(events->index(1, 0)
                .data(Qt::ToolTipRole)
                .toString()
                .contains(theHistory->eventText(1).toHtmlEscaped()));
    QCOMPARE(events->headerData(2, Qt::Vertical, Qt::DisplayRole).toString(), QStringLiteral("3"));
    QVERIFY(!isGrey(2));

    m_fixture->window().onStepBack();
    QVERIFY(!isGrey(1) && isGrey(2));
    // A new event cuts off what lies behind the position, and the list is redrawn.
    const QSignalSpy redrawn(events, &EventListModel::dataChanged);
    appendEvent<DamageEvent>(nullptr, QList<Creature *> {m_rat}, 9);
    QCOMPARE(events->rowCount(), 3);
    QCOMPARE(redrawn.size(), 1);
    m_fixture->window().onStepBack();
    m_fixture->window().onStepBack();
    m_fixture->window().onStepBack();
    QVERIFY(isGrey(0));
    theHistory->truncate();
    QCOMPARE(events->rowCount(), 0);
}

void TestList::jumpsOnAClick()
{
    auto *list = m_fixture->find<QTableView>("historyList");
    setRoster(1);
    for (int i = 0; i < 4; ++i)
        appendEvent<DamageEvent>(nullptr, QList<Creature *> {m_rat}, 1);
    QCoreApplication::processEvents();
    const auto clickEvent = [list](int row) {
        const QRect place = list->visualRect(list->model()->index(row, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place.center());
    };
    clickEvent(1);
    QCOMPARE(theHistory->position(), 1);
    QCOMPARE(m_rat->currHP(), 18);
    clickEvent(3);
    QCOMPARE(m_rat->currHP(), 16);

    FlatDialog dialog(QStringLiteral("Any"));
    whenDialogRuns([&] {
        clickEvent(0);
        dialog.reject();
    });
    QCOMPARE(dialog.exec(), 0);
    QCOMPARE(theHistory->position(), 3);
}

// --- drawing ---

void TestList::mapsColoursForADarkPalette()
{
    const QString html = QStringLiteral("<b><font color=blue>blue</font></b>");
    const QPalette light(Qt::black, Qt::white);
    QPalette dark(Qt::white, Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    QCOMPARE(readableColours(html, light), html);
    const QString mapped = readableColours(html, dark);
    QVERIFY(!mapped.contains(QLatin1String("color=blue")));
    QVERIFY(mapped.contains(QLatin1String(">blue</font></b>")));
}

// From the cell's corner, or in the middle both ways.
void TestList::centresTextOnDemand()
{
    setRoster(1);
    const auto inkOf = [this](bool centre) {
        QImage image(200, 80, QImage::Format_RGB32);
        image.fill(Qt::white);
        QStyleOptionViewItem cell;
        cell.rect = image.rect();
        cell.palette = QPalette(Qt::black, Qt::white);
        QPainter painter(&image);
        RichTextDelegate(false, true, centre)
            .paint(&painter, cell, m_model->index(0, CreatureListModel::NameColumn));
        painter.end();
        QRect ink;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y) != Qt::white)
                    ink |= QRect(x, y, 1, 1);
        return ink;
    };
    const QRect corner = inkOf(false);
    const QRect middle = inkOf(true);
    QVERIFY(!corner.isEmpty() && corner.left() < 20 && corner.bottom() < 40);
    QVERIFY(QRect(80, 30, 40, 20).contains(middle.center()));
}

MORVANE_TEST_MAIN(QApplication, TestList)

#include "tst_list.moc"
