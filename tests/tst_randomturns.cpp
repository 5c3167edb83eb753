// A DM who presses whatever the window offers, for thousands of commands, and edits files of heroes
// between two evenings: whatever came of it, a fresh start gives the same fight again, and so do
// stepping back to the start and forward to the end. "--seed N --count M" plays M others from N on.
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
#include <QRegularExpression>

#include <random>

#include "dice.h"
#include "effect.h"
#include "encounter.h"
#include "fightfixture.h"
#include "fightreport.h"
#include "history.h"
#include "playerstexts.h"
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
        else if (FlatDialog *flat = activeFlatDialog(); flat && flat->isVisible())
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

// Defences get four digits, as no other number has: where one is shown, it gives itself away.
QString withTellingDefences(QString text)
{
    static const QRegularExpression defence(
        QStringLiteral("(?:AC |Fortitude |Reflex |Will |armour-class=|fortitude=|reflex=|will=)"
                       "\\K(\\d\\d)\\b"));
    return text.replace(defence, QStringLiteral("60\\1"));
}

void copyDemoData(const TestDataFolder &folder)
{
    const QDir demo(QStringLiteral(SOURCE_ROOT "/demo-data"));
    QDirIterator files(demo.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString name = demo.relativeFilePath(files.next());
        QFile file(demo.filePath(name));
        QVERIFY(file.open(QFile::ReadOnly));
        if (!name.startsWith(u"Portraits"))
            folder.write(name, withTellingDefences(QString::fromUtf8(file.readAll())));
    }
    // Shares monsters with one of the others.
    folder.write(QStringLiteral("Encounters/toll.txt"),
                 QStringLiteral("name=Toll\ndescription=\nBogwick Snatcher=A,B\n"
                                "Bogwick Dartling=1,2\nalias#B=Reeve\nhidden#A=true\n"));
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
// the fight before and who fell in it, which nobody sees then.
QJsonObject encounterOf(const QJsonObject &report)
{
    QJsonObject encounter = report.value(EncounterKey).toObject();
    if (encounter.value(QStringLiteral("currentIndex")).toInt() < 0) {
        encounter.remove(QStringLiteral("round"));
        encounter.remove(QStringLiteral("fallen"));
    }
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

void checkEmpty(const char *when, const QStringList &changes)
{
    QVERIFY2(changes.isEmpty(),
             qPrintable(QString::fromLatin1(when) + u'\n' + changes.join(u'\n')));
}

// A number of a hero's file, and its name in the report.
struct Number {
    const char *key;
    const char *reported;
};

constexpr Number numbers[] = {{"hit-points", "maxHP"},
                              {"hs-resources", "maxHS"},
                              {"hs-value", "hsValue"},
                              {"initiative", "initBonus"},
                              {"ap-resources", "initAP"}};

// Without those numbers of the heroes whose names begin so: taking back a party leaves them as the
// log had them, whatever the files say by now.
QJsonObject withoutNumbers(QJsonObject creatures, const QStringList &heroes)
{
    const QString base = QStringLiteral("base");
    for (const QString &name : creatures.keys()) {
        const auto begins = [&name](const QString &hero) { return name.startsWith(hero); };
        if (std::none_of(heroes.begin(), heroes.end(), begins))
            continue;
        QJsonObject live = creatures[name].toObject();
        QJsonObject shadow = live[base].toObject();
        for (const Number &number : numbers) {
            live.remove(QLatin1String(number.reported));
            shadow.remove(QLatin1String(number.reported));
        }
        live.insert(base, shadow);
        creatures.insert(name, live);
    }
    return creatures;
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
    void command(Chance &chance);
    bool trigger(const char *name, Chance &chance);
    void select(Chance &chance);
    void openContextMenu(Chance &chance);
    void checkNoPreview();
    void checkNoOutsideChange();
    void checkArrivals(const QList<Creature *> &before);
    void checkDeparted(const QList<Creature *> &before);
    void restart();
    void compareWithFreshStart(bool savesHeroes);
    void levelUpInBuilder(Chance &chance);
    void editHero(Chance &chance);
    void stepThrough();
    void checkSecrets();
    void checkPixels();

    FightFixture *m_fight = nullptr;
    QJsonObject m_atFirst;
    QStringList m_edited;
    int m_clearedEvents = 0;
    std::unique_ptr<PlayersWindow> m_players; // of m_playersFight
    QPointer<Encounter> m_playersFight;
};

void TestRandomTurns::replaysAndSteps_data()
{
    QTest::addColumn<unsigned int>("seed");
    const int count = RandomTest::count(0);
    QList<unsigned int> seeds {RandomTest::seed()};
    for (int i = 1; i < count; ++i)
        seeds << seeds.last() + 1;
    if (count == 0)
        seeds << 101;
    for (const unsigned int seed : std::as_const(seeds))
        QTest::addRow("--seed %u", seed) << seed;
}

void TestRandomTurns::replaysAndSteps()
{
    constexpr int batches = 5;
    constexpr int commands = 250;
    QFETCH(unsigned int, seed);
    Chance chance(seed);
    Dice::seed(seed);
    FightFixture fixture;
    m_fight = &fixture;
    m_edited = QStringList {QStringLiteral("Maeve")};
    m_clearedEvents = 0;
    copyDemoData(fixture.folder);
    fixture.open();
    for (int batch = 0; batch < batches; ++batch) {
        for (int i = 0; i < commands; ++i) {
            command(chance);
            if (QTest::currentTestFailed())
                return;
        }
        levelUpInBuilder(chance);
        compareWithFreshStart(chance.percent(50));
        if (!QTest::currentTestFailed())
            editHero(chance);
        if (!QTest::currentTestFailed())
            stepThrough();
        if (QTest::currentTestFailed())
            return;
    }
    m_players.reset();
    const int written = m_clearedEvents + theHistory->eventCount();
    QVERIFY2(written > batches * commands / 4, qPrintable(QString::number(written)));
}

void TestRandomTurns::command(Chance &chance)
{
    // What a fight is made of comes more often than what ends it.
    static constexpr const char *names[] = {
        "nextTurn",      "nextTurn",       "nextTurn",    "nextTurn",     "conditions",
        "conditions",    "conditions",     "conditions",  "hit",          "hit",
        "heal",          "surge",          "setTempHP",   "showHide",     "setAlias",
        "delay",         "ready",          "jumpIn",      "jumpIn",       "upInitiative",
        "remove",        "downInitiative", "shortRest",   "extendedRest", "loadEncounter",
        "addMonster",    "stepBack",       "stepForward", "startStop",    "pickParty",
        "loadEncounter", "removeAll",      "newHistory"};
    const char *name = names[chance.upTo(int(std::size(names)) - 1)];
    const bool running = theEncounter->isRunning();
    if (running && qstrcmp(name, "startStop") == 0 && chance.percent(70))
        return;
    const QList<Creature *> before = theEncounter->creatures().list();
    const int events = theHistory->eventCount();
    if (!trigger(name, chance))
        return;
    checkNoPreview();
    checkSecrets();
    if (theHistory->eventCount() % 4 == 0)
        checkPixels();
    if (!QTest::currentTestFailed())
        checkNoOutsideChange();
    if (qstrcmp(name, "newHistory") == 0) {
        if (theHistory->eventCount() > 0)
            return;
        m_clearedEvents += events;
        QCOMPARE(theEncounter->count(), 0);
        compareWithFreshStart(chance.percent(50));
    } else if (qstrcmp(name, "loadEncounter") == 0 || qstrcmp(name, "addMonster") == 0) {
        checkArrivals(before);
    } else if (running && name == QByteArrayView("removeAll")) {
        checkDeparted(before);
    }
}

// False for a command that comes more seldom than its turn.
bool TestRandomTurns::trigger(const char *name, Chance &chance)
{
    const bool removesAll = qstrcmp(name, "removeAll") == 0;
    if ((removesAll || qstrcmp(name, "newHistory") == 0) && chance.percent(80))
        return false;
    RandomAnswers answers(chance);
    select(chance);
    const int rows = m_fight->table()->model()->rowCount();
    if (removesAll && rows > 0) {
        m_fight->click(0);
        m_fight->click(rows - 1, Qt::ShiftModifier);
    }
    m_fight->hpBox()->setValue(chance.upTo(12));
    if (!removesAll && chance.percent(5))
        openContextMenu(chance);
    else
        m_fight->action(removesAll ? "remove" : name)->trigger(); // nothing while it is disabled
    QCoreApplication::processEvents();
    return true;
}

void TestRandomTurns::select(Chance &chance)
{
    const int rows = m_fight->table()->model()->rowCount();
    if (rows == 0 || chance.percent(20))
        return;
    for (int i = chance.upTo(2); i >= 0; --i)
        m_fight->click(chance.upTo(rows - 1), i == 0 ? Qt::NoModifier : Qt::ControlModifier);
}

void TestRandomTurns::openContextMenu(Chance &chance)
{
    const QTableView *table = m_fight->table();
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

// Nothing but an edited file changes a creature outside the history.
void TestRandomTurns::checkNoOutsideChange()
{
    for (Creature *creature : theEncounter->creatures()) {
        const QString name = creature->displayName();
        const auto begins = [&name](const QString &hero) { return name.startsWith(hero); };
        QVERIFY2(std::any_of(m_edited.begin(), m_edited.end(), begins)
                     || creature->liveVitality() == creature->shadowVitality(),
                 qPrintable(name));
    }
}

// The players' window has neither the name of a hidden creature in play nor the true name of a
// monster that shows an alias.
void TestRandomTurns::checkSecrets()
{
    if (!m_players || m_playersFight != theEncounter) {
        m_players = std::make_unique<PlayersWindow>();
        m_players->setShowNext(true);
        m_playersFight = theEncounter;
    }
    const QString texts = playersTexts(*m_players);
    static const QRegularExpression defence(QStringLiteral("\\b60\\d\\d\\b"));
    QVERIFY2(!texts.contains(defence), qPrintable(texts));
    const QList<Creature *> everybody = theCharacters->all() + theMonsters->clones();
    for (const Creature *creature : theEncounter->creatures()) {
        const bool hasTellingAlias = creature->alias().contains(creature->keyName());
        if (!creature->isHidden()
            && (!creature->isMonster() || creature->aliasMode() == 0 || hasTellingAlias))
            continue;
        QVERIFY2(!texts.contains(creature->displayName()), qPrintable(texts));
        const auto isOpenAsGroup = [&](const Creature *other) {
            return !other->isHidden() && other->playersName().contains(creature->group());
        };
        QVERIFY2(!creature->isMonster()
                     || std::any_of(everybody.begin(), everybody.end(), isOpenAsGroup)
                     || !texts.contains(creature->group()),
                 qPrintable(creature->displayName() + u'\n' + texts));
    }
}

// Hidden creatures leave no gap, but for one whose turn it is.
void TestRandomTurns::checkPixels()
{
    const CreatureList order = theEncounter->creatures();
    const EncounterPosition position = theEncounter->position();
    CreatureList visible;
    EncounterPosition fewer = position;
    for (int i = 0; i < order.count(); ++i) {
        if (i == position.currentIndex || !order.at(i)->isHidden())
            visible.insertAt(visible.count(), order.at(i));
        else if (i < position.currentIndex)
            --fewer.currentIndex;
    }
    if (visible.count() == order.count())
        return;
    const auto show = [this](const CreatureList &creatures, const EncounterPosition &at) {
        theEncounter->setOrder(creatures);
        theEncounter->setPosition(at);
        return m_players->grab().toImage();
    };
    const QImage without = show(visible, fewer);
    QCOMPARE(show(order, position), without);
}

// Whatever a monster went through before, it comes as new.
void TestRandomTurns::checkArrivals(const QList<Creature *> &before)
{
    for (const Creature *creature : theEncounter->creatures()) {
        if (!creature->isMonster() || before.contains(creature))
            continue;
        QVERIFY2(creature->isRested() && creature->effectCount() == 0,
                 qPrintable(creature->displayName()));
        for (const Power &power : creature->powers())
            QVERIFY2(!power.isUsed(), qPrintable(creature->displayName()));
    }
}

// The fight is over, and over for those who left.
void TestRandomTurns::checkDeparted(const QList<Creature *> &before)
{
    if (theEncounter->count() > 0)
        return;
    QVERIFY(!theEncounter->isRunning());
    for (const Creature *creature : before) {
        QCOMPARE(creature->tempHP(), 0);
        for (const Effect *effect : creature->effects())
            QVERIFY(!effect->endsAtEndOfEncounter());
    }
}

// As on the next evening. `m_atFirst` becomes what a start without the log gives.
void TestRandomTurns::restart()
{
    const QString log = m_fight->folder.file(QStringLiteral("history.log"));
    const QString aside = log + QStringLiteral(".aside");
    m_fight->close();
    const bool hasLog = QFile::rename(log, aside);
    m_fight->open();
    m_atFirst = fightReport(true);
    m_fight->close();
    QFile::remove(log);
    if (hasLog)
        QVERIFY(QFile::rename(aside, log));
    m_fight->open();
}

// What stepping through the history wrote into the text of a hero is saved on demand, as the end of
// the program offers.
void TestRandomTurns::compareWithFreshStart(bool savesHeroes)
{
    if (savesHeroes)
        theCharacters->saveAll();
    // The events behind the position would come back; a fight goes on from where it stands.
    while (m_fight->action("stepForward")->isEnabled())
        m_fight->window().onStepForward();
    const QJsonObject before = fightReport(true);
    restart();
    checkEmpty("fresh start", fightDifferences(before, fightReport(true)));
}

// Counts for the next extended rest, and for nothing before it.
void TestRandomTurns::levelUpInBuilder(Chance &chance)
{
    if (chance.percent(40))
        return;
    const QString file = QStringLiteral("Characters/maeve-ashdown.dnd4e");
    QString text = QString::fromUtf8(m_fight->folder.read(file));
    static const QRegularExpression hitPoints(
        QStringLiteral("\\d+(?=\"><alias name=\"Hit Points\")"));
    static const QRegularExpression name(QStringLiteral("<name>[^<]*"));
    text.replace(hitPoints, QString::number(30 + chance.upTo(30)));
    if (chance.percent(40))
        text.replace(name, QStringLiteral("<name>Maeve %1").arg(chance.upTo(3)));
    m_fight->folder.write(file, text.remove(u'\r'));
}

// A hero of the fight comes back with other numbers, of which the next command tells the log.
void TestRandomTurns::editHero(Chance &chance)
{
    const Creature *hero = chance.anyOf(theEncounter->creatures().filtered(2).list());
    if (!hero || hero->fileName().isEmpty())
        return;
    const QString name = hero->displayName();
    const QString path = QStringLiteral("Characters/") + hero->fileName();
    QJsonObject expected = fightReport(true);
    QJsonObject creatures = expected.value(Creatures).toObject();
    QJsonObject report = creatures.value(name).toObject();
    QString text = QString::fromUtf8(m_fight->folder.read(path)).remove(u'\r');
    for (const Number &number : numbers) {
        const int value = 1 + chance.upTo(50);
        const QRegularExpression line(
            QStringLiteral("(?<=\\n%1=)-?\\d+").arg(QLatin1String(number.key)));
        if (!text.contains(line) || chance.percent(50))
            continue;
        text.replace(line, QString::number(value));
        report.insert(QLatin1String(number.reported), value);
    }
    m_edited << name;
    m_fight->close();
    const QFileInfo log(m_fight->folder.file(QStringLiteral("history.log")));
    m_fight->folder.write(path, text);
    QFile file(m_fight->folder.file(path));
    QVERIFY(file.open(QIODevice::ReadWrite)
            && file.setFileTime(log.lastModified().addMSecs(2), QFile::FileModificationTime));
    file.close();
    restart();
    const QJsonObject after = fightReport(true);
    // Half of the maximum decides who is dead.
    const QString status = QStringLiteral("status");
    report.insert(status, after[Creatures][name][status]);
    creatures.insert(name, report);
    expected.insert(Creatures, creatures);
    checkEmpty("edited file", fightDifferences(after, expected));
    if (chance.percent(50))
        stepThrough();
    if (QTest::currentTestFailed())
        return;
    QVERIFY(streamForEvent());
    compareWithFreshStart(false);
}

void TestRandomTurns::stepThrough()
{
    const QJsonObject end = fightReport(true);
    while (m_fight->action("stepBack")->isEnabled()) {
        m_fight->window().onStepBack();
        checkSecrets();
    }
    QCOMPARE(theHistory->position(), -1);
    const QJsonObject start = fightReport(true);
    QVERIFY(creaturesOf(start, m_atFirst).size() >= 5);
    // A hero may have another name by now.
    const auto comparable = [this](const QJsonObject &report, const QJsonObject &known) {
        return withoutNumbers(creaturesOf(report, known), m_edited);
    };
    checkEmpty("first event",
               differences(comparable(start, m_atFirst), comparable(m_atFirst, start)));
    QCOMPARE(theEncounter->count(), 0);
    while (m_fight->action("stepForward")->isEnabled()) {
        m_fight->window().onStepForward();
        checkSecrets();
    }
    checkEmpty("last event", fightDifferences(fightReport(true), end));
}

MORVANE_TEST_MAIN(QApplication, TestRandomTurns)

#include "tst_randomturns.moc"
