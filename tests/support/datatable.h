// The table of a data-driven test, with all of its columns at once.
#pragma once

#include <QTest>

#include <array>
#include <tuple>

template <typename... Types>
using ColumnNames = std::array<const char *, sizeof...(Types)>;

template <typename... Types>
void addColumns(const ColumnNames<Types...> &names)
{
    std::apply([](auto... name) { (QTest::addColumn<Types>(name), ...); }, names);
}

// The values of the current row.
template <typename... Types>
std::tuple<Types...> fetch(const ColumnNames<Types...> &names)
{
    const auto values = [](auto... name) -> std::tuple<Types...> {
        return {*static_cast<Types *>(QTest::qData(name, qMetaTypeId<Types>()))...};
    };
    return std::apply(values, names);
}
