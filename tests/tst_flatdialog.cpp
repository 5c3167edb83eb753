// The dialog inside the main window: its loop, its keys, and what can happen while it runs.
// links: morvane_ui
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTableView>
#include <QVBoxLayout>

#include "creature.h"
#include "dialoghost.h"
#include "eventsignaler.h"
#include "flatdialog.h"
#include "restpreview.h"
#include "smallwidgets.h"
#include "testhome.h"
#include "windowfixture.h"

namespace {

class NumberDialog : public FlatDialog {
public:
    NumberDialog() : FlatDialog(QStringLiteral("Numbers"))
    {
        edit = new QLineEdit;
        setContent(edit);
        setFocusProxy(edit);
    }
    void onFinished() override
    {
        ++finished;
        wasActiveAtEnd = activeFlatDialog();
    }

    QLineEdit *edit;
    int finished = 0;
    bool wasActiveAtEnd = true;
};

} // namespace

class TestFlatDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void endsByKey_data();
    void endsByKey();
    void takesTheListsPlace();
    void previewTakesItselfAway();
    void endsWithTheWindow();

private:
    std::unique_ptr<WindowFixture> m_fixture;
};

void TestFlatDialog::init()
{
    failOnWarnings();
    QSettings().clear();
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->folder().addCharacter(QStringLiteral("Aria"));
    m_fixture->folder().addMonster(QStringLiteral("Rat"));
    m_fixture->open();
    theEncounter->setOrder(CreatureList(
        QList<Creature *> {WindowFixture::character(QStringLiteral("Aria")),
                           WindowFixture::monster(QStringLiteral("Rat"), QStringLiteral("1"))}));
}

void TestFlatDialog::endsByKey_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("result");
    QTest::newRow("escape") << Qt::Key_Escape << 0;
    QTest::newRow("return") << Qt::Key_Return << 1;
    QTest::newRow("keypad") << Qt::Key_Enter << 1;
}

void TestFlatDialog::endsByKey()
{
    QFETCH(Qt::Key, key);
    NumberDialog dialog;
    whenDialogRuns([&] {
        QTest::keyClick(dialog.edit, Qt::Key_7);
        QTest::keyClick(dialog.edit, key);
    });
    QTEST(dialog.exec(), "result");
    QCOMPARE(dialog.edit->text(), QStringLiteral("7"));
    QCOMPARE(dialog.finished, 1);
    QVERIFY(!dialog.wasActiveAtEnd);
}

void TestFlatDialog::takesTheListsPlace()
{
    auto *table = m_fixture->find<QTableView>(QStringLiteral("initiativeList"));
    NumberDialog dialog;
    whenDialogRuns([&] {
        QVERIFY(!table->isVisible());
        QVERIFY(dialog.isVisible());
        QVERIFY(dialog.edit->hasFocus());
        QCOMPARE(m_fixture->window().activeDialog(), &dialog);
        const QList<QLabel *> labels = table->parentWidget()->findChildren<QLabel *>();
        const auto title = std::find_if(labels.begin(), labels.end(), [](const QLabel *label) {
            return label->text().contains(QLatin1String("Numbers"));
        });
        QVERIFY(title != labels.end());
        QCOMPARE((*title)->alignment(), Qt::AlignRight | Qt::AlignVCenter);
        dialog.accept();
    });
    dialog.exec();
    QVERIFY(table->isVisible());
    QVERIFY(!dialog.isVisible());
    QCOMPARE(m_fixture->window().activeDialog(), nullptr);
}

void TestFlatDialog::previewTakesItselfAway()
{
    Creature *aria = theEncounter->at(0);
    Creature *rat = theEncounter->at(1);
    aria->takeDamage(33, nullptr);
    aria->setStable(true);
    const QList<CreatureState> before {aria->state(), rat->state()};
    {
        RestPreview preview;
        preview.show(aria, {7, 2, 4}, 1);
        preview.show(aria, {6, 2, 4}, 1); // in place of the other
        preview.show(rat, {15, 0, 0}, 0);
        QCOMPARE(aria->currHP(), 6);
        QCOMPARE(rat->currHP(), 15);
    }
    QVERIFY(aria->state() == before.at(0));
    QVERIFY(rat->state() == before.at(1));
}

void TestFlatDialog::endsWithTheWindow()
{
    NumberDialog dialog;
    whenDialogRuns([&] { m_fixture->window().hide(); });
    QCOMPARE(dialog.exec(), 0);

    m_fixture->window().show();
    whenDialogRuns([&] { m_fixture->close(); });
    QCOMPARE(dialog.exec(), 0);
    QCOMPARE(dialog.finished, 2);
}

// --- the small widgets ---

MORVANE_TEST_MAIN(QApplication, TestFlatDialog)

#include "tst_flatdialog.moc"
