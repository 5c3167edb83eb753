// The Monster Manager: the window in which monsters and prepared encounters are made.
#pragma once

#include <QWidget>

#include "windows.h"
#include "windowsanddialogs.h"

class EncounterEditor;
class MonsterEditor;
class QPushButton;

// Made behind the core's objects, which may go before it. Hidden at first; closing hides it, and
// what isn't saved stays in memory.
class ManagerWindow : public QWidget, public WindowsAndDialogs, public LibraryWindow {
    Q_OBJECT

public:
    explicit ManagerWindow(QWidget *parent = nullptr);
    ~ManagerWindow() override;

    QWidget *libraryWindow() override { return this; }
    void saveAll() override;
    void refresh() override;

public Q_SLOTS:
    void onTemplateListChanged();
    void onEncounterListUpdated();
    void onRevertAll();
    // What can't be written keeps its mark, and is told once.
    void onSaveAll();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void updateButtons();

    MonsterEditor *m_monsters;
    EncounterEditor *m_encounters;
    QPushButton *m_revert;
    QPushButton *m_save;
};
