// The form in which one attacker or origin does something to the selected creatures: damage,
// healing, conditions, bonuses and the rest.
#pragma once

#include <QPointer>
#include <optional>

#include "creature.h"
#include "effectedattributes.h"
#include "flatdialog.h"
#include "restpreview.h"

class DisableComboBox;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
struct EffectPair;

// Reads like a form: it makes no event, and its owner asks for what was entered once exec() has
// returned. While it is open its creatures show a preview of the outcome in their live numbers; it
// takes the preview away before exec() returns, whatever ended it.
class EffectDialog : public FlatDialog {
    Q_OBJECT

public:
    // What the origin does besides, or what it does for the target.
    enum Action {
        NoAction,
        UseActionPoint,
        TotalDefence,
        SecondWind,
        Stabilize,
        AdministerFirstAid,
        GainHealingSurge
    };
    enum SpecialChoice {
        NoEnd = -1, // the end condition while there is nothing that could end
        OwnSurge = -1000 // the surge choice of targets whose surge values differ: one surge each
    };

    // With nothing selected the current creature is the target.
    explicit EffectDialog(const QList<Creature *> &selected, QWidget *parent = nullptr);

    // Null for no particular creature.
    Creature *origin() const;
    // A creature that is gone since the form opened is left out.
    QList<Creature *> targets() const;
    Creature *firstTarget() const { return targets().value(0); }
    int damage() const;
    // Surges gained; a negative number is spent, or OwnSurge.
    int surgeChoice() const;
    // 0 when the targets' surge values differ.
    int surgeValue() const;
    // Without the hit points of the surges.
    int healing() const;
    int tempHP() const;
    QString comment() const;
    int condition() const; // EffectType::Code
    // Above 0: regeneration, bonus, resistance; below: ongoing damage, penalty, vulnerability.
    int ongoing() const { return signedAmount(m_ongoing); }
    int effect() const { return signedAmount(m_effect); }
    int resVul() const { return signedAmount(m_resVul); }
    EffectedAttributes attributes() const;
    int endCondition() const; // EffectEnd::Code or NoEnd
    int action() const;

    void done(int result) override;
    void reject() override;
    void onFinished() override;

private Q_SLOTS:
    void originTouched();
    void damageTouched();
    void healingSurgeValueTouched();
    void healingTouched();
    void actionTouched();
    void conditionTouched();
    void ongoingTouched();
    void ongoingAmountTouched();
    void effectTouched();
    void effectAmountTouched();
    void onAllDefensesClicked();
    void onHitDamageClicked();
    void resVulTouched();
    void resVulAmountTouched();
    void applyCommentTouched();
    void endConditionTouched();

private:
    // A box with the usual amounts, and a spin box for any amount.
    struct AmountPair {
        DisableComboBox *box = nullptr;
        QSpinBox *amount = nullptr;
        bool negative = true; // the sign that a typed amount takes
    };
    struct Choice {
        int value;
        QString text;
    };
    // The order of attributeKinds.
    enum Attribute { AC, Fortitude, Reflex, Will, Hit, Damage, SavingThrows, AttributeCount };

    static bool isRunning();
    static Creature *currentCreature();

    // --- the form (effectdialogform.cpp) ---
    DisableComboBox *choiceBox(const QString &objectName, const QList<Choice> &choices, int value);
    QSpinBox *amountBox(const QString &objectName, int max);
    AmountPair amountPair(const QString &name, const EffectPair &kinds, const QList<int> &amounts,
                          int max);
    QWidget *pairRow(const AmountPair &pair);
    QGroupBox *group(const QString &objectName, const QString &title, QWidget *content);
    QWidget *buildForm();
    QGroupBox *buildOrigin();
    QGroupBox *buildAction();
    QGroupBox *buildSurges();
    QGroupBox *buildHealing();
    QGroupBox *buildOngoing();
    QGroupBox *buildBonus();
    QGroupBox *buildComment();
    QGroupBox *buildResistance();
    QGroupBox *buildEnd();
    void addAttribute(QGridLayout *grid, Attribute attribute, int row, int column, int span = 1);
    QPushButton *attributeButton(const QString &objectName, const QString &text);
    void fillSurgeBox();
    void fillMixedSurges(const QList<int> &values, bool canGain, bool canSpend);
    void addSurgeItem(const QString &text, int value);
    static QString gainText(int surges);
    static QString useText(int surges, int surgeValue);
    void connectForm();
    void chainFocus();

    // --- what may be chosen ---
    static bool canUseActionPoint(const Creature *origin);
    void updateActionTitle();
    void updateActionItems();
    void updateEndConditions();
    void updateEndLabels();
    void updateAttributes();
    bool hasAnythingToEnd() const;
    bool isTarget(const Creature *creature) const { return targets().contains(creature); }
    // The only target, or null.
    Creature *singleTarget() const;

    // --- amounts ---
    static int signedAmount(const AmountPair &pair);
    void choiceTouched(AmountPair &pair);
    void amountTouched(AmountPair &pair);
    void toggleAttributes(Attribute first, Attribute last);

    // --- preview ---
    void updatePreview();
    void previewTarget(Creature *target, Creature *origin, int action);
    void previewOrigin(Creature *origin, int action);
    // Change of the target's surges by the surge box.
    int surgeChange() const;
    int healingFor(const Creature *target) const;
    int surgesLeft(const Creature *creature) const;

    QList<QPointer<Creature>> m_targets;
    QPointer<Creature> m_self; // the only target
    QList<QPointer<Creature>> m_origins; // null stands for the blank item
    std::optional<RestPreview> m_preview {std::in_place}; // none once the form has been answered
    bool m_somethingSelected = false;
    int m_lastActionIndex = 0;
    int m_lastEndIndex = 0;

    QComboBox *m_originBox = nullptr;
    QGroupBox *m_actionGroup = nullptr;
    QSpinBox *m_damageBox = nullptr;
    QComboBox *m_surgeBox = nullptr;
    QSpinBox *m_surgeValueBox = nullptr; // stays out of the form when the values differ
    QSpinBox *m_healBox = nullptr;
    QSpinBox *m_tempBox = nullptr;
    DisableComboBox *m_actionBox = nullptr;
    DisableComboBox *m_conditionBox = nullptr;
    AmountPair m_ongoing;
    AmountPair m_effect;
    AmountPair m_resVul;
    QPushButton *m_allDefensesButton = nullptr;
    QPushButton *m_hitDamageButton = nullptr;
    QCheckBox *m_attributes[AttributeCount] = {};
    QLineEdit *m_commentEdit = nullptr;
    DisableComboBox *m_endBox = nullptr;
};
