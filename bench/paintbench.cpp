// What the DM waits for: from an action on the selected creature to the repainted list, and
// from a selection to the repainted panel.
#include <QApplication>
#include <QEventLoop>
#include <QScrollArea>
#include <QTableView>

#include "benchdata.h"
#include "creature.h"
#include "encounter.h"
#include "mainwindow.h"
#include "playersview.h"
#include "playerswindow.h"
#include "ratios.h"
#include "switchboard.h"

#include <QSpinBox>

namespace {

class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget *widget) : m_widget(widget) { qApp->installEventFilter(this); }
    // Runs the event loop until the widget, or what covers it, has been painted.
    void wait()
    {
        for (m_painted = false; !m_painted;)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *painted = qobject_cast<QWidget *>(watched);
        m_painted |= painted && event->type() == QEvent::Paint
            && (painted == m_widget || m_widget->isAncestorOf(painted));
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget *m_widget;
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

// From one creature's damage to the repainted list of the players' window.
void damageToPlayers(benchmark::State &state)
{
    constexpr int characters = 4;
    const BenchFolder folder(8);
    MainWindow window;
    folder.load();
    startFight(int(state.range(0)) - characters);
    PlayersWindow players;
    players.resize(1920, 1080);
    players.show();
    PaintWatch watch(players.view()->viewport());
    players.view()->viewport()->update();
    watch.wait();
    Creature *creature = theEncounter->at(1);
    for (auto _ : state) {
        creature->takeDamage(1, nullptr);
        watch.wait();
    }
}

// A dragon's worth of them, with texts of usual length.
QList<Power> manyPowers(const QString &owner)
{
    QList<Power> powers;
    for (int i = 0; i < 20; ++i) {
        Power power;
        power.section = PowerSection::Traits + i / 4;
        power.icon = PowerIcon::BasicMelee;
        power.usageKind = i % 3;
        power.name = QStringLiteral("%1's trick %2").arg(owner).arg(i);
        power.keywords = QStringLiteral("(fear, poison) &bull; <b>Encounter</b>");
        power.details = {
            QStringLiteral("<i>Attack: </i>Melee 2 (one creature); +%1 vs. Reflex").arg(i),
            QStringLiteral(
                "<i>Hit: </i>2d8 + %1 damage, and the target is slowed and takes ongoing "
                "5 poison damage (save ends both).")
                .arg(i),
        };
        powers << power;
    }
    return powers;
}

// Rebuilds on the refresh tick, which is given at once.
void panelSwitch(benchmark::State &state)
{
    const BenchFolder folder(8);
    MainWindow window;
    folder.load();
    startFight(8);
    window.resize(1200, 800);
    window.show();
    QCoreApplication::processEvents();
    auto *dock = window.findChild<QWidget *>(QStringLiteral("selectedWidget"));
    auto *panel = dock ? dock->findChild<QScrollArea *>(QStringLiteral("statBlockArea")) : nullptr;
    if (!panel) {
        state.SkipWithError("the panel is not on the screen");
        return;
    }
    for (int row = 0; row < theEncounter->count(); ++row) {
        CreatureData data = theEncounter->at(row)->data();
        data.powers = manyPowers(data.name);
        theEncounter->at(row)->assign(data);
    }
    PaintWatch watch(panel->viewport());
    int row = 0;
    for (auto _ : state) {
        row = (row + 1) % theEncounter->count();
        window.setSelection({row});
        Q_EMIT switchBoard()->doRefreshTimer();
        watch.wait();
    }
}

} // namespace

BENCHMARK(panelSwitch)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(damageToPlayers)->Arg(50)->Arg(500)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(actionToFrame)->Arg(50)->Arg(500)->UseRealTime()->Unit(benchmark::kMillisecond);
