// The dialog that asks for initiative, worked in the main window.
// links: morvane_ui
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>

#include "creature.h"
#include "fightfixture.h"
#include "initiativedialog.h"
#include "testhome.h"

namespace {

// Notes what the players are told, from its birth to its end.
class NotingDisplay : public PlayersDisplay {
public:
    NotingDisplay() { thePlayersDisplay = this; }
    ~NotingDisplay() override { thePlayersDisplay = nullptr; }
    QWidget *displayWindow() override { return nullptr; }
    void setInitiativeMessage(Creature *creature, const QString &message) override
    {
        told << (creature ? creature->displayName() + u": " + message : QString());
    }
    void refresh() override { }
    bool isCurtained() const override { return false; }
    void setCurtained(bool) override { }

    QStringList told;
};

} // namespace

class TestInitiativeDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void asksOnceForAGroup();
    void asksForEachOfAnOpenedGroup();
    void passesOverWhoTakesNoTurns();
    void keepsARollBeyondTheBox();
    void worksByKeys();
    void keepsTheHiddenFromThePlayers();

private:
    static QSpinBox *box(InitiativeDialog &dialog, const QString &name)
    {
        return dialog.findChild<QSpinBox *>(QStringLiteral("initiative:") + name);
    }
    static QStringList labels(InitiativeDialog &dialog);
    static void press(InitiativeDialog &dialog, const QString &objectName);

    std::unique_ptr<FightFixture> m_fixture;
    CreatureList m_creatures;
};

void TestInitiativeDialog::init()
{
    failOnWarnings();
    m_fixture = std::make_unique<FightFixture>();
    m_fixture->folder.addCharacter(QStringLiteral("Aria"), 30, 4);
    m_fixture->folder.addCharacter(QStringLiteral("Slug"), 30, -60);
    m_fixture->folder.addMonster(QStringLiteral("Rat"), 10, 2);
    m_fixture->folder.addMonster(QStringLiteral("Snare"), 10, NotStated);
    m_fixture->open();
    QList<Creature *> creatures {FightFixture::character(QStringLiteral("Aria"))};
    for (const char *id : {"1", "2", "3"})
        creatures << FightFixture::monster(QStringLiteral("Rat"), QLatin1String(id));
    m_creatures = CreatureList(creatures);
}

QStringList TestInitiativeDialog::labels(InitiativeDialog &dialog)
{
    QStringList texts;
    const QList<QLabel *> found = dialog.findChildren<QLabel *>();
    for (const QLabel *label : found)
        if (label->isVisible())
            texts << label->text();
    return texts;
}

void TestInitiativeDialog::press(InitiativeDialog &dialog, const QString &objectName)
{
    auto *button = dialog.findChild<QAbstractButton *>(objectName);
    QVERIFY2(button, qPrintable(objectName));
    QTest::mouseClick(button, Qt::LeftButton);
    // A form that gave way is deleted by the loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestInitiativeDialog::asksOnceForAGroup()
{
    InitiativeDialog dialog(m_creatures);
    whenDialogRuns([&] {
        QCOMPARE(labels(dialog),
                 (QStringList {QStringLiteral("Aria (+4)"), QStringLiteral("Rat (+2)"),
                               QStringLiteral("x 3")}));
        box(dialog, QStringLiteral("Aria"))->setValue(17);
        box(dialog, QStringLiteral("Rat"))->setValue(9);
        press(dialog, QStringLiteral("okButton"));
    });
    QCOMPARE(dialog.exec(), 1);
    const QList<CreatureInit> monsters = dialog.monsterItems();
    QCOMPARE(monsters.size(), 1);
    QCOMPARE(monsters.first().name, QStringLiteral("Rat"));
    QCOMPARE(monsters.first().roll, 9);
    QCOMPARE(dialog.characterItems().size(), 1);
    QCOMPARE(dialog.characterItems().first().roll, 17);
}

void TestInitiativeDialog::asksForEachOfAnOpenedGroup()
{
    InitiativeDialog dialog(m_creatures);
    QList<int> rolled;
    whenDialogRuns([&] {
        const int groupRoll = box(dialog, QStringLiteral("Rat"))->value();
        press(dialog, QStringLiteral("expandButton:Rat"));
        QVERIFY(!box(dialog, QStringLiteral("Rat")));
        for (const char *id : {"1", "2", "3"}) {
            QSpinBox *member = box(dialog, QStringLiteral("Rat (%1)").arg(QLatin1String(id)));
            QVERIFY(member && member->isVisible());
            QVERIFY(member->value() >= 3 && member->value() <= 22);
            rolled << member->value();
        }
        QCOMPARE(rolled.first(), groupRoll); // the first rat's roll opened the row
        box(dialog, QStringLiteral("Rat (2)"))->setValue(50);
        // Closed and opened again, each keeps its own.
        press(dialog, QStringLiteral("expandButton:Rat"));
        QCOMPARE(box(dialog, QStringLiteral("Rat"))->value(), groupRoll);
        press(dialog, QStringLiteral("expandButton:Rat"));
        dialog.accept();
    });
    QCOMPARE(dialog.exec(), 1);
    QStringList names;
    QList<int> rolls;
    const QList<CreatureInit> items = dialog.monsterItems();
    for (const CreatureInit &item : items) {
        names << item.name;
        rolls << item.roll;
    }
    QCOMPARE(names.join(u','), QStringLiteral("Rat (1),Rat (2),Rat (3)"));
    QCOMPARE(rolls, (QList<int> {rolled.at(0), 50, rolled.at(2)}));
}

void TestInitiativeDialog::passesOverWhoTakesNoTurns()
{
    Creature *snare = FightFixture::monster(QStringLiteral("Snare"), QStringLiteral("A"));
    InitiativeDialog dialog(CreatureList(QList<Creature *> {snare}));
    whenDialogRuns([&] {
        QVERIFY(!dialog.findChild<QSpinBox *>());
        QVERIFY(!dialog.findChild<QWidget *>(QStringLiteral("monstersBox")));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    QCOMPARE(dialog.exec(), 1);
    const CreatureInit item = dialog.monsterItems().value(0);
    QCOMPARE(item.name, QStringLiteral("Snare (A)"));
    QCOMPARE(item.roll, 1000);
    QCOMPARE(item.random, 0);
}

void TestInitiativeDialog::keepsARollBeyondTheBox()
{
    // d20 - 60 lies below the box, which shows the nearest value and leaves the roll alone.
    InitiativeDialog dialog(
        CreatureList(QList<Creature *> {FightFixture::character(QStringLiteral("Slug"))}));
    QCOMPARE(box(dialog, QStringLiteral("Slug"))->value(), 1);
    QVERIFY(dialog.characterItems().first().roll < -39);
    box(dialog, QStringLiteral("Slug"))->setValue(3);
    QCOMPARE(dialog.characterItems().first().roll, 3);
}

void TestInitiativeDialog::worksByKeys()
{
    InitiativeDialog dialog(m_creatures);
    const NotingDisplay display;
    whenDialogRuns([&] {
        const auto type = [](const char *keys) {
            QTest::keyClicks(QApplication::focusWidget(), QLatin1String(keys));
        };
        QCOMPARE(QApplication::focusWidget(), box(dialog, QStringLiteral("Aria")));
        type("25");
        for (int i = 0; i < 10 && QApplication::focusWidget() != box(dialog, QStringLiteral("Rat"));
             ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        type("11");
        box(dialog, QStringLiteral("Aria"))->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    QCOMPARE(dialog.exec(), 1);
    QCOMPARE(dialog.characterItems().first().roll, 25);
    QCOMPARE(dialog.monsterItems().first().roll, 11);
    // The first look asks for a roll; what has no box ends the message, and so does the dialog.
    QStringList told = display.told;
    told.removeDuplicates();
    QCOMPARE(told,
             QStringList({"Aria: Initiative?", "Aria: Initiative <b>2</b>",
                          "Aria: Initiative <b>25</b>", QString(), "Rat: Initiative?",
                          "Rat: Initiative <b>1</b>", "Rat: Initiative <b>11</b>"}));
    QVERIFY(display.told.last().isEmpty());
}

// A box of a group stands for creatures of which the players may know some, all or none.
void TestInitiativeDialog::keepsTheHiddenFromThePlayers()
{
    QList<Creature *> rats;
    for (Creature *creature : m_creatures)
        if (creature->group() == u"Rat")
            rats << creature;
    QVERIFY(rats.size() > 1);
    const NotingDisplay display;
    InitiativeDialog dialog(m_creatures);
    const auto toldOfRats = [&] {
        QString told;
        whenDialogRuns([&] {
            box(dialog, QStringLiteral("Rat"))->setFocus();
            told = display.told.last();
            box(dialog, QStringLiteral("Rat"))->setValue(7);
            told += u'|' + display.told.last();
            dialog.reject();
        });
        dialog.exec();
        return told;
    };
    QCOMPARE(toldOfRats(), QStringLiteral("Rat: Initiative?|Rat: Initiative <b>7</b>"));
    rats.first()->setHidden(true);
    QVERIFY(toldOfRats().startsWith(u"Rat: "));
    for (Creature *rat : std::as_const(rats)) {
        rat->setAlias(QStringLiteral("Shade"));
        rat->setAliasMode(1);
    }
    QVERIFY(toldOfRats().startsWith(rats.at(1)->displayName() + u": "));
    dialog.keepFromPlayers(rats);
    QCOMPARE(toldOfRats(), QStringLiteral("|"));
}

MORVANE_TEST_MAIN(QApplication, TestInitiativeDialog)

#include "tst_initiativedialog.moc"
