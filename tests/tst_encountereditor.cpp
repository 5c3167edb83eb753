// The encounters' side of the Monster Manager, worked as a user does.
// links: morvane_ui
//
#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTimer>

#include "characters.h"
#include "coreobjects.h"
#include "encounterdifficulty.h"
#include "encountereditor.h"
#include "encounters.h"
#include "encounterview.h"
#include "global.h"
#include "messagedialog.h"
#include "monsters.h"
#include "tables.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

// The library of three encounters, and the editor shown above it.
class Desk {
public:
    Desk()
    {
        QSettings().clear();
        setPartySize(5);
        m_folder.addMonster(u"Rat"_s);
        m_folder.addMonster(u"Ogre"_s);
        m_folder.addCharacter(u"Aria"_s);
        const QString text = u"name=%1\nadventure=%2\ndescription=\n%3\n"_s;
        m_folder.write(
            u"Encounters/den.txt"_s,
            text.arg(u"Den"_s, u"Sewers"_s, u"Rat=1,2\nalias#2=Whisker\nhidden#2=true\nOgre=A"_s));
        m_folder.write(u"Encounters/mill.txt"_s, text.arg(u"Mill"_s, QString(), u"Bat=1"_s));
        m_folder.write(u"Encounters/pit.txt"_s, text.arg(u"Pit"_s, u"Hills"_s, QString()));
        m_folder.load();
        m_editor = std::make_unique<EncounterEditor>();
        new QAbstractItemModelTester(view().model(), m_editor.get());
        m_editor->show();
        // The first window of a program becomes active a little later.
        m_isShown = QTest::qWaitForWindowActive(m_editor.get());
    }

    bool isShown() const { return m_isShown; }
    TestDataFolder &folder() { return m_folder; }
    EncounterEditor &editor() { return *m_editor; }
    void close() { m_editor.reset(); }
    template <typename Widget>
    Widget &find(const char *name) const
    {
        return *m_editor->findChild<Widget *>(QLatin1String(name));
    }
    EncounterView &view() const { return find<EncounterView>("encounterTree"); }
    const EncounterListModel &model() const
    {
        return *static_cast<const EncounterListModel *>(view().model());
    }
    void select(int encounter, int group = -1, int monster = -1)
    {
        view().select({encounter, group, monster});
    }
    void click(const char *button)
    {
        QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton);
    }
    void type(const char *line, const QString &text)
    {
        auto &edit = find<QLineEdit>(line);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, text);
    }
    // The shown rows, one level deeper in brackets, "*" at the one that is selected.
    QString tree(const QModelIndex &parent = {}) const
    {
        QStringList rows;
        for (int row = 0; row < model().rowCount(parent); ++row) {
            if (view().isRowHidden(row, parent))
                continue;
            const QModelIndex index = model().index(row, 0, parent);
            const QString below = tree(index);
            rows << (index == view().currentIndex() ? u">"_s : QString()) + index.data().toString()
                    + (below.isEmpty() ? below : u"["_s + below + u']');
        }
        return rows.join(u' ');
    }
    // One encounter of it.
    QString branch(int encounter) const
    {
        const QModelIndex index = model().index(encounter, 0);
        return (index == view().currentIndex() ? u">"_s : QString()) + index.data().toString()
            + u'[' + tree(index) + u']';
    }
    static QString fileOf(const QString &name)
    {
        for (int i = 0; i < theEncounters->count(); ++i)
            if (theEncounters->at(i)->name() == name)
                return QString::fromUtf8(theEncounters->at(i)->image(false)).remove(u'\r');
        return {};
    }

private:
    TestDataFolder m_folder;
    CoreObjects m_core;
    std::unique_ptr<EncounterEditor> m_editor;
    bool m_isShown = false;
};

} // namespace

class TestEncounterEditor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void ratesDifficulty();
    void showsTheTree();
    void isWorkedByKeys();
    void addsByEachNumbering();
    void editsAMonster();
    void removesMonsters();
    void editsAnEncounter();
    void offersAdventures();
    void createsAndDeletes();
    void keepsThePlaceOverARefresh();
    void followsTemplates();
    void ratesForTheParty();
    void livesWithoutALibrary();
};

void TestEncounterEditor::ratesDifficulty()
{
    const QStringList names {u"easy"_s, u"standard"_s, u"hard"_s, u"deadly"_s};
    const QStringList fits {u"fits"_s, u"high"_s, u"low"_s};
    QCOMPARE(differences(u"difficulties"_s, 3,
                         [&](const QStringList &row) -> QString {
                             const int level = row[0].toInt();
                             const int party = row[1].toInt();
                             return names[int(difficultyOf(level, party))] + u' '
                                 + fits[int(monsterFit(level, party))];
                         }),
             QString());
    QCOMPARE(partyLevelOf({}), 0);
    QCOMPARE(partyLevelOf({0, -2}), 0);
    QCOMPARE(partyLevelOf({3, 4, 0}), 4);
    QCOMPARE(partyLevelOf({3, 3, 4}), 3);
    QCOMPARE(xpForEachHero(599, 5), 119);
    QCOMPARE(xpForEachHero(599, 0), 599);
}

void TestEncounterEditor::showsTheTree()
{
    Desk desk;
    QVERIFY(desk.isShown());
    QCOMPARE(desk.tree(),
             "Den[Rat (2)[1 2] Ogre (1)[A]] Mill[<font color=red>Bat - Missing</font>[1]] Pit");
    desk.select(0, 0, 1);
    QCOMPARE(desk.editor().selected()->name(), "Den");
    QCOMPARE(desk.find<QLineEdit>("monsterAliasEdit").text(), "Whisker");
    QVERIFY(desk.find<QCheckBox>("monsterHiddenBox").isChecked());
    QCOMPARE(desk.find<QLineEdit>("encounterFileLine").text(), "den.txt");
    desk.select(0, 0);
    QVERIFY(!desk.find<QLineEdit>("monsterIdEdit").isEnabled());
    QVERIFY(desk.find<QPushButton>("addMonsterButton").isEnabled());

    // What the filter hides isn't selected any more.
    QTest::keyClicks(&desk.find<QLineEdit>("encounterFilterEdit"), u"iL"_s);
    QTRY_COMPARE(desk.tree(), "Mill[<font color=red>Bat - Missing</font>[1]]");
    QVERIFY(!desk.editor().selected());
    QVERIFY(!desk.find<QLineEdit>("encounterNameEdit").isEnabled());
    QCOMPARE(theEncounters->counters().isModified, 0);
}

void TestEncounterEditor::isWorkedByKeys()
{
    Desk desk;
    desk.select(0, 0, 0);
    QStringList names;
    desk.find<QLineEdit>("encounterFilterEdit").setFocus();
    const QWidget *first = qApp->focusWidget();
    do {
        const auto *button = qobject_cast<QAbstractButton *>(qApp->focusWidget());
        names << (button ? button->text() : qApp->focusWidget()->accessibleName());
        QTest::keyClick(qApp->focusWidget(), Qt::Key_Tab);
    } while (qApp->focusWidget() != first && names.size() < 30);
    QCOMPARE(names.join(u", "_s),
             "Filter, Adventures, Encounters, New Encounter, Delete Encounter, Name, Adventure, "
             "File, Description, Party Size, Party Level, Name, ID, Alias, "
             "Hide at start of encounter, Add Monster, Remove Monster, Default Numbering, "
             "Unique IDs");
}

void TestEncounterEditor::addsByEachNumbering()
{
    Desk desk;
    auto &numbering = desk.find<QComboBox>("numberingBox");
    const Creature *ogre = theMonsters->findGroup(u"Ogre"_s);
    desk.select(2);
    numbering.setCurrentIndex(PreparedEncounter::LetterAndNumber);
    desk.editor().addMonster(*ogre);
    QCOMPARE(qApp->focusWidget()->objectName(), "monsterIdEdit");
    QCOMPARE(desk.find<QLineEdit>("monsterIdEdit").selectedText(), "O1");
    desk.click("addMonsterButton");
    QCOMPARE(desk.fileOf(u"Pit"_s).section(u'\n', 3), "Ogre=O1,O2\n");
    // The scheme follows what stands there already.
    desk.select(0, 0, 0);
    numbering.setCurrentIndex(PreparedEncounter::Letters);
    desk.click("addMonsterButton");
    QCOMPARE(numbering.currentIndex(), int(PreparedEncounter::Numbers));
    QCOMPARE(desk.branch(0), "Den*[Rat (3)[1 2 >3] Ogre (1)[A]]");
    // In a group of its own "1" is free, but not in the encounter.
    desk.select(1);
    numbering.setCurrentIndex(PreparedEncounter::Numbers);
    desk.find<QComboBox>("uniqueIdsBox").setCurrentIndex(1);
    desk.editor().addMonster(*ogre);
    QCOMPARE(desk.fileOf(u"Mill"_s).section(u'\n', 2), "Bat=1\nOgre=2\n");
    QCOMPARE(theEncounters->counters().isModified, 3);
}

void TestEncounterEditor::editsAMonster()
{
    Desk desk;
    auto &id = desk.find<QLineEdit>("monsterIdEdit");
    desk.select(0, 0, 1);
    desk.type("monsterIdEdit", u"1"_s);
    QCOMPARE(desk.fileOf(u"Den"_s).section(u'\n', 3, 3), "Rat=1,2");
    QTest::keyClick(&id, Qt::Key_7);
    QCOMPARE(desk.fileOf(u"Den"_s).section(u'\n', 3, 5),
             "Rat=1,17\nalias#17=Whisker\nhidden#17=true");
    QCOMPARE(desk.branch(0), "Den*[Rat (2)[1 >17] Ogre (1)[A]]");
    desk.type("monsterIdEdit", u"a,"_s);
    QTest::keyClick(&id, Qt::Key_Return);
    QCOMPARE(id.text(), "a");
    // Taken by another group, which matters only where IDs are unique for the encounter.
    desk.find<QComboBox>("uniqueIdsBox").setCurrentIndex(1);
    desk.type("monsterIdEdit", u"b"_s);
    desk.type("monsterIdEdit", u"A"_s);
    QTest::keyClick(&id, Qt::Key_Return);
    QCOMPARE(id.text(), "b");
    desk.type("monsterAliasEdit", QString());
    QTest::mouseClick(&desk.find<QCheckBox>("monsterHiddenBox"), Qt::LeftButton, {},
                      QPoint(8, desk.find<QCheckBox>("monsterHiddenBox").height() / 2));
    QCOMPARE(desk.fileOf(u"Den"_s).section(u'\n', 3), "Rat=1,b\nOgre=A\n");
    // As the file has it again.
    desk.type("monsterIdEdit", u"2"_s);
    desk.type("monsterAliasEdit", u"Whisker"_s);
    desk.find<QCheckBox>("monsterHiddenBox").click();
    QCOMPARE(theEncounters->counters().isModified, 0);
}

void TestEncounterEditor::removesMonsters()
{
    Desk desk;
    desk.select(0, 0, 1);
    desk.view().setFocus();
    QTest::keyClick(&desk.view(), Qt::Key_Delete);
    QCOMPARE(desk.branch(0), "Den*[Rat (1)[>1] Ogre (1)[A]]");
    desk.click("removeMonsterButton");
    QCOMPARE(desk.branch(0), "Den*[Ogre (1)[>A]]");
    desk.click("removeMonsterButton");
    QCOMPARE(desk.branch(0), ">Den*[]");
    QVERIFY(!desk.find<QPushButton>("removeMonsterButton").isEnabled());
    // Two parts of a group become one when what stands between them goes, here a whole group.
    theEncounters->at(0)->setMonsters({{u"Rat"_s, u"1"_s, {}, false},
                                       {u"Ogre"_s, u"A"_s, {}, false},
                                       {u"Ogre"_s, u"B"_s, {}, false},
                                       {u"Rat"_s, u"2"_s, {}, false}});
    desk.editor().refreshTemplates();
    desk.select(0, 1);
    desk.click("removeMonsterButton");
    QCOMPARE(desk.branch(0), "Den*[>Rat (2)[1 2]]");
}

void TestEncounterEditor::editsAnEncounter()
{
    Desk desk;
    auto &name = desk.find<QLineEdit>("encounterNameEdit");
    desk.select(0, 0, 1);
    desk.view().expand(desk.model().index(0, 0));
    desk.type("encounterNameEdit", u"Nest"_s);
    QCOMPARE(desk.tree(),
             "Mill[<font color=red>Bat - Missing</font>[1]] Nest*[Rat (2)[1 >2] Ogre (1)[A]] Pit");
    QVERIFY(desk.view().isExpanded(desk.model().index(1, 0)));
    QCOMPARE(theEncounters->at(1)->name(), "Nest");
    // A file without a name would be lost.
    desk.type("encounterNameEdit", u" "_s);
    QTest::keyClick(&name, Qt::Key_Tab);
    QVERIFY(!name.text().trimmed().isEmpty());
    QCOMPARE(name.text(), desk.editor().selected()->name());
    desk.type("encounterNameEdit", u"Den"_s);
    QTest::keyClicks(&desk.find<QPlainTextEdit>("encounterDescriptionEdit"), u"Wet."_s);
    QVERIFY(desk.fileOf(u"Den"_s).contains(u"description=Wet.\n"_s));
    QTest::keyClick(&desk.find<QPlainTextEdit>("encounterDescriptionEdit"), Qt::Key_Z,
                    Qt::ControlModifier);
    QCOMPARE(theEncounters->counters().isModified, 0);

    // Texts that a field shows otherwise stay while they aren't touched.
    theEncounters->at(0)->setDescription(u"a\u00a0b\rc"_s);
    desk.editor().refresh();
    desk.type("encounterNameEdit", u"Den 2"_s);
    QCOMPARE(theEncounters->at(0)->description(), u"a\u00a0b\rc"_s);
}

void TestEncounterEditor::offersAdventures()
{
    Desk desk;
    auto &filter = desk.find<QComboBox>("adventureFilterBox");
    const auto items = [](const QComboBox &box) {
        QStringList texts;
        for (int i = 0; i < box.count(); ++i)
            texts << box.itemText(i);
        return texts.join(u',');
    };
    QCOMPARE(items(filter), "All Adventures,Hills,Sewers");
    filter.setCurrentIndex(2);
    QCOMPARE(desk.tree(), "Den[Rat (2)[1 2] Ogre (1)[A]]");
    desk.click("newEncounterButton");
    QCOMPARE(desk.editor().selected()->adventure(), "Sewers");
    desk.select(0);
    auto &adventure = desk.find<QComboBox>("encounterAdventureBox");
    QCOMPARE(items(adventure), "Hills,Sewers");
    adventure.lineEdit()->selectAll();
    QTest::keyClicks(adventure.lineEdit(), u"Coast"_s);
    QTest::keyClick(adventure.lineEdit(), Qt::Key_Return);
    QCOMPARE(items(filter), "All Adventures,Coast,Hills,Sewers");
    QCOMPARE(filter.currentText(), "Sewers");
    QCOMPARE(desk.editor().selected()->adventure(), "Coast");
    adventure.lineEdit()->selectAll();
    QTest::keyClicks(adventure.lineEdit(), u"All Adventures"_s);
    QCOMPARE(desk.editor().selected()->adventure(), QString());
    filter.setCurrentIndex(0);
    QCOMPARE(desk.tree().section(u' ', -1), "Pit");
}

void TestEncounterEditor::createsAndDeletes()
{
    Desk desk;
    desk.click("newEncounterButton");
    QCOMPARE(qApp->focusWidget()->objectName(), "encounterNameEdit");
    QCOMPARE(desk.find<QLineEdit>("encounterNameEdit").selectedText(), "New Encounter");
    QCOMPARE(theEncounters->counters().isNew, 1);
    QVERIFY(theEncounters->at(2)->isModified());
    // A new one goes at once.
    desk.view().setFocus();
    QTest::keyClick(&desk.view(), Qt::Key_Delete);
    QCOMPARE(theEncounters->count(), 3);
    QCOMPARE(theEncounters->counters().isModified, 0);
    QCOMPARE(desk.tree().section(u' ', -1), ">Pit");

    const auto answer = [](bool yes) {
        QTimer::singleShot(0, qApp, [yes] {
            auto *dialog = qobject_cast<MessageDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), "Delete Pit");
            yes ? dialog->accept() : dialog->reject();
        });
    };
    QVERIFY(desk.find<QPushButton>("deleteEncounterButton").isEnabled());
    answer(false);
    desk.click("deleteEncounterButton");
    QCOMPARE(theEncounters->counters().isDeleted, 0);
    answer(true);
    desk.click("deleteEncounterButton");
    QVERIFY(theEncounters->at(2)->isDeleted());
    QVERIFY(!desk.tree().contains(u"Pit"_s));
    QCOMPARE(desk.editor().selected()->name(), "Mill");
    theEncounters->revertAll();
    desk.editor().refresh();
    QCOMPARE(desk.tree().section(u' ', -1), "Pit");
    // Keys in an empty tree.
    theEncounters->clear();
    desk.editor().refresh();
    for (const Qt::Key key :
         {Qt::Key_Delete, Qt::Key_Down, Qt::Key_Right, Qt::Key_Return, Qt::Key_Asterisk, Qt::Key_A})
        QTest::keyClick(&desk.view(), key);
    QVERIFY(!desk.editor().selected());
}

void TestEncounterEditor::keepsThePlaceOverARefresh()
{
    Desk desk;
    desk.select(0, 0, 1);
    desk.type("encounterNameEdit", u"Zoo"_s);
    desk.view().expand(desk.model().index(0, 0));
    const QString tree = u"Mill[<font color=red>Bat - Missing</font>[1]] Pit "_s;
    theEncounters->saveAll();
    desk.editor().refresh();
    QCOMPARE(desk.tree(), tree + u"Zoo[Rat (2)[1 >2] Ogre (1)[A]]"_s);
    QVERIFY(desk.view().isExpanded(desk.model().index(0, 0)));
    // The object behind it is another one after this.
    desk.type("monsterAliasEdit", u"Fang"_s);
    theEncounters->revertAll();
    desk.editor().refresh();
    QCOMPARE(desk.tree(), tree + u"Zoo[Rat (2)[1 >2] Ogre (1)[A]]"_s);
    QCOMPARE(desk.find<QLineEdit>("monsterAliasEdit").text(), "Whisker");
    // A whole library from elsewhere, without the one that was selected.
    Encounters others;
    desk.folder().write(u"Encounters/den.txt"_s, u"name=Hut\ndescription=\n"_s);
    QVERIFY(QFile::remove(desk.folder().file(u"Encounters/den.txt"_s)));
    NoProgress progress;
    others.load(desk.folder().path(), desk.folder().path(), progress);
    theEncounters->replaceBy(others);
    QCOMPARE(desk.tree(), tree.trimmed());
    QVERIFY(!desk.editor().selected());
}

void TestEncounterEditor::followsTemplates()
{
    Desk desk;
    desk.select(0, 1, 0);
    Creature *ogre = theMonsters->findGroup(u"Ogre"_s);
    ogre->setDeleted(true);
    desk.editor().refreshTemplates();
    QVERIFY(desk.tree().contains(u"<font color=red>Ogre - Missing</font>[>A]"_s));
    ogre->setDeleted(false);
    ogre->setGroup(u"Bat"_s);
    theEncounters->templateRenamed(u"Ogre"_s, u"Bat"_s);
    desk.editor().refreshTemplates();
    QCOMPARE(desk.tree(), "Den*[Rat (2)[1 2] Bat (1)[>A]] Mill[Bat (1)[1]] Pit");
    QCOMPARE(desk.find<QLineEdit>("encounterMonsterLine").text(), "Bat");
}

void TestEncounterEditor::ratesForTheParty()
{
    Desk desk;
    auto &partyLevel = desk.find<QSpinBox>("partyLevelBox");
    const auto text = [&desk](const char *name) { return desk.find<QLabel>(name).text(); };
    desk.select(0, 0, 0);
    const int xp = desk.editor().selected()->xp();
    QCOMPARE(text("encounterXpLabel"), QString::number(xp));
    QCOMPARE(text("difficultyLabel"), "Standard");
    // The hero rises.
    theCharacters->at(0)->setField(&CreatureData::level, 9);
    QCOMPARE(text("difficultyLabel"), "Easy");
    const QModelIndex rats = desk.model().indexAt({0, 0, -1});
    QCOMPARE(rats.data(EncounterListModel::FitRole).toInt(), int(MonsterFit::TooLow));
    QCOMPARE(text("monsterFitLabel"), "(8 levels below the party)");
    partyLevel.setValue(1);
    QCOMPARE(text("difficultyLabel"), "Standard");
    QCOMPARE(rats.data(EncounterListModel::FitRole).toInt(), int(MonsterFit::Fits));
    // Whose size decides the levels of all.
    desk.find<QComboBox>("partySizeBox").setCurrentIndex(0);
    QCOMPARE(partySize(), 1);
    QCOMPARE(text("encounterLevelLabel"), QString::number(desk.editor().selected()->level()));
    QCOMPARE(text("xpForEachLabel"), u"(%1 for each hero)"_s.arg(xp));
    QCOMPARE(theEncounters->counters().isModified, 0);
    setPartySize(5);
}

void TestEncounterEditor::livesWithoutALibrary()
{
    auto desk = std::make_unique<Desk>();
    desk->select(0, 0, 0);
    desk->find<QLineEdit>("monsterIdEdit").setFocus();
    // The collections go first, and a field has the focus when the editor goes.
    Encounters *encounters = std::exchange(theEncounters, nullptr);
    Monsters *monsters = std::exchange(theMonsters, nullptr);
    QVERIFY(!desk->editor().selected());
    desk->editor().refreshTemplates();
    desk->click("newEncounterButton");
    QCOMPARE(desk->tree(), QString());
    theEncounters = encounters;
    theMonsters = monsters;
    desk->editor().refresh();
    desk->select(0, 0, 0);
    desk->find<QLineEdit>("monsterIdEdit").setFocus();
    desk->close();
}

MORVANE_TEST_MAIN(QApplication, TestEncounterEditor)
#include "tst_encountereditor.moc"
