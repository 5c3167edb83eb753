#include "playerswindow.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QMenu>
#include <QScreen>
#include <QSettings>
#include <QTimer>

#include "creature.h"
#include "fullscreen.h"
#include "keepawake.h"
#include "lastkillwidget.h"
#include "playerscurtain.h"
#include "playerslistmodel.h"
#include "playersview.h"
#include "tickerwidget.h"
#include "windowstate.h"
#include "yourturnwidget.h"

#include <algorithm>
#include <memory>

namespace {

constexpr QSize DefaultSize(960, 640);
constexpr qreal LargestDockShare = 0.25; // of the window's height
constexpr int ZoomSteps[] = {100, 125, 150, 200, 300, 400}; // per cent
constexpr int LeastZoom = 100;
constexpr int LargestZoom = 400;

QString key(const char *name)
{
    return QStringLiteral("playersWindow/") + QLatin1String(name);
}

} // namespace

PlayersWindow::PlayersWindow(QWidget *parent)
    : QMainWindow(parent), m_listModel(new PlayersListModel(this)), m_view(new PlayersView),
      m_yourTurn(new YourTurnWidget(m_listModel)), m_lastKills(new LastKillWidget(m_listModel)),
      m_ticker(new TickerWidget), m_keepAwake(new KeepAwake(this))
{
    setObjectName(QStringLiteral("playersWindow"));
    setWindowTitle(tr("Morvane Player's Display"));
    setCentralWidget(m_view);
    addDock(QStringLiteral("yourTurn"), tr("Your Turn!"), m_yourTurn, Qt::BottomDockWidgetArea);
    addDock(QStringLiteral("lastKills"), tr("Last Kills"), m_lastKills, Qt::BottomDockWidgetArea);
    addDock(QStringLiteral("ticker"), tr("Ticker"), m_ticker, Qt::TopDockWidgetArea);
    m_curtain = new PlayersCurtain(this);
    for (QDockWidget *dock : std::as_const(m_docks))
        m_curtain->cover(dock);
    m_fullScreen = new FullScreen(this);
    connect(m_fullScreen, &FullScreen::doChosen, this, &PlayersWindow::writeSettings);
    addKeys();
    restoreSettings();
    m_listModel->attachTo(m_view);
    const auto tellDisplay = [this] {
        if (shownChanged)
            shownChanged();
    };
    connect(this, &PlayersWindow::doShownChanged, this, tellDisplay);
    connect(this, &PlayersWindow::doCurtainChanged, this, tellDisplay);
    connect(this, &PlayersWindow::doShownChanged, this, &PlayersWindow::updateKeepAwake);
    connect(m_listModel, &PlayersListModel::doCurrentChanged, this,
            &PlayersWindow::updateKeepAwake);
    thePlayersDisplay = this;
}

PlayersWindow::~PlayersWindow()
{
    writeSettings();
    thePlayersDisplay = nullptr;
}

QDockWidget *PlayersWindow::addDock(const QString &name, const QString &title, QWidget *content,
                                    Qt::DockWidgetArea area)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(content);
    addDockWidget(area, dock);
    m_docks << dock;
    return dock;
}

QList<QAction *> PlayersWindow::dockToggles() const
{
    QList<QAction *> actions;
    for (const QDockWidget *dock : m_docks)
        actions << dock->toggleViewAction();
    return actions;
}

// --- keys and menu ---

void PlayersWindow::addKey(const QList<QKeySequence> &keys, void (PlayersWindow::*slot)())
{
    auto *action = new QAction(this);
    action->setShortcuts(keys);
    connect(action, &QAction::triggered, this, slot);
    addAction(action);
}

void PlayersWindow::addKeys()
{
    addKey({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, &PlayersWindow::zoomIn);
    addKey({Qt::CTRL | Qt::Key_Minus}, &PlayersWindow::zoomOut);
    addKey({Qt::CTRL | Qt::Key_0}, &PlayersWindow::zoomReset);
    addKey({Qt::Key_F11}, &PlayersWindow::toggleFullScreen);
    addKey({Qt::Key_Escape}, &PlayersWindow::leaveFullScreen);
    addKey({Qt::Key_F9}, &PlayersWindow::toggleCurtain);
    addKey({Qt::SHIFT | Qt::Key_F10}, &PlayersWindow::openMenuByKey);
}

// The toolkit itself knows the menu key alone, which many keyboards lack.
void PlayersWindow::openMenuByKey()
{
    QWidget *focused = QApplication::focusWidget();
    QWidget *place = focused ? focused : this;
    const QPoint centre = place->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, centre, place->mapToGlobal(centre));
    QCoreApplication::sendEvent(place, &event);
}

void PlayersWindow::fillMenu(QMenu *menu)
{
    menu->addActions(dockToggles());
    const bool shows = m_listModel->showsDamage();
    menu->addAction(shows ? tr("Hide Damage and Heals") : tr("Show Damage and Heals"), this,
                    [this, shows] { setShowDamage(!shows); });
    const bool isFixed = m_view->fixedFontSize() != 0;
    menu->addAction(isFixed ? tr("Scale Font Size") : tr("Fix Font Size"), this,
                    [this, isFixed] { setFontMode(isFixed ? 0 : 1); });
    menu->addSeparator();
    addZoomMenu(menu);
    addScreensMenu(menu);
    QAction *curtain = menu->addAction(tr("Curtain"), this, &PlayersWindow::toggleCurtain);
    curtain->setShortcut(Qt::Key_F9);
    curtain->setCheckable(true);
    curtain->setChecked(isCurtained());
    QAction *next = menu->addAction(tr("Show Who Is Next"), this, &PlayersWindow::setShowNext);
    next->setCheckable(true);
    next->setChecked(m_yourTurn->showsNext());
}

void PlayersWindow::addZoomMenu(QMenu *menu)
{
    QMenu *zooms = menu->addMenu(tr("Zoom"));
    for (const int step : ZoomSteps) {
        QAction *action =
            zooms->addAction(tr("%1 %").arg(step), this, [this, step] { setZoom(step); });
        action->setCheckable(true);
        action->setChecked(step == m_zoom);
    }
}

void PlayersWindow::addScreensMenu(QMenu *menu)
{
    QMenu *screens = menu->addMenu(tr("Full Screen"));
    const QList<QScreen *> present = QGuiApplication::screens();
    for (QScreen *screen : present) {
        QString name = screen->name();
        QAction *action = screens->addAction(name.replace(u'&', QStringLiteral("&&")));
        action->setCheckable(true);
        action->setChecked(isFullScreen() && screen->name() == m_fullScreen->screenName());
        // By name: a screen may go while the menu is open.
        connect(action, &QAction::triggered, m_fullScreen,
                [this, name = screen->name()] { m_fullScreen->enter(name); });
    }
    screens->addSeparator();
    QAction *toggle =
        screens->addAction(isFullScreen() ? tr("Leave Full Screen") : tr("This Screen"), this,
                           &PlayersWindow::toggleFullScreen);
    toggle->setShortcut(Qt::Key_F11);
}

QMenu *PlayersWindow::createPopupMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("playersMenu"));
    fillMenu(menu);
    return menu;
}

void PlayersWindow::contextMenuEvent(QContextMenuEvent *event)
{
    const std::unique_ptr<QMenu> menu(createPopupMenu());
    menu->exec(event->globalPos());
    event->accept();
}

// --- what is shown, and how large ---

void PlayersWindow::setInitiativeMessage(Creature *creature, const QString &message)
{
    // A form may ask about a creature that the players must not know of.
    if (creature && (creature->isHidden() || creature->isDisabled()))
        m_yourTurn->show(nullptr, QString());
    else
        m_yourTurn->show(creature, message);
}

void PlayersWindow::setFontMode(int mode)
{
    m_view->setFontMode(mode);
    QSettings().setValue(key("fontSize"), m_view->fixedFontSize());
}

void PlayersWindow::setShowDamage(bool show)
{
    m_listModel->setShowDamage(show);
    QSettings().setValue(key("showDamageAndHeals"), show);
}

void PlayersWindow::setShowNext(bool show)
{
    m_yourTurn->setShowNext(show);
    QSettings().setValue(key("showNext"), show);
}

void PlayersWindow::setZoom(int percent)
{
    const int before = std::exchange(m_zoom, qBound(LeastZoom, percent, LargestZoom));
    QSettings().setValue(key("zoom"), m_zoom);
    applyZoom();
    arrangeDocks(qreal(m_zoom) / before);
}

void PlayersWindow::applyZoom()
{
    m_view->setZoom(m_zoom);
    for (PlayersWidget *widget :
         std::initializer_list<PlayersWidget *> {m_yourTurn, m_lastKills, m_ticker})
        widget->setZoom(m_zoom);
    // The titles grow too.
    QFont title = font();
    if (title.pixelSize() > 0)
        title.setPixelSize(title.pixelSize() * m_zoom / 100);
    else
        title.setPointSizeF(title.pointSizeF() * m_zoom / 100);
    for (QDockWidget *dock : std::as_const(m_docks))
        dock->setFont(title);
}

void PlayersWindow::zoomIn()
{
    const auto *step = std::upper_bound(std::begin(ZoomSteps), std::end(ZoomSteps), m_zoom);
    if (step != std::end(ZoomSteps))
        setZoom(*step);
}

void PlayersWindow::zoomOut()
{
    const auto *step = std::lower_bound(std::begin(ZoomSteps), std::end(ZoomSteps), m_zoom);
    if (step != std::begin(ZoomSteps))
        setZoom(*std::prev(step));
}

void PlayersWindow::zoomReset()
{
    setZoom(LeastZoom);
}

void PlayersWindow::refresh()
{
    m_listModel->refresh();
    m_ticker->onHistoryChanged();
}

bool PlayersWindow::isCurtained() const
{
    return m_curtain->isDown();
}

void PlayersWindow::setCurtained(bool curtained)
{
    if (curtained == isCurtained())
        return;
    m_curtain->setDown(curtained);
    Q_EMIT doCurtainChanged(curtained);
}

QString PlayersWindow::fullScreenName() const
{
    return isFullScreen() ? m_fullScreen->screenName() : QString();
}

void PlayersWindow::toggleFullScreen()
{
    m_fullScreen->toggle();
}

void PlayersWindow::leaveFullScreen()
{
    if (isFullScreen())
        m_fullScreen->leave();
}

// The players look at it for hours without a key or a mouse that moves.
void PlayersWindow::updateKeepAwake()
{
    m_keepAwake->setWanted(isVisible() && m_listModel->isEncounterRunning());
}

// Until the DM drags an edge, the panels above and below the list are as high as they like to be,
// but leave the list most of the window.
void PlayersWindow::arrangeDocks(qreal scale)
{
    QList<QDockWidget *> docks;
    QList<int> heights;
    for (QDockWidget *dock : std::as_const(m_docks)) {
        const Qt::DockWidgetArea area = dockWidgetArea(dock);
        if (dock->isFloating() || dock->isHidden()
            || (area != Qt::TopDockWidgetArea && area != Qt::BottomDockWidgetArea))
            continue;
        const int usual = qMin(dock->sizeHint().height(), int(height() * LargestDockShare));
        docks << dock;
        heights << qMax(1, m_isArrangedByDM ? qRound(dock->height() * scale) : usual);
    }
    resizeDocks(docks, heights, Qt::Vertical);
}

bool PlayersWindow::event(QEvent *event)
{
    // Nothing of the window itself lies open to the mouse but the edges of the docks.
    if (event->type() == QEvent::MouseButtonPress)
        m_isArrangedByDM = true;
    return QMainWindow::event(event);
}

void PlayersWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    if (!m_isArrangedByDM)
        arrangeDocks();
}

// --- settings ---

void PlayersWindow::restoreSettings()
{
    resize(DefaultSize.boundedTo(screen()->availableSize() * 0.9));
    const QSettings settings;
    m_fullScreen->restore(settings.value(key("geometry")).toByteArray(),
                          settings.value(key("screen")).toString(),
                          settings.value(key("fullScreen"), false).toBool());
    m_isArrangedByDM = restoreState(keptWindowState(key("state")))
        && settings.value(key("arranged"), false).toBool();
    m_listModel->setShowDamage(settings.value(key("showDamageAndHeals"), true).toBool());
    m_yourTurn->setShowNext(settings.value(key("showNext"), false).toBool());
    m_zoom = qBound(LeastZoom, settings.value(key("zoom"), LeastZoom).toInt(), LargestZoom);
    applyZoom();
    // 1 would fix the size that the window happens to have.
    const int fontSize = settings.value(key("fontSize")).toInt();
    m_view->setFontMode(fontSize == 0 ? 0 : qMax(fontSize, PlayersView::SmallestFont));
}

void PlayersWindow::writeSettings()
{
    QSettings settings;
    settings.setValue(key("geometry"), m_fullScreen->geometry());
    keepWindowState(key("state"), saveState());
    settings.setValue(key("arranged"), m_isArrangedByDM);
    settings.setValue(key("fontSize"), m_view->fixedFontSize());
    settings.setValue(key("showDamageAndHeals"), m_listModel->showsDamage());
    settings.setValue(key("screen"), m_fullScreen->screenName());
    settings.setValue(key("fullScreen"), m_fullScreen->isOn());
}

void PlayersWindow::closeEvent(QCloseEvent *event)
{
    writeSettings();
    QMainWindow::closeEvent(event);
}

void PlayersWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (event->spontaneous())
        return;
    // A restored dock was shown before the window, and would lie below it.
    QTimer::singleShot(0, this, [this] {
        for (QDockWidget *dock : std::as_const(m_docks))
            if (dock->isFloating() && dock->isVisible())
                dock->raise();
    });
    Q_EMIT doShownChanged(true);
}

void PlayersWindow::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (!event->spontaneous())
        Q_EMIT doShownChanged(false);
}

#include "moc_playerswindow.cpp"
