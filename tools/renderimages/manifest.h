// The list of pictures: which name is drawn from which source in which size.
#pragma once

#include <QList>
#include <QSize>
#include <QString>

struct Picture {
    QString name; // of the file, sub-folders included; what the code asks for
    QString source; // of the SVG file, without its extension
    QSize size; // in pixels, at the normal scale

    // Of a name like "stats/tick.png" at scale 2: "stats/tick@2x.png".
    QString fileName(int scale) const;
};

// Reads lines of name, source and size ("32" or "24x16") apart by blanks; "#" opens a comment line.
// False with `error` set at the first line that can't be read.
bool readManifest(const QString &fileName, QList<Picture> &pictures, QString &error);
