// The fields beside the tree of encounters: those of an encounter, and those of a monster in it.
#pragma once

#include <QGroupBox>

#include "windowsanddialogs.h"

class Creature;
class DifficultyBar;
class PreparedEncounter;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
struct EncounterMonster;

// What a field was filled with. A widget may show a text otherwise than it was given, and what the
// user didn't touch must not change by that.
struct GivenText {
    QString given;
    QString shown;

    QString read(const QString &now) const { return now == shown ? given : now; }
};

// Changes nothing itself but the party's size and level, which hold for all encounters.
class EncounterFields : public QGroupBox, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit EncounterFields(QWidget *parent = nullptr);

    // Null empties the fields and disables them. A text that is the same keeps its cursor.
    void setEncounter(const PreparedEncounter *encounter);
    // XP, level and what they mean for the party. Null shows nothing.
    void showNumbers(const PreparedEncounter *encounter);
    // What the box of adventures offers; its text stays.
    void setAdventures(const QStringList &adventures);
    // Of the heroes in the library; 0 if there are none.
    void setHeroesLevel(int level);
    void showPartySize();
    // Focus and selection for a new name.
    void editName();

    QString name() const;
    QString adventure() const;
    QString description() const;
    int partySize() const;
    // The level that was typed, or else that of the heroes; 0 without either.
    int partyLevel() const;

Q_SIGNALS:
    // Emitted at each key.
    void doDataChanged();
    // A field is left, or Enter pressed.
    void doDataEntered();
    void doPartySizeChanged();
    void doPartyLevelChanged();

private:
    void buildLevels();

    QLineEdit *m_name;
    QComboBox *m_adventure;
    QLineEdit *m_file;
    QPlainTextEdit *m_description;
    QLabel *m_xp;
    QLabel *m_xpForEach;
    QLabel *m_level;
    DifficultyBar *m_bar;
    QLabel *m_difficulty;
    QComboBox *m_partySize;
    QSpinBox *m_partyLevel;
    GivenText m_givenName;
    GivenText m_givenAdventure;
    GivenText m_givenDescription;
    int m_heroesLevel = 0;
};

class EncounterMonsterFields : public QGroupBox, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit EncounterMonsterFields(QWidget *parent = nullptr);

    // Null for no monster. Of a group, as which `isGroup` shows it, ID, alias and hidden mark can't
    // be edited. `original` is null for a template that is missing.
    void setMonster(const EncounterMonster *monster, bool isGroup, const Creature *original,
                    int partyLevel);
    // The ID as it was typed can't be taken.
    void setIdRefused(bool refused);
    // Focus and selection for another ID.
    void editId();
    void setScheme(int scheme);

    QString id() const;
    QString alias() const;
    bool isHiddenAtStart() const;
    // PreparedEncounter::IdScheme
    int scheme() const;
    // IDs are to be unique for the entire encounter.
    bool isPerEncounter() const;

Q_SIGNALS:
    void doNameChanged();
    void doDataChanged();
    void doDataEntered();
    void doAddClicked();
    void doRemoveClicked();

private:
    void buildNumbering();

    QLineEdit *m_name;
    QLabel *m_xp;
    QLabel *m_level;
    QLabel *m_fit;
    QLineEdit *m_id;
    QLineEdit *m_alias;
    QCheckBox *m_hidden;
    QPushButton *m_add;
    QPushButton *m_remove;
    QComboBox *m_numbering;
    QComboBox *m_uniqueIds;
    GivenText m_givenId;
    GivenText m_givenAlias;
};
