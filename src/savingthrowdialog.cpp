#include "savingthrowdialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include "creature.h"
#include "dice.h"
#include "effect.h"
#include "readablecolours.h"
#include "saturated.h"
#include "text.h"

namespace {

constexpr int Spacing = 16;
constexpr int Columns = 3;
constexpr int EffectWidth = 100; // pixels, at least
constexpr int WidestEffect = 300; // a longer text wraps
constexpr int EffectStretch = 10;
constexpr int LeastRowsHeight = 100; // pixels
constexpr int FrameHeight = 40; // pixels, of the window's title and frame
constexpr int Sides = 20;
constexpr int Target = 10; // of death saves too; a natural 1 or 20 is a roll like any other

} // namespace

SavingThrowDialog::SavingThrowDialog(const Creature *creature, const QList<Effect *> &effects,
                                     bool mayCancel, QWidget *parent)
    : QDialog(parent), m_effects(effects), m_mayCancel(mayCancel)
{
    setObjectName(QStringLiteral("savingThrowDialog"));
    setWindowTitle(tr("Saving Throws"));
    if (parent)
        parent->installEventFilter(this);

    int modifier = 0;
    bool isComplex = false;
    const QString text = creature->savingThrowsText(false, &modifier, &isComplex);
    auto *grid = new QGridLayout(this);
    grid->setSpacing(Spacing);
    // Without it the toolkit cuts a tall dialog down to two thirds of the screen.
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->addWidget(
        label(tr("Saving Throws for <b>%1</b>:").arg(asHtml(creature->displayName(), LongestName))),
        0, 0, 1, Columns);
    grid->addWidget(modificationsBox(text, modifier, isComplex), 1, 0, 1, Columns);
    QScrollArea *rows = rowArea(effects, modifier);
    grid->addWidget(rows, 2, 0, 1, Columns);
    grid->addWidget(buttons(), 3, 0, 1, Columns);
    fitToScreen(rows);
}

QScrollArea *SavingThrowDialog::rowArea(const QList<Effect *> &effects, int modifier)
{
    auto *grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(Spacing);
    grid->setColumnStretch(0, EffectStretch);
    for (const Effect *effect : effects)
        addRow(grid, effect, modifier);
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    area->setWidget(wrap(grid));
    // A long text wraps, so that its height follows from the width.
    const int width = area->widget()->sizeHint().width();
    const int height = grid->hasHeightForWidth() ? grid->totalHeightForWidth(width)
                                                 : grid->totalSizeHint().height();
    area->setMinimumWidth(width);
    area->setFixedHeight(height);
    return area;
}

// More rows than the screen has room for are scrolled.
void SavingThrowDialog::fitToScreen(QScrollArea *rows)
{
    const int room = screen()->availableGeometry().height() - FrameHeight;
    const int overflow = layout()->totalSizeHint().height() - room;
    if (overflow <= 0)
        return;
    rows->setFixedHeight(qMax(LeastRowsHeight, rows->minimumHeight() - overflow));
    rows->setMinimumWidth(rows->minimumWidth() + rows->verticalScrollBar()->sizeHint().width());
}

QWidget *SavingThrowDialog::modificationsBox(const QString &text, int modifier, bool isComplex)
{
    QString line = text.isEmpty() ? tr("No adjustment") : text;
    line += QStringLiteral("<font color=#333333>")
        + tr("<p>If you or a player rolled the saving throw, then add the modifier and check the "
             "checkbox on successful save.");
    if (isComplex) {
        line += tr("<p><b>Note</b>, the modifications are complex. Adjustment other than %1 may "
                   "apply.")
                    .arg(signedNumber(modifier));
    }
    QLabel *lines = label(readableColours(line + QStringLiteral("</font>"), palette()));
    lines->setObjectName(QStringLiteral("modificationsLabel"));
    lines->setWordWrap(true);
    auto *group = new QGroupBox(tr("Modifications"));
    group->setLayout(new QVBoxLayout);
    group->layout()->addWidget(lines);
    return group;
}

void SavingThrowDialog::addRow(QGridLayout *grid, const Effect *effect, int modifier)
{
    const int roll = Dice::roll(Sides);
    const bool isSaved = saturatedSum(roll, modifier) >= Target;
    QString result = tr("<b> d20</b> %1").arg(roll);
    if (modifier != 0)
        result += tr("<b> Adj</b> %1").arg(signedNumber(modifier));
    result += isSaved ? tr("<b> &gt;=</b> 10 &bull; <b>Saved</b>")
                      : tr("<b> &lt;</b> 10 &bull; <b>Failed</b>");

    const QString number = QString::number(m_checks.size());
    QLabel *name = label(asHtml(effect->conditionText(), LongestLine) + u':');
    name->setObjectName(QStringLiteral("effect:") + number);
    const int width = name->sizeHint().width();
    name->setMinimumWidth(qBound(EffectWidth, width, WidestEffect));
    name->setWordWrap(width > WidestEffect);
    QLabel *rolled = label(result);
    rolled->setObjectName(QStringLiteral("roll:") + number);
    auto *check = new QCheckBox;
    check->setObjectName(QStringLiteral("saved:") + number);
    check->setAccessibleName(shortened(effect->conditionText()));
    check->setChecked(isSaved);
    m_checks << check;

    const int row = grid->rowCount();
    grid->addWidget(name, row, 0);
    grid->addWidget(rolled, row, 1);
    grid->addWidget(check, row, 2);
}

QDialogButtonBox *SavingThrowDialog::buttons()
{
    auto *box = new QDialogButtonBox(m_mayCancel ? QDialogButtonBox::Ok | QDialogButtonBox::Cancel
                                                 : QDialogButtonBox::Ok);
    QPushButton *ok = box->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    if (m_mayCancel)
        box->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    connect(box, &QDialogButtonBox::accepted, this, &SavingThrowDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &SavingThrowDialog::reject);
    return box;
}

QList<Effect *> SavingThrowDialog::savedEffects() const
{
    QList<Effect *> saved;
    for (int i = 0; i < m_effects.size(); ++i)
        if (m_checks.at(i)->isChecked())
            saved << m_effects.at(i);
    return saved;
}

void SavingThrowDialog::reject()
{
    if (m_mayCancel)
        QDialog::reject();
    else
        accept();
}

bool SavingThrowDialog::eventFilter(QObject *watched, QEvent *event)
{
    // Also when the end of the program has closed the dialog first, as if the user had.
    if (watched == parent() && event->type() == QEvent::Hide && !event->spontaneous())
        QDialog::reject();
    return QDialog::eventFilter(watched, event);
}

#include "moc_savingthrowdialog.cpp"
