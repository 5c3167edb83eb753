// Reading the text of stat blocks: a common one, and a long paste that is mended in every line.
#include "creaturedata.h"
#include "ratios.h"
#include "statblockparser.h"

namespace {

// Of 3 KB, as most are.
QString commonBlock()
{
    QString text = QStringLiteral(
        "Reedmarsh Stalker Level 7 Elite Skirmisher\nLarge natural beast (reptile) XP 600\n"
        "Initiative +9 Senses Perception +11; low-light vision\nHP 154; Bloodied 77\n"
        "AC 23; Fortitude 21, Reflex 22, Will 19\nImmune disease; Resist 5 poison\n"
        "Saving Throws +2\nSpeed 7, swim 7\nAction Points 1\n");
    const QString footer =
        QStringLiteral("Alignment Unaligned Languages Common\nSkills Stealth +12, Athletics +13\n"
                       "Str 19 (+7) Dex 18 (+7) Wis 16 (+6)\nCon 17 (+6) Int 3 (-1) Cha 8 (+2)\n"
                       "Equipment bone charm, three eggs\n");
    const QString powers = QStringLiteral(
        "m Bite (standard; at-will) \u2022 Poison\n+12 vs. AC; 2d6 + 5 damage, and the target "
        "takes "
        "ongoing 5 poison damage\n(save ends).\nC Marsh Roar (minor; recharge \u2684 \u2685) "
        "\u2022 "
        "Fear, Thunder\nClose burst 3; targets enemies; +9 vs. Will; the target slides 2 squares\n"
        "and is dazed until the end of the stalker's next turn.\nAftereffect: The target is slowed "
        "(save ends).\nSlip Away (immediate reaction, when missed by an attack; encounter)\nThe "
        "stalker shifts 1 square.\n");
    while (text.size() + footer.size() < 3000)
        text += powers;
    return text + footer;
}

// A megabyte of sentences that were run on.
QString longTrap()
{
    const QString sentence =
        QStringLiteral("Trap: Blades sweep the room.DC 20The character notices the blades."
                       "Hit: 2d6+5 damageMiss: Half damage.2 arms move\n");
    return QStringLiteral("Whirling Arms\nLevel 5 Trap XP 200\n")
        + sentence.repeated(1'000'000 / sentence.size());
}

void parse(benchmark::State &state, const QString &text)
{
    for (auto _ : state) {
        CreatureData record;
        benchmark::DoNotOptimize(StatBlockParser::parse(record, text, true, QString()));
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

void parseStatBlock(benchmark::State &state)
{
    parse(state, commonBlock());
}

void parseLongTrap(benchmark::State &state)
{
    parse(state, longTrap());
}

} // namespace

BENCHMARK(parseStatBlock)->Unit(benchmark::kMicrosecond);
BENCHMARK(parseLongTrap)->Unit(benchmark::kMillisecond);
