// Dialogs that choose a creature's files. Each begins in the folder that a file was last chosen
// from, until the program ends.
#pragma once

#include <QString>

class QWidget;

// The path below "Portraits" of the chosen picture, copied there if need be. Empty when the user
// cancels or the picture can't be copied.
QString selectPortraitFile(QWidget *parent);

// The chosen file of a character builder, relative to "Characters" if it lies there. Empty when the
// user cancels.
QString selectImportFile(QWidget *parent);
