#include "doubleplaintextedit.h"

#include <QMimeData>
#include <QPlainTextDocumentLayout>
#include <QTextDocument>

#include "tidystatblock.h"

void StatBlockEdit::insertFromMimeData(const QMimeData *source)
{
    if (!source->hasText()) {
        QPlainTextEdit::insertFromMimeData(source);
        return;
    }
    const TidiedText tidied = tidyStatBlock(source->text());
    Q_EMIT doPasteBegins();
    QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    cursor.insertText(source->text());
    if (tidied.text != source->text()) {
        cursor.setPosition(start, QTextCursor::KeepAnchor);
        cursor.insertText(tidied.text);
    }
    setTextCursor(cursor);
    ensureCursorVisible();
    Q_EMIT doPasteEnded(tidied.changes);
}

DoublePlainTextEdit::DoublePlainTextEdit(QObject *parent)
    : QObject(parent), m_document(new QTextDocument(this)), m_first(new StatBlockEdit),
      m_second(new StatBlockEdit)
{
    m_document->setDocumentLayout(new QPlainTextDocumentLayout(m_document));
    for (StatBlockEdit *edit : {m_first, m_second}) {
        edit->setDocument(m_document);
        edit->setTabChangesFocus(true);
        edit->setAccessibleName(tr("Stat Block Text"));
        connect(edit, &StatBlockEdit::doPasteBegins, this, [this] { m_isPasting = true; });
        connect(edit, &StatBlockEdit::doPasteEnded, this, [this](const QStringList &changes) {
            m_isPasting = false;
            Q_EMIT textChanged();
            Q_EMIT doTidied(changes);
        });
    }
    connect(m_document, &QTextDocument::contentsChanged, this, [this] {
        if (!m_isPasting)
            Q_EMIT textChanged();
    });
}

// The document's own plain text would turn blanks that don't break into others.
QString DoublePlainTextEdit::text() const
{
    return m_document->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void DoublePlainTextEdit::setText(const QString &text)
{
    m_document->setPlainText(text);
}

void DoublePlainTextEdit::replaceText(const QString &text)
{
    const int position = m_first->textCursor().position();
    QTextCursor cursor(m_document);
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    cursor.setPosition(qMin(position, m_document->characterCount() - 1));
    m_first->setTextCursor(cursor);
}

void DoublePlainTextEdit::setEnabled(bool enabled)
{
    m_first->setEnabled(enabled);
    m_second->setEnabled(enabled);
}

void DoublePlainTextEdit::focusOnAll()
{
    m_first->setFocus();
    m_first->selectAll();
}

#include "moc_doubleplaintextedit.cpp"
