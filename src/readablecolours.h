// The colours of rich texts on a light or a dark palette.
#pragma once

#include <QString>

class QPalette;

// The text with each "<font color=name>" in a shade that can be read on `palette`.
QString readableColours(const QString &html, const QPalette &palette);
