// Plays a list of steps through the real windows by keys and clicks, and saves a picture of each.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <vector>

class MainWindow;
class QModelIndex;
class QTableView;
class QWidget;

// One run of the program: from the window's first show to its close.
class Tour : public QObject {
    Q_OBJECT

public:
    // Pictures go to `folder`, numbered from `firstNumber`. The window stays the caller's.
    Tour(MainWindow *window, const QString &folder, int firstNumber);

    // `name` becomes the picture's file name; it is taken when the step's doings have settled.
    void step(const QString &name, std::function<void()> act);
    // Without a picture.
    void step(std::function<void()> act);
    // Any number of times, none included, until it holds; it fails when it never does.
    void repeat(std::function<bool()> until, std::function<void()> act);
    // Starts with the next turn of the event loop; the application quits after the last step.
    void start();
    // False when a step didn't find what it wanted.
    bool succeeded() const { return m_succeeded; }
    int nextNumber() const { return m_number; }

    // Keys and pictures are of that window from now on; null is the main window again.
    void turnTo(QWidget *window);

    // --- what a user does ---
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString &text);
    // A visible button of the windows, by its text without mnemonics.
    void clickButton(const QString &text);
    // A cell of the table that shows `text` in one of its columns.
    void clickRow(const QString &text, int column, Qt::MouseButton button = Qt::LeftButton);
    // An entry of the menu that is open.
    void clickEntry(const QString &text);
    // A line of the history.
    void clickEvent(int index);
    // The headline of a power in the current creature's panel.
    void clickPower(const QString &name);
    // The fields of a form, by their object names.
    void enter(const QString &field, const QString &text);
    void choose(const QString &field, const QString &text);
    void check(const QString &field, bool checked);
    void expect(bool holds, const QString &what);

private:
    void clickCell(QTableView *table, const QModelIndex &index, Qt::MouseButton button);
    // The visible and enabled field with the focus in it, as Tab gives it. Null is a failure.
    template <typename Field>
    Field *focusField(const QString &name);
    // The dialog on top, or the window that the tour is turned to.
    QWidget *shownWindow() const;
    void next();
    void savePicture(const QString &name);
    void fail(const QString &reason);

    struct Step {
        QString name;
        std::function<void()> act;
        std::function<bool()> until; // null: once
    };
    MainWindow *m_window;
    QPointer<QWidget> m_turnedTo;
    QString m_folder;
    int m_number;
    std::vector<Step> m_steps;
    size_t m_next = 0;
    int m_repeats = 0; // of the next step
    bool m_activating = false;
    bool m_succeeded = true;
};
