#include "history.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include "event.h"
#include "eventfactory.h"
#include "historyfolder.h"
#include "logguard.h"
#include "loglock.h"
#include "namesinlog.h"
#include "objectstream.h"
#include "paths.h"
#include "safefile.h"
#include "switchboard.h"
#include "text.h"
#include "version.h"
#include "windowinterface.h"

History *theHistory = nullptr;

History::History(QObject *parent) : QObject(parent)
{
    connect(this, &History::doDisableWidgetDisplay, switchBoard(),
            &SwitchBoard::doDisableWidgetDisplay);
    connect(this, &History::doEnableWidgetDisplay, switchBoard(),
            &SwitchBoard::doEnableWidgetDisplay);
    // A command may write a dozen records: the disk is asked once, when control is back in the
    // event loop.
    m_syncTimer.setSingleShot(true);
    m_syncTimer.setInterval(0);
    connect(&m_syncTimer, &QTimer::timeout, this, [this] {
        if (m_stream)
            m_stream->sync();
        checkFile();
        m_isCheckDue = true;
    });
}

History::~History()
{
    clear();
}

// --- the file ---

ObjectStream *History::getStream(bool silent)
{
    // Ahead of the first write of a command.
    if (m_isCheckDue) {
        checkFile();
        m_syncTimer.start(); // the next command is due even if this one writes nothing
    }
    if (dataReadOnly) {
        if (!silent)
            windows().tellReadOnly();
        return nullptr;
    }
    return openStream(silent);
}

bool History::mayWrite() const
{
    if (dataReadOnly)
        windows().tellReadOnly();
    return !dataReadOnly;
}

void History::setLock(std::unique_ptr<LogLock> lock)
{
    m_lock = std::move(lock);
}

ObjectStream *History::openStream(bool silent)
{
    if (m_stream)
        return m_stream.get();
    std::unique_ptr<QIODevice> device = openLog();
    if (!device) {
        if (!silent)
            windows().showMessage(
                tr("Cannot Create History File"),
                tr("Unable to create History file: %1").arg(asHtml(historyPath())));
        return nullptr;
    }
    if (device->size() > ObjectStream::LargestLog) {
        if (!silent)
            windows().showMessage(
                tr("History File too Large"),
                tr("The history file, <b>%1</b>, is larger than the %2 bytes that can be read. "
                   "Nothing will be written to it. Move it out of the way to begin a new one.")
                    .arg(asHtml(historyPath()), QString::number(ObjectStream::LargestLog)));
        return nullptr;
    }
    auto stream = std::make_unique<ObjectStream>(device.release());
    // The data folder may have changed by the time of the first write.
    stream->setDamageGuard([this, root = dataRoot, path = historyPath()] {
        const qint64 count = m_damage ? m_damage.end : QFileInfo(path).size();
        return !QFile::exists(path) || !copyDamagedLog(root, path, count).isNull();
    });
    if (stream->readHeader(silent))
        m_stream = std::move(stream);
    if (m_stream && !m_makeDevice && !dataReadOnly)
        m_logGuard = std::make_unique<LogGuard>(*m_stream, dataRoot);
    return m_stream.get();
}

// Null when it can't be opened. Without a buffer, since the stream's records are whole writes.
std::unique_ptr<QIODevice> History::openLog() const
{
    if (m_makeDevice)
        return std::unique_ptr<QIODevice>(m_makeDevice(historyPath()));
    // Without a data folder the path would be one at the root of the disk.
    if (dataRoot.isEmpty())
        return nullptr;
    // A pipe would keep the program waiting, and what is written to a device is gone.
    const QFileInfo info(historyPath());
    if ((info.exists() || info.isSymLink()) && !info.isFile())
        return nullptr;
    if (!dataReadOnly && m_lock && m_lock->take() != LogLock::Result::Taken)
        return nullptr;
    auto file = std::make_unique<QFile>(historyPath());
    const QIODevice::OpenMode mode = dataReadOnly ? QIODevice::ReadOnly : QIODevice::ReadWrite;
    if (!file->open(mode | QIODevice::Unbuffered))
        return nullptr;
    return file;
}

void History::closeStream()
{
    if (!m_stream)
        return;
    m_syncTimer.stop();
    writeRest();
    m_logGuard.reset();
    m_stream.reset();
}

bool History::writeWaiting()
{
    const bool isWritten = writeRest();
    // The program may end before control is back in the event loop.
    tellOfFile();
    return isWritten;
}

bool History::writeRest()
{
    if (!m_stream || dataReadOnly)
        return true;
    checkFile();
    m_stream->flush();
    m_stream->sync();
    return !m_stream->isBehind();
}

bool History::saveLogAs(const QString &path)
{
    return m_stream && saveWhole(path, m_stream->wholeLog());
}

void History::checkFile()
{
    m_isCheckDue = false;
    if (!m_logGuard || Replay::isRunning())
        return;
    // The lock may have gone with the folder.
    if (m_logGuard->check() && m_lock)
        m_lock->renew();
    const QString text = m_logGuard->takeMessage();
    if (text.isEmpty())
        return;
    m_untold << text;
    // A message runs a loop of its own, which must not begin in the middle of a command.
    QMetaObject::invokeMethod(this, &History::tellOfFile, Qt::QueuedConnection);
}

void History::tellOfFile()
{
    while (!m_untold.isEmpty())
        windows().showMessage(tr("History File Changed"), m_untold.takeFirst());
}

void History::syncSoon()
{
    const bool isCommand = !Replay::isRunning();
    if (m_stream && (isCommand || m_stream->needsSync()) && !m_syncTimer.isActive())
        m_syncTimer.start();
}

bool History::backupLog()
{
    if (!mayWrite())
        return false;
    if (!m_stream)
        return true;
    checkFile();
    const QString path = historyPath();
    if (!QFile::exists(path) && !m_stream->isBehind()) {
        closeStream();
        return true;
    }
    if (!makeHistoryFolder(dataRoot)) {
        windows().showMessage(tr("Cannot Create History Directory"),
                              tr("Unable to create <b>History</b> directory: %1%2History")
                                  .arg(asHtml(displayRoot), QDir::separator()));
        return false;
    }
    // The copy is made with the log still open, so that a failure leaves everything as it was.
    m_stream->flush();
    const QString backup =
        freeHistoryPath(dataRoot, QStringLiteral("history_"), m_stream->created());
    if (m_stream->isBehind() || !QFile::copy(path, backup)) {
        windows().showMessage(tr("Cannot Create History Backup"),
                              tr("Unable to create History backup file: %1").arg(asHtml(backup)));
        return false;
    }
    closeStream();
    QFile::remove(path);
    return true;
}

bool History::load(const LoadProgress &tell)
{
    clear();
    if (dataRoot.isEmpty() || !QFile::exists(historyPath()) || !openStream())
        return true;
    const QDateTime lastWritten = QFileInfo(historyPath()).lastModified();
    windows().hideForReplay();
    const qint64 firstEvent = m_stream->position();
    const bool known = replay(tell);
    m_editedFiles.find(lastWritten);
    // An unknown event isn't damage for certain, and has a message of its own.
    if (known)
        findDamage(firstEvent);
    m_isCheckDue = true;
    tellChanged();
    windows().showAfterReplay();
    return known;
}

// False at an unknown event.
bool History::replay(const LoadProgress &tell)
{
    // Often enough for a progress dialog to move, and seldom enough to cost nothing.
    constexpr qint64 BreathEvery = 40; // milliseconds
    // What runs between two events may close the log.
    const QPointer<ObjectStream> stream(m_stream.get());
    QElapsedTimer sinceBreath;
    sinceBreath.start();
    bool known = true;
    const Replay replay;
    NamesInLog names;
    names.takeBack(*stream);
    while (stream) {
        Event *event = readEvent(stream, &known);
        if (!event)
            break;
        doEvent(event, true);
        if (event->type() == EventType::RenameCreature)
            names.notePassed();
        if (!event->isWhole()) {
            // The next event would be read as the rest of this one.
            takeBackLast();
            removeBehindPosition();
            break;
        }
        if (sinceBreath.elapsed() >= BreathEvery) {
            QCoreApplication::processEvents();
            if (tell && stream)
                tell(stream->position(), stream->size());
            sinceBreath.restart();
        }
    }
    names.finish();
    return known;
}

void History::findDamage(qint64 firstEvent)
{
    if (!m_stream || m_stream->isBehind())
        return;
    qint64 stop = firstEvent;
    if (!m_events.isEmpty())
        stop = m_events.last().offset + m_events.last().event->size();
    const auto source = [this](qint64 offset, qint64 count) {
        return m_stream->bytesAt(offset, count);
    };
    QList<LogSpan> spans;
    if (m_stream->isDamaged()) {
        spans.reserve(m_events.size());
        for (const Entry &entry : std::as_const(m_events))
            spans.append({entry.offset, entry.event->size()});
    }
    m_damage = findLogDamage(source, m_stream->fileSize(), spans, stop);
    const QString path = historyPath();
    if (!m_damage || dataReadOnly)
        return;
    if (QFile::exists(path))
        m_damage.copy = copyDamagedLog(dataRoot, path, m_damage.end);
    m_stream->cutTailOnWrite();
}

QString History::damageText() const
{
    if (!m_damage)
        return {};
    QString text = tr("The history file, <b>%1</b>, is damaged: %2 of its %3 bytes can't be used.")
                       .arg(asHtml(historyPath()), QString::number(m_damage.lostBytes),
                            QString::number(m_damage.fileSize));
    text += m_damage.lostEvents == 0
        ? tr("<p>What they held can't be told.")
        : tr("<p>Events that can still be read behind the damage, but are missing from the "
             "fight: %1.")
              .arg(m_damage.lostEvents);
    if (!m_damage.copy.isEmpty())
        text += tr("<p>The file as it was is kept: <b>%1</b>").arg(asHtml(m_damage.copy));
    else if (!dataReadOnly)
        text += tr("<p>It could not be copied into the 'Morvane Data/History' folder, so nothing "
                   "will be written to it until it can.");
    return text;
}

// --- the events ---

void History::doEvent(Event *event, bool silent)
{
    if (!event)
        return;
    if (!Replay::isRunning())
        m_editedFiles.forget();
    removeBehindPosition();
    m_events.append({event, m_stream ? m_stream->position() : -1});
    applyNext();
    syncSoon();
    if (!silent)
        tellChanged();
}

void History::stepBack()
{
    m_editedFiles.putNumbersBack();
    takeBackLast();
    m_editedFiles.takeNumbers();
    tellChanged();
}

void History::stepForward(bool silent)
{
    m_editedFiles.putNumbersBack();
    applyNext();
    m_editedFiles.takeNumbers();
    if (!silent)
        tellChanged();
}

void History::moveTo(int index)
{
    Q_EMIT doDisableWidgetDisplay();
    m_editedFiles.putNumbersBack();
    while (m_position < index && canStepForward())
        applyNext();
    while (m_position > index && canStepBack())
        takeBackLast();
    m_editedFiles.takeNumbers();
    Q_EMIT doEnableWidgetDisplay();
}

// The position is the new one while redo() runs, and the stream moves on behind it.
void History::applyNext()
{
    if (!canStepForward())
        return;
    Event *event = m_events.at(++m_position).event;
    event->redo();
    if (ObjectStream *stream = openStream())
        event->skipForward(stream);
}

// The position is still the old one while undo() runs.
void History::takeBackLast()
{
    if (!canStepBack())
        return;
    Event *event = m_events.at(m_position).event;
    event->undo();
    --m_position;
    if (ObjectStream *stream = openStream())
        event->skipBack(stream);
}

// Newest first: an event may name what an earlier one made. Each leaves the list before it goes, so
// that nobody who is called from its destructor meets it there.
void History::removeBehindPosition()
{
    while (canStepForward())
        delete m_events.takeLast().event;
}

void History::truncate()
{
    if (canStepForward() && mayWrite()) {
        ObjectStream *stream = getStream();
        removeBehindPosition();
        if (stream)
            stream->truncate();
        syncSoon();
    }
    tellChanged();
}

void History::clear()
{
    m_position = -1;
    removeBehindPosition();
    closeStream();
    m_editedFiles.forget();
    m_damage = {};
    tellChanged();
}

void History::tellChanged()
{
    Q_EMIT doHistoryChanged();
    windows().refreshHistoryActions();
}

// --- looking at it ---

Event *History::eventAt(int index) const
{
    return index >= 0 && index < m_events.size() ? m_events.at(index).event : nullptr;
}

QString History::eventText(int index) const
{
    const Event *event = eventAt(index);
    return event ? event->text() : QString();
}

int History::eventOffset(int index) const
{
    return index >= 0 && index < m_events.size() ? m_events.at(index).offset : -1;
}

QList<Event *> History::recentVisibleEvents(int maxCount) const
{
    QList<Event *> recent;
    int index = qMin(m_position, eventCount() - 1);
    while (index >= 0 && recent.size() < maxCount) {
        if (Event *event = eventAt(index); event->isVisibleToPlayers())
            recent.append(event);
        // The start of the encounter ends the walk, unless it is where the walk began.
        if (--index >= 0 && eventAt(index)->startsEncounter())
            break;
    }
    return recent;
}

#include "moc_history.cpp"
