// The fields of the form of conditions and effects, and what they are filled with.
#include "effectdialog.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <algorithm>

#include "disablecombobox.h"
#include "effect.h"
#include "encounter.h"
#include "saturated.h"
#include "smallwidgets.h"
#include "terms.h"
#include "text.h"

namespace {

constexpr int Columns = 10;
constexpr int MostHP = 500;
constexpr int MostOngoing = 200;
constexpr int MostBonus = 100;
constexpr int MostResistance = 200;
constexpr int ManySurges = 134217727;
// A damaged file may claim any number of surges. The list of choices must stay readable.
constexpr int MostSurgeItems = 100;
constexpr int AttributeLabelWidth = 30;
constexpr QSize AttributeButtonSize(84, 24);
constexpr int AttributeButtonMargin = 12;
// A long name must not widen the whole form.
constexpr int NameCharacters = 24;

// "5, 7 or 9".
QString valuesText(const QList<int> &values)
{
    QStringList texts;
    for (const int value : values)
        texts << QString::number(value);
    QString text = texts.join(QStringLiteral(", "));
    const qsizetype last = text.lastIndexOf(QStringLiteral(", "));
    if (last >= 0)
        text.replace(last, 2, EffectDialog::tr(" or "));
    return text;
}

} // namespace

QString EffectDialog::gainText(int surges)
{
    return tr("Gain %1").arg(surges);
}

QString EffectDialog::useText(int surges, int surgeValue)
{
    return tr("Use %1 (+%2 HP)").arg(surges).arg(saturated(qint64(surges) * surgeValue));
}

DisableComboBox *EffectDialog::choiceBox(const QString &objectName, const QList<Choice> &choices,
                                         int value)
{
    auto *box = new DisableComboBox;
    box->setObjectName(objectName);
    for (const Choice &choice : choices)
        box->addItem(shortened(choice.text, LongestName), choice.value);
    box->setMaxVisibleItems(int(choices.size()));
    box->selectByValue(value);
    return box;
}

QSpinBox *EffectDialog::amountBox(const QString &objectName, int max)
{
    QSpinBox *box = spinBox(max, 0, 0, false);
    box->setValue(0); // without it the box has no text to select
    box->setObjectName(objectName);
    return box;
}

// From the best of the usual amounts down to none, and from there to the worst.
EffectDialog::AmountPair EffectDialog::amountPair(const QString &name, const EffectPair &kinds,
                                                  const QList<int> &amounts, int max)
{
    const EffectKind &good = effectKind(kinds.good);
    const EffectKind &bad = effectKind(kinds.bad);
    QList<Choice> choices;
    for (auto amount = amounts.crbegin(); amount != amounts.crend(); ++amount)
        choices << Choice {*amount, Effect::tr(good.choice).arg(*amount)};
    choices << Choice {1, Effect::tr(good.plainChoice)} << Choice {0, QString()}
            << Choice {-1, Effect::tr(bad.plainChoice)};
    for (const int amount : amounts)
        choices << Choice {-amount, Effect::tr(bad.choice).arg(amount)};
    AmountPair pair;
    pair.box = choiceBox(name + QStringLiteral("Box"), choices, 0);
    pair.amount = amountBox(name + QStringLiteral("Amount"), max);
    return pair;
}

QWidget *EffectDialog::pairRow(const AmountPair &pair)
{
    QHBoxLayout *row = hBox(pair.box, pair.amount);
    row->setStretchFactor(pair.box, 1);
    return wrap(row);
}

QGroupBox *EffectDialog::group(const QString &objectName, const QString &title, QWidget *content)
{
    auto *group = new QGroupBox(withLiteralAmpersands(shortened(title, LongestName)));
    group->setObjectName(objectName);
    auto *layout = new QVBoxLayout(group);
    layout->setContentsMargins(8, 4, 8, 6);
    layout->addWidget(content);
    return group;
}

QWidget *EffectDialog::buildForm()
{
    m_damageBox = amountBox(QStringLiteral("damageBox"), MostHP);
    QList<Choice> conditions {{EffectType::None, QString()}};
    for (const EffectKind &kind : conditionKinds())
        conditions << Choice {kind.type, kind.text()};
    m_conditionBox = choiceBox(QStringLiteral("conditionBox"), conditions, EffectType::None);

    auto *grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    for (int column = 0; column < Columns; ++column)
        grid->setColumnStretch(column, 1);
    grid->addWidget(buildOrigin(), 0, 0, 1, 5);
    grid->addWidget(buildAction(), 0, 5, 1, 5);
    grid->addWidget(group(QStringLiteral("damageGroup"), tr("Damage"),
                          hWidget(false, true, label(tr("HP")), m_damageBox)),
                    1, 0, 1, 2);
    grid->addWidget(buildSurges(), 1, 2, 1, 4);
    grid->addWidget(buildHealing(), 1, 6, 1, 4);
    grid->addWidget(group(QStringLiteral("conditionGroup"), tr("Conditions"), m_conditionBox), 2, 0,
                    1, 5);
    grid->addWidget(buildOngoing(), 2, 5, 1, 5);
    grid->addWidget(buildBonus(), 3, 0, 1, Columns);
    grid->addWidget(buildComment(), 4, 0, 1, 5);
    grid->addWidget(buildResistance(), 4, 5, 1, 5);
    grid->addWidget(buildEnd(), 5, 0, 1, 5);
    grid->addWidget(okCancelRow(), 6, 0, 1, Columns);
    return wrap(grid);
}

QGroupBox *EffectDialog::buildOrigin()
{
    m_originBox = new QComboBox;
    m_originBox->setObjectName(QStringLiteral("originBox"));
    m_originBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_originBox->setMinimumContentsLength(NameCharacters);
    if (!isRunning()) {
        m_originBox->addItem(QString());
        m_origins << nullptr;
    }
    const Creature *current = currentCreature();
    const QList<Creature *> everyone =
        theEncounter ? theEncounter->creatures().list() : QList<Creature *>();
    for (Creature *creature : everyone) {
        if (creature->isMonster() && creature != current && creature != m_self)
            continue;
        QString text = shortened(creature->displayName(), LongestName);
        if (creature == m_self && m_somethingSelected)
            text += tr(" (self)");
        else if (creature == current)
            text += tr(" (current)");
        m_originBox->addItem(text);
        m_origins << creature;
    }
    const Creature *first = isRunning() ? current : m_self.data();
    m_originBox->setCurrentIndex(qMax(0, int(m_origins.indexOf(first))));
    // Has no entry in m_origins: an index beyond them gives no origin.
    if (isRunning())
        m_originBox->addItem(tr("Any monster"));
    return group(QStringLiteral("originGroup"), tr("Attacker/Origin"), m_originBox);
}

QGroupBox *EffectDialog::buildAction()
{
    m_actionBox = choiceBox(QStringLiteral("actionBox"),
                            {{NoAction, QString()},
                             {UseActionPoint, tr("Use %1").arg(term(Term::ActionPoint))},
                             {TotalDefence, term(Term::TotalDefence)},
                             {SecondWind, term(Term::SecondWind)},
                             {GainHealingSurge, tr("Gain %1").arg(term(Term::HealingSurge))},
                             {Stabilize, tr("Stabilize")},
                             {AdministerFirstAid, tr("Administer First Aid")}},
                            NoAction);
    m_actionGroup = group(QStringLiteral("actionGroup"), tr("Action"), m_actionBox);
    return m_actionGroup;
}

QGroupBox *EffectDialog::buildSurges()
{
    m_surgeBox = new QComboBox;
    m_surgeBox->setObjectName(QStringLiteral("surgeBox"));
    m_surgeValueBox = new QSpinBox(this);
    m_surgeValueBox->setObjectName(QStringLiteral("surgeValueBox"));
    fillSurgeBox();

    QLabel *valueLabel = nullptr;
    QWidget *valueBox = nullptr;
    if (m_surgeValueBox->isVisibleTo(this)) {
        valueLabel = label(tr("Value"));
        valueBox = m_surgeValueBox;
    }
    QHBoxLayout *box = hBox(m_surgeBox, valueLabel, valueBox);
    box->setStretchFactor(m_surgeBox, 1);
    return group(QStringLiteral("surgeGroup"), tr("%1s").arg(term(Term::HealingSurge)), wrap(box));
}

void EffectDialog::addSurgeItem(const QString &text, int value)
{
    m_surgeBox->addItem(text, value);
}

void EffectDialog::fillSurgeBox()
{
    int leastLeft = ManySurges;
    int leastMissing = ManySurges;
    QList<int> values; // the distinct ones
    bool hasSurges = !m_targets.isEmpty();
    const QList<Creature *> creatures = targets();
    for (const Creature *target : creatures) {
        if (target->hsValue() == 0) {
            hasSurges = false;
            break;
        }
        if (!values.contains(target->hsValue()))
            values << target->hsValue();
        leastLeft = std::min(leastLeft, target->currHS());
        leastMissing =
            std::min(leastMissing, saturatedDifference(target->maxHS(), target->currHS()));
    }
    if (!hasSurges) {
        addSurgeItem(QString(), 0);
        m_surgeBox->setEnabled(false);
        m_surgeValueBox->setEnabled(false);
        return;
    }
    if (values.size() > 1) {
        std::sort(values.begin(), values.end());
        fillMixedSurges(values, leastMissing > 0, leastLeft > 0);
        return;
    }
    for (int surges = std::min(leastMissing, MostSurgeItems); surges > 0; --surges)
        addSurgeItem(gainText(surges), surges);
    addSurgeItem(QString(), 0);
    m_surgeBox->setCurrentIndex(m_surgeBox->count() - 1);
    for (int surges = 1; surges <= std::min(leastLeft, MostSurgeItems); ++surges)
        addSurgeItem(useText(surges, values.first()), -surges);
    // The usual range, or a larger one if the value is above it, because the form heals by this
    // number.
    m_surgeValueBox->setMaximum(std::max(m_surgeValueBox->maximum(), values.first()));
    m_surgeValueBox->setValue(values.first());
    m_surgeValueBox->selectAll();
}

void EffectDialog::fillMixedSurges(const QList<int> &values, bool canGain, bool canSpend)
{
    if (canGain)
        addSurgeItem(gainText(1), 1);
    addSurgeItem(QString(), 0);
    m_surgeBox->setCurrentIndex(m_surgeBox->count() - 1);
    if (canSpend) {
        addSurgeItem(tr("Use 1 (+%1 HP)").arg(valuesText(values)), OwnSurge);
        addSurgeItem(tr("Lose 1"), -1);
    }
    m_surgeValueBox->setEnabled(false);
    m_surgeValueBox->hide();
}

QGroupBox *EffectDialog::buildHealing()
{
    m_healBox = amountBox(QStringLiteral("healBox"), MostHP);
    m_tempBox = new QSpinBox;
    m_tempBox->setObjectName(QStringLiteral("tempBox"));
    return group(QStringLiteral("healGroup"), tr("Healing"),
                 hWidget(false, true, label(tr("HP")), m_healBox, label(tr("Temp")), m_tempBox));
}

QGroupBox *EffectDialog::buildOngoing()
{
    m_ongoing = amountPair(QStringLiteral("ongoing"), ongoingPair, {2, 5, 10, 15}, MostOngoing);
    return group(QStringLiteral("ongoingGroup"), tr("Ongoing"), pairRow(m_ongoing));
}

QGroupBox *EffectDialog::buildBonus()
{
    m_effect = amountPair(QStringLiteral("effect"), modifierPair, {2, 5, 10}, MostBonus);
    m_allDefensesButton = attributeButton(QStringLiteral("allDefensesButton"), tr("All Defenses"));
    m_hitDamageButton = attributeButton(QStringLiteral("hitDamageButton"), tr("Hit && Damage"));

    auto *grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(m_effect.box, 0, 0);
    grid->addWidget(m_effect.amount, 0, 1);
    addAttribute(grid, AC, 0, 2);
    addAttribute(grid, Fortitude, 0, 4);
    addAttribute(grid, Reflex, 0, 6);
    addAttribute(grid, Will, 0, 8);
    grid->addWidget(m_allDefensesButton, 1, 0);
    grid->addWidget(m_hitDamageButton, 1, 1);
    addAttribute(grid, Hit, 1, 2);
    addAttribute(grid, Damage, 1, 4);
    addAttribute(grid, SavingThrows, 1, 6, 3);
    return group(QStringLiteral("bonusGroup"), tr("Bonus/Penalty"), wrap(grid));
}

void EffectDialog::addAttribute(QGridLayout *grid, Attribute attribute, int row, int column,
                                int span)
{
    const QString text = Effect::tr(attributeKinds[attribute].name);
    static constexpr const char *Names[AttributeCount] = {
        "acCheck",  "fortitudeCheck", "reflexCheck",      "willCheck",
        "hitCheck", "damageCheck",    "savingThrowsCheck"};
    auto *check = new QCheckBox;
    check->setObjectName(QLatin1String(Names[attribute]));
    check->setAccessibleName(text);
    m_attributes[attribute] = check;
    auto *name = new ClickableLabel(text, check);
    name->setMinimumWidth(AttributeLabelWidth);
    name->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(name, row, column, 1, span);
    grid->addWidget(check, row, column + span);
}

QPushButton *EffectDialog::attributeButton(const QString &objectName, const QString &text)
{
    auto *button = new QPushButton(text);
    button->setObjectName(objectName);
    // Wider than this only if the desktop's font needs it.
    const int textWidth = button->fontMetrics().size(Qt::TextShowMnemonic, text).width();
    button->setFixedSize(std::max(AttributeButtonSize.width(), textWidth + AttributeButtonMargin),
                         AttributeButtonSize.height());
    // Return on it presses it instead of accepting the dialog.
    button->setAutoDefault(true);
    return button;
}

QGroupBox *EffectDialog::buildComment()
{
    m_commentEdit = new QLineEdit;
    m_commentEdit->setObjectName(QStringLiteral("commentEdit"));
    return group(QStringLiteral("commentGroup"), tr("Custom Condition/Effect or Add Comment"),
                 m_commentEdit);
}

QGroupBox *EffectDialog::buildResistance()
{
    m_resVul = amountPair(QStringLiteral("resVul"), resistPair, {2, 5, 10, 15}, MostResistance);
    return group(QStringLiteral("resVulGroup"), tr("Resist/Vulnerable"), pairRow(m_resVul));
}

QGroupBox *EffectDialog::buildEnd()
{
    QList<Choice> choices {{NoEnd, QString()}};
    for (const EffectDuration &duration : effectDurations())
        choices << Choice {duration.end, Effect::tr(duration.choice)};
    m_endBox = choiceBox(QStringLiteral("endBox"), choices, NoEnd);
    m_endBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_endBox->setMinimumContentsLength(NameCharacters);
    return group(QStringLiteral("endGroup"), tr("End Condition"), m_endBox);
}

void EffectDialog::connectForm()
{
    const auto onActivated = [this](QComboBox *box, void (EffectDialog::*slot)()) {
        connect(box, &QComboBox::activated, this, slot);
    };
    const auto onValueChanged = [this](QSpinBox *box, void (EffectDialog::*slot)()) {
        connect(box, &QSpinBox::valueChanged, this, slot);
    };
    onActivated(m_originBox, &EffectDialog::originTouched);
    onActivated(m_actionBox, &EffectDialog::actionTouched);
    onValueChanged(m_damageBox, &EffectDialog::damageTouched);
    onActivated(m_surgeBox, &EffectDialog::healingTouched);
    onValueChanged(m_surgeValueBox, &EffectDialog::healingSurgeValueTouched);
    onValueChanged(m_healBox, &EffectDialog::healingTouched);
    onValueChanged(m_tempBox, &EffectDialog::healingTouched);
    onActivated(m_conditionBox, &EffectDialog::conditionTouched);
    onActivated(m_ongoing.box, &EffectDialog::ongoingTouched);
    onValueChanged(m_ongoing.amount, &EffectDialog::ongoingAmountTouched);
    onActivated(m_effect.box, &EffectDialog::effectTouched);
    onValueChanged(m_effect.amount, &EffectDialog::effectAmountTouched);
    onActivated(m_resVul.box, &EffectDialog::resVulTouched);
    onValueChanged(m_resVul.amount, &EffectDialog::resVulAmountTouched);
    onActivated(m_endBox, &EffectDialog::endConditionTouched);
    connect(m_commentEdit, &QLineEdit::textChanged, this, &EffectDialog::applyCommentTouched);
    connect(m_allDefensesButton, &QPushButton::clicked, this, &EffectDialog::onAllDefensesClicked);
    connect(m_hitDamageButton, &QPushButton::clicked, this, &EffectDialog::onHitDamageClicked);
}

// The Tab key goes through the form row by row.
void EffectDialog::chainFocus()
{
    QList<QWidget *> chain {m_originBox,     m_actionBox,      m_damageBox,  m_surgeBox,
                            m_surgeValueBox, m_healBox,        m_tempBox,    m_conditionBox,
                            m_ongoing.box,   m_ongoing.amount, m_effect.box, m_effect.amount};
    for (const Attribute attribute : {AC, Fortitude, Reflex, Will})
        chain << m_attributes[attribute];
    chain << m_allDefensesButton << m_hitDamageButton;
    for (const Attribute attribute : {Hit, Damage, SavingThrows})
        chain << m_attributes[attribute];
    chain << m_commentEdit << m_resVul.box << m_resVul.amount << m_endBox
          << findChild<QPushButton *>(QStringLiteral("okButton"))
          << findChild<QPushButton *>(QStringLiteral("cancelButton"));
    // Tab would stop at a field that isn't shown.
    if (!m_surgeValueBox->isVisibleTo(this))
        chain.removeOne(m_surgeValueBox);
    for (int i = 1; i < chain.size(); ++i)
        setTabOrder(chain.at(i - 1), chain.at(i));
}
