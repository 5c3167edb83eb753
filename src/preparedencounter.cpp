#include "preparedencounter.h"

#include <QFile>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <array>

#include "creature.h"
#include "creaturefile.h"
#include "global.h"
#include "keyvalue.h"
#include "libraryfolder.h"
#include "monsters.h"
#include "paths.h"
#include "safefile.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// XP for each player that an encounter of level 1, 2 and so on is worth.
constexpr std::array<int, 40> xpOfLevel {100,   125,   150,   175,   200,   250,   300,   350,
                                         400,   500,   600,   700,   800,   1000,  1200,  1400,
                                         1600,  2000,  2400,  2800,  3200,  4150,  5100,  6050,
                                         7000,  9000,  11000, 13000, 15000, 19000, 23000, 27000,
                                         31000, 39000, 47000, 55000, 63000, 79000, 95000, 111000};

int levelOf(qint64 xp, int partySize)
{
    const auto above = std::find_if(xpOfLevel.begin(), xpOfLevel.end(),
                                    [=](int share) { return qint64(share) * partySize > xp; });
    return std::max(1, int(above - xpOfLevel.begin()));
}

QByteArray line(const QByteArray &key, const QByteArray &value)
{
    return key + '=' + value + "\r\n";
}

bool isSameGroup(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// What the file can hold as an ID.
bool isUsableId(const QString &id)
{
    return isUsableName(id) && !id.contains(u',') && !id.contains(u'=');
}

// A to Z, a to z, and then numbers.
QString letterOf(qint64 counter)
{
    if (counter >= 1 && counter <= 26)
        return QChar(char16_t(u'A' + counter - 1));
    if (counter >= 27 && counter <= 52)
        return QChar(char16_t(u'a' + counter - 27));
    return QString::number(counter - 53);
}

// The counter that gives the letter; 0 for any other text.
int counterOf(const QString &letter)
{
    const char16_t c = letter.size() == 1 ? letter.front().unicode() : u'\0';
    if (c >= u'A' && c <= u'Z')
        return c - u'A' + 1;
    if (c >= u'a' && c <= u'z')
        return c - u'a' + 27;
    return 0;
}

QString withoutTrailingDigits(const QString &text)
{
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1) >= u'0' && text.at(end - 1) <= u'9')
        --end;
    return text.left(end);
}

// The letters that stand in front of the numbers in the IDs of a group's first monster: what the
// user would write by hand, if no other group has taken it.
QString chooseBase(const QString &group, const QString &prefix, const QSet<QString> &taken)
{
    const QStringList words = group.split(u' ', Qt::SkipEmptyParts);
    const QString named = words.size() > 1 ? words.at(1) : group.trimmed();
    const QString first = prefix.isEmpty() ? named.left(1).toUpper() : prefix;
    if (isUsableId(first) && !taken.contains(first))
        return first;
    QString initials;
    for (const QString &word : words)
        initials += word.front();
    if (isUsableId(initials) && !taken.contains(initials))
        return initials;
    int counter = std::max(1, counterOf(first.left(1)));
    while (taken.contains(letterOf(counter)))
        ++counter;
    return letterOf(counter);
}

// How the IDs of a group go on: the next is made of these.
struct IdForm {
    QString base;
    qint64 counter = 1;
};

IdForm formAfter(const QString &last, int count, int &scheme)
{
    const QString stem = withoutTrailingDigits(last);
    if (stem.size() < last.size()) {
        scheme = stem.isEmpty() ? PreparedEncounter::Numbers : PreparedEncounter::LetterAndNumber;
        return {stem, last.mid(stem.size()).toInt() + qint64(1)};
    }
    if (count == 1 && scheme == PreparedEncounter::LetterAndNumber)
        return {last, 2};
    scheme = PreparedEncounter::Letters;
    return {QString(), counterOf(last) + qint64(1)};
}

QString formId(const IdForm &form, int scheme, bool hasPrefix)
{
    switch (scheme) {
    case PreparedEncounter::Letters:
        return letterOf(form.counter);
    case PreparedEncounter::LetterAndNumber:
        return hasPrefix && form.counter == 1 ? form.base
                                              : form.base + QString::number(form.counter);
    default:
        return QString::number(form.counter);
    }
}

} // namespace

// --- reading ---

// What the lines above tell of a line.
struct PreparedEncounter::Reading {
    bool groupsAllowed = false;
    QHash<QString, qsizetype> currentGroup; // index of the first monster of each ID
};

bool PreparedEncounter::read(const QString &fileName, const QString &dataFolder)
{
    QByteArray bytes;
    if (readTextFile(encounterPath(fileName, dataFolder), bytes) != FileText::Read || !parse(bytes))
        return false;
    m_fileName = fileName;
    return true;
}

bool PreparedEncounter::parse(const QByteArray &bytes)
{
    m_name.clear();
    m_adventure.clear();
    m_description.clear();
    m_monsters.clear();
    Reading reading;
    for (const QByteArray &textLine : toLF(bytes).split('\n')) {
        if (!readLine(textLine, reading))
            break;
    }
    rebuildGroupStarts();
    m_savedImage = image(false);
    return !m_name.isEmpty();
}

// False where the reading ends.
bool PreparedEncounter::readLine(const QByteArray &textLine, Reading &reading)
{
    KeyValue parts;
    if (!parseKeyValue(textLine, Escapes::Resolve, parts))
        return false;
    // A backslash at a value's end leaves a zero byte behind when it is unescaped.
    parts.value.remove(QChar(u'\0'));
    if (parts.key == "name"_L1) {
        m_name = parts.value;
        return !m_name.isEmpty();
    }
    if (parts.key == "adventure"_L1) {
        m_adventure = parts.value;
    } else if (parts.key == "description"_L1) {
        m_description = parts.value;
        reading.groupsAllowed = true;
    } else if (parts.key == "level"_L1 || parts.key == "xp"_L1) {
        // Written for other programs: the templates and the party may have changed since.
    } else if (!parts.key.isEmpty()) {
        readMonsterLine(parts.key, parts.value, reading);
    }
    return true;
}

void PreparedEncounter::readMonsterLine(const QString &key, const QString &value, Reading &reading)
{
    const bool isAlias = key.startsWith("alias#"_L1);
    if (isAlias || key.startsWith("hidden#"_L1)) {
        const qsizetype index = reading.currentGroup.value(key.mid(key.indexOf(u'#') + 1), -1);
        if (index < 0)
            return;
        if (isAlias)
            m_monsters[index].alias = value;
        else
            m_monsters[index].hidden = value == "true"_L1;
        return;
    }
    if (!reading.groupsAllowed)
        return;
    reading.currentGroup.clear();
    for (const QString &part : value.split(u',', Qt::SkipEmptyParts)) {
        const QString id = part.trimmed();
        if (!reading.currentGroup.contains(id))
            reading.currentGroup.insert(id, m_monsters.size());
        m_monsters.append({key, id, QString(), false});
    }
}

// --- writing ---

QByteArray PreparedEncounter::image(bool withLevel) const
{
    QByteArray bytes = line("name", escapeText(m_name));
    if (!m_adventure.isEmpty())
        bytes += line("adventure", escapeText(m_adventure));
    bytes += line("description", escapeText(m_description));
    if (withLevel)
        bytes += line("level", QByteArray::number(level())) + line("xp", QByteArray::number(xp()));
    for (qsizetype i = 0; i < m_groupStarts.size(); ++i) {
        const bool isLast = i + 1 == m_groupStarts.size();
        bytes +=
            groupImage(m_groupStarts.at(i), isLast ? m_monsters.size() : m_groupStarts.at(i + 1));
    }
    return bytes;
}

QByteArray PreparedEncounter::groupImage(qsizetype start, qsizetype end) const
{
    QByteArrayList ids;
    QByteArray marks;
    for (qsizetype i = start; i < end; ++i) {
        const EncounterMonster &monster = m_monsters.at(i);
        const QByteArray id = escapeText(monster.id);
        ids.append(id);
        if (!monster.alias.isEmpty())
            marks += line("alias#" + id, escapeText(monster.alias));
        if (monster.hidden)
            marks += line("hidden#" + id, "true");
    }
    return line(escapeText(m_monsters.at(start).group), ids.join(',')) + marks;
}

bool PreparedEncounter::write()
{
    const QString fileName = !m_fileName.isEmpty()
        ? m_fileName
        : unusedFileName(encounterPath(QString()), fileStem(m_name, QStringLiteral("encounter")),
                         QStringLiteral("txt"));
    // A file without a name would be passed over by the next load.
    if (dataReadOnly || m_name.trimmed().isEmpty()
        || !saveWhole(encounterPath(fileName), image(true)))
        return false;
    m_fileName = fileName;
    m_savedImage = image(false);
    return true;
}

bool PreparedEncounter::remove()
{
    if (m_fileName.isEmpty())
        return true;
    const QString path = encounterPath(m_fileName);
    return !QFile::exists(path) || (!dataReadOnly && QFile::remove(path));
}

// --- level and IDs ---

int PreparedEncounter::level() const
{
    recomputeIfStale();
    return m_level;
}

int PreparedEncounter::xp() const
{
    recomputeIfStale();
    return m_xp;
}

void PreparedEncounter::recomputeIfStale() const
{
    if (m_levelStale || m_partySize != partySize())
        recompute();
}

void PreparedEncounter::recompute() const
{
    m_partySize = partySize();
    qint64 sum = 0;
    for (const EncounterMonster &monster : m_monsters) {
        if (const Creature *original =
                theMonsters ? theMonsters->findGroup(monster.group) : nullptr)
            sum += original->xp();
    }
    constexpr qint64 limit = std::numeric_limits<int>::max();
    m_xp = int(std::clamp(sum, -limit, limit));
    m_level = levelOf(m_xp, m_partySize);
    m_levelStale = false;
}

const EncounterMonster *PreparedEncounter::find(const QString &group, const QString &id) const
{
    for (const EncounterMonster &monster : m_monsters) {
        if (monster.id == id && isSameGroup(monster.group, group))
            return &monster;
    }
    return nullptr;
}

QString PreparedEncounter::defaultId(const QString &group, const QString &prefix, int &scheme,
                                     bool perEncounter) const
{
    const bool hasPrefix = isUsableId(prefix);
    QString last;
    int count = 0;
    QSet<QString> takenIds;
    QSet<QString> takenBases;
    for (const EncounterMonster &monster : m_monsters) {
        const bool inGroup = isSameGroup(monster.group, group);
        if (inGroup) {
            last = monster.id;
            ++count;
        }
        if (inGroup || perEncounter)
            takenIds.insert(monster.id);
        takenBases.insert(withoutTrailingDigits(monster.id));
    }
    IdForm form;
    if (last.isEmpty()) {
        if (hasPrefix)
            scheme = LetterAndNumber;
        form.base = chooseBase(group, hasPrefix ? prefix : QString(), takenBases);
    } else {
        form = formAfter(last, count, scheme);
    }
    QString id = formId(form, scheme, hasPrefix);
    while (takenIds.contains(id)) {
        ++form.counter;
        id = formId(form, scheme, hasPrefix);
    }
    return id;
}

// --- into play ---

EncounterEntry PreparedEncounter::entry() const
{
    return {m_fileName, m_name, m_description, level(), xp(), m_adventure};
}

CreatureList PreparedEncounter::creatures() const
{
    QList<Creature *> creatures;
    QSet<Creature *> known;
    for (const EncounterMonster &monster : m_monsters) {
        QString group = monster.group;
        Creature *clone =
            theMonsters ? theMonsters->ensureTemplate(group, monster.id, true) : nullptr;
        if (clone && !known.contains(clone)) {
            known.insert(clone);
            creatures.append(clone);
        }
    }
    return CreatureList(creatures);
}

// --- changes ---

void PreparedEncounter::setMonsters(const QList<EncounterMonster> &monsters)
{
    m_monsters = monsters;
    rebuildGroupStarts();
}

int PreparedEncounter::insertMonster(const EncounterMonster &monster)
{
    const auto last = std::find_if(m_monsters.crbegin(), m_monsters.crend(),
                                   [&monster](const EncounterMonster &other) {
                                       return isSameGroup(other.group, monster.group);
                                   });
    EncounterMonster added = monster;
    auto index = m_monsters.size();
    if (last != m_monsters.crend()) {
        added.group = last->group;
        index = m_monsters.crend() - last;
    }
    m_monsters.insert(index, added);
    rebuildGroupStarts();
    refreshChanged();
    return int(index);
}

void PreparedEncounter::removeMonster(int index)
{
    if (!hasMonster(index))
        return;
    m_monsters.removeAt(index);
    rebuildGroupStarts();
    refreshChanged();
}

bool PreparedEncounter::setMonsterId(int index, const QString &id, bool perEncounter)
{
    const QString trimmed = id.trimmed();
    if (!hasMonster(index) || !isUsableId(trimmed) || isTaken(index, trimmed, perEncounter))
        return false;
    m_monsters[index].id = trimmed;
    refreshChanged();
    return true;
}

bool PreparedEncounter::isTaken(int index, const QString &id, bool perEncounter) const
{
    const QString &group = m_monsters.at(index).group;
    for (int i = 0; i < m_monsters.size(); ++i) {
        const EncounterMonster &monster = m_monsters.at(i);
        if (i != index && (perEncounter || isSameGroup(monster.group, group))
            && monster.id.compare(id, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

void PreparedEncounter::setMonsterAlias(int index, const QString &alias)
{
    if (!hasMonster(index))
        return;
    m_monsters[index].alias = alias.trimmed();
    refreshChanged();
}

void PreparedEncounter::setMonsterHidden(int index, bool hidden)
{
    if (!hasMonster(index))
        return;
    m_monsters[index].hidden = hidden;
    refreshChanged();
}

int PreparedEncounter::groupOf(int monsterIndex) const
{
    if (!hasMonster(monsterIndex))
        return -1;
    const auto behind =
        std::upper_bound(m_groupStarts.cbegin(), m_groupStarts.cend(), monsterIndex);
    return int(behind - m_groupStarts.cbegin()) - 1;
}

bool PreparedEncounter::renameGroups(const QList<Renamed> &renamed)
{
    bool found = false;
    for (EncounterMonster &monster : m_monsters) {
        const auto own = std::find_if(renamed.begin(), renamed.end(), [&](const Renamed &each) {
            return isSameGroup(monster.group, each.oldName);
        });
        if (own != renamed.end()) {
            monster.group = own->newName;
            found = true;
        }
    }
    if (found)
        rebuildGroupStarts();
    return found;
}

void PreparedEncounter::setName(const QString &name)
{
    m_name = name;
    m_flags.noteNameChange();
}

void PreparedEncounter::rebuildGroupStarts()
{
    m_groupStarts.clear();
    for (int i = 0; i < m_monsters.size(); ++i) {
        if (i == 0 || m_monsters.at(i).group != m_monsters.at(i - 1).group)
            m_groupStarts.append(i);
    }
    m_levelStale = true;
}

void PreparedEncounter::refreshChanged()
{
    if (!isNew())
        setModified(image(false) != m_savedImage);
}
