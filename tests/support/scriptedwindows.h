// Windows for tests without windows: records what was shown and answers questions from a list.
#pragma once

#include <QStringList>

#include "windowinterface.h"

// Registers itself for as long as it lives.
class ScriptedWindows : public NoWindows {
public:
    ScriptedWindows();
    ~ScriptedWindows() override;
    ScriptedWindows(const ScriptedWindows &) = delete;
    ScriptedWindows &operator=(const ScriptedWindows &) = delete;

    void showMessage(const QString &title, const QString &text) override;
    bool askMessage(const QString &title, const QString &text, const QString &button) override;
    FolderAnswer askFolder(const QString &title, const QString &text,
                           const QString &button) override;
    void refreshEncounterActions() override { ++encounterRefreshes; }
    void refreshHistoryActions() override { ++historyRefreshes; }
    void refreshJumpInAction() override { ++jumpInRefreshes; }
    void refreshInitiativeList() override { ++listRefreshes; }
    void setRoundText(const QString &html) override { roundText = html; }
    void setEncounterText(const QString &html) override { encounterText = html; }
    void setLogBehind(bool behind) override { logBehind = behind; }
    void tellReadOnly() override { ++readOnlyTold; }
    void hideForReplay() override { ++hidden; }
    void showAfterReplay() override { --hidden; }

    // "title|text" or "title|text|button" of everything that was shown, in order.
    QStringList shown;
    // Taken from the front; "no" and Cancel when there is none left.
    QList<bool> answers;
    QList<FolderAnswer> folderAnswers;
    int encounterRefreshes = 0;
    int historyRefreshes = 0;
    int jumpInRefreshes = 0;
    int listRefreshes = 0;
    QString roundText;
    QString encounterText;
    bool logBehind = false;
    int readOnlyTold = 0;
    int hidden = 0;
};
