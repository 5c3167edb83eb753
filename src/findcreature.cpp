#include "findcreature.h"

#include "characters.h"
#include "monsters.h"

namespace {

constexpr QLatin1String NameBracket(" (");

// Of "Group (ID)" the ID.
QString idBehind(const QString &displayName, qsizetype bracket)
{
    QString id = displayName.mid(bracket + NameBracket.size());
    if (id.endsWith(u')'))
        id.chop(1);
    return id;
}

} // namespace

Creature *findCreature(const QString &displayName, bool create)
{
    if (displayName.isEmpty() || !theCharacters || !theMonsters)
        return nullptr;
    // Any name may hold brackets of its own: a hero's as a whole, or that of a group in front of
    // the last one.
    if (Creature *character = theCharacters->ensureCharacter(displayName, false))
        return character;
    qsizetype bracket = displayName.lastIndexOf(NameBracket);
    const qsizetype first = displayName.indexOf(NameBracket);
    if (bracket < 0)
        return theCharacters->ensureCharacter(displayName, create);
    while (bracket > first && !theMonsters->findTemplate(displayName.left(bracket)))
        bracket = displayName.lastIndexOf(NameBracket, bracket - 1);
    QString group = displayName.left(bracket);
    return theMonsters->ensureTemplate(group, idBehind(displayName, bracket), create);
}
