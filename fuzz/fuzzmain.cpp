// The frame of each fuzzer: MORVANE_FUZZ_TARGET names the function of targets.h that it feeds, and
// MORVANE_FUZZ_APPLICATION the class of the application that the function needs, from
// MORVANE_FUZZ_HEADER.
#include MORVANE_FUZZ_HEADER

#include "targets.h"

// The system's fonts are looked up once and kept.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Wherever it runs.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never deleted: at the exit parts of the toolkit are gone before it.
    static const auto *application = new MORVANE_FUZZ_APPLICATION(*argc, *argv);
    Q_UNUSED(application)
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::MORVANE_FUZZ_TARGET(QByteArrayView(data, qsizetype(size)));
    return 0;
}
