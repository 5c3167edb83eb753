// links: morvane_ui
// What each command of the turn cycle puts into the history, line by line: one fight in which
// everything is due that a turn can raise.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include "effect.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "history.h"
#include "jumpindialog.h"
#include "savingthrowdialog.h"
#include "tables.h"
#include "testhome.h"
#include "vitalityevents.h"

class TurnOrderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }
    void commands_data();
    void commands();
    void startGivesTheTurnToTheFirstWhoCanAct();
    void oneRoundWhereNobodyCanAct();
    void jumperIsAskedFor_data();
    void jumperIsAskedFor();
    void newcomersJoinBehindTheCurrentCreature();
    void comesBackAsNew();

private:
    void addEffect(Creature *origin, Creature *target, int type, int end, int amount = 0);
    // An action by its object name, "remove", or what befalls a creature: "hex Bram", "hit Aria
    // 32".
    void run(const QString &command);
    // Answers each dialog of saves, "1" for a box that is to be checked, until none is left.
    bool answerSaves(QStringList *answers);
    static QStringList textsFrom(int first);

    std::unique_ptr<FightFixture> m_fight;
    Creature *m_aria = nullptr;
    Creature *m_bram = nullptr;
    Creature *m_rat = nullptr;
};

// Aria, whose turn it is, the rat, Bram. The effects are older than the encounter, so that none
// waits for a later turn.
void TurnOrderTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.write(QStringLiteral("Monsters/altar.txt"),
                          QStringLiteral("group=Altar\ntype=Trap\nlevel=1\nhit-points=10\n"));
    m_fight->openWithThree();
    m_aria = theEncounter->at(0);
    m_bram = theEncounter->at(1);
    m_rat = theEncounter->at(2);

    addEffect(m_rat, m_aria, EffectType::Stunned, EffectEnd::EndOfTargetsTurn);
    addEffect(nullptr, m_aria, EffectType::Phasing, EffectEnd::EndOfTargetsTurn);
    addEffect(m_rat, m_aria, EffectType::Dazed, EffectEnd::StartOfOriginsTurn);
    addEffect(m_rat, m_bram, EffectType::Slowed, EffectEnd::StartOfOriginsTurn);
    addEffect(m_aria, m_bram, EffectType::Weakened, EffectEnd::StartOfOriginsTurn);
    addEffect(m_aria, m_rat, EffectType::Regeneration, EffectEnd::Special, 2);
    addEffect(m_aria, m_rat, EffectType::OngoingDamage, EffectEnd::Special, -5);
    addEffect(m_aria, m_rat, EffectType::Concealment, EffectEnd::EndOfOriginsTurn);
    addEffect(nullptr, m_rat, EffectType::OngoingDamage, EffectEnd::Special, -3);
    addEffect(m_aria, m_rat, EffectType::Prone, EffectEnd::EndOfOriginsTurn);

    CreatureData data = m_rat->data();
    const std::tuple<const char *, int, int> powers[] = {
        {"Claw", 1, 0}, {"Bite", 1, 1}, {"Roar", 3, 3}, {"Howl", 6, 1}, {"Swarm", 0, 1}};
    for (const auto &[name, kind, state] : powers) {
        Power power;
        power.name = QLatin1String(name);
        power.usageKind = kind;
        power.usageState = state;
        data.powers << power;
    }
    m_rat->assign(data);

    m_fight->start({30, 10, 20});
    QCOMPARE(FightFixture::order(), QStringList({"Aria", "Rat (A)", "Bram"}));
}

void TurnOrderTest::addEffect(Creature *origin, Creature *target, int type, int end, int amount)
{
    appendEvent<EffectEvent>(origin, QList<Creature *> {target}, QString(), end, type, amount);
}

void TurnOrderTest::run(const QString &command)
{
    const QStringList words = command.split(u' ');
    const QString name = words.value(1);
    Creature *target = name == u"Aria" ? m_aria : name == u"Bram" ? m_bram : m_rat;
    if (words.first() == u"remove")
        m_fight->window().removeCreatures({m_aria, m_bram});
    else if (words.first() == u"clear")
        m_fight->window().removeCreatures(theEncounter->creatures().list());
    else if (words.first() == u"hit")
        appendEvent<DamageEvent>(nullptr, target, words.value(2).toInt());
    else if (words.first() == u"hex")
        appendEvent<EffectEvent>(nullptr, QList<Creature *> {target}, words.value(2),
                                 int(EffectEnd::SaveEnds), int(EffectType::OtherBad));
    else
        m_fight->action(command.toLatin1().constData())->trigger();
}

bool TurnOrderTest::answerSaves(QStringList *answers)
{
    auto *dialog = qobject_cast<SavingThrowDialog *>(QApplication::activeModalWidget());
    if (!dialog || !dialog->isActiveWindow())
        return false;
    const QString answer = answers->isEmpty() ? QString() : answers->takeFirst();
    const QList<QCheckBox *> boxes = dialog->findChildren<QCheckBox *>();
    for (int i = 0; i < boxes.size(); ++i)
        boxes.at(i)->setChecked(answer.mid(i, 1) == u"1");
    if (boxes.size() != answer.size())
        answers->append(QStringLiteral("%1 boxes").arg(boxes.size()));
    QTest::keyClick(dialog, Qt::Key_Return);
    return false;
}

// The die of a recharge, and what came of it, differ from run to run.
QStringList TurnOrderTest::textsFrom(int first)
{
    static const QRegularExpression recharge(QStringLiteral("^Recharge [1-6]: (.*) [-+] (.*)$"));
    QStringList texts;
    for (int i = first; i < theHistory->eventCount(); ++i)
        texts << theHistory->eventText(i).replace(recharge, QStringLiteral("Recharge: \\1, \\2"));
    return texts;
}

void TurnOrderTest::commands_data()
{
    useTable(QStringLiteral("turncommands"), {"before", "command", "saves", "texts"});
}

void TurnOrderTest::commands()
{
    QFETCH(const QString, before);
    QFETCH(const QString, command);
    QFETCH(const QString, saves);
    for (const QString &earlier : before.split(u';', Qt::SkipEmptyParts))
        run(earlier);
    const int first = theHistory->eventCount();
    QStringList answers = saves.split(u';', Qt::SkipEmptyParts);
    Answer answer([&] { return answerSaves(&answers); });
    run(command);
    QCOMPARE(answers, QStringList()); // each dialog came, and none besides
    QTEST(textsFrom(first).join(u'|'), "texts");
}

void TurnOrderTest::startGivesTheTurnToTheFirstWhoCanAct()
{
    run(QStringLiteral("startStop"));
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_fight->addMonster(QStringLiteral("Altar"), QStringLiteral("1"));
    run(QStringLiteral("hit Aria 100"));
    const int before = theHistory->eventCount();
    m_fight->start({30, 20, 10});
    QCOMPARE(FightFixture::order(), QStringList({"Altar (1)", "Aria", "Bram", "Rat (A)"}));
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"StartEncounter", "NextTurn", "NextTurn"}));
    QCOMPARE(theEncounter->current(), m_bram);
    QCOMPARE(theEncounter->round(), 1);
}

void TurnOrderTest::oneRoundWhereNobodyCanAct()
{
    m_fight = std::make_unique<FightFixture>();
    m_fight->openWithThree();
    m_fight->start({30, 10, 20});
    appendEvent<DamageEvent>(nullptr, theEncounter->creatures().list(), 100);
    const int before = theHistory->eventCount();
    run(QStringLiteral("nextTurn"));
    QCOMPARE(FightFixture::eventClasses(before), QStringList({"NextTurn", "NextTurn", "NextTurn"}));
    QCOMPARE(theEncounter->round(), 2);
    QCOMPARE(theEncounter->currentIndex(), 0);
}

void TurnOrderTest::jumperIsAskedFor_data()
{
    QTest::addColumn<int>("index"); // -1 cancels
    QTest::addColumn<QString>("event");
    QTest::addColumn<QStringList>("order");
    QTest::addColumn<QList<int>>("turns");
    const QStringList before {"Aria", "Bram", "Rat (A)"};
    QTest::newRow("delayed") << 0 << QStringLiteral("JumpIn")
                             << QStringList {"Aria", "Rat (A)", "Bram"} << QList<int> {1, 1, 1};
    QTest::newRow("readied") << 1 << QStringLiteral("EndReady")
                             << QStringList {"Bram", "Aria", "Rat (A)"} << QList<int> {1, 1, 0};
    QTest::newRow("cancelled") << -1 << QString() << before << QList<int> {1, 1, 0};
}

// Where two wait; and a step back has both wait again.
void TurnOrderTest::jumperIsAskedFor()
{
    QFETCH(int, index);
    QFETCH(QString, event);
    m_fight = std::make_unique<FightFixture>();
    m_fight->openWithThree();
    m_fight->start({30, 20, 10});
    run(QStringLiteral("ready")); // Aria
    run(QStringLiteral("delay")); // Bram
    QCOMPARE(m_fight->action("jumpIn")->text(), QStringLiteral("Jump In..."));
    const auto turns = [] {
        QList<int> counts;
        for (const Creature *creature : theEncounter->creatures())
            counts << creature->turnCount();
        return counts;
    };
    const int first = theHistory->eventCount();
    QStringList offered;
    Answer answer([&] {
        auto *dialog = qobject_cast<JumpInDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        auto *box = dialog->findChild<QComboBox *>(QStringLiteral("whoBox"));
        for (int i = 0; i < box->count(); ++i)
            offered << box->itemText(i);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(box, Qt::Key_Down);
        QTest::keyClick(box, index < 0 ? Qt::Key_Escape : Qt::Key_Return);
        return true;
    });
    QTest::keyClick(&m_fight->window(), Qt::Key_J, Qt::ControlModifier);
    QVERIFY(answer.wasAnswered);
    QCOMPARE(offered, QStringList({"Bram (Delayed)", "Aria (Ready'ed)"}));
    QCOMPARE(FightFixture::eventClasses(first).join(u' '), event);
    QTEST(FightFixture::order(), "order");
    QTEST(turns(), "turns");
    while (theHistory->position() >= first)
        theHistory->stepBack();
    QCOMPARE(FightFixture::order(), QStringList({"Aria", "Bram", "Rat (A)"}));
    QVERIFY(theEncounter->at(0)->isReadied() && theEncounter->at(1)->isDelayed());
    QCOMPARE(m_fight->action("jumpIn")->text(), QStringLiteral("Jump In..."));
}

void TurnOrderTest::newcomersJoinBehindTheCurrentCreature()
{
    m_fight->folder.write(QStringLiteral("Encounters/den.txt"),
                          QStringLiteral("name=Den\ndescription=\nRat=A,B,C\nalias#B=Gnawer\n"
                                         "hidden#C=true\n"));
    m_fight->close();
    m_fight->open();
    const int before = theHistory->eventCount();
    const auto add = [](FlatDialog &dialog) {
        auto *list = dialog.findChild<QTableView *>();
        list->selectRow(0);
        QTest::mouseClick(buttonWithText(dialog, QStringLiteral("Add")), Qt::LeftButton);
    };
    {
        Answer pick(inFlatDialog<FlatDialog>(add));
        Answer cancel([] {
            auto *dialog = dynamic_cast<InitiativeDialog *>(activeFlatDialog());
            if (dialog)
                QTest::keyClick(dialog, Qt::Key_Escape);
            return dialog != nullptr;
        });
        m_fight->action("loadEncounter")->trigger();
        QVERIFY(pick.wasAnswered && cancel.wasAnswered);
        QCOMPARE(theHistory->eventCount(), before);
    }
    Answer pick(inFlatDialog<FlatDialog>(add));
    Answer roll(rollInitiative({17}));
    m_fight->action("loadEncounter")->trigger();
    QVERIFY(pick.wasAnswered && roll.wasAnswered);
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"AddMonsters", "SetAlias", "ShowHide"}));
    QCOMPARE(FightFixture::order(), QStringList({"Aria", "Rat (B)", "Rat (C)", "Rat (A)", "Bram"}));
    QCOMPARE(theEncounter->at(1)->alias(), QStringLiteral("Gnawer"));
    QVERIFY(theEncounter->at(2)->isHidden());
    QCOMPARE(theEncounter->at(2)->initRoll(), 17);
}

void TurnOrderTest::comesBackAsNew()
{
    run(QStringLiteral("hit Rat 5"));
    const auto comeBack = [this] {
        m_fight->window().removeCreatures({m_rat});
        const int before = theHistory->eventCount();
        Answer pick(inFlatDialog<FlatDialog>([](FlatDialog &dialog) {
            dialog.findChild<QTableView *>()->selectRow(1);
            dialog.findChild<QLineEdit *>(QStringLiteral("monsterIdEdit"))
                ->setText(QStringLiteral("A"));
            buttonWithText(dialog, QStringLiteral("Add"))->click();
        }));
        Answer roll(rollInitiative({17}));
        m_fight->action("addMonster")->trigger();
        return FightFixture::eventClasses(before);
    };
    const QStringList arrival {QStringLiteral("AddMonster")};
    const QStringList renewal = QStringList {QStringLiteral("ExtendedRest")}
        + QStringList(5, QStringLiteral("RemoveOnGoing"))
        + QStringList(4, QStringLiteral("PowerUsageChanged"));
    QCOMPARE(comeBack(), arrival + renewal);
    QVERIFY(theEncounter->contains(m_rat));
    QCOMPARE(comeBack(), arrival); // as new as it was
}

MORVANE_TEST_MAIN(QApplication, TurnOrderTest)
#include "tst_turnorder.moc"
