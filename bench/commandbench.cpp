// Commands in a large fight: 50 creatures with 200 effects, to the repainted window, or to both.
#include <QAbstractEventDispatcher>
#include <QEvent>
#include <QEventLoop>
#include <QSpinBox>
#include <QTableView>

#include <chrono>
#include <memory>
#include <numeric>

#include "appendevent.h"
#include "benchdata.h"
#include "creature.h"
#include "creaturelistmodel.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "mainwindow.h"
#include "playersview.h"
#include "playerswindow.h"
#include "ratios.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Characters = 4;
constexpr int Creatures = 50;
constexpr QSize AllRowsVisible(1400, 1400);
constexpr QSize PlayersScreen(1920, 1080);

class PaintClock : public QObject {
public:
    explicit PaintClock(QWidget *widget) { widget->installEventFilter(this); }
    void watch(QWidget *widget) { widget->installEventFilter(this); }
    // Runs the event loop until one of the widgets has been painted and nothing is left to do. The
    // answer is when the last painting had ended.
    Clock::time_point settle()
    {
        QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
        Clock::time_point last;
        for (bool hasPainted = false;;) {
            m_painted = false;
            const bool worked = dispatcher->processEvents(QEventLoop::AllEvents);
            if (m_painted) {
                hasPainted = true;
                last = Clock::now();
            } else if (!worked && hasPainted) {
                return last;
            } else if (!worked) {
                dispatcher->processEvents(QEventLoop::WaitForMoreEvents);
            }
        }
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_painted |= event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_painted = false;
};

// A fight on the screen in its middle, and the commands of its DM. Each returns to what was before
// when the history goes back to where it stood.
class LargeFight {
public:
    explicit LargeFight(bool isSeenByPlayers) : m_folder(8)
    {
        m_folder.load();
        startFight(Creatures - Characters);
        putEffect(EffectType::Dazed, EffectEnd::SaveEnds);
        putEffect(EffectType::Prone, EffectEnd::Special);
        putEffect(EffectType::OngoingDamage, EffectEnd::EndOfEncounter);
        putEffect(EffectType::Slowed, EffectEnd::EndOfTargetsTurn);
        m_position = theHistory->position();
        m_window.resize(AllRowsVisible);
        m_window.show();
        m_list = m_window.findChild<QTableView *>(QStringLiteral("initiativeList"));
        select({1});
        m_clock = std::make_unique<PaintClock>(m_list->viewport());
        if (isSeenByPlayers) {
            m_players = std::make_unique<PlayersWindow>();
            m_players->resize(PlayersScreen);
            m_players->show();
            m_clock->watch(m_players->view()->viewport());
        }
        settle();
    }

    Clock::time_point settle() const
    {
        m_list->viewport()->update();
        return m_clock->settle();
    }
    Clock::time_point waitForFrame() const { return m_clock->settle(); }
    void goBack() const
    {
        theHistory->moveTo(m_position);
        select({1});
        settle();
    }

    void nextTurn() { m_window.onNextTurn(); }
    void effectOnAll() { putEffect(EffectType::Weakened, EffectEnd::Special); }
    void damageAll()
    {
        m_window.findChild<QSpinBox *>(QStringLiteral("hpBox"))->setValue(3);
        m_window.onHit();
    }
    void removeEffect() { m_window.removeCondEffect(1); }
    void selectAll()
    {
        QList<int> rows(Creatures);
        std::iota(rows.begin(), rows.end(), 0);
        select(rows);
    }
    void stepBack() { m_window.onStepBack(); }
    void stepForward() { m_window.onStepForward(); }

private:
    void select(const QList<int> &rows) const
    {
        qobject_cast<CreatureListModel *>(m_list->model())->setSelectedRows(rows);
    }
    static void putEffect(EffectType::Code type, EffectEnd::Code end)
    {
        appendEvent<EffectEvent>(theEncounter->current(), theEncounter->creatures().list(),
                                 QString(), end, type, 5);
    }

    BenchFolder m_folder;
    MainWindow m_window;
    QTableView *m_list = nullptr;
    std::unique_ptr<PaintClock> m_clock;
    std::unique_ptr<PlayersWindow> m_players; // null for a fight with the DM's window alone
    int m_position = -1;
};

using Step = void (LargeFight::*)();

// `prepare` may be null; its own frame is drawn before the clock starts.
void measure(benchmark::State &state, LargeFight &&fight, Step prepare, Step command)
{
    int effects = 0;
    for (const Creature *creature : theEncounter->creatures())
        effects += creature->effectCount();
    if (theEncounter->count() != Creatures || effects != 4 * Creatures) {
        state.SkipWithError("the fight is not on the screen");
        return;
    }
    for (auto _ : state) {
        if (prepare) {
            (fight.*prepare)();
            fight.settle();
        }
        const Clock::time_point start = Clock::now();
        (fight.*command)();
        const Clock::time_point end = fight.waitForFrame();
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
        fight.goBack();
    }
}

void commandToFrame(benchmark::State &state, Step prepare, Step command)
{
    measure(state, LargeFight(false), prepare, command);
}

void commandToBothFrames(benchmark::State &state, Step prepare, Step command)
{
    measure(state, LargeFight(true), prepare, command);
}

#define MORVANE_COMMAND(name, prepare)                                                             \
    BENCHMARK_CAPTURE(commandToFrame, name, prepare, &LargeFight::name)                            \
        ->UseManualTime()                                                                          \
        ->Unit(benchmark::kMillisecond);                                                           \
    BENCHMARK_CAPTURE(commandToBothFrames, name, prepare, &LargeFight::name)                       \
        ->UseManualTime()                                                                          \
        ->Unit(benchmark::kMillisecond)

MORVANE_COMMAND(nextTurn, nullptr);
MORVANE_COMMAND(effectOnAll, nullptr);
MORVANE_COMMAND(damageAll, &LargeFight::selectAll);
MORVANE_COMMAND(removeEffect, nullptr);
MORVANE_COMMAND(selectAll, nullptr);
MORVANE_COMMAND(stepBack, &LargeFight::effectOnAll);
MORVANE_COMMAND(stepForward, &LargeFight::stepBack);

} // namespace
