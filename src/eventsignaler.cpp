#include "eventsignaler.h"

bool EventSignaler::eventFilter(QObject *object, QEvent *event)
{
    const bool filtered = QObject::eventFilter(object, event);
    Q_EMIT doEventReceived(object);
    return filtered;
}

#include "moc_eventsignaler.cpp"
