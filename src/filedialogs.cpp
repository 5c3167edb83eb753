#include "filedialogs.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>

#include "creatureportrait.h"
#include "paths.h"

namespace {

// Titles and filters, for translation in the context "FileDialogs".
struct Texts {
    const char *title;
    const char *filter;
};

QString lastPortraitFolder;

QString translated(const char *text)
{
    return QCoreApplication::translate("FileDialogs", text);
}

// The full path with forward slashes, or empty.
QString chooseFile(QWidget *parent, const Texts &texts, const QString &firstFolder,
                   QString &lastFolder)
{
    QFileDialog dialog(parent, translated(texts.title),
                       lastFolder.isEmpty() ? firstFolder : lastFolder, translated(texts.filter));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (!dialog.exec() || dialog.selectedFiles().isEmpty())
        return QString();
    const QString chosen =
        QDir::cleanPath(QDir::fromNativeSeparators(dialog.selectedFiles().constFirst()));
    lastFolder = QFileInfo(chosen).path();
    return chosen;
}

} // namespace

QString selectPortraitFile(QWidget *parent)
{
    const Texts texts {
        QT_TRANSLATE_NOOP("FileDialogs", "Select Portrait Image"),
        QT_TRANSLATE_NOOP("FileDialogs",
                          "Images (*.gif *.jpeg *.jpg *.tiff *.png *.bmp *.mng *.svg *.xpm)")};
    const QString chosen = chooseFile(parent, texts, portraitPath(QString()), lastPortraitFolder);
    return chosen.isEmpty() ? QString() : adoptPortrait(chosen, QString());
}

void forgetPortraitFolder()
{
    lastPortraitFolder.clear();
}

QString selectImportFile(QWidget *parent)
{
    static QString lastFolder;
    const Texts texts {QT_TRANSLATE_NOOP("FileDialogs", "Select Character Builder File"),
                       QT_TRANSLATE_NOOP("FileDialogs", "Character Builder files (*.dnd4e)")};
    const QDir characters(creaturePath(QString(), false));
    const QString chosen = chooseFile(parent, texts, characters.path(), lastFolder);
    const QString folder = QDir::cleanPath(characters.absolutePath()) + u'/';
    return chosen.startsWith(folder) ? chosen.mid(folder.size()) : chosen;
}
