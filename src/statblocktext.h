// Makes text of a stat block's tokens again: one blank between words, none in front of signs.
#pragma once

#include "statblockline.h"

#include <QString>
#include <QVarLengthArray>

class TokenText {
public:
    enum Form { Plain, Html };

    explicit TokenText(Form form) : m_form(form) { }

    QString text() const { return QString(m_text.constData(), m_text.size()); }
    void add(const Token &token);
    // The line's tokens from `from` up to `to`.
    void add(const StatBlockLine &line, int from, int to);
    // Makes the first letter of the next word a capital.
    void raiseNextWord() { m_raises = true; }
    // Adds HTML as it stands. Where it ends in a blank, no other one follows.
    void addHtml(QStringView html);
    // The tag is put directly in front of the next token; closeTag() before any token drops it.
    void openTag(QStringView tag) { m_openTag = tag; }
    void closeTag(QStringView tag);

private:
    void append(QStringView text) { m_text.append(text.data(), text.size()); }
    void addEscaped(QStringView text);

    Form m_form;
    QVarLengthArray<QChar, 512> m_text; // most texts come to no more: grown once, as the result
    QStringView m_openTag;
    int m_last = 0; // kind of the token that was added last; 0 where no blank may follow
    bool m_raises = false;
};

// The tokens from `from` up to `to` as plain text, without a sign at the end.
QString clauseText(const StatBlockLine &line, int from, int to);
