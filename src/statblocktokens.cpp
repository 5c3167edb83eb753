#include "statblocktokens.h"

#include <QList>

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace {

struct KeywordGroup {
    int firstKind;
    int lastKind;
    std::u16string_view words; // a blank between two; their kinds follow one another
};

constexpr KeywordGroup keywordGroups[] = {
    {TokenKind::Tiny, TokenKind::Gargantuan, u"tiny small medium large huge gargantuan"},
    {TokenKind::Artillery, TokenKind::Striker,
     u"artillery brute controller defender elite leader lurker minion skirmisher soldier solo "
     u"striker"},
    {TokenKind::Hazard, TokenKind::Terrain, u"hazard trap blaster warder obstacle terrain"},
    {TokenKind::LowLight, TokenKind::Tremorsense,
     u"low-light darkvision truesight all-round blindsight tremorsense"},
    {TokenKind::Portrait, TokenKind::Monster,
     u"portrait level xp hp bloodied initiative ac fortitude reflex will senses perception speed "
     u"action resist immune detect regeneration vulnerable saving vision points throws alignment "
     u"languages skills str dex wis con int cha equipment description published monster"},
    {TokenKind::Acrobatics, TokenKind::Thievery,
     u"acrobatics arcana athletics bluff diplomacy dungeoneering endurance heal history insight "
     u"intimidate nature religion stealth streetwise thievery"},
    {TokenKind::Attack, TokenKind::Encounter,
     u"attack ranged hit effect miss trigger secondary prerequisite requirements requirement "
     u"requires disable evade target special targets trample aftereffect success failure at-will "
     u"recharge rchg encounter"},
    {TokenKind::TwicePerEncounter, TokenKind::TwicePerEncounter, u"2/encounter"},
    {TokenKind::Aura, TokenKind::Psychic,
     u"aura fear zone necrotic teleportation cold gaze fire poison radiant polymorph acid "
     u"lightning thunder weapon psychic"},
    // "moun" is spelled so.
    {TokenKind::Illusion, TokenKind::Boomerang,
     u"illusion moun healing traits standard std move minor free other triggered countermeasures "
     u"immediate imm interrupt reaction reac opportunity actions powers melee close area blast "
     u"burst reach dc creature character if or of to the crossbow longbow shortbow sling blowgun "
     u"bola greatbow shuriken boomerang"},
};

// Empty for a kind that is no keyword.
constexpr std::u16string_view wordOf(int kind)
{
    for (const KeywordGroup &group : keywordGroups) {
        if (!TokenKind::isIn(kind, group.firstKind, group.lastKind))
            continue;
        std::u16string_view words = group.words;
        for (int skipped = group.firstKind; skipped < kind; ++skipped)
            words.remove_prefix(words.find(u' ') + 1);
        return words.substr(0, words.find(u' '));
    }
    return {};
}

constexpr bool hasWordForEachKind()
{
    for (const KeywordGroup &group : keywordGroups) {
        const auto blanks = std::count(group.words.begin(), group.words.end(), u' ');
        if (blanks != group.lastKind - group.firstKind)
            return false;
    }
    return true;
}
static_assert(hasWordForEachKind());

// The runs of kinds that isSizeWord() and its like ask for.
constexpr struct {
    int first;
    int last;
    std::u16string_view firstWord;
    std::u16string_view lastWord;
} runs[] = {
    {TokenKind::Tiny, TokenKind::Gargantuan, u"tiny", u"gargantuan"},
    {TokenKind::Artillery, TokenKind::Striker, u"artillery", u"striker"},
    {TokenKind::Hazard, TokenKind::Obstacle, u"hazard", u"obstacle"},
    {TokenKind::Hazard, TokenKind::Terrain, u"hazard", u"terrain"},
    {TokenKind::LowLight, TokenKind::Tremorsense, u"low-light", u"tremorsense"},
    {TokenKind::Portrait, TokenKind::Saving, u"portrait", u"saving"},
    {TokenKind::Alignment, TokenKind::Cha, u"alignment", u"cha"},
    {TokenKind::Str, TokenKind::Cha, u"str", u"cha"},
    {TokenKind::Equipment, TokenKind::Monster, u"equipment", u"monster"},
    {TokenKind::Acrobatics, TokenKind::Thievery, u"acrobatics", u"thievery"},
    {TokenKind::Attack, TokenKind::Aftereffect, u"attack", u"aftereffect"},
    {TokenKind::AtWill, TokenKind::Aura, u"at-will", u"aura"},
    {TokenKind::AtWill, TokenKind::Healing, u"at-will", u"healing"},
    {TokenKind::Crossbow, TokenKind::Boomerang, u"crossbow", u"boomerang"},
};
static_assert(std::all_of(std::begin(runs), std::end(runs), [](const auto &run) {
    return wordOf(run.first) == run.firstWord && wordOf(run.last) == run.lastWord;
}));

// The only keywords that differ by case, in the order of their kinds.
constexpr QStringView iconLetters = u"mMrRaAcCoOx";
static_assert(iconLetters.size() == TokenKind::LowerX - TokenKind::LowerM + 1);

quint32 lowered(QChar c)
{
    const char16_t code = c.unicode();
    if (code < 0x80)
        return code >= u'A' && code <= u'Z' ? code | 0x20 : code;
    return c.toLower().unicode();
}

bool isKeyword(QStringView word, QStringView keyword)
{
    return word.size() == keyword.size()
        && std::equal(word.begin(), word.end(), keyword.begin(),
                      [](QChar c, QChar small) { return lowered(c) == small.unicode(); });
}

// Open addressing: a slot that is taken passes a word on to the next one.
class KeywordTable {
public:
    KeywordTable()
    {
        for (const KeywordGroup &group : keywordGroups) {
            int kind = group.firstKind;
            for (const QStringView word : QStringView(group.words).split(u' ')) {
                quint32 slot = firstSlot(word);
                while (m_slots[slot].kind != 0)
                    slot = nextSlot(slot);
                m_slots[slot] = {word, kind++};
            }
        }
    }

    int find(QStringView word) const
    {
        quint32 slot = firstSlot(word);
        while (m_slots[slot].kind != 0 && !isKeyword(word, m_slots[slot].word))
            slot = nextSlot(slot);
        return m_slots[slot].kind != 0 ? m_slots[slot].kind : TokenKind::Word;
    }

private:
    struct Slot {
        QStringView word;
        int kind = 0;
    };

    static constexpr quint32 slotCount = 1024; // five times the keywords: few meet a taken slot

    // By three of the letters: the others are looked at only where a keyword may be found.
    static quint32 firstSlot(QStringView word)
    {
        const quint32 letters = (lowered(word.front()) * 37 + lowered(word[word.size() / 2])) * 37
            + lowered(word.back());
        return (letters * 37 + quint32(word.size())) % slotCount;
    }
    static quint32 nextSlot(quint32 slot) { return (slot + 1) % slotCount; }

    std::array<Slot, slotCount> m_slots;
};

int ofLetter(QChar letter)
{
    if (letter == u'F')
        return TokenKind::Bullet;
    qsizetype index = iconLetters.indexOf(letter);
    if (index < 0)
        index = iconLetters.indexOf(letter.toLower());
    return index < 0 ? TokenKind::Word : TokenKind::LowerM + static_cast<int>(index);
}

} // namespace

int TokenKind::ofWord(QStringView word)
{
    static const KeywordTable table;
    if (word.size() == 1)
        return ofLetter(word.front());
    return table.find(word);
}

int Token::number() const
{
    if (TokenKind::isDieFace(kind))
        return kind - TokenKind::DieFace1 + 1;
    if (kind != TokenKind::Number)
        return 0;
    qint64 value = 0;
    bool negative = false;
    for (const QChar c : text) {
        if (c == u'-' || c == u'\u2013')
            negative = true;
        else if (c >= u'0' && c <= u'9')
            value = value * 10 + (c.unicode() - u'0');
        if (value > std::numeric_limits<int>::max())
            return 0;
    }
    return static_cast<int>(negative ? -value : value);
}
