// A DM who presses whatever the window offers, for thousands of commands: whatever came of it, a
// fresh start gives the same fight again, and so do stepping back to the start and forward to the
// end.
// links: morvane_ui morvane_reports
#include <QCheckBox>
#include <QComboBox>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include <random>

#include "dice.h"
#include "encounter.h"
#include "fightfixture.h"
#include "fightreport.h"
#include "history.h"
#include "testhome.h"

namespace {

const QString Creatures = QStringLiteral("creatures");
const QString EncounterKey = QStringLiteral("encounter");

class Chance {
public:
    explicit Chance(unsigned int seed) : m_random(seed) { }
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
    bool percent(int percent) { return upTo(99) < percent; }
    template <typename T>
    T anyOf(const QList<T> &list)
    {
        return list.isEmpty() ? T() : list.at(upTo(int(list.size()) - 1));
    }

private:
    std::mt19937 m_random;
};

template <typename Widget>
QList<Widget *> usable(const QWidget &parent)
{
    QList<Widget *> widgets = parent.findChildren<Widget *>();
    widgets.removeIf([](const Widget *w) { return !w->isVisible() || !w->isEnabled(); });
    return widgets;
}

// Fills in any dialog or menu that opens while it lives, and ends it one way or another.
class RandomAnswers : public QObject {
public:
    explicit RandomAnswers(Chance &chance) : m_chance(chance) { scheduleNext(); }

private:
    void scheduleNext()
    {
        // A new timer each time: one that is just firing stands still in a loop that it opens.
        QTimer::singleShot(0, this, [this] {
            scheduleNext();
            answer();
        });
    }
    void answer()
    {
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
            choose(*menu);
        else if (QWidget *modal = QApplication::activeModalWidget())
            end(*modal);
        else if (FlatDialog *flat = theMainWindow->activeDialog(); flat && flat->isVisible())
            end(*flat);
    }
    void choose(QMenu &menu)
    {
        QAction *action = m_chance.anyOf(menu.actions());
        if (!action || !action->isEnabled() || action->text().startsWith(u"Need help")) {
            menu.close();
            return;
        }
        menu.setActiveAction(action);
        QTest::keyClick(&menu, Qt::Key_Return);
    }
    void end(QWidget &dialog)
    {
        fillIn(dialog);
        const int way = m_chance.upTo(9);
        if (way == 0) {
            QTest::keyClick(&dialog, Qt::Key_Escape);
        } else if (QPushButton *button = m_chance.anyOf(usable<QPushButton>(dialog)); way < 3) {
            if (button)
                button->click();
        } else {
            QTest::keyClick(&dialog, Qt::Key_Return);
        }
    }
    void fillIn(QWidget &dialog)
    {
        for (QTableView *table : usable<QTableView>(dialog))
            table->selectRow(m_chance.upTo(qMax(0, table->model()->rowCount() - 1)));
        for (QSpinBox *box : usable<QSpinBox>(dialog)) {
            if (m_chance.percent(25))
                box->setValue(box->minimum() + m_chance.upTo(qMin(25, box->maximum())));
        }
        for (QComboBox *box : usable<QComboBox>(dialog)) {
            if (m_chance.percent(35) && box->count() > 0) {
                box->setCurrentIndex(m_chance.upTo(box->count() - 1));
                Q_EMIT box->activated(box->currentIndex());
            }
        }
        for (QCheckBox *box : usable<QCheckBox>(dialog)) {
            if (m_chance.percent(30) && box->isVisible())
                box->click();
        }
        for (QLineEdit *edit : usable<QLineEdit>(dialog)) {
            if (edit->objectName() != u"filter" && !qobject_cast<QSpinBox *>(edit->parent())
                && m_chance.percent(40))
                edit->setText(QStringLiteral("x%1").arg(m_chance.upTo(99)));
        }
    }

    Chance &m_chance;
};

void copyDemoData(const TestDataFolder &folder)
{
    const QDir demo(QStringLiteral(SOURCE_ROOT "/demo-data"));
    QDirIterator files(demo.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString name = demo.relativeFilePath(files.next());
        if (!name.startsWith(u"Portraits"))
            QVERIFY(QFile::copy(demo.filePath(name), folder.file(name)));
    }
}

// The creatures of the report that `known` holds too: those that only undone and overwritten events
// put into play are gone after a start. Hits are counted as long as the program runs, so that only
// their order says something.
QJsonObject creaturesOf(const QJsonObject &report, const QJsonObject &known)
{
    const QString order = QStringLiteral("lastHitOrder");
    QJsonObject creatures = report.value(Creatures).toObject();
    QMap<int, QStringList> hits;
    for (const QString &name : creatures.keys()) {
        if (known.value(Creatures).toObject().contains(name))
            hits[creatures[name][order].toInt()] << name;
        else
            creatures.remove(name);
    }
    int rank = 0;
    for (const QStringList &names : std::as_const(hits)) {
        for (const QString &name : names) {
            QJsonObject creature = creatures[name].toObject();
            creature.insert(order, rank);
            creatures.insert(name, creature);
        }
        ++rank;
    }
    return creatures;
}

// "path: actual, expected" of each place in which the two differ.
QStringList differences(const QJsonValue &actual, const QJsonValue &expected,
                        const QString &path = QString())
{
    if (actual == expected)
        return {};
    if (actual.isArray() && expected.isArray()) {
        const QJsonArray left = actual.toArray();
        const QJsonArray right = expected.toArray();
        for (int i = 0; i < qMax(left.size(), right.size()); ++i) {
            if (left.at(i) != right.at(i))
                return differences(left.at(i), right.at(i), path + u'/' + QString::number(i));
        }
    }
    if (!actual.isObject() || !expected.isObject()) {
        const QJsonArray both {actual, expected};
        return {path + u": "
                + QString::fromUtf8(QJsonDocument(both).toJson(QJsonDocument::Compact))};
    }
    QStringList found;
    const QStringList keys = actual.toObject().keys() + expected.toObject().keys();
    for (const QString &key : QSet<QString>(keys.begin(), keys.end()))
        found += differences(actual[key], expected[key], path + u'/' + key);
    return found;
}

// What the encounter is between two fights; stepping back over a start forgets the last round of
// the fight before, which nobody sees then.
QJsonObject encounterOf(const QJsonObject &report)
{
    QJsonObject encounter = report.value(EncounterKey).toObject();
    if (encounter.value(QStringLiteral("currentIndex")).toInt() < 0)
        encounter.remove(QStringLiteral("round"));
    return encounter;
}

QStringList fightDifferences(const QJsonObject &actual, const QJsonObject &expected)
{
    const auto comparable = [&expected](QJsonObject report) {
        const QJsonObject creatures = creaturesOf(report, expected);
        report.insert(Creatures, creatures);
        report.insert(EncounterKey, encounterOf(report));
        return report;
    };
    return differences(comparable(actual), comparable(expected));
}

void checkEmpty(const QStringList &changes)
{
    QVERIFY2(changes.isEmpty(), qPrintable(changes.join(u'\n')));
}

} // namespace

class TestRandomTurns : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    // The first hit of a program has the number of one that was never hit.
    void initTestCase() { Creature().takeDamage(1, std::make_unique<Creature>().get()); }
    void replaysAndSteps_data();
    void replaysAndSteps();

private:
    void command(FightFixture &fixture, Chance &chance);
    void select(const FightFixture &fixture, Chance &chance);
    void openContextMenu(const FightFixture &fixture, Chance &chance);
    void checkNoPreview();
    void compareWithFreshStart(FightFixture &fixture);
    void stepThrough(const FightFixture &fixture);

    QJsonObject m_atFirst;
};

void TestRandomTurns::replaysAndSteps_data()
{
    QTest::addColumn<unsigned int>("seed");
    for (const unsigned int seed : {4u, 11u, 38u})
        QTest::addRow("%u", seed) << seed;
}

void TestRandomTurns::replaysAndSteps()
{
    constexpr int batches = 5;
    constexpr int commands = 250;
    QFETCH(unsigned int, seed);
    Chance chance(seed);
    Dice::seed(seed);
    FightFixture fixture;
    copyDemoData(fixture.folder);
    fixture.open();
    m_atFirst = fightReport(true);
    for (int batch = 0; batch < batches; ++batch) {
        {
            RandomAnswers answers(chance);
            for (int i = 0; i < commands; ++i) {
                command(fixture, chance);
                checkNoPreview();
                if (QTest::currentTestFailed())
                    return;
            }
        }
        compareWithFreshStart(fixture);
        if (!QTest::currentTestFailed())
            stepThrough(fixture);
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY(theHistory->eventCount() > batches * commands / 2);
}

void TestRandomTurns::command(FightFixture &fixture, Chance &chance)
{
    // What a fight is made of comes more often than what ends it.
    static constexpr const char *names[] = {
        "nextTurn",   "nextTurn",       "nextTurn",    "nextTurn",     "conditions",
        "conditions", "conditions",     "conditions",  "hit",          "hit",
        "heal",       "surge",          "setTempHP",   "showHide",     "setAlias",
        "delay",      "ready",          "jumpIn",      "jumpIn",       "upInitiative",
        "remove",     "downInitiative", "shortRest",   "extendedRest", "loadEncounter",
        "addMonster", "stepBack",       "stepForward", "startStop",    "pickParty"};
    const char *name = names[chance.upTo(int(std::size(names)) - 1)];
    const bool running = theEncounter->isRunning();
    if (running && qstrcmp(name, "startStop") == 0 && chance.percent(70))
        return;
    select(fixture, chance);
    fixture.hpBox()->setValue(chance.upTo(12));
    if (chance.percent(5))
        openContextMenu(fixture, chance);
    else
        fixture.action(name)->trigger(); // does nothing while it is disabled
    QCoreApplication::processEvents();
}

void TestRandomTurns::select(const FightFixture &fixture, Chance &chance)
{
    const int rows = fixture.table()->model()->rowCount();
    if (rows == 0 || chance.percent(20))
        return;
    for (int i = chance.upTo(2); i >= 0; --i)
        fixture.click(chance.upTo(rows - 1), i == 0 ? Qt::NoModifier : Qt::ControlModifier);
}

void TestRandomTurns::openContextMenu(const FightFixture &fixture, Chance &chance)
{
    const QTableView *table = fixture.table();
    const int row = chance.upTo(qMax(0, table->model()->rowCount() - 1));
    const QRect cell = table->visualRect(table->model()->index(row, 5));
    if (cell.isValid() && table->viewport()->rect().contains(cell.center()))
        QTest::mouseClick(table->viewport(), Qt::RightButton, {}, cell.center());
}

void TestRandomTurns::checkNoPreview()
{
    const QList<Creature *> creatures = theCharacters->all() + theMonsters->clones();
    for (const Creature *creature : creatures) {
        QCOMPARE(creature->restHP(), 0);
        QCOMPARE(creature->restTempHP(), 0);
        QCOMPARE(creature->restHS(), 0);
        QCOMPARE(creature->restAP(), 0);
    }
}

void TestRandomTurns::compareWithFreshStart(FightFixture &fixture)
{
    // The events behind the position would come back; a fight goes on from where it stands.
    while (fixture.action("stepForward")->isEnabled())
        fixture.window().onStepForward();
    const QJsonObject before = fightReport(true);
    fixture.close();
    fixture.open();
    const QJsonObject after = fightReport(true);
    checkEmpty(fightDifferences(before, after));
}

void TestRandomTurns::stepThrough(const FightFixture &fixture)
{
    const QJsonObject end = fightReport(true);
    while (fixture.action("stepBack")->isEnabled())
        fixture.window().onStepBack();
    QCOMPARE(theHistory->position(), -1);
    const QJsonObject start = fightReport(true);
    const QStringList changes =
        differences(creaturesOf(start, m_atFirst), creaturesOf(m_atFirst, m_atFirst));
    checkEmpty(changes);
    QCOMPARE(theEncounter->count(), 0);
    while (fixture.action("stepForward")->isEnabled())
        fixture.window().onStepForward();
    checkEmpty(fightDifferences(fightReport(true), end));
}

MORVANE_TEST_MAIN(QApplication, TestRandomTurns)

#include "tst_randomturns.moc"
