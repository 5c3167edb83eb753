// links: morvane_reports
// Monsters and characters from XML: what is taken, what is refused, and how a character follows its
// file.
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QJsonDocument>

#include "characters.h"
#include "coreobjects.h"
#include "creature.h"
#include "creaturereport.h"
#include "creaturetext.h"
#include "encounter.h"
#include "encountercommands.h"
#include "history.h"
#include "monsters.h"
#include "monsterxmlhandler.h"
#include "powertext.h"
#include "statblockhandler.h"
#include "tables.h"
#include "testdata.h"
#include "testhome.h"
#include "vitalityevents.h"
#include "xmlhandler.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes down each call.
class Recorder : public XmlHandler {
public:
    QStringList calls;
    QString endsAfter; // an attribute whose value() answers false

protected:
    void onBegin() override { calls << u"begin "_s + path(); }
    void onEnd() override { calls << u"end "_s + path(); }
    bool value(const QString &path, const QString &text) override
    {
        calls << path + u' ' + text;
        return endsAfter.isEmpty() || !path.endsWith(endsAfter);
    }
};

Power powerOf(const QString &elements)
{
    const QString text =
        u"<Monster xsi:type=\"Monster\"><Name>Rat</Name><Level>1</Level><Powers><MonsterPower>"
        u"<Name>Bite</Name>%1</MonsterPower></Powers></Monster>"_s.arg(elements);
    CreatureData data;
    MonsterXmlHandler::parse(text.toUtf8(), data, {});
    return data.powers.value(0);
}

QString heroFile(const QString &name, int hitPoints, const QString &more = {})
{
    return u"<D20Character><CharacterSheet><Details><name> %1 </name><Level> 3 </Level>%3</Details>"
           u"<StatBlock><Stat value=\" %2 \"><alias name=\"Hit Points\"/></Stat></StatBlock>"
           u"</CharacterSheet></D20Character>"_s.arg(name, QString::number(hitPoints), more);
}

} // namespace

class XmlImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void refusesBombs();
    void readsFiles();
    void readsUsage();
    void readsActionsAndTypes();
    void keepsTheOrderOfAttacks();
    void leavesOutMadeUpDamage();
    void escapesAPowersTexts();
    void readsHeroes();
    void takesAFreeName();
    void followsItsFile();
    void knowsACurrentImport();

private:
    Creature *hero(const QString &name) const;
    Creature *addLinkedHero() const;

    std::unique_ptr<TestDataFolder> m_folder;
    std::unique_ptr<CoreObjects> m_objects;
};

void XmlImportTest::init()
{
    failOnWarnings();
    m_folder = std::make_unique<TestDataFolder>();
    m_objects = std::make_unique<CoreObjects>();
}

void XmlImportTest::cleanup()
{
    m_objects.reset();
    m_folder.reset();
}

Creature *XmlImportTest::hero(const QString &name) const
{
    return theCharacters->find(name);
}

// Odo, linked to odo.dnd4e, and Pia.
Creature *XmlImportTest::addLinkedHero() const
{
    m_folder->write(u"Characters/odo.txt"_s,
                    u"name=Odo\nimport=odo.dnd4e\nlinked=yes\nclass=Monk\nrace=\nrole=\nlevel=3\n"
                    u"hit-points=30\nhs-value=7\nhs-resources=6\nspeed=6\nap-resources=1\n"_s);
    m_folder->addCharacter(u"Pia"_s);
    m_folder->addMonster(u"Rat"_s);
    m_folder->load();
    return hero(u"Odo"_s);
}

void XmlImportTest::refusesBombs()
{
    QByteArray laughs = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
    QByteArray attributes = "<a";
    for (int i = 1; i < 300000; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QByteArray last = "&e" + QByteArray::number(i - 1) + ';';
        if (i < 40)
            laughs += "<!ENTITY e" + number + " '" + last + last + "'>";
        attributes += " b" + number + "=''";
    }
    const QByteArray bombs[] = {laughs + "]><a>&e39;</a>",
                                "<!DOCTYPE a [<!ENTITY e '" + QByteArray(4000, 'x') + "'>]><a b='"
                                    + QByteArray("&e;").repeated(300000) + "'/>",
                                "<!DOCTYPE a [<!ATTLIST b c CDATA '" + QByteArray(1000000, 'x')
                                    + "'>]><a>" + QByteArray("<b/>").repeated(300000) + "</a>",
                                QByteArray("<Monster>").repeated(1000000),
                                attributes + "/>",
                                "<Monster><Name>Rat</Name>",
                                ""};
    QElapsedTimer timer;
    timer.start();
    for (const QByteArray &bytes : bombs) {
        CreatureData data;
        QVERIFY(!StatBlockHandler::parse(bytes, data, m_folder->path()));
        MonsterXmlHandler::parse(bytes, data, m_folder->path());
        QVERIFY(data.group.isEmpty());
        QCOMPARE(data.statBlock.size(), bytes.size());
    }
    QVERIFY(timer.elapsed() < 60000);
}

// Each file has the record that it must give beside it.
void XmlImportTest::readsFiles()
{
    const QDir folder(QStringLiteral(TEST_DATA "/xml"));
    const QStringList names = folder.entryList({u"*.monster"_s, u"*.dnd4e"_s}, QDir::Files);
    QVERIFY(names.size() >= 3);
    for (const QString &name : names) {
        const QString path = folder.filePath(name);
        const QJsonObject expected = QJsonDocument::fromJson(readFile(path + u".json")).object();
        const QJsonObject report = creatureReport(path, readFile(path));
        QVERIFY(report[u"read"].toBool() && report[u"valid"].toBool());
        const QJsonObject record = report[u"record"].toObject();
        QCOMPARE(record.keys(), expected.keys());
        for (const QString &key : expected.keys())
            QVERIFY2(record[key] == expected[key], qPrintable(name + u": "_s + key));
    }
}

void XmlImportTest::readsUsage()
{
    struct Case {
        QString usage, details;
        int kind;
        QString keywords;
    };
    const QString six = u" <img src=':/images/stats/6a.gif'>"_s;
    const QString recharge = u" \u2022 <b>Recharge</b>"_s;
    const Case cases[] = {
        {u""_s, u""_s, 0, u""_s},
        {u"AT-WILL"_s, u""_s, 1, u" \u2022 <b>At-Will</b>"_s},
        {u"Encounter"_s, u""_s, 2, u" \u2022 <b>Encounter</b>"_s},
        {u"Encounter"_s, u"2/Encounter"_s, 3, u" \u2022 2/Encounter"_s},
        {u"encounter"_s, u""_s, 0, u" \u2022 <b>encounter</b>"_s},
        {u"2/Encounter"_s, u"if hurt"_s, 3, u" \u2022 <b>2/Encounter</b> if hurt"_s},
        {u"Recharge"_s, u""_s, 4, recharge},
        {u"Recharge 6"_s, u""_s, 9, recharge + six},
        {u"Recharge"_s, u" 6 "_s, 9, recharge + six},
        {u"Recharge"_s, u"at dawn"_s, 4, recharge + u" at dawn"_s},
        {u"Recharge"_s, u"2/Encounter"_s, 3, recharge + u" 2/Encounter"_s},
        {u"Recharge 1"_s, u""_s, 4, recharge + rechargeImages(1)},
        {u"Recharge 7"_s, u""_s, 4, recharge}};
    for (const Case &each : cases) {
        const Power power = powerOf(
            u"<Usage>%1</Usage><UsageDetails>%2</UsageDetails>"_s.arg(each.usage, each.details));
        QCOMPARE(power.usageKind, each.kind);
        QCOMPARE(power.keywords, each.keywords);
    }
}

void XmlImportTest::readsActionsAndTypes()
{
    const QList<std::pair<QString, int>> sections = {
        {u"Standard"_s, 5},           {u"move"_s, 6},           {u"Minor 1/round"_s, 7},
        {u"Free Action"_s, 8},        {u"Opportunity"_s, 9},    {u"Immediate Interrupt"_s, 9},
        {u"immediate REACTION"_s, 9}, {u"Trait"_s, 4},          {u"Aura"_s, 4},
        {u"No Action"_s, 11},         {u"Reaction, Free"_s, 8},
    };
    for (const auto &[action, section] : sections)
        QCOMPARE(powerOf(u"<Action>%1</Action>"_s.arg(action)).section, section);
    struct Icon {
        QString type;
        int icon, basic;
    };
    const Icon icons[] = {{u"Melee"_s, 4, 3},   {u"Weapon"_s, 1, 1},       {u"Ranged"_s, 6, 5},
                          {u"Area"_s, 8, 7},    {u"Close"_s, 10, 9},       {u"Aura"_s, 11, 11},
                          {u"melee 2"_s, 4, 3}, {u"CLOSE BURST"_s, 10, 9}, {u"Closed"_s, 0, 0}};
    for (const Icon &each : icons) {
        const QString type = u"<Type>%1</Type>"_s.arg(each.type);
        QCOMPARE(powerOf(type).icon, each.icon);
        QCOMPARE(powerOf(type + u"<IsBasic>true</IsBasic>"_s).icon, each.basic);
    }
}

// Two attacks side by side, and what stands ahead of both wherever the file has it.
void XmlImportTest::keepsTheOrderOfAttacks()
{
    const QString attack = u"<MonsterAttack><Name>%1</Name><Range>%2</Range><Hit><Name>Hit</Name>"
                           "<Description>%3</Description></Hit></MonsterAttack>"_s;
    const QString attacks = u"<Attacks>%1%2</Attacks>"_s.arg(
        attack.arg(u"Claw"_s, u"one"_s, u"a"_s), attack.arg(u"Bite"_s, u"two"_s, u"b"_s));
    const QString trigger = u"<Trigger>now</Trigger>"_s;
    const QString requirement = u"<Requirements>wet</Requirements>"_s;
    const QStringList expected {u"<i>Requirement:</i> wet"_s, u"<i>Trigger:</i> now"_s,
                                u"<i>Claw:</i> one"_s,        u"<i>Hit:</i> a"_s,
                                u"<i>Bite:</i> two"_s,        u"<i>Hit:</i> b"_s};
    for (const QString &text :
         {QString(trigger + requirement + attacks), QString(attacks + trigger + requirement),
          QString(requirement + attacks + trigger)})
        QCOMPARE(powerOf(text).details, expected);
}

// The builder states a damage for each Hit, whether or not something is attacked.
void XmlImportTest::leavesOutMadeUpDamage()
{
    const QString attack =
        u"<Attacks><MonsterAttack><Hit><Damage><Expression>1d6</Expression></Damage>%1</Hit>"
        "<Effect><Damage><Expression>5</Expression></Damage></Effect>%2</MonsterAttack></Attacks>"_s;
    const auto details = [&attack](const QString &description, const QString &range) {
        return powerOf(attack.arg(description, range)).details.join(u'|');
    };
    const QString prone = u"<Description>Prone.</Description>"_s;
    QCOMPARE(details({}, {}), u"<i>Attack:</i> 5"_s);
    QCOMPARE(details(prone, {}), u"<i>Attack:</i> Prone.|<i>Attack:</i> 5"_s);
    QCOMPARE(details(prone, u"<Range>Melee 1</Range>"_s),
             u"<i>Attack:</i> Melee 1|<i>Attack:</i> 1d6 Prone.|<i>Attack:</i> 5"_s);
}

void XmlImportTest::escapesAPowersTexts()
{
    const Power power = powerOf(u"<Trigger>HP &lt; 5 &amp; up</Trigger>"_s);
    QCOMPARE(power.details, QStringList {u"<i>Trigger:</i> HP &lt; 5 &amp; up"_s});
}

void XmlImportTest::readsHeroes()
{
    const auto read = [](const QStringList &row) -> QString {
        CreatureData data;
        const QString text = u"<C><Details><name>Odo</name></Details>%1</C>"_s.arg(row[0]);
        if (!StatBlockHandler::parse(text.toUtf8(), data, {}))
            return u"refused"_s;
        return u"%1|%2|%3"_s.arg(data.initAP).arg(data.senses).arg(data.armourClass);
    };
    QCOMPARE(differences(u"herofiles"_s, 2, read), QString());
    // A monster's file stays as broken as it is.
    QVERIFY(powerOf(u"<Type[1]/>"_s).name.isEmpty());
}

void XmlImportTest::takesAFreeName()
{
    Creature *odo = addLinkedHero();
    m_folder->write(u"Characters/odo.dnd4e"_s, heroFile(u"PIA"_s, 40));
    QVERIFY(odo->refreshFromImport(u"odo.dnd4e"_s));
    QCOMPARE(odo->name(), u"PIA 2"_s);
    QCOMPARE(hero(u"pia 2"_s), odo);
    QVERIFY(odo->isModified());
    // Its own name is free for itself.
    QVERIFY(odo->refreshFromImport(m_folder->file(u"Characters/odo.dnd4e"_s)));
    QCOMPARE(odo->name(), u"PIA 2"_s);
    QVERIFY(odo->statBlock().startsWith(u"name=PIA 2\nimport=odo.dnd4e\nlinked=yes\nclass=Monk\n"));

    const QString before = odo->statBlock();
    for (const QString &text : {u""_s, u"<D20Character>"_s, u"name=Odo\n"_s}) {
        m_folder->write(u"Characters/odo.dnd4e"_s, text);
        QVERIFY(!odo->refreshFromImport(u"odo.dnd4e"_s));
        QCOMPARE(odo->statBlock(), before);
    }
    QVERIFY(!odo->refreshFromImport(u"none.dnd4e"_s));
    QVERIFY(!odo->refreshFromImport(QString()));
    m_folder->write(u"Characters/odo.dnd4e"_s, heroFile(QString(80, u'o'), 44));
    QVERIFY(odo->refreshFromImport(u"odo.dnd4e"_s));
    QCOMPARE(odo->name(), u"PIA 2"_s);
    QCOMPARE(odo->maxHP(), 44);
}

void XmlImportTest::followsItsFile()
{
    Creature *odo = addLinkedHero();
    m_folder->write(u"Characters/odo.dnd4e"_s, u"\uFEFF"_s + heroFile(u"Odo"_s, 48));
    const auto saved = [this] { return m_folder->read(u"Characters/odo.txt"_s); };
    theEncounter->setOrder(CreatureList(QList<Creature *> {odo}));
    QVERIFY(takeExtendedRest());
    QCOMPARE(odo->currHP(), 48);
    QVERIFY(!odo->isModified());
    QVERIFY(saved().contains("hit-points=48\r\nhs-value=12\r\n"));

    // With changes of its own, saving is the user's to decide.
    odo->setField(&CreatureData::race, u"Elf"_s);
    m_folder->write(u"Characters/odo.dnd4e"_s, heroFile(u"Odo"_s, 52));
    odo->refreshIfLinked();
    QCOMPARE(odo->maxHP(), 52);
    QVERIFY(odo->isModified());
    QVERIFY(saved().contains("hit-points=48\r\n"));

    odo->setField(&CreatureData::linked, false);
    m_folder->write(u"Characters/odo.dnd4e"_s, heroFile(u"Odo"_s, 60));
    odo->refreshIfLinked();
    QCOMPARE(odo->maxHP(), 52);
}

// What counts is the saved text, but for its portrait: chosen here, or found under another path.
void XmlImportTest::knowsACurrentImport()
{
    const QString files[][2] = {
        {u"rat.monster"_s,
         u"<Monster xsi:type=\"Monster\">%1<Name>Rat</Name><Level>1</Level></Monster>\n"_s},
        {u"rat.txt"_s, u"Iron\nRat Level 1 Brute\n%1HP 9\nSpeed 5\n"_s},
        {u"rat.txt"_s, u"group=Rat\nlevel=1\n%1xp=9\nspeed=5\n"_s}};
    const QString portraits[] = {u"<PortraitFile>rat.png</PortraitFile>"_s, u"Portrait rat.png\n"_s,
                                 u"portrait=rat.png\n"_s};
    for (int i = 0; i < 6; ++i) {
        const auto &[name, form] = files[i / 2];
        const QString text = form.arg(i % 2 == 0 ? QString() : portraits[i / 2]);
        m_folder->write(u"Monsters/"_s + name, text);
        m_folder->write(name, text);
        m_folder->addCharacter(u"Pia"_s);
        m_folder->load();
        Creature *rat = theMonsters->findFile(name);
        const QString outside = m_folder->file(name);
        QVERIFY(rat->importIsCurrent(outside));
        rat->setPortrait(u"pictures/rat.png"_s);
        QVERIFY(rat->save());
        QVERIFY(rat->savedStatBlock().contains(u"pictures/rat.png"));
        QVERIFY2(rat->importIsCurrent(outside), qPrintable(rat->savedStatBlock()));
        rat->setStatBlock(u"Rat"_s);
        QVERIFY(rat->importIsCurrent(outside));
        m_folder->write(
            name, QString(text).replace(u"9"_s, u"8"_s).replace(u"<Level>1"_s, u"<Level>2"_s));
        QVERIFY(!rat->importIsCurrent(outside));
        m_folder->write(name, QString());
        QVERIFY(!rat->importIsCurrent(outside));
    }
    // Faults of a copy are mended as a text comes in.
    m_folder->write(u"Monsters/rat.txt"_s, u"Rat\nLevel 1 Brute\nHP 9\nReflex 5\n"_s);
    m_folder->write(u"rat.txt"_s, u"Rat\nLevel 1 Brute\nHP: 9\nRefl ex 5\n"_s);
    m_folder->load();
    QVERIFY(theMonsters->findFile(u"rat.txt"_s)->importIsCurrent(m_folder->file(u"rat.txt"_s)));
}

MORVANE_TEST_MAIN(QGuiApplication, XmlImportTest)
#include "tst_xmlimport.moc"
