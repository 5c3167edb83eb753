// The demo fight, played in a data folder of its own: what a new user would do first.

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QTemporaryDir>
#include <cstdio>

#include "chapters.h"
#include "characterwindow.h"
#include "datafolder.h"
#include "dice.h"
#include "global.h"
#include "mainwindow.h"
#include "managerwindow.h"
#include "playerswindow.h"
#include "terms.h"
#include "tour.h"

namespace {

// One run of the program, from start to close.
template <typename... Chapters>
bool play(const QString &folder, int &number, QStringList &summary, Chapters... chapters)
{
    makePlayersDisplay = []() -> std::unique_ptr<PlayersDisplay> {
        return std::make_unique<PlayersWindow>();
    };
    makeManagerWindow = []() -> std::unique_ptr<LibraryWindow> {
        return std::make_unique<ManagerWindow>();
    };
    makeCharacterWindow = []() -> std::unique_ptr<LibraryWindow> {
        return std::make_unique<CharacterWindow>();
    };
    MainWindow window;
    findDataFolder();
    window.show();
    // The same pictures on a screen of any size.
    window.resize(1360, 860);
    Tour tour(&window, folder, number);
    if (!summary.isEmpty()) {
        tour.step(QStringLiteral("started-again"),
                  [&tour, before = summary] { expectSameFight(tour, before); });
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

// The offscreen platform's own screen is too small for the window as it opens on a desk. The second
// is the players'.
void useRoomyScreens(const QString &folder)
{
    QFile file(folder + QStringLiteral("/screen.json"));
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(R"({"screens": [{"name": "desk", "x": 0, "y": 0, "width": 1600, "height": 1000,
        "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "table", "x": 1600, "y": 0, "width": 1280, "height": 720,
        "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toLocal8Bit());
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
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen")
        useRoomyScreens(home.path());

    QApplication app(argc, argv);
    app.setOrganizationName(QStringLiteral("Tolbrick"));
    app.setApplicationName(QStringLiteral("Morvane"));
    app.setQuitOnLastWindowClosed(false);
    app.setCursorFlashTime(0); // the same pictures each time
    setDefaultTerms();
    QPixmap portrait(QStringLiteral(":/images/blank-portrait-300.png"));
    blankPortrait = &portrait;
    Dice::seed(11);

    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    int number = 1;
    QStringList summary;
    bool succeeded = play(folder, number, summary, pickTheParty, loadAndStart, fight, conditions,
                          savingThrows, aliases, powers, waiting, dying, playersDisplay);
    succeeded = succeeded && play(folder, number, summary, stopAndRest, throughTheHistory, library);
    if (succeeded)
        std::printf("The tour is over: %d pictures in %s\n", number - 1, qPrintable(folder));
    return succeeded ? 0 : 1;
}
