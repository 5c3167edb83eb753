#include "encountereditor.h"

EncounterEditor::EncounterEditor(QWidget *parent) : QGroupBox(tr("Encounter"), parent) { }

PreparedEncounter *EncounterEditor::selected() const
{
    return nullptr;
}

void EncounterEditor::addMonster(const Creature & /*monster*/) { }

void EncounterEditor::refresh() { }

void EncounterEditor::refreshTemplates() { }

#include "moc_encountereditor.cpp"
