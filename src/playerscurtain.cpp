#include "playerscurtain.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr QRgb Dark = 0xff16181f;
constexpr qreal EmblemShare = 0.3; // of the shorter side
constexpr qreal EmblemShade = 0.6;

class Cloth : public QWidget {
public:
    explicit Cloth(QWidget *covered)
        : QWidget(covered), m_emblem(QStringLiteral(":/images/d20-logo-128.png"))
    {
        setObjectName(QStringLiteral("curtain"));
        setAttribute(Qt::WA_OpaquePaintEvent);
        covered->installEventFilter(this);
        setGeometry(covered->rect());
        hide();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool isOther = event->type() == QEvent::ChildAdded || event->type() == QEvent::Show;
        if (event->type() == QEvent::Resize || isOther) {
            setGeometry(parentWidget()->rect());
            raise();
        }
        return QWidget::eventFilter(watched, event);
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(Dark));
        const int side = qRound(qMin(width(), height()) * EmblemShare);
        QRect place(0, 0, side, side);
        place.moveCenter(rect().center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setOpacity(EmblemShade);
        painter.drawPixmap(place, m_emblem);
    }

private:
    QPixmap m_emblem;
};

} // namespace

PlayersCurtain::PlayersCurtain(QWidget *window) : QObject(window)
{
    cover(window);
}

void PlayersCurtain::cover(QWidget *widget)
{
    m_cloths << new Cloth(widget);
}

void PlayersCurtain::setDown(bool down)
{
    m_isDown = down;
    for (QWidget *cloth : std::as_const(m_cloths)) {
        cloth->setVisible(down);
        cloth->raise();
    }
}

#include "moc_playerscurtain.cpp"
