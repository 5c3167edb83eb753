#include "namesinlog.h"

#include <QHash>
#include <algorithm>

#include "characters.h"
#include "encounter.h"
#include "objectstream.h"

namespace {

// A name that stands in no log and no file.
QString nobodysName(const QString &name)
{
    return name + QChar(0x1f);
}

// Sets the name, and has the history know it too.
void call(Creature *hero, const QString &name)
{
    hero->setName(name);
    hero->setNameBefore(name);
}

} // namespace

QList<NamesInLog::Rename> NamesInLog::renamesAhead(ObjectStream &stream)
{
    QList<Rename> renames;
    const auto fields = stream.fieldsAhead({ID_RENAME_EVENT_OLD_NAME, ID_RENAME_EVENT_NEW_NAME});
    for (const StreamField &field : fields) {
        const QString name = QString::fromUtf8(field.value);
        if (field.tag == ID_RENAME_EVENT_OLD_NAME)
            renames.append({name, {}, {}});
        else if (!renames.isEmpty())
            renames.last().newName = name;
    }
    return renames;
}

// The name that the renames from that index on lead to.
QString NamesInLog::lastName(QString name, qsizetype from) const
{
    for (; from < m_renames.size(); ++from) {
        if (name.compare(m_renames.at(from).oldName, Qt::CaseInsensitive) == 0)
            name = m_renames.at(from).newName;
    }
    return name;
}

void NamesInLog::takeBack(ObjectStream &stream)
{
    m_renames = renamesAhead(stream);
    if (m_renames.isEmpty() || !theCharacters)
        return;
    QHash<QString, Creature *> holders;
    for (int i = 0; i < theCharacters->count(); ++i) {
        Creature *hero = theCharacters->at(i);
        holders.insert(hero->name().toCaseFolded(), hero);
    }
    QHash<Creature *, QString> names;
    for (qsizetype i = m_renames.size() - 1; i >= 0; --i) {
        Rename &rename = m_renames[i];
        Creature *hero = holders.take(rename.newName.toCaseFolded());
        if (!hero)
            continue;
        rename.hero = hero;
        if (Creature *other = holders.take(rename.oldName.toCaseFolded())) {
            // The present holder of the old name got it only later: up to here the log meant
            // another by it.
            const QString name = names.value(other, other->name());
            m_waiting.append({other, name, i});
            names.remove(other);
        }
        holders.insert(rename.oldName.toCaseFolded(), hero);
        names.insert(hero, rename.oldName);
    }
    for (int i = 0; i < theCharacters->count(); ++i) {
        Creature *hero = theCharacters->at(i);
        const QString name = names.value(hero, hero->name());
        m_heroes.append({hero, hero->name(), lastName(name, 0)});
        if (name != hero->name())
            call(hero, name);
    }
    for (const Waiting &waiting : std::as_const(m_waiting)) {
        const auto isSame = [&waiting](const Hero &hero) {
            return hero.creature == waiting.creature;
        };
        std::find_if(m_heroes.begin(), m_heroes.end(), isSame)->lastInLog =
            lastName(waiting.name, waiting.freedBy + 1);
        waiting.creature->setName(nobodysName(waiting.name));
    }
}

void NamesInLog::notePassed()
{
    if (m_passed >= m_renames.size() || !theCharacters)
        return;
    const Rename &rename = m_renames.at(m_passed);
    Creature *hero = rename.hero ? rename.hero.data() : theCharacters->find(rename.oldName);
    if (hero && !theCharacters->find(rename.newName, hero))
        call(hero, rename.newName);
    for (const Waiting &waiting : std::as_const(m_waiting)) {
        if (waiting.freedBy == m_passed && waiting.creature)
            call(waiting.creature, waiting.name);
    }
    ++m_passed;
}

void NamesInLog::finish()
{
    for (const Hero &hero : std::as_const(m_heroes)) {
        if (!hero.creature || hero.creature->name() == hero.nameOfFile)
            continue;
        if (hero.creature->name().compare(hero.lastInLog, Qt::CaseInsensitive) != 0)
            hero.creature->setName(hero.nameOfFile);
        theEncounter->markVitalityStale();
    }
}
