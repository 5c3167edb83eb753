// Owner of the objects that the core works with, one of each.
#pragma once

#include <functional>

// Makes and owns all five in the order in which the program needs them, and deletes them in the
// order of shut-down. The main window holds one; tests and the inspector hold their own.
class CoreObjects {
public:
    // `beforeEncounters` is called in the midst of shut-down, for what must go between the
    // collections. It may be empty.
    explicit CoreObjects(std::function<void()> beforeEncounters = {});
    ~CoreObjects();
    CoreObjects(const CoreObjects &) = delete;
    CoreObjects &operator=(const CoreObjects &) = delete;

private:
    std::function<void()> m_beforeEncounters;
};
