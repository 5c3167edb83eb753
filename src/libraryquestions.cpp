#include "libraryquestions.h"

#include <QCoreApplication>

#include "datafolder.h"
#include "messagedialog.h"
#include "text.h"

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("LibraryQuestions", text);
}

} // namespace

bool askDelete(const QString &key, const QString &name, const QString &fileName)
{
    const QString text =
        translated("Do you really want to delete <b>%1</b>?<p>This action can be undone by "
                   "clicking 'Revert All'. The file, '%2', will only be deleted when you click "
                   "'Save All'.");
    return MessageDialog().askHint(key, translated("Delete %1").arg(shortened(name, LongestName)),
                                   text.arg(asHtml(name, LongestName), asHtml(fileName)),
                                   translated("Delete"));
}

bool askRevertAll(const QString &text)
{
    return askMessage(translated("Revert All Changes"), text, translated("Revert All"));
}

void tellUnsaved(const QStringList &names)
{
    if (!names.isEmpty())
        showMessage(translated("Not All Work Saved"), notSavedText(names));
}
