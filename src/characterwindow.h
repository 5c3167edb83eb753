// The Character Creator: the window in which the player characters are kept.
#pragma once

#include <QPointer>
#include <QWidget>

#include "windows.h"
#include "windowsanddialogs.h"

class CharacterForm;
class Creature;
class CreatureDisplay;
class LibraryPane;
class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
enum class CharacterField;
struct CreatureData;

// Changes the Characters in memory only, those of a running fight included. Made behind the core's
// objects, which may go before it. Hidden at first; closing hides it.
class CharacterWindow : public QWidget, public WindowsAndDialogs, public LibraryWindow {
    Q_OBJECT

public:
    explicit CharacterWindow(QWidget *parent = nullptr);
    ~CharacterWindow() override;

    QWidget *libraryWindow() override { return this; }
    void saveAll() override;
    void refresh() override;
    // Null without one.
    Creature *selected() const;
    // Takes what the file of a character builder states. False, and nothing changed, when it can't
    // be read.
    bool importFrom(Creature *creature, const QString &path);

public Q_SLOTS:
    void onCharacterListChanged();
    void onCharacterSelectionChanged();
    // The history, or anybody else, changed a creature; null stands for all.
    void onCreatureChanged(Creature *creature);
    void onNewCharacter();
    void onDeleteCharacter();
    void onCharacterStatsChanged();
    void onWriteableClicked();
    void onSelectPortrait();
    void onNameChanged();
    void onClassChanged();
    void onRaceChanged();
    void onRoleChanged();
    void onLevelChanged();
    void onACChanged();
    void onFortChanged();
    void onReflChanged();
    void onWillChanged();
    void onCurrHPChanged();
    void onHPChanged();
    void onCurrHSChanged();
    void onHSChanged();
    void onSurgeValueChanged();
    void onSpeedChanged();
    void onInitChanged();
    void onCurrAPChanged();
    void onPerceptionChanged();
    void onInsightChanged();
    void onSelectImport();
    void onLinkedClicked();
    void onRefreshImport();
    void onStrChanged();
    void onDexChanged();
    void onWisChanged();
    void onConChanged();
    void onIntChanged();
    void onChaChanged();
    void onAlignmentChanged();
    void onLanguagesChanged();
    void onRevertAll();
    // What can't be written keeps its mark, and is told once.
    void onSaveAll();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QPushButton *addButton(const QString &text, const char *name, void (CharacterWindow::*slot)());
    QWidget *createList();
    QWidget *createEditTab();
    QWidget *createPortrait();
    QWidget *createImport();
    QWidget *createTextTab();
    void connectSignals();
    void onFieldChanged(CharacterField field);
    // Everything but the fields: text, portrait, import, panel, row, buttons.
    void showRest();
    void showAll();
    void showImport(const Creature *creature);
    void showPortrait(const Creature *creature);
    // True for a name that nobody else has. The creature takes the record then, if there is one.
    bool checkDuplicate(Creature *creature, const QString &oldName, const QString &newName,
                        const CreatureData *record = nullptr);
    // The creature stands where its name belongs, and its row shows it.
    void updateRow(Creature *creature);
    void updateButtons();
    void updateTerms();

    LibraryPane *m_list;
    CharacterForm *m_form;
    CreatureDisplay *m_display;
    QTabWidget *m_tabs;
    QPlainTextEdit *m_text;
    QCheckBox *m_writeable;
    QLabel *m_portrait;
    QLabel *m_portraitFile;
    QLabel *m_importFile;
    QLabel *m_importPath;
    QLabel *m_importNote;
    QCheckBox *m_linked;
    QPushButton *m_selectPortrait = nullptr;
    QPushButton *m_selectImport = nullptr;
    QPushButton *m_refreshImport = nullptr;
    QPushButton *m_delete = nullptr;
    QPushButton *m_revert = nullptr;
    QPushButton *m_save = nullptr;
    bool m_updating = false; // the fields are being filled
    bool m_isStale = false; // something changed while the window was hidden
};
