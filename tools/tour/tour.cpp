#include "tour.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "eventlistmodel.h"
#include "mainwindow.h"
#include "powerlabel.h"
#include "switchboard.h"
#include "text.h"

namespace {

// Long enough for the panels, which follow at the next refresh tick.
constexpr int SettleMilliseconds = 700;
// Of a step that nobody looks at: a dialog has opened and has the focus.
constexpr int UnseenMilliseconds = 20;
constexpr int MostRepeats = 100;

QWidget *focusedWidget(QWidget *fallback)
{
    QWidget *focused = QApplication::focusWidget();
    return focused ? focused : fallback;
}

QString withoutMnemonic(QString text)
{
    return text.replace(QStringLiteral("&&"), QStringLiteral("\n"))
        .remove(u'&')
        .replace(u'\n', u'&');
}

// The text of a cell as it is seen, without tags.
QString plainCell(const QModelIndex &index)
{
    QString text = index.data().toString();
    while (text.contains(u'<') && text.contains(u'>'))
        text = beforeFirst(text, QStringLiteral("<")) + afterFirst(text, QStringLiteral(">"));
    return text;
}

} // namespace

Tour::Tour(MainWindow *window, const QString &folder, int firstNumber)
    : m_window(window), m_folder(folder), m_number(firstNumber)
{
}

void Tour::step(const QString &name, std::function<void()> act)
{
    m_steps.push_back({name, std::move(act), nullptr});
}

void Tour::step(std::function<void()> act)
{
    m_steps.push_back({QString(), std::move(act), nullptr});
}

void Tour::repeat(std::function<bool()> until, std::function<void()> act)
{
    m_steps.push_back({QString(), std::move(act), std::move(until)});
}

void Tour::start()
{
    QTimer::singleShot(SettleMilliseconds, this, &Tour::next);
}

void Tour::turnTo(QWidget *window)
{
    m_turnedTo = window;
}

QWidget *Tour::shownWindow() const
{
    QWidget *dialog = QApplication::activeModalWidget();
    if (dialog)
        return dialog;
    return m_turnedTo ? m_turnedTo.data() : m_window;
}

void Tour::next()
{
    // Behind a list, menu or dialog that has closed, some platforms leave no window active.
    m_activating =
        !m_activating && !QApplication::activePopupWidget() && !shownWindow()->isActiveWindow();
    if (m_activating) {
        shownWindow()->activateWindow();
        QTimer::singleShot(UnseenMilliseconds, this, &Tour::next);
        return;
    }
    if (m_repeats == 0 && m_next > 0 && !m_steps[m_next - 1].name.isEmpty())
        savePicture(m_steps[m_next - 1].name);
    while (m_succeeded && m_next < m_steps.size() && m_steps[m_next].until
           && m_steps[m_next].until()) {
        ++m_next;
        m_repeats = 0;
    }
    if (m_next == m_steps.size() || !m_succeeded) {
        QCoreApplication::exit();
        return;
    }
    const Step &step = m_steps[m_next];
    // Set first: a step that opens a dialog stays in the dialog's own loop, which runs the next
    // one.
    QTimer::singleShot(step.name.isEmpty() ? UnseenMilliseconds : SettleMilliseconds, this,
                       &Tour::next);
    if (!step.until)
        ++m_next;
    else if (++m_repeats > MostRepeats)
        fail(QStringLiteral("repeated without end"));
    step.act();
}

void Tour::savePicture(const QString &name)
{
    QWidget *shown = shownWindow();
    // The panels follow on their next tick.
    Q_EMIT switchBoard()->doRefreshTimer();
    QPixmap picture = shown->grab();
    if (QWidget *menu = QApplication::activePopupWidget())
        QPainter(&picture).drawPixmap(shown->mapFromGlobal(menu->pos()), menu->grab());
    const QString path = QStringLiteral("%1/%2-%3.png")
                             .arg(m_folder)
                             .arg(m_number++, 2, 10, QLatin1Char('0'))
                             .arg(name);
    if (!picture.save(path))
        fail(QStringLiteral("cannot save %1").arg(path));
    else
        std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
}

void Tour::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(focusedWidget(shownWindow()), Qt::Key(key), modifiers);
}

void Tour::type(const QString &text)
{
    QTest::keyClicks(focusedWidget(m_window), text);
}

void Tour::clickButton(const QString &text)
{
    const QWidgetList tops = QApplication::topLevelWidgets();
    for (QWidget *top : tops) {
        const auto buttons = top->findChildren<QAbstractButton *>();
        for (QAbstractButton *button : buttons) {
            if (button->isVisible() && withoutMnemonic(button->text()) == text) {
                expect(button->isEnabled(), QStringLiteral("button \"%1\" enabled").arg(text));
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
    }
    fail(QStringLiteral("no button \"%1\"").arg(text));
}

void Tour::clickRow(const QString &text, int column, Qt::MouseButton button)
{
    const auto tables = m_window->findChildren<QTableView *>();
    for (QTableView *table : tables) {
        if (!table->isVisible())
            continue;
        const QAbstractItemModel *model = table->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            for (int i = 0; i < model->columnCount(); ++i) {
                if (plainCell(model->index(row, i)) != text)
                    continue;
                clickCell(table, model->index(row, column), button);
                return;
            }
        }
    }
    fail(QStringLiteral("no row \"%1\"").arg(text));
}

void Tour::clickEvent(int index)
{
    const auto tables = m_window->findChildren<QTableView *>();
    for (QTableView *table : tables) {
        if (table->isVisible() && qobject_cast<EventListModel *>(table->model())) {
            clickCell(table, table->model()->index(index, 0), Qt::LeftButton);
            return;
        }
    }
    fail(QStringLiteral("no history"));
}

void Tour::clickPower(const QString &name)
{
    Q_EMIT switchBoard()->doRefreshTimer(); // the panel follows on its next tick
    const auto *dock = m_window->findChild<QWidget *>(QStringLiteral("currentWidget"));
    const auto areas = dock->findChildren<QScrollArea *>();
    for (QScrollArea *area : areas) {
        const auto labels = area->findChildren<PowerLabel *>();
        for (PowerLabel *label : labels) {
            if (label->isVisible()
                && label->text().contains(QStringLiteral("<b>%1</b>").arg(name))) {
                area->ensureWidgetVisible(label);
                QTest::mouseClick(label, Qt::LeftButton);
                return;
            }
        }
    }
    fail(QStringLiteral("no power \"%1\"").arg(name));
}

void Tour::clickCell(QTableView *table, const QModelIndex &index, Qt::MouseButton button)
{
    table->scrollTo(index);
    const QPoint place = table->visualRect(index).center();
    if (button == Qt::RightButton)
        QCursor::setPos(table->viewport()->mapToGlobal(place)); // a menu opens at the pointer
    QTest::mouseClick(table->viewport(), button, Qt::NoModifier, place);
}

void Tour::clickEntry(const QString &text)
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    const QList<QAction *> entries = menu ? menu->actions() : QList<QAction *>();
    for (QAction *entry : entries) {
        if (withoutMnemonic(entry->text()) == text) {
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(entry).center());
            return;
        }
    }
    fail(QStringLiteral("no entry \"%1\"").arg(text));
}

template <typename Field>
Field *Tour::focusField(const QString &name)
{
    const QWidgetList tops = QApplication::topLevelWidgets();
    for (QWidget *top : tops) {
        auto *field = top->findChild<Field *>(name);
        if (field && field->isVisible() && field->isEnabled()) {
            field->setFocus(Qt::TabFocusReason);
            return field;
        }
    }
    fail(QStringLiteral("no field \"%1\"").arg(name));
    return nullptr;
}

void Tour::enter(const QString &field, const QString &text)
{
    if (auto *box = focusField<QWidget>(field)) {
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, text);
    }
}

void Tour::choose(const QString &field, const QString &text)
{
    auto *box = focusField<QComboBox>(field);
    if (!box)
        return;
    QTest::keyClick(box, Qt::Key_Space);
    QTest::keyClick(box->view(), Qt::Key_Home);
    for (int i = 1; i < box->count() && box->view()->currentIndex().data() != text; ++i)
        QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    expect(box->currentText() == text, QStringLiteral("\"%1\" in %2").arg(text, field));
}

void Tour::check(const QString &field, bool checked)
{
    auto *box = focusField<QCheckBox>(field);
    if (box && box->isChecked() != checked)
        QTest::keyClick(box, Qt::Key_Space);
    expect(box && box->isChecked() == checked, QStringLiteral("%1 set").arg(field));
}

void Tour::expect(bool holds, const QString &what)
{
    if (!holds)
        fail(QStringLiteral("expected: %1").arg(what));
}

void Tour::fail(const QString &reason)
{
    std::fprintf(stderr, "tour: step %d: %s\n", int(m_next), qPrintable(reason));
    m_succeeded = false;
}

#include "moc_tour.cpp"
