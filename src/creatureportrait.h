// The pictures of creatures: which file a name means, and how one gets into the data folder.
#pragma once

#include <QPixmap>
#include <QString>

// Checks the picture that `path` names below "Portraits", without decoding it. Where there is none,
// the file is searched for by its bare name in all sub-folders; when found, its path takes the
// place of `path`.
void resolvePortrait(QString &path, const QString &dataFolder);
// Depth first, in directory order, without entries that begin with "."; the path relative to
// `folder`, or empty.
QString findPortrait(const QString &folder, const QString &fileName);
// What a creature stores for a picture that the user chose: its path below "Portraits". A file from
// elsewhere is copied there unless one of its name exists. Empty when it is no picture, or couldn't
// be copied. Where copying is forbidden, the answer is what it would be.
enum class PortraitCopy { Allowed, Forbidden };
QString adoptPortrait(const QString &chosenFile, const QString &dataFolder,
                      PortraitCopy copy = PortraitCopy::Allowed);
// The picture of that path below "Portraits" of the data folder in use, no larger than a widget can
// show; null for any other. Creatures of one picture share it.
QPixmap readPortrait(const QString &name);

// While one lives, findPortrait() walks a folder once for all searches: a library that was moved
// would otherwise walk it for each creature.
class PortraitSearch {
public:
    PortraitSearch();
    ~PortraitSearch();
    PortraitSearch(const PortraitSearch &) = delete;
    PortraitSearch &operator=(const PortraitSearch &) = delete;
};
