#include "statblockreading.h"

#include "creaturetext.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Number {
    QLatin1StringView name;
    bool isRead;
};

QList<Number> numbersOf(const CreatureData &data)
{
    if (data.disabled)
        return {{"level"_L1, data.level != 0}, {"XP"_L1, data.xp != 0}};
    return {{"level"_L1, data.level != 0},
            {"HP"_L1, data.maxHP != 0},
            {"initiative"_L1, data.initBonus != NotStated},
            {"AC"_L1, data.armourClass != NotStated},
            {"Fortitude"_L1, data.fortitude != NotStated},
            {"Reflex"_L1, data.reflex != NotStated},
            {"Will"_L1, data.will != NotStated},
            {"speed"_L1, !data.speed.isEmpty()}};
}

QString counted(qsizetype count, const QString &noun)
{
    return (count == 0 ? u"no"_s : QString::number(count)) + u' ' + noun
        + (count == 1 ? u""_s : u"s"_s);
}

// Text that belongs to no power has no name.
qsizetype powerCount(const CreatureData &data)
{
    return std::count_if(data.powers.cbegin(), data.powers.cend(),
                         [](const Power &power) { return !power.name.isEmpty(); });
}

QString countsText(const CreatureData &data)
{
    QStringList missing;
    const QList<Number> numbers = numbersOf(data);
    for (const auto &[name, isRead] : numbers) {
        if (!isRead)
            missing << u"no "_s + name;
    }
    const qsizetype read = numbers.size() - missing.size();
    QString text = u"Read "_s + (read == 0 ? u"none"_s : QString::number(read)) + u" of "_s
        + QString::number(numbers.size()) + u" numbers"_s;
    if (read > 0 && !missing.isEmpty())
        text += u" ("_s + missing.join(u", "_s) + u')';
    return text + u", "_s + counted(powerCount(data), u"power"_s) + u'.';
}

struct Lines {
    QList<LineReading> readings;
    qsizetype skipped = 0;
};

QString linesText(const Lines &lines)
{
    const auto sentence = [](qsizetype count, const QString &end) -> QString {
        return count == 0 ? QString() : u' ' + counted(count, u"line"_s) + end;
    };
    const qsizetype count = lines.readings.count(LineReading::NotUnderstood);
    return sentence(count - lines.skipped, u" kept as text."_s)
        + sentence(lines.skipped, u" skipped."_s);
}

qsizetype behindBlanks(const QString &text, qsizetype from, qsizetype end)
{
    while (from < end && (text.at(from).isSpace() || text.at(from) < u' '))
        ++from;
    return from;
}

// Between two lines that were noted stand those that tell nothing by themselves, such as a heading
// that is part of the one before; behind the last one stands what wasn't read.
Lines linesOf(const QString &text, const QList<LineNote> &notes)
{
    Lines lines;
    auto note = notes.cbegin();
    LineNote before;
    for (qsizetype start = 0; start <= text.size();) {
        const qsizetype lineEnd = text.indexOf(u'\n', start);
        const qsizetype end = lineEnd < 0 ? text.size() : lineEnd;
        const qsizetype first = behindBlanks(text, start, end);
        start = end + 1;
        if (first == end) {
            lines.readings << LineReading::Blank;
            continue;
        }
        while (note != notes.cend() && note->last < first)
            ++note;
        if (note == notes.cend())
            before = {0, 0, LineReading::NotUnderstood, true};
        else if (note->first < end)
            before = *note;
        lines.readings << before.reading;
        lines.skipped += before.isSkipped ? 1 : 0;
    }
    return lines;
}

} // namespace

StatBlockReading readingOf(bool isMonster, const QString &text)
{
    CreatureData data;
    CreatureForm form = CreatureForm::StatBlock;
    QList<LineNote> notes;
    parseText(isMonster, text.toUtf8(), data, QString(), &form, &notes);
    switch (form) {
    case CreatureForm::CharacterXml:
        return {{}, u"Nothing read: a character's text can't be XML."_s};
    case CreatureForm::MonsterXml:
        return {{}, countsText(data) + u" The text is XML."_s};
    case CreatureForm::Key:
        return {{}, countsText(data) + u" The text is lines of \"key=value\"."_s};
    case CreatureForm::StatBlock:
        break;
    }
    const Lines lines = linesOf(data.statBlock, notes);
    if (notes.isEmpty())
        return {lines.readings, u"Nothing to read."_s};
    return {lines.readings, countsText(data) + linesText(lines)};
}

QString lineReadingName(LineReading reading)
{
    switch (reading) {
    case LineReading::Title:
        return u"Title"_s;
    case LineReading::Header:
        return u"Header"_s;
    case LineReading::Power:
        return u"Power"_s;
    case LineReading::PowerText:
        return u"Text of a power"_s;
    case LineReading::NotUnderstood:
        return u"Not understood"_s;
    case LineReading::Blank:
        break;
    }
    return QString();
}
