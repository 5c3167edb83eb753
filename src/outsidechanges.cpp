#include "outsidechanges.h"

#include <QDateTime>
#include <QFileInfo>

#include "characters.h"
#include "coreobjects.h"
#include "creature.h"
#include "paths.h"

void takeEditedFiles(const QDateTime &logWritten)
{
    for (int i = 0; theCharacters && i < theCharacters->count(); ++i) {
        Creature *character = theCharacters->at(i);
        if (character->fileName().isEmpty() || character->isModified())
            continue;
        const QFileInfo file(creaturePath(character->fileName(), false));
        if (file.exists() && file.lastModified() > logWritten)
            character->takeNumbersOfText();
    }
}
