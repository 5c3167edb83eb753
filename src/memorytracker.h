// A debugging aid: long-lived objects register here, and what is left at the end is printed.
#pragma once

#include <QtGlobal>

class MemoryTracker {
public:
    static void add(const void *pointer, int line, const char *file);
    static void remove(const void *pointer);
    // Prints what is still registered, with the reason "Not free", and forgets it.
    static void clear();
    static int count();
    // remove() reports when this pointer is taken off.
    static void watch(const void *pointer);
};

// A member that registers the object that holds it for as long as it lives. Compiled away unless
// MORVANE_TRACK_MEMORY is defined.
class TrackerMember {
public:
#ifdef MORVANE_TRACK_MEMORY
    TrackerMember(int line, const char *file)
    {
        MemoryTracker::add(this, line, file);
    }
    ~TrackerMember()
    {
        MemoryTracker::remove(this);
    }
#else
    constexpr TrackerMember(int, const char *) { }
#endif
    Q_DISABLE_COPY(TrackerMember)
};
