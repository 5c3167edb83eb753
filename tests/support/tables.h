// Tables of inputs and what comes of them, kept as data.
#pragma once

#include <QStringList>
#include <functional>
#include <initializer_list>

// Compares the last column of each row of tests/data/tables/`name`.txt with what `evaluate` makes
// of the others, and lists the rows that differ; empty when none does, and never for an empty
// table. Columns stand between tabs; \n, \r, \t, \\ and \uXXXX are escapes; a line that begins with
// "#" tells about those below it. A row that leaves columns out at its end has them empty.
QString differences(const QString &name, qsizetype columns,
                    const std::function<QString(const QStringList &)> &evaluate);

// Makes the table the data of the running test, with columns of text. A line "# text" names the
// rows below it.
void useTable(const QString &name, std::initializer_list<const char *> columns);

// Each as a number; 0 for what is none.
QList<int> numbers(const QStringList &texts);
// The same of one text, with blanks between two numbers.
QList<int> numbers(const QString &text);
