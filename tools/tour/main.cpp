// The demo fight, played in a data folder of its own: what a new user would do first.

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

#include "coreobjects.h"
#include "creature.h"
#include "datafolder.h"
#include "dice.h"
#include "encounter.h"
#include "encounters.h"
#include "history.h"
#include "mainwindow.h"
#include "terms.h"
#include "tour.h"

namespace {

// The first creature of the order that the test holds for; the demo encounters have each kind.
template <typename Test>
Creature *firstCreature(Test test)
{
    for (Creature *creature : theEncounter->creatures()) {
        if (test(creature))
            return creature;
    }
    return nullptr;
}

QString firstMonster()
{
    const Creature *found = firstCreature(
        [](const Creature *c) { return c->isMonster() && !c->isHidden() && c->maxHP() > 20; });
    return found ? found->displayName() : QString();
}

QString firstWounded()
{
    const Creature *found =
        firstCreature([](const Creature *c) { return c->isMonster() && c->damageTaken() > 0; });
    return found ? found->displayName() : QString();
}

// Everything that must come back when the program starts again.
QStringList fightSummary()
{
    QStringList lines {QStringLiteral("round %1, current %2, position %3 of %4")
                           .arg(theEncounter->round())
                           .arg(theEncounter->currentIndex())
                           .arg(theHistory->position())
                           .arg(theHistory->eventCount())};
    for (const Creature *creature : theEncounter->creatures()) {
        lines << QStringLiteral("%1: %2 of %3, roll %4, %5")
                     .arg(creature->displayName())
                     .arg(creature->currHP())
                     .arg(creature->maxHP())
                     .arg(creature->initRoll())
                     .arg(creature->isHidden() ? u"hidden" : u"shown");
    }
    for (int i = 0; i < theHistory->eventCount(); ++i)
        lines << theHistory->eventText(i);
    return lines;
}

void pickTheParty(Tour &tour)
{
    tour.step(QStringLiteral("first-start"), [] {});
    tour.step(QStringLiteral("pick-the-party"),
              [&tour] { tour.press(Qt::Key_Y, Qt::ControlModifier); });
    tour.step(QStringLiteral("party"), [&tour] { tour.clickButton(QStringLiteral("Select All")); });
}

void loadAndStart(Tour &tour)
{
    tour.step(QStringLiteral("select-an-encounter"), [&tour] {
        tour.expect(theEncounter->count() == 6, QStringLiteral("six characters in the party"));
        tour.press(Qt::Key_O, Qt::ControlModifier);
    });
    tour.step(QStringLiteral("encounter-chosen"),
              [&tour] { tour.clickRow(theEncounters->at(0)->name(), 0); });
    tour.step(QStringLiteral("encounter-loaded"),
              [&tour] { tour.clickButton(QStringLiteral("Replace")); });
    tour.step(QStringLiteral("initiative"),
              [&tour] { tour.press(Qt::Key_S, Qt::ControlModifier); });
    tour.step(QStringLiteral("started"), [&tour] {
        tour.expect(!theEncounter->isRunning(), QStringLiteral("nothing starts before the answer"));
        tour.press(Qt::Key_Return);
    });
    tour.step(QStringLiteral("next-turn"), [&tour] {
        tour.expect(theEncounter->isRunning(), QStringLiteral("a running encounter"));
        // On to a hero's turn, who then strikes the first blow.
        do
            tour.press(Qt::Key_N, Qt::ControlModifier);
        while (theEncounter->current()->isMonster() && theEncounter->round() < 3);
    });
}

void fight(Tour &tour)
{
    tour.step(QStringLiteral("selected"), [&tour] { tour.clickRow(firstMonster(), 4); });
    tour.step(QStringLiteral("hp-box"), [&tour] { tour.type(QStringLiteral("12")); });
    tour.step(QStringLiteral("damaged"), [&tour] { tour.press(Qt::Key_Return); });
    tour.step(QStringLiteral("stepped-back"), [&tour] {
        tour.expect(!firstWounded().isEmpty(), QStringLiteral("a wounded monster"));
        tour.press(Qt::Key_Z, Qt::ControlModifier);
    });
    tour.step(QStringLiteral("stepped-forward"), [&tour] {
        tour.expect(firstWounded().isEmpty(), QStringLiteral("the wound taken back"));
        tour.press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    });
    tour.step(QStringLiteral("hidden"), [&tour] { tour.press(Qt::Key_H, Qt::ControlModifier); });
    tour.step(QString(), [&tour] { tour.clickRow(firstWounded(), 4); });
    tour.step(QString(), [&tour] { tour.type(QStringLiteral("5")); });
    tour.step(QStringLiteral("healed"), [&tour] { tour.press(Qt::Key_L, Qt::ControlModifier); });
    for (int turn = 0; turn < 13; ++turn)
        tour.step(QString(), [&tour] { tour.press(Qt::Key_N, Qt::ControlModifier); });
    tour.step(QStringLiteral("jumped-in-history"),
              [&tour] { tour.clickEvent(theHistory->eventCount() - 3); });
    tour.step(QStringLiteral("end-of-history"), [&tour] {
        tour.expect(theHistory->position() == theHistory->eventCount() - 3,
                    QStringLiteral("the history at the clicked line"));
        tour.clickEvent(theHistory->eventCount() - 1);
    });
}

void stopAndRest(Tour &tour)
{
    tour.step(QStringLiteral("stopped"), [&tour] { tour.press(Qt::Key_S, Qt::ControlModifier); });
    tour.step(QStringLiteral("rested"), [&tour] {
        tour.expect(!theEncounter->isRunning() && theEncounter->monsterCount() == 0,
                    QStringLiteral("the monsters gone with the encounter"));
        tour.press(Qt::Key_X, Qt::ControlModifier);
    });
    tour.step(QString(), [&tour] {
        const Creature *tired =
            firstCreature([](const Creature *c) { return c->currHP() < c->maxHP(); });
        tour.expect(!tired, QStringLiteral("everyone rested"));
    });
}

// One run of the program, from start to close.
template <typename... Chapters>
bool play(const QString &folder, int &number, QStringList &summary, Chapters... chapters)
{
    MainWindow window;
    findDataFolder();
    window.show();
    // The same pictures on a screen of any size.
    window.resize(1120, 700);
    Tour tour(&window, folder, number);
    if (!summary.isEmpty()) {
        tour.step(QStringLiteral("started-again"), [&tour, before = summary] {
            const QStringList after = fightSummary();
            for (int i = 0; i < qMax(before.size(), after.size()); ++i) {
                tour.expect(before.value(i) == after.value(i),
                            QStringLiteral("\"%1\" after a restart, not \"%2\"")
                                .arg(before.value(i), after.value(i)));
            }
        });
    }
    (chapters(tour), ...);
    tour.start();
    QCoreApplication::exec();
    summary = fightSummary();
    number = tour.nextNumber();
    window.close();
    window.shutDown();
    return tour.succeeded();
}

void useHome(const QString &home)
{
    qputenv("HOME", home.toLocal8Bit());
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(name, (home + u'/' + QLatin1String(name)).toLocal8Bit());
    QDir(home).mkpath(QStringLiteral("Documents"));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 || argv[1][0] == '-') {
        std::fprintf(stderr,
                     "usage: morvane-tour FOLDER\n"
                     "Plays the demo fight and saves its pictures in FOLDER.\n");
        return 2;
    }
    // The user's own data folder and settings are none of the tour's business.
    const QTemporaryDir home;
    useHome(home.path());
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);
    app.setOrganizationName(QStringLiteral("Tolbrick"));
    app.setApplicationName(QStringLiteral("Morvane"));
    app.setQuitOnLastWindowClosed(false);
    setDefaultTerms();
    Dice::seed(11);

    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    int number = 1;
    QStringList summary;
    bool succeeded = play(folder, number, summary, pickTheParty, loadAndStart, fight);
    succeeded = succeeded && play(folder, number, summary, stopAndRest);
    if (succeeded)
        std::printf("The tour is over: %d pictures in %s\n", number - 1, qPrintable(folder));
    return succeeded ? 0 : 1;
}
