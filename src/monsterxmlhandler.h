// Reads a monster from XML. The powers come out as those of a pasted stat block do.
#pragma once

#include <QStringList>

#include "creaturedata.h"
#include "xmlhandler.h"

class MonsterXmlHandler : public XmlHandler {
public:
    // The record's text becomes the bytes in any case; its other fields only when the XML can be
    // read. `dataFolder` is where the portrait is looked for.
    static void parse(const QByteArray &bytes, CreatureData &record, const QString &dataFolder);

private:
    // What follows from an entry of an attack, and what follows from that in turn.
    struct Sequel {
        enum Kind { InnerAttack, FailedSave, Aftereffect, Sustain };
        Kind kind = InnerAttack;
        QString label;
        QString action;
        QString text;
        QStringList paragraphs; // of an inner attack
        QList<Sequel> sequels;
    };
    // A Hit, a Miss or an Effect.
    struct Entry {
        QString label;
        QString text; // damage and description
        QString description;
        QList<Sequel> sequels;
        bool needsAttack = false; // a Hit or a Miss
        bool tellsAction = false;
    };
    // An attack that is under way. One that stands inside an entry of another is kept apart, and
    // its paragraphs follow that entry's.
    struct Attack {
        QString name;
        QString line; // range, targets, bonus, defence
        QList<Entry> entries;
        Entry entry; // the one under way
        QList<Sequel> openSequels; // of that entry, outermost first
    };

    // What is done with the value of one path.
    using Action = void (*)(MonsterXmlHandler &, const QString &);
    struct Row {
        QStringView path;
        Action take;
    };
    static const Row monsterRows[];
    static const Row attackRows[];
    static Action actionFor(QStringView path, QStringView key);

    explicit MonsterXmlHandler(const QString &dataFolder);
    void onEnd() override;
    bool value(const QString &path, const QString &text) override;

    void addRole(QString &role, const QString &text);
    void addSusceptibility(QString &list);
    void finishSense();
    void takeSkill(const QString &name);
    void takeDefence(const QString &name);
    void takeAbility(const QString &name);
    void takeItem(const QString &name);
    void takeSavingThrows(const QString &text);

    void takeAction(const QString &text);
    void takeUsage(const QString &text);
    void takeUsageDetails(const QString &text);
    void takeRecharge(const QString &text);
    void takeTrigger(const QString &text);
    void takeRequirement(const QString &text);
    void addToHead(int place, const QString &paragraph);
    void finishPower();

    bool isInnerAttack() const { return !m_outerAttacks.isEmpty(); }
    QStringView enterAttack(QStringView attackPath);
    QStringView enterSequel(QStringView path);
    void setSequelValue(QStringView key, const QString &text);
    void finishSequel();
    void addSequel(Sequel sequel);
    QString entryParagraph(const QString &label, const QString &text, bool withAction);
    void describeEntry(const QString &text);
    void finishEntry(bool needsAttack);
    void finishAttack();
    static QString sequelParagraph(const Sequel &sequel, int &failedSaves);
    static void addSequels(QStringList &paragraphs, QList<Sequel> sequels, int &failedSaves);

    CreatureData m_record;
    QString m_dataFolder;
    QString m_roleName;
    bool m_isLeader = false;
    QString m_keywords;
    QString m_susceptibility; // name and amount of the current resistance or weakness
    QString m_sizeName;
    QString m_originName;
    QString m_typeName;
    QString m_senseName;
    QString m_senseRange;
    int m_number = 0; // the last number read, for the name that follows it
    int m_itemQuantity = 0;

    Power m_power;
    bool m_isBasic = false;
    QString m_actionName; // told once, with the first paragraph that has room for it
    QString m_powerKeywords;
    QString m_usageText;
    int m_headSize = 0; // paragraphs ahead of the attacks
    Attack m_attack;
    QList<Attack> m_outerAttacks; // those around m_attack, outermost first
};
