// What the parser of stat blocks took each line of its text for.
#pragma once

#include <QtGlobal>

enum class LineReading {
    Title,
    Header, // statistics, above the powers or below
    Power, // a power's first line, a trait's, or a heading of actions
    PowerText,
    NotUnderstood,
    Blank
};

struct LineNote {
    // Indices into the text: of the first character and of the last one. A line that was wrapped
    // has one note, one that was cut has several; they stand in the order of the text.
    qsizetype first = 0;
    qsizetype last = 0;
    LineReading reading = LineReading::NotUnderstood;
    bool isSkipped = false; // not understood, and nothing of it is in the record
};
