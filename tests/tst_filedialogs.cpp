// links: morvane_ui
// The dialogs that choose a portrait or an import file.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QTimer>

#include <functional>

#include "filedialogs.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

// "title|folder|filter" of the dialog that the call opens, which gets `file` chosen, or is
// cancelled.
QString answering(const QString &file, const std::function<void()> &call)
{
    QString seen;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer.stop();
        seen = QStringList {dialog->windowTitle(), dialog->directory().path(),
                            dialog->nameFilters().join(u',')}
                   .join(u'|');
        if (file.isEmpty()) {
            dialog->reject();
        } else {
            dialog->selectFile(file);
            static_cast<QDialog *>(dialog)->accept();
        }
    });
    timer.start(1);
    call();
    return seen;
}

} // namespace

class FileDialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void choosesPortraits();
    void choosesImports();
};

void FileDialogsTest::choosesPortraits()
{
    const TestDataFolder folder;
    QDir(folder.path()).mkdir(u"pictures"_s);
    const QString outside = folder.file(u"pictures/face.png"_s);
    QImage(4, 4, QImage::Format_RGB32).save(outside);
    const auto expected = [&folder](const QString &name) -> QString {
        return u"Select Portrait Image|"_s + folder.file(name)
            + u"|Images (*.gif *.jpeg *.jpg *.tiff *.png *.bmp *.mng *.svg *.xpm)"_s;
    };
    QString path;
    const auto choose = [&path] { path = selectPortraitFile(nullptr); };
    QCOMPARE(answering(QString(), choose), expected(u"Portraits"_s));
    QCOMPARE(path, QString());
    QCOMPARE(answering(outside, choose), expected(u"Portraits"_s));
    QCOMPARE(path, u"face.png"_s);
    QVERIFY(QFile::exists(folder.file(u"Portraits/face.png"_s)));
    QCOMPARE(answering(QString(), choose), expected(u"pictures"_s));
}

void FileDialogsTest::choosesImports()
{
    const TestDataFolder folder;
    folder.write(u"Characters/aria.dnd4e"_s, u"x"_s);
    folder.write(u"bran.dnd4e"_s, u"x"_s);
    const auto expected = [](const QString &directory) -> QString {
        return u"Select Character Builder File|"_s + directory
            + u"|Character Builder files (*.dnd4e)"_s;
    };
    QString path;
    const auto choose = [&path] { path = selectImportFile(nullptr); };
    QCOMPARE(answering(folder.file(u"bran.dnd4e"_s), choose),
             expected(folder.file(u"Characters"_s)));
    QCOMPARE(path, folder.file(u"bran.dnd4e"_s));
    QCOMPARE(answering(folder.file(u"Characters/aria.dnd4e"_s), choose), expected(folder.path()));
    QCOMPARE(path, u"aria.dnd4e"_s);
}

MORVANE_TEST_MAIN(QApplication, FileDialogsTest)
#include "tst_filedialogs.moc"
