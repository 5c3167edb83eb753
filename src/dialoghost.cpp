#include "dialoghost.h"

namespace {

DialogHost *current = nullptr;

} // namespace

DialogHost::~DialogHost() = default;

DialogHost *dialogHost()
{
    return current;
}

void setDialogHost(DialogHost *host)
{
    current = host;
}

FlatDialog *activeFlatDialog()
{
    return current ? current->activeDialog() : nullptr;
}
