#include "doubleplaintextedit.h"

#include <QHelpEvent>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextDocument>
#include <QToolTip>

#include "statblockreading.h"
#include "tidystatblock.h"

namespace {

constexpr int MarginWidth = 6;

// To be told from each other on a light ground and on a dark one. Transparent for a blank line.
QColor colourOf(LineReading reading)
{
    switch (reading) {
    case LineReading::Title:
        return QColor(0x3b, 0x78, 0xc2);
    case LineReading::Header:
        return QColor(0x8a, 0x8f, 0x98);
    case LineReading::Power:
        return QColor(0x2e, 0x8b, 0x57);
    case LineReading::PowerText:
        return QColor(0x8f, 0xc9, 0xa4);
    case LineReading::NotUnderstood:
        return QColor(0xd6, 0x4a, 0x2a);
    default:
        return Qt::transparent;
    }
}

} // namespace

StatBlockEdit::StatBlockEdit(QWidget *parent) : QPlainTextEdit(parent), m_margin(new QWidget(this))
{
    m_margin->setObjectName(QStringLiteral("readingMargin"));
    m_margin->installEventFilter(this);
    setViewportMargins(MarginWidth, 0, 0, 0);
    connect(this, &QPlainTextEdit::updateRequest, m_margin, QOverload<>::of(&QWidget::update));
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &StatBlockEdit::tellLine);
}

void StatBlockEdit::setReadings(const QList<LineReading> &readings)
{
    m_readings = readings;
    m_margin->update();
    tellLine();
}

void StatBlockEdit::goToLine(qsizetype line)
{
    setTextCursor(QTextCursor(document()->findBlockByNumber(int(line))));
    centerCursor();
    setFocus();
}

// The colours in words, for who can't see them.
void StatBlockEdit::tellLine()
{
    const int line = textCursor().blockNumber();
    setAccessibleDescription(line < m_readings.size() ? lineReadingName(m_readings.at(line))
                                                      : QString());
}

void StatBlockEdit::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    const QRect area = contentsRect();
    m_margin->setGeometry(area.left(), area.top(), MarginWidth, area.height());
}

bool StatBlockEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_margin && event->type() == QEvent::Paint) {
        paintMargin(static_cast<QPaintEvent *>(event));
        return true;
    }
    if (watched == m_margin && event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QToolTip::showText(help->globalPos(), readingAt(help->pos().y()), m_margin);
        return true;
    }
    return QPlainTextEdit::eventFilter(watched, event);
}

void StatBlockEdit::paintMargin(QPaintEvent *event)
{
    QPainter painter(m_margin);
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF area = blockBoundingGeometry(block).translated(contentOffset());
        if (area.top() > event->rect().bottom())
            break;
        if (block.blockNumber() < m_readings.size())
            painter.fillRect(QRectF(0, area.top(), MarginWidth - 2, area.height()),
                             colourOf(m_readings.at(block.blockNumber())));
    }
}

QString StatBlockEdit::readingAt(int y) const
{
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF area = blockBoundingGeometry(block).translated(contentOffset());
        if (area.bottom() > y)
            return block.blockNumber() < m_readings.size()
                ? lineReadingName(m_readings.at(block.blockNumber()))
                : QString();
    }
    return {};
}

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
    : QObject(parent), m_first(new StatBlockEdit), m_second(new StatBlockEdit), m_active(m_first)
{
    for (StatBlockEdit *edit : {m_first, m_second}) {
        edit->setTabChangesFocus(true);
        edit->setAccessibleName(tr("Stat Block Text"));
        edit->installEventFilter(this);
        connect(edit, &StatBlockEdit::doPasteBegins, this, [this] { m_isSilent = true; });
        connect(edit, &StatBlockEdit::doPasteEnded, this, [this](const QStringList &changes) {
            m_isSilent = false;
            Q_EMIT textChanged();
            Q_EMIT doTidied(changes);
        });
        connect(edit, &QPlainTextEdit::textChanged, this, [this, edit] {
            if (!m_isSilent && edit == m_active)
                Q_EMIT textChanged();
        });
    }
}

bool DoublePlainTextEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        setActive(watched == m_first ? m_first : m_second);
    return QObject::eventFilter(watched, event);
}

void DoublePlainTextEdit::setActive(StatBlockEdit *edit)
{
    if (edit == m_active)
        return;
    const QString shown = text();
    m_active = edit;
    if (text() == shown)
        return;
    const QScopedValueRollback silent(m_isSilent, true);
    edit->setPlainText(shown);
}

// The document's own plain text would turn blanks that don't break into others.
QString DoublePlainTextEdit::text() const
{
    return m_active->document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void DoublePlainTextEdit::setText(const QString &text)
{
    m_active->setPlainText(text);
}

void DoublePlainTextEdit::replaceText(const QString &text)
{
    const int position = m_active->textCursor().position();
    QTextCursor cursor(m_active->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    cursor.setPosition(qMin(position, m_active->document()->characterCount() - 1));
    m_active->setTextCursor(cursor);
}

void DoublePlainTextEdit::setEnabled(bool enabled)
{
    m_first->setEnabled(enabled);
    m_second->setEnabled(enabled);
}

void DoublePlainTextEdit::setReadings(const QList<LineReading> &readings)
{
    m_first->setReadings(readings);
    m_second->setReadings(readings);
}

void DoublePlainTextEdit::focusOnAll()
{
    setActive(m_first);
    m_first->setFocus();
    m_first->selectAll();
}

#include "moc_doubleplaintextedit.cpp"
