#include "namesinlog.h"

#include <QHash>

#include "characters.h"
#include "encounter.h"
#include "objectstream.h"

namespace {

struct Rename {
    QString oldName;
    QString newName;
};

QList<Rename> renamesAhead(ObjectStream &stream)
{
    QList<Rename> renames;
    const auto fields = stream.fieldsAhead({ID_RENAME_EVENT_OLD_NAME, ID_RENAME_EVENT_NEW_NAME});
    for (const StreamField &field : fields) {
        const QString name = QString::fromUtf8(field.value);
        if (field.tag == ID_RENAME_EVENT_OLD_NAME)
            renames.append({name, QString()});
        else if (!renames.isEmpty())
            renames.last().newName = name;
    }
    return renames;
}

bool isSameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The name that the renames from that index on lead to.
QString lastName(QString name, const QList<Rename> &renames, qsizetype from)
{
    for (; from < renames.size(); ++from) {
        if (isSameName(name, renames.at(from).oldName))
            name = renames.at(from).newName;
    }
    return name;
}

// A name that stands in no log and no file.
QString nobodysName(const QString &name)
{
    return name + QChar(0x1f);
}

} // namespace

void NamesInLog::takeBack(ObjectStream &stream)
{
    const QList<Rename> renames = renamesAhead(stream);
    if (renames.isEmpty() || !theCharacters)
        return;
    QHash<QString, Creature *> holders;
    for (int i = 0; i < theCharacters->count(); ++i)
        holders.insert(theCharacters->at(i)->name().toCaseFolded(), theCharacters->at(i));
    QHash<Creature *, QString> names;
    for (qsizetype i = renames.size() - 1; i >= 0; --i) {
        const QString oldName = renames.at(i).oldName;
        Creature *hero = holders.take(renames.at(i).newName.toCaseFolded());
        if (!hero)
            continue;
        if (Creature *other = holders.take(oldName.toCaseFolded())) {
            // The present holder of the old name got it only later: up to here the log meant
            // another by it.
            const QString name = names.value(other, other->name());
            m_waiting.append({other, name, i});
            m_heroes.append({other, other->name(), lastName(name, renames, i + 1)});
            names.remove(other);
        }
        holders.insert(oldName.toCaseFolded(), hero);
        names.insert(hero, oldName);
    }
    for (const Waiting &waiting : std::as_const(m_waiting))
        waiting.creature->setName(nobodysName(waiting.name));
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        Creature *hero = it.key();
        m_heroes.append({hero, hero->name(), lastName(it.value(), renames, 0)});
        hero->setName(it.value());
        hero->setNameBefore(it.value());
    }
}

void NamesInLog::notePassed()
{
    for (const Waiting &waiting : std::as_const(m_waiting)) {
        if (waiting.freedBy == m_passed && waiting.creature) {
            waiting.creature->setName(waiting.name);
            waiting.creature->setNameBefore(waiting.name);
        }
    }
    ++m_passed;
}

void NamesInLog::finish()
{
    for (const Hero &hero : std::as_const(m_heroes)) {
        if (!hero.creature || isSameName(hero.creature->name(), hero.lastInLog))
            continue;
        hero.creature->setName(hero.nameOfFile);
        // The next command logs it for a hero in the encounter.
        if (theEncounter->contains(hero.creature))
            theEncounter->markVitalityStale();
        else
            hero.creature->setNameBefore(hero.nameOfFile);
    }
}
