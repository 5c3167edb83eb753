// Data folders and creatures for tests, made on the fly.
#pragma once

#include <QMap>
#include <QTemporaryDir>

#include "progress.h"

// A data folder with its four sub-folders; it becomes dataRoot for as long as it lives.
class TestDataFolder {
public:
    TestDataFolder();
    ~TestDataFolder();
    TestDataFolder(const TestDataFolder &) = delete;
    TestDataFolder &operator=(const TestDataFolder &) = delete;

    QString path() const { return m_dir.path(); }
    QString file(const QString &relative) const { return m_dir.filePath(relative); }
    // Writes text with CR LF line ends to a file below the folder.
    void write(const QString &relative, const QString &text) const;
    QByteArray read(const QString &relative) const;
    // The log, the library and whatever else lies in the folder, by relative path.
    QMap<QString, QByteArray> files() const;
    // Key form files with plain numbers.
    void addCharacter(const QString &name, int maxHP = 30, int initiative = 2) const;
    void addMonster(const QString &group, int maxHP = 20, int initiative = 1) const;
    // Loads all three collections into the running objects, which a CoreObjects has made.
    void load() const;

private:
    QTemporaryDir m_dir;
};

class NoProgress : public Progress {
public:
    void setLabel(const QString &) override { }
    void step() override { }
    bool wasCancelled() const override { return false; }
};
