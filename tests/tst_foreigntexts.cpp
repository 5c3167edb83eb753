// links: morvane_ui
// What the files of others may hold: a picture's tag in every field opens nothing and reads as it
// stands, and a field of any length holds nobody up.
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTextDocument>

#include <sys/inotify.h>
#include <unistd.h>

#include "effect.h"
#include "effectdialog.h"
#include "effectevents.h"
#include "encounters.h"
#include "fightfixture.h"
#include "jumpindialog.h"
#include "pickcharactersdialog.h"
#include "pickencounterdialog.h"
#include "pickmonsterdialog.h"
#include "preparedencounter.h"
#include "richtextdelegate.h"
#include "savingthrowdialog.h"
#include "setaliasdialog.h"
#include "shortrestdialog.h"
#include "switchboard.h"
#include "testhome.h"
#include "text.h"

using namespace Qt::StringLiterals;

namespace {

// Every file of the demo data, with the tag behind the words of each field.
void writeTaggedDemo(const TestDataFolder &folder, const QString &tag)
{
    const QDir demo(QStringLiteral(SOURCE_ROOT "/demo-data"));
    for (const char *kind : {"Characters", "Monsters", "Encounters"}) {
        const QDir files(demo.filePath(QLatin1String(kind)));
        for (const QString &name : files.entryList(QDir::Files)) {
            QFile file(files.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(toLF(file.readAll()));
            QStringList lines = text.split(u'\n');
            static const QRegularExpression words(u"^([^=<>]*=)?[^=<>]*[a-z][^=<>]*$"_s);
            static const QRegularExpression element(u">([^<>]*[a-z][^<>]*)<"_s);
            for (QString &line : lines) {
                if (text.startsWith(u"<"_s)) {
                    line.replace(element, u">\\1"_s + tag.toHtmlEscaped() + u'<');
                } else if (words.match(line).hasMatch()) {
                    line += tag;
                }
            }
            folder.write(QLatin1String(kind) + u'/' + name, lines.join(u'\n'));
        }
    }
}

// A picture that tells whether anybody has opened it. Its path is short enough for a name.
class Spy {
public:
    Spy()
    {
        if (!QImage(4, 4, QImage::Format_RGB32).save(path(), "PNG")
            || inotify_add_watch(m_watch, QFile::encodeName(path()).constData(), IN_OPEN) < 0)
            qFatal("cannot watch %s", qPrintable(path()));
    }
    ~Spy() { ::close(m_watch); }
    Q_DISABLE_COPY(Spy)

    QString path() const { return m_dir.filePath(u"i"_s); }
    bool wasOpened() const
    {
        inotify_event event;
        return ::read(m_watch, &event, sizeof event) > 0;
    }

private:
    const QTemporaryDir m_dir {u"/tmp/s-XXXXXX"_s};
    const int m_watch = inotify_init1(IN_NONBLOCK);
};

} // namespace

class ForeignTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cleanup();

    void escapesOnce();
    void cutsLongTexts();
    void tagsOfFilesAreText();
    void longFieldsHoldNobodyUp_data();
    void longFieldsHoldNobodyUp();

private:
    void openWithTags();
    // Draws it, and notes what stands in it.
    void lookAt(QWidget &shown);
    void note(const QString &html);
    // Looks at the next dialog of any kind and leaves it.
    std::function<bool()> lookAtDialog();
    void openDialogs(const QList<const char *> &actions);
    void selectRow(int row);
    void addEveryMonster(const QString &id) const;

    std::unique_ptr<FightFixture> m_fight;
    Spy m_spy;
    const QString m_tag = u"<img src='%1'> & %2"_s.replace(u"%1"_s, m_spy.path());
    QStringList m_shown; // what was read off the screen
};

void ForeignTextsTest::cleanup()
{
    m_fight.reset();
    m_shown.clear();
}

void ForeignTextsTest::escapesOnce()
{
    QCOMPARE(asHtml(u"A & B <i>"_s), u"A &amp; B &lt;i&gt;"_s);
    QCOMPARE(plainText(asHtml(m_tag)), m_tag);
    QCOMPARE(withLiteralAmpersands(u"A & B"_s), u"A && B"_s);
}

void ForeignTextsTest::cutsLongTexts()
{
    QCOMPARE(shortened(u"abcd"_s, 4), u"abcd"_s);
    QCOMPARE(shortened(u"abcde"_s, 4), u"abc\u2026"_s);
    QCOMPARE(shortened(u"ab\U0001f409de"_s, 4), u"ab\u2026"_s); // not half a dragon
    const QString word = QString(35, u'a');
    QCOMPARE(shortenedHtml(u"<b>"_s + word + u"</b>"_s),
             u"<b>"_s + word.left(20) + u'\u200b' + word.left(10) + u'\u200b' + word.left(5)
                 + u"</b>"_s);
    QCOMPARE(shortenedHtml(u"/home/a-b/"_s + word.left(18)), u"/home/a-b/"_s + word.left(18));
    // Tags and the letters of an entity don't count; neither is cut through.
    QCOMPARE(
        shortenedHtml(u"<b>one</b> &amp; <i>two</i> three, and so on to the end of the line"_s, 9),
        u"<b>one</b> &amp; <i>two</i>&hellip;"_s);
    const QString piled = u'a' + QString(100, u'\u0301') + u'b';
    QCOMPARE(shortened(piled), u'a' + QString(8, u'\u0301') + u'b');
    QCOMPARE(shortenedHtml(piled), shortened(piled));
}

void ForeignTextsTest::openWithTags()
{
    m_fight = std::make_unique<FightFixture>();
    const TestDataFolder &folder = m_fight->folder;
    QVERIFY(QFile::remove(folder.file(u"Encounters/rest.txt"_s)));
    writeTaggedDemo(folder, m_tag);
    folder.write(
        u"Encounters/a.txt"_s,
        u"name=A%1\nadventure=%1\ndescription=%1\n<u>Ghost</u> & %2=A,<b>\nalias#A=%1"_s.replace(
            u"%1"_s, m_tag));
    folder.write(u"Monsters/bad<b>.txt"_s, m_tag);
    m_fight->open();
}

void ForeignTextsTest::note(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    document.size();
    m_shown << document.toPlainText().remove(u'\u200b');
}

void ForeignTextsTest::lookAt(QWidget &shown)
{
    shown.grab();
    QList<QWidget *> widgets = shown.findChildren<QWidget *>();
    widgets << &shown;
    for (const QWidget *widget : std::as_const(widgets)) {
        if (Qt::mightBeRichText(widget->toolTip()))
            note(widget->toolTip());
        else
            m_shown << widget->toolTip();
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            QCOMPARE(label->textFormat() == Qt::AutoText && label->text().contains(u'<'), false);
            note(label->text());
            if (label->buddy()) // a key's mark there, and no letter
                m_shown.last().remove(QRegularExpression(u"&(?!&)"_s));
        } else if (const auto *group = qobject_cast<const QGroupBox *>(widget)) {
            m_shown << group->title();
        } else if (const auto *box = qobject_cast<const QComboBox *>(widget)) {
            for (int i = 0; i < box->count(); ++i)
                m_shown << box->itemText(i);
        } else if (const auto *view = qobject_cast<const QTableView *>(widget)) {
            for (int row = 0; view->model() && row < view->model()->rowCount(); ++row) {
                for (int column = 0; column < view->model()->columnCount(); ++column) {
                    const QModelIndex index = view->model()->index(row, column);
                    const QString text = index.data().toString();
                    const bool isRich =
                        qobject_cast<RichTextDelegate *>(view->itemDelegateForIndex(index));
                    isRich ? note(text) : m_shown.append(text);
                    if (Qt::mightBeRichText(index.data(Qt::ToolTipRole).toString()))
                        note(index.data(Qt::ToolTipRole).toString());
                }
            }
        }
    }
}

std::function<bool()> ForeignTextsTest::lookAtDialog()
{
    return [this] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog)
            dialog = activeFlatDialog();
        if (!dialog || !dialog->isVisible())
            return false;
        lookAt(*dialog->window());
        if (auto *flat = qobject_cast<FlatDialog *>(dialog))
            flat->reject();
        else
            dialog->close();
        return true;
    };
}

void ForeignTextsTest::openDialogs(const QList<const char *> &actions)
{
    for (const char *name : actions) {
        Answer answer(lookAtDialog());
        m_fight->action(name)->trigger();
        QVERIFY2(answer.wasAnswered, name);
    }
}

void ForeignTextsTest::addEveryMonster(const QString &id) const
{
    QStringList groups;
    for (int i = 0; i < theMonsters->count(); ++i)
        groups << theMonsters->at(i)->group();
    for (const QString &group : std::as_const(groups))
        m_fight->addMonster(group, id);
}

void ForeignTextsTest::selectRow(int row)
{
    m_fight->window().setSelection({row});
    Q_EMIT switchBoard()->doRefreshTimer();
    QCoreApplication::processEvents();
}

void ForeignTextsTest::tagsOfFilesAreText()
{
    openWithTags();
    Answer load(inFlatDialog<PickEncounterDialog>([this](PickEncounterDialog &dialog) {
        lookAt(*dialog.window());
        dialog.findChild<QTableView *>()->selectRow(0);
        buttonWithText(dialog, u"Set"_s)->click();
    }));
    m_fight->action("loadEncounter")->trigger();
    QVERIFY(load.wasAnswered);
    m_fight->setParty();
    addEveryMonster(u"<b> & %1"_s);
    for (int row = 0; row < theEncounter->count(); ++row) {
        appendEvent<EffectEvent>(theEncounter->at(0), QList<Creature *> {theEncounter->at(row)},
                                 m_tag, EffectEnd::SaveEnds, EffectType::OtherBad, 0);
        m_fight->window().setAliasShown({theEncounter->at(row)}, row % 2 == 0);
    }
    QVERIFY(theEncounter->count() > 20);
    selectRow(0);
    openDialogs({"pickParty", "loadEncounter", "addMonster", "shortRest", "setAlias", "conditions",
                 "startStop"});
    m_fight->start({});
    for (int row = 0; row < theEncounter->count(); ++row) {
        selectRow(row);
        lookAt(m_fight->window());
    }
    openDialogs({"conditions", "pickParty", "nextTurn"});
    const QSet<QString> seen(m_shown.cbegin(), m_shown.cend());
    for (const QString &text : seen) {
        QVERIFY2(!text.contains(u"&lt;"_s) && !text.contains(u"&amp;"_s), qPrintable(text));
        QVERIFY2(!text.contains(u"'>  %2"_s), qPrintable(text)); // the "&" taken for a key's mark
    }
    const QString all = QStringList(seen.cbegin(), seen.cend()).join(u'\n');
    const QStringList expected {
        u"Encounter A"_s + m_tag, u"<u>Ghost</u> & %2 (A)"_s, u"bad<b>.txt"_s,
        u"(<b> & %1)"_s,          u"Brannoc Thale"_s + m_tag, u"Fighter"_s + m_tag};
    for (const QString &text : expected)
        QVERIFY2(all.contains(text), qPrintable(text + u'\n' + all));
    QVERIFY(!m_spy.wasOpened());
    // Without the escape it would have been.
    note(m_tag);
    QVERIFY(m_spy.wasOpened());
}

void ForeignTextsTest::longFieldsHoldNobodyUp_data()
{
    QTest::addColumn<QString>("text");
    const int most = 1 << 20;
    QTest::newRow("words") << u"Lorem ipsum "_s.repeated(most / 12);
    QTest::newRow("one word") << QString(most, u'W');
    QTest::newRow("marks") << u'a' + QString(most, u'\u0301');
}

// One creature for each field of each form of file, with that field as long as the text.
void ForeignTextsTest::longFieldsHoldNobodyUp()
{
    QFETCH(const QString, text);
    m_fight = std::make_unique<FightFixture>();
    const TestDataFolder &folder = m_fight->folder;
    QVERIFY(QFile::remove(folder.file(u"Encounters/rest.txt"_s)));
    const QStringList fields {u"class"_s,  u"race"_s,      u"role"_s,      u"type"_s,    u"speed"_s,
                              u"vision"_s, u"alignment"_s, u"languages"_s, u"portrait"_s};
    for (const QString &field : fields) {
        const QString rest = u"level=1\nhit-points=20\ninitiative=1\nxp=1\n%1=%2\n"_s;
        folder.write(u"Characters/%1.txt"_s.arg(field),
                     u"name=Hero "_s + field + u'\n' + rest.arg(field, text));
        folder.write(u"Monsters/%1.txt"_s.arg(field),
                     u"group="_s + field + u'\n' + rest.arg(field, text));
    }
    const QStringList lines {u"Level 1 Brute XP 1"_s, u"Medium beast"_s,
                             u"HP 20; Bloodied 10"_s, u"AC 1; Fortitude 1, Reflex 1, Will 1"_s,
                             u"Immune fire"_s,        u"Speed 6"_s,
                             u"Saving Throws +2"_s,   u"Bite \u2022 At-Will"_s,
                             u"Hit: 1 damage"_s,      u"Skills Stealth +5"_s,
                             u"Equipment axe"_s,      u"Description old"_s};
    for (int i = 0; i < lines.size(); ++i) {
        QStringList changed = lines;
        changed[i] += u' ' + text;
        folder.write(u"Monsters/block%1.txt"_s.arg(i),
                     u"Block %1\n"_s.arg(i) + changed.join(u'\n'));
    }
    QStringList everything = lines;
    for (QString &line : everything)
        line += u' ' + text.left(text.size() / 16);
    folder.write(u"Monsters/everything.txt"_s,
                 u"Everything\n"_s + everything.mid(0, 7).join(u'\n') + u'\n'
                     + QString(everything.mid(7, 2).join(u'\n') + u'\n').repeated(8)
                     + everything.mid(9).join(u'\n'));
    folder.write(
        u"Encounters/a.txt"_s,
        u"name=%1\nadventure=%1\ndescription=%1\nGhost=A,%1\nalias#A=%1"_s.replace(u"%1"_s, text));
    m_fight->open();
    Answer load(inFlatDialog<PickEncounterDialog>([](PickEncounterDialog &dialog) {
        dialog.findChild<QTableView *>()->selectRow(0);
        buttonWithText(dialog, u"Set"_s)->click();
    }));
    m_fight->action("loadEncounter")->trigger();
    QVERIFY(load.wasAnswered);
    m_fight->setParty();
    addEveryMonster(u"A"_s);
    QVERIFY(theEncounter->count() >= 2 * fields.size() + lines.size() + 3);
    appendEvent<EffectEvent>(theEncounter->at(0), theEncounter->creatures().list().mid(0, 2), text,
                             EffectEnd::SaveEnds, EffectType::OtherBad, 0);
    m_fight->window().setAliasShown(theEncounter->creatures().list(), true);
    QCoreApplication::processEvents();

    // The budget is 50 ms; a busy machine and the sanitizers get some more.
    constexpr qint64 enough = 400;
    QElapsedTimer timer;
    for (int row = 0; row < theEncounter->count(); ++row) {
        timer.start();
        selectRow(row);
        QVERIFY2(timer.elapsed() < enough,
                 qPrintable(theEncounter->at(row)->displayName().left(40)
                            + QString::number(timer.elapsed())));
    }
    for (const char *name : {"pickParty", "loadEncounter", "addMonster", "shortRest", "setAlias",
                             "conditions", "startStop"}) {
        timer.start();
        openDialogs({name});
        QVERIFY2(timer.elapsed() < 3 * enough, name);
    }
}

MORVANE_TEST_MAIN(QApplication, ForeignTextsTest)
#include "tst_foreigntexts.moc"
