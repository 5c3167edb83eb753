// The left side of both library windows: a filter above the list.
#pragma once

#include <QListView>

#include "windowsanddialogs.h"

class Creature;
class LibraryListModel;
class QLineEdit;

class LibraryView : public QListView {
    Q_OBJECT

public:
    explicit LibraryView(QWidget *parent = nullptr);

Q_SIGNALS:
    void doDeletePressed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

using MonsterView = LibraryView;
using CharacterView = LibraryView;

// Keeps the selected creature through each refresh, as long as it has a row.
class LibraryPane : public QWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    // Takes the model over.
    explicit LibraryPane(LibraryListModel *model, QWidget *parent = nullptr);

    LibraryListModel *model() const { return m_model; }
    LibraryView *view() const { return m_view; }
    // Null without one.
    Creature *selected() const;
    // A filter that hides the creature is emptied. Null selects nothing.
    void select(Creature *creature);
    // The collection changed: rows anew, the selected creature stays selected. Where it has gone,
    // its successor in the list is selected.
    void refresh();

Q_SIGNALS:
    void doSelectionChanged();

public Q_SLOTS:
    void onFilterChanged(QObject *object);

private:
    void selectRow(int row);

    LibraryListModel *m_model;
    LibraryView *m_view;
    QLineEdit *m_filter;
    bool m_isRefreshing = false;
};
