// The rich texts of a creature in lists and panels.
#include <QGuiApplication>

#include "coreobjects.h"
#include "creatures.h"
#include "datatable.h"
#include "effect.h"
#include "encounter.h"
#include "tables.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

QString blue(const QString &text)
{
    return u"<font color=blue>%1</font>"_s.arg(text);
}

QString red(const QString &text)
{
    return u"<font color=red>%1</font>"_s.arg(text);
}

} // namespace

class TestSummary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void playersNames();
    void defences();
    void status_data();
    void status();
    void conditionsOfTheTurn();
    void health();
    void playersHealth();
    void actionPoints();
    void savingThrows();
    void initiative();
    void abilities();

private:
    // A bonus or, with a negative amount, a penalty to all that can be modified.
    void modifyAll(Creature *creature, int amount);

    std::unique_ptr<CoreObjects> m_objects;
    std::unique_ptr<Creature> m_aria;
    std::unique_ptr<Creature> m_rat;
    std::vector<std::unique_ptr<Effect>> m_effects;
};

void TestSummary::init()
{
    failOnWarnings();
    m_objects = std::make_unique<CoreObjects>();
    m_aria = makeCharacter(u"Aria"_s);
    m_rat = makeMonster(u"Rat"_s, u"1"_s);
}

void TestSummary::cleanup()
{
    m_effects.clear();
    m_aria.reset();
    m_rat.reset();
    m_objects.reset();
}

void TestSummary::modifyAll(Creature *creature, int amount)
{
    m_effects.push_back(std::make_unique<Effect>(
        nullptr, creature, amount < 0 ? EffectType::Penalty : EffectType::Bonus, EffectEnd::Special,
        QString(), std::abs(amount), EffectedAttributes::fromFlags(127)));
    creature->addEffect(m_effects.back().get());
}

void TestSummary::playersNames()
{
    for (Creature *creature : {m_aria.get(), m_rat.get()})
        creature->setAlias(u"Shade"_s);
    QCOMPARE(m_aria->playersName(), u"Aria"_s);
    QCOMPARE(m_rat->playersName(), u"Rat (1)"_s);
    for (Creature *creature : {m_aria.get(), m_rat.get()})
        creature->setAliasMode(1);
    QCOMPARE(m_aria->playersName(), u"Shade"_s);
    QCOMPARE(m_rat->playersName(), u"Shade (1)"_s);
    m_rat->setAlias(QString());
    QCOMPARE(m_rat->playersName(), u" (1)"_s);
}

void TestSummary::defences()
{
    const auto textOf = [](const QStringList &row) -> QString {
        const auto hero = makeCharacter(u"Hero"_s);
        CreatureData data = hero->data();
        data.armourClass = row[0].toInt();
        data.will = 13;
        hero->assign(data);
        Effect effect(nullptr, hero.get(), EffectType::Bonus, EffectEnd::Special, QString(),
                      row[1].toInt(), {.ac = true});
        Effect toWill(nullptr, hero.get(), EffectType::Bonus, EffectEnd::Special, QString(), 1,
                      {.will = true});
        hero->addEffect(&effect);
        hero->addEffect(&toWill);
        const QString compact = hero->defencesText(true);
        const QString form = u"<b>AC</b>%1 <b>F</b>- <b>R</b>- <b>W</b>"_s + blue(u"14"_s);
        const QString figure = compact.mid(9, compact.indexOf(u" <b>F") - 9);
        return compact == form.arg(figure) ? figure : compact;
    };
    QCOMPARE(differences(u"defences"_s, 3, textOf), QString());
    QCOMPARE(m_aria->defencesText(false),
             u"<b>AC </b>-; <b>Fort </b>-; <b>Reflex </b>-; <b>Will </b>-"_s);
}

void TestSummary::status_data()
{
    addColumns<bool, int, bool, bool, QString, QString>(
        {"isMonster", "damage", "disabled", "stable", "expected", "rich"});
    const auto row = [](bool isMonster, int damage, bool disabled, bool stable, const char *text) {
        const QString expected = QLatin1String(text);
        QTest::newRow(text) << isMonster << damage << disabled << stable << expected
                            << (isMonster ? QString(u"<b>" + expected + u"</b>") : expected);
    };
    row(false, 0, false, true, "");
    row(false, 31, false, false, "Dying 2/3");
    row(false, 31, false, true, "Stabilized 2/3");
    row(true, 31, false, false, "Dead");
    row(true, 31, true, false, "Disabled");
}

void TestSummary::status()
{
    auto [isMonster, damage, disabled, stable, rich] = fetch<bool, int, bool, bool, QString>(
        {"isMonster", "damage", "disabled", "stable", "rich"});
    Creature *creature = isMonster ? m_rat.get() : m_aria.get();
    creature->setField(&CreatureData::disabled, disabled);
    if (damage > 0)
        creature->takeDamage(damage, nullptr);
    creature->setStable(stable);
    creature->setFailedDeathSaves(2);
    // What a fallen creature does with its turn isn't told.
    if (damage > 0)
        creature->setDelayed(true);
    QTEST(creature->statusText(), "expected");
    QTEST(creature->conditionsText(false, true, false, false), "expected");
    QCOMPARE(creature->conditionsText(true, true, false, false), rich);

    creature->setMissing(true);
    QCOMPARE(creature->statusText(), u"Missing"_s);
    QCOMPARE(creature->conditionsText(false, true, false, false), u"Missing"_s);
    QCOMPARE(creature->conditionsText(true, true, false, false), u"<b>Missing</b>"_s);
    QCOMPARE(creature->conditionsText(true, true, true, false), QString());
}

void TestSummary::conditionsOfTheTurn()
{
    m_aria->setDelayed(true);
    m_aria->setHidden(true);
    QCOMPARE(m_aria->conditionsText(true, true, true, false), u"Delayed; Hidden"_s);
    m_aria->setReadied(true);
    m_aria->takeDamage(20, nullptr);
    modifyAll(m_aria.get(), 2);
    QCOMPARE(m_aria->conditionsText(false, true, true, false),
             QStringLiteral("Delayed; Readied; Hidden; Bloodied; To Hit +2; Damage +2; "
                            "Saving Throws +2"));
    modifyAll(m_aria.get(), -3);
    m_aria->setDelayed(false);
    m_aria->setReadied(false);
    m_aria->setHidden(false);
    QCOMPARE(m_aria->conditionsText(true, true, true, false),
             red(u"Bloodied"_s) + u"; <b>To Hit </b>"_s + red(u"-1"_s) + u"; <b>Damage </b>"_s
                 + red(u"-1"_s) + u"; <b>Saving Throws </b>"_s + red(u"-1"_s));
    QCOMPARE(m_aria->conditionsText(false, false, true, false), u"Bloodied"_s);
    // A preview that brings a monster down isn't told where it isn't asked for.
    m_rat->setRestAdditions(-30, 0, 0);
    QCOMPARE(m_rat->conditionsText(false, true, true, false), u"Dead"_s);
    QCOMPARE(m_rat->conditionsText(false, true, true, true), u"Bloodied"_s);
}

void TestSummary::health()
{
    const auto textOf = [](const QStringList &row) -> QString {
        const QList<int> given = numbers(row);
        const auto hero = makeCharacter(u"Hero"_s);
        hero->takeDamage(given[0], nullptr);
        hero->setTempHP(given[1]);
        hero->setRestAdditions(given[2], given[3], given[4]);
        // A character is the same one in the library and in the fight.
        return hero->healthText(true) == hero->healthText(false)
            ? hero->healthText(false).remove(u"<b>HP </b>"_s)
            : hero->healthText(true);
    };
    QCOMPARE(differences(u"health"_s, 6, textOf), QString());
}

void TestSummary::playersHealth()
{
    m_rat->takeDamage(6, nullptr);
    m_rat->heal(2, 0);
    QCOMPARE(m_rat->playersHealthText(false), QString());
    QCOMPARE(m_rat->playersHealthText(true), u"Damage 6; Heals 1"_s);
    QCOMPARE(m_aria->playersHealthText(true), u"<b>HP </b>30/30; <b>HS </b>8; <b>AP </b>1"_s);
    m_aria->setTempHP(4);
    m_aria->heal(0, 3);
    QCOMPARE(m_aria->playersHealthText(false), u"<b>HP </b>30+4/30; <b>HS </b>5/8; <b>AP </b>1"_s);
    m_aria->setField(&CreatureData::maxHS, 0);
    m_aria->setRestAdditions(-8, 2, 0);
    QCOMPARE(m_aria->playersHealthText(false),
             QString(u"<b>HP </b><b>" + red(u"22"_s) + u"</b>+<b>" + blue(u"6"_s)
                     + u"</b>/30; <b>AP </b>1"));
}

void TestSummary::actionPoints()
{
    const QString speed = u"<b>Speed </b>-; <b>Initiative </b>+2"_s;
    QCOMPARE(m_aria->speedLine(false), QString(speed + u"; <b>AP </b>1"));
    theEncounter->setCurrentIndex(0);
    m_aria->useActionPoint(1);
    QCOMPARE(m_aria->speedLine(false), QString(speed + u"; <b>AP </b>0/1"));
    QCOMPARE(m_aria->speedLine(true), QString(speed + u"; <b>AP </b>1"));
    m_aria->setRestAP(1);
    QCOMPARE(m_aria->speedLine(false),
             QString(speed + u"; <b>AP </b><b>" + blue(u"1"_s) + u"</b>/1"));
}

void TestSummary::savingThrows()
{
    const auto textOf = [this](const QStringList &row) -> QString {
        const auto hero = makeCharacter(u"Hero"_s);
        hero->setField(&CreatureData::savingThrows, row[0]);
        if (row[1].toInt() != 0)
            modifyAll(hero.get(), row[1].toInt());
        int total = -99;
        bool isComplex = false;
        const QString text = hero->savingThrowsText(false, &total, &isComplex);
        const QString compact = hero->savingThrowsText(true);
        m_effects.clear();
        if (compact
            != (row[0].isEmpty() ? QString()
                                 : QString(u"<b>Saving Throws </b>" + row[0].toHtmlEscaped())))
            return compact;
        return u"%1|%2|%3"_s.arg(text, QString::number(total), QVariant(isComplex).toString());
    };
    QCOMPARE(differences(u"savingthrows"_s, 3, textOf), QString());
}

void TestSummary::initiative()
{
    const auto textsOf = [this](const QStringList &row) -> QString {
        m_rat->setField(&CreatureData::initBonus, row[0].toInt());
        m_rat->setInitRoll(row[1].toInt());
        theEncounter->setCurrentIndex(row[2] == u"true" ? 0 : -1);
        QStringList texts;
        for (int mode = 0; mode < 3; ++mode)
            texts << m_rat->initiativeText(row[3] == u"true", mode);
        return texts.join(u'|');
    };
    QCOMPARE(differences(u"initiative"_s, 5, textsOf), QString());
}

void TestSummary::abilities()
{
    const auto textOf = [this](const QStringList &row) -> QString {
        m_aria->setField(&CreatureData::level, row[2].toInt());
        const int modifier = row[1] == u"none" ? NoModifier : row[1].toInt();
        return m_aria->abilityText(u"Str"_s, {row[0].toInt(), modifier}).remove(u"<b>Str </b>"_s);
    };
    QCOMPARE(differences(u"abilities"_s, 4, textOf), QString());
}

MORVANE_TEST_MAIN(QGuiApplication, TestSummary)
#include "tst_summary.moc"
