#include "ratios.h"

#include <algorithm>
#include <cstdio>

namespace {

// How often the time of one benchmark goes into that of another, each divided by what one
// iteration does.
struct Ratio {
    const char *title;
    const char *measured;
    double measuredItems;
    const char *limit;
    double limitItems;
    const char *budget;
};

constexpr Ratio ratios[] = {
    {"load of 100 monsters : plain reading", "loadLibrary/100", 1, "readPlainly/100", 1,
     "under 10"},
    {"load of 1,000 monsters : plain reading", "loadLibrary/1000", 1, "readPlainly/1000", 1,
     "under 10"},
    {"load of 5,000 monsters : plain reading", "loadLibrary/5000", 1, "readPlainly/5000", 1,
     "under 10"},
    {"one event of a replay, 10,000 : 1,000", "replay/10000", 10000, "replay/1000", 1000,
     "about 1"},
    {"one event of a replay, 100,000 : 10,000", "replay/100000", 100000, "replay/10000", 10000,
     "about 1"},
    {"replay of 100,000 events : reading the log", "replay/100000", 1, "readLogPlainly/100000", 1,
     ""},
    {"append of an event : plain write", "appendEvent", 1, "writePlainly", 1, "under 2"},
    {"step back and forward, 100,000 : 1,000 events", "stepBackForward/100000", 1,
     "stepBackForward/1000", 1, "about 1"},
    {"action to frame, 500 : 50 creatures", "actionToFrame/500", 1, "actionToFrame/50", 1,
     "about 1"},
};

// Figures that have a budget of their own.
struct Rate {
    const char *title;
    const char *measured;
    double items;
    const char *budget;
};

constexpr Rate rates[] = {
    {"replayed events a second, log of 1,000", "replay/1000", 1000, "200,000"},
    {"replayed events a second, log of 10,000", "replay/10000", 10000, "200,000"},
    {"replayed events a second, log of 100,000", "replay/100000", 100000, "200,000"},
    {"stat blocks of 3 KB read a second", "parseStatBlock", 1, "20,000"},
    {"trap texts of 1 MB read a second", "parseLongTrap", 1, "1"},
    {"frames a second after an action, 50 creatures", "actionToFrame/50", 1, "63"},
    {"frames a second after an action, 500 creatures", "actionToFrame/500", 1, "63"},
    {"frames a second for the players after a damage, 500 creatures", "damageToPlayers/500", 1,
     "125"},
    {"panels shown a second, 20 powers", "panelSwitch", 1, "63"},
    {"the same in a large fight: next turn", "commandToFrame/nextTurn", 1, "63"},
    {"an effect on all 50", "commandToFrame/effectOnAll", 1, "63"},
    {"damage to all 50", "commandToFrame/damageAll", 1, "63"},
    {"an effect taken off", "commandToFrame/removeEffect", 1, "63"},
    {"all 50 selected", "commandToFrame/selectAll", 1, "63"},
    {"a step back over 50 effects", "commandToFrame/stepBack", 1, "63"},
    {"a step forward over them", "commandToFrame/stepForward", 1, "63"},
    {"with the players' window beside it: next turn", "commandToBothFrames/nextTurn", 1, "63"},
    {"an effect on all 50", "commandToBothFrames/effectOnAll", 1, "63"},
    {"damage to all 50", "commandToBothFrames/damageAll", 1, "63"},
    {"a step back over 50 effects", "commandToBothFrames/stepBack", 1, "63"},
    {"Monster Manager opened a second, 5,000 monsters", "openManager/5000", 1, "3.3"},
    {"keys a second in its filter", "typeInFilter/5000", 1, "63"},
    {"keys a second in that of 500 encounters", "typeInEncounterFilter/5000", 1, "63"},
    {"keys a second in its text", "typeInStatBlock/5000", 1, "63"},
};

double find(const std::map<std::string, double> &seconds, const char *name)
{
    const auto found = seconds.find(name);
    return found == seconds.end() ? 0 : found->second;
}

} // namespace

void KeepingReporter::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
            continue;
        std::string name = run.run_name.function_name;
        if (!run.run_name.args.empty())
            name += "/" + run.run_name.args;
        const double total =
            run.run_name.time_type.empty() ? run.cpu_accumulated_time : run.real_accumulated_time;
        const double seconds = total / static_cast<double>(run.iterations);
        const auto [kept, isFirst] = m_seconds.try_emplace(name, seconds);
        kept->second = std::min(kept->second, seconds);
    }
    ConsoleReporter::ReportRuns(runs);
}

void printRatios(const std::map<std::string, double> &seconds)
{
    std::printf("\n%-50s %12s   %s\n", "ratio", "measured", "budget");
    for (const Ratio &ratio : ratios) {
        const double measured = find(seconds, ratio.measured) / ratio.measuredItems;
        const double limit = find(seconds, ratio.limit) / ratio.limitItems;
        if (measured > 0 && limit > 0)
            std::printf("%-50s %12.2f   %s\n", ratio.title, measured / limit, ratio.budget);
    }
    std::printf("\n%-50s %12s   %s\n", "rate", "measured", "at least");
    for (const Rate &rate : rates) {
        if (const double measured = find(seconds, rate.measured); measured > 0)
            std::printf("%-50s %12.0f   %s\n", rate.title, rate.items / measured, rate.budget);
    }
}
