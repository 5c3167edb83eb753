#include "creaturefile.h"

#include <algorithm>

#include "creatureportrait.h"
#include "creaturetext.h"
#include "libraryfolder.h"
#include "paths.h"
#include "safefile.h"
#include "switchboard.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype maxNameLength = 70;

QString invalidName()
{
    return QStringLiteral("Invalid Stat Block");
}

// Such files hold patterns for creatures, not creatures.
bool isTemplateFile(const QString &fileName)
{
    return fileName.startsWith("template"_L1, Qt::CaseInsensitive);
}

QString newFileName(const Creature &creature)
{
    const bool isMonster = creature.isMonster();
    QString stem = fileStem(creature.keyName(),
                            isMonster ? QStringLiteral("monster") : QStringLiteral("character"));
    // Or the next start would pass the file over.
    if (isTemplateFile(stem))
        stem.prepend(QStringLiteral("the-"));
    const bool isXml = isMonster && isXmlText(creature.statBlock().toUtf8());
    return unusedFileName(creaturePath(QString(), isMonster), stem,
                          isXml ? QStringLiteral("monster") : QStringLiteral("txt"));
}

} // namespace

bool isForeignCharacterFile(const QString &fileName, const QByteArray &bytes)
{
    if (fileName.endsWith(".dnd4e"_L1, Qt::CaseInsensitive))
        return true;
    static const QByteArray passedOver = " \t\n\v\f\r\xEF\xBB\xBF"_ba;
    const auto first =
        std::find_if(bytes.begin(), bytes.end(), [](char c) { return !passedOver.contains(c); });
    return (first != bytes.end() && *first == '<') || isXmlText(bytes);
}

bool isUsableName(const QString &name)
{
    if (name.isEmpty() || name.size() > maxNameLength)
        return false;
    const auto characters = name.toStdU32String();
    return std::all_of(characters.begin(), characters.end(),
                       [](char32_t c) { return QChar::isPrint(c); });
}

bool validate(CreatureData &data, bool isMonster, const QString &fileName)
{
    if (isUsableName(isMonster ? data.group : data.name) && (data.level != 0 || data.xp != 0))
        return true;
    // The record counts as a monster even in a character's file: an unread text is nobody's hero.
    CreatureData invalid;
    invalid.statBlock = data.statBlock;
    (isMonster ? invalid.group : invalid.name) = fileName.isEmpty() ? invalidName() : fileName;
    data = invalid;
    return false;
}

void makeUnique(CreatureData &data, bool isMonster, const UniqueName &uniqueName,
                const Creature *self)
{
    QString &name = isMonster ? data.group : data.name;
    if (uniqueName)
        name = uniqueName(name, self);
}

// --- the creature's own file ---

bool removeCreatureFile(const Creature &creature, bool isMonster)
{
    if (creature.fileName().isEmpty())
        return true;
    const QString path = creaturePath(creature.fileName(), isMonster);
    return !QFile::exists(path) || (!dataReadOnly && QFile::remove(path));
}

bool Creature::load(const QString &fileName, bool isMonster, const QString &dataFolder,
                    const UniqueName &uniqueName)
{
    if (fileName.startsWith(u'.') || isTemplateFile(fileName))
        return false;
    QByteArray bytes;
    const FileText text = readTextFile(creaturePath(fileName, isMonster, dataFolder), bytes);
    if (text == FileText::None)
        return false;
    if (!isMonster && isForeignCharacterFile(fileName, bytes))
        return false;
    CreatureData data;
    // Of a giant nothing is kept but its name, so that it can be seen and deleted.
    if (text == FileText::Read)
        parseText(isMonster, bytes, data, dataFolder);
    validate(data, isMonster, fileName);
    makeUnique(data, isMonster, uniqueName);
    assign(data);
    m_isCharacterFile = !isMonster;
    m_savedStatBlock = m_data.statBlock;
    m_fileName = fileName;
    readyForPlay();
    return true;
}

void Creature::readyForPlay()
{
    m_nameBefore = m_data.name;
    extendedRest(false);
    syncShadows();
}

bool Creature::save()
{
    // A file that was too large to be read isn't written over either.
    const bool isUnread = !m_fileName.isEmpty() && m_savedStatBlock.isEmpty();
    if (m_data.statBlock.isEmpty() || isUnread)
        return false;
    if (dataReadOnly)
        return false;
    // The log must know of a new name first, or it would name a creature that no file has any more.
    Q_EMIT switchBoard()->doTellHistory();
    const QString fileName = m_fileName.isEmpty() ? newFileName(*this) : m_fileName;
    if (!saveWhole(creaturePath(fileName, hasMonsterFile()), toCRLF(m_data.statBlock.toUtf8())))
        return false;
    m_fileName = fileName;
    m_savedStatBlock = m_data.statBlock;
    m_ownText.clear();
    m_nameBefore = m_data.name;
    syncShadows();
    return true;
}

void Creature::revert()
{
    if (isNew()) {
        setNew(false);
        setModified(false);
        return;
    }
    if (!isModified())
        return;
    takeText(m_savedStatBlock, {});
    statBlockChanged();
}

void Creature::takeText(const QString &text, const UniqueName &uniqueName)
{
    const bool isMonster = hasMonsterFile();
    CreatureData data;
    parseText(isMonster, text.toUtf8(), data, QString());
    data.statBlock = text;
    validate(data, isMonster, m_fileName);
    makeUnique(data, isMonster, uniqueName, this);
    assign(data);
}

QString Creature::nameInText() const
{
    if (isMonster())
        return {};
    if (m_readText != ownText()) {
        CreatureData data;
        const bool isRead = parseText(false, ownText().toUtf8(), data, QString());
        m_readText = ownText();
        m_readName = isRead && isUsableName(data.name) ? data.name : QString();
    }
    return m_readName;
}

void Creature::takeNumbersOfText()
{
    CreatureData data;
    if (isInvalid() || !parseText(hasMonsterFile(), ownText().toUtf8(), data, QString()))
        return;
    CreatureVitality vitality = liveVitality();
    vitality.initBonus = data.initBonus;
    vitality.maxHP = data.maxHP;
    vitality.maxHS = data.maxHS;
    vitality.hsValue = data.hsValue;
    vitality.initAP = data.initAP;
    if (vitality == liveVitality())
        return;
    setVitalityNumbers(vitality);
    m_data.statBlock = ownText();
    m_ownText.clear();
    statBlockChanged();
}

void Creature::resetForEncounter(const UniqueName &uniqueName)
{
    clearRestAdditions();
    // Steps through the history leave another name, other numbers and used powers in the record,
    // and some of it in the text.
    if (!isInvalid()) {
        takeText(ownText(), uniqueName);
        statBlockChanged();
    }
    m_nameBefore = m_data.name;
    m_hidden = false;
    m_alias.clear();
    m_aliasMode = 0;
    m_initRoll = m_initRandom = 0;
    extendedRest(true);
    syncShadows();
}

QString Creature::generateText() const
{
    return textOf(m_data);
}

bool Creature::isInvalid() const
{
    const QString &key = hasMonsterFile() ? m_data.group : m_data.name;
    return key.contains(invalidName()) || key == m_fileName;
}

// --- its picture ---

void Creature::setPortrait(const QString &path)
{
    m_data.portraitFile = path;
    resolvePortrait(m_data.portraitFile, QString());
    m_data.statBlock = m_data.isMonster ? withPortraitInText(m_data.statBlock, m_data.portraitFile)
                                        : generateText();
    m_ownText.clear();
    statBlockChanged();
    notifyUpdated();
}

const QPixmap &Creature::portrait() const
{
    if (!m_data.portrait.isNull())
        return m_data.portrait;
    if (m_decodedPortraitFile != m_data.portraitFile) {
        m_decodedPortraitFile = m_data.portraitFile;
        m_shownPortrait = readPortrait(m_data.portraitFile);
    }
    return m_shownPortrait;
}
