// Reads a character from the file of a character builder.
#pragma once

#include "creaturedata.h"
#include "creatureportrait.h"
#include "xmlhandler.h"

class StatBlockHandler : public XmlHandler {
public:
    // Takes what the file states into the record; the rest of it stays. False, and the record as it
    // was, when the XML can't be read. The portrait that the file names is copied below "Portraits"
    // of the data folder, unless that is forbidden; the record's text isn't touched.
    static bool parse(const QByteArray &bytes, CreatureData &record, const QString &dataFolder,
                      PortraitCopy copy = PortraitCopy::Allowed);

private:
    StatBlockHandler(const CreatureData &record, const QString &dataFolder, PortraitCopy copy);
    void onBegin() override;
    void onEnd() override;
    bool value(const QString &path, const QString &text) override;
    void takePortrait(const QString &url);
    void takeAlias(const QString &alias);
    void takeRule();
    void addRule(QString &list) const;

    QString m_dataFolder;
    PortraitCopy m_copy;
    // Name and type of the last RulesElement, each with the elementCount() at which it was read.
    QString m_lastName;
    int m_nameElement = 0;
    QString m_lastType;
    int m_typeElement = 0;
    QString m_lastValue; // of the last Stat, for each of its aliases
    bool m_hasActionPoints = false;
    bool m_hasSenses = false; // by an alias, which counts for more than the rules elements
    QString m_vision; // what those say
    QString m_paragonPath;
    QString m_epicDestiny;
    CreatureData m_record;
};

// Reads the import file at `path`, a relative one in "Characters", like StatBlockHandler::parse().
bool readImport(const QString &path, CreatureData &record, const QString &dataFolder);
