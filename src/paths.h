// The data folder in use, and the places of its files.
#pragma once

#include <QString>

// Every file path of the library and the history is built from dataRoot; displayRoot is the same
// folder as told to the user. Both are null until a folder has been loaded.
extern QString dataRoot;
extern QString displayRoot;
// The data folder is only looked at: nothing in it may be written, made or removed.
extern bool dataReadOnly;

// Each uses dataRoot when `root` is empty.
QString encounterPath(const QString &fileName, const QString &root = QString());
QString creaturePath(const QString &fileName, bool isMonster, const QString &root = QString());
// `name` may hold sub-folders, with either kind of slash.
QString portraitPath(const QString &name, const QString &root = QString());
QString historyPath(const QString &root = QString());
