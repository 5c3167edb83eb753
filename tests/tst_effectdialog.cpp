// The dialog of conditions and effects: what it offers, what it shows beforehand, what it logs.
// links: morvane_ui
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

#include "disablecombobox.h"
#include "effect.h"
#include "effectdialog.h"
#include "fightfixture.h"
#include "findcreature.h"
#include "history.h"
#include "outsidechanges.h"
#include "tables.h"
#include "testhome.h"
#include "vitalityevents.h"

namespace {

Creature *creature(const QString &name)
{
    return findCreature(name, true);
}

QList<Creature *> creatures(const QString &names)
{
    QList<Creature *> list;
    for (const QString &name : names.split(u',', Qt::SkipEmptyParts))
        list << creature(name);
    return list;
}

// "damageBox=10;surgeBox=-1;hitDamageButton=": what the DM enters, by the names of the fields. A
// choice is named by its value, an origin by its text.
void enter(const EffectDialog &form, const QString &fields)
{
    for (const QString &field : fields.split(u';', Qt::SkipEmptyParts)) {
        const QString name = field.section(u'=', 0, 0);
        const QString value = field.section(u'=', 1);
        if (auto *box = form.findChild<QComboBox *>(name)) {
            const int index =
                name == u"originBox" ? box->findText(value) : box->findData(value.toInt());
            QVERIFY2(index >= 0, qPrintable(field));
            box->setCurrentIndex(index);
            Q_EMIT box->activated(index);
        } else if (auto *spin = form.findChild<QSpinBox *>(name)) {
            spin->setValue(value.toInt());
        } else if (auto *edit = form.findChild<QLineEdit *>(name)) {
            edit->setText(value);
        } else {
            auto *button = form.findChild<QAbstractButton *>(name);
            QVERIFY2(button && button->isEnabled(), qPrintable(field));
            button->click();
        }
    }
}

// "hit Cleo 40;spend Cleo 8": what has befallen the creatures before, outside the history.
void befall(const QString &events)
{
    for (const QString &event : events.split(u';', Qt::SkipEmptyParts)) {
        const QString what = event.section(u' ', 0, 0);
        const int amount = event.section(u' ', -1).toInt();
        Creature *who = creature(event.section(u' ', 1, -2));
        if (what == u"hit")
            who->takeDamage(amount, nullptr);
        else if (what == u"spend")
            who->heal(0, amount);
        else if (what == u"temp")
            who->setTempHP(amount);
        else if (what == u"points")
            who->setCurrAP(amount);
        else if (what == u"point")
            who->useActionPoint(amount);
        else if (what == u"wind")
            who->setSecondWindUsed(amount != 0);
        else
            who->setStable(amount != 0);
    }
}

QComboBox *combo(const EffectDialog &form, const char *name)
{
    return form.findChild<QComboBox *>(QLatin1String(name));
}

QSpinBox *spin(const EffectDialog &form, const char *name)
{
    return form.findChild<QSpinBox *>(QLatin1String(name));
}

QString numbersOf(const QString &name)
{
    const Creature *who = creature(name);
    return QStringLiteral("%1+%2 hp, %3 hs, %4 ap")
        .arg(who->currHP())
        .arg(who->tempHP())
        .arg(who->currHS())
        .arg(who->currAP());
}

// What the form says to a question: of a box its items, or the values that may be chosen.
QString answer(const EffectDialog &form, const QString &asked)
{
    if (asked == u"origin and title")
        return QStringLiteral("%1: %2, %3")
            .arg(combo(form, "originBox")->currentText(),
                 form.origin() ? form.origin()->name() : QStringLiteral("nobody"),
                 form.findChild<QGroupBox *>(QStringLiteral("actionGroup"))->title());
    if (asked == u"surge value") {
        const QSpinBox *box = spin(form, "surgeValueBox");
        if (!box->isVisibleTo(&form))
            return QStringLiteral("absent");
        return QString::number(box->value()) + (box->isEnabled() ? u"" : u" disabled");
    }
    const auto *box = form.findChild<QComboBox *>(asked.section(u' ', -1));
    if (!box)
        return numbersOf(asked);
    const auto *choices = qobject_cast<const DisableComboBox *>(box);
    const bool texts = asked.startsWith(u"items");
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        if (texts || choices->isItemEnabled(i))
            items << (texts ? box->itemText(i) : box->itemData(i).toString());
    return items.join(texts ? u'|' : u' ');
}

} // namespace

class TestEffectDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void offersAndShows_data();
    void offersAndShows();
    void endsWhatWasEntered();
    void takesBackWhatIsDisabled();
    void pairsSignAndAmount();
    void togglesAttributes();
    void previewsTheOrigin();
    void previewsTheDying_data();
    void previewsTheDying();
    void logsWhatWasEntered_data();
    void logsWhatWasEntered();

private:
    void select(const QString &names)
    {
        QSet<int> rows;
        for (Creature *selected : creatures(names))
            rows << theEncounter->indexOf(selected);
        m_fight->window().setSelection(rows);
    }
    // Aria has the turn.
    void start() { m_fight->start({20, 15, 10, 5}); }

    std::unique_ptr<FightFixture> m_fight;
};

// Heroes of 5, 7 and 9 hit points for each of 8 surges, and an ogre.
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

// --- what is offered and shown ---

void TestEffectDialog::offersAndShows_data()
{
    useTable(QStringLiteral("effectform"),
             {"where", "selected", "before", "fields", "asked", "answer"});
}

void TestEffectDialog::offersAndShows()
{
    QFETCH(QString, where);
    QFETCH(QString, selected);
    QFETCH(QString, before);
    QFETCH(QString, fields);
    QFETCH(QString, asked);
    if (where == u"fight")
        start();
    befall(before);
    EffectDialog form(creatures(selected));
    QCOMPARE(form.targets(), creatures(selected.isEmpty() ? QStringLiteral("Aria") : selected));
    enter(form, fields);
    QTEST(answer(form, asked), "answer");
}

void TestEffectDialog::endsWhatWasEntered()
{
    start();
    EffectDialog form(creatures(QStringLiteral("Borin")));
    QCOMPARE(combo(form, "endBox")->itemText(2), QStringLiteral("End of Aria's next turn"));
    // Each of the five fields alone gives something that ends.
    for (const char *field : {"conditionBox", "ongoingBox", "effectBox", "resVulAmount"}) {
        QCOMPARE(form.endCondition(), int(EffectDialog::NoEnd));
        enter(form, QLatin1String(field) + QStringLiteral("=5"));
        QCOMPARE(form.endCondition(), int(EffectEnd::Special));
        enter(form, QLatin1String(field) + QStringLiteral("=0"));
    }
    QCOMPARE(form.endCondition(), int(EffectDialog::NoEnd));
    enter(form, QStringLiteral("commentEdit=x;originBox=Any monster"));
    QCOMPARE(form.endCondition(), int(EffectEnd::Special));
    QCOMPARE(combo(form, "endBox")->itemText(2), QStringLiteral("End of next turn"));
}

void TestEffectDialog::takesBackWhatIsDisabled()
{
    start();
    EffectDialog form(creatures(QStringLiteral("Aria")));
    enter(form, QStringLiteral("actionBox=2;actionBox=4"));
    QCOMPARE(form.action(), int(EffectDialog::TotalDefence));
    enter(form, QStringLiteral("conditionBox=2;endBox=2")); // she is her own origin
    QCOMPARE(form.endCondition(), int(EffectEnd::Special));
    enter(form, QStringLiteral("endBox=1;endBox=-1"));
    QCOMPARE(form.endCondition(), int(EffectEnd::EndOfOriginsTurn));
    // Without an origin there is neither a turn of hers nor an action.
    enter(form, QStringLiteral("originBox=Any monster"));
    QCOMPARE(form.endCondition(), int(EffectEnd::Special));
    QCOMPARE(form.action(), int(EffectDialog::NoAction));

    const auto colour = [&] { return combo(form, "actionBox")->itemData(2, Qt::ForegroundRole); };
    QCOMPARE(colour().value<QColor>(), QColor(QStringLiteral("grey")));
    enter(form, QStringLiteral("originBox=Aria (self)"));
    QCOMPARE(colour().value<QColor>(), QColor(Qt::black));
}

void TestEffectDialog::pairsSignAndAmount()
{
    EffectDialog form(creatures(QStringLiteral("Aria")));
    const auto ongoing = [&](const char *fields) -> QString {
        enter(form, QLatin1String(fields));
        return combo(form, "ongoingBox")->currentText() + QStringLiteral(": ")
            + QString::number(form.ongoing());
    };
    QCOMPARE(ongoing("ongoingAmount=12"), QStringLiteral("Ongoing Damage: -12"));
    QCOMPARE(ongoing("ongoingAmount=5"), QStringLiteral("Ongoing Damage 5: -5"));
    QCOMPARE(ongoing("ongoingBox=1"), QStringLiteral("Regeneration 5: 5"));
    QCOMPARE(ongoing("ongoingAmount=7"), QStringLiteral("Regeneration: 7"));
    QCOMPARE(ongoing("ongoingBox=-15"), QStringLiteral("Ongoing Damage 15: -15"));
    QCOMPARE(ongoing("ongoingBox=0"), QStringLiteral(": 0"));
    QCOMPARE(ongoing("ongoingBox=1"), QStringLiteral("Regeneration: 1")); // its own number
    QCOMPARE(ongoing("ongoingAmount=0"), QStringLiteral(": 0"));
    enter(form, QStringLiteral("effectBox=-2;resVulBox=10"));
    QCOMPARE(form.effect(), -2);
    QCOMPARE(form.resVul(), 10);
}

void TestEffectDialog::togglesAttributes()
{
    EffectDialog form(creatures(QStringLiteral("Aria")));
    const char *names[] = {"allDefensesButton", "hitDamageButton", "reflexCheck"};
    const auto enabled = [&](const char *name) {
        return form.findChild<QAbstractButton *>(QLatin1String(name))->isEnabled();
    };
    QVERIFY(std::none_of(std::begin(names), std::end(names), enabled));
    enter(form, QStringLiteral("effectAmount=3"));
    QVERIFY(std::all_of(std::begin(names), std::end(names), enabled));
    enter(form, QStringLiteral("reflexCheck=;hitDamageButton="));
    QCOMPARE(form.attributes().flags(), 0b0110100u);
    enter(form, QStringLiteral("allDefensesButton=")); // one was checked: all go
    QCOMPARE(form.attributes().flags(), 0b0110000u);
    enter(form, QStringLiteral("allDefensesButton=;hitDamageButton="));
    QCOMPARE(form.attributes().flags(), 0b0001111u);
}

void TestEffectDialog::previewsTheOrigin()
{
    const QString aria = QStringLiteral("Aria");
    start();
    befall(QStringLiteral("hit Aria 10;spend Aria 7;spend Borin 1"));
    EffectDialog form(creatures(QStringLiteral("Ogre (1)")));
    enter(form, QStringLiteral("actionBox=3"));
    QCOMPARE(numbersOf(aria), QStringLiteral("15+0 hp, 0 hs, 1 ap"));
    enter(form, QStringLiteral("damageBox=3")); // a surge that is shown as spent is still there
    QCOMPARE(form.action(), int(EffectDialog::SecondWind));
    enter(form, QStringLiteral("actionBox=1"));
    QCOMPARE(numbersOf(aria), QStringLiteral("10+0 hp, 1 hs, 0 ap"));
    enter(form, QStringLiteral("originBox=Borin;actionBox=6")); // hers ends
    QCOMPARE(numbersOf(aria), QStringLiteral("10+0 hp, 1 hs, 1 ap"));
    QCOMPARE(numbersOf(QStringLiteral("Borin")), QStringLiteral("28+0 hp, 8 hs, 1 ap"));
}

// A preview is what comes of it: healing counts from 0 hit points, and first aid is for one.
void TestEffectDialog::previewsTheDying_data()
{
    QTest::addColumn<QString>("dying");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("fields");
    const auto row = [](const char *name, const char *dying, const char *target,
                        const char *fields) {
        QTest::newRow(name) << QString::fromLatin1(dying) << QString::fromLatin1(target)
                            << QString::fromLatin1(fields);
    };
    row("first aid", "Cleo", "Cleo", "originBox=Borin;actionBox=5");
    row("second wind", "Aria", "Aria", "actionBox=3");
    row("second wind of the origin", "Aria", "Borin", "originBox=Aria (current);actionBox=3");
    row("gained surge", "Cleo", "Borin", "originBox=Cleo;actionBox=6");
    row("surge added", "Cleo", "Cleo", "surgeBox=1");
}

void TestEffectDialog::previewsTheDying()
{
    QFETCH(QString, dying);
    QFETCH(QString, target);
    QFETCH(QString, fields);
    start();
    befall(QStringLiteral("spend %1 2;hit %1 %2")
               .arg(dying)
               .arg(creature(dying)->maxHP() + creature(dying)->maxHP() / 4));
    QVERIFY(creature(dying)->isDying());
    select(target);
    QString shown;
    Answer answer(inFlatDialog<EffectDialog>([&](EffectDialog &form) {
        enter(form, fields);
        shown = numbersOf(dying);
        form.accept();
    }));
    m_fight->window().onAddConditionOrEffect();
    QVERIFY(answer.wasAnswered);
    QCOMPARE(numbersOf(dying), shown);
    QVERIFY(creature(dying)->currHP() >= 0);
}

// --- what is logged ---

void TestEffectDialog::logsWhatWasEntered_data()
{
    useTable(QStringLiteral("effectcommands"), {"selected", "fields", "texts", "end"});
}

void TestEffectDialog::logsWhatWasEntered()
{
    QFETCH(QString, selected);
    QFETCH(QString, fields);
    QFETCH(QString, end);
    start();
    befall(QStringLiteral("spend Borin 2;spend Cleo 2;hit Cleo 40"));
    creature(QStringLiteral("Borin"))->setCurrHP(27);
    theEncounter->markVitalityStale();
    select(selected);
    const int before = theHistory->eventCount();
    Answer answer(inFlatDialog<EffectDialog>(
        [&](EffectDialog &form) { enter(form, fields + QStringLiteral(";okButton=")); }));
    m_fight->window().onAddConditionOrEffect();
    QVERIFY(answer.wasAnswered);
    QStringList texts;
    for (int i = before; i < theHistory->eventCount(); ++i)
        texts << theHistory->eventText(i);
    // Ahead of all stands what the history didn't know, and nothing that was only shown.
    QCOMPARE(texts.value(0), QStringLiteral("Changed Borin: Curr HP 27"));
    QTEST(texts.mid(1).join(u'|'), "texts");
    for (Creature *target : creatures(selected))
        for (const Effect *effect : target->effects())
            QCOMPARE(effect->endCode(), end.toInt());
}

MORVANE_TEST_MAIN(QApplication, TestEffectDialog)

#include "tst_effectdialog.moc"
