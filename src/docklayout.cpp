#include "docklayout.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QMainWindow>
#include <QTableView>

#include "creature.h"
#include "creaturewidget.h"
#include "dockwidget.h"
#include "effectlistmodel.h"
#include "encounter.h"
#include "eventlistmodel.h"
#include "history.h"
#include "playerspreview.h"
#include "switchboard.h"

namespace {

constexpr int HistoryStretch = 100;
// Between two docks the initiative list shows all its columns in a window of the default size, even
// on a small screen.
constexpr int DockWidth = 290;
// Heights of a panel and of the list below it.
constexpr int PanelShare = 620;
constexpr int ListShare = 120;

} // namespace

DockLayout::DockLayout(QMainWindow *window)
    : QObject(window), m_window(window), m_currentPanel(new CreatureWidget(true)),
      m_selectedPanel(new CreatureWidget(false)), m_playersPreview(new PlayersPreview)
{
    QWidget *history = createHistoryList();
    QWidget *effects = createEffectsList();
    QDockWidget *current = add(CurrentDock, QStringLiteral("currentWidget"), tr("Current Creature"),
                               m_currentPanel, Qt::LeftDockWidgetArea);
    QDockWidget *selected =
        add(SelectedDock, QStringLiteral("selectedWidget"), tr("Selected Creature/s"),
            m_selectedPanel, Qt::RightDockWidgetArea);
    for (QDockWidget *dock : {current, selected})
        dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    QDockWidget *below = add(HistoryDock, QStringLiteral("historyWidget"), tr("History"), history,
                             Qt::LeftDockWidgetArea);
    QDockWidget *belowSelected =
        add(EffectsDock, QStringLiteral("effectsWidget"), tr("Conditions and Effects"), effects,
            Qt::RightDockWidgetArea);
    add(PlayersViewDock, QStringLiteral("playersViewWidget"), tr("Player's View"), m_playersPreview,
        Qt::RightDockWidgetArea)
        ->hide();
    // The panels take what height there is.
    window->resizeDocks({current, selected}, {DockWidth, DockWidth}, Qt::Horizontal);
    window->resizeDocks({current, below}, {PanelShare, ListShare}, Qt::Vertical);
    window->resizeDocks({selected, belowSelected}, {PanelShare, ListShare}, Qt::Vertical);
    connectPanels();
}

QDockWidget *DockLayout::add(Dock dock, const QString &name, const QString &title, QWidget *content,
                             Qt::DockWidgetArea area)
{
    auto *widget = new DockWidget(title, m_window);
    widget->setObjectName(name);
    widget->setWidget(content);
    widget->installEventFilter(this);
    m_window->addDockWidget(area, widget);
    m_docks[dock] = widget;
    return widget;
}

QWidget *DockLayout::createHistoryList()
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
    auto *model = new EventListModel(m_window);
    list->setModel(model);
    model->setView(list);
    model->attachHistory();
    return list;
}

QWidget *DockLayout::createEffectsList()
{
    auto *list = new QTableView;
    list->setObjectName(QStringLiteral("effectsList"));
    list->setFocusPolicy(Qt::NoFocus);
    m_effects = new EffectListModel(m_window);
    m_effects->attachTo(list);
    connect(m_selectedPanel, &CreatureWidget::doSingleChosen, m_effects,
            &EffectListModel::setCreature);
    return list;
}

void DockLayout::connectPanels()
{
    connect(theEncounter, &Encounter::doCurrentCreatureChanged, m_currentPanel,
            &CreatureWidget::currentCreatureChanged);
    connect(theEncounter, &Encounter::doCreatureCountChanged, m_selectedPanel,
            &CreatureWidget::creatureSelectionChanged);
    connect(theHistory, &History::doHistoryChanged, m_selectedPanel,
            &CreatureWidget::creatureSelectionChanged);
    // Nothing else tells when a jump within the history has ended.
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, m_currentPanel,
            &CreatureWidget::currentCreatureChanged);
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, m_selectedPanel,
            &CreatureWidget::creatureSelectionChanged);
}

QAction *DockLayout::toggle(Dock dock) const
{
    return m_docks[dock]->toggleViewAction();
}

QList<QAction *> DockLayout::toggles() const
{
    QList<QAction *> actions;
    for (const QDockWidget *dock : m_docks)
        actions << dock->toggleViewAction();
    return actions;
}

void DockLayout::rememberHidden(Dock dock)
{
    m_isOff[dock] = m_docks[dock]->isHidden();
}

// The button in a dock's title closes it without its toggle.
bool DockLayout::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        for (int dock = 0; dock < DockCount; ++dock)
            m_isOff[dock] |= watched == m_docks[dock];
    }
    return QObject::eventFilter(watched, event);
}

// --- giving way ---

QList<QDockWidget *> DockLayout::sideDocks() const
{
    QList<QDockWidget *> docks(std::begin(m_docks), std::end(m_docks));
    docks.removeIf([this](QDockWidget *dock) {
        const Qt::DockWidgetArea area = m_window->dockWidgetArea(dock);
        return dock->isFloating() || dock->isHidden()
            || (area != Qt::LeftDockWidgetArea && area != Qt::RightDockWidgetArea);
    });
    return docks;
}

void DockLayout::narrow(int lack)
{
    const QList<QDockWidget *> docks = sideDocks();
    QSet<Qt::DockWidgetArea> sides;
    for (QDockWidget *dock : docks)
        sides << m_window->dockWidgetArea(dock);
    if (lack <= 0 || docks.isEmpty())
        return;
    const int share = (lack + int(sides.size()) - 1) / int(sides.size());
    QList<int> widths;
    for (QDockWidget *dock : docks) {
        m_widths.insert(dock, dock->width());
        widths << qMax(1, dock->width() - share);
    }
    m_window->resizeDocks(docks, widths, Qt::Horizontal);
}

void DockLayout::widen()
{
    QList<QDockWidget *> docks = sideDocks();
    docks.removeIf([this](QDockWidget *dock) { return !m_widths.contains(dock); });
    QList<int> widths;
    for (QDockWidget *dock : std::as_const(docks))
        widths << m_widths.value(dock);
    m_window->resizeDocks(docks, widths, Qt::Horizontal);
    m_widths.clear();
}

void DockLayout::raiseFloating()
{
    for (QDockWidget *dock : m_docks)
        if (dock->isFloating() && dock->isVisible())
            dock->raise();
}

void DockLayout::follow(bool isTableActive)
{
    for (int i = 0; i < DockCount; ++i) {
        QDockWidget *dock = m_docks[i];
        dock->toggleViewAction()->setEnabled(isTableActive);
        if (isTableActive && dock->isHidden() && !m_isOff[i])
            dock->show();
        else if (!isTableActive && dock->isVisible() && dock->isFloating())
            dock->hide();
    }
}

#include "moc_docklayout.cpp"
