#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>

#include <ctime>

#include "characterwindow.h"
#include "datafolder.h"
#include "dice.h"
#include "global.h"
#include "mainwindow.h"
#include "managerwindow.h"
#include "memorytracker.h"
#include "messagelog.h"
#include "playerswindow.h"
#include "terms.h"

namespace {

// Set before anything touches the settings, which are kept under these names.
void setIdentity()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tolbrick"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("tolbrick.example"));
    QCoreApplication::setApplicationName(QStringLiteral("Morvane"));
}

// A program that was installed with its own toolkit loads libraries and plug-ins from its own
// folder.
void useOwnLibraries(const QString &folder)
{
    const QString plugins = folder + QStringLiteral("/plugins");
    if (!folder.isEmpty() && QDir(plugins).exists())
        QCoreApplication::setLibraryPaths({folder, folder + QStringLiteral("/lib"), plugins});
}

void installTranslation(QTranslator &translator)
{
    const QString file = QStringLiteral("morvane_") + QLocale::system().name();
    if (translator.load(file, QString(), QString(), QString()))
        QCoreApplication::installTranslator(&translator);
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(logMessageHandler);
    QTranslator translator;
    QApplication application(argc, argv);
    setIdentity();
    // The main window ends the program when it closes. It is hidden while a history is replayed,
    // and a message closed in that time must not pass for the last window.
    application.setQuitOnLastWindowClosed(false);
    useOwnLibraries(installFolder());

    QPixmap portrait(QStringLiteral(":/images/blank-portrait-300.png"));
    blankPortrait = &portrait;
    application.setWindowIcon(QIcon(QStringLiteral(":/images/d20-logo-128.png")));
    Dice::seed(static_cast<unsigned int>(std::time(nullptr)));
    installTranslation(translator);
    setDefaultTerms();

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
    const int result = application.exec();

    window.shutDown();
    MemoryTracker::clear();
    logFile.close();
    return result;
}
