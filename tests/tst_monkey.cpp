// links: morvane_ui
//
// A monkey at the DM's Display: keys, clicks, drags, wheel turns, menus and typed texts at random,
// over the main window and whatever opens in front of it. Nothing falls over, no form leaves a
// preview behind, and what it did comes back with the next start. "--seed N --count M" does M
// things of another run.
#include <QDesktopServices>
#include <QDirIterator>
#include <QFileDialog>
#include <QMenu>
#include <QScopedValueRollback>
#include <QThread>
#include <QWheelEvent>
#include <QWindow>

#include <array>
#include <random>

#include "dice.h"
#include "encounter.h"
#include "fightfixture.h"
#include "history.h"
#include "testhome.h"

namespace {

// Acts each time an event loop runs, nested ones of dialogs and menus included.
class Monkey : public QObject {
    Q_OBJECT

public:
    Monkey(unsigned int seed, int count) : m_random(seed), m_left(count) { scheduleNext(); }
    bool isDone() const { return m_left <= 0; }

public Q_SLOTS:
    // In place of the system's browser.
    void openLink(const QUrl &) { }

private:
    int upTo(int most)
    {
        return std::uniform_int_distribution<int>(0, std::max(0, most))(m_random);
    }
    template <typename List>
    auto anyOf(const List &list)
    {
        return list[typename List::size_type(upTo(int(list.size()) - 1))];
    }

    void scheduleNext()
    {
        // A new timer each time: one that is just firing stands still in a loop that it opens.
        QTimer::singleShot(0, this, [this] {
            scheduleNext();
            // A click of the test library turns the event loop itself; only a loop of a dialog or a
            // menu within it is a place to act in.
            const int level = QThread::currentThread()->loopLevel();
            if (level <= m_actingAt)
                return;
            const QScopedValueRollback acting(m_actingAt, level);
            if (m_left <= 0)
                goHome();
            else
                act();
        });
    }
    static QWidget *top()
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            return popup;
        if (QWidget *modal = QApplication::activeModalWidget())
            return modal;
        return theMainWindow && theMainWindow->isVisible() ? theMainWindow : nullptr;
    }
    // Ends what is open, so that the test gets its turn again.
    static void goHome()
    {
        QWidget *widget = top();
        if (auto *dialog = qobject_cast<QDialog *>(widget))
            dialog->reject();
        else if (widget && widget != theMainWindow)
            widget->close();
        else if (activeFlatDialog())
            activeFlatDialog()->reject();
    }
    void act()
    {
        QWidget *widget = top();
        if (!widget || !widget->isVisible()) {
            goHome(); // a form that a key opened while the window went
            return;
        }
        --m_left;
        // It would walk out of the test's folder.
        if (auto *files = qobject_cast<QFileDialog *>(widget)) {
            files->reject();
            return;
        }
        const int what = upTo(99);
        if (what < 35)
            pressKeys(*widget);
        else if (what < 65)
            click(*widget);
        else if (what < 72)
            turnWheel(*widget);
        else if (what < 79)
            drag(*widget);
        else if (what < 91)
            trigger(*widget);
        else if (what < 99)
            type(*widget);
        else if (widget == theMainWindow)
            widget->resize(300 + upTo(1200), 200 + upTo(800));
    }
    Qt::KeyboardModifiers anyModifiers()
    {
        static const std::array<Qt::KeyboardModifiers, 5> some {
            Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier,
            Qt::ControlModifier | Qt::ShiftModifier, Qt::MetaModifier};
        return upTo(3) > 0 ? Qt::KeyboardModifiers() : anyOf(some);
    }
    static QWidget *focusIn(QWidget &widget)
    {
        QWidget *focus = QApplication::focusWidget();
        return focus && focus->window() == widget.window() ? focus : &widget;
    }
    void pressKeys(QWidget &widget)
    {
        static const std::array<int, 26> keys {
            Qt::Key_Up,     Qt::Key_Down,    Qt::Key_Up,        Qt::Key_Down,  Qt::Key_Left,
            Qt::Key_Right,  Qt::Key_PageUp,  Qt::Key_PageDown,  Qt::Key_Home,  Qt::Key_End,
            Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Return,    Qt::Key_Enter, Qt::Key_Escape,
            Qt::Key_Space,  Qt::Key_Delete,  Qt::Key_Backspace, Qt::Key_F2,    Qt::Key_F4,
            Qt::Key_Insert, Qt::Key_Menu,    Qt::Key_Alt,       Qt::Key_Plus,  Qt::Key_Minus,
            Qt::Key_F10};
        const int key = upTo(2) > 0 ? anyOf(keys) : Qt::Key_0 + upTo(Qt::Key_Z - Qt::Key_0);
        const Qt::KeyboardModifiers modifiers = anyModifiers();
        // Often held down. The widget may go with any of the presses.
        const QPointer<QWidget> still(&widget);
        for (int i = upTo(4) > 0 ? 0 : upTo(8); i >= 0 && still && still == top(); --i)
            QTest::keyClick(focusIn(*still), Qt::Key(key), modifiers);
    }
    void type(QWidget &widget)
    {
        static const QStringList texts {
            QStringLiteral("12"),           QStringLiteral("-5"),   QStringLiteral("rat"),
            QStringLiteral("999999"),       QStringLiteral("<b>x"), QStringLiteral("%1 %2 &"),
            QStringLiteral("\u00e9\u4e00"), QString(200, u'w'),     QStringLiteral("  ")};
        // The test library types no letters but those of a plain keyboard.
        const QPointer<QWidget> still(&widget);
        for (const QChar letter : anyOf(texts)) {
            if (!still || still != top())
                return;
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, {}, letter);
            QCoreApplication::sendEvent(focusIn(*still), &press);
        }
    }
    // A point of any visible widget in the window, in the window's coordinates.
    QPoint anyPoint(const QWidget &widget)
    {
        QList<const QWidget *> widgets {&widget};
        const QList<QWidget *> children = widget.findChildren<QWidget *>();
        for (const QWidget *child : children) {
            if (child->isVisible() && child->window() == widget.window())
                widgets << child;
        }
        const QWidget *chosen = anyOf(widgets);
        const QPoint inside(upTo(chosen->width() - 1), upTo(chosen->height() - 1));
        const QPoint point = chosen->mapTo(widget.window(), inside);
        const QWindow *window = widget.window()->windowHandle();
        return window && QRect({}, window->size()).contains(point) ? point : QPoint(1, 1);
    }
    void click(QWidget &widget)
    {
        static const std::array<Qt::MouseButton, 5> buttons {
            Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
        QWindow *window = widget.window()->windowHandle();
        const QPoint point = anyPoint(widget);
        if (!window)
            return;
        if (upTo(5) == 0)
            QTest::mouseDClick(window, Qt::LeftButton, {}, point);
        else
            QTest::mouseClick(window, anyOf(buttons), anyModifiers(), point);
    }
    void drag(QWidget &widget)
    {
        const QPointer<QWindow> window(widget.window()->windowHandle());
        const QPoint from = anyPoint(widget);
        const QPoint to = anyPoint(widget);
        if (!window)
            return;
        // The window may get smaller on the way, or go.
        const auto within = [&window](const QPoint &point) {
            return QPoint(qMin(point.x(), window->width() - 1),
                          qMin(point.y(), window->height() - 1));
        };
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        for (const QPoint point : {(from + to) / 2, to}) {
            if (window)
                QTest::mouseMove(window, within(point));
        }
        if (window)
            QTest::mouseRelease(window, Qt::LeftButton, {}, within(to));
    }
    void turnWheel(QWidget &widget)
    {
        const QPoint point = anyPoint(widget);
        QWidget *target = widget.window()->childAt(point);
        if (!target)
            return;
        const QPoint turn(0, upTo(1) ? 120 : -120);
        QWheelEvent event(target->mapFrom(widget.window(), point),
                          widget.window()->mapToGlobal(point), QPoint(), turn, Qt::NoButton,
                          anyModifiers(), Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(target, &event);
    }
    void trigger(QWidget &widget)
    {
        QList<QAction *> actions = widget.actions();
        if (&widget == theMainWindow)
            actions = widget.findChildren<QAction *>();
        actions.removeIf([](const QAction *action) { return !action->isEnabled(); });
        // Most ends of the program are for the test to reopen, which takes time.
        QAction *action = actions.isEmpty() ? nullptr : anyOf(actions);
        if (action && (action->objectName() != u"quit" || upTo(19) == 0))
            action->trigger();
    }

    std::mt19937 m_random;
    int m_left;
    int m_actingAt = -1; // the depth of event loops at which it is busy
};

void copyDemoData(const TestDataFolder &folder)
{
    const QDir demo(QStringLiteral(SOURCE_ROOT "/demo-data"));
    QDirIterator files(demo.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString name = demo.relativeFilePath(files.next());
        QVERIFY(QFile::copy(demo.filePath(name), folder.file(name)));
    }
}

} // namespace

class TestMonkey : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void plays_data();
    void plays();
};

void TestMonkey::plays_data()
{
    QTest::addColumn<bool>("demo");
    QTest::addRow("demo data, --seed %u", RandomTest::seed()) << true;
    QTest::addRow("empty folder, --seed %u", RandomTest::seed()) << false;
}

void TestMonkey::plays()
{
    QFETCH(bool, demo);
    Dice::seed(RandomTest::seed());
    FightFixture fixture;
    if (demo)
        copyDemoData(fixture.folder);
    {
        Monkey monkey(RandomTest::seed(), RandomTest::count(20000));
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &monkey, "openLink");
        fixture.open();
        while (!monkey.isDone()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (!fixture.window().isVisible()) {
                fixture.close();
                fixture.open();
            }
        }
        // What it left open ends while it still answers.
        QTRY_VERIFY(!QApplication::activePopupWidget() && !QApplication::activeModalWidget()
                    && !fixture.window().activeDialog());
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    }
    const QList<Creature *> creatures = theCharacters->all() + theMonsters->clones();
    for (const Creature *creature : creatures)
        QVERIFY(creature->restHP() == 0 && creature->restHS() == 0 && creature->restAP() == 0);
    while (theHistory->canStepForward())
        theHistory->stepForward();
    const int events = theHistory->eventCount();
    const QStringList order = FightFixture::order();
    fixture.close();
    Monkey answers(1, 0); // questions about an empty folder are cancelled
    fixture.open();
    if (demo) {
        QCOMPARE(theHistory->eventCount(), events);
        QCOMPARE(FightFixture::order(), order);
    }
}

MORVANE_TEST_MAIN(QApplication, TestMonkey)

#include "tst_monkey.moc"
