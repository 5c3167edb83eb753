// The colours of rich texts on a light or a dark palette.
#pragma once

#include <QColor>
#include <QString>

class QPalette;

// The colour of that name, in a shade that can be read on `palette`.
QColor readableColour(QLatin1String name, const QPalette &palette);

// The text with each "<font color=name>" in a shade that can be read on `palette`.
QString readableColours(const QString &html, const QPalette &palette);
