// What was changed outside the history: by an editor, or by a file that was read.
#pragma once

class ObjectStream;

// Logs such changes, ahead of the event of a command. Nothing while the encounter isn't marked by
// markVitalityStale(), nor without a stream.
void checkVitality(ObjectStream *stream);
// The same without a command: before a save, or after events were dropped. Without such changes it
// doesn't touch the log. A log that can't be written is passed over without a message.
void logOutsideChanges();
