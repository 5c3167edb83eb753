// What changed outside the history, in the files of the library.
#pragma once

class QDateTime;

// After a replay: each character whose file was written after the log takes the numbers that its
// text states, in place of those that the log knew. The next command logs the difference.
void takeEditedFiles(const QDateTime &logWritten);
