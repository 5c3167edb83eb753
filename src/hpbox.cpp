#include "hpbox.h"

#include <QAction>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int MaxHP = 500;

} // namespace

HPBox::HPBox(const QObject *actionsOwner) : m_actionsOwner(actionsOwner)
{
    setObjectName(QStringLiteral("hpBox"));
    setRange(0, MaxHP);
    setToolTip(tr("Hit points to take, heal or set"));
}

void HPBox::focusOnText()
{
    setFocus();
    selectAll();
}

bool HPBox::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isActionKey(*static_cast<QKeyEvent *>(event)))
        return true;
    return QSpinBox::event(event);
}

bool HPBox::isActionKey(const QKeyEvent &event) const
{
    const QKeySequence keys(event.keyCombination());
    const QList<QAction *> actions =
        m_actionsOwner->findChildren<QAction *>(Qt::FindDirectChildrenOnly);
    return std::any_of(actions.begin(), actions.end(), [&](const QAction *action) {
        return action->isEnabled() && action->shortcuts().contains(keys);
    });
}

void HPBox::focusInEvent(QFocusEvent *event)
{
    QSpinBox::focusInEvent(event);
    // After the press that gave the focus, which would set the cursor.
    if (event->reason() == Qt::MouseFocusReason)
        QTimer::singleShot(0, this, &QSpinBox::selectAll);
}

#include "moc_hpbox.cpp"
