// What the managers keep of an entry of the library that differs from its file.
#pragma once

// How many entries of a collection carry each flag.
struct ChangeCounters {
    int isNew = 0;
    int isModified = 0;
    int isDeleted = 0;
    // Raised when an entry's name changes: the collection must then index its names anew.
    int nameChanges = 0;
};

// The three flags of one entry, counted by its collection while it stands in one.
class EditFlags {
public:
    bool isNew() const { return m_isNew; }
    bool isModified() const { return m_isModified; }
    bool isDeleted() const { return m_isDeleted; }
    void setNew(bool value) { set(m_isNew, value, &ChangeCounters::isNew); }
    void setModified(bool value) { set(m_isModified, value, &ChangeCounters::isModified); }
    void setDeleted(bool value) { set(m_isDeleted, value, &ChangeCounters::isDeleted); }

    // The counters stay the collection's; null counts nothing. Flags that are set already aren't
    // counted.
    void setCounters(ChangeCounters *counters) { m_counters = counters; }
    void noteNameChange()
    {
        if (m_counters)
            ++m_counters->nameChanges;
    }

private:
    void set(bool &flag, bool value, int ChangeCounters::*counter)
    {
        if (flag != value && m_counters)
            m_counters->*counter += value ? 1 : -1;
        flag = value;
    }

    ChangeCounters *m_counters = nullptr;
    bool m_isNew = false;
    bool m_isModified = false;
    bool m_isDeleted = false;
};
