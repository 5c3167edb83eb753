// Owner of the objects that the core works with, one of each.
#pragma once

// Makes and owns all five in the order in which the program needs them, and deletes them in the
// order of shut-down. The main window holds one; tests and the inspector hold their own.
class CoreObjects {
public:
    CoreObjects();
    ~CoreObjects();
    CoreObjects(const CoreObjects &) = delete;
    CoreObjects &operator=(const CoreObjects &) = delete;
};
