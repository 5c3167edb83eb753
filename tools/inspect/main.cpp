// morvane-inspect: prints what the system makes of a data folder or a file, as JSON.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cstdio>
#include <optional>

#include "creaturereport.h"
#include "encounterreport.h"
#include "fightreport.h"
#include "global.h"
#include "history.h"
#include "library.h"
#include "paths.h"
#include "safefile.h"
#include "terms.h"

namespace {

constexpr int exitRefused = 2;

int refuse(const QString &reason)
{
    std::fprintf(stderr, "morvane-inspect: %s\n", qUtf8Printable(reason));
    return exitRefused;
}

int refuseUsage()
{
    return refuse(QStringLiteral("usage: fight DATAFOLDER [--at N] | creature FILE... | "
                                 "encounters DATAFOLDER [--party N]"));
}

int print(const QJsonDocument &document)
{
    const QByteArray json = document.toJson();
    std::fwrite(json.constData(), 1, size_t(json.size()), stdout);
    return 0;
}

// A data folder and one optional number behind `option`, in either order.
struct FolderArguments {
    QString folder;
    std::optional<int> number;
};

std::optional<FolderArguments> parseFolder(const QStringList &arguments, const QString &option)
{
    FolderArguments result;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == option && !result.number) {
            bool isNumber = false;
            result.number = arguments.value(++i).toInt(&isNumber);
            if (!isNumber)
                return std::nullopt;
        } else if (result.folder.isEmpty() && !arguments[i].startsWith(QStringLiteral("--"))) {
            result.folder = arguments[i];
        } else {
            return std::nullopt;
        }
    }
    if (result.folder.isEmpty())
        return std::nullopt;
    return result;
}

// As the program reads it: nothing of a giant.
bool readCreatureFile(const QString &path, QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    content = file.size() > LargestText ? QByteArray() : file.readAll();
    return file.error() == QFile::NoError;
}

// A pipe would keep the program waiting.
bool isReadableLog(const QString &path)
{
    return QFileInfo(path).isFile() && QFile(path).open(QIODevice::ReadOnly);
}

int inspectFight(const QStringList &arguments)
{
    const auto parsed = parseFolder(arguments, QStringLiteral("--at"));
    if (!parsed)
        return refuseUsage();
    if (!QDir(parsed->folder).exists())
        return refuse(QStringLiteral("no such folder: ") + parsed->folder);

    const QString folder = QDir(parsed->folder).absolutePath();
    if (QFile::exists(historyPath(folder)) && !isReadableLog(historyPath(folder)))
        return refuse(QStringLiteral("cannot read ") + historyPath(folder));

    const Library library(folder);
    const bool known = theHistory->load();
    const int at = parsed->number.value_or(theHistory->position());
    if (at < -1 || at >= theHistory->eventCount())
        return refuse(QStringLiteral("the log has no position %1").arg(at));
    theHistory->moveTo(at);
    return print(QJsonDocument(fightReport(known)));
}

int inspectCreatures(const QStringList &files)
{
    if (files.isEmpty())
        return refuseUsage();
    QJsonArray reports;
    for (const QString &path : files) {
        QByteArray content;
        if (!readCreatureFile(path, content))
            return refuse(QStringLiteral("cannot read ") + path);
        reports.append(creatureReport(path, content));
    }
    return print(QJsonDocument(reports));
}

int inspectEncounters(const QStringList &arguments)
{
    const auto parsed = parseFolder(arguments, QStringLiteral("--party"));
    if (!parsed || parsed->number.value_or(1) < 1)
        return refuseUsage();
    if (!QDir(parsed->folder).exists())
        return refuse(QStringLiteral("no such folder: ") + parsed->folder);

    if (parsed->number)
        setPartySize(*parsed->number);
    const Library library(QDir(parsed->folder).absolutePath());
    return print(QJsonDocument(encounterReport()));
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    dataReadOnly = true;
    setDefaultTerms();
    QStringList arguments = application.arguments().mid(1);
    if (arguments.isEmpty())
        return refuseUsage();
    const QString command = arguments.takeFirst();
    if (command == QStringLiteral("fight"))
        return inspectFight(arguments);
    if (command == QStringLiteral("creature"))
        return inspectCreatures(arguments);
    if (command == QStringLiteral("encounters"))
        return inspectEncounters(arguments);
    return refuseUsage();
}
