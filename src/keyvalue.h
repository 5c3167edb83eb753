// The "key=value" line that creature, encounter and term files share.
#pragma once

#include <QByteArray>
#include <QString>

struct KeyValue {
    QString key; // empty for a comment
    QString value;
};

enum class Escapes { Keep, Resolve };

// Takes one line without its line end. False for a bad line: one that starts with "=", or whose key
// is longer than 400 bytes. A comment ("#") gives an empty key; a line without "=" gives a key and
// an empty value; so does white space alone, with an empty key. Key and value are trimmed.
bool parseKeyValue(QByteArrayView line, Escapes escapes, KeyValue &result);
