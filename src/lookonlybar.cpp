#include "lookonlybar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "history.h"
#include "loglock.h"
#include "text.h"

namespace {

constexpr int LookInterval = 2000; // milliseconds

} // namespace

LookOnlyBar::LookOnlyBar(QWidget *parent)
    : QWidget(parent), m_label(new QLabel), m_button(new QPushButton(tr("Take Over")))
{
    setObjectName(QStringLiteral("lookOnlyBar"));
    m_label->setObjectName(QStringLiteral("lookOnlyLabel"));
    m_label->setTextFormat(Qt::RichText);
    m_button->setObjectName(QStringLiteral("takeOverButton"));
    m_button->setFocusPolicy(Qt::NoFocus);
    m_button->setToolTip(tr("Read the folder anew and go on with the fight here"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);
    layout->addWidget(m_button);
    m_timer.setInterval(LookInterval);
    connect(&m_timer, &QTimer::timeout, this, &LookOnlyBar::look);
    // Queued behind the click, because reading the folder changes this bar.
    connect(m_button, &QPushButton::clicked, this, &LookOnlyBar::takeOverAsked,
            Qt::QueuedConnection);
    hide();
}

void LookOnlyBar::setReason(const QString &reason)
{
    m_isHeld = false;
    showReason(reason);
    setVisible(!reason.isEmpty());
    if (reason.isEmpty()) {
        m_timer.stop();
    } else {
        look();
        m_timer.start();
    }
}

void LookOnlyBar::look()
{
    LogLock *lock = theHistory ? theHistory->lock() : nullptr;
    if (!lock)
        return;
    const bool wasHeld = m_isHeld;
    m_isHeld = lock->isHeldElsewhere();
    m_button->setEnabled(!m_isHeld);
    if (m_isHeld)
        showReason(lock->obstacle()); // who holds the lock may have changed
    else if (wasHeld)
        showReason(tr("no longer in use elsewhere"));
}

void LookOnlyBar::showReason(const QString &reason)
{
    const QString text = tr("<font color=\"#c03030\"><b>Looking only:</b> %1</font>");
    m_label->setText(text.arg(asHtml(reason)));
}

#include "moc_lookonlybar.cpp"
