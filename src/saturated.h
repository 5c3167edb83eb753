// Arithmetic on numbers that a file or a damaged log may have made extreme: it stops at the ends
// of int, where the plain operators would be undefined.
#pragma once

#include <QtGlobal>
#include <algorithm>
#include <limits>

constexpr int saturated(qint64 value)
{
    return int(std::clamp(value, qint64(std::numeric_limits<int>::min()),
                          qint64(std::numeric_limits<int>::max())));
}

constexpr int saturatedSum(int a, int b)
{
    return saturated(qint64(a) + b);
}

constexpr int saturatedDifference(int a, int b)
{
    return saturated(qint64(a) - b);
}
