// Builds and rebuilds the widgets of a creature panel: a head with portrait and headline numbers,
// and the stat block as a column of coloured rows.
#pragma once

#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include "creature.h"
#include "panelrows.h"
#include "smallwidgets.h"
#include "windowsanddialogs.h"

class PanelHead;
class QFrame;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QToolButton;
class QVBoxLayout;

// The widgets change on the refresh tick only, however many updates come in. That saves work, and
// no click deletes the label that handles it. Creatures aren't owned and may go at any time.
class CreatureDisplay : public QObject, public WindowsAndDialogs {
    Q_OBJECT

public:
    // `editing`: the portrait is a button, the stat block shows the file alone and no power can be
    // ticked. `showEffects`: the head has a group of its own for conditions and effects.
    CreatureDisplay(bool editing, bool showEffects, QObject *parent = nullptr);

    // The two widgets of the panel, one above the other. They are the caller's, who puts them into
    // a layout.
    QWidget *head() const { return m_head; }
    ResizableScrollArea *scrollArea() const { return m_scrollArea; }

    // Null shows an empty panel.
    void setCreature(Creature *creature);
    // The first one fills the head; their stat blocks stand below each other.
    void setCreatures(const QList<Creature *> &creatures);
    // Hides the last groups of the head when head and stat block don't fit into `height` pixels
    // together. Their numbers stand in the stat block too.
    void fitHead(int height);
    // The panel is rebuilt on the next tick.
    void markDirty() { m_dirty = true; }

Q_SIGNALS:
    void doPortraitClicked();
    // The alias is to be used or not, or to be asked for.
    void doSetAliasShown(const QList<Creature *> &creatures, bool show);
    void doEditAlias(const QList<Creature *> &creatures);

public Q_SLOTS:
    void onRefreshTimer();
    // `index` is the creature's place in the list that is shown.
    void onSetUseAlias(int index);
    void onEditAlias(int index);

private:
    // The stat block of one creature, and what it was built from.
    struct Block {
        QPointer<Creature> creature;
        QList<PanelRow> rows;
        QString style; // shows by its text which palette was used
        QWidget *widget = nullptr; // of m_body
        QVBoxLayout *layout = nullptr;
    };

    void createHead();
    QLabel *headLabel();
    void addGroup(int row, const QString &title, QLabel *content);
    void createBody();
    void rebuildHead();
    void showPortrait(const Creature *creature);
    static void fitGroup(const QLabel *content);
    void setText(QLabel *label, const QString &html);
    QString subText(const Creature *creature) const;
    void rebuildBody();
    QList<Creature *> shownCreatures() const;
    // `index` is the creature's place in the list.
    void setRows(Block &block, int index, const QList<PanelRow> &rows);
    QFrame *buildRow(QWidget *block, Creature *creature, int index, const PanelRow &row);
    // `used`: the alias is in use.
    void addAlias(QHBoxLayout *line, const PanelRow &row, int index, bool used);
    static void addTexts(QHBoxLayout *line, const PanelRow &row);
    void watch(Creature *creature);
    Creature *creatureAt(int index) const;

    bool m_editing;
    bool m_showEffects;
    bool m_dirty = true;
    bool m_frozen = false; // a replay or a load runs
    QPointer<Creature> m_creature;
    QPointer<Creature> m_shown;
    QList<QPointer<Creature>> m_creatures; // two or more, or none
    QList<Block> m_blocks;

    QPointer<QWidget> m_head;
    QGridLayout *m_grid = nullptr;
    PanelHead *m_lines = nullptr;
    QList<QWidget *> m_groups;
    QPointer<ResizableScrollArea> m_scrollArea;
    QWidget *m_body = nullptr;
    QVBoxLayout *m_bodyLayout = nullptr;
    QToolButton *m_portraitButton = nullptr;
    QLabel *m_portraitLabel = nullptr;
    QLabel *m_nameLabel = nullptr;
    QLabel *m_subLabel = nullptr;
    QLabel *m_levelLabel = nullptr;
    QLabel *m_typeLabel = nullptr;
    QLabel *m_defensesLabel = nullptr;
    QLabel *m_healthLabel = nullptr;
    QLabel *m_actionsLabel = nullptr;
    QLabel *m_effectsLabel = nullptr;
    QPixmap m_selectPortrait;
    QPixmap m_noPortrait;
    QPixmap m_monsterShield;
    QPixmap m_heroShield;
};
