// Reading of picture files that may come from anywhere.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

// A regular file of at most 32 MB that holds a picture of a known kind, by its content and not by
// its name; isHarmlessSvg() where it is an SVG. No pixel is decoded.
bool isPictureFile(const QString &path);
// The picture, scaled down to fit a square of `maxSize` pixels; null for any other file.
QImage readPicture(const QString &path, int maxSize);

// False for any other XML, and for an SVG that names other files, unpacks itself, or takes too long
// to draw.
bool isHarmlessSvg(const QByteArray &bytes);
