// An event that does nothing but stand in the log with a text, for tests of the log itself.
#pragma once

#include <QStringList>

#include "event.h"

class LoggedEvent : public Event {
    Q_OBJECT

public:
    LoggedEvent(const QString &text, ObjectStream *stream);
    ~LoggedEvent() override;

    QString text() const override { return m_text; }
    // The journal notes these and the end of an event, as "redo text", "undo text", "delete text".
    void redo() override;
    void undo() override;
    bool startsEncounter() const override { return m_text.startsWith(QLatin1String("start")); }

    void setVisible(bool visible) { m_visible = visible; }
    static QStringList journal;

    // The texts of all such events in the log, or nothing without a good header. `clean` tells
    // whether a stream that goes on from there finds nothing to complain of.
    static QStringList readLog(const QByteArray &log, bool *clean = nullptr);

private:
    QString m_text;
};
