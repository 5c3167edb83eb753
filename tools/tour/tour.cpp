#include "tour.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "eventlistmodel.h"
#include "mainwindow.h"
#include "text.h"

namespace {

// Long enough for a repaint and for the refresh tick's panels not to matter to a reader.
constexpr int SettleMilliseconds = 200;

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
    m_steps.push_back({name, std::move(act)});
}

void Tour::start()
{
    QTimer::singleShot(SettleMilliseconds, this, &Tour::next);
}

void Tour::next()
{
    if (m_next > 0 && !m_steps[m_next - 1].name.isEmpty())
        savePicture(m_steps[m_next - 1].name);
    if (m_next == m_steps.size() || !m_succeeded) {
        QCoreApplication::exit();
        return;
    }
    // Set first: a step that opens a dialog stays in the dialog's own loop, which runs the next
    // one.
    QTimer::singleShot(SettleMilliseconds, this, &Tour::next);
    m_steps[m_next++].act();
}

void Tour::savePicture(const QString &name)
{
    QWidget *shown = QApplication::activeModalWidget();
    if (!shown)
        shown = m_window;
    const QString path = QStringLiteral("%1/%2-%3.png")
                             .arg(m_folder)
                             .arg(m_number++, 2, 10, QLatin1Char('0'))
                             .arg(name);
    if (!shown->grab().save(path))
        fail(QStringLiteral("cannot save %1").arg(path));
    else
        std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
}

void Tour::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(focusedWidget(m_window), Qt::Key(key), modifiers);
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

void Tour::clickRow(const QString &text, int column, Qt::KeyboardModifiers modifiers)
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
                clickCell(table, model->index(row, column), modifiers);
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
            clickCell(table, table->model()->index(index, 0), Qt::NoModifier);
            return;
        }
    }
    fail(QStringLiteral("no history"));
}

void Tour::clickCell(QTableView *table, const QModelIndex &index, Qt::KeyboardModifiers modifiers)
{
    table->scrollTo(index);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers,
                      table->visualRect(index).center());
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
