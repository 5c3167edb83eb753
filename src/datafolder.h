// Finds, copies and loads the one data folder.
#pragma once

#include <QStandardPaths>
#include <QString>

class QDir;

// The search at the start of the program: the folder of the last time, one in a usual place, or a
// copy of the demo data. Where even the copy fails the library stays empty.
void findDataFolder();
// Loads the folder `path`, or asks for one when `path` is empty. False when the user cancelled: the
// old folder and all its objects are untouched then. Both arguments may be changed by the choice.
bool setDataFolder(QString &path, QString &display);
// Offers to save the library's unsaved work. True means go on.
bool confirmUnsavedWork(const QString &message, const QString &continueText);

// Writes what of the log still waits in memory, and asks what to do where the disk doesn't take it:
// try again, save the log elsewhere, or leave without. True means go on.
bool confirmLogWritten();

bool hasAllDataFolders(const QDir &dir);
bool hasNoDataFolders(const QDir &dir);
// Where the program is installed, above "bin". Empty when there is nothing above.
QString installFolder();
// Where the search for a data folder begins: beside the folder of the program.
QString dataSearchStart();
// Paths as told to the user; empty where the system has no name for the place.
QString applicationsDisplayPath(const QString &name);
QString locationDisplayPath(QStandardPaths::StandardLocation location, const QString &name);
// Copies the folder as `name` into `destParent`. Files that are there already are left alone; the
// first failure ends the copy with false, and what was copied stays.
bool copyFolderTree(const QString &source, const QString &destParent, const QString &name);

// The text of the question of confirmUnsavedWork().
struct UnsavedItems {
    int count = 0;
    QString name; // of one of them
    QString plural; // "%1 Monsters"
};
QString unsavedWorkText(const QList<UnsavedItems> &kinds, const QString &message);
// Says which entries of the library could not be written.
QString notSavedText(const QStringList &names);
