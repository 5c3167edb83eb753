// links: morvane_ui
// The short rest: what the dialog shows, what it leaves behind, and the event that it leads to.
#include <QCheckBox>
#include <QDirIterator>
#include <QGroupBox>

#include "datatable.h"
#include "fightfixture.h"
#include "shortrestdialog.h"
#include "smallwidgets.h"
#include "testhome.h"
#include "vitalityevents.h"

namespace {

constexpr ColumnNames<int, int, int, QString, QString, QString, int> RestColumns {
    "hp", "surges", "extra", "total", "hpLabel", "surgesLabel", "hpAfter"};

} // namespace

class ShortRestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void asksForTheLivingCharacters();
    void previewIsWhatComes_data();
    void previewIsWhatComes();
    void grantsAnActionPointToAll();
    void leavesNothingBehind_data();
    void leavesNothingBehind();
    void isLoggedOnce();
    void worksByKeys();
    void survivesAReplacedLibrary();

private:
    // The action, with `work` done in its dialog.
    void rest(const std::function<void(ShortRestDialog &)> &work);
    void setHP(Creature *creature, int hp);
    // The log and every file of the library.
    QMap<QString, QByteArray> files() const;
    template <typename Widget>
    static Widget *in(const QWidget &dialog, const char *name)
    {
        auto *found = dialog.findChild<Widget *>(QLatin1String(name));
        if (!found)
            qFatal("no %s", name);
        return found;
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
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_aria = theEncounter->at(0);
    m_bram = theEncounter->at(1);
}

void ShortRestTest::rest(const std::function<void(ShortRestDialog &)> &work)
{
    Answer answer(inFlatDialog<ShortRestDialog>([&work](ShortRestDialog &dialog) {
        work(dialog);
        if (QTest::currentTestFailed())
            dialog.reject();
    }));
    m_fight->action("shortRest")->trigger();
    QVERIFY(answer.wasAnswered);
}

void ShortRestTest::setHP(Creature *creature, int hp)
{
    appendEvent<DamageEvent>(nullptr, creature, creature->currHP() - hp);
}

QMap<QString, QByteArray> ShortRestTest::files() const
{
    QMap<QString, QByteArray> found;
    QDirIterator it(m_fight->folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = QDir(m_fight->folder.path()).relativeFilePath(it.next());
        found.insert(file, m_fight->folder.read(file));
    }
    return found;
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
        QCOMPARE(text(dialog, "apLabel:Aria"), QStringLiteral("<b>AP</b> 1"));
        QCOMPARE(in<QSpinBox>(dialog, "surgeBox:Aria")->maximum(), 8);
        QCOMPARE(in<QSpinBox>(dialog, "surgeBox:Bram & Son")->maximum(), 0);
        QCOMPARE(in<QSpinBox>(dialog, "hpBox:Aria")->maximum(), 500);
        dialog.reject();
    });
    setHP(m_bram, -50);
    rest([](ShortRestDialog &dialog) {
        QCOMPARE(dialog.findChildren<QGroupBox *>().size(), 1);
        dialog.reject();
    });
}

void ShortRestTest::previewIsWhatComes_data()
{
    addColumns<int, int, int, QString, QString, QString, int>(RestColumns);
    QTest::newRow("counts from 0") << -3 << 2 << 0 << "= 16"
                                   << "<b>HP</b> <font color=red>16</font>/32"
                                   << "<b>HS</b> 6/8" << 16;
    QTest::newRow("extra alone") << -3 << 0 << 5 << "= 5"
                                 << "<b>HP</b> <font color=red>5</font>/32"
                                 << "<b>HS</b> 8/8" << 5;
    QTest::newRow("both") << 20 << 1 << 3 << "= 31"
                          << "<b>HP</b> <font color=blue>31</font>/32"
                          << "<b>HS</b> 7/8" << 31;
    QTest::newRow("more than all") << 30 << 2 << 0 << "= 46"
                                   << "<b>HP</b> 46/32"
                                   << "<b>HS</b> 6/8" << 32;
}

void ShortRestTest::previewIsWhatComes()
{
    const auto [hp, surges, extra, total, hpLabel, surgesLabel, hpAfter] =
        fetch<int, int, int, QString, QString, QString, int>(RestColumns);
    setHP(m_aria, hp);
    QStringList shown;
    rest([&](ShortRestDialog &dialog) {
        auto *surgeBox = in<QSpinBox>(dialog, "surgeBox:Aria");
        auto *hpBox = in<QSpinBox>(dialog, "hpBox:Aria");
        // To and fro, so that one preview follows on another.
        surgeBox->setValue(8);
        hpBox->setValue(500);
        surgeBox->setValue(0);
        hpBox->setValue(0);
        shown << text(dialog, "totalLabel:Aria");
        surgeBox->setValue(surges);
        hpBox->setValue(extra);
        shown << text(dialog, "totalLabel:Aria") << text(dialog, "hpLabel:Aria")
              << text(dialog, "surgesLabel:Aria");
        dialog.accept();
    });
    QCOMPARE(shown, QStringList({QStringLiteral("= %1").arg(hp), total, hpLabel, surgesLabel}));
    QCOMPARE(m_aria->currHP(), hpAfter);
    QCOMPARE(m_aria->currHS(), 8 - surges);
    QVERIFY(m_aria->isStable());
}

void ShortRestTest::grantsAnActionPointToAll()
{
    rest([](ShortRestDialog &dialog) {
        auto *grant = in<QCheckBox>(dialog, "grantBox");
        grant->click();
        QCOMPARE(text(dialog, "apLabel:Aria"), QStringLiteral("<b>AP</b> 2"));
        QCOMPARE(text(dialog, "apLabel:Bram & Son"), QStringLiteral("<b>AP</b> 2"));
        QTest::mouseClick(in<ClickableLabel>(dialog, "grantLabel"), Qt::LeftButton);
        QCOMPARE(text(dialog, "apLabel:Aria"), QStringLiteral("<b>AP</b> 1"));
        grant->click();
        dialog.accept();
    });
    QCOMPARE(m_aria->currAP(), 2);
    QCOMPARE(m_bram->currAP(), 2);
}

void ShortRestTest::leavesNothingBehind_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"button", "escape", "close", "hide"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

// Aria was stabilized: in the preview she comes up and goes down again.
void ShortRestTest::leavesNothingBehind()
{
    QFETCH(const QString, way);
    setHP(m_aria, -3);
    appendEvent<StabilizeEvent>(nullptr, m_aria);
    setHP(m_bram, -2);
    const QList<CreatureState> before {m_aria->state(), m_bram->state()};
    const QMap<QString, QByteArray> filesBefore = files();
    QVERIFY(!filesBefore.value(QStringLiteral("history.log")).isEmpty());
    rest([&](ShortRestDialog &dialog) {
        for (const char *name : {"surgeBox:Aria", "hpBox:Aria", "hpBox:Bram & Son"})
            in<QSpinBox>(dialog, name)->setValue(3);
        in<QCheckBox>(dialog, "grantBox")->click();
        QCOMPARE(m_aria->currHP(), 27);
        QVERIFY(m_bram->isStable());
        if (way == QLatin1String("button"))
            in<QAbstractButton>(dialog, "cancelButton")->click();
        else if (way == QLatin1String("escape"))
            QTest::keyClick(in<QSpinBox>(dialog, "hpBox:Aria"), Qt::Key_Escape);
        else if (way == QLatin1String("close"))
            m_fight->window().close();
        else
            m_fight->window().hide();
    });
    QVERIFY(m_aria->state() == before.at(0));
    QVERIFY(m_bram->state() == before.at(1));
    // The next command finds nothing that was changed outside the history.
    theEncounter->checkVitality(theHistory);
    QVERIFY(files() == filesBefore);
}

void ShortRestTest::isLoggedOnce()
{
    setHP(m_aria, -3);
    appendEvent<StabilizeEvent>(nullptr, m_aria);
    const CreatureState before = m_aria->state();
    const int first = theHistory->eventCount();
    rest([](ShortRestDialog &dialog) {
        in<QSpinBox>(dialog, "surgeBox:Aria")->setValue(1);
        in<QCheckBox>(dialog, "grantBox")->click();
        in<QAbstractButton>(dialog, "okButton")->click();
    });
    const CreatureState after = m_aria->state();
    QCOMPARE(after.currHP, 8);
    QCOMPARE(FightFixture::eventClasses(first), QStringList {"ShortRest"});
    m_fight->action("stepBack")->trigger();
    QVERIFY(m_aria->state() == before);
    m_fight->action("stepForward")->trigger();
    QVERIFY(m_aria->state() == after);
    m_fight->close();
    m_fight->open();
    QVERIFY(theEncounter->at(0)->state() == after);
}

void ShortRestTest::worksByKeys()
{
    setHP(m_aria, 10);
    rest([](ShortRestDialog &dialog) {
        const auto type = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
        QCOMPARE(QApplication::focusWidget(), in<QSpinBox>(dialog, "surgeBox:Aria"));
        type(Qt::Key_1); // in place of the 0 that was selected
        type(Qt::Key_Tab);
        type(Qt::Key_4);
        type(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), in<QSpinBox>(dialog, "surgeBox:Bram & Son"));
        type(Qt::Key_Return);
    });
    QCOMPARE(m_aria->currHP(), 10 + 8 + 4);
}

void ShortRestTest::survivesAReplacedLibrary()
{
    ShortRestDialog dialog;
    Answer answer(inFlatDialog<ShortRestDialog>([](ShortRestDialog &open) {
        theEncounter->reset();
        theCharacters->clear();
        in<QSpinBox>(open, "surgeBox:Aria")->setValue(2);
        open.accept();
    }));
    QCOMPARE(dialog.exec(), 1);
    QVERIFY(dialog.result().isEmpty());

    ShortRestDialog second;
    Answer closing(inFlatDialog<ShortRestDialog>([this](ShortRestDialog &) { m_fight->close(); }));
    QCOMPARE(second.exec(), 0);
}

MORVANE_TEST_MAIN(QApplication, ShortRestTest)
#include "tst_shortrest.moc"
