// What was read of a creature's text, for somebody who writes it: line by line, and in a sentence.
#pragma once

#include <QList>
#include <QString>

#include "linereading.h"

// Eight numbers count, those that a fight can't do without: level, HP, initiative, the four
// defences and the speed. The XP are needed after it, and Perception only by those who hide. A trap
// has none but level and XP.
struct StatBlockReading {
    // One for each line of the text; none for a text in key form or XML.
    QList<LineReading> lines;
    // "Read 6 of 8 numbers (no Will, no speed), 5 powers. 2 lines kept as text."
    QString summary;

    // -1 for none.
    qsizetype firstNotUnderstood() const { return lines.indexOf(LineReading::NotUnderstood); }
};

// Reads the text as parseText() does, and looks for no picture's folder.
StatBlockReading readingOf(bool isMonster, const QString &text);

// "Text of a power"; empty for a blank line.
QString lineReadingName(LineReading reading);
