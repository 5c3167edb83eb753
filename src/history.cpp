#include "history.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QRegularExpression>

#include "event.h"
#include "objectstream.h"
#include "paths.h"
#include "switchboard.h"
#include "version.h"
#include "windowinterface.h"

namespace {

constexpr QLatin1String FolderName("History");

bool makeHistoryFolder(const QString &root)
{
    const QDir parent(root);
    return QDir(parent.filePath(FolderName)).exists() || parent.mkdir(FolderName);
}

// In the "History" folder of that data folder, for the log of that date. The date comes out of a
// file and names another, so it must not lead out of the folder.
QString backupPath(const QString &root, const QString &prefix, QString date)
{
    static const QRegularExpression unfit(QStringLiteral("[/\\\\\\x00-\\x1f]"));
    date.replace(unfit, QStringLiteral("_"));
    return root + QDir::separator() + FolderName + QDir::separator() + prefix + date
        + QStringLiteral(".log");
}

// Keeps a copy of a log that is about to lose bytes that nobody could read. True as well when there
// is no file to keep.
bool keepDamagedLog(const QString &root, const QString &path)
{
    if (!QFile::exists(path))
        return true;
    if (!makeHistoryFolder(root))
        return false;
    const QString prefix = QStringLiteral("history_damaged_");
    const QString date = currentDateTimeText();
    QString copy = backupPath(root, prefix, date);
    for (int number = 2; QFile::exists(copy); ++number)
        copy = backupPath(root, prefix, date + u'_' + QString::number(number));
    return QFile::copy(path, copy);
}

} // namespace

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
    });
}

History::~History()
{
    clear();
}

// --- the file ---

ObjectStream *History::getStream(bool silent)
{
    if (m_stream)
        return m_stream.get();
    std::unique_ptr<QIODevice> device = openLog();
    if (!device) {
        if (!silent)
            windows().showMessage(tr("Cannot Create History File"),
                                  tr("Unable to create History file: %1").arg(historyPath()));
        return nullptr;
    }
    auto stream = std::make_unique<ObjectStream>(device.release());
    // The data folder may have changed by the time of the first write.
    stream->setDamageGuard(
        [root = dataRoot, path = historyPath()] { return keepDamagedLog(root, path); });
    if (stream->readHeader(silent))
        m_stream = std::move(stream);
    return m_stream.get();
}

// Null when it can't be opened. Without a buffer, since the stream's records are whole writes.
std::unique_ptr<QIODevice> History::openLog() const
{
    if (m_makeDevice)
        return std::unique_ptr<QIODevice>(m_makeDevice(historyPath()));
    auto file = std::make_unique<QFile>(historyPath());
    const QIODevice::OpenMode mode = m_readOnly ? QIODevice::ReadOnly : QIODevice::ReadWrite;
    if (!file->open(mode | QIODevice::Unbuffered))
        return nullptr;
    return file;
}

void History::closeStream()
{
    if (!m_stream)
        return;
    m_syncTimer.stop();
    m_stream->flush();
    m_stream->sync();
    m_stream.reset();
}

void History::syncSoon()
{
    if (m_stream && m_stream->needsSync() && !m_syncTimer.isActive())
        m_syncTimer.start();
}

bool History::backupLog()
{
    if (!m_stream)
        return true;
    const QString path = historyPath();
    if (!QFile::exists(path)) {
        closeStream();
        return true;
    }
    if (!makeHistoryFolder(dataRoot)) {
        windows().showMessage(tr("Cannot Create History Directory"),
                              tr("Unable to create <b>History</b> directory: %1%2History")
                                  .arg(displayRoot, QDir::separator()));
        return false;
    }
    // The copy is made with the log still open, so that a failure leaves everything as it was.
    m_stream->flush();
    const QString backup = backupPath(dataRoot, QStringLiteral("history_"), m_stream->created());
    if (m_stream->isBehind() || !QFile::copy(path, backup)) {
        windows().showMessage(tr("Cannot Create History Backup"),
                              tr("Unable to create History backup file: %1").arg(backup));
        return false;
    }
    closeStream();
    QFile::remove(path);
    return true;
}

bool History::load()
{
    clear();
    if (dataRoot.isEmpty() || !QFile::exists(historyPath()) || !getStream())
        return true;
    windows().hideForReplay();
    const bool known = replay();
    tellChanged();
    windows().showAfterReplay();
    return known;
}

// False at an unknown event.
bool History::replay()
{
    // Often enough for a progress dialog to move, and seldom enough to cost nothing.
    constexpr qint64 BreathEvery = 40; // milliseconds
    // What runs between two events may close the log.
    const QPointer<ObjectStream> stream(m_stream.get());
    QElapsedTimer sinceBreath;
    sinceBreath.start();
    bool known = true;
    while (stream) {
        Event *event = readEvent(stream, &known);
        if (!event)
            break;
        doEvent(event, true);
        if (sinceBreath.elapsed() >= BreathEvery) {
            QCoreApplication::processEvents();
            sinceBreath.restart();
        }
    }
    return known;
}

// --- the events ---

void History::doEvent(Event *event, bool silent)
{
    if (!event)
        return;
    removeBehindPosition();
    m_events.append({event, m_stream ? m_stream->position() : -1});
    applyNext();
    syncSoon();
    if (!silent)
        tellChanged();
}

void History::stepBack()
{
    takeBackLast();
    tellChanged();
}

void History::stepForward(bool silent)
{
    applyNext();
    if (!silent)
        tellChanged();
}

void History::moveTo(int index)
{
    Q_EMIT doDisableWidgetDisplay();
    while (m_position < index && canStepForward())
        applyNext();
    while (m_position > index && canStepBack())
        takeBackLast();
    Q_EMIT doEnableWidgetDisplay();
}

// The position is the new one while redo() runs, and the stream moves on behind it.
void History::applyNext()
{
    if (!canStepForward())
        return;
    Event *event = m_events.at(++m_position).event;
    event->redo();
    if (ObjectStream *stream = getStream())
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
    if (ObjectStream *stream = getStream())
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
    if (canStepForward()) {
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
