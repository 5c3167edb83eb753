#include "memorytracker.h"

#include <QMutex>
#include <QtDebug>

#include <map>
#include <new>

namespace {

struct Record {
    int sequence = 0;
    int line = 0;
    const char *file = "?";
};

struct Table {
    QMutex mutex;
    // Ordered by address, which is the order of the printed lines.
    std::multimap<quintptr, Record> records;
    int sequence = 0;
    const void *watched = nullptr;
};

// Never destroyed, since objects with static storage may sign off after any other static object
// is gone.
Table &table()
{
    static Table &instance = *new Table;
    return instance;
}

void print(quintptr pointer, const Record &record, const char *reason)
{
    qDebug("MM: %p (#%d) %s:%d %s", reinterpret_cast<const void *>(pointer), record.sequence,
           record.file, record.line, reason);
}

} // namespace

void MemoryTracker::add(const void *pointer, int line, const char *file)
{
    Table &t = table();
    const QMutexLocker lock(&t.mutex);
    try {
        t.records.insert({quintptr(pointer), Record {t.sequence, line, file ? file : "?"}});
        ++t.sequence;
    } catch (const std::bad_alloc &) {
        qDebug("MM ERROR: Cannot allocate table big enough!");
    }
}

void MemoryTracker::remove(const void *pointer)
{
    Table &t = table();
    const QMutexLocker lock(&t.mutex);
    if (pointer == t.watched)
        qDebug("Hit watch point!");
    const auto found = t.records.find(quintptr(pointer));
    if (found != t.records.end())
        t.records.erase(found);
    else
        qDebug("MM: %p %s", pointer, "Pointer not allocated");
}

void MemoryTracker::clear()
{
    Table &t = table();
    const QMutexLocker lock(&t.mutex);
    for (const auto &[pointer, record] : t.records)
        print(pointer, record, "Not free");
    t.records.clear();
    t.sequence = 0;
}

int MemoryTracker::count()
{
    Table &t = table();
    const QMutexLocker lock(&t.mutex);
    return static_cast<int>(t.records.size());
}

void MemoryTracker::watch(const void *pointer)
{
    Table &t = table();
    const QMutexLocker lock(&t.mutex);
    t.watched = pointer;
}
