// Puts the lines of a stat block together again: reads them from the scanner, cuts lines that were
// run on, joins lines that were wrapped, and settles what each line is.
#pragma once

#include "linereading.h"
#include "statblockclassifier.h"
#include "statblockscanner.h"

#include <deque>

class StatBlockAssembler {
public:
    // Writes into `notes` what each line was read as; `notes` may be null.
    explicit StatBlockAssembler(const QString &text, QList<LineNote> *notes = nullptr);

    // Makes the next line the current one and settles its kind by the kind of the line before.
    void advance();

    // The current line. Readers move its read position; the assembler leaves it alone.
    StatBlockLine &line() { return m_line; }
    int lineKind() const { return m_lineKind; }
    // Has the next line judged as if the current one were of that kind.
    void setLineKind(int kind) { m_lineKind = kind; }
    // What the current line is read as. Noted by advance(), with all that was joined to it.
    void setReading(LineReading reading, bool isSkipped = false);

    // Index into the text of the token's start; -1 for one that isn't of it.
    qsizetype indexOf(const Token &token) const { return m_scanner.indexOf(token); }

    // Whether a line stands behind the current one, `index` lines ahead from 0.
    bool hasAhead(int index);
    // Only where hasAhead() says so.
    const StatBlockLine &ahead(int index) const { return m_pending[size_t(index)]; }
    // What that line is after a line of kind `state`; NO_LINE behind the end of the text.
    int kindAhead(int index, int state);
    // Appends the next lines to the current one.
    void joinAhead(int count);
    // The current line's tail from `index` on becomes the next line; 0 for no tail.
    void splitOff(int index);

    int section() const { return m_section; }
    void setSection(int section) { m_section = section; }
    // A name line is a trait until the statistics have begun.
    void endTraits() { m_headerFirst = false; }
    bool hasBulletXp() const { return m_bulletXp; }
    void setBulletXp();
    bool isTrap() const { return m_trapMode; }
    // From here on the text is that of a trap or a hazard, and its opening text begins.
    void enterTrapMode();

private:
    void noteLine();
    StatBlockClassifier::Context context(int state) const;
    bool readLine();
    bool goesOn(int last);
    void addPieces(const QList<Token> &tokens);
    bool dropMarks(StatBlockLine &line) const;
    void dropPendingMarks();

    int settle(int kind, int state);
    int settleDetail(int kind);
    void joinContinuations(int kind);
    int settleUnknown(int state);
    int settleName();
    bool dropHeaderMarks();
    int settleHeader();
    bool isDoubleHeading();
    bool isInitiativeLine();
    void joinBracket();
    bool hasName() const;

    StatBlockScanner m_scanner;
    QList<LineNote> *const m_notes;
    LineNote m_note; // of the current line
    StatBlockLine m_line;
    std::deque<StatBlockLine> m_pending; // read ahead, or split off
    int m_lineKind = LineKind::HEADER_TITLE;
    int m_section = 0;
    bool m_headerFirst = true;
    bool m_bulletXp = false;
    bool m_trapMode = false;
};
