#include "editedfiles.h"

#include <QDateTime>
#include <QFileInfo>

#include "characters.h"
#include "paths.h"

void EditedFiles::find(const QDateTime &logWritten)
{
    forget();
    for (int i = 0; theCharacters && i < theCharacters->count(); ++i) {
        Creature *character = theCharacters->at(i);
        if (character->fileName().isEmpty() || character->isModified())
            continue;
        const QFileInfo file(creaturePath(character->fileName(), false));
        if (file.exists() && file.lastModified() > logWritten)
            m_characters << Edited {character, {}};
    }
    takeNumbers();
}

QList<Creature *> EditedFiles::characters() const
{
    QList<Creature *> characters;
    for (const Edited &edited : m_characters) {
        if (edited.character)
            characters << edited.character;
    }
    return characters;
}

void EditedFiles::putNumbersBack() const
{
    for (const Edited &edited : m_characters) {
        if (!edited.character)
            continue;
        CreatureVitality vitality = edited.logged;
        const CreatureVitality live = edited.character->liveVitality();
        vitality.currHP = live.currHP;
        vitality.currHS = live.currHS;
        vitality.currAP = live.currAP;
        edited.character->setVitalityNumbers(vitality);
    }
}

void EditedFiles::takeNumbers()
{
    for (Edited &edited : m_characters) {
        if (!edited.character)
            continue;
        edited.logged = edited.character->liveVitality();
        edited.character->takeNumbersOfText();
    }
}
