// links: morvane_ui
// The short rest: what the dialog shows, what it leaves behind, and the event that it leads to.
#include <QCheckBox>
#include <QGroupBox>

#include "fightfixture.h"
#include "outsidechanges.h"
#include "shortrestdialog.h"
#include "smallwidgets.h"
#include "testhome.h"
#include "vitalityevents.h"

class ShortRestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void asksForTheLivingCharacters();
    void previewIsWhatComes_data();
    void previewIsWhatComes();
    void isLoggedOnce();

private:
    void rest(const std::function<void(ShortRestDialog &)> &work)
    {
        Answer answer(inFlatDialog<ShortRestDialog>(work));
        m_fight->action("shortRest")->trigger();
        QVERIFY(answer.wasAnswered);
    }
    static void setHP(Creature *creature, int hp)
    {
        appendEvent<DamageEvent>(nullptr, creature, creature->currHP() - hp);
    }
    template <typename Widget>
    static Widget *in(const QWidget &dialog, const char *name)
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    static QString text(const QWidget &dialog, const char *name)
    {
        return in<QLabel>(dialog, name)->text();
    }

    std::unique_ptr<FightFixture> m_fight;
    Creature *m_aria = nullptr; // 32 hit points, a surge gives 8
    Creature *m_bram = nullptr;
};

void ShortRestTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"), 32);
    m_fight->folder.addCharacter(QStringLiteral("Bram & Son"), 20);
    m_fight->folder.addCharacter(QStringLiteral("Cora"), 20);
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_aria = theEncounter->at(0);
    m_bram = theEncounter->at(1);
    setHP(theEncounter->at(2), -10);
}

void ShortRestTest::asksForTheLivingCharacters()
{
    appendEvent<HealEvent>(nullptr, m_bram, 8, 1);
    rest([](ShortRestDialog &dialog) {
        QStringList titles;
        for (const QGroupBox *group : dialog.findChildren<QGroupBox *>())
            titles << group->title();
        QCOMPARE(titles, QStringList({"Aria", "Bram && Son"}));
        QCOMPARE(text(dialog, "totalLabel:Aria"), QStringLiteral("= 0"));
        QCOMPARE(in<QSpinBox>(dialog, "surgeBox:Aria")->maximum(), 8);
        // What a surge gives stands at the top of its line.
        const QRect box = in<QSpinBox>(dialog, "hpBox:Aria")->geometry();
        const QList<QLabel *> labels = dialog.findChildren<QLabel *>();
        const auto value = std::find_if(labels.begin(), labels.end(), [](const QLabel *label) {
            return label->text().startsWith(QLatin1String(" x "));
        });
        QVERIFY(value != labels.end());
        QCOMPARE((*value)->geometry().top(), box.top());
        QVERIFY((*value)->geometry().bottom() < box.bottom());
        QCOMPARE(in<QSpinBox>(dialog, "surgeBox:Bram & Son")->maximum(), 0);
        dialog.reject();
    });
}

void ShortRestTest::previewIsWhatComes_data()
{
    for (const char *name : {"hp", "surges", "extra", "hpAfter"})
        QTest::addColumn<int>(name);
    QTest::addColumn<QString>("shown"); // total, surges, hit points
    QTest::newRow("counts from 0")
        << -3 << 2 << 0 << 16 << "= 16|<b>HS</b> 6/8|<b>HP</b> <font color=red>16</font>/32";
    QTest::newRow("extra alone") << -3 << 0 << 5 << 5
                                 << "= 5|<b>HS</b> 8/8|<b>HP</b> <font color=red>5</font>/32";
    QTest::newRow("both") << 20 << 1 << 3 << 31
                          << "= 31|<b>HS</b> 7/8|<b>HP</b> <font color=blue>31</font>/32";
    QTest::newRow("more than all") << 30 << 2 << 0 << 32 << "= 46|<b>HS</b> 6/8|<b>HP</b> 46/32";
}

void ShortRestTest::previewIsWhatComes()
{
    QFETCH(const int, hp);
    QFETCH(const int, surges);
    QFETCH(const int, extra);
    setHP(m_aria, hp);
    rest([&](ShortRestDialog &dialog) {
        auto *surgeBox = in<QSpinBox>(dialog, "surgeBox:Aria");
        auto *hpBox = in<QSpinBox>(dialog, "hpBox:Aria");
        // To and fro, so that one preview follows on another.
        surgeBox->setValue(8);
        hpBox->setValue(500);
        surgeBox->setValue(0);
        hpBox->setValue(0);
        QCOMPARE(text(dialog, "totalLabel:Aria"), QStringLiteral("= %1").arg(hp));
        surgeBox->setValue(surges);
        hpBox->setValue(extra);
        QString shown = text(dialog, "totalLabel:Aria");
        for (const char *name : {"surgesLabel:Aria", "hpLabel:Aria"})
            shown += u'|' + text(dialog, name);
        QTEST(shown, "shown");
        dialog.accept();
    });
    QTEST(m_aria->currHP(), "hpAfter");
    QCOMPARE(m_aria->currHS(), 8 - surges);
}

void ShortRestTest::isLoggedOnce()
{
    setHP(m_aria, -3);
    appendEvent<StabilizeEvent>(nullptr, m_aria);
    const CreatureState before = m_aria->state();
    const int first = theHistory->eventCount();
    rest([](ShortRestDialog &dialog) {
        in<QSpinBox>(dialog, "surgeBox:Aria")->setValue(1);
        in<QAbstractButton>(dialog, "okButton")->click();
    });
    const CreatureState after = m_aria->state();
    QCOMPARE(after.currHP, 8);
    QCOMPARE(FightFixture::eventClasses(first), QStringList {"ShortRest"});
    m_fight->action("stepBack")->trigger();
    QVERIFY(m_aria->state() == before);
    m_fight->close();
    m_fight->open();
    m_fight->action("stepForward")->trigger();
    QVERIFY(theEncounter->at(0)->state() == after);
}

MORVANE_TEST_MAIN(QApplication, ShortRestTest)
#include "tst_shortrest.moc"
