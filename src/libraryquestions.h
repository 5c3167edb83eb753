// What both library windows ask before they change much.
#pragma once

#include <QString>

// `key`: of the setting by which the question isn't asked again. The answer is true then.
bool askDelete(const QString &key, const QString &name, const QString &fileName);
bool askRevertAll(const QString &text);
