// A data folder loaded for reading only, without a window: messages go to standard error and every
// question is answered "no", so nothing is created.
#pragma once

#include <QString>

#include "coreobjects.h"

// The objects of the program, with the three collections of a data folder loaded.
class Library {
public:
    explicit Library(const QString &dataFolder);

private:
    CoreObjects m_objects;
};
