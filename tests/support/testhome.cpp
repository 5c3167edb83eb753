#include "testhome.h"

#include <QDir>
#include <QRegularExpression>

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
    QDir(m_dir.path()).mkpath(QStringLiteral("Documents"));
    Dice::seed(20260101);
    setDefaultTerms();
}

void failOnWarnings()
{
    // All but what the offscreen platform says of each window.
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support)")));
}
