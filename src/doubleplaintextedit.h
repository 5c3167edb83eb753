// The text of a stat block in two editors: one for the tab where it is worked on, one beside the
// files to import.
#pragma once

#include <QPlainTextEdit>

#include "linereading.h"

// An editor whose pastes are tidied; undo brings the text back as it was copied. A thin colour
// beside each line says what the parser took it for.
class StatBlockEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit StatBlockEdit(QWidget *parent = nullptr);

    // One for each line; none for a text whose lines don't count.
    void setReadings(const QList<LineReading> &readings);
    void goToLine(qsizetype line);

Q_SIGNALS:
    // A paste begins, and ends; `changes` says what was tidied, and is empty for nothing.
    void doPasteBegins();
    void doPasteEnded(const QStringList &changes);

protected:
    void insertFromMimeData(const QMimeData *source) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void paintMargin(QPaintEvent *event);
    // What is said of the line at that height of the margin; empty for a blank one.
    QString readingAt(int y) const;
    void tellLine();

    QWidget *m_margin;
    QList<LineReading> m_readings;
};

// One text in both: an editor takes it over when it is shown. A step back goes to what was done in
// that editor.
class DoublePlainTextEdit : public QObject {
    Q_OBJECT

public:
    explicit DoublePlainTextEdit(QObject *parent = nullptr);

    // Both are the caller's, who puts them into a layout.
    StatBlockEdit *first() const { return m_first; }
    StatBlockEdit *second() const { return m_second; }

    // With LF as line end, and else as it was set or typed.
    QString text() const;
    // Another text: nothing of it can be undone.
    void setText(const QString &text);
    // Changes the text in one step that can be undone. The caret stays where it was.
    void replaceText(const QString &text);
    void setEnabled(bool enabled);
    void setReadings(const QList<LineReading> &readings);
    // The first takes the focus, with all text selected.
    void focusOnAll();

Q_SIGNALS:
    void textChanged();
    void doTidied(const QStringList &changes);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setActive(StatBlockEdit *edit);

    StatBlockEdit *m_first;
    StatBlockEdit *m_second;
    StatBlockEdit *m_active; // the one that was shown last
    bool m_isSilent = false; // a paste is under way, or an editor takes over
};
