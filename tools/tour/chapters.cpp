#include "chapters.h"

#include <QApplication>
#include <QClipboard>
#include <QRegularExpression>
#include <QScreen>
#include <QWidget>
#include <memory>

#include "characters.h"
#include "creature.h"
#include "creaturelistmodel.h"
#include "effect.h"
#include "effectedattributes.h"
#include "encounter.h"
#include "encounters.h"
#include "history.h"
#include "monsters.h"
#include "playerslistmodel.h"
#include "tour.h"
#include "windows.h"

namespace {

using Column = CreatureListModel;

// The demo party and the monsters of "Cairn Hill by Night" that have a part to play.
const QString Brannoc = QStringLiteral("Brannoc Thale");
const QString Dorrim = QStringLiteral("Dorrim Halfcask");
const QString Pim = QStringLiteral("Pim Tanglewick");
const QString Sefa = QStringLiteral("Sefa Quill");
const QString Warden = QStringLiteral("Cairn Warden (W)"); // an elite
const QString Hound = QStringLiteral("Ashhound (A)");
const QString GreyWolf = QStringLiteral("Grey Wolf (A)"); // its alias

constexpr auto Control = Qt::ControlModifier;

// Whoever is missing ends the tour: its expectations have lost their subject.
const Creature &creature(const QString &name)
{
    for (const Creature *creature : theEncounter->creatures()) {
        if (creature->displayName() == name)
            return *creature;
    }
    qFatal("tour: nobody is called \"%s\"", qPrintable(name));
}

bool hasTurn(const QString &name)
{
    return theEncounter->current() && theEncounter->current()->displayName() == name;
}

QStringList effectsOf(const Creature &creature)
{
    QStringList texts;
    for (const Effect *effect : creature.effects())
        texts << effect->fullText();
    return texts;
}

bool isUsed(const QString &owner, const QString &power)
{
    for (const Power &each : creature(owner).powers()) {
        if (each.name == power)
            return each.isUsed();
    }
    qFatal("tour: no power \"%s\"", qPrintable(power));
}

// The die of the latest recharge of the power. 0 where none was rolled.
int rechargeRoll(const QString &power)
{
    static const QRegularExpression form(QStringLiteral("^Recharge (\\d): .* - (.*)$"));
    for (int i = theHistory->eventCount() - 1; i >= 0; --i) {
        const QRegularExpressionMatch match = form.match(theHistory->eventText(i));
        if (match.hasMatch() && match.captured(2) == power)
            return match.captured(1).toInt();
    }
    return 0;
}

// Whatever is asked on the way is answered as the dice say.
void passTurnsTo(Tour &tour, const QString &name)
{
    tour.repeat([name] { return hasTurn(name) && !QApplication::activeModalWidget(); },
                [&tour] {
                    if (QApplication::activeModalWidget())
                        tour.press(Qt::Key_Return);
                    else
                        tour.press(Qt::Key_N, Control);
                });
}

void answerQuestions(Tour &tour)
{
    tour.repeat([] { return !QApplication::activeModalWidget(); },
                [&tour] { tour.press(Qt::Key_Return); });
}

void openForm(Tour &tour, const QString &target)
{
    tour.step([&tour, target] {
        tour.clickRow(target, Column::NameColumn);
        tour.press(Qt::Key_A, Control);
    });
}

void dealDamage(Tour &tour, const QString &target, int amount)
{
    tour.clickRow(target, Column::HealthColumn);
    tour.type(QString::number(amount));
    tour.press(Qt::Key_Return);
}

QWidget *playersWindow()
{
    return thePlayersDisplay->displayWindow();
}

bool playersSee(const QString &name)
{
    const auto *model = playersWindow()->findChild<PlayersListModel *>();
    for (int row = 0; row < model->rowCount(); ++row)
        if (model->index(row, PlayersListModel::NameColumn).data() == name)
            return true;
    return false;
}

// In full screen, on a screen of its own where there are two.
void openPlayersDisplay(Tour &tour)
{
    tour.step([&tour] {
        tour.clickButton(QStringLiteral("Show Player's Window"));
        tour.turnTo(playersWindow());
    });
    tour.step([&tour] {
        tour.expect(playersSee(GreyWolf) && !playersSee(Hound), QStringLiteral("the alias alone"));
        tour.press(Qt::Key_F10, Qt::ShiftModifier);
    });
    tour.step(QStringLiteral("players-menu"),
              [&tour] { tour.clickEntry(QStringLiteral("Full Screen")); });
    tour.step([&tour] {
        const QList<QScreen *> screens = QGuiApplication::screens();
        tour.clickEntry(screens.size() > 1 ? screens.at(1)->name() : QStringLiteral("This Screen"));
    });
    tour.step([&tour] {
        tour.expect(playersWindow()->isFullScreen(), QStringLiteral("the whole of a screen"));
        tour.turnTo(nullptr);
    });
}

void hideAndStepBack(Tour &tour)
{
    for (const bool hidden : {true, false}) {
        tour.step([&tour] {
            tour.clickRow(Warden, Column::NameColumn);
            tour.press(Qt::Key_H, Control);
        });
        tour.step([&tour, hidden] {
            tour.expect(playersSee(creature(Warden).playersName()) != hidden,
                        QStringLiteral("the hidden kept from the players, and nobody else"));
        });
    }
    tour.repeat([] { return playersSee(GreyWolf); }, [&tour] { tour.press(Qt::Key_Z, Control); });
    tour.repeat([] { return !theHistory->canStepForward(); },
                [&tour] { tour.press(Qt::Key_Z, Control | Qt::ShiftModifier); });
    tour.step([&tour] {
        tour.expect(!playersSee(GreyWolf), QStringLiteral("the kill taken back, and done again"));
    });
}

} // namespace

QStringList fightSummary()
{
    QStringList lines {QStringLiteral("round %1, current %2, position %3 of %4")
                           .arg(theEncounter->round())
                           .arg(theEncounter->currentIndex())
                           .arg(theHistory->position())
                           .arg(theHistory->eventCount())};
    for (const Creature *creature : theEncounter->creatures()) {
        lines << QStringLiteral("%1: %2+%3 of %4, surges %5, action points %6, roll %7, %8, %9")
                     .arg(creature->displayName())
                     .arg(creature->currHP())
                     .arg(creature->tempHP())
                     .arg(creature->maxHP())
                     .arg(creature->currHS())
                     .arg(creature->currAP())
                     .arg(creature->initRoll())
                     .arg(creature->isHidden() ? u"hidden" : u"shown")
                     .arg(creature->playersName())
              << effectsOf(*creature);
    }
    for (int i = 0; i < theHistory->eventCount(); ++i)
        lines << theHistory->eventText(i);
    return lines;
}

void expectSameFight(Tour &tour, const QStringList &before)
{
    const QStringList after = fightSummary();
    for (int i = 0; i < qMax(before.size(), after.size()); ++i) {
        tour.expect(
            before.value(i) == after.value(i),
            QStringLiteral("\"%1\" again, not \"%2\"").arg(before.value(i), after.value(i)));
    }
}

void pickTheParty(Tour &tour)
{
    tour.step(QStringLiteral("first-start"), [] {});
    tour.step(QStringLiteral("pick-the-party"), [&tour] { tour.press(Qt::Key_Y, Control); });
    tour.step(QStringLiteral("party"), [&tour] { tour.clickButton(QStringLiteral("Select All")); });
}

void loadAndStart(Tour &tour)
{
    tour.step(QStringLiteral("select-an-encounter"), [&tour] {
        tour.expect(theEncounter->count() == 6, QStringLiteral("six characters in the party"));
        tour.press(Qt::Key_O, Control);
    });
    tour.step(QStringLiteral("encounter-chosen"),
              [&tour] { tour.clickRow(QStringLiteral("Cairn Hill by Night"), 0); });
    tour.step(QStringLiteral("encounter-loaded"),
              [&tour] { tour.clickButton(QStringLiteral("Replace")); });
    tour.step(QStringLiteral("initiative"), [&tour] { tour.press(Qt::Key_S, Control); });
    tour.step(QStringLiteral("started"), [&tour] {
        tour.expect(!theEncounter->isRunning(), QStringLiteral("nothing starts before the answer"));
        tour.press(Qt::Key_Return);
    });
    tour.step(
        [&tour] { tour.expect(theEncounter->isRunning(), QStringLiteral("a running encounter")); });
}

void fight(Tour &tour)
{
    passTurnsTo(tour, Dorrim);
    tour.step(QStringLiteral("selected"), [&tour] { tour.clickRow(Hound, Column::HealthColumn); });
    tour.step(QStringLiteral("hp-box"), [&tour] { tour.type(QStringLiteral("12")); });
    tour.step(QStringLiteral("damaged"), [&tour] { tour.press(Qt::Key_Return); });
    tour.step(QStringLiteral("stepped-back"), [&tour] {
        tour.expect(creature(Hound).damageTaken() == 12, QStringLiteral("a wounded monster"));
        tour.press(Qt::Key_Z, Control);
    });
    tour.step(QStringLiteral("stepped-forward"), [&tour] {
        tour.expect(creature(Hound).damageTaken() == 0, QStringLiteral("the wound taken back"));
        tour.press(Qt::Key_Z, Control | Qt::ShiftModifier);
    });
    tour.step(QStringLiteral("hidden"), [&tour] { tour.press(Qt::Key_H, Control); });
    tour.step([&tour] {
        tour.clickRow(Hound, Column::HealthColumn);
        tour.type(QStringLiteral("5"));
    });
    tour.step(QStringLiteral("healed"), [&tour] { tour.press(Qt::Key_L, Control); });
    tour.step([&tour] {
        const Creature &hound = creature(Hound);
        tour.expect(hound.isHidden() && hound.maxHP() - hound.currHP() == 7,
                    QStringLiteral("a hidden monster with 5 of 12 hit points back"));
        tour.press(Qt::Key_H, Control);
    });
    tour.step(QStringLiteral("jumped-in-history"),
              [&tour] { tour.clickEvent(theHistory->eventCount() - 3); });
    tour.step(QStringLiteral("end-of-history"), [&tour] {
        tour.expect(theHistory->position() == theHistory->eventCount() - 3,
                    QStringLiteral("the history at the clicked line"));
        tour.clickEvent(theHistory->eventCount() - 1);
    });
}

void conditions(Tour &tour)
{
    passTurnsTo(tour, Brannoc);
    openForm(tour, Warden);
    tour.step([&tour] {
        const int events = theHistory->eventCount();
        tour.enter(QStringLiteral("damageBox"), QStringLiteral("12"));
        tour.expect(creature(Warden).currHP() == creature(Warden).maxHP() - 12
                        && theHistory->eventCount() == events,
                    QStringLiteral("a preview of the damage, and no event"));
        tour.press(Qt::Key_Escape);
    });
    openForm(tour, Warden);
    tour.step(QStringLiteral("conditions-form"), [&tour] {
        tour.expect(creature(Warden).currHP() == creature(Warden).maxHP(),
                    QStringLiteral("the preview taken back"));
        tour.enter(QStringLiteral("damageBox"), QStringLiteral("12"));
        tour.choose(QStringLiteral("conditionBox"), QStringLiteral("Dazed"));
        tour.choose(QStringLiteral("endBox"), QStringLiteral("Save ends"));
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    openForm(tour, Warden);
    tour.step(QStringLiteral("ongoing-damage"), [&tour] {
        tour.choose(QStringLiteral("ongoingBox"), QStringLiteral("Ongoing Damage 5"));
        tour.enter(QStringLiteral("commentEdit"), QStringLiteral("holy fire"));
        tour.choose(QStringLiteral("endBox"), QStringLiteral("Save ends"));
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    openForm(tour, Sefa);
    tour.step(QStringLiteral("bonus"), [&tour] {
        tour.choose(QStringLiteral("effectBox"), QStringLiteral("+2 Bonus"));
        tour.check(QStringLiteral("acCheck"), true);
        tour.choose(QStringLiteral("endBox"), QStringLiteral("End of Brannoc Thale's next turn"));
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    tour.step(QStringLiteral("context-menu"), [&tour] {
        tour.clickRow(Warden, Column::NameColumn);
        tour.clickRow(Warden, Column::EffectsColumn, Qt::RightButton);
    });
    tour.step(QStringLiteral("conditions"),
              [&tour] { tour.clickEntry(QStringLiteral("Marked by Brannoc Thale")); });
    tour.step([&tour] {
        tour.expect(creature(Warden).currHP() == creature(Warden).maxHP() - 12,
                    QStringLiteral("the damage of the form"));
        tour.expect(effectsOf(creature(Warden))
                        == QStringList {QStringLiteral("Dazed until save ends"),
                                        QStringLiteral("Ongoing 5 Damage (holy fire) until save "
                                                       "ends"),
                                        QStringLiteral("Marked by Brannoc Thale end special")},
                    QStringLiteral("two conditions and a mark on the elite, not \"%1\"")
                        .arg(effectsOf(creature(Warden)).join(u'|')));
    });
}

void savingThrows(Tour &tour)
{
    passTurnsTo(tour, Warden);
    tour.step(QStringLiteral("saving-throws"), [&tour] {
        tour.expect(creature(Warden).currHP() == creature(Warden).maxHP() - 12 - 5,
                    QStringLiteral("the ongoing damage at the start of the turn"));
        tour.press(Qt::Key_N, Control);
    });
    // The DM's word counts, whatever was rolled.
    tour.step(QStringLiteral("overruled"), [&tour] {
        tour.check(QStringLiteral("saved:0"), true);
        tour.check(QStringLiteral("saved:1"), false);
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    // The dock takes off what nobody saves against.
    tour.step(QStringLiteral("mark-removed"), [&tour] {
        tour.expect(!effectsOf(creature(Warden)).contains(QStringLiteral("Dazed until save ends")),
                    QStringLiteral("dazed no more"));
        tour.clickRow(Warden, Column::NameColumn);
        tour.clickRow(QStringLiteral("Marked by Brannoc Thale end special"), 0);
    });
    passTurnsTo(tour, Brannoc);
    tour.step([&tour] {
        tour.expect(creature(Sefa).accumulateModifiers().ac == 2,
                    QStringLiteral("the bonus in the attacker's next turn"));
        tour.press(Qt::Key_N, Control);
    });
    tour.step([&tour] {
        tour.expect(creature(Sefa).effectCount() == 0,
                    QStringLiteral("the bonus ended with that turn"));
        tour.expect(!effectsOf(creature(Warden)).join(u' ').contains(QStringLiteral("Marked")),
                    QStringLiteral("the mark removed"));
    });
}

void aliases(Tour &tour)
{
    tour.step(QStringLiteral("set-alias"), [&tour] {
        tour.clickRow(Hound, Column::NameColumn);
        tour.press(Qt::Key_A, Control | Qt::ShiftModifier);
    });
    tour.step([&tour] {
        tour.type(QStringLiteral("Grey Wolf"));
        tour.press(Qt::Key_Return);
    });
    tour.step([&tour] {
        tour.expect(creature(Hound).playersName() == GreyWolf, QStringLiteral("an alias"));
    });
}

void powers(Tour &tour)
{
    const QString bite = QStringLiteral("Cinder Bite"); // at-will
    const QString flame = QStringLiteral("Running Flame"); // recharge on 5 and 6
    const QString cough = QStringLiteral("Cough of Ash"); // encounter
    passTurnsTo(tour, Hound);
    tour.step(QStringLiteral("powers-ticked"), [&tour, bite, flame, cough] {
        for (const QString &name : {cough, flame, bite})
            tour.clickPower(name);
    });
    tour.step([&tour, bite, flame, cough] {
        for (const QString &name : {bite, flame, cough})
            tour.expect(isUsed(Hound, name), QStringLiteral("%1 ticked off").arg(name));
        tour.press(Qt::Key_N, Control);
    });
    passTurnsTo(tour, Hound);
    tour.step(QStringLiteral("powers-back"), [&tour, bite, flame, cough] {
        tour.expect(!isUsed(Hound, bite) && isUsed(Hound, cough),
                    QStringLiteral("the at-will power back, and the encounter power spent"));
        const int roll = rechargeRoll(flame);
        tour.expect(roll >= 1 && isUsed(Hound, flame) == (roll < 5),
                    QStringLiteral("a recharge on 5 and 6, not on %1").arg(roll));
    });
    // The DM's word counts here as well.
    tour.step([&tour, cough] { tour.clickPower(cough); });
    tour.step([&tour, cough] {
        tour.expect(!isUsed(Hound, cough), QStringLiteral("the tick taken away"));
    });
}

void waiting(Tour &tour)
{
    passTurnsTo(tour, Brannoc);
    tour.step(QStringLiteral("delayed"), [&tour] { tour.press(Qt::Key_D, Control); });
    tour.step([&tour] {
        tour.expect(creature(Brannoc).isDelayed() && !hasTurn(Brannoc),
                    QStringLiteral("a delayed turn"));
        tour.press(Qt::Key_J, Control);
    });
    answerQuestions(tour);
    tour.step([&tour] {
        tour.expect(!creature(Brannoc).isDelayed() && hasTurn(Brannoc),
                    QStringLiteral("the delayed turn taken"));
    });
    passTurnsTo(tour, Pim);
    tour.step(QStringLiteral("readied"), [&tour] {
        // The key removes what is selected.
        tour.press(Qt::Key_Escape);
        tour.press(Qt::Key_R, Control);
    });
    answerQuestions(tour);
    tour.step([&tour] {
        tour.expect(creature(Pim).isReadied() && !hasTurn(Pim), QStringLiteral("a readied action"));
        tour.press(Qt::Key_J, Control);
    });
    tour.step([&tour] {
        tour.expect(!creature(Pim).isReadied() && !hasTurn(Pim),
                    QStringLiteral("the readied action in another's turn"));
    });
}

void dying(Tour &tour)
{
    tour.step(QStringLiteral("hurt-together"), [&tour] {
        tour.clickRow(Brannoc, Column::HealthColumn);
        tour.clickRow(Dorrim, Column::NameColumn, Qt::RightButton);
        tour.clickRow(Sefa, Column::HealthColumn, Qt::RightButton);
        tour.type(QStringLiteral("14"));
        tour.press(Qt::Key_Return);
    });
    tour.step([&tour] {
        dealDamage(tour, Sefa, creature(Sefa).currHP() + 3);
        tour.expect(creature(Dorrim).currHP() == creature(Dorrim).maxHP() - 14
                        && creature(Sefa).isDying(),
                    QStringLiteral("heroes wounded and one dying"));
    });
    for (int failed = 1; failed <= 2; ++failed) {
        passTurnsTo(tour, Sefa);
        tour.step(QStringLiteral("death-save"), [&tour] { tour.press(Qt::Key_N, Control); });
        tour.step([&tour] {
            tour.check(QStringLiteral("saved:0"), false);
            tour.press(Qt::Key_Return);
        });
        tour.step([&tour, failed] {
            tour.expect(creature(Sefa).failedDeathSaves() == failed,
                        QStringLiteral("failed death save %1").arg(failed));
        });
    }
    passTurnsTo(tour, Dorrim);
    openForm(tour, Sefa);
    tour.step(QStringLiteral("first-aid"), [&tour] {
        tour.choose(QStringLiteral("actionBox"), QStringLiteral("Administer First Aid"));
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    tour.step(QStringLiteral("back-on-her-feet"), [&tour] {
        const Creature &sefa = creature(Sefa);
        tour.expect(sefa.currHP() == sefa.hsValue() && sefa.currHS() == sefa.maxHS() - 1,
                    QStringLiteral("a surge's hit points from 0"));
    });
}

void playersDisplay(Tour &tour)
{
    openPlayersDisplay(tour);
    openForm(tour, Warden);
    tour.step([&tour] {
        tour.choose(QStringLiteral("conditionBox"), QStringLiteral("Slowed"));
        tour.enter(QStringLiteral("commentEdit"), QStringLiteral("knee-deep in the grave"));
        tour.choose(QStringLiteral("endBox"), QStringLiteral("Save ends"));
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    tour.step([&tour] { dealDamage(tour, Hound, creature(Hound).currHP()); });
    tour.step(QStringLiteral("players-display"), [&tour] {
        tour.turnTo(playersWindow());
        tour.expect(creature(Hound).isDead() && !playersSee(GreyWolf),
                    QStringLiteral("the kill taken off the players' list"));
    });
    tour.step(QStringLiteral("players-zoomed"), [&tour] {
        for (const Creature *seen : theEncounter->creatures())
            tour.expect(seen->isDead() || playersSee(seen->playersName()) != seen->isHidden(),
                        QStringLiteral("%1 in the players' list").arg(seen->displayName()));
        tour.press(Qt::Key_Plus, Control);
    });
    tour.step(QStringLiteral("curtain"), [&tour] {
        tour.press(Qt::Key_0, Control);
        tour.press(Qt::Key_F9);
    });
    tour.step([&tour] {
        tour.expect(thePlayersDisplay->isCurtained(), QStringLiteral("the curtain down"));
        tour.press(Qt::Key_F9);
        tour.press(Qt::Key_Escape);
        tour.turnTo(nullptr);
    });
    hideAndStepBack(tour);
}

void stopAndRest(Tour &tour)
{
    tour.step(QStringLiteral("stopped"), [&tour] { tour.press(Qt::Key_S, Control); });
    tour.step([&tour] {
        tour.expect(!theEncounter->isRunning() && theEncounter->monsterCount() == 0,
                    QStringLiteral("the monsters gone with the encounter"));
        tour.press(Qt::Key_E, Control);
    });
    tour.step(QStringLiteral("short-rest"), [&tour] {
        tour.enter(QStringLiteral("surgeBox:") + Brannoc, QStringLiteral("1"));
        tour.enter(QStringLiteral("surgeBox:") + Dorrim, QStringLiteral("1"));
        tour.enter(QStringLiteral("hpBox:") + Dorrim, QStringLiteral("4"));
        tour.enter(QStringLiteral("surgeBox:") + Sefa, QStringLiteral("2"));
        tour.check(QStringLiteral("grantBox"), true);
    });
    tour.step([&tour] { tour.press(Qt::Key_Return); });
    tour.step(QStringLiteral("rested"), [&tour] {
        const auto rested = [](const QString &name, int surges, int missing) {
            const Creature &hero = creature(name);
            return hero.maxHS() - hero.currHS() == surges && hero.maxHP() - hero.currHP() == missing
                && hero.currAP() == hero.initAP() + 1;
        };
        tour.expect(rested(Brannoc, 1, 4) && rested(Dorrim, 1, 1) && rested(Sefa, 3, 9)
                        && rested(Pim, 0, 0),
                    QStringLiteral("surges spent and a milestone"));
        tour.press(Qt::Key_X, Control);
    });
    tour.step([&tour] {
        for (const Creature *hero : theEncounter->creatures())
            tour.expect(hero->currHP() == hero->maxHP() && hero->currHS() == hero->maxHS()
                            && hero->currAP() == hero->initAP(),
                        QStringLiteral("%1 rested").arg(hero->displayName()));
    });
}

void throughTheHistory(Tour &tour)
{
    const auto before = std::make_shared<QStringList>();
    tour.step(QStringLiteral("back-at-the-start"), [&tour, before] {
        *before = fightSummary();
        while (theHistory->canStepBack())
            tour.press(Qt::Key_Z, Control);
        tour.expect(theEncounter->count() == 0 && !theEncounter->isRunning(),
                    QStringLiteral("nothing at the start of the history"));
    });
    tour.step(QStringLiteral("forward-to-the-end"), [&tour, before] {
        while (theHistory->canStepForward())
            tour.press(Qt::Key_Z, Control | Qt::ShiftModifier);
        expectSameFight(tour, *before);
    });
}

void library(Tour &tour)
{
    const QString foe = QStringLiteral("Ford Ogre");
    tour.step([&tour] { tour.clickButton(QStringLiteral("Monster Manager Window")); });
    tour.step([&tour] {
        tour.press(Qt::Key_Return); // the hint
        tour.turnTo(theManagerWindow->libraryWindow());
    });
    tour.step([&tour, foe] {
        // As a viewer of documents copies it, with words that it split.
        QGuiApplication::clipboard()->setText(
            foe
            + QStringLiteral(" Level 5 Brute\nLarge natural humanoid (giant) XP 200\n"
                             "Initiative +3 Senses Perception +2\nHP: 72; Bloodied 36\n"
                             "AC 17; Fortitude 18, Refl ex 14, Will 14\nSpeed 8\n"
                             "m Ferry Pole (standard; at will) Weapon\n"
                             "Reach 2; +8 vs. AC; 2d8 + 5 damage, and the target slides 1 square.\n"
                             "Alignment Unaligned Languages Giant\n"
                             "Str 20 (+7) Dex 12 (+3) Wis 11 (+2)\n"
                             "Con 18 (+6) Int 7 (+0) Cha 8 (+1)\n"));
        tour.clickButton(QStringLiteral("New & Paste"));
    });
    tour.step(QStringLiteral("monster-pasted"), [&tour, foe] {
        const Creature *pasted = theMonsters->findGroup(foe);
        tour.expect(pasted && pasted->data().reflex == 14, QStringLiteral("the pasted monster"));
        tour.clickButton(QStringLiteral("New Encounter"));
    });
    tour.step([&tour] { tour.type(QStringLiteral("At the Ford")); });
    for (int i = 0; i < 3; ++i)
        tour.step([&tour] { tour.clickButton(QStringLiteral("Add")); });
    tour.step(QStringLiteral("encounter-made"),
              [&tour] { tour.clickButton(QStringLiteral("Save All")); });
    tour.step([&tour, foe] {
        PreparedEncounter saved;
        tour.expect(saved.read(QStringLiteral("at-the-ford.txt"), QString())
                        && saved.monsters().size() == 3
                        && saved.monsters().constFirst().group == foe,
                    QStringLiteral("the encounter in its file"));
        theManagerWindow->libraryWindow()->close();
        tour.turnTo(nullptr);
        tour.clickButton(QStringLiteral("Character Creator Window"));
        tour.turnTo(theCharacterWindow->libraryWindow());
    });
    tour.step([&tour] { tour.clickButton(QStringLiteral("New")); });
    tour.step([&tour] {
        tour.type(QStringLiteral("Odda Reedmace"));
        tour.press(Qt::Key_Return);
    });
    tour.step(QStringLiteral("hero-made"), [&tour] {
        tour.expect(theCharacters->find(QStringLiteral("Odda Reedmace")),
                    QStringLiteral("the new hero"));
        tour.clickButton(QStringLiteral("Save All"));
    });
    tour.step([&tour] {
        tour.expect(theCharacters->changedNames().isEmpty(), QStringLiteral("the hero saved"));
        theCharacterWindow->libraryWindow()->close();
        tour.turnTo(nullptr);
    });
}
