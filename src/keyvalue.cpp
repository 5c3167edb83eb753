#include "keyvalue.h"

#include "text.h"

namespace {

constexpr qsizetype maxKeyBytes = 400;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

QString readPart(QByteArrayView bytes, Escapes escapes)
{
    if (escapes == Escapes::Resolve)
        return unescapeText(bytes.toByteArray()).trimmed();
    return QString::fromUtf8(bytes).trimmed();
}

} // namespace

bool parseKeyValue(QByteArrayView line, Escapes escapes, KeyValue &result)
{
    result = KeyValue();
    while (!line.isEmpty() && isBlank(line.front()))
        line = line.sliced(1);
    if (line.startsWith('#'))
        return true;
    const qsizetype separator = line.indexOf('=');
    if (separator == 0 || separator > maxKeyBytes)
        return false;
    if (separator < 0) {
        result.key = readPart(line, escapes);
        return true;
    }
    result.key = readPart(line.first(separator), escapes);
    result.value = readPart(line.sliced(separator + 1), escapes);
    return true;
}
