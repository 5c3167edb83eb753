#include "tables.h"

#include <QDebug>
#include <QFile>
#include <QMap>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString unescaped(const QString &text)
{
    static const QMap<QChar, QChar> signs {{u'n', u'\n'}, {u'r', u'\r'}, {u't', u'\t'}};
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != u'\\' || i + 1 == text.size()) {
            result += text.at(i);
        } else if (text.at(++i) == u'u') {
            result += QChar(text.mid(i + 1, 4).toUShort(nullptr, 16));
            i += 4;
        } else {
            result += signs.value(text.at(i), text.at(i));
        }
    }
    return result;
}

QStringList linesOf(const QString &name)
{
    QFile file(QStringLiteral(TEST_DATA "/tables/%1.txt").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no table %s", qPrintable(name));
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

QStringList rowOf(const QString &line, qsizetype columns)
{
    QStringList row = line.split(u'\t');
    for (QString &column : row)
        column = unescaped(column);
    row.resize(columns);
    return row;
}

} // namespace

QString differences(const QString &name, qsizetype columns,
                    const std::function<QString(const QStringList &)> &evaluate)
{
    QString found;
    int rows = 0;
    for (const QString &line : linesOf(name)) {
        if (line.startsWith(u'#'))
            continue;
        ++rows;
        QStringList row = rowOf(line, columns);
        const QString expected = row.takeLast();
        const QString actual = evaluate(row);
        if (actual != expected)
            found += u"\n%1\n  expected: %2\n  actual:   %3"_s.arg(line, expected, actual);
    }
    // In full, as the comparison cuts long texts.
    if (!found.isEmpty())
        qInfo().noquote() << found;
    return rows == 0 ? u"no row in "_s + name : found;
}

void useTable(const QString &name, std::initializer_list<const char *> columns)
{
    for (const char *column : columns)
        QTest::addColumn<QString>(column);
    QString heading;
    for (const QString &line : linesOf(name)) {
        if (line.startsWith(u'#')) {
            heading = line.mid(2);
            continue;
        }
        QTestData &data = QTest::newRow(qPrintable(heading + u": "_s + line));
        for (const QString &text : rowOf(line, qsizetype(columns.size())))
            data << text;
    }
}

QList<int> numbers(const QStringList &texts)
{
    QList<int> result;
    for (const QString &text : texts)
        result.append(text.toInt());
    return result;
}

QList<int> numbers(const QString &text)
{
    return numbers(text.split(u' ', Qt::SkipEmptyParts));
}
