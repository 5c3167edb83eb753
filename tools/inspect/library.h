// A data folder loaded for reading only, without a window.
#pragma once

#include <QString>

#include "coreobjects.h"
#include "windowinterface.h"

// Messages go to standard error and every question is answered "no", so nothing is created.
class InspectorWindows : public NoWindows {
public:
    explicit InspectorWindows(int partySize) : m_partySize(partySize) { setWindows(this); }
    ~InspectorWindows() override { setWindows(nullptr); }
    InspectorWindows(const InspectorWindows &) = delete;
    InspectorWindows &operator=(const InspectorWindows &) = delete;

    int partySize() const override { return m_partySize; }

private:
    int m_partySize;
};

// The objects of the program, with the three collections of a data folder loaded.
class Library {
public:
    explicit Library(const QString &dataFolder);

private:
    CoreObjects m_objects;
};
