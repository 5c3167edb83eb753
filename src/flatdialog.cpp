#include "flatdialog.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>

#include "dialoghost.h"
#include "encounter.h"
#include "text.h"
#include "windows.h"

namespace {

constexpr char ResultProperty[] = "result";

} // namespace

FlatDialog::FlatDialog(const QString &title, QWidget *parent) : QWidget(parent)
{
    setWindowTitle(title);
    setFocusPolicy(Qt::StrongFocus);
}

QWidget *FlatDialog::focusWidget()
{
    return this;
}

int FlatDialog::widgetCount() const
{
    return 0;
}

void FlatDialog::onFinished() { }

int FlatDialog::exec()
{
    DialogHost *host = dialogHost();
    if (!host)
        return 0;
    // The window, and the host with it, can be closed and even deleted while the loop below runs.
    const QPointer<QWidget> window = host->hostWindow();
    host->setFlatDialog(windowTitle(), this);
    host->showFlatWidget(focusWidget(), widgetCount() != 0);
    window->installEventFilter(this);

    // While the program ends the loop doesn't start, and gives -1.
    const int result = qMax(0, m_eventLoop.exec());

    if (window) {
        window->removeEventFilter(this);
        host->setFlatDialog(QString(), nullptr);
        host->showFlatWidget(nullptr, false);
    }
    onFinished();
    return result;
}

void FlatDialog::setContent(QWidget *content)
{
    setLayout(hBox(true, true, content));
}

void FlatDialog::accept()
{
    done(1);
}

void FlatDialog::done(int result)
{
    m_eventLoop.exit(result);
}

void FlatDialog::reject()
{
    m_eventLoop.exit(0);
}

void FlatDialog::tellPlayers(Creature *creature, const QString &message)
{
    if (thePlayersDisplay)
        thePlayersDisplay->setInitiativeMessage(creature, message);
}

void FlatDialog::showInPanel(Creature *creature)
{
    if (DialogHost *host = dialogHost())
        host->showInCurrentPanel(creature);
}

void FlatDialog::returnPanel()
{
    showInPanel(theEncounter ? theEncounter->current() : nullptr);
}

void FlatDialog::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        reject();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        accept();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool FlatDialog::eventFilter(QObject *object, QEvent *event)
{
    // In a closed window nobody could end the dialog.
    if (event->type() == QEvent::Hide && !event->spontaneous())
        reject();
    return QWidget::eventFilter(object, event);
}

QDialogButtonBox *FlatDialog::buttonRow(const QList<Button> &buttons)
{
    auto *box = new QDialogButtonBox;
    for (const Button &row : buttons) {
        // The desktop's style sorts buttons by role; with one role for all they stay in this order.
        QPushButton *button = box->addButton(row.text, QDialogButtonBox::ActionRole);
        QString name = row.text;
        lowerFirst(name);
        button->setObjectName(name.remove(u' ') + QStringLiteral("Button"));
        button->setProperty(ResultProperty, row.result);
        // Return on a focused button presses it instead of accepting the dialog.
        button->setAutoDefault(true);
    }
    return box;
}

QDialogButtonBox *FlatDialog::okCancelRow()
{
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton *ok = box->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    QPushButton *cancel = box->button(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    cancel->setAutoDefault(true);
    connect(box, &QDialogButtonBox::accepted, this, [this] { accept(); });
    connect(box, &QDialogButtonBox::rejected, this, [this] { reject(); });
    return box;
}

int FlatDialog::resultOf(const QAbstractButton *button)
{
    return button->property(ResultProperty).toInt();
}

#include "moc_flatdialog.cpp"
