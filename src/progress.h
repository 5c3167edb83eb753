// How a long load tells how far it is and learns that the user has had enough.
#pragma once

#include <QString>

class Progress {
public:
    virtual ~Progress() = default;
    virtual void setLabel(const QString &text) = 0;
    virtual void step() = 0;
    virtual bool wasCancelled() const = 0;
};

// What a collection's load() says of a data folder.
enum class LoadResult { Cancelled = 0, Loaded = 1, AskAgain = 2 };
