#include "creaturetext.h"

#include <QRegularExpression>

#include "creaturekeyform.h"
#include "monsterxmlhandler.h"
#include "statblockparser.h"
#include "text.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// --- the starter stat block of a monster ---

// A stat block prints a plus sign in front of 0, and a dash for what isn't stated.
QString statBlockNumber(int value)
{
    if (value == NotStated)
        return QStringLiteral("-");
    return (value >= 0 ? QStringLiteral("+") : QString()) + QString::number(value);
}

QString defencesLine(const CreatureData &data)
{
    const auto part = [](const char *form, int value) {
        return value == NotStated ? QString() : QString::fromLatin1(form).arg(value);
    };
    const QString line = part("AC %1; ", data.armourClass) + part("Fortitude %1, ", data.fortitude)
        + part("Reflex %1, ", data.reflex) + part("Will %1", data.will);
    return line.isEmpty() ? QString() : QString(line + u'\n');
}

QString sensesLine(const CreatureData &data)
{
    QString line = QStringLiteral("Initiative %1 Senses Perception %2")
                       .arg(statBlockNumber(data.initBonus), statBlockNumber(data.perception));
    if (data.insight != NotStated)
        line += QStringLiteral("; Insight ") + statBlockNumber(data.insight);
    if (!data.senses.isEmpty())
        line += QStringLiteral("; ") + data.senses;
    return line + u'\n';
}

QString orElse(const QString &text, QLatin1StringView otherwise)
{
    return text.isEmpty() ? QString(otherwise) : text;
}

QString monsterText(const CreatureData &data)
{
    QString text = data.group + u'\n';
    if (!data.portraitFile.isEmpty())
        text += QStringLiteral("Portrait ") + data.portraitFile + u'\n';
    if (!data.importFile.isEmpty())
        text += QStringLiteral("Import ") + data.importFile + QStringLiteral("\nLinked ")
            + (data.linked ? "yes"_L1 : "no"_L1) + u'\n';
    text += orElse(data.type, "Medium monster"_L1);
    if (!data.race.isEmpty())
        text += QStringLiteral(", ") + data.race;
    text += QStringLiteral("\nLevel %1 ").arg(data.level) + orElse(data.role, "Soldier"_L1)
        + QStringLiteral(" XP %1\n").arg(data.xp);
    text += sensesLine(data);
    text += QStringLiteral("HP %1").arg(data.maxHP);
    if (data.maxHS != 0 && data.hsValue != 0)
        text += QStringLiteral("; HS %1 x %2").arg(data.maxHS).arg(data.hsValue);
    text += u'\n' + defencesLine(data);
    text += QStringLiteral("Speed ") + orElse(data.speed, "0"_L1) + u'\n';
    text += QStringLiteral("Action Points %1\n").arg(data.initAP);
    return text;
}

// --- the portrait in a monster's text ---

QString withPortraitInXml(const QString &text, const QString &portrait)
{
    static const QString startTag = QStringLiteral("<PortraitFile>");
    static const QString endTag = QStringLiteral("</PortraitFile>");
    const QString element = startTag + portrait.toHtmlEscaped() + endTag;
    const qsizetype start = text.indexOf(startTag);
    if (start >= 0) {
        const qsizetype end = text.indexOf(endTag, start);
        const qsizetype tail = end >= 0 ? end + endTag.size() : start + startTag.size();
        return text.left(start) + element + text.mid(tail);
    }
    const qsizetype monster = text.indexOf("<Monster"_L1);
    const qsizetype head = monster < 0 ? -1 : text.indexOf(u'>', monster);
    if (head < 0)
        return text;
    return text.left(head + 1) + QStringLiteral("\n  ") + element + text.mid(head + 1);
}

// Index behind the line that holds the character at `index`.
qsizetype endOfLine(const QString &text, qsizetype index)
{
    const qsizetype end = text.indexOf(u'\n', index);
    return end < 0 ? text.size() : end + 1;
}

// Only a line that is read as the portrait's is replaced: names and sentences hold the word, too. A
// new one stands below the title, which for a text without any statistics is the whole.
QString withPortraitInStatBlock(const QString &text, const QString &portrait)
{
    const QString line = QStringLiteral("Portrait ") + portrait + u'\n';
    const StatBlockParser::PortraitPlace place = StatBlockParser::portraitPlace(text);
    if (place.word >= 0)
        return text.left(place.word) + line + text.mid(endOfLine(text, place.word));
    const qsizetype end = endOfLine(text, place.titleEnd);
    const QString title = text.left(end);
    return title + (title.endsWith(u'\n') ? u""_s : u"\n"_s) + line + text.mid(end);
}

QString withoutPortraitInStatBlock(const QString &text)
{
    const StatBlockParser::PortraitPlace place = StatBlockParser::portraitPlace(text);
    return place.word < 0 ? text : text.left(place.word) + text.mid(endOfLine(text, place.word));
}

// With the line end and the blanks in front, which an element that was put in has of its own.
QString withoutPortraitInXml(const QString &text)
{
    static const QString endTag = QStringLiteral("</PortraitFile>");
    const qsizetype element = text.indexOf("<PortraitFile>"_L1);
    const qsizetype end = text.indexOf(endTag, element);
    if (element < 0 || end < 0)
        return text;
    qsizetype start = element;
    while (start > 0 && text.at(start - 1).isSpace())
        --start;
    return text.left(start) + text.mid(end + endTag.size());
}

} // namespace

bool isXmlText(const QByteArray &bytes)
{
    const QByteArray head = bytes.left(200);
    return (head.contains("<?xml") && head.contains("?>")) || head.contains("xsi:type=\"Monster\"");
}

bool parseText(bool isMonster, const QByteArray &text, CreatureData &data,
               const QString &dataFolder, CreatureForm *form, QList<LineNote> *notes)
{
    const QByteArray bytes = withoutByteOrderMark(toLF(text));
    data = CreatureData();
    data.isMonster = isMonster;
    data.statBlock = QString::fromUtf8(bytes);
    CreatureForm found = CreatureForm::StatBlock;
    if (isXmlText(bytes)) {
        found = isMonster ? CreatureForm::MonsterXml : CreatureForm::CharacterXml;
        if (isMonster)
            MonsterXmlHandler::parse(bytes, data, dataFolder);
    } else if (readKeyForm(bytes, data, dataFolder)) {
        found = CreatureForm::Key;
    }
    if (form)
        *form = found;
    if (found == CreatureForm::StatBlock)
        return StatBlockParser::parse(data, data.statBlock, isMonster, dataFolder, notes);
    return found == CreatureForm::Key || found == CreatureForm::MonsterXml;
}

QString textOf(const CreatureData &data)
{
    return data.isMonster ? monsterText(data) : keyFormOf(data);
}

QString withPortraitInText(const QString &text, const QString &portrait)
{
    if (isXmlText(text.toUtf8()))
        return withPortraitInXml(text, portrait);
    QString keyForm = text;
    if (putPortraitIntoKeyForm(keyForm, portrait))
        return keyForm;
    return withPortraitInStatBlock(text, portrait);
}

QString withoutPortraitInText(const QString &text)
{
    QString rest = text;
    if (isXmlText(text.toUtf8()))
        rest = withoutPortraitInXml(text);
    else if (!takePortraitFromKeyForm(rest))
        rest = withoutPortraitInStatBlock(text);
    while (rest.endsWith(u'\n'))
        rest.chop(1);
    return rest;
}

QString replacedName(const QString &text, const QString &oldName, const QString &newName)
{
    if (oldName.trimmed().isEmpty())
        return text;
    const bool isXml = isXmlText(text.toUtf8());
    const QString before = isXml ? oldName.toHtmlEscaped() : oldName;
    const QString after = isXml ? newName.toHtmlEscaped() : newName;
    QString replaced = text;
    if (replaced.contains(before))
        return replaced.replace(before, after);
    QStringList words = before.split(u' ', Qt::SkipEmptyParts);
    for (QString &word : words)
        word = QRegularExpression::escape(word);
    // Not by replace() with the expression, in which a backslash of the new name would mean
    // something.
    const QRegularExpression spaced(words.join("\\s+"_L1),
                                    QRegularExpression::UseUnicodePropertiesOption);
    qsizetype from = 0;
    for (auto match = spaced.match(replaced); match.hasMatch();
         match = spaced.match(replaced, from)) {
        replaced.replace(match.capturedStart(), match.capturedLength(), after);
        from = match.capturedStart() + after.size();
    }
    return replaced;
}
