#include "playerspreview.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "windows.h"

namespace {

constexpr int ShortestInterval = 250; // milliseconds between two pictures
constexpr int Margin = 4;

QWidget *shownWindow()
{
    QWidget *window = thePlayersDisplay ? thePlayersDisplay->displayWindow() : nullptr;
    return window && window->isVisible() ? window : nullptr;
}

} // namespace

PlayersPreview::PlayersPreview(QWidget *parent)
    : QWidget(parent), m_curtain(new QPushButton(tr("Curtain")))
{
    setObjectName(QStringLiteral("playersPreview"));
    setAccessibleName(tr("Player's View"));
    setMinimumSize(120, 100);
    m_curtain->setObjectName(QStringLiteral("curtainButton"));
    m_curtain->setCheckable(true);
    m_curtain->setToolTip(tr("Hide the fight from the players behind a plain picture"));
    connect(m_curtain, &QPushButton::clicked, this, [](bool down) {
        if (thePlayersDisplay)
            thePlayersDisplay->setCurtained(down);
    });
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    column->addStretch();
    column->addWidget(m_curtain);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PlayersPreview::draw);
    refresh();
}

QString PlayersPreview::notice() const
{
    if (!shownWindow())
        return tr("The Player's Display is closed.");
    return thePlayersDisplay->isCurtained() ? tr("The curtain is down: the players see nothing.")
                                            : QString();
}

void PlayersPreview::refresh()
{
    const bool isShown = shownWindow();
    m_curtain->setEnabled(isShown);
    m_curtain->setChecked(isShown && thePlayersDisplay->isCurtained());
    setAccessibleDescription(notice());
    redrawSoon();
    update();
}

QRect PlayersPreview::pictureArea() const
{
    return rect().adjusted(Margin, Margin, -Margin, m_curtain->y() - height() - Margin);
}

void PlayersPreview::redrawSoon()
{
    if (!isVisible() || m_timer.isActive())
        return;
    const qint64 since = m_sinceDrawn.isValid() ? m_sinceDrawn.elapsed() : ShortestInterval;
    m_timer.start(int(qMax<qint64>(0, ShortestInterval - since)));
}

void PlayersPreview::draw()
{
    QWidget *window = shownWindow();
    if (!isVisible() || !window || !notice().isEmpty())
        return;
    const QSize size = window->size().scaled(pictureArea().size(), Qt::KeepAspectRatio);
    if (size.isEmpty())
        return;
    m_picture = QPixmap(size * devicePixelRatioF());
    m_picture.setDevicePixelRatio(devicePixelRatioF());
    m_picture.fill(window->palette().color(QPalette::Window));
    QPainter painter(&m_picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(qreal(size.width()) / window->width(), qreal(size.height()) / window->height());
    m_isDrawing = true;
    window->render(&painter);
    m_isDrawing = false;
    ++m_drawCount;
    m_sinceDrawn.start();
    update();
}

// Each paint in the Player's Display, but for those of the picture itself, makes the picture old.
bool PlayersPreview::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_isDrawing && !m_timer.isActive()
        && watched->isWidgetType()) {
        if (QWidget *window = shownWindow();
            window && static_cast<QWidget *>(watched)->window() == window)
            redrawSoon();
    }
    return false;
}

bool PlayersPreview::event(QEvent *event)
{
    if (event->type() == QEvent::Show) {
        qApp->installEventFilter(this);
        refresh();
    } else if (event->type() == QEvent::Hide) {
        qApp->removeEventFilter(this);
        m_timer.stop();
        m_picture = QPixmap();
    } else if (event->type() == QEvent::Resize) {
        redrawSoon();
    }
    return QWidget::event(event);
}

void PlayersPreview::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QRect area = pictureArea();
    if (const QString text = notice(); !text.isEmpty()) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap, text);
        return;
    }
    QRectF target(QPointF(), m_picture.deviceIndependentSize());
    target.moveCenter(QRectF(area).center());
    painter.drawPixmap(target.topLeft(), m_picture);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(target.adjusted(0, 0, -1, -1));
}

#include "moc_playerspreview.cpp"
