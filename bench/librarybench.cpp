// Loading a data folder, beside the plain reading of its files.
#include <QFile>

#include <malloc.h>

#include "benchdata.h"
#include "ratios.h"

namespace {

// One folder for all benchmarks of a size: making it takes longer than loading it.
const BenchFolder &folderFor(const benchmark::State &state)
{
    static std::map<int64_t, std::unique_ptr<BenchFolder>> folders;
    std::unique_ptr<BenchFolder> &folder = folders[state.range(0)];
    if (!folder)
        folder = std::make_unique<BenchFolder>(int(state.range(0)));
    return *folder;
}

void readPlainly(benchmark::State &state)
{
    const BenchFolder &folder = folderFor(state);
    for (auto _ : state) {
        for (const QString &path : folder.files()) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                benchmark::DoNotOptimize(QString::fromUtf8(file.readAll()));
        }
    }
}

void loadLibrary(benchmark::State &state)
{
    const BenchFolder &folder = folderFor(state);
    size_t bytes = 0;
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks;
        const CoreObjects objects;
        folder.load();
        bytes = mallinfo2().uordblks - before;
    }
    state.counters["bytes/file"] = double(bytes) / double(folder.files().size());
}

} // namespace

BENCHMARK(readPlainly)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(loadLibrary)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
