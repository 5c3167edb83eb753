// What both library windows ask before they change much, and tell when a file can't be written.
#pragma once

#include <QStringList>

// `key`: of the setting by which the question isn't asked again. The answer is true then.
bool askDelete(const QString &key, const QString &name, const QString &fileName);
bool askRevertAll(const QString &text);
// Says which entries could not be written, once for all of them. Nothing for an empty list.
void tellUnsaved(const QStringList &names);
