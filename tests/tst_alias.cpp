// Setting, hiding and removing aliases: the dialog, and what the command makes of it.
// links: morvane_ui
#include <QCheckBox>
#include <QLineEdit>

#include "fightfixture.h"
#include "setaliasdialog.h"
#include "tables.h"
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
    useTable(QStringLiteral("aliasforms"), {"states", "text", "enabled", "canRemove"});
}

void TestAlias::startsFromTheSelection()
{
    QFETCH(QString, states);
    setAliases(states);
    SetAliasDialog dialog {CreatureList(m_rats.mid(0, states.size()))};
    const auto *edit = dialog.findChild<QLineEdit *>(QStringLiteral("aliasEdit"));
    QTEST(edit->text(), "text");
    QCOMPARE(edit->selectedText(), edit->text());
    const auto told = [](bool is) { return QVariant(is).toString(); };
    QTEST(told(dialog.findChild<QCheckBox *>(QStringLiteral("enableBox"))->isChecked()), "enabled");
    QTEST(told(buttonWithText(dialog, QStringLiteral("Remove Alias"))->isEnabled()), "canRemove");

    SetAliasDialog markup {CreatureList(m_rats.mid(1))};
    QCOMPARE(
        markup.findChild<QLabel *>(QStringLiteral("whoLabel"))->text(),
        QStringLiteral("<b>Set Alias</b> for %1, Rat (C&lt;):").arg(m_rats.at(1)->displayName()));
}

void TestAlias::commandMakesOneEventForEach_data()
{
    useTable(QStringLiteral("aliascommands"),
             {"before", "text", "enable", "button", "after", "events"});
}

void TestAlias::commandMakesOneEventForEach()
{
    QFETCH(QString, before);
    QFETCH(QString, text);
    QFETCH(QString, enable);
    QFETCH(QString, button);
    setAliases(before);
    const QString untouched = aliases();
    const int first = theHistory->eventCount();
    m_fight->window().setSelection({0, 1, 2});
    Answer answer([&] {
        auto *dialog = qobject_cast<SetAliasDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        dialog->findChild<QCheckBox *>()->setChecked(enable == u"true");
        QTest::keyClicks(dialog->focusWidget(), text);
        buttonWithText(*dialog, button)->click();
        return true;
    });
    m_fight->action("setAlias")->trigger();
    QVERIFY(answer.wasAnswered);
    QTEST(aliases(), "after");
    const QStringList events = FightFixture::eventClasses(first);
    QTEST(QString::number(events.count(QStringLiteral("SetAlias"))), "events");
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
