// A list of entries that it owns and finds by name: what the collections are made of.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <algorithm>
#include <memory>
#include <vector>

#include "editflags.h"

// A name is looked up ignoring case and at the same cost in a library of any size. What counts as
// the name is the collection's choice. Lists of one collection share its counters.
template <typename Entry>
class LibraryList {
public:
    using Key = QString (*)(const Entry &);

    LibraryList(Key key, std::shared_ptr<ChangeCounters> counters)
        : m_key(key), m_counters(std::move(counters)), m_indexedChanges(m_counters->nameChanges)
    {
    }

    // Destroys all entries.
    void clear(std::shared_ptr<ChangeCounters> counters)
    {
        m_index.clear();
        m_nextNumbers.clear();
        m_entries.clear();
        m_counters = std::move(counters);
        m_indexedChanges = m_counters->nameChanges;
    }

    int count() const { return int(m_entries.size()); }

    // Null for an index out of range.
    Entry *at(int index) const
    {
        return index >= 0 && index < count() ? m_entries[std::size_t(index)].get() : nullptr;
    }

    // -1 for one that isn't here.
    int indexOf(const Entry *entry) const
    {
        const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                        [entry](const auto &each) { return each.get() == entry; });
        return found == m_entries.cend() ? -1 : int(found - m_entries.cbegin());
    }

    QList<Entry *> list() const
    {
        QList<Entry *> result;
        result.reserve(count());
        for (const auto &entry : m_entries)
            result.append(entry.get());
        return result;
    }

    QString keyOf(const Entry &entry) const { return m_key(entry); }

    // The first of that name but `except`, or null.
    Entry *find(const QString &key, const Entry *except = nullptr) const
    {
        // Full case folding makes more names equal than a comparison does, so each is compared too.
        const QList<Entry *> candidates = index().value(key.toCaseFolded());
        for (Entry *entry : candidates) {
            if (entry != except && m_key(*entry).compare(key, Qt::CaseInsensitive) == 0)
                return entry;
        }
        return nullptr;
    }

    // `key`, or the first of "key 2", "key 3" and so on that no entry but `except` has.
    QString uniqueKey(const QString &key, const Entry *except) const
    {
        if (!find(key, except))
            return key;
        index(); // may forget the numbers
        const QString stem = key.toCaseFolded();
        int number = except ? 2 : m_nextNumbers.value(stem, 2);
        QString candidate = QStringLiteral("%1 %2").arg(key, QString::number(number));
        while (find(candidate, except))
            candidate = QStringLiteral("%1 %2").arg(key, QString::number(++number));
        if (!except)
            m_nextNumbers.insert(stem, number);
        return candidate;
    }

    // The same as a function, good while the list lives.
    auto namer() const
    {
        return [this](const QString &key, const Entry *self) { return uniqueKey(key, self); };
    }

    // Before the first entry that sorts after `key`, passing over the one at `exceptIndex`.
    int insertionIndex(const QString &key, int exceptIndex = -1) const
    {
        const auto sortsAfter = [this](const QString &name, const std::unique_ptr<Entry> &entry) {
            return name.compare(m_key(*entry), Qt::CaseInsensitive) < 0;
        };
        const auto search = [&](auto first, auto last) {
            return std::upper_bound(first, last, key, sortsAfter);
        };
        const auto begin = m_entries.begin();
        const auto end = m_entries.end();
        if (exceptIndex < 0 || exceptIndex >= count())
            return int(search(begin, end) - begin);
        const auto except = begin + exceptIndex;
        const auto before = search(begin, except);
        return int((before != except ? before : search(except + 1, end)) - begin);
    }

    // Takes the entry over in its place among sorted ones. Returns its index.
    int add(std::unique_ptr<Entry> entry)
    {
        const int position = insertionIndex(m_key(*entry));
        adopt(entry.get());
        m_entries.insert(m_entries.begin() + position, std::move(entry));
        return position;
    }

    // Behind the last one: for an order of arrival, or with sort() at the end of a load.
    Entry *append(std::unique_ptr<Entry> entry)
    {
        adopt(entry.get());
        m_entries.push_back(std::move(entry));
        return m_entries.back().get();
    }

    void sort()
    {
        std::stable_sort(m_entries.begin(), m_entries.end(), [this](const auto &a, const auto &b) {
            return m_key(*a).compare(m_key(*b), Qt::CaseInsensitive) < 0;
        });
    }

    // Null for an index out of range.
    std::unique_ptr<Entry> take(int index)
    {
        if (!at(index))
            return nullptr;
        const auto place = m_entries.begin() + index;
        std::unique_ptr<Entry> taken = std::move(*place);
        m_entries.erase(place);
        this->index(); // the entry stands under its present name now
        const auto found = m_index.find(m_key(*taken).toCaseFolded());
        if (found != m_index.end()) {
            found->removeOne(taken.get());
            if (found->isEmpty())
                m_index.erase(found);
        }
        m_nextNumbers.clear();
        return taken;
    }

    // Puts the entry where its changed name belongs.
    void resort(Entry *entry)
    {
        const int position = indexOf(entry);
        if (position >= 0)
            add(take(position));
    }

    // Keeps only what `stays` accepts.
    void removeUnless(bool (*stays)(const Entry &))
    {
        std::erase_if(m_entries, [stays](const auto &entry) { return !stays(*entry); });
        ++m_counters->nameChanges;
    }

private:
    // By case-folded name; entries of the same one in the order of the list.
    using Index = QHash<QString, QList<Entry *>>;

    void adopt(Entry *entry)
    {
        index(); // brought up to date before the newcomer stands in the list
        entry->setChangeCounters(m_counters.get());
        m_index[m_key(*entry).toCaseFolded()].append(entry);
    }

    const Index &index() const
    {
        if (m_indexedChanges != m_counters->nameChanges) {
            m_indexedChanges = m_counters->nameChanges;
            m_index.clear();
            m_nextNumbers.clear();
            for (const auto &entry : m_entries)
                m_index[m_key(*entry).toCaseFolded()].append(entry.get());
        }
        return m_index;
    }

    Key m_key;
    std::shared_ptr<ChangeCounters> m_counters;
    std::vector<std::unique_ptr<Entry>> m_entries;
    mutable Index m_index;
    mutable int m_indexedChanges = 0;
    // Below these numbers every name made from the stem is taken, as long as none is given up.
    mutable QHash<QString, int> m_nextNumbers;
};
