// Data folders and fights of any size for the benchmarks.
#pragma once

#include <QList>
#include <QStringList>
#include <QTemporaryDir>

#include "coreobjects.h"
#include "windowinterface.h"

class Creature;

// A data folder with that many monsters, a character to 25 of them and an encounter to 10. It is
// dataRoot as long as it lives.
class BenchFolder {
public:
    explicit BenchFolder(int monsters);
    ~BenchFolder();
    Q_DISABLE_COPY(BenchFolder)

    QString path() const { return m_dir.path(); }
    const QStringList &files() const { return m_files; }
    // Into the collections of the running objects.
    void load() const;

private:
    void write(const QString &relative, const QByteArray &text);

    QTemporaryDir m_dir;
    QStringList m_files;
};

// Sets up and starts, with three events, a fight of four characters against that many monsters of
// the collections.
void startFight(int monsters);

// Four characters against eight monsters, without a window.
class Fight {
public:
    explicit Fight(const BenchFolder &folder);
    void start() { startFight(8); }
    // One hit, heal or turn; the same in each fight, and nobody ever dies of it.
    void playOne();
    // Starts the fight and plays until the log holds that many events.
    void play(int events);

private:
    Creature *target(int offset) const;

    CoreObjects m_objects;
    int m_played = 0;
};
