// Makes the event that a record of the log tells of.
#pragma once

class Event;
class ObjectStream;

// The next event of the log, the caller's. Null at the end of the data, with `ok` as it was, and
// for an unknown type, with `ok` set to false.
Event *readEvent(ObjectStream *stream, bool *ok);
