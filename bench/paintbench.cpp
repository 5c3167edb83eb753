// What the DM waits for: from an action on the selected creature to the repainted list.
#include <QApplication>
#include <QEventLoop>
#include <QTableView>

#include "benchdata.h"
#include "encounter.h"
#include "mainwindow.h"
#include "ratios.h"

#include <QSpinBox>

namespace {

class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget *widget) { widget->installEventFilter(this); }
    // Runs the event loop until the widget has been painted.
    void wait()
    {
        for (m_painted = false; !m_painted;)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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

// The hits and the heals balance, so that each frame is like the others.
void actionToFrame(benchmark::State &state)
{
    constexpr int characters = 4;
    const BenchFolder folder(8);
    MainWindow window;
    folder.load();
    startFight(int(state.range(0)) - characters);
    window.resize(1200, 800);
    window.show();
    auto *list = window.findChild<QTableView *>(QStringLiteral("initiativeList"));
    auto *hpBox = window.findChild<QSpinBox *>(QStringLiteral("hpBox"));
    if (!list || !hpBox || theEncounter->count() != state.range(0)) {
        state.SkipWithError("the fight is not on the screen");
        return;
    }
    PaintWatch watch(list->viewport());
    list->viewport()->update();
    watch.wait();
    bool heal = false;
    for (auto _ : state) {
        window.setSelection({1});
        hpBox->setValue(7);
        heal ? window.onHeal() : window.onHit();
        heal = !heal;
        watch.wait();
    }
}

} // namespace

BENCHMARK(actionToFrame)->Arg(50)->Arg(500)->UseRealTime()->Unit(benchmark::kMillisecond);
