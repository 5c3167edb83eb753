#include "outsidechanges.h"

#include <QDateTime>
#include <QFileInfo>

#include "characters.h"
#include "coreobjects.h"
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
            m_characters << character;
    }
    takeNumbers();
}

void EditedFiles::takeNumbers() const
{
    for (const QPointer<Creature> &character : m_characters) {
        if (character)
            character->takeNumbersOfText();
    }
}
