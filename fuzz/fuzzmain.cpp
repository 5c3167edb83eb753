// The frame of each fuzzer: MORVANE_FUZZ_TARGET names the function of targets.h that it feeds.
#include <QCoreApplication>

#include "targets.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::MORVANE_FUZZ_TARGET(QByteArrayView(data, qsizetype(size)));
    return 0;
}
