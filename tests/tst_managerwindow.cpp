// links: morvane_ui
//
// The Monster Manager as a user works it: monsters made, pasted, renamed, imported, deleted, saved.
#include <QAbstractEventDispatcher>
#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

#include "encounters.h"
#include "fightfixture.h"
#include "importpanel.h"
#include "librarypane.h"
#include "managerwindow.h"
#include "monstereditor.h"
#include "renamedialog.h"
#include "testhome.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Ogre = u"Mill Ogre\nLevel 5 Brute\nLarge natural humanoid   XP 200\n"
                     "HP 70; Bloodied 35   Initiative +3\n"
                     "AC 17, Fortitude 18, Reflex 15, Will 14   Perception +2\nSpeed 8\n"_s;

// Enters a name into the next question for another one; an empty name cancels.
std::function<bool()> renameTo(const QString &name)
{
    return [name] {
        auto *dialog = qobject_cast<RenameDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        auto *edit = dialog->findChild<QLineEdit *>();
        auto *ok = buttonWithText(*dialog, u"OK"_s);
        const bool startsDisabled = !ok->isEnabled();
        edit->setText(name);
        if (!name.isEmpty() && startsDisabled && ok->isEnabled())
            ok->click();
        else
            dialog->reject();
        return true;
    };
}

} // namespace

class ManagerWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void hintComesOnceAndDocksFollow();
    void textChangesTheMonster();
    void takenNamesAreAskedAbout();
    void pastes();
    void deletesAndReverts();
    void savesAndTells();
    void listsFilesWithTheirStates();
    void imports();
    void remembersFolders();
    void keysAtTheEdges();

private:
    template <typename Widget>
    Widget *child(const char *name) const
    {
        return m_window->findChild<Widget *>(QLatin1String(name));
    }
    void press(const char *button) const { child<QPushButton>(button)->click(); }
    QPlainTextEdit *text() const { return child<QPlainTextEdit>("statBlockEdit"); }
    MonsterEditor *monsters() const { return m_window->findChild<MonsterEditor *>(); }
    LibraryPane *list() const { return monsters()->findChild<LibraryPane *>(); }
    ImportPanel *import() const { return m_window->findChild<ImportPanel *>(); }
    QStringList rows() const
    {
        QStringList names;
        const QAbstractItemModel *model = list()->view()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            names << model->index(row, 0).data().toString();
        return names;
    }
    void select(const QString &group) const { list()->select(theMonsters->findGroup(group)); }
    // As typed, so that it can be undone.
    void enter(const QString &content) const
    {
        text()->selectAll();
        text()->insertPlainText(content);
    }
    bool canSave() const { return child<QPushButton>("saveAll")->isEnabled(); }
    QString foreign(const QString &name, const QString &content) const
    {
        m_fight->folder.write(u"foreign/"_s + name, content);
        return m_fight->folder.file(u"foreign/"_s + name);
    }

    std::unique_ptr<FightFixture> m_fight;
    QWidget *m_window = nullptr;
};

void ManagerWindowTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(u"Aria"_s);
    m_fight->folder.addMonster(u"Rat"_s);
    m_fight->folder.addMonster(u"Wolf"_s);
    m_fight->folder.write(u"Encounters/den.txt"_s, u"name=Den\ndescription=\nRat=A,B\n"_s);
    QVERIFY(QDir(m_fight->folder.path()).mkpath(u"foreign/inner"_s));
    makeManagerWindow = []() -> std::unique_ptr<LibraryWindow> {
        return std::make_unique<ManagerWindow>();
    };
    m_fight->open();
    makeManagerWindow = nullptr;
    m_window = theManagerWindow->libraryWindow();
    m_window->show();
    import()->setImportDir(m_fight->folder.file(u"foreign"_s));
}

void ManagerWindowTest::cleanup()
{
    m_fight.reset();
    QVERIFY(!theManagerWindow);
}

void ManagerWindowTest::hintComesOnceAndDocksFollow()
{
    auto *dock = m_fight->window().findChild<QDockWidget *>(u"historyWidget"_s);
    dock->setFloating(true);
    QVERIFY(dock->isVisible());
    m_window->close();
    QString hint;
    Answer answer(inMessage(u"OK"_s, &hint));
    m_fight->action("managerWindow")->trigger();
    QVERIFY(answer.wasAnswered && hint.startsWith(u"Monster Manager Hint|"));
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    QTRY_COMPARE(activeAppWindow, m_window);
    QVERIFY(!dock->isVisible() && !dock->toggleViewAction()->isEnabled());
    m_fight->action("managerWindow")->trigger();
    m_fight->action("dmsWindow")->trigger();
    QTRY_VERIFY(dock->isVisible() && dock->toggleViewAction()->isEnabled());
}

void ManagerWindowTest::textChangesTheMonster()
{
    press("newTemplate");
    QCOMPARE(rows(), QStringList({u"New Monster*"_s, u"Rat"_s, u"Wolf"_s}));
    QVERIFY(text()->textCursor().hasSelection() && canSave());
    enter(Ogre);
    QCOMPARE(rows().constFirst(), u"Mill Ogre*"_s);
    QCOMPARE(monsters()->selected()->maxHP(), 70);
    select(u"Rat"_s);
    const int xp = theEncounters->at(0)->xp();
    enter(text()->toPlainText().replace(u"xp=100"_s, u"xp=150"_s).replace(u"Rat"_s, u"Zrat"_s));
    QCOMPARE(rows().constLast(), u"Zrat*"_s);
    QCOMPARE(list()->selected()->group(), u"Zrat"_s);
    QCOMPARE(theEncounters->at(0)->monsters().constFirst().group, u"Zrat"_s);
    QVERIFY(theEncounters->at(0)->xp() > xp);
    enter(u"rats"_s);
    QVERIFY(monsters()->selected()->isInvalid());
    text()->undo();
    QCOMPARE(monsters()->selected()->group(), u"Zrat"_s);
}

void ManagerWindowTest::takenNamesAreAskedAbout()
{
    select(u"Rat"_s);
    const QString before = text()->toPlainText();
    const QString renamed = QString(before).replace(u"Rat"_s, u"Wolf"_s);
    for (const auto &[name, expected] :
         {std::pair(QString(), u"Rat"_s), {u"wolf"_s, u"Rat"_s}, {u"Stoat"_s, u"Stoat"_s}}) {
        Answer answer(renameTo(name));
        enter(renamed);
        QVERIFY(answer.wasAnswered);
        QCOMPARE(monsters()->selected()->group(), expected);
        QTRY_COMPARE(text()->toPlainText(), QString(before).replace(u"Rat"_s, expected));
    }
    QCOMPARE(rows(), QStringList({u"Stoat*"_s, u"Wolf"_s}));
}

void ManagerWindowTest::pastes()
{
    const auto paste = [this](const QString &copied) {
        QGuiApplication::clipboard()->setText(copied);
        press("newAndPasteTemplate");
    };
    paste(Ogre);
    QCOMPARE(monsters()->selected()->maxHP(), 70);
    QCOMPARE(monsters()->selected()->currHP(), 70);
    // What a copy had spoiled is mended, and a step back shows it as it was.
    paste(QString(Ogre).replace(u"Mill Ogre"_s, u"Elk"_s).replace(u"Reflex"_s, u"Refl ex"_s));
    QCOMPARE(monsters()->selected()->data().reflex, 15);
    QVERIFY(text()->toPlainText().contains(u"Reflex 15"));
    const auto *reading = child<QLabel>("readingLabel");
    QVERIFY2(reading->text().startsWith(u"Read 8 of 8 numbers, no powers."),
             qPrintable(reading->text()));
    QVERIFY(reading->text().contains(u"tidied"));
    text()->undo();
    QVERIFY(text()->toPlainText().contains(u"Refl ex 15"));
    QVERIFY(reading->text().startsWith(u"Read 7 of 8 numbers (no Reflex)"));
    QTest::keyClick(text(), Qt::Key_F8);
    text()->redo();
    Answer rename(renameTo(u"Second Ogre"_s));
    paste(Ogre);
    QVERIFY(rename.wasAnswered);
    QCOMPARE(monsters()->selected()->group(), u"Second Ogre"_s);
    QVERIFY(text()->toPlainText().startsWith(u"Second Ogre\n"));
    for (const char *name : {"Invalid Stat Block", "Invalid Stat Block 2"}) {
        paste(u"Not a monster"_s);
        QCOMPARE(monsters()->selected()->group(), QLatin1String(name));
    }
    QCOMPARE(theMonsters->counters().isNew, 5);
    QString told;
    Answer answer(inMessage(u"OK"_s, &told));
    paste(u" "_s);
    QVERIFY(answer.wasAnswered);
    QCOMPARE(theMonsters->counters().isNew, 5);
}

void ManagerWindowTest::deletesAndReverts()
{
    select(u"Rat"_s);
    QString asked;
    Answer no(inMessage(u"Cancel"_s, &asked));
    press("deleteTemplate");
    QVERIFY(no.wasAnswered && asked.contains(u"The file, 'rat.txt'"));
    QCOMPARE(rows().size(), 2);
    Answer yes(inMessage(u"Delete"_s));
    press("deleteTemplate");
    QCOMPARE(rows(), QStringList {u"Wolf"_s});
    QGuiApplication::clipboard()->setText(QString(Ogre).replace(u"Mill Ogre"_s, u"Rat"_s));
    QString told;
    Answer taken(inMessage(u"OK"_s, &told));
    press("newAndPasteTemplate");
    QVERIFY(taken.wasAnswered && told.startsWith(u"Duplicate Rat|You have just deleted"));
    press("newTemplate");
    QCOMPARE(rows().size(), 2);
    Answer revert(inMessage(u"Revert All"_s));
    press("revertAll");
    QVERIFY(revert.wasAnswered && !canSave());
    QCOMPARE(rows(), QStringList({u"Rat"_s, u"Wolf"_s}));
}

// A file that can't be written keeps its mark, which is told once.
void ManagerWindowTest::savesAndTells()
{
    press("newTemplate");
    enter(Ogre);
    select(u"Wolf"_s);
    text()->appendPlainText(u"# howls"_s);
    const QString wolf = m_fight->folder.file(u"Monsters/wolf.txt"_s);
    QVERIFY(QFile::remove(wolf) && QDir().mkpath(wolf + u"/blocked"_s));
    QString told;
    Answer answer(inMessage(u"OK"_s, &told));
    press("saveAll");
    QVERIFY2(answer.wasAnswered && told.contains(u"<b>Wolf</b>"), qPrintable(told));
    QCOMPARE(rows(), QStringList({u"Mill Ogre"_s, u"Rat"_s, u"Wolf*"_s}));
    QVERIFY(m_fight->folder.read(u"Monsters/mill-ogre.txt"_s).startsWith("Mill Ogre\r\n"));
    QVERIFY(QDir(wolf).removeRecursively());
    press("saveAll");
    QVERIFY(!canSave() && m_fight->folder.read(u"Monsters/wolf.txt"_s).contains("# howls"));
}

void ManagerWindowTest::listsFilesWithTheirStates()
{
    foreign(u"stoat.txt"_s, Ogre);
    foreign(u"wolf.txt"_s, QString::fromUtf8(m_fight->folder.read(u"Monsters/wolf.txt"_s)));
    foreign(u"rat.txt"_s, Ogre);
    foreign(u"inner/x.monster"_s, Ogre);
    child<QTabWidget>("monsterTabs")->setCurrentIndex(2);
    const auto *files = child<QListWidget>("importFileList");
    QStringList states;
    for (int row = 0; row < files->count(); ++row)
        states << files->item(row)->text() + u": "_s
                + files->item(row)->data(Qt::AccessibleDescriptionRole).toString();
    QCOMPARE(states,
             QStringList({u"inner: folder"_s, u"rat.txt: in the library with another text"_s,
                          u"stoat.txt: not in the library"_s, u"wolf.txt: in the library"_s}));
}

void ManagerWindowTest::imports()
{
    const QString ogre = foreign(u"ogre.txt"_s, Ogre);
    monsters()->onImport({ogre});
    QCOMPARE(monsters()->selected()->group(), u"Mill Ogre"_s);
    QVERIFY(!canSave() && m_fight->folder.read(u"Monsters/ogre.txt"_s).startsWith("Mill Ogre"));
    foreign(u"ogre.txt"_s, QString(Ogre).replace(u"HP 70"_s, u"HP 71"_s));
    monsters()->onImport({ogre});
    QCOMPARE(monsters()->selected()->maxHP(), 71);
    QVERIFY(canSave() && m_fight->folder.read(u"Monsters/ogre.txt"_s).contains("HP 70"));
    QString told;
    Answer answer(inMessage(u"OK"_s, &told));
    monsters()->onImport(
        {foreign(u"bad.txt"_s, u"nothing"_s), foreign(u"empty.txt"_s, QString()),
         foreign(u"elk.txt"_s, QString(Ogre).replace(u"Mill Ogre"_s, u"Elk"_s)),
         foreign(u"wolf.txt"_s, QString::fromUtf8(m_fight->folder.read(u"Monsters/wolf.txt"_s)))});
    QVERIFY(answer.wasAnswered);
    for (const char *part : {"Taken: 1</b><br>elk.txt", "Already there: 1</b><br>wolf.txt",
                             "look: 1</b><br>bad.txt", "Not taken: 1</b><br>empty.txt"})
        QVERIFY2(told.contains(QLatin1String(part)), qPrintable(told));
}

void ManagerWindowTest::remembersFolders()
{
    auto *previous = child<QPushButton>("previousImportDir");
    auto *next = child<QPushButton>("nextImportDir");
    const QString start = import()->importDir();
    for (int i = 0; i < 110; ++i)
        import()->setImportDir(start + u'/' + QString::number(i));
    QVERIFY(previous->isEnabled() && !next->isEnabled());
    for (int i = 0; i < 120; ++i)
        previous->click();
    QVERIFY(!previous->isEnabled());
    QCOMPARE(import()->importDir(), start + u"/10"_s);
    next->click();
    import()->setImportDir(start);
    QVERIFY(!next->isEnabled());
    QCOMPARE(QSettings().value(u"importMonsterDir/path"_s).toString(), start);
    auto *box = child<QComboBox>("importPathBox");
    box->setCurrentIndex(0);
    Q_EMIT box->activated(0);
    QCOMPARE(import()->importDir(), u"/"_s);
}

void ManagerWindowTest::keysAtTheEdges()
{
    QListView *view = list()->view();
    const auto pressAll = [view] {
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_End,
                                  Qt::Key_Down, Qt::Key_Home, Qt::Key_Up, Qt::Key_PageDown})
            QTest::keyClick(view, key);
    };
    pressAll();
    QCOMPARE(list()->selected()->group(), u"Wolf"_s);
    // The filter is looked at after an event, and that is the end of it.
    int rounds = 0;
    while (rounds < 2000
           && QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
        ++rounds;
    QVERIFY(rounds < 2000);
    child<QLineEdit>("filterEdit")->setText(u"zz"_s);
    QTRY_COMPARE(rows().size(), 0);
    QVERIFY(!list()->selected() && !text()->isEnabled());
    pressAll();
    QTest::keyClick(view, Qt::Key_Delete);
    // A new monster is shown whatever the filter says.
    press("newTemplate");
    QCOMPARE(rows().size(), 3);
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(rows().size(), 2);
}

MORVANE_TEST_MAIN(QApplication, ManagerWindowTest)
#include "tst_managerwindow.moc"
