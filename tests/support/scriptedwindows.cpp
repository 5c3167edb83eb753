#include "scriptedwindows.h"

ScriptedWindows::ScriptedWindows()
{
    setWindows(this);
}

ScriptedWindows::~ScriptedWindows()
{
    setWindows(nullptr);
}

void ScriptedWindows::showMessage(const QString &title, const QString &text)
{
    shown << title + u'|' + text;
}

bool ScriptedWindows::askMessage(const QString &title, const QString &text, const QString &button)
{
    shown << title + u'|' + text + u'|' + button;
    return !answers.isEmpty() && answers.takeFirst();
}

WindowInterface::FolderAnswer ScriptedWindows::askFolder(const QString &title, const QString &text,
                                                         const QString &button)
{
    shown << title + u'|' + text + u'|' + button;
    return folderAnswers.isEmpty() ? FolderAnswer::Cancel : folderAnswers.takeFirst();
}
