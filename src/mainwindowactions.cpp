#include "mainwindowactions.h"

#include <QAction>
#include <QMenuBar>
#include <QShortcutEvent>
#include <QSpinBox>
#include <QToolBar>

#include "mainwindow.h"
#include "terms.h"
#include "text.h"

namespace {

QIcon image(const char *file)
{
    return QIcon(QStringLiteral(":/images/") + QLatin1String(file));
}

using Actions = MainWindowActions;

} // namespace

// What one action is. A text that holds a game term is null here and set by updateTerms().
struct MainWindowActions::Row {
    QAction *MainWindowActions::*action;
    const char *name;
    const char *text;
    const char *key;
    const char *icon;
    const char *statusTip;
    void (MainWindow::*slot)();
    bool enabled = true;
    QKeySequence::StandardKey standardKey = QKeySequence::UnknownKey; // where `key` is null
};

const MainWindowActions::Row MainWindowActions::rows[] = {
    {&Actions::setRoot, "setRoot", QT_TR_NOOP("Select Data Location..."), nullptr, nullptr,
     QT_TR_NOOP("Select a new Morvane data location"), &MainWindow::onSetRoot},
    {&Actions::newHistory, "newHistory", QT_TR_NOOP("Clear History..."), nullptr, nullptr,
     QT_TR_NOOP("Clear the history and reset all creatures and encounters"),
     &MainWindow::onNewHistory},
    {&Actions::truncateHistory, "truncateHistory", QT_TR_NOOP("Truncate..."), nullptr, nullptr,
     QT_TR_NOOP("Truncate the history file"), &MainWindow::onTruncateHistory},
    {&Actions::dmsWindow, "dmsWindow", QT_TR_NOOP("DM's Display Window"), nullptr,
     "dms-window32.png", QT_TR_NOOP("Bring DM's Display window to the front"),
     &MainWindow::activateMainWindow},
    {&Actions::managerWindow, "managerWindow", QT_TR_NOOP("Monster Manager Window"), nullptr,
     "monster-window32.png", QT_TR_NOOP("Bring the Monster Manager window to the front"),
     &MainWindow::activateManagerWindow},
    {&Actions::characterWindow, "characterWindow", QT_TR_NOOP("Character Creator Window"), nullptr,
     "heros-window32.png", QT_TR_NOOP("Bring the Character Creator window to the front"),
     &MainWindow::activateCharacterWindow},
    {&Actions::playersWindow, "playersWindow", QT_TR_NOOP("Show Player's Window"), nullptr,
     "players-window-open32.png", QT_TR_NOOP("Show the Player's window"),
     &MainWindow::onTogglePlayerWindow},
    {&Actions::pickParty, "pickParty", QT_TR_NOOP("Select Party..."), "Ctrl+Y", "pick-party32.png",
     QT_TR_NOOP("Select the characters that belong to the party"), &MainWindow::onPickParty},
    {&Actions::loadEncounter, "loadEncounter", QT_TR_NOOP("Load Encounter..."), nullptr,
     "load-encounter32.png", QT_TR_NOOP("Load a new encounter from disk"),
     &MainWindow::onLoadEncounter, true, QKeySequence::Open},
    {&Actions::addMonster, "addMonster", QT_TR_NOOP("Add Monster..."), "Ctrl+M",
     "add-monster32.png", QT_TR_NOOP("Add a monster to the encounter"), &MainWindow::onAddMonster},
    {&Actions::stepBack, "stepBack", QT_TR_NOOP("Step Back"), nullptr, "back32.png",
     QT_TR_NOOP("Step back in the encounter history"), &MainWindow::onStepBack, true,
     QKeySequence::Undo},
    // The standard keys of Redo hold Ctrl+Y on some platforms, which is the party's here.
    {&Actions::stepForward, "stepForward", QT_TR_NOOP("Step Forward"), "Ctrl+Shift+Z",
     "forward32.png", QT_TR_NOOP("Step forward in the encounter history"),
     &MainWindow::onStepForward},
    {&Actions::startStop, "startStop", QT_TR_NOOP("&Start Encounter..."), "Ctrl+S", "play32.png",
     QT_TR_NOOP("Start the current encounter"), &MainWindow::onStartStopEncounter, false},
    {&Actions::nextTurn, "nextTurn", QT_TR_NOOP("&Next Turn"), "Ctrl+N", "next-turn32.png",
     QT_TR_NOOP("End the current turn, and start the next turn"), &MainWindow::onNextTurn, false},
    {&Actions::conditions, "conditions", QT_TR_NOOP("Conditions && Effects..."), "Ctrl+A",
     "conditions-effects32.png",
     QT_TR_NOOP("Apply damage, conditions, effects to selected targets"),
     &MainWindow::onAddConditionOrEffect, false},
    {&Actions::showHide, "showHide", QT_TR_NOOP("Hide Creatures"), "Ctrl+H", "hide32.png",
     QT_TR_NOOP("Hide a creature so that it is no longer visible to players"),
     &MainWindow::onShowAndHide, false},
    {&Actions::setAlias, "setAlias", QT_TR_NOOP("Set Alias"), "Ctrl+Shift+A", "alias32.png",
     QT_TR_NOOP("Set an alias for monsters and characters"), &MainWindow::onSetAlias, false},
    {&Actions::remove, "remove", QT_TR_NOOP("Remove Creatures"), "Ctrl+R", "trash32.png",
     QT_TR_NOOP("Remove monsters or characters from the encounter"), &MainWindow::onRemoveCreatures,
     false},
    {&Actions::delay, "delay", QT_TR_NOOP("Delay Turn"), "Ctrl+D", "delay-turn32.png",
     QT_TR_NOOP("Delay the current turn and jump in before the start of the next turn"),
     &MainWindow::onDelay, false},
    // Shares its key with "Remove Creatures": it does neither until one of them is disabled.
    {&Actions::ready, "ready", QT_TR_NOOP("Ready Action"), "Ctrl+R", "ready-action32.png",
     QT_TR_NOOP("Ready a standard action that will be triggered, by jump in, later"),
     &MainWindow::onReady, false},
    {&Actions::jumpIn, "jumpIn", QT_TR_NOOP("Jump In"), "Ctrl+J", "jump-in32.png",
     QT_TR_NOOP("Start a delayed turn or trigger a prepared action"), &MainWindow::onJumpIn, false},
    // The two tips say the opposite of what the list shows: up in the list means down in the
    // order of the numbers.
    {&Actions::upInitiative, "upInitiative", QT_TR_NOOP("Up Initiative"), "Ctrl+U",
     "initiative-up32.png", QT_TR_NOOP("Move monster and characters down in the initative order"),
     &MainWindow::onUpInitiative, false},
    {&Actions::downInitiative, "downInitiative", QT_TR_NOOP("Down Initiative"), "Ctrl+W",
     "initiative-down32.png", QT_TR_NOOP("Move monster and characters up in the initative order"),
     &MainWindow::onDownInitiative, false},
    {&Actions::shortRest, "shortRest", nullptr, "Ctrl+E", "short-rest32.png", nullptr,
     &MainWindow::onShortRest, false},
    {&Actions::extendedRest, "extendedRest", nullptr, "Ctrl+X", "ext-rest32.png",
     QT_TR_NOOP("Restore all party members to full health"), &MainWindow::onExtendedRest, false},
    {&Actions::quit, "quit", QT_TR_NOOP("&Quit"), "Ctrl+Q", nullptr,
     QT_TR_NOOP("Quit the application"), nullptr},
    {&Actions::about, "about", QT_TR_NOOP("About"), nullptr, nullptr,
     QT_TR_NOOP("Show the application's About box"), &MainWindow::onAbout},
    {&Actions::hit, "hit", QT_TR_NOOP("Apply Damage"), "Ctrl+T", "hit32.png",
     QT_TR_NOOP("Apply damage indicated in the HP box to selected creatures"), &MainWindow::onHit},
    {&Actions::heal, "heal", QT_TR_NOOP("Apply Healing"), "Ctrl+L", "heal32.png",
     QT_TR_NOOP("Heal selected creatures by the amount in the HP box"), &MainWindow::onHeal},
    {&Actions::surge, "surge", nullptr, "Ctrl+G", "healing-surge32.png", nullptr,
     &MainWindow::onSurge},
    {&Actions::setTempHP, "setTempHP", nullptr, "Ctrl+P", "temporary-hp32.png", nullptr,
     &MainWindow::onSetTempHP},
};

MainWindowActions::MainWindowActions(MainWindow *window)
    : QObject(window), playIcon(image("play32.png")), stopIcon(image("stop32.png")),
      hideIcon(image("hide32.png")), showIcon(image("show32.png")),
      surgeIcon(image("healing-surge32.png")), surgeInUseIcon(image("healing-surge-x1-32.png")),
      playersOpenIcon(image("players-window-open32.png")),
      playersCloseIcon(image("players-window-close32.png")), m_window(window)
{
    for (const Row &row : rows)
        this->*row.action = create(row);
    for (QAction *action : {ready, remove})
        action->installEventFilter(this);
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, window, &QWidget::close);
    updateTerms();
}

QAction *MainWindowActions::create(const Row &row)
{
    auto *action = new QAction(m_window);
    action->setObjectName(QLatin1String(row.name));
    if (row.text)
        action->setText(tr(row.text));
    if (row.statusTip)
        action->setStatusTip(tr(row.statusTip));
    if (row.icon)
        action->setIcon(image(row.icon));
    if (row.key)
        action->setShortcut(QKeySequence(QLatin1String(row.key)));
    else
        action->setShortcuts(row.standardKey);
    action->setEnabled(row.enabled);
    if (row.slot)
        connect(action, &QAction::triggered, m_window, row.slot);
    return action;
}

// A key that two enabled actions share does neither, of which the toolkit would warn.
bool MainWindowActions::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Shortcut)
        return static_cast<QShortcutEvent *>(event)->isAmbiguous();
    return QObject::eventFilter(watched, event);
}

void MainWindowActions::updateTerms()
{
    const auto text = [](const QString &form, int index) {
        return form.arg(withLiteralAmpersands(shortened(term(index), LongestName)));
    };
    const QString surgeTerm = term(Term::HealingSurge);
    shortRest->setText(text(tr("%1..."), Term::ShortRest));
    shortRest->setStatusTip(tr("Spend %1s after an encounter and/or grant an %2")
                                .arg(surgeTerm, term(Term::ActionPoint)));
    extendedRest->setText(text(tr("%1..."), Term::ExtendedRest));
    surge->setText(text(tr("Spend %1"), Term::HealingSurge));
    surge->setStatusTip(tr("Add a %1 to the HP box").arg(surgeTerm));
    setTempHP->setText(text(tr("Set %1"), Term::TemporaryHP));
    setTempHP->setStatusTip(tr("Set %1 to amount in the HP box, if larger than current value")
                                .arg(term(Term::TemporaryHP)));
}

void MainWindowActions::fillToolBars(QSpinBox *hpBox)
{
    QToolBar *tracker = m_window->addToolBar(tr("Tracker"));
    tracker->setObjectName(QStringLiteral("trackerToolBar"));
    tracker->addActions({stepBack, startStop, stepForward});
    tracker->addSeparator();
    tracker->addActions({nextTurn, delay, ready, jumpIn});
    tracker->addSeparator();
    tracker->addActions({upInitiative, downInitiative});

    QToolBar *actions = m_window->addToolBar(tr("Actions"));
    actions->setObjectName(QStringLiteral("actionToolBar"));
    actions->addActions({conditions, showHide, setAlias, remove});
    actions->addSeparator();
    actions->addWidget(hpBox);
    actions->addActions({hit, heal, surge, setTempHP});
    actions->addSeparator();
    actions->addAction(playersWindow);

    QToolBar *windows = m_window->addToolBar(tr("Windows"));
    windows->setObjectName(QStringLiteral("windowToolBar"));
    windows->addActions({pickParty, loadEncounter, addMonster});
    windows->addSeparator();
    windows->addActions({shortRest, extendedRest, managerWindow, characterWindow});
}

// A bar that doesn't fit beside the others would hide its last buttons behind an arrow.
void MainWindowActions::breakToolBars()
{
    int used = 0;
    const QList<QToolBar *> bars = m_window->findChildren<QToolBar *>(Qt::FindDirectChildrenOnly);
    for (QToolBar *bar : bars) {
        const int needed = bar->sizeHint().width();
        if (used > 0 && used + needed > m_window->width()) {
            m_window->insertToolBarBreak(bar);
            used = 0;
        }
        used += needed;
    }
}

void MainWindowActions::fillMenus(const QList<QAction *> &docks)
{
    QMenuBar *bar = m_window->menuBar();
    QMenu *file = bar->addMenu(tr("&File"));
    file->addActions({setRoot, pickParty, loadEncounter, addMonster});
    file->addSeparator();
    file->addAction(quit);

    bar->addMenu(tr("&History"))->addActions({newHistory, truncateHistory, stepBack, stepForward});
    bar->addMenu(tr("&Encounter"))
        ->addActions({startStop, nextTurn, delay, ready, jumpIn, upInitiative, downInitiative,
                      conditions, showHide, setAlias, remove});
    bar->addMenu(tr("Hea&lth"))->addActions({hit, heal, surge, setTempHP});
    bar->addMenu(tr("&Rest"))->addActions({shortRest, extendedRest});

    QMenu *window = bar->addMenu(tr("&Window"));
    window->addActions({dmsWindow, managerWindow, characterWindow, playersWindow});
    window->addActions(docks);

    bar->addSeparator();
    bar->addMenu(tr("Hel&p"))->addAction(about);
}

#include "moc_mainwindowactions.cpp"
