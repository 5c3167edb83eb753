// The log: replayed, appended to, stepped through.
#include <QFile>

#include <ctime>
#include <malloc.h>

#include "benchdata.h"
#include "history.h"
#include "mainwindow.h"
#include "objectstream.h"
#include "paths.h"
#include "playerswindow.h"
#include "ratios.h"
#include "switchboard.h"

namespace {

// Of the processor, for this program alone.
double secondsUsed()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

// A folder whose log holds a fight of that many events.
class FoughtFolder {
public:
    explicit FoughtFolder(int events) { Fight(m_folder).play(events); }
    operator const BenchFolder &() const { return m_folder; }

private:
    BenchFolder m_folder {8};
};

void replay(benchmark::State &state)
{
    const FoughtFolder folder(int(state.range(0)));
    for (auto _ : state) {
        const Fight fight(folder);
        const double start = secondsUsed();
        theHistory->load();
        state.SetIterationTime(secondsUsed() - start);
        if (theHistory->eventCount() != state.range(0))
            state.SkipWithError("the log was not replayed in full");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The same with both windows, as a start finds them.
void replayInWindows(benchmark::State &state)
{
    const FoughtFolder folder(int(state.range(0)));
    const bool isSeenByPlayers = state.range(1) != 0;
    for (auto _ : state) {
        makePlayersDisplay = []() -> std::unique_ptr<PlayersDisplay> {
            return std::make_unique<PlayersWindow>();
        };
        MainWindow window;
        makePlayersDisplay = nullptr;
        static_cast<const BenchFolder &>(folder).load();
        window.show();
        if (isSeenByPlayers)
            window.onTogglePlayerWindow();
        const double start = secondsUsed();
        Q_EMIT switchBoard()->doDisableWidgetDisplay();
        theHistory->load();
        Q_EMIT switchBoard()->doEnableWidgetDisplay();
        state.SetIterationTime(secondsUsed() - start);
        if (theHistory->eventCount() != state.range(0))
            state.SkipWithError("the log was not replayed in full");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Of the heap, in bytes.
double memoryUsed()
{
    const auto info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

// A log of years, with what it costs in memory as a multiple of its size.
void openLargeLog(benchmark::State &state)
{
    constexpr qint64 Size = 50'000'000;
    const BenchFolder folder(8);
    {
        Fight fight(folder);
        fight.start();
        while (theHistory->getStream()->position() < Size)
            fight.playOne();
    }
    for (auto _ : state) {
        const Fight fight(folder);
        const double before = memoryUsed();
        const double start = secondsUsed();
        theHistory->load();
        state.SetIterationTime(secondsUsed() - start);
        state.counters["memory"] = (memoryUsed() - before) / double(Size);
        if (theHistory->getStream()->position() < Size)
            state.SkipWithError("the log was not replayed in full");
    }
    state.SetBytesProcessed(state.iterations() * Size);
}

void readLogPlainly(benchmark::State &state)
{
    const FoughtFolder folder(int(state.range(0)));
    for (auto _ : state) {
        QFile file(historyPath());
        if (file.open(QIODevice::ReadOnly))
            benchmark::DoNotOptimize(file.readAll());
    }
}

// Beside appendEvent: a record of the same size, written as plainly as can be.
int recordSize()
{
    const BenchFolder folder(8);
    Fight fight(folder);
    fight.start();
    const int before = theHistory->getStream()->position();
    constexpr int sample = 100;
    for (int i = 0; i < sample; ++i)
        fight.playOne();
    return (theHistory->getStream()->position() - before) / sample;
}

void writePlainly(benchmark::State &state)
{
    const QByteArray record(recordSize(), 'x');
    const BenchFolder folder(1);
    QFile file(historyPath());
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        state.SkipWithError("cannot write");
    for (auto _ : state)
        file.write(record);
    state.SetBytesProcessed(state.iterations() * record.size());
}

void appendEvent(benchmark::State &state)
{
    const BenchFolder folder(8);
    Fight fight(folder);
    fight.start();
    for (auto _ : state)
        fight.playOne();
}

void stepBackForward(benchmark::State &state)
{
    const BenchFolder folder(8);
    Fight fight(folder);
    fight.play(int(state.range(0)));
    constexpr int steps = 20; // more than one of each kind
    for (auto _ : state) {
        for (int i = 0; i < steps; ++i)
            theHistory->stepBack();
        for (int i = 0; i < steps; ++i)
            theHistory->stepForward();
    }
    state.SetItemsProcessed(state.iterations() * 2 * steps);
}

} // namespace

BENCHMARK(replayInWindows)
    ->Args({100000, 0})
    ->Args({100000, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(replay)->Arg(1000)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(
    benchmark::kMillisecond);
BENCHMARK(openLargeLog)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readLogPlainly)->Arg(100000)->Unit(benchmark::kMillisecond);
// As many as a long evening has, so that neither is measured on a growing file of gigabytes.
BENCHMARK(writePlainly)->Iterations(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendEvent)->Iterations(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(stepBackForward)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
