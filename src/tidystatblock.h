// Mends what a copy out of a browser, a PDF viewer or a word processor does to a stat block, ahead
// of its parser: split words, foreign signs, numbers out of their order.
#pragma once

#include <QString>
#include <QStringList>

struct TidiedText {
    QString text;
    QStringList changes; // a plain line for each kind of change; empty when the text is as it was
};

// Changes only what stands in the tables of the source file. A text in key form or XML, and one
// that is no valid UTF-16, stays as it is; so does what was tidied before.
TidiedText tidyStatBlock(const QString &text);
