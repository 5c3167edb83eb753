// links: morvane_ui
// The panels of the current and the selected creatures, as a user works them.
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTextDocument>

#include "creaturewidget.h"
#include "dynlabel.h"
#include "effect.h"
#include "effectdialog.h"
#include "effectevents.h"
#include "fightfixture.h"
#include "panelrows.h"
#include "panelstyle.h"
#include "powerlabel.h"
#include "setaliasdialog.h"
#include "shortrestdialog.h"
#include "smallwidgets.h"
#include "switchboard.h"
#include "tables.h"
#include "testhome.h"
#include "text.h"
#include "vitalityevents.h"

class CreaturePanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void stylesFollowFlagsAndCreature();
    void rowsStandInOrder();
    void headFollowsTheCreature();
    void clickTicksAPower();
    void changesOfTheCreatureKeepThePlace();
    void aliasRowSwitchesAndEdits();
    void panelFollowsTheDialogs();

private:
    enum Row { Rat1, Rat2, Aria };
    Creature *creature(int row) const { return theEncounter->at(row); }
    QWidget *panel(const char *dock) const
    {
        return m_fight->window().findChild<QDockWidget *>(QLatin1String(dock))->widget();
    }
    QWidget *current() const { return panel("currentWidget"); }
    QWidget *selected() const { return panel("selectedWidget"); }
    static void tick() { Q_EMIT switchBoard()->doRefreshTimer(); }
    static QString text(const QWidget *panel, const char *label)
    {
        // The line itself is cut where the panel is too narrow for it.
        return plainText(panel->findChild<QLabel *>(QLatin1String(label))->toolTip()).trimmed();
    }
    static QScrollBar *scrollBar(const QWidget *panel)
    {
        return panel->findChild<ResizableScrollArea *>()->verticalScrollBar();
    }
    // What stands in the body from the top, not counting what was taken out of it.
    template <typename Label>
    static QList<Label *> labels(const QWidget *panel)
    {
        QList<Label *> shown;
        for (Label *label : panel->findChild<QWidget *>(QStringLiteral("statBlock"))
                                ->template findChildren<Label *>()) {
            if (label->isVisible())
                shown << label;
        }
        std::sort(shown.begin(), shown.end(), [panel](const Label *a, const Label *b) {
            const QPoint first = a->mapTo(panel, QPoint());
            const QPoint second = b->mapTo(panel, QPoint());
            return std::pair(first.y(), first.x()) < std::pair(second.y(), second.x());
        });
        return shown;
    }
    // The powers of the selected creatures from the top, with this one in sight.
    PowerLabel *powerLabel(int i) const
    {
        PowerLabel *label = labels<PowerLabel>(selected()).at(i);
        selected()->findChild<ResizableScrollArea *>()->ensureWidgetVisible(label);
        return label;
    }
    void show(int row) const
    {
        m_fight->click(row);
        tick();
    }
    static Power power(int section, int usageKind, const QString &name, const QStringList &details,
                       bool flavour = false)
    {
        Power made;
        made.section = section;
        made.usageKind = usageKind;
        made.name = name;
        made.details = details;
        made.flavour = flavour;
        return made;
    }
    static CreatureData withPowers(CreatureData data)
    {
        data.powers = {
            power(4, 0, QStringLiteral("Reek"), {QStringLiteral("It stinks.")}),
            power(5, 2, QStringLiteral("Bite"),
                  {QStringLiteral("<i>Teeth.</i>"), QStringLiteral("<i>Hit:</i> 5 damage.")}, true),
            power(5, 1, QStringLiteral("Run"), {})};
        return data;
    }

    std::unique_ptr<FightFixture> m_fight;
};

void CreaturePanelTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("1"));
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("2"));
    m_fight->start({5, 20});
    for (const int row : {Rat1, Rat2, Aria})
        creature(row)->assign(withPowers(creature(row)->data()));
    tick();
}

void CreaturePanelTest::stylesFollowFlagsAndCreature()
{
    const auto styleOf = [](const QStringList &row) {
        CreatureData data;
        data.isMonster = row[1] == u"true";
        data.disabled = row[2] == u"true";
        Creature shown;
        shown.assign(data);
        return styleFor(row[0].toInt(nullptr, 16), &shown);
    };
    QCOMPARE(differences(QStringLiteral("panelstyles"), 4, styleOf), QString());
}

void CreaturePanelTest::rowsStandInOrder()
{
    CreatureData data = creature(Rat1)->data();
    data.role = QStringLiteral("Brute");
    data.type = QStringLiteral("Small beast");
    data.xp = 150;
    data.initBonus = 4;
    data.resist = QStringLiteral("5 cold");
    data.regeneration = QStringLiteral("2");
    data.savingThrows = QStringLiteral("+2");
    data.initAP = 1;
    data.speed = QStringLiteral("6");
    data.skills = QStringLiteral("Stealth +7");
    data.strength.score = 14;
    data.alignment = QStringLiteral("Evil");
    data.languages = QStringLiteral("Rattish");
    data.trailerText = QStringLiteral("Note");
    data.powers[1].usageState = 1;
    creature(Rat1)->assign(data);
    appendEvent<EffectEvent>(nullptr, QList<Creature *> {creature(Rat1)}, QString(),
                             EffectEnd::Special, EffectType::Prone);
    appendEvent<SetAliasEvent>(creature(Rat1), false, QStringLiteral("Whiskers"));

    QStringList rows;
    for (const PanelRow &row : panelRows(creature(Rat1), false)) {
        QString line = QString::number(row.flags, 16) + u' ' + plainText(row.left);
        if (!row.right.isEmpty())
            line += u'|' + plainText(row.right);
        rows << line.simplified();
    }
    int number = 0;
    QCOMPARE(differences(QStringLiteral("panelrows"), 1,
                         [&](const QStringList &) { return rows.value(number++); }),
             QString());
    QCOMPARE(number, rows.size());
    // What the fight has brought is no business of a library's editor.
    const QList<PanelRow> edited = panelRows(creature(Rat1), true);
    QVERIFY(std::none_of(edited.begin(), edited.end(), [](const PanelRow &row) {
        return row.content == PanelRow::AliasRow || row.content == PanelRow::PowerRow
            || row.left.contains(QStringLiteral("Prone"));
    }));
}

void CreaturePanelTest::headFollowsTheCreature()
{
    QCOMPARE(text(current(), "nameLabel"), QStringLiteral("Rat (1)"));
    QCOMPARE(text(current(), "subLabel"), QStringLiteral("Initiative +1 (20)"));
    QCOMPARE(text(selected(), "nameLabel"), QString());
    const auto picture = [this] {
        return selected()
            ->findChild<QLabel *>(QStringLiteral("portraitLabel"))
            ->pixmap(Qt::ReturnByValue)
            .toImage();
    };
    const auto image = [](const char *name) {
        return QPixmap(QStringLiteral(":/images/") + QLatin1String(name)).toImage();
    };
    QCOMPARE(picture(), image("no-icon.png"));
    show(Aria);
    QCOMPARE(text(selected(), "nameLabel"), QStringLiteral("Aria"));
    QCOMPARE(picture(), image("hero-shield.png"));
    show(Rat2);
    QCOMPARE(picture(), image("monster-shield.png"));

    appendEvent<DamageEvent>(nullptr, QList<Creature *> {creature(Rat2)}, 25);
    QCOMPARE(text(selected(), "subLabel"), QStringLiteral("Initiative +1 (20)")); // until a tick
    tick();
    QCOMPARE(text(selected(), "subLabel"), QStringLiteral("Dead; Initiative +1 (20)"));
    m_fight->window().clearSelection();
    tick();
    for (const char *label : {"nameLabel", "subLabel", "levelLabel", "typeLabel", "defensesLabel",
                              "healthLabel", "actionsLabel"})
        QCOMPARE(text(selected(), label), QString());
    QCOMPARE(picture(), image("no-icon.png"));
    QVERIFY(labels<QLabel>(selected()).isEmpty());
}

void CreaturePanelTest::clickTicksAPower()
{
    show(Rat1);
    const auto bite = [this] { return powerLabel(1); };
    const auto style = [&] { return bite()->parentWidget()->styleSheet(); };
    QVERIFY(bite()->text().contains(QStringLiteral("untick.png")));
    QTest::mouseMove(bite());
    QTRY_VERIFY(!bite()->text().contains(QStringLiteral("untick.png")));
    QVERIFY(bite()->text().contains(QStringLiteral("<s>")));
    QVERIFY(style().contains(QStringLiteral("#7f7f7f")));
    QTest::mouseMove(m_fight->hpBox());
    QTRY_VERIFY(bite()->text().contains(QStringLiteral("untick.png")));
    QTest::mouseMove(bite());
    QTRY_VERIFY(!bite()->text().contains(QStringLiteral("untick.png")));

    // Under the resting mouse the row shows what the click made of it.
    const int events = theHistory->eventCount();
    QTest::mouseClick(bite(), Qt::LeftButton);
    QCOMPARE(FightFixture::eventClasses(events), QStringList({"PowerUsageChanged"}));
    QCOMPARE(creature(Rat1)->powers().at(1).usageState, 1);
    tick();
    QVERIFY(!bite()->text().contains(QStringLiteral("untick.png")));
    QVERIFY(style().contains(QStringLiteral("#7f7f7f")));
    // The other panel, with the same creature, follows.
    QVERIFY(labels<PowerLabel>(current()).at(1)->text().contains(QStringLiteral("/tick.png")));
    QTest::mouseClick(bite(), Qt::LeftButton);
    QCOMPARE(creature(Rat1)->powers().at(1).usageState, 2);
    // A trait is never spent.
    QTest::mouseClick(labels<PowerLabel>(selected()).at(0), Qt::LeftButton);
    QCOMPARE(theHistory->eventCount(), events + 2);
}

void CreaturePanelTest::changesOfTheCreatureKeepThePlace()
{
    for (const int row : {Rat1, Rat2}) {
        CreatureData data = creature(row)->data();
        for (int i = 0; i < 30; ++i)
            data.powers << power(11, 1, QStringLiteral("Trick %1").arg(i), {});
        creature(row)->assign(data);
    }
    show(Rat1);
    QTRY_VERIFY(scrollBar(selected())->maximum() > 300);
    scrollBar(selected())->setValue(250);
    const QList<PowerLabel *> before = labels<PowerLabel>(selected());
    appendEvent<DamageEvent>(nullptr, QList<Creature *> {creature(Rat1)}, 12);
    tick();
    QCoreApplication::processEvents();
    QCOMPARE(scrollBar(selected())->value(), 250);
    QCOMPARE(labels<PowerLabel>(selected()), before); // only the rows that changed are built anew
    show(Rat2);
    QCOMPARE(scrollBar(selected())->value(), 0);
}

void CreaturePanelTest::aliasRowSwitchesAndEdits()
{
    show(Rat1);
    QVERIFY(labels<DynLabel>(selected()).isEmpty());
    appendEvent<SetAliasEvent>(creature(Rat1), true, QStringLiteral("Grey & old"));
    m_fight->click(Rat2, Qt::ControlModifier);
    tick();
    const auto aliasLabels = [this] { return labels<DynLabel>(selected()); };
    QCOMPARE(aliasLabels().size(), 2);
    QVERIFY(aliasLabels().at(0)->text().contains(QStringLiteral("/tick.png")));
    QTest::mouseClick(aliasLabels().at(0), Qt::LeftButton);
    QTRY_COMPARE(creature(Rat1)->aliasMode(), 0);
    tick();
    QVERIFY(aliasLabels().at(0)->text().contains(QStringLiteral("untick.png")));

    Answer answer([] {
        auto *dialog = qobject_cast<SetAliasDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        tick(); // must not take the label away that opened the dialog
        dialog->findChild<QLineEdit *>()->setText(QStringLiteral("Long tail"));
        dialog->accept();
        return true;
    });
    QTest::mouseClick(aliasLabels().at(1), Qt::LeftButton);
    QTRY_COMPARE(creature(Rat1)->alias(), QStringLiteral("Long tail"));
    QVERIFY(creature(Rat2)->alias().isEmpty());
}

void CreaturePanelTest::panelFollowsTheDialogs()
{
    QString during;
    const auto seen = [&](FlatDialog &dialog) {
        tick();
        during = text(current(), "nameLabel");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    };
    Answer effect(inFlatDialog<EffectDialog>([&](EffectDialog &dialog) {
        auto *box = dialog.findChild<QComboBox *>(QStringLiteral("originBox"));
        box->setCurrentIndex(box->findText(QStringLiteral("Aria")));
        Q_EMIT box->activated(box->currentIndex());
        seen(dialog);
    }));
    m_fight->action("conditions")->trigger();
    QVERIFY(effect.wasAnswered);
    QCOMPARE(during, QStringLiteral("Aria"));
    tick();
    QCOMPARE(text(current(), "nameLabel"), QStringLiteral("Rat (1)"));

    m_fight->action("startStop")->trigger();
    tick();
    QCOMPARE(text(current(), "nameLabel"), QString());
    for (const char *action : {"startStop", "shortRest"}) {
        during.clear();
        Answer answer(inFlatDialog<FlatDialog>(seen));
        m_fight->action(action)->trigger();
        QVERIFY(answer.wasAnswered);
        QCOMPARE(during, QStringLiteral("Aria"));
        tick();
        QCOMPARE(text(current(), "nameLabel"), QString());
    }
}

MORVANE_TEST_MAIN(QApplication, CreaturePanelTest)
#include "tst_creaturepanel.moc"
