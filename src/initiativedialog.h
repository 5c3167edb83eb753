// Asks for the initiative of each character and each monster or group of monsters.
#pragma once

#include <QPointer>

#include "creature.h"
#include "encounter.h"
#include "flatdialog.h"

class QGridLayout;
class QLabel;
class QSpinBox;
class QToolButton;

// One of the two halves of the dialog, characters or monsters: the rolls, and the form to edit
// them.
class InitiativeData : public QObject, public WindowsAndDialogs {
    Q_OBJECT

public:
    struct Member {
        QPointer<Creature> creature;
        QString name; // without its group
        QString displayName;
        int roll = 0;
        bool untouched = true; // nobody has looked at the roll yet
        QSpinBox *spinBox = nullptr;
    };
    struct Entry {
        bool expanded = false; // each member rolls for itself
        QToolButton *button = nullptr; // null for a character
        QString name; // of the character, or of the monsters' group
        QPointer<Creature> creature; // the character, or the group's template
        int initBonus = 0;
        int roll = 0;
        bool untouched = true;
        QSpinBox *spinBox = nullptr; // null while expanded
        QList<Member> members; // none for a character
    };

    using QObject::QObject;

    // Rolls for the creature. One that takes no turns gets no entry.
    void add(Creature *creature);
    bool hasEntries() const { return !m_entries.isEmpty(); }
    // A form of the entries as they now are; the one built before is no longer followed.
    QWidget *buildForm(int verticalSpacing);
    void setAllExpanded(bool expanded);
    // One item for each name of the form, and one for each creature that takes no turns.
    QList<CreatureInit> items() const;
    QSpinBox *firstSpinBox() const;
    // Whom the box rolls for, null for any other widget, and what the players are told when it gets
    // the focus: at first that a roll is wanted, then the roll.
    Creature *lookAt(const QWidget *box, QString &message);
    // Whom the players are shown for that one. The group's template stands for its monsters where
    // one of them is known by the group's name. Null where all are hidden, or among `kept`.
    Creature *playersCreature(Creature *creature, const QSet<const Creature *> &kept) const;

Q_SIGNALS:
    void doInitValueChanged(Creature *creature, int value);
    void doOpenCloseClicked();

private Q_SLOTS:
    void onInitValueChanged(int value);
    void onOpenCloseClicked();

private:
    void addCharacter(Creature *creature, int roll);
    void addMonster(Creature *creature, int roll);
    QSpinBox *rollBox(int roll, const QString &name);
    QLabel *heading(const Entry &entry);
    void addGroupHeading(QGridLayout *grid, Entry &entry, const QString &text,
                         const QString &toolTip);
    QWidget *buildEntry(Entry &entry);
    void fillCharacter(QGridLayout *grid, Entry &entry);
    void fillGroup(QGridLayout *grid, Entry &entry);
    void fillMembers(QGridLayout *grid, Entry &entry);

    QStringList m_noInitiative;
    QList<Entry> m_entries;
};

class InitiativeDialog : public FlatDialog {
    Q_OBJECT

public:
    explicit InitiativeDialog(const CreatureList &creatures, QWidget *parent = nullptr);

    // They join hidden, or by another name: the players aren't told whom the DM rolls for.
    void keepFromPlayers(const QList<Creature *> &creatures);
    int exec() override;
    QList<CreatureInit> monsterItems() const { return m_monsters.items(); }
    QList<CreatureInit> characterItems() const { return m_characters.items(); }

private Q_SLOTS:
    void onInitFocusChanged(QWidget *old, QWidget *now);
    void onSpinBoxValueChanged(Creature *creature, int value);
    void onOpenCloseClicked();
    void onAllExpandedClicked(bool checked);

private:
    void tellOf(Creature *creature, const QString &message);
    void rebuildForm();
    QWidget *buildForm();
    QWidget *groupBox(const QString &title, const QString &objectName, InitiativeData &entries,
                      int verticalSpacing);

    InitiativeData m_characters;
    InitiativeData m_monsters;
    QSet<const Creature *> m_kept;
    QWidget *m_holder = nullptr;
    QWidget *m_form = nullptr;
};
