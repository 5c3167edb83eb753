// Events of who is in the encounter and how they are listed.
#pragma once

#include <QPointer>

#include "encountersnapshots.h"
#include "event.h"

// Creatures join the encounter. The record keeps their vitality, so that a replay doesn't depend on
// what their files say by then.
class AddCreaturesEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    void redo() override;
    void undo() override;

protected:
    // `oldItems` are the creatures' initiative from before they were rolled.
    AddCreaturesEvent(EventType::Code type, const QString &name, const CreatureList &list,
                      bool hidden, const QList<CreatureItem> &oldItems, const EventRecord &record);
    // " (Hidden)", or empty.
    QString suffix() const;
    // As the record has them, or as the players may know them.
    QString names() const;

    QString m_name;
    bool m_hidden = false;
    CreatureList m_added;
    CreatureList m_hiddenBefore; // of those added
    QList<CreatureItem> m_newItems;
    QList<CreatureItem> m_oldItems;
    CreatureList m_newOrder;
    QList<CreatureVitality> m_newVitality;
    CreatureList m_oldOrder;
    VitalityBefore m_oldVitality;
};

class AddMonsterEvent : public AddCreaturesEvent {
    Q_OBJECT

public:
    AddMonsterEvent(const CreatureList &list, bool hidden, const QList<CreatureItem> &oldItems,
                    const EventRecord &record);
    explicit AddMonsterEvent(ObjectStream *stream) : AddMonsterEvent({}, false, {}, reading(stream))
    {
    }

    QString text() const override;
};

// The monsters of a prepared encounter join those that are there.
class AddMonstersEvent : public AddCreaturesEvent {
    Q_OBJECT

public:
    AddMonstersEvent(const QString &name, const CreatureList &list, bool hidden,
                     const QList<CreatureItem> &oldItems, const EventRecord &record);
    explicit AddMonstersEvent(ObjectStream *stream)
        : AddMonstersEvent({}, {}, false, {}, reading(stream))
    {
    }

    QString text() const override;
};

// Replaces all characters.
class SetPartyEvent : public AddCreaturesEvent {
    Q_OBJECT

public:
    SetPartyEvent(const CreatureList &list, bool hidden, const QList<CreatureItem> &oldItems,
                  const EventRecord &record);
    explicit SetPartyEvent(ObjectStream *stream) : SetPartyEvent({}, false, {}, reading(stream)) { }

    QString text() const override;
    bool isVisibleToPlayers() const override { return true; }
};

class AddCharactersEvent : public AddCreaturesEvent {
    Q_OBJECT

public:
    AddCharactersEvent(const CreatureList &list, bool hidden, const QList<CreatureItem> &oldItems,
                       const EventRecord &record);
    explicit AddCharactersEvent(ObjectStream *stream)
        : AddCharactersEvent({}, false, {}, reading(stream))
    {
    }

    QString text() const override;
    bool isVisibleToPlayers() const override { return true; }
};

// Replaces all monsters by those of a prepared encounter, with its name and description.
class SetEncounterEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    SetEncounterEvent(const EncounterEntry &entry, const CreatureList &list, bool hidden,
                      const EventRecord &record);
    explicit SetEncounterEvent(ObjectStream *stream)
        : SetEncounterEvent({}, {}, false, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    bool m_hidden = false;
    CreatureList m_added;
    CreatureList m_hiddenBefore; // of those added
    EncounterEntry m_newEntry;
    CreatureList m_newOrder;
    EncounterEntry m_oldEntry;
    CreatureList m_oldOrder;
    QList<CreatureVitality> m_newVitality;
    VitalityBefore m_oldVitality;
};

class ShowHideEvent : public Event {
    Q_OBJECT

public:
    ShowHideEvent(Creature *creature, bool hide, const EventRecord &record);
    explicit ShowHideEvent(ObjectStream *stream)
        : ShowHideEvent(nullptr, false, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    Creature *m_creature = nullptr;
    bool m_hide = false;
};

// The players see it when all are characters.
class RemoveCreaturesEvent : public Event {
    Q_OBJECT

public:
    RemoveCreaturesEvent(Creature *creature, const EventRecord &record);
    RemoveCreaturesEvent(const QList<Creature *> &creatures, const EventRecord &record);
    explicit RemoveCreaturesEvent(ObjectStream *stream)
        : RemoveCreaturesEvent(QList<Creature *>(), reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

protected:
    RemoveCreaturesEvent(EventType::Code type, const QList<Creature *> &creatures,
                         const EventRecord &record);

    QList<Creature *> m_creatures;
    EncounterSnapshot m_before;
};

class RemoveCurrentEvent : public RemoveCreaturesEvent {
    Q_OBJECT

public:
    RemoveCurrentEvent(Creature *creature, const EventRecord &record);
    explicit RemoveCurrentEvent(ObjectStream *stream) : RemoveCurrentEvent(nullptr, reading(stream))
    {
    }

    QString text() const override;
};

// The players see it when all are characters.
class AdjustInitiativeEvent : public Event {
    Q_OBJECT

public:
    // `delta` in places of the order, negative for up.
    AdjustInitiativeEvent(const QList<Creature *> &creatures, int delta, const EventRecord &record);
    explicit AdjustInitiativeEvent(ObjectStream *stream)
        : AdjustInitiativeEvent({}, 0, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    QList<Creature *> m_creatures;
    int m_delta = 0;
    EncounterSnapshot m_before;
};

// Follows a name that was changed outside the history, or joins a creature whose file went missing
// to the one that has the new name.
class RenameCreatureEvent : public Event {
    Q_OBJECT

public:
    // Both in the form of a display name.
    RenameCreatureEvent(const QString &oldName, const QString &newName, const EventRecord &record);
    explicit RenameCreatureEvent(ObjectStream *stream)
        : RenameCreatureEvent({}, {}, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    static Creature *findFighter(const QString &name);
    bool isKnown() const;
    static void merge(Creature *missing, Creature *found);

    QString m_oldName;
    QString m_newName;
    QPointer<Creature> m_renamed; // by the first redo(); null if it found nobody
    QString m_previousName;
};

class SetAliasEvent : public Event {
    Q_OBJECT

public:
    // An empty alias takes it away.
    SetAliasEvent(Creature *creature, bool show, const QString &alias, const EventRecord &record);
    explicit SetAliasEvent(ObjectStream *stream)
        : SetAliasEvent(nullptr, false, {}, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    Creature *m_creature = nullptr;
    bool m_newMode = false;
    QString m_newAlias;
    int m_oldMode = 0;
    QString m_oldAlias;
};
