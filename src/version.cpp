#include "version.h"

#include <QDateTime>

QString currentDateTimeText()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-hh-mm-ss"));
}

QString versionText()
{
    return QStringLiteral("1.5.09 Beta");
}

QString fullVersionText()
{
    return QStringLiteral("Version 1.5.09 Beta (Build #5151), 2012-09-14 11:49:09");
}
