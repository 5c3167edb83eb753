// Dialogs that choose a creature's files. Each starts in the folder of the last file that was
// chosen in this run of the program.
#pragma once

#include <QString>

class QWidget;

// The path below "Portraits" of the chosen picture, copied there if need be. Empty when the user
// cancels or the picture can't be copied.
QString selectPortraitFile(QWidget *parent);
// The next one starts in "Portraits" again.
void forgetPortraitFolder();

// The chosen file of a character builder, relative to "Characters" if it lies there. Empty when the
// user cancels.
QString selectImportFile(QWidget *parent);
