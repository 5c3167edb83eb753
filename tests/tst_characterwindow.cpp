// links: morvane_ui
//
// The Character Creator as a user works it: fields, text, import, deletions, Save All.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWheelEvent>

#include "characterwindow.h"
#include "fightfixture.h"
#include "librarypane.h"
#include "testhome.h"
#include "vitalityevents.h"

using namespace Qt::Literals::StringLiterals;

class CharacterWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void fieldsWriteTheText();
    void takenNamesAreRefused();
    void textChangesTheFields();
    void changesOnlyByIntent();
    void deletesAndReverts();
    void savesAndTells();
    void importsAndLinks();
    void followsTheFight();
    void emptyLibrary();

private:
    template <typename Widget>
    Widget *child(const char *name) const
    {
        return m_window->findChild<Widget *>(QLatin1String(name));
    }
    void press(const char *button) const { child<QPushButton>(button)->click(); }
    CharacterWindow *window() const { return qobject_cast<CharacterWindow *>(m_window); }
    QPlainTextEdit *text() const { return child<QPlainTextEdit>("characterTextEdit"); }
    LibraryPane *list() const { return m_window->findChild<LibraryPane *>(); }
    QStringList rows() const
    {
        QStringList names;
        const QAbstractItemModel *model = list()->view()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            names << model->index(row, 0).data().toString();
        return names;
    }
    void select(const QString &name) const { list()->select(theCharacters->find(name)); }
    void rename(const QString &name) const
    {
        child<QLineEdit>("nameEdit")->setText(name);
        Q_EMIT child<QLineEdit>("nameEdit")->editingFinished();
    }
    bool canSave() const { return child<QPushButton>("saveAll")->isEnabled(); }

    std::unique_ptr<FightFixture> m_fight;
    QWidget *m_window = nullptr;
};

void CharacterWindowTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    makeCharacterWindow = []() -> std::unique_ptr<LibraryWindow> {
        return std::make_unique<CharacterWindow>();
    };
    m_fight->openWithThree();
    makeCharacterWindow = nullptr;
    m_window = theCharacterWindow->libraryWindow();
    m_fight->action("characterWindow")->trigger();
    QVERIFY(m_window->isVisible());
}

void CharacterWindowTest::fieldsWriteTheText()
{
    press("newCharacter");
    QCOMPARE(rows(), QStringList({u"Aria"_s, u"Bram"_s, u"New Character*"_s}));
    QVERIFY(child<QLineEdit>("nameEdit")->hasSelectedText() && canSave());
    rename(u"Aldric"_s);
    child<QComboBox>("classBox")->setEditText(u"Gardener"_s);
    child<QSpinBox>("levelBox")->setValue(0); // a hero without a level is no hero
    child<QSpinBox>("hpBox")->setValue(31);
    child<QSpinBox>("acBox")->setValue(18);
    child<QSpinBox>("strengthBox")->setValue(17);
    child<QSpinBox>("currentSurgesBox")->setValue(3);
    QCOMPARE(rows(), QStringList({u"Aldric*"_s, u"Aria"_s, u"Bram"_s}));
    const Creature *creature = window()->selected();
    QCOMPARE(creature->statBlock(), text()->toPlainText());
    for (const char *line : {"name=Aldric\n", "class=Gardener\n", "level=1\n", "hit-points=31\n",
                             "armour-class=18\n", "str=17\n", "hs-resources=0\n"})
        QVERIFY2(text()->toPlainText().contains(QLatin1String(line)), line);
    QVERIFY(creature->takesTurns());
    // Neither typed nor to be written.
    QVERIFY(!text()->toPlainText().contains(u"will="));
    QCOMPARE(child<QSpinBox>("currentHPBox")->value(), 31);
    QCOMPARE(creature->currHS(), 3);
}

void CharacterWindowTest::takenNamesAreRefused()
{
    select(u"Bram"_s);
    const QString before = text()->toPlainText();
    QString told;
    Answer answer(inMessage(u"OK"_s, &told));
    rename(u"ARIA"_s);
    QVERIFY(answer.wasAnswered);
    QVERIFY(told.startsWith(u"Duplicate ARIA|You already have a character called <b>ARIA</b>."));
    QCOMPARE(child<QLineEdit>("nameEdit")->text(), u"Bram"_s);
    QCOMPARE(text()->toPlainText(), before);
    for (const QString &name : {QString(71, u'n'), u"Bram\u200b"_s, u" "_s}) {
        rename(name); // no load would accept it
        QCOMPARE(window()->selected()->name(), u"Bram"_s);
    }
    rename(u"bram"_s);
    QCOMPARE(rows().constLast(), u"bram*"_s);
}

void CharacterWindowTest::textChangesTheFields()
{
    select(u"Bram"_s);
    QVERIFY(text()->isReadOnly());
    child<QCheckBox>("writeableBox")->click();
    QVERIFY(!text()->isReadOnly());
    QCOMPARE(QSettings().value(u"characterWindow/statBlockReadOnly"_s).toBool(), false);
    const QString before = text()->toPlainText();
    text()->setPlainText(QString(before).replace(u"hit-points=30"_s, u"hit-points=44"_s));
    QCOMPARE(child<QSpinBox>("hpBox")->value(), 44);
    text()->setPlainText(u"nothing"_s);
    QCOMPARE(window()->selected()->maxHP(), 44);
    QCOMPARE(text()->toPlainText(), u"nothing"_s);
    Answer answer(inMessage(u"OK"_s));
    text()->setPlainText(QString(before).replace(u"Bram"_s, u"Aria"_s));
    QVERIFY(answer.wasAnswered);
    QCOMPARE(text()->toPlainText(), window()->selected()->statBlock());
    QCOMPARE(window()->selected()->name(), u"Bram"_s);
}

void CharacterWindowTest::changesOnlyByIntent()
{
    select(u"Aria"_s);
    auto *level = child<QSpinBox>("levelBox");
    child<QLineEdit>("nameEdit")->setFocus();
    QWheelEvent wheel({5, 5}, level->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(level, &wheel);
    QVERIFY(!canSave());
    auto *classes = child<QComboBox>("classBox");
    QTest::keyClick(classes, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(classes, u"wizar"_s);
    QCOMPARE(window()->selected()->charClass(), u"wizar"_s);
    QTest::keyClicks(classes, u"d"_s);
    QTest::keyClick(classes, Qt::Key_Return);
    QCOMPARE(window()->selected()->charClass(), u"wizard"_s);
    press("saveAll");
    // One that isn't shown in the fields.
    theCharacters->find(u"Bram"_s)->setField(&CreatureData::level, 9);
    QVERIFY(canSave());
    // A text that can't be read isn't written over by a field.
    m_fight->folder.write(u"Characters/odd.txt"_s, u"nothing of a hero\n"_s);
    auto odd = std::make_unique<Creature>();
    QVERIFY(odd->load(u"odd.txt"_s, false, m_fight->folder.path()));
    theCharacters->add(std::move(odd));
    theCharacterWindow->refresh();
    select(u"odd.txt"_s);
    QVERIFY(!level->isEnabled() && !child<QPushButton>("selectPortrait")->isEnabled());
    child<QCheckBox>("writeableBox")->click();
    text()->setPlainText(u"name=Odo\nclass=Bard\nlevel=3\nhit-points=20\n"_s);
    QVERIFY(level->isEnabled());
    QCOMPARE(rows(), QStringList({u"Aria"_s, u"Bram*"_s, u"Odo*"_s}));
}

void CharacterWindowTest::deletesAndReverts()
{
    select(u"Aria"_s);
    child<QComboBox>("raceBox")->setEditText(u"Heron"_s);
    select(u"Bram"_s);
    Answer yes(inMessage(u"Delete"_s));
    press("deleteCharacter");
    QVERIFY(yes.wasAnswered);
    QCOMPARE(rows(), QStringList {u"Aria*"_s});
    press("newCharacter");
    QString told;
    Answer taken(inMessage(u"OK"_s, &told));
    rename(u"Bram"_s);
    QVERIFY(taken.wasAnswered && told.contains(u"You have just deleted a character"));
    Answer revert(inMessage(u"Revert All"_s));
    press("revertAll");
    QVERIFY(revert.wasAnswered && !canSave());
    QCOMPARE(rows(), QStringList({u"Aria"_s, u"Bram"_s}));
    QVERIFY(m_fight->folder.read(u"Characters/bram.txt"_s).contains("Bram"));
}

void CharacterWindowTest::savesAndTells()
{
    select(u"Aria"_s);
    child<QSpinBox>("willBox")->setValue(19);
    const QString file = m_fight->folder.file(u"Characters/aria.txt"_s);
    QVERIFY(QFile::remove(file) && QDir().mkpath(file + u"/blocked"_s));
    QString told;
    Answer answer(inMessage(u"OK"_s, &told));
    press("saveAll");
    QVERIFY(answer.wasAnswered && told.contains(u"<b>Aria</b>") && canSave());
    QCOMPARE(rows().constFirst(), u"Aria*"_s);
    QVERIFY(QDir(file).removeRecursively());
    // A name that is still being typed is saved too.
    child<QLineEdit>("nameEdit")->setText(u"Ariana"_s);
    press("saveAll");
    QVERIFY(!canSave());
    const QByteArray saved = m_fight->folder.read(u"Characters/aria.txt"_s);
    QVERIFY2(saved.contains("will=19") && saved.contains("name=Ariana"), saved.constData());
}

void CharacterWindowTest::importsAndLinks()
{
    select(u"Aria"_s);
    QVERIFY(!child<QCheckBox>("linkedBox")->isEnabled());
    const auto write = [this](int level) {
        m_fight->folder.write(
            u"Characters/hero.dnd4e"_s,
            u"<D20Character><CharacterSheet><Details><name>Maris</name><Level>%1</Level></Details>"
            "<StatBlock><Stat value=\"%1\"><alias name=\"Level\"/></Stat><Stat value=\"55\">"
            "<alias name=\"Hit Points\"/></Stat></StatBlock></CharacterSheet></D20Character>"_s.arg(
                level));
    };
    write(4);
    QVERIFY(window()->importFrom(window()->selected(), u"hero.dnd4e"_s));
    QCOMPARE(rows(), QStringList({u"Bram"_s, u"Maris*"_s}));
    QCOMPARE(child<QSpinBox>("levelBox")->value(), 4);
    child<QCheckBox>("linkedBox")->click();
    QVERIFY(text()->toPlainText().contains(u"linked=yes"));
    write(5);
    press("refreshImport");
    QCOMPARE(child<QSpinBox>("levelBox")->value(), 5);
    QVERIFY(QFile::remove(m_fight->folder.file(u"Characters/hero.dnd4e"_s)));
    QString told;
    Answer answer(inMessage(u"OK"_s, &told));
    press("refreshImport");
    QVERIFY(answer.wasAnswered);
    QCOMPARE(child<QLabel>("importPathLabel")->text(), m_fight->folder.path() + u"/Characters"_s);
    QCOMPARE(told, u"File Not Found|Import file, <b>hero.dnd4e</b>, not found."_s);
    QCOMPARE(child<QSpinBox>("levelBox")->value(), 5);
}

// What happens in the fight is seen here, and what is changed here is logged there.
void CharacterWindowTest::followsTheFight()
{
    select(u"Aria"_s);
    m_fight->start({30, 20, 10});
    m_fight->click(0);
    m_fight->hpBox()->setValue(7);
    m_fight->action("hit")->trigger();
    QCOMPARE(child<QSpinBox>("currentHPBox")->value(), 23);
    child<QSpinBox>("hpBox")->setValue(40);
    m_fight->action("nextTurn")->trigger();
    QVERIFY(FightFixture::eventClasses().contains(u"SetVitality"_s));
    m_fight->action("stepBack")->trigger();
    m_window->close();
    m_fight->action("stepBack")->trigger();
    m_fight->action("stepBack")->trigger();
    m_fight->action("characterWindow")->trigger();
    QCOMPARE(child<QSpinBox>("currentHPBox")->value(), 30);
}

void CharacterWindowTest::emptyLibrary()
{
    for (int i = 0; i < 2; ++i) {
        list()->view()->setCurrentIndex(list()->view()->model()->index(0, 0));
        Answer yes(inMessage(u"Delete"_s));
        QTest::keyClick(list()->view(), Qt::Key_Delete);
        QVERIFY(yes.wasAnswered);
    }
    QVERIFY(rows().isEmpty() && !child<QLineEdit>("nameEdit")->isEnabled());
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Delete, Qt::Key_A})
        QTest::keyClick(list()->view(), key);
    press("newCharacter");
    press("saveAll");
    QCOMPARE(rows(), QStringList {u"New Character"_s});
}

MORVANE_TEST_MAIN(QApplication, CharacterWindowTest)
#include "tst_characterwindow.moc"
