// What the DM's Display is made of: the centre, the actions, menus, tool bars and docks.
#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "creature.h"
#include "creaturelistmodel.h"
#include "creaturetableview.h"
#include "creaturewidget.h"
#include "dockwidget.h"
#include "effectlistmodel.h"
#include "encounter.h"
#include "eventlistmodel.h"
#include "history.h"
#include "lookonlybar.h"
#include "mainwindow.h"
#include "smallwidgets.h"
#include "switchboard.h"
#include "terms.h"
#include "text.h"

namespace {

constexpr int MaxHPInBox = 500;
constexpr int HistoryStretch = 100;
constexpr int PageMargin = 8;
constexpr QSize DefaultSize(1400, 860);
// Between two docks the initiative list shows all its columns in a window of the default size, even
// on a small screen.
constexpr int DockWidth = 290;
// Heights of a panel and of the list below it.
constexpr int PanelShare = 620;
constexpr int ListShare = 120;

QIcon image(const char *file)
{
    return QIcon(QStringLiteral(":/images/") + QLatin1String(file));
}

} // namespace

// One line of the table of actions. The text of an action that holds a game term is null here and
// set by updateTerms().
struct MainWindow::ActionRow {
    QAction *Actions::*action;
    const char *name;
    const char *text;
    QList<QKeySequence> shortcuts;
    const char *icon;
    const char *statusTip;
    void (MainWindow::*slot)();
    bool enabled = true;
};

void MainWindow::createCentre()
{
    m_table = new CreatureTableView(this);
    m_table->setObjectName(QStringLiteral("initiativeList"));
    m_listModel = new CreatureListModel;
    m_listModel->attachTo(m_table);

    m_dialogTitle = label(QString());
    m_dialogTitle->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont titleFont = m_dialogTitle->font();
    titleFont.setBold(true);
    m_dialogTitle->setFont(titleFont);
    m_dialogArea = new ResizableScrollArea;
    m_dialogArea->setFrameShape(QFrame::NoFrame);
    auto *dialogPage = new QFrame;
    auto *layout = new QVBoxLayout(dialogPage);
    layout->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    layout->setSpacing(5);
    layout->addWidget(m_dialogTitle);
    layout->addWidget(m_dialogArea);

    m_pages = new QStackedWidget;
    m_pages->addWidget(m_table);
    m_pages->addWidget(dialogPage);
    setCentralWidget(m_pages);
}

void MainWindow::createActions()
{
    using Keys = QList<QKeySequence>;
    const Keys none;
    // The standard keys of Redo hold Ctrl+Y on some platforms, which is the party's here.
    const Keys redo {QKeySequence(QStringLiteral("Ctrl+Shift+Z"))};
    const auto key = [](const char *text) { return Keys {QKeySequence(QLatin1String(text))}; };
    const ActionRow rows[] = {
        {&Actions::setRoot, "setRoot", QT_TR_NOOP("Select Data Location..."), none, nullptr,
         QT_TR_NOOP("Select a new Morvane data location"), &MainWindow::onSetRoot},
        {&Actions::newHistory, "newHistory", QT_TR_NOOP("Clear History..."), none, nullptr,
         QT_TR_NOOP("Clear the history and reset all creatures and encounters"),
         &MainWindow::onNewHistory},
        {&Actions::truncateHistory, "truncateHistory", QT_TR_NOOP("Truncate..."), none, nullptr,
         QT_TR_NOOP("Truncate the history file"), &MainWindow::onTruncateHistory},
        {&Actions::dmsWindow, "dmsWindow", QT_TR_NOOP("DM's Display Window"), none,
         "dms-window32.png", QT_TR_NOOP("Bring DM's Display window to the front"),
         &MainWindow::activateMainWindow},
        {&Actions::pickParty, "pickParty", QT_TR_NOOP("Select Party..."), key("Ctrl+Y"),
         "pick-party32.png", QT_TR_NOOP("Select the characters that belong to the party"),
         &MainWindow::onPickParty},
        {&Actions::loadEncounter, "loadEncounter", QT_TR_NOOP("Load Encounter..."),
         QKeySequence::keyBindings(QKeySequence::Open), "load-encounter32.png",
         QT_TR_NOOP("Load a new encounter from disk"), &MainWindow::onLoadEncounter},
        {&Actions::addMonster, "addMonster", QT_TR_NOOP("Add Monster..."), key("Ctrl+M"),
         "add-monster32.png", QT_TR_NOOP("Add a monster to the encounter"),
         &MainWindow::onAddMonster},
        {&Actions::stepBack, "stepBack", QT_TR_NOOP("Step Back"),
         QKeySequence::keyBindings(QKeySequence::Undo), "back32.png",
         QT_TR_NOOP("Step back in the encounter history"), &MainWindow::onStepBack},
        {&Actions::stepForward, "stepForward", QT_TR_NOOP("Step Forward"), redo, "forward32.png",
         QT_TR_NOOP("Step forward in the encounter history"), &MainWindow::onStepForward},
        {&Actions::startStop, "startStop", QT_TR_NOOP("&Start Encounter..."), key("Ctrl+S"),
         "play32.png", QT_TR_NOOP("Start the current encounter"), &MainWindow::onStartStopEncounter,
         false},
        {&Actions::nextTurn, "nextTurn", QT_TR_NOOP("&Next Turn"), key("Ctrl+N"), "next-turn32.png",
         QT_TR_NOOP("End the current turn, and start the next turn"), &MainWindow::onNextTurn,
         false},
        {&Actions::conditions, "conditions", QT_TR_NOOP("Conditions && Effects..."), key("Ctrl+A"),
         "conditions-effects32.png",
         QT_TR_NOOP("Apply damage, conditions, effects to selected targets"),
         &MainWindow::onAddConditionOrEffect, false},
        {&Actions::showHide, "showHide", QT_TR_NOOP("Hide Creatures"), key("Ctrl+H"), "hide32.png",
         QT_TR_NOOP("Hide a creature so that it is no longer visible to players"),
         &MainWindow::onShowAndHide, false},
        {&Actions::setAlias, "setAlias", QT_TR_NOOP("Set Alias"), key("Ctrl+Shift+A"),
         "alias32.png", QT_TR_NOOP("Set an alias for monsters and characters"),
         &MainWindow::onSetAlias, false},
        {&Actions::remove, "remove", QT_TR_NOOP("Remove Creatures"), key("Ctrl+R"), "trash32.png",
         QT_TR_NOOP("Remove monsters or characters from the encounter"),
         &MainWindow::onRemoveCreatures, false},
        {&Actions::delay, "delay", QT_TR_NOOP("Delay Turn"), key("Ctrl+D"), "delay-turn32.png",
         QT_TR_NOOP("Delay the current turn and jump in before the start of the next turn"),
         &MainWindow::onDelay, false},
        // Shares its key with "Remove Creatures": it does neither until one of them is disabled.
        {&Actions::ready, "ready", QT_TR_NOOP("Ready Action"), key("Ctrl+R"), "ready-action32.png",
         QT_TR_NOOP("Ready a standard action that will be triggered, by jump in, later"),
         &MainWindow::onReady, false},
        {&Actions::jumpIn, "jumpIn", QT_TR_NOOP("Jump In"), key("Ctrl+J"), "jump-in32.png",
         QT_TR_NOOP("Start a delayed turn or trigger a prepared action"), &MainWindow::onJumpIn,
         false},
        // The two tips say the opposite of what the list shows: up in the list means down in the
        // order of the numbers.
        {&Actions::upInitiative, "upInitiative", QT_TR_NOOP("Up Initiative"), key("Ctrl+U"),
         "initiative-up32.png",
         QT_TR_NOOP("Move monster and characters down in the initative order"),
         &MainWindow::onUpInitiative, false},
        {&Actions::downInitiative, "downInitiative", QT_TR_NOOP("Down Initiative"), key("Ctrl+W"),
         "initiative-down32.png",
         QT_TR_NOOP("Move monster and characters up in the initative order"),
         &MainWindow::onDownInitiative, false},
        {&Actions::shortRest, "shortRest", nullptr, key("Ctrl+E"), "short-rest32.png", nullptr,
         &MainWindow::onShortRest, false},
        {&Actions::extendedRest, "extendedRest", nullptr, key("Ctrl+X"), "ext-rest32.png",
         QT_TR_NOOP("Restore all party members to full health"), &MainWindow::onExtendedRest,
         false},
        {&Actions::quit, "quit", QT_TR_NOOP("&Quit"), key("Ctrl+Q"), nullptr,
         QT_TR_NOOP("Quit the application"), nullptr},
        {&Actions::about, "about", QT_TR_NOOP("About"), none, nullptr,
         QT_TR_NOOP("Show the application's About box"), &MainWindow::onAbout},
        {&Actions::hit, "hit", QT_TR_NOOP("Apply Damage"), key("Ctrl+T"), "hit32.png",
         QT_TR_NOOP("Apply damage indicated in the HP box to selected creatures"),
         &MainWindow::onHit},
        {&Actions::heal, "heal", QT_TR_NOOP("Apply Healing"), key("Ctrl+L"), "heal32.png",
         QT_TR_NOOP("Heal selected creatures by the amount in the HP box"), &MainWindow::onHeal},
        {&Actions::surge, "surge", nullptr, key("Ctrl+G"), "healing-surge32.png", nullptr,
         &MainWindow::onSurge},
        {&Actions::setTempHP, "setTempHP", nullptr, key("Ctrl+P"), "temporary-hp32.png", nullptr,
         &MainWindow::onSetTempHP},
    };
    for (const ActionRow &row : rows)
        m_actions.*row.action = createAction(row);
    for (QAction *action : {m_actions.ready, m_actions.remove})
        action->installEventFilter(this);
    m_actions.quit->setMenuRole(QAction::QuitRole);
    connect(m_actions.quit, &QAction::triggered, this, &QWidget::close);
    updateTerms();

    m_icons = {image("play32.png"), image("stop32.png"),          image("hide32.png"),
               image("show32.png"), image("healing-surge32.png"), image("healing-surge-x1-32.png")};
}

QAction *MainWindow::createAction(const ActionRow &row)
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1String(row.name));
    if (row.text)
        action->setText(tr(row.text));
    if (row.statusTip)
        action->setStatusTip(tr(row.statusTip));
    if (row.icon)
        action->setIcon(image(row.icon));
    action->setShortcuts(row.shortcuts);
    action->setEnabled(row.enabled);
    if (row.slot)
        connect(action, &QAction::triggered, this, row.slot);
    return action;
}

void MainWindow::updateTerms()
{
    const auto text = [](const QString &form, int index) {
        return form.arg(withLiteralAmpersands(shortened(term(index), LongestName)));
    };
    const QString surge = term(Term::HealingSurge);
    m_actions.shortRest->setText(text(tr("%1..."), Term::ShortRest));
    m_actions.shortRest->setStatusTip(
        tr("Spend %1s after an encounter and/or grant an %2").arg(surge, term(Term::ActionPoint)));
    m_actions.extendedRest->setText(text(tr("%1..."), Term::ExtendedRest));
    m_actions.surge->setText(text(tr("Spend %1"), Term::HealingSurge));
    m_actions.surge->setStatusTip(tr("Add a %1 to the HP box").arg(surge));
    const QString temporary = term(Term::TemporaryHP);
    m_actions.setTempHP->setText(text(tr("Set %1"), Term::TemporaryHP));
    m_actions.setTempHP->setStatusTip(
        tr("Set %1 to amount in the HP box, if larger than current value").arg(temporary));
    // The first time there are no docks yet.
    for (CreatureWidget *panel : {m_currentPanel, m_selectedPanel}) {
        if (panel)
            panel->refresh();
    }
}

void MainWindow::createToolBars()
{
    const Actions &a = m_actions;
    QToolBar *tracker = addToolBar(tr("Tracker"));
    tracker->setObjectName(QStringLiteral("trackerToolBar"));
    tracker->addActions({a.stepBack, a.startStop, a.stepForward});
    tracker->addSeparator();
    tracker->addActions({a.nextTurn, a.delay, a.ready, a.jumpIn});
    tracker->addSeparator();
    tracker->addActions({a.upInitiative, a.downInitiative});

    m_hpBox = spinBox(MaxHPInBox, 0, 0, false);
    m_hpBox->setObjectName(QStringLiteral("hpBox"));
    m_hpBox->setToolTip(tr("Hit points to take, heal or set"));
    m_hpBox->installEventFilter(this);
    QToolBar *actions = addToolBar(tr("Actions"));
    actions->setObjectName(QStringLiteral("actionToolBar"));
    actions->addActions({a.conditions, a.showHide, a.setAlias, a.remove});
    actions->addSeparator();
    actions->addWidget(m_hpBox);
    actions->addActions({a.hit, a.heal, a.surge, a.setTempHP});

    QToolBar *windows = addToolBar(tr("Windows"));
    windows->setObjectName(QStringLiteral("windowToolBar"));
    windows->addActions({a.pickParty, a.loadEncounter, a.addMonster});
    windows->addSeparator();
    windows->addActions({a.shortRest, a.extendedRest});
}

// A bar that doesn't fit beside the others would hide its last buttons behind an arrow.
void MainWindow::breakToolBars()
{
    int used = 0;
    const QList<QToolBar *> bars = findChildren<QToolBar *>(Qt::FindDirectChildrenOnly);
    for (QToolBar *bar : bars) {
        const int needed = bar->sizeHint().width();
        if (used > 0 && used + needed > width()) {
            insertToolBarBreak(bar);
            used = 0;
        }
        used += needed;
    }
}

void MainWindow::createStatusBar()
{
    m_roundLabel = label(QString());
    m_roundLabel->setObjectName(QStringLiteral("roundLabel"));
    m_logBehindLabel = label(tr("<font color=\"#c03030\"><b>History not saved</b></font>"));
    m_logBehindLabel->setObjectName(QStringLiteral("logBehindLabel"));
    m_logBehindLabel->setToolTip(tr("The history file can't be written at the moment. Its missing "
                                    "end goes out with the next event that can be written."));
    m_logBehindLabel->hide();
    m_encounterLabel = label(QString());
    m_encounterLabel->setObjectName(QStringLiteral("encounterLabel"));
    statusBar()->addWidget(m_roundLabel);
    m_lookOnlyBar = new LookOnlyBar;
    connect(m_lookOnlyBar, &LookOnlyBar::takeOverAsked, this, &MainWindow::onTakeOver);
    statusBar()->addPermanentWidget(m_lookOnlyBar);
    statusBar()->addPermanentWidget(m_logBehindLabel);
    statusBar()->addPermanentWidget(m_encounterLabel);
}

void MainWindow::createDocks()
{
    auto *list = new QTableView;
    list->setObjectName(QStringLiteral("historyList"));
    list->setFocusPolicy(Qt::NoFocus);
    list->setShowGrid(false);
    list->setWordWrap(false);
    QSizePolicy policy = list->sizePolicy();
    policy.setVerticalStretch(HistoryStretch);
    list->setSizePolicy(policy);
    list->horizontalHeader()->hide();
    list->horizontalHeader()->setStretchLastSection(true);
    list->verticalHeader()->hide();
    list->verticalHeader()->setDefaultSectionSize(list->fontMetrics().height() + 6);
    m_eventModel = new EventListModel(this);
    list->setModel(m_eventModel);
    m_eventModel->setView(list);
    m_eventModel->attachHistory();

    auto *effects = new QTableView;
    effects->setObjectName(QStringLiteral("effectsList"));
    effects->setFocusPolicy(Qt::NoFocus);
    m_effectModel = new EffectListModel(this);
    m_effectModel->attachTo(effects);

    m_currentPanel = new CreatureWidget(true);
    m_selectedPanel = new CreatureWidget(false);

    m_currentDock = createDock(QStringLiteral("currentWidget"), tr("Current Creature"),
                               m_currentPanel, Qt::LeftDockWidgetArea);
    m_selectedDock = createDock(QStringLiteral("selectedWidget"), tr("Selected Creature/s"),
                                m_selectedPanel, Qt::RightDockWidgetArea);
    for (QDockWidget *dock : {m_currentDock, m_selectedDock})
        dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_historyDock =
        createDock(QStringLiteral("historyWidget"), tr("History"), list, Qt::LeftDockWidgetArea);
    m_effectsDock = createDock(QStringLiteral("effectsWidget"), tr("Conditions and Effects"),
                               effects, Qt::RightDockWidgetArea);
    // The panels take what height there is.
    resizeDocks({m_currentDock, m_selectedDock}, {DockWidth, DockWidth}, Qt::Horizontal);
    resizeDocks({m_currentDock, m_historyDock}, {PanelShare, ListShare}, Qt::Vertical);
    resizeDocks({m_selectedDock, m_effectsDock}, {PanelShare, ListShare}, Qt::Vertical);
    connectPanels();
}

void MainWindow::connectList()
{
    using List = CreatureListModel;
    connect(m_listModel, &List::doSelectionChanged, this, &MainWindow::setSelection);
    connect(m_listModel, &List::doRemoveCreatures, this, &MainWindow::removeCreatures);
    connect(m_listModel, &List::doAddEffect, this, &MainWindow::onAddConditionOrEffect);
    connect(m_listModel, &List::doMoveInitiative, this, &MainWindow::moveInitiative);
    connect(m_listModel, &List::doSetAliasShown, this, &MainWindow::setAliasShown);
    connect(m_listModel, &List::doEditAlias, this, &MainWindow::editAlias);
    connect(m_listModel, &List::doFocusHPBox, this, &MainWindow::focusHPBox);
    connect(m_listModel, &List::doShowHelp, this, &MainWindow::showSelectionHelp);
}

// Behind the initiative list, which brings the selection in line with the encounter first.
void MainWindow::connectPanels()
{
    for (const CreatureWidget *panel : {m_currentPanel, m_selectedPanel}) {
        connect(panel, &CreatureWidget::doSetAliasShown, this, &MainWindow::setAliasShown);
        connect(panel, &CreatureWidget::doEditAlias, this, &MainWindow::editAlias);
    }
    m_selectedPanel->setSelection([this] { return selectedCreatures(); });
    connect(m_selectedPanel, &CreatureWidget::doSingleChosen, m_effectModel,
            &EffectListModel::setCreature);
    connect(m_effectModel, &EffectListModel::doRemoveEffect, this, &MainWindow::removeCondEffect);
    connect(theEncounter, &Encounter::doCurrentCreatureChanged, m_currentPanel,
            &CreatureWidget::currentCreatureChanged);
    connect(theEncounter, &Encounter::doCreatureCountChanged, m_selectedPanel,
            &CreatureWidget::creatureSelectionChanged);
    connect(theHistory, &History::doHistoryChanged, m_selectedPanel,
            &CreatureWidget::creatureSelectionChanged);
    // A jump within the history tells nothing else when it has ended.
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, m_currentPanel,
            &CreatureWidget::currentCreatureChanged);
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, m_selectedPanel,
            &CreatureWidget::creatureSelectionChanged);
}

QDockWidget *MainWindow::createDock(const QString &name, const QString &title, QWidget *content,
                                    Qt::DockWidgetArea area)
{
    auto *dock = new DockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(content);
    dock->installEventFilter(this);
    addDockWidget(area, dock);
    return dock;
}

void MainWindow::createMenus()
{
    const Actions &a = m_actions;
    QMenu *file = menuBar()->addMenu(tr("&File"));
    file->addActions({a.setRoot, a.pickParty, a.loadEncounter, a.addMonster});
    file->addSeparator();
    file->addAction(a.quit);

    menuBar()
        ->addMenu(tr("&History"))
        ->addActions({a.newHistory, a.truncateHistory, a.stepBack, a.stepForward});
    menuBar()
        ->addMenu(tr("&Encounter"))
        ->addActions({a.startStop, a.nextTurn, a.delay, a.ready, a.jumpIn, a.upInitiative,
                      a.downInitiative, a.conditions, a.showHide, a.setAlias, a.remove});
    menuBar()->addMenu(tr("Hea&lth"))->addActions({a.hit, a.heal, a.surge, a.setTempHP});
    menuBar()->addMenu(tr("&Rest"))->addActions({a.shortRest, a.extendedRest});

    QMenu *window = menuBar()->addMenu(tr("&Window"));
    window->addAction(a.dmsWindow);
    for (const QDockWidget *dock : {m_currentDock, m_selectedDock, m_historyDock, m_effectsDock})
        window->addAction(dock->toggleViewAction());

    menuBar()->addSeparator();
    menuBar()->addMenu(tr("Hel&p"))->addAction(a.about);
}

void MainWindow::connectSignals()
{
    connectList();
    connect(qApp, &QApplication::focusChanged, this, &MainWindow::onFocusChanged);
    connect(m_hpBox, &QSpinBox::valueChanged, this, &MainWindow::onHPValueChanged);
    connect(this, &MainWindow::doCreatureEffectsChanged, switchBoard(),
            &SwitchBoard::doCreatureEffectsChanged);
    connect(m_currentDock->toggleViewAction(), &QAction::triggered, this,
            &MainWindow::toggleCurrentWindow);
    connect(m_selectedDock->toggleViewAction(), &QAction::triggered, this,
            &MainWindow::toggleSelectedWindow);
    connect(m_historyDock->toggleViewAction(), &QAction::triggered, this,
            &MainWindow::toggleHistoryWindow);
    connect(m_effectsDock->toggleViewAction(), &QAction::triggered, this,
            &MainWindow::toggleEffectsWindow);
    // A jump within the history tells nothing else when it has ended.
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, this, &MainWindow::updateActions);
    connect(m_refreshTimer, &QTimer::timeout, switchBoard(), &SwitchBoard::doRefreshTimer);
}

void MainWindow::restoreLayout()
{
    // A scaled or small screen may have less room, and its frame must stay within reach.
    resize(DefaultSize.boundedTo(screen()->availableSize() * 0.9));
    // Between two panels the list then needs all the width there is.
    if (size() != DefaultSize)
        setWindowState(Qt::WindowMaximized);
    breakToolBars();
    const QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("mainWindow/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("mainWindow/state")).toByteArray());
    toggleCurrentWindow();
    toggleSelectedWindow();
    toggleHistoryWindow();
    toggleEffectsWindow();
}

QList<QDockWidget *> MainWindow::sideDocks() const
{
    QList<QDockWidget *> docks = findChildren<QDockWidget *>(Qt::FindDirectChildrenOnly);
    docks.removeIf([this](QDockWidget *dock) {
        const Qt::DockWidgetArea area = dockWidgetArea(dock);
        return dock->isFloating() || dock->isHidden()
            || (area != Qt::LeftDockWidgetArea && area != Qt::RightDockWidgetArea);
    });
    return docks;
}

void MainWindow::narrowDocks(const QWidget &form)
{
    const int scrollBar = m_dialogArea->verticalScrollBar()->sizeHint().width();
    const int needed = form.minimumSizeHint().width() + 2 * PageMargin + scrollBar;
    const int lack = needed - m_pages->width();
    const QList<QDockWidget *> docks = sideDocks();
    QSet<Qt::DockWidgetArea> sides;
    for (QDockWidget *dock : docks)
        sides << dockWidgetArea(dock);
    if (lack <= 0 || docks.isEmpty())
        return;
    const int share = (lack + int(sides.size()) - 1) / int(sides.size());
    QList<int> widths;
    for (QDockWidget *dock : docks) {
        m_dockWidths.insert(dock, dock->width());
        widths << qMax(1, dock->width() - share);
    }
    resizeDocks(docks, widths, Qt::Horizontal);
}

void MainWindow::widenDocks()
{
    QList<QDockWidget *> docks = sideDocks();
    docks.removeIf([this](QDockWidget *dock) { return !m_dockWidths.contains(dock); });
    QList<int> widths;
    for (QDockWidget *dock : std::as_const(docks))
        widths << m_dockWidths.value(dock);
    resizeDocks(docks, widths, Qt::Horizontal);
    m_dockWidths.clear();
}

void MainWindow::raiseFloatingDocks()
{
    const QList<QDockWidget *> docks = findChildren<QDockWidget *>(Qt::FindDirectChildrenOnly);
    for (QDockWidget *dock : docks)
        if (dock->isFloating() && dock->isVisible())
            dock->raise();
}
