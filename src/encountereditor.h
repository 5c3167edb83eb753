// The right side of the Monster Manager: the prepared encounters and the fields of the selected
// one.
#pragma once

#include <QGroupBox>

#include "windowsanddialogs.h"

class Creature;
class EncounterFields;
class EncounterListModel;
class EncounterMonsterFields;
class EncounterView;
class PreparedEncounter;
struct EncounterPlace;
class QComboBox;
class QLineEdit;
class QPushButton;
class QScrollArea;

// Changes the Encounters in memory only.
class EncounterEditor : public QGroupBox, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit EncounterEditor(QWidget *parent = nullptr);
    ~EncounterEditor() override;

    // Null without one. Also while a group or a monster of it is selected.
    PreparedEncounter *selected() const;
    // One more monster of the template, into the selected encounter.
    void addMonster(const Creature &monster);
    // The collection changed: tree, boxes of adventures and fields anew, the selection kept where
    // its encounter is still there.
    void refresh();
    // Names, levels or XP of templates changed, or one was deleted or came back.
    void refreshTemplates();

Q_SIGNALS:
    void doSelectionChanged();
    // Something that the counters of Encounters tell.
    void doChanged();

public Q_SLOTS:
    void onFilterChanged(QObject *object);
    void onEncounterAdventureSelected(int index);
    void onEncounterSelectionChanged();
    void onEncounterListUpdated();
    void onNewEncounter();
    void onDeleteEncounter();
    void onNewMonster();
    void onDeleteMonster();
    void onEncounterDataChanged();
    void onPartySizeChanged();
    void onMonsterNameChanged();
    void onMonsterDataChanged();

protected:
    bool event(QEvent *event) override;

private:
    void buildList();
    void connectFields();
    void connectCollections();
    void onDeletePressed();
    // A typed value that couldn't be taken is replaced by the one in force.
    void onDataEntered();
    void removeEncounter(int row);
    void insertMonster(const QString &group, const QString &prefix);
    // What takes the place of what was removed: what follows it in the encounter or else what stood
    // ahead, on the same level of the tree while there is anything.
    EncounterPlace successorOf(const EncounterPlace &removed, int groupsBefore) const;
    void fillFields();
    void fillMonsterFields();
    void fillAdventures();
    // Hands the party's level, typed or that of the heroes, to whatever depends on it.
    void updatePartyLevel();
    void noteChange();

    EncounterListModel *m_model;
    EncounterView *m_view;
    QLineEdit *m_filter;
    QComboBox *m_adventures;
    QPushButton *m_new;
    QPushButton *m_delete;
    QScrollArea *m_fieldArea;
    EncounterFields *m_fields;
    EncounterMonsterFields *m_monsterFields;
    bool m_encounterBusy = false; // the fields are being filled
    bool m_encounterSetting = false; // they are being read, or the tree is being changed
};
