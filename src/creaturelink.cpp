#include "characters.h"
#include "creature.h"
#include "creaturefile.h"
#include "creaturetext.h"
#include "safefile.h"
#include "statblockhandler.h"
#include "text.h"
#include "tidystatblock.h"

bool Creature::refreshFromImport(const QString &path)
{
    CreatureData data = m_data;
    if (!readImport(path, data, QString()))
        return false;
    // A name that no load accepts would turn the character invalid at the next start.
    if (!isUsableName(data.name))
        data.name = m_data.name;
    if (data.name != m_data.name)
        data.name = theCharacters->uniqueName(data.name, this);
    data.statBlock = textOf(data);
    // A file that brings nothing new is no reason to check all creatures for outside changes.
    const bool isChanged = data.statBlock != m_data.statBlock;
    assign(data);
    if (isChanged)
        statBlockChanged();
    return true;
}

void Creature::refreshIfLinked()
{
    if (!m_data.linked)
        return;
    const bool wasModified = isModified();
    refreshFromImport(m_data.importFile);
    if (wasModified || !isModified())
        return;
    if (!save())
        return;
    setNew(false);
    setModified(false);
}

bool Creature::importIsCurrent(const QString &path) const
{
    QByteArray bytes;
    if (readTextFile(path, bytes) != FileText::Read)
        return false;
    // The portrait that was chosen here is none of the file's, and its path may be another one by
    // now. A text that was mended as it came in is the file's as well.
    const QString text = QString::fromUtf8(toLF(bytes));
    const QString saved = withoutPortraitInText(m_savedStatBlock);
    return withoutPortraitInText(text) == saved
        || withoutPortraitInText(tidyStatBlock(text).text) == saved;
}
