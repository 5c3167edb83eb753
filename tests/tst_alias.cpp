// Setting, hiding and removing aliases: the dialog, and what the command makes of it.
// links: morvane_ui
#include <QCheckBox>
#include <QLineEdit>

#include "fightfixture.h"
#include "setaliasdialog.h"
#include "testhome.h"

class TestAlias : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void startsFromTheSelection_data();
    void startsFromTheSelection();
    void commandMakesOneEventForEach_data();
    void commandMakesOneEventForEach();
    void showsOnlyWhatIsHidden();

private:
    // The rats' aliases: "-" for none, "x" for one that is kept back, "X" for one that is shown.
    void setAliases(const QString &states);
    QString aliases() const;

    std::unique_ptr<FightFixture> m_fight;
    QList<Creature *> m_rats;
};

void TestAlias::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->open();
    for (const char *id : {"A", "B", "C<"})
        m_fight->addMonster(QStringLiteral("Rat"), QLatin1String(id));
    m_rats = theEncounter->creatures().list();
}

void TestAlias::setAliases(const QString &states)
{
    for (int i = 0; i < m_rats.size(); ++i) {
        const QChar state = i < states.size() ? states.at(i) : u'-';
        m_rats.at(i)->setAlias(state == u'-' ? QString() : state.toLower());
        m_rats.at(i)->setAliasMode(state.isUpper() ? 1 : 0);
    }
}

QString TestAlias::aliases() const
{
    QStringList texts;
    for (const Creature *rat : m_rats) {
        const QString alias = rat->alias().isEmpty() ? QStringLiteral("-") : rat->alias();
        texts << (rat->aliasMode() ? alias.toUpper() : alias);
    }
    return texts.join(u' ');
}

void TestAlias::startsFromTheSelection_data()
{
    QTest::addColumn<QString>("states");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("canRemove");
    QTest::newRow("one without") << "-"
                                 << "Rat (A)" << true << false;
    QTest::newRow("one in use") << "X"
                                << "x" << true << true;
    QTest::newRow("one kept back") << "x"
                                   << "x" << false << true;
    QTest::newRow("two without") << "--"
                                 << "" << true << false;
    QTest::newRow("two, one kept back") << "-x"
                                        << "" << false << true;
    QTest::newRow("two, one in use") << "X-"
                                     << "" << true << true;
}

void TestAlias::startsFromTheSelection()
{
    QFETCH(QString, states);
    setAliases(states);
    SetAliasDialog dialog {CreatureList(m_rats.mid(0, states.size()))};
    const auto *edit = dialog.findChild<QLineEdit *>(QStringLiteral("aliasEdit"));
    QTEST(edit->text(), "text");
    QCOMPARE(edit->selectedText(), edit->text());
    QTEST(dialog.findChild<QCheckBox *>(QStringLiteral("enableBox"))->isChecked(), "enabled");
    QTEST(buttonWithText(dialog, QStringLiteral("Remove Alias"))->isEnabled(), "canRemove");

    SetAliasDialog markup {CreatureList(m_rats.mid(1))};
    QCOMPARE(
        markup.findChild<QLabel *>(QStringLiteral("whoLabel"))->text(),
        QStringLiteral("<b>Set Alias</b> for %1, Rat (C&lt;):").arg(m_rats.at(1)->displayName()));
}

void TestAlias::commandMakesOneEventForEach_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("enable");
    QTest::addColumn<QString>("button"); // empty for the Return key
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("events");
    QTest::newRow("all get one") << "-xX"
                                 << "y" << true << "OK"
                                 << "Y Y Y" << 3;
    QTest::newRow("kept back") << "-xX"
                               << "y" << false << "OK"
                               << "y y y" << 3;
    QTest::newRow("own ones shown") << "-xX"
                                    << "" << true << "OK"
                                    << "- X X" << 2;
    QTest::newRow("own ones kept back") << "-xX"
                                        << "" << false << "OK"
                                        << "- x x" << 2;
    QTest::newRow("removed") << "-xX"
                             << "y" << true << "Remove Alias"
                             << "- - -" << 2;
    QTest::newRow("cancelled") << "-xX"
                               << "y" << true << "Cancel"
                               << "- x X" << 0;
}

void TestAlias::commandMakesOneEventForEach()
{
    QFETCH(QString, before);
    QFETCH(QString, text);
    QFETCH(bool, enable);
    QFETCH(QString, button);
    setAliases(before);
    const QString untouched = aliases();
    const int first = theHistory->eventCount();
    m_fight->window().setSelection({0, 1, 2});
    Answer answer([&] {
        auto *dialog = qobject_cast<SetAliasDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        dialog->findChild<QCheckBox *>()->setChecked(enable);
        QTest::keyClicks(dialog->focusWidget(), text);
        if (button.isEmpty())
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
        else
            buttonWithText(*dialog, button)->click();
        return true;
    });
    m_fight->action("setAlias")->trigger();
    QVERIFY(answer.wasAnswered);
    QTEST(aliases(), "after");
    const QStringList events = FightFixture::eventClasses(first);
    QTEST(int(events.count(QStringLiteral("SetAlias"))), "events");
    QCOMPARE(events.count(QStringLiteral("SetAlias")), events.size());
    while (theHistory->eventCount() > first && theHistory->position() >= first)
        theHistory->stepBack();
    QCOMPARE(aliases(), untouched);
}

void TestAlias::showsOnlyWhatIsHidden()
{
    setAliases(QStringLiteral("-xX"));
    const int first = theHistory->eventCount();
    m_fight->window().setAliasShown(m_rats, true);
    QCOMPARE(aliases(), QStringLiteral("- X X"));
    QCOMPARE(theHistory->eventCount(), first + 1);
    m_fight->window().setAliasShown(m_rats, false);
    QCOMPARE(aliases(), QStringLiteral("- x x"));
    QCOMPARE(theHistory->eventCount(), first + 3);
}

MORVANE_TEST_MAIN(QApplication, TestAlias)

#include "tst_alias.moc"
