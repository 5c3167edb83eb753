// Tells of every event on the objects that it is installed on as a filter.
#pragma once

#include <QObject>

class EventSignaler : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override;

Q_SIGNALS:
    void doEventReceived(QObject *object);
};
