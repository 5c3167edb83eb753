#include "powerlabel.h"

#include <QFrame>
#include <QMouseEvent>

#include "appendevent.h"
#include "dialoghost.h"
#include "effectevents.h"
#include "panelrows.h"
#include "panelstyle.h"

PowerLabel::PowerLabel(Creature *creature, int index, QFrame *frame, int styleFlags)
    : PanelRowLabel(QString(), frame), m_creature(creature), m_index(index), m_frame(frame),
      m_styleFlags(styleFlags)
{
    setContentsMargins(0, 0, 0, 0);
    setStyleSheet(QStringLiteral("QLabel { padding: 0px }"));
    if (const Power *shown = creature->powerAt(index)) {
        m_name = shown->name;
        setText(powerHeadingHtml(*shown, false));
    }
}

Power *PowerLabel::power() const
{
    if (!m_creature)
        return nullptr;
    Power *there = m_creature->powerAt(m_index);
    return there && there->name == m_name ? there : m_creature->powerByName(m_name);
}

Power *PowerLabel::tickablePower() const
{
    if (activeFlatDialog())
        return nullptr;
    Power *found = power();
    return found && isTickablePower(*found) ? found : nullptr;
}

void PowerLabel::showHeading(const Power &power, bool hovered)
{
    setText(powerHeadingHtml(power, hovered));
    if (m_frame)
        m_frame->setStyleSheet(
            styleFor(m_styleFlags | (hovered ? PanelRowStyle::Hovered : 0), m_creature));
}

// A message about the log may come up, and the panel be rebuilt meanwhile.
void PowerLabel::mousePressEvent(QMouseEvent *)
{
    const QPointer<PowerLabel> self = this;
    if (!tickablePower() || !streamForEvent() || !self)
        return;
    if (Power *ticked = tickablePower())
        appendEvent<PowerUsageChangedEvent>(m_creature.data(), ticked, ticked->isUsed() ? 1 : 0);
}

void PowerLabel::enterEvent(QEnterEvent *)
{
    // A row that is rebuilt under a resting mouse, as after the click itself, shows the real state.
    if (QCursor::pos() == m_bornUnder)
        return;
    if (const Power *shown = tickablePower())
        showHeading(*shown, true);
}

// Also when a key has opened a dialog meanwhile.
void PowerLabel::leaveEvent(QEvent *)
{
    const Power *shown = power();
    if (shown && isTickablePower(*shown))
        showHeading(*shown, false);
}

#include "moc_powerlabel.cpp"
