// The message box, the dialogs that choose files, and the dialog inside the main window: its loop,
// its keys, and what can happen while it runs.
// links: morvane_ui
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>

#include "dialoghost.h"
#include "fightfixture.h"
#include "filedialogs.h"
#include "restpreview.h"
#include "smallwidgets.h"
#include "testhome.h"

namespace {

const QString Title = QStringLiteral("A Title");
const QString Text = QStringLiteral("Some <b>text</b>.");
const QString Key = QStringLiteral("managerWindow/hint");

// Answers the next message box by a press on the button of that text.
template <typename Look>
void answer(const QString &button, Look look)
{
    QTimer::singleShot(0, qApp, [button, look] {
        auto *dialog = qobject_cast<MessageDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        look(dialog);
        if (QAbstractButton *found = buttonWithText(*dialog, button))
            return QTest::mouseClick(found, Qt::LeftButton);
        dialog->reject();
        QFAIL("no such button");
    });
}

void answer(const QString &button)
{
    answer(button, [](MessageDialog *) {});
}

// "title|folder|filter" of the dialog that the call opens, which gets `file` chosen, or is
// cancelled.
QString answering(const QString &file, const std::function<void()> &call)
{
    QString seen;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer.stop();
        seen = QStringList {dialog->windowTitle(), dialog->directory().path(),
                            dialog->nameFilters().join(u',')}
                   .join(u'|');
        if (file.isEmpty()) {
            dialog->reject();
        } else {
            dialog->selectFile(file);
            static_cast<QDialog *>(dialog)->accept();
        }
    });
    timer.start(1);
    call();
    return seen;
}

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

class TestDialogs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void showsTitleAndText();
    void asks();
    void asksForAFolder();
    void hints_data();
    void hints();
    void keepsSilent();

    void choosesPortraits();
    void choosesImports();

    void endsByKey_data();
    void endsByKey();
    void takesTheListsPlace();
    void previewTakesItselfAway();
    void endsWithTheWindow();

private:
    void open();

    std::unique_ptr<FightFixture> m_fixture;
};

void TestDialogs::init()
{
    failOnWarnings();
    m_fixture = std::make_unique<FightFixture>();
}

// The window, which only the dialogs inside it need.
void TestDialogs::open()
{
    m_fixture->folder.addCharacter(QStringLiteral("Aria"));
    m_fixture->folder.addMonster(QStringLiteral("Rat"));
    m_fixture->open();
    theEncounter->setOrder(CreatureList(
        QList<Creature *> {FightFixture::character(QStringLiteral("Aria")),
                           FightFixture::monster(QStringLiteral("Rat"), QStringLiteral("1"))}));
}

// --- the message box ---

void TestDialogs::showsTitleAndText()
{
    bool looked = false;
    answer(QStringLiteral("OK"), [&looked](MessageDialog *dialog) {
        QCOMPARE(dialog->windowTitle(), Title);
        auto *text = dialog->findChild<QLabel *>(QStringLiteral("messageText"));
        QCOMPARE(text->text(), Text);
        QCOMPARE(text->textFormat(), Qt::RichText);
        QVERIFY(text->wordWrap());
        QCOMPARE(dialog->findChildren<QPushButton *>().size(), 1);
        looked = true;
    });
    showMessage(Title, Text);
    QVERIFY(looked);
}

void TestDialogs::asks()
{
    const QString quit = QStringLiteral("Quit");
    answer(quit);
    QVERIFY(askMessage(Title, Text, quit));
    answer(QStringLiteral("Cancel"));
    QVERIFY(!askMessage(Title, Text, quit));
    answer(quit);
    QVERIFY(MessageDialog().askInfo(Title, Text, quit));
    QTimer::singleShot(0, qApp,
                       [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    QVERIFY(!MessageDialog().askWarning(Title, Text, quit));
}

void TestDialogs::asksForAFolder()
{
    const QString create = QStringLiteral("Create");
    const QList<std::pair<QString, int>> answers {
        {QStringLiteral("Select Folder..."), 2}, {create, 1}, {QStringLiteral("Cancel"), 0}};
    for (const auto &[button, result] : answers) {
        answer(button);
        QCOMPARE(askFolderMessage(Title, Text, create), result);
    }
}

void TestDialogs::hints_data()
{
    QTest::addColumn<bool>("asks");
    QTest::addColumn<bool>("check");
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("result");
    QTest::newRow("ok") << false << false << QStringLiteral("OK") << true;
    QTest::newRow("ok, not again") << false << true << QStringLiteral("OK") << true;
    QTest::newRow("yes") << true << false << QStringLiteral("Go on") << true;
    QTest::newRow("cancel") << true << false << QStringLiteral("Cancel") << false;
    QTest::newRow("cancel, not again") << true << true << QStringLiteral("Cancel") << false;
}

void TestDialogs::hints()
{
    QFETCH(bool, asks);
    QFETCH(bool, check);
    QFETCH(QString, button);
    QFETCH(bool, result);
    answer(button, [check](MessageDialog *dialog) {
        auto *label = dialog->findChild<ClickableLabel *>();
        QCOMPARE(label->text(), QStringLiteral("Do not show this message again"));
        if (check)
            QTest::mouseClick(label, Qt::LeftButton);
    });
    if (asks)
        QCOMPARE(MessageDialog().askHint(Key, Title, Text, QStringLiteral("Go on")), result);
    else
        MessageDialog().hint(Key, Title, Text);
    QCOMPARE(QSettings().value(Key, true).toBool(), !check);
}

void TestDialogs::keepsSilent()
{
    QSettings().setValue(Key, false);
    // Either would wait for an answer for ever.
    MessageDialog().hint(Key, Title, Text);
    QVERIFY(MessageDialog().askHint(Key, Title, Text, QStringLiteral("Go on")));
}

// --- files ---

void TestDialogs::choosesPortraits()
{
    const TestDataFolder &folder = m_fixture->folder;
    QDir(folder.path()).mkdir(QStringLiteral("pictures"));
    const QString outside = folder.file(QStringLiteral("pictures/face.png"));
    QImage(4, 4, QImage::Format_RGB32).save(outside);
    const auto expected = [&folder](const QString &name) -> QString {
        return QStringLiteral("Select Portrait Image|") + folder.file(name)
            + QStringLiteral("|Images (*.gif *.jpeg *.jpg *.tiff *.png *.bmp *.mng *.svg *.xpm)");
    };
    QString path;
    const auto choose = [&path] { path = selectPortraitFile(nullptr); };
    QCOMPARE(answering(QString(), choose), expected(QStringLiteral("Portraits")));
    QCOMPARE(path, QString());
    QCOMPARE(answering(outside, choose), expected(QStringLiteral("Portraits")));
    QCOMPARE(path, QStringLiteral("face.png"));
    QVERIFY(QFile::exists(folder.file(QStringLiteral("Portraits/face.png"))));
    QCOMPARE(answering(QString(), choose), expected(QStringLiteral("pictures")));
}

void TestDialogs::choosesImports()
{
    const TestDataFolder &folder = m_fixture->folder;
    folder.write(QStringLiteral("Characters/aria.dnd4e"), QStringLiteral("x"));
    folder.write(QStringLiteral("bran.dnd4e"), QStringLiteral("x"));
    const auto expected = [](const QString &directory) -> QString {
        return QStringLiteral("Select Character Builder File|") + directory
            + QStringLiteral("|Character Builder files (*.dnd4e)");
    };
    QString path;
    const auto choose = [&path] { path = selectImportFile(nullptr); };
    QCOMPARE(answering(folder.file(QStringLiteral("bran.dnd4e")), choose),
             expected(folder.file(QStringLiteral("Characters"))));
    QCOMPARE(path, folder.file(QStringLiteral("bran.dnd4e")));
    QCOMPARE(answering(folder.file(QStringLiteral("Characters/aria.dnd4e")), choose),
             expected(folder.path()));
    QCOMPARE(path, QStringLiteral("aria.dnd4e"));
}

// --- the dialog inside the window ---

void TestDialogs::endsByKey_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("result");
    QTest::newRow("escape") << Qt::Key_Escape << 0;
    QTest::newRow("return") << Qt::Key_Return << 1;
    QTest::newRow("keypad") << Qt::Key_Enter << 1;
}

void TestDialogs::endsByKey()
{
    open();
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

void TestDialogs::takesTheListsPlace()
{
    open();
    auto *table = m_fixture->find<QTableView>("initiativeList");
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

void TestDialogs::previewTakesItselfAway()
{
    open();
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

void TestDialogs::endsWithTheWindow()
{
    open();
    NumberDialog dialog;
    whenDialogRuns([&] { m_fixture->window().hide(); });
    QCOMPARE(dialog.exec(), 0);

    m_fixture->window().show();
    whenDialogRuns([&] { m_fixture->close(); });
    QCOMPARE(dialog.exec(), 0);
    QCOMPARE(dialog.finished, 2);
}

MORVANE_TEST_MAIN(QApplication, TestDialogs)

#include "tst_dialogs.moc"
