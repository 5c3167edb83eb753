// The values of the whole process that need neither the core nor a window.
#pragma once

#include <QFile>
#include <QObject>
#include <QPixmap>

class Global : public QObject {
    Q_OBJECT

public:
    explicit Global(QObject *parent = nullptr);
};

// The text log; only the message handler writes to it.
extern QFile logFile;
// Shown where a creature has no picture. Null until main() has loaded it; owned by main().
extern QPixmap *blankPortrait;

// Number of players that the levels of all encounters are worked out for; 5 until it is set. Less
// than 1 counts as 1.
int partySize();
void setPartySize(int count);
