// The fields of a character, as one table: what each is called, which widget it has, and what of
// the creature it shows and sets.
#pragma once

#include <QWidget>
#include <array>

#include "windowsanddialogs.h"

class Creature;
class QBoxLayout;
class QGroupBox;
class QLabel;

enum class CharacterField {
    Name,
    Class,
    Race,
    Role,
    Level,
    Alignment,
    Languages,
    ArmourClass,
    Fortitude,
    Reflex,
    Will,
    CurrentHP,
    HP,
    CurrentSurges,
    Surges,
    SurgeValue,
    Speed,
    Initiative,
    ActionPoints,
    Perception,
    Insight,
    Strength,
    Constitution,
    Dexterity,
    Intelligence,
    Wisdom,
    Charisma,
    Count
};

class CharacterForm : public QWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit CharacterForm(QWidget *parent = nullptr);

    // Fills all fields; null empties and disables them. An invalid character's are disabled too.
    void show(const Creature *creature);
    // Of a text field.
    QString text(CharacterField field) const;
    // Sets the creature's value to that of the field. A name is the caller's to set.
    void store(CharacterField field, Creature &creature);
    // The name takes the focus with its text selected.
    void focusOnName();
    // The words of the rule system changed.
    void updateTerms();

Q_SIGNALS:
    // The user changed the field, or show() filled it. The name tells of it only once it was
    // entered whole.
    void doFieldChanged(CharacterField field);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    enum class Kind { Line, Combo, Number };
    struct Field;
    static const Field fields[];

    static const Field &fieldOf(CharacterField field);
    QWidget *widget(CharacterField field) const { return m_widgets[std::size_t(field)]; }
    QWidget *createWidget(const Field &field);
    // Side by side in that many columns, each of which is read downwards.
    QGroupBox *createGroup(const QString &title, const QList<CharacterField> &members,
                           int columns = 1);
    QWidget *createTopFields();
    QLabel *labelFor(CharacterField field);
    void fill(const Field &field, const Creature *creature);

    std::array<QWidget *, std::size_t(CharacterField::Count)> m_widgets {};
    QLabel *m_surgeValueLabel = nullptr;
};
