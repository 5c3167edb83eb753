// What the three collections of the library share: entries sorted by name, one for each file of a
// folder, and the changes that aren't saved yet.
#pragma once

#include <memory>

#include "creatureportrait.h"
#include "libraryfolder.h"
#include "librarylist.h"

// Whether an entry may take a name. Names are compared ignoring case, and that of an entry whose
// deletion isn't saved yet can't be used again until it is.
enum class NameState { Free, Taken, TakenByDeleted };

template <typename Entry>
NameState nameStateOf(const Entry *holder)
{
    if (!holder)
        return NameState::Free;
    return holder->isDeleted() ? NameState::TakenByDeleted : NameState::Taken;
}

// Takes all three flags off, and so out of the counters.
template <typename Entry>
void clearFlags(Entry &entry)
{
    entry.setNew(false);
    entry.setModified(false);
    entry.setDeleted(false);
}

// No signal tells a list model of added or removed entries: whoever calls add(), resort(), load(),
// saveAll(), revertAll() or clear() has the model read the entries again.
template <typename Entry>
class Collection {
public:
    virtual ~Collection() = default;

    // Sorted by name ignoring case; later additions of an equal name stand last.
    int count() const { return m_entries.count(); }
    // Null for an index out of range.
    Entry *at(int index) const { return m_entries.at(index); }
    // -1 for one that isn't here.
    int indexOf(const Entry *entry) const { return m_entries.indexOf(entry); }
    // Where `name` belongs, passing over the entry at `exceptIndex` (-1: none).
    int insertionIndex(const QString &name, int exceptIndex = -1) const
    {
        return m_entries.insertionIndex(name, exceptIndex);
    }
    // Takes the entry over. Returns its index. The flags of a new one are set behind this, or they
    // would not be counted.
    int add(std::unique_ptr<Entry> entry) { return m_entries.add(std::move(entry)); }
    // The same for one that no file holds yet: it has isNew() and isModified() set.
    Entry *addNew(std::unique_ptr<Entry> entry)
    {
        Entry *added = at(add(std::move(entry)));
        added->setNew(true);
        added->setModified(true);
        return added;
    }
    // Puts the entry where its changed name belongs. Returns its new index; -1 for one that isn't
    // here.
    int resort(Entry *entry)
    {
        m_entries.resort(entry);
        return indexOf(entry);
    }
    const ChangeCounters &counters() const { return *m_counters; }
    // The names of the entries that are unsaved work: new, changed or deleted.
    QStringList changedNames() const
    {
        QStringList names;
        // An unchanged library need not be walked through.
        if (m_counters->isNew == 0 && m_counters->isModified == 0 && m_counters->isDeleted == 0)
            return names;
        addChangedNames(m_entries, names);
        addDeletedNames(names);
        return names;
    }

    // Replaces all by what the folder holds. A folder that is missing or gives nothing is a
    // question to the user.
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress)
    {
        clear();
        const PortraitSearch search;
        const auto loadFile = [&](const QString &fileName) {
            std::unique_ptr<Entry> entry = read(fileName, dataFolder);
            if (!entry)
                return false;
            m_entries.append(std::move(entry));
            return true;
        };
        const LoadResult result =
            loadLibraryFolder(m_folder, dataFolder, displayFolder, progress, loadFile);
        m_entries.sort();
        return result;
    }

    // Writes what is new or changed and removes the files of deleted entries. What can't be written
    // keeps its flags.
    virtual void saveAll()
    {
        for (int i = count() - 1; i >= 0; --i) {
            Entry *entry = at(i);
            if (entry->isDeleted()) {
                if (removeFile(*entry))
                    discard(i);
            } else if ((entry->isNew() || entry->isModified()) && save(*entry)) {
                clearFlags(*entry);
            }
        }
    }

    // Back to what the files hold. New entries go, and those whose name changes move. A name that
    // two files state goes to one of them as in a load, once all have their own back.
    virtual void revertAll()
    {
        const QList<Entry *> entries = m_entries.list();
        for (auto it = entries.crbegin(); it != entries.crend(); ++it) {
            Entry *entry = *it;
            const bool isNew = entry->isNew();
            entry->setDeleted(false);
            revert(entry);
            if (isNew)
                discard(indexOf(entry));
        }
        settleNames();
    }

    virtual void clear()
    {
        m_counters = std::make_shared<ChangeCounters>();
        m_entries.clear(m_counters);
    }

protected:
    using Key = typename LibraryList<Entry>::Key;

    Collection(Key key, const LibraryFolder &folder)
        : m_folder(folder), m_counters(std::make_shared<ChangeCounters>()),
          m_entries(key, m_counters)
    {
    }

    // Null for a file that gives no entry.
    virtual std::unique_ptr<Entry> read(const QString &fileName, const QString &dataFolder) = 0;
    virtual bool save(Entry &entry) = 0;
    // True too when there is none.
    virtual bool removeFile(Entry &entry) = 0;
    // The entry may be another one afterwards, unless it is new, and may have a name that another
    // one has.
    virtual void revert(Entry *entry) = 0;
    virtual void settleNames() { }
    // An entry whose file is gone, or that never had one.
    virtual void discard(int index)
    {
        if (const std::unique_ptr<Entry> entry = m_entries.take(index))
            clearFlags(*entry);
    }

    // Deleted entries that the collection keeps elsewhere.
    virtual void addDeletedNames(QStringList & /*names*/) const { }
    static void addChangedNames(const LibraryList<Entry> &entries, QStringList &names)
    {
        for (const Entry *entry : entries.list()) {
            if (entry->isNew() || entry->isModified() || entry->isDeleted())
                names.append(entries.keyOf(*entry));
        }
    }

    // Exchanges the entries with those of `other`.
    void swapWith(Collection &other)
    {
        std::swap(m_counters, other.m_counters);
        std::swap(m_entries, other.m_entries);
    }

    // `name`, or with the first number from 1 that isn't taken.
    template <typename IsTaken>
    static QString freeName(const QString &name, IsTaken isTaken)
    {
        QString candidate = name;
        for (int number = 1; isTaken(candidate); ++number)
            candidate = QStringLiteral("%1 %2").arg(name, QString::number(number));
        return candidate;
    }

private:
    const LibraryFolder &m_folder;

protected:
    std::shared_ptr<ChangeCounters> m_counters;
    LibraryList<Entry> m_entries;
};
