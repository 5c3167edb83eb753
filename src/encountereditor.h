// The right side of the Monster Manager: the prepared encounters and the fields of the selected
// one.
#pragma once

#include <QGroupBox>

#include "windowsanddialogs.h"

class Creature;
class PreparedEncounter;

// Changes the Encounters in memory only.
class EncounterEditor : public QGroupBox, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit EncounterEditor(QWidget *parent = nullptr);

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
};
