#include "revertednames.h"

#include <QSet>
#include <algorithm>

#include "creature.h"

void RevertedNames::add(Creature *creature, const QString &oldName)
{
    m_reverted.append({creature, oldName});
}

QList<Renamed> RevertedNames::settle(LibraryList<Creature> &entries,
                                     void (Creature::*setName)(const QString &))
{
    QSet<const Creature *> reverted;
    QSet<QString> stated;
    for (const Reverted &each : std::as_const(m_reverted)) {
        reverted.insert(each.creature);
        stated.insert(entries.keyOf(*each.creature).toCaseFolded());
    }
    // Others may have taken a name meanwhile that a load would give to an earlier file.
    QSet<QString> taken;
    const QList<Creature *> all = entries.list();
    for (Creature *creature : all) {
        const QString name = entries.keyOf(*creature);
        if (reverted.contains(creature))
            continue;
        if (stated.contains(name.toCaseFolded()))
            add(creature, name);
        else
            taken.insert(name.toCaseFolded());
    }
    std::stable_sort(
        m_reverted.begin(), m_reverted.end(), [](const Reverted &a, const Reverted &b) {
            return a.creature->fileName().compare(b.creature->fileName(), Qt::CaseInsensitive) < 0;
        });
    QList<Renamed> renamed;
    for (const Reverted &each : std::as_const(m_reverted)) {
        const QString name = entries.keyOf(*each.creature);
        QString own = name;
        for (int number = 2; taken.contains(own.toCaseFolded()); ++number)
            own = QStringLiteral("%1 %2").arg(name, QString::number(number));
        taken.insert(own.toCaseFolded());
        if (own != name)
            (each.creature->*setName)(own);
        if (own != each.oldName)
            renamed.append({each.oldName, own});
    }
    m_reverted.clear();
    entries.sort();
    return renamed;
}
