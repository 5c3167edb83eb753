// What the core may ask of the windows, so that it never has to know one.
#pragma once

#include <QString>

class WindowInterface {
public:
    virtual ~WindowInterface();

    // --- messages ---
    virtual void showMessage(const QString &title, const QString &text) = 0;
    // True when the user presses the button `button`, false for Cancel.
    virtual bool askMessage(const QString &title, const QString &text, const QString &button) = 0;
    enum class FolderAnswer { Cancel = 0, Accept = 1, SelectFolder = 2 };
    // A question about a data folder, with a button to choose another.
    virtual FolderAnswer askFolder(const QString &title, const QString &text,
                                   const QString &button) = 0;

    // --- states of actions and labels ---
    virtual void refreshEncounterActions() = 0;
    virtual void refreshHistoryActions() = 0;
    virtual void refreshJumpInAction() = 0;
    // A creature's hidden flag or alias changed.
    virtual void refreshInitiativeList() = 0;
    // Rich texts, empty for none.
    virtual void setRoundText(const QString &html) = 0;
    virtual void setEncounterText(const QString &html) = 0;
    // The log on disk is behind the fight (a full disk), or has caught up again.
    virtual void setLogBehind(bool behind) = 0;
    // Why the data folder is only looked at, as LogLock tells it; empty when it is written to.
    virtual void setLookOnly(const QString &reason) = 0;
    // All creatures are about to leave the list.
    virtual void clearSelection() = 0;
    // A command was asked for that the folder, which is only looked at, doesn't allow.
    virtual void tellReadOnly() = 0;
    virtual void refreshCharacterList() = 0;
    virtual void refreshTerms() = 0;

    // --- replay ---
    // Hides the windows and stops the refresh timer; showAfterReplay() takes it back.
    virtual void hideForReplay() = 0;
    virtual void showAfterReplay() = 0;
};

// Never null: without windows an object stands in that prints messages to standard error and
// answers "no".
WindowInterface &windows();
// The windows stay the caller's; null puts the stand-in back.
void setWindows(WindowInterface *windows);

// The null object itself, as a base for tests that override a few operations.
class NoWindows : public WindowInterface {
public:
    void showMessage(const QString &title, const QString &text) override;
    bool askMessage(const QString &title, const QString &text, const QString &button) override;
    FolderAnswer askFolder(const QString &title, const QString &text,
                           const QString &button) override;
    void refreshEncounterActions() override { }
    void refreshHistoryActions() override { }
    void refreshJumpInAction() override { }
    void refreshInitiativeList() override { }
    void setRoundText(const QString &) override { }
    void setEncounterText(const QString &) override { }
    void setLogBehind(bool) override { }
    void setLookOnly(const QString &) override { }
    void clearSelection() override { }
    void tellReadOnly() override { }
    void refreshCharacterList() override { }
    void refreshTerms() override { }
    void hideForReplay() override { }
    void showAfterReplay() override { }
};
