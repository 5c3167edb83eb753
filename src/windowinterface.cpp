#include "windowinterface.h"

#include <cstdio>

#include "text.h"

namespace {

NoWindows noWindows;
WindowInterface *current = &noWindows;

} // namespace

WindowInterface::~WindowInterface() = default;

WindowInterface &windows()
{
    return *current;
}

void setWindows(WindowInterface *windows)
{
    current = windows ? windows : &noWindows;
}

void NoWindows::showMessage(const QString &title, const QString &text)
{
    const QString line = plainText(title) + QStringLiteral(": ") + plainText(text);
    std::fprintf(stderr, "%s\n", qUtf8Printable(line));
}

bool NoWindows::askMessage(const QString &title, const QString &text, const QString &)
{
    showMessage(title, text);
    return false;
}

WindowInterface::FolderAnswer NoWindows::askFolder(const QString &title, const QString &text,
                                                   const QString &)
{
    showMessage(title, text);
    return FolderAnswer::Cancel;
}
