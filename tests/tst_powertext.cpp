// Powers on their way from a reader into a record, and their header lines.
#include <QCoreApplication>

#include "powertext.h"
#include "tables.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class PowerTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void sortsBySection();
    void keepsAnOpeningTextApart();
    void mergesASecondaryAttack();
    void showsAHeader();
    void showsRechargeFaces();
};

static Power power(const QString &name, int section, int icon = 0, const QStringList &details = {})
{
    Power made;
    made.name = name;
    made.section = section;
    made.icon = icon;
    made.details = details;
    return made;
}

void PowerTextTest::sortsBySection()
{
    CreatureData record;
    const QList<std::pair<QString, int>> added = {{u"a"_s, 5}, {u"b"_s, 0}, {u"c"_s, 11},
                                                  {u"d"_s, 5}, {u"e"_s, 2}, {u"f"_s, 4}};
    for (const auto &[name, section] : added)
        addPower(record, power(name, section, 7));
    sortPowers(record);
    QCOMPARE(record.currentPower, 2);
    QString order;
    for (const Power &each : record.powers)
        order += each.name + QString::number(each.section) + u' ';
    QCOMPARE(order, u"e2 b4 f4 a5 d5 c11 "_s);
    QCOMPARE(record.powers.first().icon, 0);
    QCOMPARE(record.powers.last().icon, 7);
}

void PowerTextTest::keepsAnOpeningTextApart()
{
    CreatureData record;
    addPower(record, power(u"Pit"_s, 1, 14, {u"It is deep."_s, u" And wet."_s}));
    Power second = power(u"Lid"_s, 1);
    second.keywords = u"thin"_s;
    addPower(record, second);
    QCOMPARE(record.unplacedText,
             u"<i>Pit<br>It is deep. And wet.<i><br><i>Lid &bull; thin<br><i>"_s);
    QVERIFY(record.powers.isEmpty());
}

void PowerTextTest::mergesASecondaryAttack()
{
    CreatureData record;
    addPower(record, power(u"Lost"_s, 5, 13));
    QVERIFY(record.powers.isEmpty());
    addPower(record, power(u"Late"_s, 9, 4));
    addPower(record, power(u"Bite"_s, 5, 4, {u"1d6"_s}));
    addPower(record, power(u"Secondary"_s, 9, 13, {u"Prone."_s}));
    QCOMPARE(record.powers.size(), 2);
    QCOMPARE(record.powers[1].details, (QStringList {u"1d6"_s, u"Secondary"_s, u"Prone."_s}));
    Power own = power(u"Own"_s, 5, 13);
    own.keywords = u"fire"_s;
    addPower(record, own);
    sortPowers(record);
    QCOMPARE(record.powers.size(), 3);
    QCOMPARE(record.powers[1].name, u"Own"_s);
    QCOMPARE(record.currentPower, 1);
}

void PowerTextTest::showsAHeader()
{
    const auto headerOf = [](const QStringList &row) {
        Power shown = power(u"Bite"_s, 5, row[0].toInt());
        shown.usageKind = row[1].toInt();
        shown.usageState = row[2].toInt();
        shown.keywords = row[4];
        return powerHeaderHtml(shown, row[3] == u"true");
    };
    QCOMPARE(differences(u"powerheaders"_s, 6, headerOf), QString());
}

void PowerTextTest::showsRechargeFaces()
{
    const QString six = u" <img src=':/images/stats/6a.gif'>"_s;
    QCOMPARE(rechargeImages(5), u" <img src=':/images/stats/5a.gif'>"_s + six);
    QCOMPARE(rechargeImages(1), rechargeImages(2));
    QCOMPARE(rechargeImages(6), six);
    QCOMPARE(rechargeImages(7) + rechargeImages(0), QString());
}

MORVANE_TEST_MAIN(QCoreApplication, PowerTextTest)

#include "tst_powertext.moc"
