// Helpers for rich texts, prefixes and line ends that every layer uses.
#pragma once

#include <QByteArray>
#include <QString>

// Length of a rich text as it is seen: characters outside "<" to ">".
int plainLength(const QString &html);

// A rich text for a terminal: without tags, "<p>" and "<br>" as line ends, entities resolved.
QString plainText(const QString &html);

// Texts of files, which may hold anything and be of any length, on their way to the screen. What
// no screen has room for is left out before it is laid out, and an ellipsis stands for it; so are
// marks that are piled up on one letter.
constexpr qsizetype LongestName = 120;
constexpr qsizetype LongestLine = 500;
constexpr qsizetype LongestParagraph = 3000;
// At most `most` characters.
QString shortened(const QString &text, qsizetype most = LongestLine);
// Rich text that shows the text as it stands: the one way of a foreign text into rich text.
QString asHtml(const QString &text, qsizetype most = LongestParagraph);
// A rich text of at most `most` visible characters, in which overlong words may be broken.
QString shortenedHtml(const QString &html, qsizetype most = LongestParagraph);
// For a menu, button or group box, which takes a "&" for the mark of a key.
QString withLiteralAmpersands(QString text);

// "<b>" and the text; the caller closes the tag.
QString bold(const QString &text);

// Breaks a rich text into lines of about `width` visible characters by inserting "<br>".
QString wrapRichText(const QString &html, int width);

void lowerFirst(QString &text);
// Raises the first letter if it is a lower-case letter; anything else stays.
void upperFirst(QString &text);

// Where the text doesn't hold the separator: afterLast and beforeFirst give the whole text,
// afterFirst and beforeLast an empty one.
QString afterLast(const QString &text, const QString &separator);
QString beforeFirst(const QString &text, const QString &separator);
QString afterFirst(const QString &text, const QString &separator);
QString beforeLast(const QString &text, const QString &separator);

// True if each character is a digit, ",", "-", "+" or "."; an empty text is a number too.
bool isNumber(const QString &text);
// The number at the start of the text, behind white space and any run of signs; 0 when there is
// none or it doesn't fit an int.
int leadingInt(const QString &text);

// "+3", "0", "-2": a plus sign from 1 up.
QString signedNumber(int number);

// CR, LF and CR LF all become CR LF, or LF.
QByteArray toCRLF(const QByteArray &bytes);
QByteArray toLF(const QByteArray &bytes);
// Editors of other systems put the mark in front of UTF-8; it is no part of the text.
QByteArray withoutByteOrderMark(const QByteArray &bytes);

// UTF-8 with CR as "\r", LF as "\n" and a backslash as three; see unescapeText().
QByteArray escapeText(const QString &text);
// "\n" and "\r" become line ends, a backslash before any other byte stands for that byte, and one
// at the very end for a zero byte.
QString unescapeText(const QByteArray &bytes);

// The order of names that end in numbers: stems ignoring case, then the numbers, so that
// "Rat 10" comes behind "Rat 9". Below 0, 0 or above 0 like a comparison.
int naturalCompare(const QString &a, const QString &b);
