// The Monster Manager over a large library: opened, filtered, typed in, to the repainted window.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "benchdata.h"
#include "encounterview.h"
#include "librarypane.h"
#include "mainwindow.h"
#include "managerwindow.h"
#include "monsters.h"
#include "ratios.h"

namespace {

// Runs the event loop until the widget, or one in it, has been painted and nothing is left to do.
class Painted : public QObject {
public:
    explicit Painted(const QWidget *widget) : m_widget(widget) { qApp->installEventFilter(this); }
    void wait()
    {
        while (!m_painted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_painted |= event->type() == QEvent::Paint && watched->isWidgetType()
            && (watched == m_widget || m_widget->isAncestorOf(static_cast<QWidget *>(watched)));
        return false;
    }

private:
    const QWidget *m_widget;
    bool m_painted = false;
};

// With the monsters of the argument, and an encounter for each ten of them.
class Library {
public:
    explicit Library(const benchmark::State &state) : m_folder(int(state.range(0)))
    {
        m_folder.load();
        theMonsters->doTemplatesUpdated();
    }

private:
    MainWindow m_window;
    BenchFolder m_folder;
};

void type(QWidget *widget, const QString &text, int key = 0)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(widget, &press);
}

void openManager(benchmark::State &state)
{
    const Library library(state);
    for (auto _ : state) {
        ManagerWindow window;
        Painted painted(&window);
        window.show();
        painted.wait();
    }
}

// In the filter of that name, until the list that it filters is painted.
template <typename View>
void typeInFilterOf(benchmark::State &state, const char *name)
{
    const Library library(state);
    ManagerWindow window;
    window.show();
    QCoreApplication::processEvents();
    auto *filter = window.findChild<QLineEdit *>(QLatin1String(name));
    const auto *view = window.findChild<View *>();
    for (auto _ : state) {
        Painted painted(view);
        type(filter, QStringLiteral("1"));
        painted.wait();
        state.PauseTiming();
        type(filter, QString(), Qt::Key_Backspace);
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

void typeInFilter(benchmark::State &state)
{
    typeInFilterOf<LibraryView>(state, "filterEdit");
}

void typeInEncounterFilter(benchmark::State &state)
{
    typeInFilterOf<EncounterView>(state, "encounterFilterEdit");
}

// A letter behind the text, which is read anew each time.
void typeInStatBlock(benchmark::State &state)
{
    const Library library(state);
    ManagerWindow window;
    window.show();
    window.findChild<LibraryPane *>()->select(theMonsters->at(theMonsters->count() / 2));
    QCoreApplication::processEvents();
    auto *edit = window.findChild<QPlainTextEdit *>(QStringLiteral("statBlockEdit"));
    for (auto _ : state) {
        Painted painted(edit);
        type(edit, QStringLiteral("x"));
        painted.wait();
    }
}

} // namespace

BENCHMARK(openManager)->Arg(5000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(typeInFilter)->Arg(5000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(typeInEncounterFilter)->Arg(5000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(typeInStatBlock)->Arg(5000)->UseRealTime()->Unit(benchmark::kMillisecond);
