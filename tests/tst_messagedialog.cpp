// The message box: what it shows, what its buttons answer, and "do not show again".
// links: morvane_ui
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTimer>

#include "messagedialog.h"
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
        for (QAbstractButton *candidate : dialog->findChildren<QPushButton *>())
            if (candidate->text().remove(u'&') == button)
                return QTest::mouseClick(candidate, Qt::LeftButton);
        dialog->reject();
        QFAIL("no such button");
    });
}

void answer(const QString &button)
{
    answer(button, [](MessageDialog *) {});
}

} // namespace

class TestMessageDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsTitleAndText();
    void asks();
    void asksForAFolder();
    void hints_data();
    void hints();
    void keepsSilent();
};

void TestMessageDialog::init()
{
    failOnWarnings();
    QSettings().clear();
}

void TestMessageDialog::showsTitleAndText()
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

void TestMessageDialog::asks()
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

void TestMessageDialog::asksForAFolder()
{
    const QString create = QStringLiteral("Create");
    const QList<std::pair<QString, int>> answers {
        {QStringLiteral("Select Folder..."), 2}, {create, 1}, {QStringLiteral("Cancel"), 0}};
    for (const auto &[button, result] : answers) {
        answer(button);
        QCOMPARE(askFolderMessage(Title, Text, create), result);
    }
}

void TestMessageDialog::hints_data()
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

void TestMessageDialog::hints()
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

void TestMessageDialog::keepsSilent()
{
    QSettings().setValue(Key, false);
    // Either would wait for an answer for ever.
    MessageDialog().hint(Key, Title, Text);
    QVERIFY(MessageDialog().askHint(Key, Title, Text, QStringLiteral("Go on")));
}

MORVANE_TEST_MAIN(QApplication, TestMessageDialog)

#include "tst_messagedialog.moc"
