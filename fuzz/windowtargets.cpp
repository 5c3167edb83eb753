#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSettings>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>

#include "creature.h"
#include "creaturedisplay.h"
#include "creaturefile.h"
#include "creaturetext.h"
#include "longtextdelegate.h"
#include "mainwindow.h"
#include "panelhead.h"
#include "progressbar.h"
#include "richtextdelegate.h"
#include "switchboard.h"
#include "targets.h"
#include "terms.h"
#include "text.h"

namespace {

// Away from the user's own.
void useFreshSettings(QByteArrayView bytes)
{
    static const QTemporaryDir folder;
    static int run = 0;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QCoreApplication::setOrganizationName(QStringLiteral("fuzz"));
    // Under a new name each time: the toolkit keeps what it has read of a file.
    QCoreApplication::setApplicationName(QStringLiteral("run%1").arg(++run));
    const QString path = QSettings().fileName();
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(bytes.data(), bytes.size()) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

void drawCells(const QString &text)
{
    QStandardItemModel model(1, 4);
    QTableView view;
    view.setModel(&model);
    for (int column = 0; column < model.columnCount(); ++column)
        model.setData(model.index(0, column), column == 0 ? text : asHtml(text));
    model.setData(model.index(0, 3), QString(text + u';' + text + u';' + text));
    LongTextDelegate line;
    RichTextDelegate rich(false, true, false);
    RichTextDelegate scaled(true, true, true);
    ProgressBarDelegate bar;
    view.setItemDelegateForColumn(0, &line);
    view.setItemDelegateForColumn(1, &rich);
    view.setItemDelegateForColumn(2, &scaled);
    view.setItemDelegateForColumn(3, &bar);
    view.grab();
}

} // namespace

bool Fuzz::openWithSettings(QByteArrayView bytes)
{
    useFreshSettings(bytes);
    bool isWhole = false;
    {
        const QSettings settings;
        isWhole = settings.status() == QSettings::NoError && !settings.allKeys().isEmpty();
    }
    const QString path = QSettings().fileName();
    {
        MainWindow window;
        window.show();
        QCoreApplication::processEvents();
        window.grab();
    }
    QFile::remove(path);
    return isWhole;
}

bool Fuzz::paintTexts(QByteArrayView bytes)
{
    setDefaultTerms();
    CreatureData data;
    parseText(true, bytes.toByteArray(), data, QString());
    const bool isValid = validate(data, true, QStringLiteral("file.txt"));
    Creature creature;
    creature.assign(data);
    creature.extendedRest(false);
    creature.syncShadows();
    const QString text = QString::fromUtf8(bytes);
    creature.setAlias(text);

    for (const bool editing : {false, true}) {
        CreatureDisplay display(editing, true);
        const std::unique_ptr<QWidget> head(display.head());
        const std::unique_ptr<QWidget> area(display.scrollArea());
        display.setCreature(&creature);
        Q_EMIT switchBoard()->doRefreshTimer();
        // As wide as a panel, and as narrow as it gets.
        for (const int width : {320, 120}) {
            head->resize(width, head->sizeHint().height());
            area->resize(width, 400);
            head->grab();
            area->grab();
        }
    }
    drawCells(text);
    return isValid;
}
