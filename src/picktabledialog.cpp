#include "picktabledialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>

#include "eventsignaler.h"
#include "picktable.h"

PickTableDialog::PickTableDialog(const QString &title, QWidget *parent)
    : FlatDialog(title, parent), m_table(new PickTable), m_filter(new QLineEdit)
{
    m_filter->setObjectName(QStringLiteral("filterEdit"));
    m_filter->setPlaceholderText(tr("Enter filter text"));
    m_filter->setClearButtonEnabled(true);
    auto *signaler = new EventSignaler(this);
    m_filter->installEventFilter(signaler);
    // Queued: the event has only reached the filter, not yet the edit.
    connect(signaler, &EventSignaler::doEventReceived, this, &PickTableDialog::onFilterChanged,
            Qt::QueuedConnection);
    connect(m_table, &QTableView::doubleClicked, this, [this] { accept(); });
    setFocusProxy(m_filter);
}

QWidget *PickTableDialog::buildButtons(const QList<Button> &buttons)
{
    m_buttons = buttonRow(buttons);
    qobject_cast<QPushButton *>(m_buttons->buttons().constFirst())->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::clicked, this, &PickTableDialog::onClicked);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PickTableDialog::localSelectionChanged);
    enableButtons(false);
    return m_buttons;
}

void PickTableDialog::enableButtons(bool enabled)
{
    for (QAbstractButton *button : m_buttons->buttons())
        button->setEnabled(enabled || resultOf(button) == 0);
}

void PickTableDialog::onClicked(QAbstractButton *button)
{
    done(resultOf(button));
}

void PickTableDialog::localSelectionChanged(const QItemSelection &, const QItemSelection &)
{
    enableButtons(m_table->selectionModel()->hasSelection());
}

void PickTableDialog::accept()
{
    m_buttons->buttons().constFirst()->click();
}

void PickTableDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down) {
        FlatDialog::keyPressEvent(event);
        return;
    }
    // From the fields beside the table too. At the edge of the list the table gives the key back.
    if (!m_isInTable) {
        const QScopedValueRollback guard(m_isInTable, true);
        m_table->setFocus();
        QCoreApplication::sendEvent(m_table, event);
    }
    event->accept();
}

int PickTableDialog::selectedRow() const
{
    const QModelIndexList selected = m_table->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.last().row();
}

#include "moc_picktabledialog.cpp"
