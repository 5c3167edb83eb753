#include "tidystatblock.h"

#include "creaturekeyform.h"
#include "creaturetext.h"

#include <QRegularExpression>

#include <array>
#include <functional>

namespace {

using Match = QRegularExpressionMatch;

// In the order in which they are told.
enum Change {
    LineBreaks,
    Signs,
    Letters,
    SplitWords,
    Minuses,
    NameFirst,
    NameEnd,
    Words,
    Colons,
    Experience,
    OwnLines,
    Wrapped,
    Bullets,
    Usages,
    Icons,
    Headings,
    ChangeCount
};

constexpr std::array<const char16_t *, ChangeCount> changeTexts {
    u"Turned a word processor's line breaks into line ends",
    u"Removed invisible signs and mended garbled ones",
    u"Wrote ligatures as letters",
    u"Joined words that a copy had split",
    u"Wrote minus signs and hyphens plainly",
    u"Put the name in front of the level",
    u"Removed a sign at the end of the name",
    u"Wrote names of numbers as stat blocks do",
    u"Removed colons behind names of numbers",
    u"Put the XP in front of their number",
    u"Put numbers onto lines of their own",
    u"Joined numbers to their names",
    u"Put bullets in front of usages",
    u"Wrote usages as stat blocks do",
    u"Removed stray signs in front of powers or read them as icons",
    u"Mended headings of actions",
};

// "_" marks where a copy may leave a blank: around a ligature, and only where one of the pieces is
// no word by itself.
constexpr QStringView ligatureWords =
    u"re_fl_ex re_fl_exes re_fl_ect re_fl_ects re_fl_ected de_fl_ect de_fl_ects in_fl_ict "
    u"in_fl_icts "
    u"in_fl_icted in_fl_uence con_fl_ict confl_agration unfl_inching butterfl_y firefl_y overfl_ow "
    u"fl_y fl_ying fl_ies fl_ight fl_ame fl_ames fl_aming fl_ank fl_anks fl_anked fl_anking fl_ash "
    u"fl_ashes fl_ask fl_at fl_ail fl_ails fl_ee fl_ees fl_eeing fl_esh fl_ing fl_ings fl_oat "
    u"fl_oats fl_oating fl_oor fl_ow fl_ows fl_ux fl_urry "
    u"fi_re fi_res fi_reball fi_ery fi_eld fi_elds fi_end fi_ends fi_endish fi_st fi_sts fi_sh "
    u"fi_ve fi_ght fi_ghts fi_ghter fi_ghting fi_rst fi_nd fi_nds fi_nal fi_ll fi_lls fi_lled fi_n "
    u"fi_ns fi_erce fi_gure fi_gures fi_ne fi_xed confi_ned defi_ned speci_fi_c speci_fi_ed "
    u"paci_fi_ed petri_fi_ed petri_fi_es petri_fi_cation modi_fi_er modi_fi_ers terri_fi_ed "
    u"terri_fi_c terri_fi_es horri_fi_c horri_fi_ed bene_fi_t bene_fi_ts arti_fi_cer sacri_fi_ce "
    u"sacri_fi_ces "
    u"e_ff_ect e_ff_ects aftere_ff_ect a_ff_ect a_ff_ects a_ff_ected e_ff_ort o_ff_er o_ff_ers "
    u"o_ff_ensive su_ff_er su_ff_ers su_ff_ered su_ff_ering su_ff_ocate su_ff_ocating sta_ff "
    u"cli_ff "
    u"sti_ff blu_ff bu_ff_et bu_ff_ets di_ff_erent di_ff_erence scu_ff_le shu_ff_le shu_ff_les "
    u"mu_ff_led gri_ff_on "
    u"o_ffi_cer di_ffi_cult di_ffi_culty e_ffi_gy a_ffi_nity su_ffi_cient gri_ffi_n co_ffi_n "
    u"a_ffl_icted a_ffl_iction a_ffl_icts ba_ffl_e ba_ffl_ed ru_ffl_e";

// What patterns name by a word in "%".
constexpr std::pair<QStringView, QStringView> fragments[] = {
    // Where a number's name may begin within a line of statistics.
    {u"%start%",
     u"(?<=^|[;,)|/\\d\\t]|[;,)|/\\d]\\h|[;,)|/\\d]\\h\\h|\\h\\h|Senses\\h|Senses:\\h)"},
    {u"%number%",
     u"(?:Level|XP|HP|Initiative|AC|Fortitude|Reflex|Will|Perception|Action\\hPoints)"},
    {u"%clause%", u"(?:Speed|Resist|Immune|Vulnerable|Regeneration|Detect|Saving\\hThrows)"},
    {u"%size%", u"(?:Tiny|Small|Medium|Large|Huge|Gargantuan)"},
    {u"%role%",
     u"(?:artillery|brute|controller|defender|elite|leader|lurker|minion|skirmisher|soldier|solo|"
     u"striker|hazard|trap|blaster|warder|obstacle)"},
    {u"%usage%", u"(?:at-will|(?:2/)?encounter|recharge|rchg|aura)(?!\\p{L})"},
    {u"%keyword%",
     u"(?:fear|zone|necrotic|teleportation|cold|gaze|fire|poison|radiant|polymorph|acid|lightning|"
     u"thunder|weapon|implement|psychic|illusion|charm|healing)(?!\\p{L})"},
    // The start of a bracket that tells how a power is used.
    {u"%action%",
     u"\\((?:standard|std|move|minor|free|immediate|imm|opportunity|no\\haction)(?!\\p{L})"
     u"[^()\\r\\n]{0,60}?[;,]\\h{0,2}(?:\\d/round[;,]?\\h)?"},
    {u"%bullet%", u"[\\x{2726}\\x{2022}*]"},
    {u"%behind%", u"(?<=[\\p{L}\\p{N})\\]]|[\\p{L}\\p{N})\\]]\\h|[\\p{L}\\p{N})\\]]\\h\\h)"},
    {u"%garbled%", u"(?<!\\x{e2}[\\x{20ac}\\x{153}\\x{2c6}])(?<!\\x{c2})"},
};

// A pattern with what stands for it. Repetitions are bounded or can't be given back, so that a long
// text is looked through once.
struct Rule {
    Change change;
    const char16_t *pattern;
    const char16_t *replacement;
};

constexpr Rule signRules[] = {
    {LineBreaks, u"[\\x{b}\\x{c}\\x{2028}\\x{2029}]", u"\n"},
    // A soft hyphen shows where a word was broken off.
    {SplitWords, u"\\x{ad}\\r?\\n\\h{0,4}(?=\\p{Ll})", u""},
    {Signs, u"(?!\\A)[\\x{ad}\\x{200b}\\x{200e}\\x{200f}\\x{2060}\\x{feff}]", u""},
    // UTF-8 that was taken for the codes of Western Windows.
    {Signs, u"%garbled%\\x{e2}\\x{20ac}\\x{2122}", u"\u2019"},
    {Signs, u"%garbled%\\x{e2}\\x{20ac}\\x{153}", u"\u201c"},
    {Signs, u"%garbled%\\x{e2}\\x{20ac}\\x{9d}", u"\u201d"},
    {Signs, u"%garbled%\\x{e2}\\x{20ac}\\x{201c}", u"\u2013"},
    {Signs, u"%garbled%\\x{e2}\\x{20ac}\\x{201d}", u"\u2014"},
    {Signs, u"%garbled%\\x{e2}\\x{20ac}\\x{a2}", u"\u2022"},
    {Signs, u"%garbled%\\x{e2}\\x{153}\\x{a6}", u"\u2726"},
    {Signs, u"%garbled%\\x{e2}\\x{2c6}\\x{2019}", u"\u2212"},
    {Signs, u"%garbled%\\x{c2}\\x{a0}", u"\u00a0"},
    {Letters, u"\\x{fb00}", u"ff"},
    {Letters, u"\\x{fb01}", u"fi"},
    {Letters, u"\\x{fb02}", u"fl"},
    {Letters, u"\\x{fb03}", u"ffi"},
    {Letters, u"\\x{fb04}", u"ffl"},
    {Letters, u"[\\x{fb05}\\x{fb06}]", u"st"},
    {Minuses, u"[\\x{2010}\\x{2011}]", u"-"},
    {Minuses, u"(?<=Initiative\\h|Perception\\h)([+\\-\\x{2013}\\x{2212}])\\h(?=\\d)", u"\\1"},
    // The en dash is a minus sign that the parser knows; within a range stands none.
    {Minuses, u"(?<![\\p{L}\\p{N})])[\\x{2212}\\x{fe63}\\x{ff0d}](?=\\d)", u"-"},
    {Minuses, u"(?<=^|[\\h(])[\\x{2012}\\x{2014}\\x{2015}](?=\\d)", u"-"},
};

constexpr Rule lineRules[] = {
    {SplitWords, u"(?i)(?<![\\p{L}\\-])(low|at)-(?:\\h|\\h?\\r?\\n)(light|will)(?!\\p{L})",
     u"\\1-\\2"},
    {Bullets, u"%behind%[\\x{2666}\\x{25c6}][\\x{fe0e}\\x{fe0f}]?(?=[\\h\\p{L}])", u"\u2726"},
    {Bullets,
     u"(?i)%behind%[\\x{b7}\\x{22c4}\\x{25aa}\\x{25ca}\\x{25cf}\\x{2756}\\x{2b25}\\x{f075}\\x{f076}"
     u"\\x{f0a7}\\x{f0a8}\\x{f0b7}](?=\\h{0,2}(?:at[ -]?will|%usage%|%keyword%))",
     u"\u2726"},
    {Bullets, u"(?i)(?<=[\\p{L})]\\h)[?\\x{fffd}](?=\\h(?:at[ -]?will|%usage%))", u"\u2726"},
    {Usages, u"(?i)(%bullet%\\h{0,2}at)[\\h\\x{2013}\\x{2014}]{0,2}(will)(?!\\p{L})", u"\\1-\\2"},
    {Usages, u"(?i)(%action%at)[\\h\\x{2013}\\x{2014}]{0,2}(will)(?=\\h?[;,)])", u"\\1-\\2"},
    {Usages, u"(?i)(%bullet%\\h{0,2}|%action%)1/(encounter)(?!\\p{L})", u"\\1\\2"},
    {Headings,
     u"(?i)^(\\h{0,4}(?:traits|(?:standard|move|minor|free|triggered)\\hactions|other\\hpowers))"
     u"\\h{0,2}:\\h{0,4}$",
     u"\\1"},
    // Small capitals that were a smaller type.
    {Headings,
     u"(?i)^(S(?= ?T)|M(?= ?[OI])|F(?= ?R)|T(?= ?RIG)) ?(TANDARD|OVE|INOR|REE|RIGGERED) "
     u"(A) ?(CTIONS)(?=\\h{0,4}$)",
     u"\\1\\2 \\3\\4"},
    {Headings, u"(?i)^(T) (RAITS)(?=\\h{0,4}$)", u"\\1\\2"},
    {Words,
     u"(?i)(?<!\\p{L})(str(?=ength)|dex(?=terity)|con(?=stitution)|int(?=elligence)|wis(?=dom)|"
     u"cha(?=risma))\\p{L}{3,9}(?=\\h{0,2}:?\\h{0,2}\\d{1,2}\\h?\\()",
     u"\\1"},
    {Words, u"(?i)(?<!\\p{L})(str|dex|con|int|wis|cha)\\.(?=\\h{0,2}\\d{1,2}\\h?\\()", u"\\1"},
    {Colons,
     u"(?i)(?<!\\p{L})(str|dex|con|int|wis|cha)\\h{0,2}:\\h{0,2}(?=\\d{1,2}\\h?(?:\\(|[+\\-]|$))",
     u"\\1 "},
    {Colons, u"(?i)^(alignment:?\\h[^\\r\\n:]{1,40}languages)\\h?:\\h{0,2}(?=\\w)", u"\\1 "},
    {Colons, u"(?i)^(alignment|languages)\\h?:\\h{0,2}(?=\\w)", u"\\1 "},
};

// Above the first power.
constexpr Rule headerRules[] = {
    {Experience, u"(?<=[\\p{Ll})])XP(?=\\h{0,2}:?\\h{0,2}\\d)", u" XP"},
    {Colons, u"(?i)(?<!\\p{L})(Level|XP)\\h{0,2}:\\h{0,2}(?=\\d)", u"\\1 "},
    {Experience,
     u"\\(\\h?(?:XP\\h(\\d[\\d,.]{0,9})|(\\d(?:[\\d,.]|\\h(?=\\d{3}(?!\\d))){0,9})\\h?XP)\\h?\\)",
     u"XP \\1\\2"},
    {Experience,
     u"(?<!XP\\h)(?<!Level\\h)(?<![\\d,.+\\-])([1-9]\\d{0,2}(?:[\\h,.]\\d{3}){1,2}|[1-9]\\d{0,6})"
     u"\\h?XP(?!\\p{L}|\\h{0,2}:?\\h{0,2}\\d)",
     u"XP \\1"},
    {Experience, u"(?<!\\p{L})XP\\h(\\d{1,3})\\h(\\d{3})(?![\\d,.])", u"XP \\1\\2"},
    {Words, u"(?<!\\p{L})Lv(?:l\\.?|\\.)(?=\\h{0,2}:?\\h{0,2}\\d)", u"Level"},
    {Words, u"(?i)%start%hit\\hpoints(?=\\h{0,2}:?\\h{0,2}\\d)", u"HP"},
    {Words, u"(?i)%start%armou?r\\hclass(?=\\h{0,2}:?\\h{0,2}\\d)", u"AC"},
    {Words, u"%start%Fort\\.?(?=\\h{0,2}:?\\h{0,2}\\d)", u"Fortitude"},
    {Words, u"%start%Ref\\.?(?=\\h{0,2}:?\\h{0,2}\\d)", u"Reflex"},
    {Words, u"%start%Init\\.?(?=\\h{0,2}:?\\h{0,2}[+\\-\\x{2013}]?\\d)", u"Initiative"},
    {Colons, u"(?i)%start%(%number%|Bloodied)\\h{0,2}:\\h{0,2}(?=[+\\-\\x{2013}]?\\d)", u"\\1 "},
    {Colons, u"(?i)%start%(%clause%)\\h{0,2}:\\h{0,2}(?=[\\w+\\-\\x{2013}])", u"\\1 "},
    // The initiative alone on its line is one that the parser joins itself.
    {Wrapped,
     u"(?i)%start%(?!Initiative)(%number%)\\h{0,2}:?\\h{0,2}\\r?\\n(?=[+\\-\\x{2013}]?\\d)",
     u"\\1 "},
    {Wrapped, u"(?i)(?<!^)%start%(Initiative)\\h{0,2}:?\\h{0,2}\\r?\\n(?=[+\\-\\x{2013}]?\\d)",
     u"\\1 "},
    {NameEnd,
     u"\\A(\\s*+[^\\r\\n]{1,120}?[\\p{L}\\p{N})])(?:\\h*+[;,:|\\x{2013}\\x{2014}\\x{2022}\\x{2726}"
     u"\\x{b7}\\-])++\\h*+(?=Level\\h\\d)",
     u"\\1 "},
    {NameEnd,
     u"\\A(\\s*+[^\\r\\n]{1,120}?[\\p{L}\\p{N})])(?:\\h*+[;,:|\\x{2013}\\x{2014}\\-])++\\h*+"
     u"(?=\\r?\\n\\h{0,4}(?:Level\\h\\d|%size%\\h))",
     u"\\1"},
};

QRegularExpression compiled(const QString &pattern)
{
    QString text = pattern;
    for (const auto &[name, fragment] : fragments)
        text.replace(name.toString(), fragment.toString());
    QRegularExpression expression(QStringLiteral("(*ANYCRLF)") + text,
                                  QRegularExpression::MultilineOption);
    Q_ASSERT_X(expression.isValid(), qPrintable(text), qPrintable(expression.errorString()));
    return expression;
}

QRegularExpression compiled(const char16_t *pattern)
{
    return compiled(QStringView(pattern).toString());
}

struct CompiledRule {
    Change change;
    QRegularExpression expression;
    QString replacement;
};

template <size_t Count>
QList<CompiledRule> compiledRules(const Rule (&rules)[Count])
{
    QList<CompiledRule> result;
    for (const auto &[change, pattern, replacement] : rules)
        result.append({change, compiled(pattern), QStringView(replacement).toString()});
    return result;
}

QRegularExpression splitWordPattern()
{
    QStringList words;
    for (const QStringView word : ligatureWords.split(u' '))
        words << word.toString().replace(u'_', QStringLiteral("[ \\x{a0}]?"));
    return compiled(QStringLiteral("(?i)(?<!\\p{L})(?:") + words.join(u'|')
                    + QStringLiteral(")(?!\\p{L})"));
}

QString joinedWord(const Match &match)
{
    return match.captured().remove(u' ').remove(u'\u00a0');
}

// The numbers of a recharge go up to 6; what doesn't is other text.
QString rechargeText(const Match &match)
{
    QString digits;
    for (const QChar c : match.captured(2)) {
        if (c.isDigit())
            digits += c;
    }
    const QString upToSix = QStringLiteral("23456").right(digits.size());
    return digits == upToSix
        ? match.captured(1) + QStringList(digits.split(QString(), Qt::SkipEmptyParts)).join(u' ')
        : match.captured();
}

// The letter that the parser knows for the first of the signs that stands for an icon: a letter of
// a symbol font, the name of an icon's picture, or the picture's words. Empty for none.
QString iconLetter(const QString &signs)
{
    static constexpr QStringView letters = u"mMrRaAcCoOx";
    for (qsizetype i = 0; i < signs.size(); ++i) {
        const char16_t sign = signs.at(i).unicode();
        if (sign >= 0xf020 && sign <= 0xf0ff && letters.contains(QChar(sign - 0xf000)))
            return QChar(sign - 0xf000) + QStringLiteral(" ");
        if (sign == u'[') {
            const bool isBasic = signs.at(i + 1).toLower() == u'b';
            const QChar range = signs.at(i + (isBasic ? 7 : 1));
            return QString(isBasic ? range.toLower() : range.toUpper()) + u' ';
        }
        if (sign == u'S' || sign == u'Z') {
            const int number = signs.at(i + 1).unicode() - u'1';
            return QString(QStringView(sign == u'S' ? u"cmra" : u"CMRA").at(number)) + u' ';
        }
    }
    return QString();
}

QString markedPower(const Match &match)
{
    const bool hasLetter = match.hasCaptured(3) && !match.captured(3).isEmpty();
    return match.captured(1) + (hasLetter ? QString() : iconLetter(match.captured(2)));
}

struct Rewriting {
    Change change;
    QRegularExpression expression;
    QString (*rewritten)(const Match &);
};

class Tidier {
public:
    explicit Tidier(const QString &text) : m_text(text) { }

    TidiedText tidied();

private:
    void runPass();
    void apply(const QList<CompiledRule> &rules, QString &text);
    void apply(const Rewriting &rewriting, QString &text);
    void putNameFirst(QString &header);
    void putOntoOwnLines(QString &header);
    void take(Change change, QString &text, const QString &result);
    qsizetype headerEnd() const;

    QString m_text;
    std::array<bool, ChangeCount> m_changed {};
};

void Tidier::take(Change change, QString &text, const QString &result)
{
    if (result == text)
        return;
    text = result;
    m_changed[change] = true;
}

void Tidier::apply(const QList<CompiledRule> &rules, QString &text)
{
    for (const auto &[change, expression, replacement] : rules)
        take(change, text, QString(text).replace(expression, replacement));
}

void Tidier::apply(const Rewriting &rewriting, QString &text)
{
    QString result;
    qsizetype done = 0;
    for (const Match &match : rewriting.expression.globalMatch(text)) {
        result += QStringView(text).sliced(done, match.capturedStart() - done);
        result += rewriting.rewritten(match);
        done = match.capturedEnd();
    }
    if (done > 0)
        take(rewriting.change, text, result + QStringView(text).sliced(done));
}

// Where the statistics end: the start of the line with the first power, heading or footer below the
// title.
qsizetype Tidier::headerEnd() const
{
    static const QRegularExpression title = compiled(u"\\A\\s*+[^\\r\\n]*+");
    static const QRegularExpression end =
        compiled(u"(?i)^\\h{0,4}(?:(?:traits|(?:standard|move|minor|free|triggered)\\hactions|"
                 u"countermeasures|"
                 u"skills|alignment|languages|equipment|description)(?!\\p{L})|(?:str|con)\\h\\d)|"
                 u"(?<=^|\\.)(?:trap|hazard)\\h?:|perception\\hdc\\h|"
                 u"[(\\x{2726}\\x{2022}*][^()\\r\\n]{0,80}?(?:at-will|encounter|recharge|rchg)");
    const qsizetype from = title.match(m_text).capturedEnd();
    const Match match = end.match(m_text, from);
    if (!match.hasMatch())
        return m_text.size();
    qsizetype start = match.capturedStart();
    while (start > from && m_text.at(start - 1) != u'\n' && m_text.at(start - 1) != u'\r')
        --start;
    return start;
}

void Tidier::putNameFirst(QString &header)
{
    static const CompiledRule rule {
        NameFirst,
        compiled(u"\\A(\\s*+)((?i:Level)[\\h:]{1,3}\\d{1,2}(?:[\\h\\d,.;:()\\x{2022}\\x{2726}]|"
                 u"(?i:XP|%role%))*+)((?:\\r?\\n\\h*+)++)"
                 u"(?!(?i:%number%|%clause%|%size%|Senses|Bloodied|Hit\\hPoints)(?!\\p{L}))"
                 u"(?!(?i:(?:(?:%role%|terrain)\\h{0,2})++)$)"
                 u"(\\p{Lu}[^\\r\\n\\d]{0,60}[^\\r\\n\\d.])$"),
        QStringLiteral("\\1\\4\\3\\2")};
    apply({rule}, header);
}

// A clause such as the speed goes on to the end of its line, and takes in what a copy put there.
void Tidier::putOntoOwnLines(QString &header)
{
    static const QRegularExpression words = compiled(
        u"\\r?\\n|(?<bracket>\\([^()\\r\\n]*+\\)?)|(?<![\\p{L}\\-])(?:"
        u"(?<number>(?:Initiative|Perception|HP|AC|Fortitude|Reflex|Will)\\h(?=[+\\-\\x{2013}]?\\d)"
        u")|"
        u"(?<own>Speed\\h(?=\\d)|Saving\\hThrows\\h(?=[+\\-]))|(?<clause>(?:%clause%|%size%)\\h)|"
        u"Low-light|Darkvision|Truesight|All-round|Tremorsense|XP|Action\\hPoints|Level\\h\\d)");
    const auto isSeparator = [](QChar c) {
        return c == u';' || c == u',' || c == u' ' || c == u'\t';
    };
    QString result;
    qsizetype done = 0;
    bool inClause = false;
    for (const Match &match : words.globalMatch(header)) {
        const bool isOwn = match.hasCaptured(u"own");
        if (inClause && (isOwn || match.hasCaptured(u"number"))) {
            result += QStringView(header).sliced(done, match.capturedStart() - done);
            while (isSeparator(result.back()))
                result.chop(1);
            result += u'\n';
            done = match.capturedStart();
        }
        inClause =
            (inClause && match.hasCaptured(u"bracket")) || isOwn || match.hasCaptured(u"clause");
    }
    take(OwnLines, header, result + QStringView(header).sliced(done));
}

void Tidier::runPass()
{
    static const QList<CompiledRule> onSigns = compiledRules(signRules);
    static const QList<CompiledRule> onLines = compiledRules(lineRules);
    static const QList<CompiledRule> onHeader = compiledRules(headerRules);
    static const Rewriting splitWords {SplitWords, splitWordPattern(), joinedWord};
    static const Rewriting recharges {
        Usages,
        compiled(u"(?i)((?:recharge|rchg)[\\h:]{1,3})(?:on\\h)?(\\[?[2-6]\\]?"
                 u"(?:(?:\\h?[,./&]\\h?|\\hor\\h|\\h?)\\[?[2-6]\\]?){0,4})(?![\\d,.]*\\d)"),
        rechargeText};
    static const Rewriting icons {
        Icons,
        compiled(u"^(\\h{0,4})((?:(?:\\d|[bd-lnpqs-wyz]|[SZ][1-4]a?(?:\\.gif)?|"
                 u"\\[(?i:(?:Basic\\h)?(?:Melee|Ranged|Close|Area)(?:\\hAttack)?)\\])\\h{1,3}+|"
                 u"[\\x{e000}-\\x{f8ff}]\\h{0,3}+)++)"
                 u"(?=([mMrRaAcCoOx]\\h)?\\p{Lu}[^\\x{2726}\\x{2022}*(\\r\\n]{0,60}+"
                 u"(?:(?:\\([^()\\r\\n]{0,100}\\)\\h{0,2})?%bullet%\\h{0,2}(?i:%usage%)|"
                 u"\\([^()\\r\\n]{0,100}?(?i:%usage%)))"),
        markedPower};

    apply(onSigns, m_text);
    apply(splitWords, m_text);
    apply(onLines, m_text);
    apply(recharges, m_text);
    apply(icons, m_text);
    const qsizetype end = headerEnd();
    QString header = m_text.first(end);
    putNameFirst(header);
    apply(onHeader, header);
    putOntoOwnLines(header);
    m_text.replace(0, end, header);
}

// What one step makes may be a fault that an earlier one looks for, so a pass follows until nothing
// changes. A text that doesn't come to rest is no copy of a stat block, and stays as it is.
TidiedText Tidier::tidied()
{
    constexpr int maxPasses = 6;
    const QString source = m_text;
    QString before;
    for (int pass = 0; pass < maxPasses && m_text != before; ++pass) {
        before = m_text;
        runPass();
    }
    if (m_text != before || m_text == source)
        return {source, {}};
    TidiedText result {m_text, {}};
    for (int change = 0; change < ChangeCount; ++change) {
        if (m_changed[size_t(change)])
            result.changes << QStringView(changeTexts[size_t(change)]).toString();
    }
    return result;
}

} // namespace

TidiedText tidyStatBlock(const QString &text)
{
    if (!text.isValidUtf16() || isXmlText(text.left(200).toUtf8()) || isKeyForm(text.toUtf8()))
        return {text, {}};
    return Tidier(text).tidied();
}
