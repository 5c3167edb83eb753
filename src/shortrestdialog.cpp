#include "shortrestdialog.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include "encounter.h"
#include "outcome.h"
#include "readablecolours.h"
#include "smallwidgets.h"
#include "terms.h"
#include "text.h"

namespace {

constexpr int MaxExtraHP = 500;
constexpr int RowSpacing = 10;
constexpr int StatusGap = 8;
// Room for the labels in digits, so that the rows stand in columns while their numbers change.
constexpr int ValueDigits = 8;
constexpr int TotalDigits = 5;
constexpr int SurgesDigits = 8;
constexpr int HPDigits = 10;
constexpr int APDigits = 5;

// Unlike in the panels, neither a preview nor full hit points are coloured.
QString hpText(const Creature &creature)
{
    const QString hp = QString::number(creature.currHP());
    if (creature.currHP() <= creature.bloodiedValue())
        return QStringLiteral("<font color=red>%1</font>").arg(hp);
    if (creature.currHP() < creature.maxHP())
        return QStringLiteral("<font color=blue>%1</font>").arg(hp);
    return hp;
}

} // namespace

ShortRestDialog::ShortRestDialog(QWidget *parent) : FlatDialog(term(Term::ShortRest), parent)
{
    setObjectName(QStringLiteral("shortRestDialog"));
    auto *form = new QVBoxLayout;
    form->setSpacing(RowSpacing);
    form->addWidget(grantRow());
    for (Creature *creature : theEncounter->creatures())
        if (!creature->isMonster() && !creature->isDead())
            form->addWidget(buildRow(creature));
    form->addWidget(okCancelRow());
    setContent(wrap(form));
    if (m_rows.isEmpty())
        setFocusProxy(m_grantBox);
    else
        setFocusProxy(m_rows.first().surgeBox);
}

QWidget *ShortRestDialog::grantRow()
{
    m_grantBox = new QCheckBox;
    m_grantBox->setObjectName(QStringLiteral("grantBox"));
    connect(m_grantBox, &QCheckBox::stateChanged, this, &ShortRestDialog::onRestValueChanged);
    auto *text =
        new ClickableLabel(tr("Grant <b>%1</b> (Milestone)")
                               .arg(asHtml(withLiteralAmpersands(term(Term::ActionPoint)))),
                           m_grantBox);
    text->setObjectName(QStringLiteral("grantLabel"));
    text->setTextFormat(Qt::RichText);
    return hWidget(false, true, text, m_grantBox);
}

QGroupBox *ShortRestDialog::buildRow(Creature *creature)
{
    const QString name = creature->displayName();
    const auto box = [&](const char *objectName, int max, bool selected) {
        QSpinBox *spin = spinBox(max, 0, 0, selected);
        spin->setObjectName(QLatin1String(objectName) + u':' + name);
        connect(spin, &QSpinBox::valueChanged, this, &ShortRestDialog::onRestValueChanged);
        return spin;
    };
    const Row row {.creature = creature,
                   .surgeBox = box("surgeBox", qMax(0, creature->currHS()), true),
                   .hpBox = box("hpBox", MaxExtraHP, false),
                   .surgesLabel = namedLabel("surgesLabel", creature, SurgesDigits),
                   .hpLabel = namedLabel("hpLabel", creature, HPDigits),
                   .apLabel = namedLabel("apLabel", creature, APDigits),
                   .totalLabel = namedLabel("totalLabel", creature, TotalDigits)};
    row.surgeBox->setAccessibleName(tr("%1: %2s").arg(name, term(Term::HealingSurge)));
    row.hpBox->setAccessibleName(tr("%1: HP").arg(name));
    m_rows << row;
    row.surgeBox->setMinimumWidth(row.hpBox->sizeHint().width());
    row.totalLabel->setText(tr("= 0"));
    showStatus(row);
    QLabel *value = namedLabel("valueLabel", creature, ValueDigits);
    value->setText(tr(" x %1 + <b>HP</b>").arg(creature->hsValue()));

    auto *line = new QHBoxLayout;
    line->addWidget(label(tr("<b>HS</b>")));
    line->addWidget(row.surgeBox);
    line->addWidget(value, 0, Qt::AlignTop);
    line->addWidget(row.hpBox);
    line->addWidget(row.totalLabel);
    line->addSpacing(StatusGap);
    line->addStretch(1);
    for (QLabel *status : {row.surgesLabel, row.hpLabel, row.apLabel})
        line->addWidget(status);
    line->addStretch(2);
    auto *group = new QGroupBox(withLiteralAmpersands(shortened(name, LongestName)));
    group->setLayout(line);
    return group;
}

QLabel *ShortRestDialog::namedLabel(const char *name, const Creature *creature, int digits)
{
    QLabel *made = label(QString());
    made->setObjectName(QLatin1String(name) + u':' + creature->displayName());
    made->setMinimumWidth(digits * fontMetrics().horizontalAdvance(u'0'));
    return made;
}

void ShortRestDialog::showStatus(const Row &row)
{
    const Creature &creature = *row.creature;
    row.surgesLabel->setText(tr("<b>HS</b> %2/%3").arg(creature.currHS()).arg(creature.maxHS()));
    row.hpLabel->setText(readableColours(
        tr("<b>HP</b> %4/%5").arg(hpText(creature)).arg(creature.maxHP()), palette()));
    row.apLabel->setText(tr("<b>AP</b> %1").arg(creature.currAP()));
}

void ShortRestDialog::onRestValueChanged()
{
    for (const Row &row : std::as_const(m_rows)) {
        if (!row.creature)
            continue;
        Health after = RestPreview::real(row.creature);
        const int used = qMin(row.surgeBox->value(), qMax(0, after.surges));
        const int extra = row.hpBox->value();
        // Healing counts from 0, but without any the character stays where it is.
        if (used != 0 || extra != 0)
            after = afterHealing(after, surgeHealing(used, row.creature->hsValue(), extra), used);
        m_preview.show(row.creature, after, m_grantBox->isChecked() ? 1 : 0);
        row.totalLabel->setText(tr("= %1").arg(after.hp));
        showStatus(row);
    }
}

void ShortRestDialog::onRestFocusChanged(QWidget *, QWidget *now)
{
    for (const Row &row : std::as_const(m_rows)) {
        if (now && (now == row.surgeBox || now == row.hpBox)) {
            showInPanel(row.creature);
            tellPlayers(row.creature, tr("Resting"));
        }
    }
}

int ShortRestDialog::exec()
{
    const QMetaObject::Connection focus =
        connect(qApp, &QApplication::focusChanged, this, &ShortRestDialog::onRestFocusChanged);
    const int result = FlatDialog::exec();
    disconnect(focus);
    tellPlayers(nullptr);
    returnPanel();
    return result;
}

void ShortRestDialog::onFinished()
{
    m_preview.clear();
}

QList<RestedCreature> ShortRestDialog::result() const
{
    QList<RestedCreature> rested;
    for (const Row &row : m_rows) {
        if (!row.creature)
            continue;
        const int used = row.surgeBox->value();
        rested << RestedCreature {
            .creature = row.creature,
            .usedHS = used,
            .addedHP = surgeHealing(used, row.creature->hsValue(), row.hpBox->value()),
            .addedAP = m_grantBox->isChecked() ? 1 : 0};
    }
    return rested;
}

#include "moc_shortrestdialog.cpp"
