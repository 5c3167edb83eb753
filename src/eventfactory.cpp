#include "eventfactory.h"

#include <array>

#include "effectevents.h"
#include "objectstream.h"
#include "rosterevents.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

template <typename EventClass>
Event *readAs(ObjectStream *stream)
{
    return new EventClass(stream);
}

// The two events that have nothing to read and nothing to write.
template <typename EventClass>
Event *readBare(ObjectStream *stream)
{
    return new EventClass(stream, true);
}

struct Reader {
    EventType::Code type;
    Event *(*read)(ObjectStream *stream);
};

// In the order of the type numbers, from 1.
constexpr std::array readers {
    Reader {EventType::StartEncounter, readAs<StartEncounterEvent>},
    Reader {EventType::NextTurn, readBare<NextTurnEvent>},
    Reader {EventType::StopEncounter, readBare<StopEncounterEvent>},
    Reader {EventType::Damage, readAs<DamageEvent>},
    Reader {EventType::OnGoingDamage, readAs<OnGoingDamageEvent>},
    Reader {EventType::Heal, readAs<HealEvent>},
    Reader {EventType::Regeneration, readAs<RegenerationEvent>},
    Reader {EventType::SetTempHP, readAs<SetTempHPEvent>},
    Reader {EventType::Effect, readAs<EffectEvent>},
    Reader {EventType::RemoveOnGoing, readAs<RemoveOnGoingEvent>},
    Reader {EventType::RemoveAtEndOfTurn, readAs<RemoveAtEndOfTurnEvent>},
    Reader {EventType::RemoveAtStartOfTurn, readAs<RemoveAtStartOfTurnEvent>},
    Reader {EventType::RemoveOnSave, readAs<RemoveOnSaveEvent>},
    Reader {EventType::RemoveAtEndOfEncounter, readAs<RemoveAtEndOfEncounterEvent>},
    Reader {EventType::Delay, readAs<DelayEvent>},
    Reader {EventType::JumpIn, readAs<JumpInEvent>},
    Reader {EventType::Ready, readAs<ReadyEvent>},
    Reader {EventType::EndReady, readAs<EndReadyEvent>},
    Reader {EventType::Died, readAs<DiedEvent>},
    Reader {EventType::FailedDeathSavingThrow, readAs<FailedDeathSavingThrowEvent>},
    Reader {EventType::UseActionPoint, readAs<UseActionPointEvent>},
    Reader {EventType::TotalDefense, readAs<TotalDefenseEvent>},
    Reader {EventType::SecondWind, readAs<SecondWindEvent>},
    Reader {EventType::Stabilize, readAs<StabilizeEvent>},
    Reader {EventType::ShortRest, readAs<ShortRestEvent>},
    Reader {EventType::ExtendedRest, readAs<ExtendedRestEvent>},
    Reader {EventType::SetEncounter, readAs<SetEncounterEvent>},
    Reader {EventType::AddMonster, readAs<AddMonsterEvent>},
    Reader {EventType::AddMonsters, readAs<AddMonstersEvent>},
    Reader {EventType::SetParty, readAs<SetPartyEvent>},
    Reader {EventType::AddCharacters, readAs<AddCharactersEvent>},
    Reader {EventType::ShowHide, readAs<ShowHideEvent>},
    Reader {EventType::AdministerFirstAid, readAs<AdministerFirstAidEvent>},
    Reader {EventType::GainHealingSurge, readAs<GainHealingSurgeEvent>},
    Reader {EventType::SetVitality, readAs<SetVitalityEvent>},
    Reader {EventType::RemoveCreatures, readAs<RemoveCreaturesEvent>},
    Reader {EventType::RemoveCurrent, readAs<RemoveCurrentEvent>},
    Reader {EventType::AdjustInitiative, readAs<AdjustInitiativeEvent>},
    Reader {EventType::RenameCreature, readAs<RenameCreatureEvent>},
    Reader {EventType::PowerUsageChanged, readAs<PowerUsageChangedEvent>},
    Reader {EventType::SetAlias, readAs<SetAliasEvent>},
    Reader {EventType::UseSecondWind, readAs<UseSecondWindEvent>},
};

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < readers.size(); ++i) {
        if (readers[i].type != int(i) + 1)
            return false;
    }
    return true;
}
static_assert(isInOrder() && readers.size() + 1 == EventType::End);

// Puts the position in front of a type field that names no event, or at the end of the data. The
// next event is written there: behind such a field nobody would read it.
void seekType(ObjectStream *stream, int offset)
{
    stream->seek(offset);
    StreamField field = stream->peekField();
    for (; field.tag != 0 && field.tag != ID_EVENT_TYPE; field = stream->peekField())
        offset += stream->readField().consumed;
    stream->seek(offset);
}

} // namespace

Event *readEvent(ObjectStream *stream, bool *ok)
{
    stream->markRecord();
    const int start = stream->position();
    const int type = stream->readInt(ID_EVENT_TYPE);
    if (type >= 1 && type <= int(readers.size()))
        return readers[std::size_t(type) - 1].read(stream);
    if (stream->position() == start)
        return nullptr;
    // What follows is lost.
    stream->markDamaged();
    if (type != 0)
        *ok = false;
    else
        seekType(stream, start);
    return nullptr;
}
