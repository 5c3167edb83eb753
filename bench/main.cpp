// morvane-bench: the benchmarks, and at the end the table of their ratios.
#include <QApplication>

#include <vector>

#include "ratios.h"
#include "terms.h"

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    setDefaultTerms();
    std::vector<char *> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=3"; // unless the caller says otherwise
    arguments.insert(arguments.begin() + 1, repetitions);
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    KeepingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter.seconds());
    return 0;
}
