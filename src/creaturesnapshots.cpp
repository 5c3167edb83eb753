#include "creaturesnapshots.h"

#include <QVarLengthArray>
#include <algorithm>
#include <cstring>

#include "creature.h"

namespace {

constexpr int CreatureState::*Numbers[] = {
    &CreatureState::currHP,         &CreatureState::tempHP,
    &CreatureState::currHS,         &CreatureState::currAP,
    &CreatureState::baseCurrHP,     &CreatureState::baseCurrHS,
    &CreatureState::baseCurrAP,     &CreatureState::failedDeathSaves,
    &CreatureState::secondWindUsed, &CreatureState::apUsedInEncounter,
    &CreatureState::turnCount,      &CreatureState::lastHitOrder,
    &CreatureState::damageTaken,    &CreatureState::healCount,
};
constexpr bool CreatureState::*Flags[] = {
    &CreatureState::stable,
    &CreatureState::delayed,
    &CreatureState::readied,
};
using Bytes = QVarLengthArray<char, 512>;

// Seven bits to a byte, the lowest first, with the sign in the lowest: most numbers take one byte.
void pack(Bytes &bytes, int number)
{
    quint32 rest = (quint32(number) << 1) ^ quint32(number >> 31);
    for (; rest >= 0x80; rest >>= 7)
        bytes.append(char(rest | 0x80));
    bytes.append(char(rest));
}

int unpackNumber(const char *&at)
{
    quint32 value = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = quint8(*at++);
        value |= quint32(byte & 0x7f) << shift;
        if (byte < 0x80)
            break;
    }
    return int((value >> 1) ^ (0 - (value & 1)));
}

void pack(Bytes &bytes, const CreatureState &state)
{
    for (const auto number : Numbers)
        pack(bytes, state.*number);
    int flags = 0;
    for (const auto flag : Flags)
        flags = flags << 1 | int(state.*flag);
    pack(bytes, flags);
    pack(bytes, int(state.lastHitBy.size()));
    bytes.append(reinterpret_cast<const char *>(state.lastHitBy.constData()),
                 state.lastHitBy.size() * qsizetype(sizeof(QChar)));
}

CreatureState unpackState(const char *&at)
{
    CreatureState state;
    for (const auto number : Numbers)
        state.*number = unpackNumber(at);
    int flags = unpackNumber(at);
    for (auto flag = std::rbegin(Flags); flag != std::rend(Flags); ++flag, flags >>= 1)
        state.**flag = flags & 1;
    state.lastHitBy.resize(unpackNumber(at));
    const auto size = std::size_t(state.lastHitBy.size()) * sizeof(QChar);
    if (size > 0)
        std::memcpy(state.lastHitBy.data(), at, size);
    at += size;
    return state;
}

QList<CreatureState> statesOf(const QList<Creature *> &creatures)
{
    QList<CreatureState> states;
    states.reserve(creatures.size());
    for (const Creature *creature : creatures)
        states << creature->state();
    return states;
}

} // namespace

CreatureSnapshots::CreatureSnapshots(const QList<Creature *> &creatures)
    : CreatureSnapshots(creatures, statesOf(creatures))
{
}

CreatureSnapshots::CreatureSnapshots(const QList<Creature *> &creatures,
                                     const QList<CreatureState> &states)
    : m_count(int(creatures.size()))
{
    if (m_count == 0)
        return;
    Bytes bytes;
    for (const CreatureState &state : states)
        pack(bytes, state);
    constexpr qsizetype Slot = sizeof(void *);
    m_block.reset(new Creature *[std::size_t(m_count + (bytes.size() + Slot - 1) / Slot)]);
    std::copy(creatures.cbegin(), creatures.cend(), m_block.get());
    std::memcpy(m_block.get() + m_count, bytes.constData(), std::size_t(bytes.size()));
}

QList<CreatureState> CreatureSnapshots::states() const
{
    QList<CreatureState> states;
    states.reserve(m_count);
    const auto *at = reinterpret_cast<const char *>(end());
    for (int i = 0; i < m_count; ++i)
        states << unpackState(at);
    return states;
}

void CreatureSnapshots::restore() const
{
    const auto *at = reinterpret_cast<const char *>(end());
    for (Creature *creature : *this)
        creature->restoreState(unpackState(at));
}
