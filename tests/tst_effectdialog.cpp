// The dialog of conditions and effects: what it offers, what it shows beforehand, what it logs.
// links: morvane_ui
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

#include "disablecombobox.h"
#include "effect.h"
#include "effectdialog.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "history.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

// As the DM does it: the item first, then the word of it.
void choose(const EffectDialog &form, const char *name, int value)
{
    auto *box = form.findChild<QComboBox *>(QLatin1String(name));
    QVERIFY2(box, name);
    const int index = box->findData(value);
    QVERIFY2(index >= 0,
             qPrintable(QStringLiteral("%1 in %2").arg(value).arg(QLatin1String(name))));
    box->setCurrentIndex(index);
    Q_EMIT box->activated(index);
}

void chooseOrigin(const EffectDialog &form, const QString &text)
{
    auto *box = form.findChild<QComboBox *>(QStringLiteral("originBox"));
    const int index = box->findText(text);
    QVERIFY2(index >= 0, qPrintable(text));
    box->setCurrentIndex(index);
    Q_EMIT box->activated(index);
}

QSpinBox *spin(const EffectDialog &form, const char *name)
{
    return form.findChild<QSpinBox *>(QLatin1String(name));
}

QString current(const EffectDialog &form, const char *name)
{
    return form.findChild<QComboBox *>(QLatin1String(name))->currentText();
}

void comment(const EffectDialog &form, const QString &text)
{
    form.findChild<QLineEdit *>(QStringLiteral("commentEdit"))->setText(text);
}

QStringList items(const EffectDialog &form, const char *name)
{
    const auto *box = form.findChild<QComboBox *>(QLatin1String(name));
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    return texts;
}

// The values of the items that may be chosen, in the order of the box.
QString enabledItems(const EffectDialog &form, const char *name)
{
    const auto *box = form.findChild<DisableComboBox *>(QLatin1String(name));
    QStringList values;
    for (int i = 0; i < box->count(); ++i)
        if (box->isItemEnabled(i))
            values << box->itemData(i).toString();
    return values.join(u' ');
}

QString numbers(const Creature *creature)
{
    return QStringLiteral("%1+%2 hp, %3 hs, %4 ap")
        .arg(creature->currHP())
        .arg(creature->tempHP())
        .arg(creature->currHS())
        .arg(creature->currAP());
}

} // namespace

class TestEffectDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void listsOrigins_data();
    void listsOrigins();
    void offersSurges_data();
    void offersSurges();
    void offersActions_data();
    void offersActions();
    void offersEnds_data();
    void offersEnds();
    void takesBackWhatIsDisabled();
    void pairsSignAndAmount();
    void togglesAttributes();

    void previewsTargets_data();
    void previewsTargets();
    void previewsTheOrigin();
    void forgetsThePreview_data();
    void forgetsThePreview();

    void logsInOrder();
    void logsSurges_data();
    void logsSurges();
    void makesACustomEffectOfALoneComment_data();
    void makesACustomEffectOfALoneComment();
    void worksByKeys();

private:
    // The party of 5, 7 and 9 hit points for each surge, and an ogre.
    static Creature *creature(const char *name) { return findCreature(QLatin1String(name), true); }
    static QList<Creature *> creatures(const QString &names)
    {
        QList<Creature *> list;
        for (const QString &name : names.split(u',', Qt::SkipEmptyParts))
            list << findCreature(name, true);
        return list;
    }
    void select(const QString &names)
    {
        QSet<int> rows;
        for (Creature *selected : creatures(names))
            rows << theEncounter->indexOf(selected);
        m_fight->window().setSelection(rows);
    }
    // Aria has the turn.
    void start() { m_fight->start({20, 15, 10, 5}); }
    // Runs the window's own command and accepts what `fill` entered; the texts of the new events.
    QStringList accepted(const std::function<void(EffectDialog &)> &fill);

    std::unique_ptr<FightFixture> m_fight;
};

void TestEffectDialog::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"), 20);
    m_fight->folder.addCharacter(QStringLiteral("Borin"), 28);
    m_fight->folder.addCharacter(QStringLiteral("Cleo"), 36);
    m_fight->folder.addMonster(QStringLiteral("Ogre"), 40);
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Ogre"), QStringLiteral("1"));
}

QStringList TestEffectDialog::accepted(const std::function<void(EffectDialog &)> &fill)
{
    const int before = theHistory->eventCount();
    Answer answer(inFlatDialog<EffectDialog>([&](EffectDialog &form) {
        fill(form);
        form.findChild<QPushButton *>(QStringLiteral("okButton"))->click();
    }));
    m_fight->window().onAddConditionOrEffect();
    QStringList texts {answer.wasAnswered ? QStringLiteral("accepted") : QStringLiteral("no form")};
    for (int i = before; i < theHistory->eventCount(); ++i)
        texts << theHistory->eventText(i);
    return texts;
}

// --- what is offered ---

void TestEffectDialog::listsOrigins_data()
{
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("origins");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("title");
    QTest::newRow("nobody selected") << true << QString() << "Aria (current)|Borin|Cleo|Any monster"
                                     << "Aria (current)"
                                     << "Aria's Actions";
    QTest::newRow("a monster") << true << "Ogre (1)"
                               << "Aria (current)|Borin|Cleo|Ogre (1) (self)|Any monster"
                               << "Aria (current)"
                               << "Aria's Actions";
    QTest::newRow("itself") << true << "Aria"
                            << "Aria (self)|Borin|Cleo|Any monster"
                            << "Aria (self)"
                            << "Aria's Actions";
    QTest::newRow("several") << true << "Borin,Ogre (1)"
                             << "Aria (current)|Borin|Cleo|Any monster"
                             << "Aria (current)"
                             << "Aria's Actions";
    QTest::newRow("at rest") << false << "Borin"
                             << "|Aria|Borin (self)|Cleo"
                             << "Borin (self)"
                             << "Borin's Actions";
    QTest::newRow("several at rest") << false << "Borin,Cleo"
                                     << "|Aria|Borin|Cleo"
                                     << ""
                                     << "Action";
}

void TestEffectDialog::listsOrigins()
{
    QFETCH(bool, running);
    QFETCH(QString, selected);
    QFETCH(QString, chosen);
    if (running)
        start();
    EffectDialog form(creatures(selected));
    QTEST(items(form, "originBox").join(u'|'), "origins");
    QCOMPARE(current(form, "originBox"), chosen);
    QTEST(form.findChild<QGroupBox *>(QStringLiteral("actionGroup"))->title(), "title");
    QCOMPARE(form.origin() ? form.origin()->displayName() : QString(), chosen.section(u' ', 0, 0));
    QCOMPARE(form.targets(), creatures(selected.isEmpty() ? QStringLiteral("Aria") : selected));
    if (running) {
        chooseOrigin(form, QStringLiteral("Any monster"));
        QVERIFY(!form.origin());
        QCOMPARE(form.findChild<QGroupBox *>(QStringLiteral("actionGroup"))->title(),
                 QStringLiteral("Actions"));
    }
}

void TestEffectDialog::offersSurges_data()
{
    QTest::addColumn<QString>("selected");
    QTest::addColumn<int>("spent"); // by each before
    QTest::addColumn<QString>("surges");
    QTest::addColumn<int>("value"); // -1: no box for it
    QTest::newRow("one")
        << "Aria" << 6 << "Gain 6|Gain 5|Gain 4|Gain 3|Gain 2|Gain 1||Use 1 (+5 HP)|Use 2 (+10 HP)"
        << 5;
    QTest::newRow("a monster among them") << "Aria,Ogre (1)" << 6 << "" << 0;
    QTest::newRow("two values") << "Aria,Cleo" << 1 << "Gain 1||Use 1 (+5 or 9 HP)|Lose 1" << -1;
    QTest::newRow("three values") << "Cleo,Aria,Borin" << 0 << "|Use 1 (+5, 7 or 9 HP)|Lose 1"
                                  << -1;
    QTest::newRow("two values, none left") << "Aria,Cleo" << 8 << "Gain 1|" << -1;
}

void TestEffectDialog::offersSurges()
{
    QFETCH(QString, selected);
    QFETCH(int, spent);
    QFETCH(int, value);
    for (Creature *target : creatures(selected))
        target->heal(0, spent);
    EffectDialog form(creatures(selected));
    QTEST(items(form, "surgeBox").join(u'|'), "surges");
    QCOMPARE(form.surgeChoice(), 0);
    QCOMPARE(spin(form, "surgeValueBox")->isVisibleTo(&form), value >= 0);
    QCOMPARE(spin(form, "surgeValueBox")->isEnabled(), value > 0);
    QCOMPARE(form.surgeValue(), qMax(0, value));
    if (value <= 0)
        return;
    spin(form, "surgeValueBox")->setValue(6);
    QCOMPARE(items(form, "surgeBox").mid(5).join(u'|'),
             QStringLiteral("Gain 1||Use 1 (+6 HP)|Use 2 (+12 HP)"));
    spin(form, "surgeValueBox")->setValue(0);
    QCOMPARE(items(form, "surgeBox").last(), QStringLiteral("Lose 2"));
}

void TestEffectDialog::offersActions_data()
{
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("origin");
    QTest::addColumn<std::function<void()>>("before");
    QTest::addColumn<QString>("enabled");
    const std::function<void()> nothing = [] {};
    const auto row = [&](const char *name, bool running, const char *selected, const char *origin,
                         const std::function<void()> &before, const char *enabled) {
        QTest::newRow(name) << running << selected << origin << before << enabled;
    };
    row("at rest, nobody", false, "Aria,Borin", "", nothing, "0");
    row(
        "at rest", false, "Aria", "Borin", [] { creature("Aria")->takeDamage(22, nullptr); },
        "0 1 6");
    row("has the turn", true, "Ogre (1)", "Aria (current)", nothing, "0 1 2 3");
    row(
        "is the target", true, "Aria", "Aria (self)", [] { creature("Aria")->heal(0, 8); },
        "0 1 2 6");
    row(
        "wind and point used", true, "Ogre (1)", "Aria (current)",
        [] {
            creature("Aria")->setSecondWindUsed(true);
            creature("Aria")->useActionPoint(1);
            creature("Aria")->setCurrAP(1);
        },
        "0 2");
    row(
        "another's turn", true, "Ogre (1)", "Borin", [] { creature("Borin")->heal(0, 1); }, "0 6");
    row(
        "a monster's point", true, "Ogre (1)", "Ogre (1) (self)",
        [] { creature("Ogre (1)")->setCurrAP(2); }, "0 1");
    row(
        "helps the dying", true, "Cleo", "Any monster",
        [] { creature("Cleo")->takeDamage(40, nullptr); }, "0 4 5");
    row(
        "stable, no surges", true, "Cleo", "Any monster",
        [] {
            creature("Cleo")->takeDamage(40, nullptr);
            creature("Cleo")->setStable(true);
            creature("Cleo")->heal(0, 8);
        },
        "0");
    row(
        "helps two", true, "Borin,Cleo", "Any monster",
        [] { creature("Cleo")->takeDamage(40, nullptr); }, "0");
}

void TestEffectDialog::offersActions()
{
    QFETCH(bool, running);
    QFETCH(QString, selected);
    QFETCH(QString, origin);
    QFETCH(std::function<void()>, before);
    if (running)
        start();
    before();
    EffectDialog form(creatures(selected));
    chooseOrigin(form, origin);
    QTEST(enabledItems(form, "actionBox"), "enabled");
}

void TestEffectDialog::offersEnds_data()
{
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("origin");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("at rest") << false << "Aria"
                             << "Borin"
                             << "0 4";
    QTest::newRow("nobody") << true << "Aria"
                            << "Any monster"
                            << "0 3 4 2 6";
    QTest::newRow("itself") << true << "Aria"
                            << "Aria (self)"
                            << "0 1 5 3 4";
    QTest::newRow("another") << true << "Aria"
                             << "Borin"
                             << "0 1 5 3 4 2 6";
    QTest::newRow("one of several") << true << "Aria,Borin"
                                    << "Borin"
                                    << "0 1 5 3 4 2 6";
}

void TestEffectDialog::offersEnds()
{
    QFETCH(bool, running);
    QFETCH(QString, selected);
    QFETCH(QString, origin);
    if (running)
        start();
    EffectDialog form(creatures(selected));
    chooseOrigin(form, origin);
    QCOMPARE(items(form, "endBox").at(2),
             form.origin() ? QStringLiteral("End of %1's next turn").arg(form.origin()->name())
                           : QStringLiteral("End of next turn"));
    // Each of the five fields alone gives something that ends.
    const QList<std::function<void(bool)>> fields {
        [&](bool on) { choose(form, "conditionBox", on ? EffectType::Prone : 0); },
        [&](bool on) { choose(form, "ongoingBox", on ? -5 : 0); },
        [&](bool on) { choose(form, "effectBox", on ? 2 : 0); },
        [&](bool on) { spin(form, "resVulAmount")->setValue(on ? 3 : 0); },
        [&](bool on) { comment(form, on ? QStringLiteral("falls") : QString()); }};
    for (const auto &field : fields) {
        QCOMPARE(enabledItems(form, "endBox"), QStringLiteral("-1"));
        QCOMPARE(form.endCondition(), int(EffectDialog::NoEnd));
        field(true);
        QTEST(enabledItems(form, "endBox"), "enabled");
        QCOMPARE(form.endCondition(), int(EffectEnd::Special));
        field(false);
    }
}

void TestEffectDialog::takesBackWhatIsDisabled()
{
    start();
    EffectDialog form(creatures(QStringLiteral("Aria")));
    choose(form, "actionBox", EffectDialog::TotalDefence);
    choose(form, "actionBox", EffectDialog::Stabilize);
    QCOMPARE(form.action(), int(EffectDialog::TotalDefence));
    choose(form, "conditionBox", EffectType::Dazed);
    choose(form, "endBox", EffectEnd::EndOfTargetsTurn); // she is her own origin
    QCOMPARE(form.endCondition(), int(EffectEnd::Special));
    choose(form, "endBox", EffectEnd::EndOfOriginsTurn);
    choose(form, "endBox", EffectDialog::NoEnd);
    QCOMPARE(form.endCondition(), int(EffectEnd::EndOfOriginsTurn));
    // Without an origin there is neither a turn of hers nor an action.
    chooseOrigin(form, QStringLiteral("Any monster"));
    QCOMPARE(form.endCondition(), int(EffectEnd::Special));
    QCOMPARE(form.action(), int(EffectDialog::NoAction));

    const auto *box = form.findChild<DisableComboBox *>(QStringLiteral("actionBox"));
    const auto colour = [&](int index) {
        return box->itemData(index, Qt::ForegroundRole).value<QColor>();
    };
    QCOMPARE(colour(2), QColor(QStringLiteral("grey")));
    chooseOrigin(form, QStringLiteral("Aria (self)"));
    QCOMPARE(colour(2), QColor(Qt::black));
}

void TestEffectDialog::pairsSignAndAmount()
{
    EffectDialog form(creatures(QStringLiteral("Aria")));
    spin(form, "ongoingAmount")->setValue(12);
    QCOMPARE(current(form, "ongoingBox"), QStringLiteral("Ongoing Damage"));
    QCOMPARE(form.ongoing(), -12);
    spin(form, "ongoingAmount")->setValue(5);
    QCOMPARE(current(form, "ongoingBox"), QStringLiteral("Ongoing Damage 5"));
    choose(form, "ongoingBox", 1);
    QCOMPARE(current(form, "ongoingBox"), QStringLiteral("Regeneration 5"));
    spin(form, "ongoingAmount")->setValue(7);
    QCOMPARE(current(form, "ongoingBox"), QStringLiteral("Regeneration"));
    QCOMPARE(form.ongoing(), 7);

    choose(form, "effectBox", -2);
    QCOMPARE(form.effect(), -2);
    choose(form, "effectBox", 10);
    QCOMPARE(form.effect(), 10);
    choose(form, "effectBox", 0);
    QCOMPARE(form.effect(), 0);

    choose(form, "resVulBox", 1); // no number yet: the item brings its own
    QCOMPARE(spin(form, "resVulAmount")->value(), 1);
    spin(form, "resVulAmount")->setValue(0);
    QCOMPARE(current(form, "resVulBox"), QString());
    QCOMPARE(form.resVul(), 0);
}

void TestEffectDialog::togglesAttributes()
{
    EffectDialog form(creatures(QStringLiteral("Aria")));
    auto *defenses = form.findChild<QPushButton *>(QStringLiteral("allDefensesButton"));
    auto *blows = form.findChild<QPushButton *>(QStringLiteral("hitDamageButton"));
    auto *reflex = form.findChild<QCheckBox *>(QStringLiteral("reflexCheck"));
    QVERIFY(!defenses->isEnabled() && !reflex->isEnabled());
    spin(form, "effectAmount")->setValue(3);
    QVERIFY(defenses->isEnabled() && blows->isEnabled() && reflex->isEnabled());
    reflex->setChecked(true);
    blows->click();
    QCOMPARE(form.attributes().flags(), 0b0110100u);
    defenses->click(); // one was checked: all go
    QCOMPARE(form.attributes().flags(), 0b0110000u);
    defenses->click();
    blows->click();
    QCOMPARE(form.attributes().flags(), 0b0001111u);
}

// --- preview ---

void TestEffectDialog::previewsTargets_data()
{
    QTest::addColumn<int>("lost"); // of Cleo's 36 hit points and 8 surges of 9
    QTest::addColumn<int>("temp");
    QTest::addColumn<std::function<void(EffectDialog &)>>("fill");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, int lost, int temp,
                        const std::function<void(EffectDialog &)> &fill, const char *shown) {
        QTest::newRow(name) << lost << temp << fill << shown;
    };
    const auto set = [](const char *box, int value) {
        return std::function([=](EffectDialog &form) { spin(form, box)->setValue(value); });
    };
    row("damage", 16, 4, set("damageBox", 10), "14+0 hp, 8 hs, 1 ap");
    row("absorbed", 16, 12, set("damageBox", 10), "20+2 hp, 8 hs, 1 ap");
    row("healing", 39, 0, set("healBox", 5), "5+0 hp, 8 hs, 1 ap");
    row("temporary", 0, 4, set("tempBox", 3), "36+4 hp, 8 hs, 1 ap");
    row(
        "surges", 30, 0,
        [](EffectDialog &form) {
            choose(form, "surgeBox", -2);
            spin(form, "surgeValueBox")->setValue(10);
            spin(form, "healBox")->setValue(1);
        },
        "27+0 hp, 6 hs, 1 ap");
    row(
        "all together", 16, 4,
        [](EffectDialog &form) {
            spin(form, "damageBox")->setValue(30);
            choose(form, "surgeBox", -1);
            spin(form, "tempBox")->setValue(8);
        },
        "9+8 hp, 7 hs, 1 ap");
    row(
        "first aid", 36, 0,
        [](EffectDialog &form) { choose(form, "actionBox", EffectDialog::AdministerFirstAid); },
        "9+0 hp, 7 hs, 1 ap");
    row(
        "aid after the last surge", 36, 0,
        [](EffectDialog &form) {
            choose(form, "actionBox", EffectDialog::AdministerFirstAid);
            choose(form, "surgeBox", -8); // none is left for the action
        },
        "72+0 hp, 0 hs, 1 ap");
}

void TestEffectDialog::previewsTargets()
{
    QFETCH(int, lost);
    QFETCH(int, temp);
    QFETCH(std::function<void(EffectDialog &)>, fill);
    start();
    Creature *cleo = creature("Cleo");
    cleo->takeDamage(lost, nullptr);
    cleo->setTempHP(temp);
    EffectDialog form({cleo});
    fill(form);
    QTEST(numbers(cleo), "shown");
}

void TestEffectDialog::previewsTheOrigin()
{
    start();
    Creature *aria = creature("Aria");
    Creature *borin = creature("Borin");
    borin->heal(0, 1);
    aria->takeDamage(10, nullptr);
    aria->heal(0, 7);
    EffectDialog form(creatures(QStringLiteral("Ogre (1)")));
    choose(form, "actionBox", EffectDialog::SecondWind);
    QCOMPARE(numbers(aria), QStringLiteral("15+0 hp, 0 hs, 1 ap"));
    spin(form, "damageBox")->setValue(3); // the shown last surge doesn't rule its own action out
    QCOMPARE(form.action(), int(EffectDialog::SecondWind));
    choose(form, "actionBox", EffectDialog::UseActionPoint);
    QCOMPARE(numbers(aria), QStringLiteral("10+0 hp, 1 hs, 0 ap"));
    chooseOrigin(form, QStringLiteral("Borin")); // hers ends, and he has no such action
    choose(form, "actionBox", EffectDialog::GainHealingSurge);
    QCOMPARE(numbers(aria), QStringLiteral("10+0 hp, 1 hs, 1 ap"));
    QCOMPARE(numbers(borin), QStringLiteral("28+0 hp, 8 hs, 1 ap"));
}

void TestEffectDialog::forgetsThePreview_data()
{
    QTest::addColumn<std::function<void(EffectDialog &)>>("end");
    using End = std::function<void(EffectDialog &)>;
    QTest::newRow("cancel") << End([](EffectDialog &form) {
        form.findChild<QPushButton *>(QStringLiteral("cancelButton"))->click();
    });
    QTest::newRow("escape") << End(
        [](EffectDialog &form) { QTest::keyClick(spin(form, "damageBox"), Qt::Key_Escape); });
    QTest::newRow("window closed") << End([](EffectDialog &) { theMainWindow->close(); });
    QTest::newRow("typed ahead") << End([](EffectDialog &form) {
        form.reject();
        spin(form, "damageBox")->setValue(99);
    });
}

void TestEffectDialog::forgetsThePreview()
{
    QFETCH(std::function<void(EffectDialog &)>, end);
    start();
    Creature *aria = creature("Aria");
    Creature *cleo = creature("Cleo");
    appendEvent<DamageEvent>(nullptr, cleo, 39);
    appendEvent<StabilizeEvent>(nullptr, cleo);
    select(QStringLiteral("Cleo"));
    const int events = theHistory->eventCount();
    const CreatureState ariaBefore = aria->state();
    const CreatureState cleoBefore = cleo->state();
    Answer answer(inFlatDialog<EffectDialog>([&](EffectDialog &form) {
        choose(form, "surgeBox", -8);
        spin(form, "tempBox")->setValue(7);
        choose(form, "actionBox", EffectDialog::UseActionPoint);
        QCOMPARE(numbers(cleo), QStringLiteral("72+7 hp, 0 hs, 1 ap"));
        QCOMPARE(numbers(aria), QStringLiteral("20+0 hp, 8 hs, 0 ap"));
        end(form);
    }));
    m_fight->window().onAddConditionOrEffect();
    QVERIFY(answer.wasAnswered);
    QVERIFY(aria->state() == ariaBefore);
    QVERIFY(cleo->state() == cleoBefore); // on the ground and stabilized
    theEncounter->markVitalityStale();
    QVERIFY(streamForEvent());
    QCOMPARE(theHistory->eventCount(), events);
    QVERIFY(m_fight->action("surge")->isEnabled()); // the shown numbers had none left
}

// --- what is logged ---

void TestEffectDialog::logsInOrder()
{
    start();
    creature("Aria")->setCurrHP(19); // outside the history
    theEncounter->markVitalityStale();
    select(QStringLiteral("Borin,Ogre (1)"));
    const QStringList texts = accepted([](EffectDialog &form) {
        spin(form, "damageBox")->setValue(9);
        spin(form, "healBox")->setValue(4);
        spin(form, "tempBox")->setValue(6);
        choose(form, "conditionBox", EffectType::Marked);
        choose(form, "ongoingBox", -5);
        choose(form, "effectBox", 2);
        form.findChild<QPushButton *>(QStringLiteral("hitDamageButton"))->click();
        choose(form, "resVulBox", -10);
        comment(form, QStringLiteral(" fire "));
        choose(form, "endBox", EffectEnd::SaveEnds);
        choose(form, "actionBox", EffectDialog::SecondWind);
    });
    const QString both = QStringLiteral("Borin, Ogre (1)");
    QCOMPARE(texts,
             (QStringList {QStringLiteral("accepted"), QStringLiteral("Changed Aria: Curr HP 19"),
                           QStringLiteral("Aria -> Damaged 9: ") + both,
                           QStringLiteral("Aria -> Healed 4: ") + both,
                           QStringLiteral("Gained Temporary HP 6: ") + both,
                           QStringLiteral("Aria -> Marked (fire): ") + both,
                           QStringLiteral("Aria -> Ongoing 5 Damage ( fire ): ") + both,
                           QStringLiteral("Aria -> +2 to Hit & Damage (fire): ") + both,
                           QStringLiteral("Aria -> Vulnerable 10 ( fire ): ") + both,
                           QStringLiteral("Second Wind: Aria")}));
    const QList<Effect *> effects = creature("Borin")->effects();
    QCOMPARE(effects.size(), 4);
    for (const Effect *effect : effects)
        QCOMPARE(effect->endCode(), int(EffectEnd::SaveEnds));
    QCOMPARE(numbers(creature("Borin")), QStringLiteral("23+6 hp, 8 hs, 1 ap"));
}

void TestEffectDialog::logsSurges_data()
{
    QTest::addColumn<QString>("selected");
    QTest::addColumn<int>("choice");
    QTest::addColumn<QStringList>("texts");
    const QString end = QStringLiteral("accepted");
    QTest::newRow("lose") << "Aria,Cleo" << -1
                          << QStringList {end, QStringLiteral("Healed 3 (-1 HS): Aria, Cleo")};
    QTest::newRow("own") << "Aria,Cleo" << int(EffectDialog::OwnSurge)
                         << QStringList {end, QStringLiteral("Healed 8 (-1 HS): Aria"),
                                         QStringLiteral("Healed 12 (-1 HS): Cleo")};
    QTest::newRow("same value") << "Borin" << -2
                                << QStringList {end, QStringLiteral("Healed 17 (-2 HS): Borin")};
    QTest::newRow("gain") << "Borin" << 1
                          << QStringList {end, QStringLiteral("Healed 3 (+1 HS): Borin")};
}

void TestEffectDialog::logsSurges()
{
    QFETCH(QString, selected);
    QFETCH(int, choice);
    for (Creature *target : creatures(selected))
        appendEvent<HealEvent>(nullptr, target, 1, 0);
    select(selected);
    const QStringList texts = accepted([choice](EffectDialog &form) {
        form.findChild<QComboBox *>(QStringLiteral("originBox"))->setCurrentIndex(0);
        choose(form, "surgeBox", choice);
        spin(form, "healBox")->setValue(3);
    });
    QTEST(texts, "texts");
}

void TestEffectDialog::makesACustomEffectOfALoneComment_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("condition");
    QTest::addColumn<QStringList>("texts");
    const QString end = QStringLiteral("accepted");
    QTest::newRow("nothing") << "" << 0 << QStringList {end};
    QTest::newRow("blanks") << "  " << 0 << QStringList {end};
    QTest::newRow("alone") << " on fire " << 0
                           << QStringList {end, QStringLiteral("Aria -> on fire: Borin")};
    QTest::newRow("with a condition")
        << "net" << int(EffectType::Grabbed)
        << QStringList {end, QStringLiteral("Aria -> Grabbed (net): Borin")};
}

void TestEffectDialog::makesACustomEffectOfALoneComment()
{
    QFETCH(QString, text);
    QFETCH(int, condition);
    start();
    select(QStringLiteral("Borin"));
    const QStringList texts = accepted([&](EffectDialog &form) {
        comment(form, text);
        choose(form, "conditionBox", condition);
    });
    QTEST(texts, "texts");
    for (const Effect *effect : creature("Borin")->effects())
        QCOMPARE(effect->endCode(), int(EffectEnd::Special));
}

void TestEffectDialog::worksByKeys()
{
    start();
    select(QStringLiteral("Ogre (1)"));
    Answer answer(inFlatDialog<EffectDialog>([](EffectDialog &form) {
        QCOMPARE(QApplication::focusWidget(), spin(form, "damageBox"));
        const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
        press(Qt::Key_7); // over the selected 0
        for (int i = 0; i < 9 && QApplication::focusWidget()->objectName() != u"conditionBox"; ++i)
            press(Qt::Key_Tab);
        press(Qt::Key_P);
        QCOMPARE(form.condition(), int(EffectType::PartialCover));
        press(Qt::Key_Return);
    }));
    m_fight->window().onAddConditionOrEffect();
    QVERIFY(answer.wasAnswered);
    QCOMPARE(creature("Ogre (1)")->currHP(), 33);
    QCOMPARE(creature("Ogre (1)")->effectCount(), 1);
}

MORVANE_TEST_MAIN(QApplication, TestEffectDialog)

#include "tst_effectdialog.moc"
