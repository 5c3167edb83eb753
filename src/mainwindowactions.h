// The actions of the DM's Display with their texts, keys and icons, and the menus and tool bars
// that hold them.
#pragma once

#include <QIcon>
#include <QObject>

class MainWindow;
class QAction;
class QSpinBox;

// Each action belongs to the window and runs one of its slots. When it is enabled, and how it reads
// then, is the window's business.
class MainWindowActions : public QObject {
    Q_OBJECT

public:
    explicit MainWindowActions(MainWindow *window);

    // The words of the rule system changed.
    void updateTerms();
    // The box becomes the tool bar's.
    void fillToolBars(QSpinBox *hpBox);
    // Puts the tool bars into as many rows as the window's width asks for.
    void breakToolBars();
    // `docks` show and hide the docks.
    void fillMenus(const QList<QAction *> &docks);

    QAction *setRoot = nullptr;
    QAction *newHistory = nullptr;
    QAction *truncateHistory = nullptr;
    QAction *dmsWindow = nullptr;
    QAction *managerWindow = nullptr;
    QAction *characterWindow = nullptr;
    QAction *playersWindow = nullptr;
    QAction *pickParty = nullptr;
    QAction *loadEncounter = nullptr;
    QAction *addMonster = nullptr;
    QAction *stepBack = nullptr;
    QAction *stepForward = nullptr;
    QAction *startStop = nullptr;
    QAction *nextTurn = nullptr;
    QAction *conditions = nullptr;
    QAction *showHide = nullptr;
    QAction *setAlias = nullptr;
    QAction *remove = nullptr;
    QAction *delay = nullptr;
    QAction *ready = nullptr;
    QAction *jumpIn = nullptr;
    QAction *upInitiative = nullptr;
    QAction *downInitiative = nullptr;
    QAction *shortRest = nullptr;
    QAction *extendedRest = nullptr;
    QAction *quit = nullptr;
    QAction *about = nullptr;
    QAction *hit = nullptr;
    QAction *heal = nullptr;
    QAction *surge = nullptr;
    QAction *setTempHP = nullptr;

    // Of the actions that change their face.
    const QIcon playIcon;
    const QIcon stopIcon;
    const QIcon hideIcon;
    const QIcon showIcon;
    const QIcon surgeIcon;
    const QIcon surgeInUseIcon;
    const QIcon playersOpenIcon;
    const QIcon playersCloseIcon;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row;
    static const Row rows[];

    QAction *create(const Row &row);

    MainWindow *m_window;
};
