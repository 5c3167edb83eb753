#include "statblocktokens.h"

#include <QList>

#include <algorithm>
#include <array>
#include <limits>

namespace {

struct KeywordGroup {
    int firstKind;
    QStringView words; // a blank between two; their kinds follow one another
};

constexpr KeywordGroup keywordGroups[] = {
    {TokenKind::Tiny, u"tiny small medium large huge gargantuan"},
    {TokenKind::Artillery,
     u"artillery brute controller defender elite leader lurker minion skirmisher soldier solo "
     u"striker"},
    {TokenKind::Hazard, u"hazard trap blaster warder obstacle terrain"},
    {TokenKind::LowLight, u"low-light darkvision truesight all-round blindsight tremorsense"},
    {TokenKind::Portrait,
     u"portrait level xp hp bloodied initiative ac fortitude reflex will senses perception speed "
     u"action resist immune detect regeneration vulnerable saving vision points throws alignment "
     u"languages skills str dex wis con int cha equipment description published monster"},
    {TokenKind::Acrobatics,
     u"acrobatics arcana athletics bluff diplomacy dungeoneering endurance heal history insight "
     u"intimidate nature religion stealth streetwise thievery"},
    {TokenKind::Attack,
     u"attack ranged hit effect miss trigger secondary prerequisite requirements requirement "
     u"requires disable evade target special targets trample aftereffect success failure at-will "
     u"recharge rchg encounter"},
    {TokenKind::TwicePerEncounter, u"2/encounter"},
    {TokenKind::Aura,
     u"aura fear zone necrotic teleportation cold gaze fire poison radiant polymorph acid "
     u"lightning thunder weapon psychic"},
    // "moun" is spelled so.
    {TokenKind::Illusion,
     u"illusion moun healing traits standard std move minor free other triggered countermeasures "
     u"immediate imm interrupt reaction reac opportunity actions powers melee close area blast "
     u"burst reach dc creature character if or of to the crossbow longbow shortbow sling blowgun "
     u"bola greatbow shuriken boomerang"},
};

// The only keywords that differ by case, in the order of their kinds.
constexpr QStringView iconLetters = u"mMrRaAcCoOx";

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
            for (const QStringView word : group.words.split(u' ')) {
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
