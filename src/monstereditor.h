// The left side of the Monster Manager: the monsters of the library, the text of the selected one,
// and files to import.
#pragma once

#include <QGroupBox>
#include <QPointer>

#include "windowsanddialogs.h"

class Creature;
class CreatureDisplay;
class DoublePlainTextEdit;
class ImportPanel;
class LibraryPane;
class QLabel;
class QPushButton;
class QTabWidget;
struct CreatureData;

// Changes the Monsters, and the Encounters that name them, in memory only. Files that are imported
// are copied at once.
class MonsterEditor : public QGroupBox, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit MonsterEditor(QWidget *parent = nullptr);

    // Null without one.
    Creature *selected() const;
    // The collection changed: list, text and panel anew, the selection kept where its monster is
    // still there.
    void refresh();
    void refreshImport();
    void focusOnList();
    // Whether there is an encounter that a monster could be added to.
    void setCanAdd(bool can);

Q_SIGNALS:
    void doAdd(Creature *monster);
    // Name, level or XP of a template changed, or one was deleted.
    void doTemplatesChanged();
    // Something that the counters of Monsters tell.
    void doChanged();

public Q_SLOTS:
    void onTemplateSelectionChanged();
    void onTemplateTabChanged(int tab);
    void onNewTemplate();
    void onNewAndPasteTemplate();
    void onDeleteTemplate();
    void onAddTemplate();
    void onTemplateStatsChanged();
    void onTemplatePortraitClicked();
    void onImport(const QStringList &paths);

private:
    enum Tab { EditTab, ViewTab, ImportTab };
    enum class Import { Taken, Current, NeedsALook, Refused };

    QPushButton *addButton(const QString &text, const QString &tip, const char *name,
                           void (MonsterEditor::*slot)());
    QWidget *createButtons();
    QWidget *createTabs();
    // Where `pasted` isn't null, one step of undo in the text brings it back.
    void addNew(std::unique_ptr<Creature> creature, const QString &pasted = QString(),
                const QStringList &changes = {});
    void showText(const QString &text);
    void applyText(Creature *creature, const QString &text);
    void correctText(const QPointer<Creature> &creature, const QString &text);
    // False when the user keeps to a name that is taken. Otherwise the record may have another name
    // than it came with, and then so has its text.
    bool checkDuplicate(const QString &oldName, CreatureData &record, const Creature *except);
    struct Imported {
        QPointer<Creature> creature;
        QStringList changes; // of the tidying
    };
    // Shows nothing of it.
    Import importFile(const QString &path, Imported &last);
    static Import resultOf(const Creature &creature);
    void tellImport(const QMap<Import, QStringList> &files);
    void updateButtons();
    // What was read of the text, under it and beside it. `changes`: what a paste had tidied.
    void tellReading(const QStringList &changes = {});
    void goToNotUnderstood();

    LibraryPane *m_list;
    DoublePlainTextEdit *m_text;
    CreatureDisplay *m_display;
    ImportPanel *m_import;
    QTabWidget *m_tabs;
    QLabel *m_reading;
    qsizetype m_notUnderstood = -1; // the first such line
    QPushButton *m_delete = nullptr;
    QPushButton *m_add = nullptr;
    bool m_canAdd = false;
    bool m_templateBusy = false; // the text is set by us
};
