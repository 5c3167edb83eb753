#include "mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>

#include <algorithm>

#include "appendevent.h"
#include "characters.h"
#include "creaturelistmodel.h"
#include "creaturetableview.h"
#include "creaturewidget.h"
#include "datafolder.h"
#include "effectlistmodel.h"
#include "encountercommands.h"
#include "eventlistmodel.h"
#include "flatdialog.h"
#include "initiativedialog.h"
#include "lookonlybar.h"
#include "messagedialog.h"
#include "monsters.h"
#include "paths.h"
#include "pickcharactersdialog.h"
#include "pickencounterdialog.h"
#include "pickmonsterdialog.h"
#include "preparedencounter.h"
#include "rosterevents.h"
#include "setaliasdialog.h"
#include "shortrestdialog.h"
#include "smallwidgets.h"
#include "switchboard.h"
#include "text.h"
#include "version.h"
#include "vitalityevents.h"
#include "windows.h"

namespace {

constexpr int RefreshInterval = 600; // milliseconds
// What the level of an encounter is worked out for.
constexpr int DefaultPartySize = 5;

bool isReturn(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

// The roll that the initiative dialog gave the creature itself or its group.
CreatureItem rolledItem(Creature *creature, const QList<CreatureInit> &rolls)
{
    const QString name = creature->displayName();
    const auto roll = std::find_if(rolls.begin(), rolls.end(), [&](const CreatureInit &init) {
        return init.name == name || init.name == creature->group();
    });
    return roll == rolls.end() ? CreatureItem {creature}
                               : CreatureItem {creature, roll->roll, roll->random};
}

// Each once, and without those that fight already.
CreatureList newcomersAmong(const CreatureList &creatures)
{
    QList<Creature *> newcomers;
    for (Creature *creature : creatures) {
        if (!theEncounter->contains(creature) && !newcomers.contains(creature))
            newcomers << creature;
    }
    return CreatureList(newcomers);
}

// Aliases and hidden marks of an encounter file, as events, so that a replay needs no file.
void applyMarks(const PreparedEncounter &encounter, const CreatureList &added, bool allHidden)
{
    for (const EncounterMonster &monster : encounter.monsters()) {
        QString group = monster.group;
        Creature *creature = theMonsters->ensureTemplate(group, monster.id, false);
        if (!creature || !added.contains(creature))
            continue;
        if (!monster.alias.isEmpty() && !appendEvent<SetAliasEvent>(creature, true, monster.alias))
            return;
        if (monster.hidden && !allHidden && !appendEvent<ShowHideEvent>(creature, true))
            return;
    }
}

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), m_refreshTimer(new QTimer(this))
{
    theMainWindow = this;
    setDialogHost(this);
    setWindows(this);
    m_core = std::make_unique<CoreObjects>();
    activeAppWindow = this;

    createCentre();
    createActions();
    createToolBars();
    createStatusBar();
    createDocks();
    createMenus();

    setWindowTitle(tr("Morvane DM's Display"));
    updateActions();
    // Ahead of a layout that may bring the tool bar back in a window of its own.
    setTabOrder(m_hpBox, m_table);
    setTabOrder(m_table, m_hpBox);
    restoreLayout();
    connectSignals();
    m_refreshTimer->start(RefreshInterval);
}

MainWindow::~MainWindow()
{
    QSettings settings;
    settings.setValue(QStringLiteral("mainWindow/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("mainWindow/state"),
                      m_stateAtClose.isEmpty() ? saveState() : m_stateAtClose);
    shutDown();
    // Ahead of the view, whose columns it saves.
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
    // The focus still moves while the widgets go.
    disconnect(qApp, nullptr, this, nullptr);
    if (m_activeDialog) {
        m_activeDialog->reject();
        showFlatWidget(nullptr, false); // the dialog stands on its caller's stack
    }
    disconnect(switchBoard(), nullptr, this, nullptr);
    setWindows(nullptr);
    m_core.reset();
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
    m_currentPanel->setCreature(creature);
}

// --- dialogs in place of the list ---

void MainWindow::setFlatDialog(const QString &title, FlatDialog *dialog)
{
    m_dialogTitle->setText(asHtml(title, LongestName));
    m_activeDialog = dialog;
    updateActions();
    if (Creature *first = selectedCreature(0))
        Q_EMIT doCreatureEffectsChanged(first);
}

void MainWindow::showFlatWidget(QWidget *widget, bool fixed)
{
    if (widget != m_dialogArea->widget())
        m_dialogArea->takeWidget(); // setWidget() would delete it
    if (widget) {
        narrowDocks(*widget);
        m_dialogArea->setFixed(fixed);
        m_dialogArea->setWidget(widget);
        m_pages->setCurrentIndex(1);
        m_hpBox->setFocusPolicy(Qt::NoFocus);
        widget->setFocus();
    } else {
        setFocus();
        m_hpBox->setFocusPolicy(Qt::WheelFocus);
        m_pages->setCurrentIndex(0);
        widenDocks();
    }
    m_hpBox->setEnabled(!widget);
}

void MainWindow::onFocusChanged(QWidget *, QWidget *now)
{
    if (now == this && !m_activeDialog)
        m_table->setFocus();
    if (now && now->window() == this)
        activeAppWindow = this;
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
    // One that was restored has come up before the window, and would lie below it.
    if (!event->spontaneous())
        QTimer::singleShot(0, this, &MainWindow::raiseFloatingDocks);
}

// The keys of the actions reach them from the HP box too, though a line edit would take Undo, Cut
// and Select All for itself.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    // A key that two enabled actions share does neither, of which the toolkit would warn.
    if (event->type() == QEvent::Shortcut && qobject_cast<QAction *>(watched))
        return static_cast<QShortcutEvent *>(event)->isAmbiguous();
    // The button in a dock's title closes it without its toggle.
    if (event->type() == QEvent::Close) {
        m_currentDockOff |= watched == m_currentDock;
        m_selectedDockOff |= watched == m_selectedDock;
        m_historyDockOff |= watched == m_historyDock;
        m_effectsDockOff |= watched == m_effectsDock;
    }
    if (watched != m_hpBox)
        return QMainWindow::eventFilter(watched, event);
    if (event->type() == QEvent::ShortcutOverride) {
        const QKeySequence keys(static_cast<QKeyEvent *>(event)->keyCombination());
        const QList<QAction *> actions = findChildren<QAction *>(Qt::FindDirectChildrenOnly);
        return std::any_of(actions.begin(), actions.end(), [&](const QAction *action) {
            return action->isEnabled() && action->shortcuts().contains(keys);
        });
    }
    // After the press that gave the focus, which would set the cursor.
    if (event->type() == QEvent::FocusIn
        && static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason)
        QTimer::singleShot(0, m_hpBox, &QSpinBox::selectAll);
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::focusHPBox()
{
    m_hpBox->setFocus();
    m_hpBox->selectAll();
}

void MainWindow::activateMainWindow()
{
    show();
    raise();
    activateWindow();
}

void MainWindow::toggleCurrentWindow()
{
    m_currentDockOff = m_currentDock->isHidden();
}

void MainWindow::toggleSelectedWindow()
{
    m_selectedDockOff = m_selectedDock->isHidden();
}

void MainWindow::toggleHistoryWindow()
{
    m_historyDockOff = m_historyDock->isHidden();
}

void MainWindow::toggleEffectsWindow()
{
    m_effectsDockOff = m_effectsDock->isHidden();
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
    widenDocks();
    m_stateAtClose = saveState();
    if (m_activeDialog)
        m_activeDialog->reject();
    QCoreApplication::quit();
}

// --- hit points ---

void MainWindow::onHit()
{
    if (!theHistory->getStream())
        return;
    const QList<Creature *> targets = selectedCreatures();
    if (m_hpBox->value() > 0 && !targets.isEmpty())
        appendEvent<DamageEvent>(theEncounter->current(), targets, m_hpBox->value());
    endHealthFlow();
}

void MainWindow::onHeal()
{
    if (!theHistory->getStream())
        return;
    const QList<Creature *> targets = selectedCreatures();
    if (m_hpBox->value() > 0 && !targets.isEmpty()) {
        const int surges = m_surgeMode ? 1 : 0;
        appendEvent<HealEvent>(theEncounter->current(), targets, surges, m_hpBox->value());
        m_hpBox->setValue(0);
    }
    endHealthFlow();
}

void MainWindow::endHealthFlow()
{
    m_surgeMode = false;
    m_hpBox->selectAll();
    m_table->setFocus();
    updateHealthActions();
}

void MainWindow::onSetTempHP()
{
    if (!theHistory->getStream())
        return;
    const QList<Creature *> targets = selectedCreatures();
    if (m_hpBox->value() > 0 && !targets.isEmpty()) {
        appendEvent<SetTempHPEvent>(targets, m_hpBox->value());
        m_hpBox->setValue(0);
    }
    m_surgeMode = false;
    focusHPBox();
    updateHealthActions();
}

void MainWindow::onSurge()
{
    const Creature *first = selectedCreature(0);
    if (!first) {
        m_hpBox->setValue(0);
        updateHealthActions();
        return;
    }
    m_surgeMode = !m_surgeMode;
    m_hpBox->setValue(m_surgeMode ? first->hsValue() : 0);
    focusHPBox();
    updateHealthActions();
}

void MainWindow::onHPValueChanged()
{
    if (m_surgeMode && (!selectedCreature(0) || m_hpBox->value() == 0))
        m_surgeMode = false;
    updateHealthActions();
}

// --- roster ---

bool MainWindow::rollNewcomers(const CreatureList &newcomers, QList<CreatureItem> &oldItems)
{
    oldItems = itemsOf(newcomers);
    if (!theEncounter->isRunning())
        return true;
    InitiativeDialog dialog(newcomers);
    if (!dialog.exec())
        return false;
    const QList<CreatureInit> characters = dialog.characterItems();
    const QList<CreatureInit> monsters = dialog.monsterItems();
    for (Creature *creature : newcomers)
        creature->setItem(rolledItem(creature, creature->isMonster() ? monsters : characters));
    return true;
}

void MainWindow::onPickParty()
{
    CreatureList party;
    {
        PickCharactersDialog dialog;
        if (!dialog.exec())
            return;
        party = dialog.selectedCharacters();
    }
    QList<CreatureItem> oldItems;
    if (party.isEmpty() || !theHistory->getStream() || !rollNewcomers(party, oldItems))
        return;
    if (theEncounter->isRunning())
        appendEvent<AddCharactersEvent>(party, false, oldItems);
    else
        appendEvent<SetPartyEvent>(party, false, oldItems);
}

void MainWindow::onLoadEncounter()
{
    PreparedEncounter encounter;
    int answer = 0;
    {
        PickEncounterDialog dialog;
        answer = dialog.exec();
        if (!answer || !dialog.selectedEncounter())
            return;
        encounter = *dialog.selectedEncounter();
    }
    if (!theHistory->getStream())
        return;
    const bool hidden =
        answer == PickEncounterDialog::AddHidden || answer == PickEncounterDialog::SetHidden;
    const bool adds =
        answer == PickEncounterDialog::Add || answer == PickEncounterDialog::AddHidden;
    if (adds)
        addEncounter(encounter, hidden);
    else
        replaceEncounter(encounter, hidden);
}

void MainWindow::addEncounter(const PreparedEncounter &encounter, bool hidden)
{
    const CreatureList newcomers = newcomersAmong(encounter.creatures());
    QList<CreatureItem> oldItems;
    if (newcomers.isEmpty() || !rollNewcomers(newcomers, oldItems))
        return;
    if (!appendEvent<AddMonstersEvent>(encounter.name(), newcomers, hidden, oldItems))
        return;
    makeFresh(newcomers);
    applyMarks(encounter, newcomers, hidden);
}

void MainWindow::replaceEncounter(const PreparedEncounter &encounter, bool hidden)
{
    const CreatureList monsters = encounter.creatures();
    if (!appendEvent<SetEncounterEvent>(encounter.entry(), monsters, hidden))
        return;
    makeFresh(monsters);
    applyMarks(encounter, monsters, hidden);
}

void MainWindow::onAddMonster()
{
    QString alias;
    Creature *monster = nullptr;
    bool hidden = false;
    {
        PickMonsterDialog dialog;
        const int answer = dialog.exec();
        if (!answer)
            return;
        hidden = answer == PickMonsterDialog::AddHidden;
        monster = dialog.selectedMonster(alias);
    }
    if (!monster || theEncounter->contains(monster) || !theHistory->getStream())
        return;
    const CreatureList newcomer(QList<Creature *> {monster});
    QList<CreatureItem> oldItems;
    if (!rollNewcomers(newcomer, oldItems))
        return;
    if (!appendEvent<AddMonsterEvent>(newcomer, hidden, oldItems))
        return;
    makeFresh(newcomer);
    if (!alias.isEmpty())
        appendEvent<SetAliasEvent>(monster, true, alias);
}

void MainWindow::onShowAndHide()
{
    const QList<Creature *> creatures = selectedCreatures();
    for (Creature *creature : creatures) {
        if (!appendEvent<ShowHideEvent>(creature, !creature->isHidden()))
            return;
    }
}

void MainWindow::onSetAlias()
{
    editAlias(selectedCreatures());
}

void MainWindow::editAlias(const QList<Creature *> &creatures)
{
    if (creatures.isEmpty() || !theHistory->mayWrite())
        return;
    SetAliasDialog dialog {CreatureList(creatures)};
    if (dialog.exec() != QDialog::Accepted)
        return;
    QString text;
    const SetAliasDialog::Mode mode = dialog.result(text);
    const bool needsAlias = mode == SetAliasDialog::Remove || text.isEmpty();
    for (Creature *creature : creatures) {
        // Without an alias there is none to show, to hide or to remove.
        if (needsAlias && creature->alias().isEmpty())
            continue;
        const bool show = mode == SetAliasDialog::Show;
        const QString alias = mode == SetAliasDialog::Remove ? QString()
            : text.isEmpty()                                 ? creature->alias()
                                                             : text;
        if (!appendEvent<SetAliasEvent>(creature, show, alias))
            return;
    }
}

void MainWindow::setAliasShown(const QList<Creature *> &creatures, bool show)
{
    for (Creature *creature : creatures) {
        const bool isShown = creature->aliasMode() != 0;
        const bool applies = show ? !isShown && !creature->alias().isEmpty() : isShown;
        if (applies && !appendEvent<SetAliasEvent>(creature, show, creature->alias()))
            return;
    }
}

void MainWindow::onUpInitiative()
{
    moveInitiative(-1);
}

void MainWindow::onDownInitiative()
{
    moveInitiative(1);
}

void MainWindow::moveInitiative(int delta)
{
    const QList<Creature *> creatures = selectedCreatures();
    const int count = theEncounter->count();
    if (creatures.isEmpty() || !theHistory->getStream())
        return;
    QList<int> newRows;
    for (const Creature *creature : creatures)
        newRows << (theEncounter->indexOf(creature) + delta + count) % count;
    if (appendEvent<AdjustInitiativeEvent>(creatures, delta))
        m_listModel->setSelectedRows(newRows);
}

void MainWindow::onShortRest()
{
    QList<RestedCreature> rested;
    {
        ShortRestDialog dialog;
        if (!dialog.exec())
            return;
        rested = dialog.result();
    }
    appendEvent<ShortRestEvent>(rested);
}

void MainWindow::onExtendedRest()
{
    takeExtendedRest();
}

// --- history ---

void MainWindow::onStepBack()
{
    theHistory->stepBack();
    updateActions();
}

void MainWindow::onStepForward()
{
    theHistory->stepForward();
    updateActions();
}

void MainWindow::onNewHistory()
{
    const QString backup = tr("<p>A backup of the history.log will be made in the 'Morvane "
                              "Data/History' folder.");
    const bool confirmed = theEncounter->isRunning()
        ? ::askMessage(tr("Encounter Running"),
                       tr("An encounter is still running. When you clear the history log, the "
                          "encounter state will be lost.")
                           + backup,
                       tr("Clear History"))
        : ::askMessage(tr("Clear History"),
                       tr("Clearing the history log will reset all encounters and "
                          "characters.")
                           + backup,
                       tr("Continue"));
    if (!confirmed || !theHistory->backupLog())
        return;
    clearSelection();
    theEncounter->reset();
    theMonsters->resetForEncounter();
    theCharacters->resetForEncounter();
    theHistory->clear();
    updateActions();
}

void MainWindow::onTruncateHistory()
{
    if (::askMessage(tr("Truncate History File"),
                     tr("This action will remove all events after this point from the History. "
                        "Normally you will not need to do this, continuing with a new action "
                        "beyond this point will automatically truncate.<p>However, if you are "
                        "experiencing a problem with the History (for example, the end is corrupt) "
                        "then truncating and restarting should solve the problem."),
                     tr("Truncate")))
        theHistory->truncate();
}

// --- data folder, messages ---

void MainWindow::onSetRoot()
{
    QString path;
    QString display;
    setDataFolder(path, display);
}

void MainWindow::onTakeOver()
{
    QString path = dataRoot;
    QString display = displayRoot;
    if (!path.isEmpty())
        setDataFolder(path, display);
}

void MainWindow::setLookOnly(const QString &reason)
{
    m_lookOnlyBar->setReason(reason);
    updateActions();
}

void MainWindow::onAbout()
{
    MessageDialog().showAbout(
        tr("About Morvane"),
        tr("<b>Morvane</b> keeps the books of a fight at your gaming table: initiative, hit "
           "points, conditions and turns.<p>%1<p>By using this program you agree to the terms "
           "of the MIT license that comes with it.<p>The portrait images of the demo data were "
           "drawn for Morvane.")
            .arg(fullVersionText()));
}

void MainWindow::showSelectionHelp()
{
    MessageDialog().showInfo(
        tr("Help Selecting Creatures"),
        tr("<b>Left-click</b> to select a single creature.<p>"
           "<b>Right-click</b> to add to a selection or toggle selection of a creature.<p>"
           "Clicking in the <b>Name column</b> will focus on the initiative list, you can then "
           "use up and down arrow to change the selection.<p>"
           "Clicking in the <b>Health column</b> will focus on the HP box in the tool bar, you "
           "can then enter a HP value or use up and down arrows to adjust.<p>"
           "<b>Left-clicking</b> in the <b>Conditions and Effects column</b> triggers the "
           "Conditions and Effects dialog.<p>"
           "<b>Right-clicking</b> in the <b>Conditions and Effects column</b> displays the "
           "context menu.<p>"
           "<b>Shift Left-click</b> expands a selection.<p>"
           "<b>Control Left-click</b> acts like a right-click."));
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

void MainWindow::tellReadOnly()
{
    constexpr int Shown = 5000; // milliseconds
    statusBar()->showMessage(tr("Looking only: nothing can be changed here"), Shown);
}

// No window of the main window lists the library's characters; the pick dialog reads them anew.
void MainWindow::refreshCharacterList() { }

void MainWindow::refreshTerms()
{
    updateTerms();
}

void MainWindow::hideForReplay()
{
    m_replaying = true;
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
}

int MainWindow::partySize() const
{
    return DefaultPartySize;
}

#include "moc_mainwindow.cpp"
