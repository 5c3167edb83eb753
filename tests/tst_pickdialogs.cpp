// The three dialogs that pick from the library, worked in the main window.
// links: morvane_ui
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTableView>

#include "creature.h"
#include "encounters.h"
#include "fightfixture.h"
#include "messagedialog.h"
#include "pickcharactersdialog.h"
#include "pickencounterdialog.h"
#include "pickmonsterdialog.h"
#include "testhome.h"

namespace {

QPushButton *button(QWidget &dialog, const QString &text)
{
    const QList<QPushButton *> all = dialog.findChildren<QPushButton *>();
    for (QPushButton *candidate : all)
        if (candidate->text().remove(u'&') == text)
            return candidate;
    return nullptr;
}

// "Add, Add Hidden*, Cancel": the enabled ones with a star.
QString buttons(QWidget &dialog)
{
    QStringList texts;
    const QList<QPushButton *> all = dialog.findChildren<QPushButton *>();
    for (const QPushButton *candidate : all)
        texts << candidate->text().remove(u'&') + (candidate->isEnabled() ? u"*" : u"");
    return texts.join(QStringLiteral(", "));
}

void press(QWidget &dialog, const QString &text)
{
    QPushButton *found = button(dialog, text);
    QVERIFY2(found, qPrintable(text));
    QTest::mouseClick(found, Qt::LeftButton);
}

QString shownNames(const QTableView &table)
{
    QStringList names;
    for (int row = 0; row < table.model()->rowCount(); ++row)
        if (!table.isRowHidden(row))
            names << table.model()->index(row, 0).data().toString();
    return names.join(u',');
}

void clickName(QTableView &table, const QString &name)
{
    const QModelIndexList found = table.model()->match(table.model()->index(0, 0), Qt::DisplayRole,
                                                       name, 1, Qt::MatchExactly);
    QVERIFY(!found.isEmpty());
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(found.first()).center());
}

bool showsInPanel(const char *name)
{
    const auto *dock = theMainWindow->findChild<QWidget *>(QStringLiteral("currentWidget"));
    const QList<QLabel *> labels = dock->findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(), [name](const QLabel *label) {
        return label->text().contains(QLatin1String(name));
    });
}

} // namespace

class TestPickDialogs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void offersWhatFitsTheEncounter_data();
    void offersWhatFitsTheEncounter();
    void filtersEncounters();
    void picksAnEncounterByKeys();

    void asksForAnId();

    void picksTheParty();

private:
    void open(int characters = 2);
    static void setParty(const QStringList &names, bool running);

    std::unique_ptr<FightFixture> m_fixture;
};

void TestPickDialogs::init()
{
    failOnWarnings();
    m_fixture = std::make_unique<FightFixture>();
    m_fixture->folder.addMonster(QStringLiteral("Rat"));
    m_fixture->folder.addMonster(QStringLiteral("Bat"));
    m_fixture->folder.addMonster(QStringLiteral("Mole"));
    // In place of the fixture's own.
    m_fixture->folder.write(QStringLiteral("Encounters/rest.txt"),
                            QStringLiteral("name=Rat Den\nadventure=Sewers\ndescription=Squeaks.\n"
                                           "level=1\nxp=200\nRat=1,2\nalias#1=Old Whisker\n"));
    m_fixture->folder.write(QStringLiteral("Encounters/mole.txt"),
                            QStringLiteral("name=Mole Hill\nadventure=Garden\ndescription=Deep."
                                           "\\nDeeper.\nlevel=1\nxp=100\nMole=1\n"));
}

void TestPickDialogs::open(int characters)
{
    static const char *const names[] = {"Aria", "Borin"};
    for (int i = 0; i < characters; ++i)
        m_fixture->folder.addCharacter(i < 2 ? QString(QLatin1String(names[i]))
                                             : QStringLiteral("Hero %1").arg(i));
    m_fixture->open();
}

void TestPickDialogs::setParty(const QStringList &names, bool running)
{
    QList<Creature *> party;
    for (const QString &name : names)
        party << FightFixture::character(name);
    theEncounter->setOrder(CreatureList(party));
    theEncounter->setCurrentIndex(running ? 0 : -1);
}

// --- encounters ---

void TestPickDialogs::offersWhatFitsTheEncounter_data()
{
    QTest::addColumn<bool>("hasCreatures");
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("offered");
    QTest::addColumn<QString>("press");
    QTest::addColumn<int>("result");
    const QString replace = QStringLiteral("Replace*, Replace Hidden*, Add*, Add Hidden*, Cancel*");
    const QString set = QStringLiteral("Set*, Set Hidden*, Cancel*");
    const QString add = QStringLiteral("Add*, Add Hidden*, Cancel*");
    QTest::newRow("set") << false << false << set << QStringLiteral("Set") << 5;
    QTest::newRow("set hidden") << false << false << set << QStringLiteral("Set Hidden") << 7;
    QTest::newRow("replace") << true << false << replace << QStringLiteral("Replace") << 5;
    QTest::newRow("replace hidden")
        << true << false << replace << QStringLiteral("Replace Hidden") << 7;
    QTest::newRow("add") << true << true << add << QStringLiteral("Add") << 3;
    QTest::newRow("add hidden") << true << true << add << QStringLiteral("Add Hidden") << 4;
    QTest::newRow("cancel") << true << true << add << QStringLiteral("Cancel") << 0;
}

void TestPickDialogs::offersWhatFitsTheEncounter()
{
    QFETCH(bool, hasCreatures);
    QFETCH(bool, running);
    QFETCH(QString, press);
    open();
    if (hasCreatures)
        setParty({QStringLiteral("Aria")}, running);
    PickEncounterDialog dialog;
    whenDialogRuns([&] {
        QCOMPARE(buttons(dialog).count(u'*'), 1); // Cancel alone
        auto *table = dialog.findChild<QTableView *>(QStringLiteral("pickEncounterTable"));
        clickName(*table, QStringLiteral("Mole Hill"));
        QTEST(buttons(dialog), "offered");
        ::press(dialog, press);
    });
    QTEST(dialog.exec(), "result");
    QCOMPARE(dialog.selectedEncounter()->name(), QStringLiteral("Mole Hill"));
}

void TestPickDialogs::filtersEncounters()
{
    open();
    PickEncounterDialog dialog;
    auto *table = dialog.findChild<QTableView *>(QStringLiteral("pickEncounterTable"));
    QAbstractItemModelTester tester(table->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    whenDialogRuns([&] {
        auto *adventures = dialog.findChild<QComboBox *>(QStringLiteral("adventureBox"));
        QStringList items;
        for (int i = 0; i < adventures->count(); ++i)
            items << adventures->itemText(i);
        QCOMPARE(items.join(u','), QStringLiteral("All Adventures,Garden,Sewers"));
        QCOMPARE(shownNames(*table), QStringLiteral("Mole Hill,Rat Den"));

        clickName(*table, QStringLiteral("Rat Den"));
        QTest::keyClicks(dialog.findChild<QLineEdit *>(QStringLiteral("filterEdit")),
                         QStringLiteral("DEN"));
        QTRY_COMPARE(shownNames(*table), QStringLiteral("Rat Den"));
        QVERIFY(!dialog.selectedEncounter());
        QVERIFY(!button(dialog, QStringLiteral("Set"))->isEnabled());

        adventures->setFocus();
        QTest::keyClick(adventures, Qt::Key_Down);
        QTRY_COMPARE(shownNames(*table), QString());
        dialog.findChild<QLineEdit *>(QStringLiteral("filterEdit"))->clear();
        QTRY_COMPARE(shownNames(*table), QStringLiteral("Mole Hill"));
        dialog.reject();
    });
    dialog.exec();
}

void TestPickDialogs::picksAnEncounterByKeys()
{
    open();
    PickEncounterDialog dialog;
    whenDialogRuns([&] {
        const auto key = [](Qt::Key k) { QTest::keyClick(QApplication::focusWidget(), k); };
        // Return picks nothing while nothing is selected.
        key(Qt::Key_Return);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("rat"));
        auto *table = dialog.findChild<QTableView *>();
        QTRY_COMPARE(shownNames(*table), QStringLiteral("Rat Den"));
        key(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), table);
        // Beyond either edge, and to the row that the filter hides.
        for (const Qt::Key edge : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_M})
            key(edge);
        QCOMPARE(table->currentIndex().data().toString(), QStringLiteral("Rat Den"));
        auto *filter = dialog.findChild<QLineEdit *>(QStringLiteral("filterEdit"));
        filter->setFocus();
        QTest::keyClicks(filter, QStringLiteral("xyz"));
        QTRY_COMPARE(shownNames(*table), QString());
        key(Qt::Key_Down);
        key(Qt::Key_Up);
        key(Qt::Key_R);
        QVERIFY(!table->selectionModel()->hasSelection());
        filter->setText(QStringLiteral("rat"));
        QTRY_COMPARE(shownNames(*table), QStringLiteral("Rat Den"));
        table->setFocus();
        key(Qt::Key_R);
        key(Qt::Key_Return);
    });
    QCOMPARE(dialog.exec(), int(PickEncounterDialog::Set));
    QCOMPARE(dialog.selectedEncounter()->name(), QStringLiteral("Rat Den"));
}

// --- monsters ---

void TestPickDialogs::asksForAnId()
{
    open();
    PickMonsterDialog dialog;
    QString message;
    whenDialogRuns([&] {
        auto *table = dialog.findChild<QTableView *>();
        auto *id = dialog.findChild<QLineEdit *>(QStringLiteral("monsterIdEdit"));
        clickName(*table, QStringLiteral("Rat"));
        QTest::keyClicks(id, QStringLiteral("  "));
        whenDialogRuns([&] {
            QWidget *box = QApplication::activeModalWidget();
            message = box->windowTitle() + u'|'
                + box->findChild<QLabel *>(QStringLiteral("messageText"))->text();
            press(*box, QStringLiteral("OK"));
        });
        press(dialog, QStringLiteral("Add Hidden"));
        QCOMPARE(m_fixture->window().activeDialog(), &dialog);
        QCOMPARE(m_fixture->window().focusWidget(), id);
        QTest::keyClicks(id, QStringLiteral("7 "));
        QTest::keyClicks(dialog.findChild<QLineEdit *>(QStringLiteral("monsterAliasEdit")),
                         QStringLiteral("Squeaker"));
        press(dialog, QStringLiteral("Add Hidden"));
    });
    QCOMPARE(dialog.exec(), int(PickMonsterDialog::AddHidden));
    QCOMPARE(message,
             QStringLiteral("Monster ID|Please enter a unique ID for the Rat, before it can be "
                            "added to the encounter."));
    QString alias;
    const Creature *monster = dialog.selectedMonster(alias);
    QCOMPARE(monster->displayName(), QStringLiteral("Rat (7)"));
    QCOMPARE(alias, QStringLiteral("Squeaker"));
}

// --- characters ---

void TestPickDialogs::picksTheParty()
{
    open();
    setParty({QStringLiteral("Aria")}, false);
    const auto run = [](PickCharactersDialog &dialog, const std::function<void()> &work) {
        whenDialogRuns(work);
        return dialog.exec();
    };
    const auto box = [](PickCharactersDialog &dialog, const char *name) {
        return dialog.findChild<QCheckBox *>(QStringLiteral("character:") + QLatin1String(name));
    };
    {
        PickCharactersDialog dialog;
        QCOMPARE(run(dialog,
                     [&] {
                         QCOMPARE(buttons(dialog), QStringLiteral("Select*, Select All*, Cancel*"));
                         QVERIFY(box(dialog, "Aria")->isChecked());
                         box(dialog, "Aria")->click();
                         QCOMPARE(buttons(dialog), QStringLiteral("Select, Select All*, Cancel*"));
                         QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
                         QTRY_VERIFY(showsInPanel("Aria"));
                         box(dialog, "Borin")->click();
                         QTRY_VERIFY(showsInPanel("Borin"));
                         QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
                     }),
                 1);
        QCOMPARE(dialog.selectedCharacters().names(), QStringLiteral("Borin"));
    }
    {
        PickCharactersDialog dialog;
        QCOMPARE(run(dialog, [&] { press(dialog, QStringLiteral("Select All")); }), 1);
        QCOMPARE(dialog.selectedCharacters().names(), QStringLiteral("Aria, Borin"));
    }
    {
        PickCharactersDialog dialog; // accepted as it was: nothing changed
        QCOMPARE(run(dialog, [&] { press(dialog, QStringLiteral("Select")); }), 1);
        QVERIFY(dialog.selectedCharacters().isEmpty());
    }
}

MORVANE_TEST_MAIN(QApplication, TestPickDialogs)

#include "tst_pickdialogs.moc"
