#include "readablecolours.h"

#include <QPalette>

namespace {

struct NamedColour {
    QLatin1String name;
    QRgb onDark;
};

// The names that the texts use.
constexpr NamedColour NamedColours[] = {
    {QLatin1String("gray"), 0xffa0a0a0},        {QLatin1String("grey"), 0xffa0a0a0},
    {QLatin1String("blue"), 0xff7ab8ff},        {QLatin1String("red"), 0xffff7b72},
    {QLatin1String("saddlebrown"), 0xffd9a36a}, {QLatin1String("#333333"), 0xffcccccc},
};

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

} // namespace

QColor readableColour(QLatin1String name, const QPalette &palette)
{
    for (const NamedColour &known : NamedColours)
        if (known.name == name && isDark(palette))
            return QColor(known.onDark);
    return QColor(name);
}

QString readableColours(const QString &html, const QPalette &palette)
{
    if (!isDark(palette) || !html.contains(QLatin1String("<font color=")))
        return html;
    QString readable = html;
    for (const NamedColour &known : NamedColours) {
        const QString tag = QStringLiteral("<font color=%1>");
        readable.replace(tag.arg(known.name), tag.arg(QColor(known.onDark).name()));
    }
    return readable;
}
