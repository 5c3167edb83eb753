// The one way in which a command puts an event into the history.
#pragma once

#include <utility>

#include "history.h"
#include "outsidechanges.h"

// Makes the event and applies it; its constructor takes the stream last. An event without arguments
// takes the stream and whether it is read. Only for what changed outside the history: commands call
// appendEvent().
template <typename EventClass, typename... Arguments>
void appendTo(ObjectStream *stream, Arguments &&...arguments)
{
    if constexpr (sizeof...(arguments) == 0)
        theHistory->doEvent(new EventClass(stream, false));
    else
        theHistory->doEvent(new EventClass(std::forward<Arguments>(arguments)..., stream));
}

// The log, behind the records of what changed outside the history. Null when the log can't be
// written, of which the user has been told: a command then stops.
inline ObjectStream *streamForEvent()
{
    ObjectStream *stream = theHistory->getStream();
    if (stream)
        checkVitality(stream);
    return stream;
}

// Makes and applies a command's event with those arguments. False when the log can't be written:
// nothing has happened then.
template <typename EventClass, typename... Arguments>
bool appendEvent(Arguments &&...arguments)
{
    ObjectStream *stream = streamForEvent();
    if (stream)
        appendTo<EventClass>(stream, std::forward<Arguments>(arguments)...);
    return stream != nullptr;
}
