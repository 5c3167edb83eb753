#include "library.h"

#include "characters.h"
#include "encounters.h"
#include "monsters.h"
#include "paths.h"
#include "progress.h"

namespace {

class SilentProgress : public Progress {
public:
    void setLabel(const QString &) override { }
    void step() override { }
    bool wasCancelled() const override { return false; }
};

} // namespace

Library::Library(const QString &dataFolder)
{
    SilentProgress progress;
    // What a folder lacks has been said on standard error; what it has is inspected all the same.
    theCharacters->load(dataFolder, dataFolder, progress);
    theMonsters->load(dataFolder, dataFolder, progress);
    theEncounters->load(dataFolder, dataFolder, progress);
    dataRoot = dataFolder;
    displayRoot = dataFolder;
}
