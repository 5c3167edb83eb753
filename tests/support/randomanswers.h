// Choices by chance, and the answers to dialogs and menus that open meanwhile. For programs that
// link the windows.
#pragma once

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <random>

#include "flatdialog.h"

class Chance {
public:
    explicit Chance(unsigned int seed) : m_random(seed) { }
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
    bool percent(int percent) { return upTo(99) < percent; }
    template <typename T>
    T anyOf(const QList<T> &list)
    {
        return list.isEmpty() ? T() : list.at(upTo(int(list.size()) - 1));
    }

private:
    std::mt19937 m_random;
};

template <typename Widget>
inline QList<Widget *> usable(const QWidget &parent)
{
    QList<Widget *> widgets = parent.findChildren<Widget *>();
    widgets.removeIf([](const Widget *w) { return !w->isVisible() || !w->isEnabled(); });
    return widgets;
}

// Fills in any dialog or menu that opens while it lives, and ends it one way or another.
class RandomAnswers : public QObject {
public:
    explicit RandomAnswers(Chance &chance) : m_chance(chance) { scheduleNext(); }

private:
    void scheduleNext()
    {
        // A new timer each time: one that is just firing stands still in a loop that it opens.
        QTimer::singleShot(0, this, [this] {
            scheduleNext();
            answer();
        });
    }
    void answer()
    {
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
            choose(*menu);
        else if (QWidget *modal = QApplication::activeModalWidget())
            end(*modal);
        else if (FlatDialog *flat = activeFlatDialog(); flat && flat->isVisible())
            end(*flat);
    }
    void choose(QMenu &menu)
    {
        QAction *action = m_chance.anyOf(menu.actions());
        if (!action || !action->isEnabled() || action->text().startsWith(u"Need help")) {
            menu.close();
            return;
        }
        menu.setActiveAction(action);
        QTest::keyClick(&menu, Qt::Key_Return);
    }
    void end(QWidget &dialog)
    {
        fillIn(dialog);
        const int way = m_chance.upTo(9);
        if (way == 0) {
            QTest::keyClick(&dialog, Qt::Key_Escape);
        } else if (QPushButton *button = m_chance.anyOf(usable<QPushButton>(dialog)); way < 3) {
            if (button)
                button->click();
        } else {
            QTest::keyClick(&dialog, Qt::Key_Return);
        }
    }
    void fillIn(QWidget &dialog)
    {
        for (QTableView *table : usable<QTableView>(dialog))
            table->selectRow(m_chance.upTo(qMax(0, table->model()->rowCount() - 1)));
        for (QSpinBox *box : usable<QSpinBox>(dialog)) {
            if (m_chance.percent(25))
                box->setValue(box->minimum() + m_chance.upTo(qMin(25, box->maximum())));
        }
        for (QComboBox *box : usable<QComboBox>(dialog)) {
            if (m_chance.percent(35) && box->count() > 0) {
                box->setCurrentIndex(m_chance.upTo(box->count() - 1));
                Q_EMIT box->activated(box->currentIndex());
            }
        }
        for (QCheckBox *box : usable<QCheckBox>(dialog)) {
            if (m_chance.percent(30) && box->isVisible())
                box->click();
        }
        for (QLineEdit *edit : usable<QLineEdit>(dialog)) {
            if (edit->objectName() != u"filter" && !qobject_cast<QSpinBox *>(edit->parent())
                && m_chance.percent(40))
                edit->setText(QStringLiteral("x%1").arg(m_chance.upTo(99)));
        }
    }

    Chance &m_chance;
};
