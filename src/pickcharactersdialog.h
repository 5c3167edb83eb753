// Picks the characters of the party, or those who join it in a running encounter.
#pragma once

#include <QPointer>

#include "creature.h"
#include "creaturelist.h"
#include "flatdialog.h"

class QAbstractButton;
class QCheckBox;
class QPushButton;

class PickCharactersDialog : public FlatDialog {
    Q_OBJECT

public:
    // Reads the party and whether it fights from the running encounter.
    explicit PickCharactersDialog(QWidget *parent = nullptr);

    // The party that was picked, or only the newcomers while the encounter runs. Empty when nothing
    // changed.
    CreatureList selectedCharacters() const;

    int widgetCount() const override { return 1; } // as high as there is room
    void onFinished() override { returnPanel(); }
    void accept() override;

private Q_SLOTS:
    void onChecked();
    void onClicked(QAbstractButton *button);

private:
    struct Choice {
        QPointer<Creature> character;
        bool present = false; // in the party when the dialog opened
        QCheckBox *box = nullptr;
    };

    QWidget *buildChoice(Choice &choice);
    QWidget *buildButtons();

    bool m_running;
    bool m_all = false;
    QList<Choice> m_choices;
    QPushButton *m_select = nullptr;
    QPushButton *m_selectAll = nullptr;
};
