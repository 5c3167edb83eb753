// The one way in which a command puts an event into the history.
#pragma once

#include <utility>

#include "coreobjects.h"
#include "encounter.h"
#include "history.h"

// The log, behind the records of what changed outside the history. Null when the log can't be
// written, of which the user has been told: a command then stops.
inline ObjectStream *streamForEvent()
{
    if (!theHistory->getStream())
        return nullptr;
    theEncounter->checkVitality(theHistory);
    return theHistory->getStream();
}

// Makes the event, whose last argument is the stream, and applies it. False when the log can't be
// written: nothing has happened then.
template <typename EventClass, typename... Arguments>
bool appendEvent(Arguments &&...arguments)
{
    ObjectStream *stream = streamForEvent();
    if (!stream)
        return false;
    theHistory->doEvent(new EventClass(std::forward<Arguments>(arguments)..., stream));
    return true;
}
