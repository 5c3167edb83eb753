// The table of ratios that a run of the benchmarks ends with.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

// Prints as usual, and keeps the seconds that one iteration of each benchmark took: of the
// processor where the benchmark doesn't keep a time of its own, and the least of its repetitions,
// since what else the machine does only adds.
class KeepingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override;

    // By function and argument, as in "replay/1000".
    const std::map<std::string, double> &seconds() const { return m_seconds; }

private:
    std::map<std::string, double> m_seconds;
};

// Rows whose benchmarks were filtered out are left out.
void printRatios(const std::map<std::string, double> &seconds);
