// What was changed outside the history: by an editor, or by a file that was read.
#pragma once

class ObjectStream;

// Logs such changes, ahead of the event of a command. Nothing while the encounter isn't marked by
// markVitalityStale(), nor without a stream.
void checkVitality(ObjectStream *stream);
// The same ahead of a save. Without such changes the log isn't touched; one that can't be written
// is no reason not to save.
void logBeforeSave();
