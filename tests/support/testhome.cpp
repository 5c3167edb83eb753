#include "testhome.h"

#include <QDate>
#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <string_view>

#include "dice.h"
#include "terms.h"

TestHome::TestHome()
{
    const QByteArray root = m_dir.path().toLocal8Bit();
    qputenv("HOME", root);
    qputenv("XDG_CONFIG_HOME", root + "/config");
    qputenv("XDG_DATA_HOME", root + "/data");
    qputenv("XDG_CACHE_HOME", root + "/cache");
    qputenv("XDG_DOCUMENTS_DIR", root + "/Documents");
    // Nor is the desktop that the tests run on asked for anything.
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", root);
    QDir(m_dir.path()).mkpath(QStringLiteral("Documents"));
    Dice::seed(20260101);
    setDefaultTerms();
}

void failOnWarnings()
{
    // All but what the offscreen platform says of each window.
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support)")));
}

namespace {

struct Option {
    std::string_view name;
    std::optional<int> value;
};

Option seedOption {"--seed", {}};
Option countOption {"--count", {}};

} // namespace

void RandomTest::takeArguments(int &argc, char **argv)
{
    for (Option *option : {&seedOption, &countOption}) {
        char **end = argv + argc;
        char **found = std::find(argv, end, option->name);
        if (end - found < 2)
            continue;
        option->value = QByteArray(found[1]).toInt();
        std::copy(found + 2, end + 1, found);
        argc -= 2;
    }
    // A longer run than that of the suite may take its time.
    if (countOption.value)
        qputenv("QTEST_FUNCTION_TIMEOUT", "100000000");
}

unsigned int RandomTest::seed()
{
    return unsigned(seedOption.value.value_or(int(QDate::currentDate().toJulianDay())));
}

int RandomTest::count(int byDefault)
{
    return countOption.value.value_or(byDefault);
}
