#include "datafolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QProgressDialog>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSettings>

#include <algorithm>
#include <limits>
#include <utility>

#include "characters.h"
#include "encounter.h"
#include "encounters.h"
#include "filedialogs.h"
#include "folderaccess.h"
#include "history.h"
#include "messagedialog.h"
#include "monsters.h"
#include "paths.h"
#include "progress.h"
#include "switchboard.h"
#include "text.h"
#include "windowinterface.h"
#include "windows.h"

namespace {

const QString FolderName = QStringLiteral("Morvane Data");
const QString PathKey = QStringLiteral("dataDir/path");
const QString DisplayKey = QStringLiteral("dataDir/display");
constexpr const char *SubFolders[] = {"Characters", "Monsters", "Portraits", "Encounters"};
constexpr const char *DownloadPage = "https://morvane.example/download";
// Milliseconds between two movements of the progress dialog.
constexpr int ProgressInterval = 40;
// A load of fewer milliseconds shows no dialog at all.
constexpr int ProgressDelay = 1000;
constexpr int StepsBesidesFiles = 4;
// Deeper than any real data folder; a symbolic link in a circle ends here.
constexpr int MaxCopyDepth = 32;

QString translated(const char *text)
{
    return QCoreApplication::translate("DataFolder", text);
}

// --- places ---

// Empty when there is nothing above.
QString stepUp(const QString &path)
{
    QDir dir(path);
    return dir.cdUp() ? dir.path() : QString();
}

QString lastComponent(const QString &path)
{
    return afterLast(path, QStringLiteral("/"));
}

// The two steps up from the program to the folder it is installed in. Paths that are only shown to
// the user take them too.
QString aboveBin(const QString &path)
{
    return lastComponent(path) == u"bin" ? stepUp(path) : path;
}

QString aboveProgramFolder(const QString &path)
{
    return lastComponent(path).contains(u"Morvane") ? stepUp(path) : path;
}

QString location(QStandardPaths::StandardLocation place)
{
    return QStandardPaths::writableLocation(place);
}

struct DataPlace {
    QString parent;
    QString display;
};

QList<DataPlace> searchPlaces()
{
    QList<DataPlace> places {{dataSearchStart(), applicationsDisplayPath(FolderName)}};
    for (const auto place : {QStandardPaths::DocumentsLocation,
                             QStandardPaths::AppLocalDataLocation, QStandardPaths::HomeLocation})
        places << DataPlace {location(place), locationDisplayPath(place, FolderName)};
    return places;
}

bool findExistingFolder(QString &path, QString &display)
{
    const QList<DataPlace> places = searchPlaces();
    for (const DataPlace &place : places) {
        QDir dir(place.parent);
        if (place.parent.isEmpty() || !dir.cd(FolderName) || !hasAllDataFolders(dir))
            continue;
        path = dir.path();
        display = place.display;
        return true;
    }
    return false;
}

bool copyDemoFolder(QString &path, QString &display)
{
    const QString demo = installFolder() + QDir::separator() + QStringLiteral("demo-data");
    const QString documents = location(QStandardPaths::DocumentsLocation);
    if (!copyFolderTree(demo, documents, FolderName))
        return false;
    path = documents + QDir::separator() + FolderName;
    display = locationDisplayPath(QStandardPaths::DocumentsLocation, FolderName);
    return true;
}

bool copyTree(const QString &source, const QString &destParent, const QString &name, int depth);

bool copyEntry(const QFileInfo &entry, const QString &destination, int depth)
{
    // Links to folders and pipes are no part of what was installed.
    if (entry.isDir() ? entry.isSymLink() : !entry.isFile())
        return true;
    if (entry.isDir())
        return copyTree(entry.filePath(), destination, entry.fileName(), depth + 1);
    const QString copy = QDir(destination).filePath(entry.fileName());
    if (QFile::exists(copy))
        return true;
    // An installed file may be read-only; the user's copy of it must not be.
    return QFile::copy(entry.filePath(), copy)
        && QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
}

bool copyTree(const QString &source, const QString &destParent, const QString &name, int depth)
{
    const QDir from(source);
    const QFileInfoList entries = from.entryInfoList();
    if (depth > MaxCopyDepth || !from.exists() || entries.isEmpty())
        return false;
    const QDir parent(destParent);
    if (!QFileInfo(parent.filePath(name)).isDir() && !parent.mkpath(name))
        return false;
    for (const QFileInfo &entry : entries) {
        if (!entry.fileName().startsWith(u'.') && !copyEntry(entry, parent.filePath(name), depth))
            return false;
    }
    return true;
}

// --- loading ---

// Shows the progress of a load in a dialog, and seldom, because each change of the dialog runs the
// event loop.
class LoadProgress : public Progress {
public:
    explicit LoadProgress(int fileCount)
        : m_fileCount(fileCount), m_button(new QPushButton(translated("Cancel")))
    {
        m_dialog.setLabelText(translated("Loading files..."));
        m_dialog.setRange(0, fileCount + StepsBesidesFiles);
        m_dialog.setCancelButton(m_button);
        m_dialog.setWindowModality(Qt::WindowModal);
        m_dialog.setAutoClose(false);
        // The dialog's own timer could show it in front of a question that waits for an answer.
        m_dialog.setMinimumDuration(std::numeric_limits<int>::max());
        m_dialog.setValue(0);
        m_sinceShown.start();
        m_sinceStart.start();
    }

    void setLabel(const QString &text) override { m_dialog.setLabelText(text); }
    void step() override
    {
        ++m_value;
        if (std::exchange(m_isWithinStep, false))
            m_dialog.setRange(0, m_fileCount + StepsBesidesFiles);
        if (m_isHidden || m_sinceShown.elapsed() < ProgressInterval)
            return;
        show(m_value);
    }
    // Progress within one long step. The bar shows that step alone until the next one begins.
    void moveWithinStep(qint64 done, qint64 total)
    {
        constexpr int Whole = 1000;
        if (m_isHidden || total <= 0)
            return;
        m_isWithinStep = true;
        m_dialog.setRange(0, Whole);
        // The last value would reset the dialog.
        show(int(qMin<qint64>(done * Whole / total, Whole - 1)));
    }
    bool wasCancelled() const override { return m_dialog.wasCanceled(); }

    void cancel() { m_dialog.cancel(); }
    void forbidCancel() { m_button->setEnabled(false); }
    // Hides the dialog for good, so that it doesn't come up again behind the message that follows.
    void hide()
    {
        m_isHidden = true;
        m_dialog.hide();
    }
    void finish()
    {
        m_dialog.setValue(m_fileCount);
        m_dialog.close();
    }

private:
    void show(int value)
    {
        if (m_sinceStart.elapsed() > ProgressDelay)
            m_dialog.setMinimumDuration(0);
        m_dialog.setValue(value);
        m_sinceShown.restart();
    }

    QProgressDialog m_dialog;
    int m_fileCount;
    QPushButton *m_button; // the dialog's
    int m_value = 0;
    bool m_isHidden = false;
    bool m_isWithinStep = false;
    QElapsedTimer m_sinceShown;
    QElapsedTimer m_sinceStart;
};

// What was read of a folder before the running library gives way to it.
struct LoadedLibrary {
    Characters characters;
    Monsters monsters;
    Encounters encounters;

    LoadResult load(const QString &path, const QString &display, Progress &progress)
    {
        LoadResult result = characters.load(path, display, progress);
        if (result == LoadResult::Loaded)
            result = monsters.load(path, display, progress);
        if (result == LoadResult::Loaded)
            result = encounters.load(path, display, progress);
        return result;
    }
};

int countFiles(const QString &path)
{
    return Characters::fileCount(path) + Monsters::fileCount(path) + Encounters::fileCount(path);
}

bool chooseFolder(QString &path, QString &display)
{
    QFileDialog dialog(theMainWindow, translated("Select Morvane Data Folder"));
    dialog.setNameFilter(FolderName);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (!dialog.exec() || dialog.selectedFiles().isEmpty())
        return false;
    path = display = dialog.selectedFiles().constFirst();
    return true;
}

void showUnknownEvent()
{
    const QString link =
        QStringLiteral("<a href=\"%1\">Morvane Web-site</a>").arg(QLatin1String(DownloadPage));
    showMessage(translated("Unknown Event"),
                translated("Your history log contains an unknown event. It is possible the event "
                           "was created by a later version of Morvane, or the history log may be "
                           "corrupted.<p>Before you continue, please check the %1 for the latest "
                           "version, and upgrade if possible.")
                    .arg(link));
}

void takeOver(LoadedLibrary &library, const QString &path, FolderAccess &access)
{
    windows().clearSelection();
    theEncounter->reset();
    theCharacters->replaceBy(library.characters);
    theMonsters->replaceBy(library.monsters);
    theEncounters->replaceBy(library.encounters);
    theHistory->clear();
    dataRoot = path;
    displayRoot = path;
    if (access.lock) {
        // A folder that was only now made couldn't be locked before.
        if (!access.isLookOnly())
            access.lock->take();
        theHistory->setLock(std::move(access.lock));
    }
    dataReadOnly = access.isLookOnly();
    windows().setLookOnly(access.lookReason);
}

void rememberFolder()
{
    QSettings settings;
    settings.setValue(PathKey, dataRoot);
    settings.setValue(DisplayKey, displayRoot);
}

// From here nothing can be cancelled.
void enterFolder(LoadedLibrary &library, const QString &path, FolderAccess &access,
                 LoadProgress &progress)
{
    progress.forbidCancel();
    takeOver(library, path, access);
    progress.setLabel(translated("Loading history..."));
    const auto tell = [&](qint64 done, qint64 total) { progress.moveWithinStep(done, total); };
    if (!theHistory->load(tell)) {
        progress.hide();
        showUnknownEvent();
    }
    if (const QString text = theHistory->damageText(); !text.isEmpty()) {
        progress.hide();
        showMessage(translated("History File Damaged"), text);
    }
    progress.step();
    rememberFolder();
    progress.step();
    progress.setLabel(translated("Setting new root..."));
    forgetPortraitFolder();
    progress.step();
    progress.finish();
    if (theManagerWindow)
        theManagerWindow->refresh();
}

LoadResult readFolder(LoadedLibrary &library, const QString &path, const QString &display,
                      FolderAccess &access)
{
    LoadProgress progress(countFiles(path));
    LoadResult result = LoadResult::Cancelled;
    {
        // Loading may copy a picture.
        const QScopedValueRollback readOnly(dataReadOnly, access.isLookOnly());
        result = library.load(path, display, progress);
    }
    if (result == LoadResult::Loaded)
        enterFolder(library, path, access, progress);
    else
        progress.cancel();
    return result;
}

// Asks for a folder until one can be loaded or the user has had enough.
bool loadFolder(LoadedLibrary &library, QString &path, QString &display)
{
    while (true) {
        if (path.isEmpty() && !chooseFolder(path, display))
            return false;
        FolderAccess access;
        LoadResult result = seekAccess(path, display, access);
        if (result == LoadResult::Loaded)
            result = readFolder(library, path, display, access);
        if (result != LoadResult::AskAgain)
            return result == LoadResult::Loaded;
        path.clear();
    }
}

void updateTitle()
{
    QString folder = lastComponent(QDir::fromNativeSeparators(dataRoot));
    // In a title the toolkit replaces a single [*] by its mark of unsaved changes.
    folder.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    QString title = folder == FolderName ? translated("Morvane DM's Display")
                                         : translated("Morvane - %1").arg(folder);
    if (dataReadOnly)
        title += translated(" - Looking Only");
    theMainWindow->setWindowTitle(title);
}

// --- a log that the disk didn't take ---

bool saveLogElsewhere()
{
    QFileDialog dialog(theMainWindow, translated("Save History File"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(translated("History files (*.log)"));
    dialog.setDefaultSuffix(QStringLiteral("log"));
    dialog.selectFile(QStringLiteral("history.log"));
    if (!dialog.exec() || dialog.selectedFiles().isEmpty())
        return false;
    const QString path = dialog.selectedFiles().constFirst();
    if (theHistory->saveLogAs(path))
        return true;
    showMessage(translated("Cannot Save History File"),
                translated("Unable to save the history file as <b>%1</b>.").arg(asHtml(path)));
    return false;
}

// --- unsaved work ---

template <typename Collection>
UnsavedItems unsavedItems(const Collection &collection, const char *plural)
{
    const QStringList names = collection.changedNames();
    return {.count = int(names.size()), .name = names.value(0), .plural = translated(plural)};
}

// Saved by its window, where there is one, which then shows the new state.
void saveCharacters()
{
    if (theCharacterWindow)
        theCharacterWindow->saveAll();
    else
        theCharacters->saveAll();
}

void saveMonstersAndEncounters()
{
    if (theManagerWindow) {
        theManagerWindow->saveAll();
    } else {
        theMonsters->saveAll();
        theEncounters->saveAll();
    }
}

} // namespace

QString installFolder()
{
    return aboveBin(QCoreApplication::applicationDirPath());
}

QString dataSearchStart()
{
    return aboveProgramFolder(installFolder());
}

QString applicationsDisplayPath(const QString &name)
{
    const QString place = QStandardPaths::displayName(QStandardPaths::ApplicationsLocation);
    if (place.isEmpty())
        return place;
    const QString path = aboveProgramFolder(aboveBin(place));
    return name.isEmpty() ? path : path + QDir::separator() + name;
}

QString locationDisplayPath(QStandardPaths::StandardLocation location, const QString &name)
{
    const QString place = QStandardPaths::displayName(location);
    return place.isEmpty() ? place : place + QDir::separator() + name;
}

bool hasAllDataFolders(const QDir &dir)
{
    return std::all_of(std::begin(SubFolders), std::end(SubFolders),
                       [&](const char *name) { return dir.exists(QLatin1String(name)); });
}

bool hasNoDataFolders(const QDir &dir)
{
    return std::none_of(std::begin(SubFolders), std::end(SubFolders),
                        [&](const char *name) { return dir.exists(QLatin1String(name)); });
}

bool copyFolderTree(const QString &source, const QString &destParent, const QString &name)
{
    return copyTree(source, destParent, name, 0);
}

void findDataFolder()
{
    const QSettings settings;
    QString path = settings.value(PathKey).toString();
    QString display;
    if (!path.isEmpty() && !hasNoDataFolders(QDir(path)))
        display = settings.value(DisplayKey).toString();
    else if (!findExistingFolder(path, display) && !copyDemoFolder(path, display))
        return;
    if (display.isEmpty())
        display = path;
    setDataFolder(path, display);
}

bool setDataFolder(QString &path, QString &display)
{
    // The event loop runs during a load, so the user could ask for a second one.
    static bool isLoading = false;
    if (isLoading)
        return false;
    const QScopedValueRollback guard(isLoading, true);

    LoadedLibrary library;
    if (!confirmUnsavedWork(
            translated("You need to save all changes before setting the 'Morvane Data' "
                       "folder."),
            translated("Save Changes and Continue"))
        || !confirmLogWritten())
        return false;
    Q_EMIT switchBoard()->doDisableWidgetDisplay();
    const bool isLoaded = loadFolder(library, path, display);
    Q_EMIT switchBoard()->doEnableWidgetDisplay();
    if (isLoaded)
        updateTitle();
    return isLoaded;
}

QString notSavedText(const QStringList &names)
{
    constexpr int LongestList = 12;
    QStringList listed;
    for (const QString &name : names.mid(0, LongestList))
        listed << bold(asHtml(name, LongestName)) + QStringLiteral("</b>");
    if (names.size() > LongestList)
        listed << translated("and %1 more").arg(names.size() - LongestList);
    return translated("%1 could not be saved. Is the disk full, or not to be written to?")
        .arg(listed.join(QStringLiteral(", ")));
}

QString unsavedWorkText(const QList<UnsavedItems> &kinds, const QString &message)
{
    QStringList items;
    int total = 0;
    for (const UnsavedItems &kind : kinds) {
        total += kind.count;
        if (kind.count == 1)
            items << bold(asHtml(kind.name)) + QStringLiteral("</b>");
        else if (kind.count > 1)
            items << kind.plural.arg(kind.count);
    }
    QString list = items.isEmpty() ? QString() : items.takeLast();
    if (!items.isEmpty())
        list = items.join(QStringLiteral(", ")) + translated(" and ") + list;
    list += total == 1 ? translated(" was") : translated(" were");
    return translated("%1 not saved.<p>%2").arg(list, message);
}

bool confirmUnsavedWork(const QString &message, const QString &continueText)
{
    const UnsavedItems characters = unsavedItems(*theCharacters, "%1 Characters");
    const UnsavedItems monsters = unsavedItems(*theMonsters, "%1 Monsters");
    const UnsavedItems encounters = unsavedItems(*theEncounters, "%1 Encounters");
    if (characters.count + monsters.count + encounters.count == 0)
        return true;
    if (!askMessage(translated("Not All Work Saved"),
                    unsavedWorkText({characters, monsters, encounters}, message), continueText))
        return false;
    if (characters.count)
        saveCharacters();
    if (monsters.count || encounters.count)
        saveMonstersAndEncounters();
    const QStringList unsaved =
        theCharacters->changedNames() + theMonsters->changedNames() + theEncounters->changedNames();
    return unsaved.isEmpty()
        || askMessage(translated("Not All Work Saved"), notSavedText(unsaved),
                      translated("Continue Without"));
}

bool confirmLogWritten()
{
    enum Choice { TryAgain, SaveElsewhere, Leave };
    while (theHistory && !theHistory->writeWaiting()) {
        MessageDialog dialog;
        const int choice = dialog.choose(
            translated("History Not Written"),
            translated("The last events of the fight could not be written to the history file, "
                       "<b>%1</b>. Is the disk full or unplugged?<p>If you leave without, those "
                       "events are lost.")
                .arg(asHtml(historyPath())),
            {translated("Try Again"), translated("Save Elsewhere..."),
             translated("Leave Without")});
        if (choice == Leave || (choice == SaveElsewhere && saveLogElsewhere()))
            return true;
        if (choice < 0)
            return false;
    }
    return true;
}
