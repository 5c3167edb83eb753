#include "mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>

#include <algorithm>

#include "creature.h"
#include "creaturelistmodel.h"
#include "creaturetableview.h"
#include "creaturewidget.h"
#include "datafolder.h"
#include "docklayout.h"
#include "effectlistmodel.h"
#include "encounter.h"
#include "flatdialog.h"
#include "formpage.h"
#include "hpbox.h"
#include "lookonlybar.h"
#include "mainwindowactions.h"
#include "messagedialog.h"
#include "switchboard.h"
#include "windows.h"
#include "windowstate.h"

namespace {

constexpr int RefreshInterval = 600; // milliseconds
constexpr QSize DefaultSize(1400, 860);
// The number of players an encounter's level is worked out for.

bool isReturn(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), m_refreshTimer(new QTimer(this))
{
    theMainWindow = this;
    setDialogHost(this);
    setWindows(this);
    m_core = std::make_unique<CoreObjects>([this] {
        m_players.reset();
        m_manager.reset();
        m_characters.reset();
    });
    if (makePlayersDisplay) {
        m_players = makePlayersDisplay();
        m_players->shownChanged = [this] { updatePlayersAction(); };
    }
    if (makeManagerWindow)
        m_manager = makeManagerWindow();
    if (makeCharacterWindow)
        m_characters = makeCharacterWindow();
    activeAppWindow = this;

    createCentre();
    m_actions = new MainWindowActions(this);
    m_hpBox = new HPBox(this);
    m_actions->fillToolBars(m_hpBox);
    createStatusBar();
    m_docks = new DockLayout(this);
    m_actions->fillMenus(m_docks->toggles());

    setWindowTitle(tr("Morvane DM's Display"));
    updateActions();
    updatePlayersAction();
    // Before restoreLayout(), which may put the tool bar into a window of its own.
    setTabOrder(m_hpBox, m_table);
    setTabOrder(m_table, m_hpBox);
    restoreLayout();
    connectSignals();
    m_refreshTimer->start(RefreshInterval);
}

MainWindow::~MainWindow()
{
    QSettings().setValue(QStringLiteral("mainWindow/geometry"), saveGeometry());
    keepWindowState(QStringLiteral("mainWindow/state"),
                    m_stateAtClose.isEmpty() ? saveState() : m_stateAtClose);
    shutDown();
    // Before its view is deleted, whose columns it saves.
    delete m_listModel;
    theMainWindow = nullptr;
    setDialogHost(nullptr);
    activeAppWindow = nullptr;
}

void MainWindow::shutDown()
{
    if (!m_core)
        return;
    activeAppWindow = this;
    m_refreshTimer->stop();
    theEncounter->reset();
    // The focus still moves while the widgets are deleted.
    disconnect(qApp, nullptr, this, nullptr);
    if (m_activeDialog) {
        m_activeDialog->reject();
        showFlatWidget(nullptr, false); // the dialog stands on its caller's stack
    }
    disconnect(switchBoard(), nullptr, this, nullptr);
    setWindows(nullptr);
    m_core.reset();
}

// --- construction ---

void MainWindow::createCentre()
{
    m_table = new CreatureTableView(this);
    m_table->setObjectName(QStringLiteral("initiativeList"));
    m_listModel = new CreatureListModel;
    m_listModel->attachTo(m_table);

    m_formPage = new FormPage;
    m_pages = new QStackedWidget;
    m_pages->addWidget(m_table);
    m_pages->addWidget(m_formPage);
    setCentralWidget(m_pages);
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

void MainWindow::connectSignals()
{
    connect(qApp, &QApplication::focusChanged, this, &MainWindow::onFocusChanged);
    connect(m_hpBox, &QSpinBox::valueChanged, this, &MainWindow::onHPValueChanged);
    connect(this, &MainWindow::doCreatureEffectsChanged, switchBoard(),
            &SwitchBoard::doCreatureEffectsChanged);
    // Nothing else tells when a jump within the history has ended.
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, this, &MainWindow::updateActions);
    connect(m_refreshTimer, &QTimer::timeout, switchBoard(), &SwitchBoard::doRefreshTimer);
    connectList();
    connectDocks();
}

void MainWindow::connectList()
{
    using List = CreatureListModel;
    connect(m_listModel, &List::doSelectionChanged, this, &MainWindow::setSelection);
    connect(m_listModel, &List::doRemoveCreatures, this, &MainWindow::removeCreatures);
    connect(m_listModel, &List::doAddEffect, this, &MainWindow::onAddConditionOrEffect);
    connect(m_listModel, &List::doMark, this, &MainWindow::markByCurrent);
    connect(m_listModel, &List::doMoveInitiative, this, &MainWindow::moveInitiative);
    connect(m_listModel, &List::doSetAliasShown, this, &MainWindow::setAliasShown);
    connect(m_listModel, &List::doEditAlias, this, &MainWindow::editAlias);
    connect(m_listModel, &List::doFocusHPBox, this, &MainWindow::focusHPBox);
    connect(m_listModel, &List::doShowHelp, this, &MainWindow::showSelectionHelp);
}

void MainWindow::connectDocks()
{
    using Panel = CreatureWidget;
    for (const Panel *panel : {m_docks->currentPanel(), m_docks->selectedPanel()}) {
        connect(panel, &Panel::doSetAliasShown, this, &MainWindow::setAliasShown);
        connect(panel, &Panel::doEditAlias, this, &MainWindow::editAlias);
    }
    m_docks->selectedPanel()->setSelection([this] { return selectedCreatures(); });
    connect(m_docks->effects(), &EffectListModel::doRemoveEffect, this,
            &MainWindow::removeCondEffect);
    const auto onToggle = [this](DockLayout::Dock dock, void (MainWindow::*slot)()) {
        connect(m_docks->toggle(dock), &QAction::triggered, this, slot);
    };
    onToggle(DockLayout::CurrentDock, &MainWindow::toggleCurrentWindow);
    onToggle(DockLayout::SelectedDock, &MainWindow::toggleSelectedWindow);
    onToggle(DockLayout::HistoryDock, &MainWindow::toggleHistoryWindow);
    onToggle(DockLayout::EffectsDock, &MainWindow::toggleEffectsWindow);
    onToggle(DockLayout::PlayersViewDock, &MainWindow::togglePlayersView);
}

void MainWindow::restoreLayout()
{
    // On a small or scaled screen the window must be smaller, so that its frame can be reached.
    resize(DefaultSize.boundedTo(screen()->availableSize() * 0.9));
    // The list between the two panels then needs all the width.
    if (size() != DefaultSize)
        setWindowState(Qt::WindowMaximized);
    m_actions->breakToolBars();
    restoreGeometry(QSettings().value(QStringLiteral("mainWindow/geometry")).toByteArray());
    restoreState(keptWindowState(QStringLiteral("mainWindow/state")));
    toggleCurrentWindow();
    toggleSelectedWindow();
    toggleHistoryWindow();
    toggleEffectsWindow();
    togglePlayersView();
}

// --- selection ---

void MainWindow::setSelection(const QSet<int> &rows)
{
    m_selection = rows;
    if (!theEncounter)
        return;
    theEncounter->notifyCountChanged();
    m_hpBox->selectAll();
    updateHealthActions();
}

bool MainWindow::isRowSelected(int row) const
{
    return row >= 0 && row < theEncounter->count() && m_selection.contains(row);
}

QList<int> MainWindow::selectedRows() const
{
    QList<int> rows(m_selection.begin(), m_selection.end());
    std::sort(rows.begin(), rows.end());
    return rows;
}

QList<Creature *> MainWindow::selectedCreatures() const
{
    QList<Creature *> creatures;
    const QList<int> rows = selectedRows();
    for (const int row : rows) {
        if (Creature *creature = theEncounter->at(row))
            creatures << creature;
    }
    return creatures;
}

int MainWindow::selectedCount() const
{
    const QList<int> rows = selectedRows();
    const auto isEmpty = [](int row) { return !theEncounter->at(row); };
    return int(std::find_if(rows.begin(), rows.end(), isEmpty) - rows.begin());
}

Creature *MainWindow::selectedCreature(int i) const
{
    return selectedCreatures().value(i);
}

void MainWindow::clearSelection()
{
    m_listModel->clearSelection();
}

// --- the panels ---

void MainWindow::showInCurrentPanel(Creature *creature)
{
    m_docks->currentPanel()->setCreature(creature);
}

// --- dialogs in place of the list ---

void MainWindow::setFlatDialog(const QString &title, FlatDialog *dialog)
{
    m_formPage->setTitle(title);
    m_activeDialog = dialog;
    updateActions();
    if (Creature *first = selectedCreature(0))
        Q_EMIT doCreatureEffectsChanged(first);
}

void MainWindow::showFlatWidget(QWidget *widget, bool fixed)
{
    if (widget) {
        m_docks->narrow(m_formPage->neededWidth(*widget) - m_pages->width());
        m_formPage->setForm(widget, fixed);
        m_pages->setCurrentWidget(m_formPage);
        m_hpBox->setFocusPolicy(Qt::NoFocus);
        widget->setFocus();
    } else {
        m_formPage->setForm(nullptr, false);
        setFocus();
        m_hpBox->setFocusPolicy(Qt::WheelFocus);
        m_pages->setCurrentWidget(m_table);
        m_docks->widen();
    }
    m_hpBox->setEnabled(!widget);
}

void MainWindow::onFocusChanged(QWidget *, QWidget *now)
{
    if (now == this && !m_activeDialog)
        m_table->setFocus();
    QWidget *window = now ? now->window() : nullptr;
    if (!window)
        return;
    WindowGroup group = m_windowGroup;
    if (window == this || (m_players && window == m_players->displayWindow()))
        group = TableGroup;
    else if ((m_manager && window == m_manager->libraryWindow())
             || (m_characters && window == m_characters->libraryWindow()))
        group = LibraryGroup;
    else
        return;
    activeAppWindow = window;
    if (group != std::exchange(m_windowGroup, group))
        m_docks->follow(group == TableGroup);
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    const bool escape = event->key() == Qt::Key_Escape;
    if (m_activeDialog && isReturn(event))
        m_activeDialog->accept();
    else if (m_activeDialog && escape)
        m_activeDialog->reject();
    else if (isReturn(event) && m_hpBox->hasFocus() && !m_surgeMode)
        onHit(); // not the value of a surge, which can't be dealt as damage
    else if (!m_listModel->handleKey(event->key()))
        QMainWindow::keyPressEvent(event);
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    // A restored dock was shown before the window, and would lie below it.
    if (!event->spontaneous())
        QTimer::singleShot(0, m_docks, &DockLayout::raiseFloating);
}

void MainWindow::focusHPBox()
{
    m_hpBox->focusOnText();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!confirmUnsavedWork(tr("Do you want to save all changes and then quit the application?"),
                            tr("Save Changes and Quit"))
        || !confirmLogWritten()) {
        event->ignore();
        return;
    }
    activeAppWindow = this;
    event->accept();
    m_docks->widen();
    m_stateAtClose = saveState();
    if (m_activeDialog)
        m_activeDialog->reject();
    QCoreApplication::quit();
}

void MainWindow::updateTerms()
{
    m_actions->updateTerms();
    for (CreatureWidget *panel : {m_docks->currentPanel(), m_docks->selectedPanel()})
        panel->refresh();
}

// --- what the core asks for ---

void MainWindow::showMessage(const QString &title, const QString &text)
{
    ::showMessage(title, text);
}

bool MainWindow::askMessage(const QString &title, const QString &text, const QString &button)
{
    return ::askMessage(title, text, button);
}

WindowInterface::FolderAnswer MainWindow::askFolder(const QString &title, const QString &text,
                                                    const QString &button)
{
    return FolderAnswer(askFolderMessage(title, text, button));
}

void MainWindow::setRoundText(const QString &html)
{
    m_roundLabel->setText(html);
}

void MainWindow::setEncounterText(const QString &html)
{
    m_encounterLabel->setText(html);
}

void MainWindow::setLogBehind(bool behind)
{
    m_logBehindLabel->setVisible(behind);
}

void MainWindow::setLookOnly(const QString &reason)
{
    m_lookOnlyBar->setReason(reason);
    updateActions();
}

void MainWindow::tellReadOnly()
{
    constexpr int Shown = 5000; // milliseconds
    statusBar()->showMessage(tr("Looking only: nothing can be changed here"), Shown);
}

void MainWindow::refreshCharacterList()
{
    if (m_characters)
        m_characters->refresh();
}

void MainWindow::refreshTerms()
{
    updateTerms();
    if (m_players)
        m_players->refresh();
    for (const auto &library : {m_manager.get(), m_characters.get()})
        if (library)
            library->refresh();
}

void MainWindow::hideForReplay()
{
    m_replaying = true;
    m_wasPlayersVisible = isPlayersVisible();
    if (m_players)
        m_players->displayWindow()->hide();
    m_table->hide();
    hide();
    m_refreshTimer->stop();
}

void MainWindow::showAfterReplay()
{
    m_replaying = false;
    m_refreshTimer->start(RefreshInterval);
    updateActions();
    m_table->show();
    show();
    if (m_wasPlayersVisible)
        m_players->displayWindow()->show();
}

#include "moc_mainwindow.cpp"
