#include "importpanel.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QHash>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "creature.h"
#include "monsters.h"

namespace {

const QString PathKey = QStringLiteral("importMonsterDir/path");
constexpr int MostVisited = 100;

enum FileState { Unknown, SameText, OtherText, FileStateCount };
// Whether a list item stands for a folder.
constexpr int IsFolderRole = Qt::UserRole;

QIcon listIcon(const char *name)
{
    return QIcon(QStringLiteral(":/images/") + QLatin1String(name));
}

bool isMonsterFile(const QString &name)
{
    return name.endsWith(QStringLiteral(".monster"));
}

// By file name in lower case: a folder may be as large as the library.
QHash<QString, const Creature *> libraryByFile()
{
    QHash<QString, const Creature *> found;
    for (int i = theMonsters ? theMonsters->count() - 1 : -1; i >= 0; --i) {
        const Creature *creature = theMonsters->at(i);
        if (!creature->isDeleted())
            found.insert(creature->fileName().toLower(), creature);
    }
    return found;
}

// The colours of the icons in words.
QString stateText(FileState state)
{
    switch (state) {
    case SameText:
        return ImportPanel::tr("in the library");
    case OtherText:
        return ImportPanel::tr("in the library with another text");
    default:
        return ImportPanel::tr("not in the library");
    }
}

} // namespace

ImportPanel::ImportPanel(QWidget *parent)
    : QWidget(parent), m_pathBox(new QComboBox), m_files(new QListWidget),
      m_folderIcon(listIcon("folder.png"))
{
    const char *const names[2][FileStateCount] = {
        {"blank-doc.png", "blank-import-doc.png", "blank-import-mod-doc.png"},
        {"monster-doc.png", "imported-doc.png", "imported-doc-mod.png"}};
    for (int isMonster = 0; isMonster < 2; ++isMonster)
        for (int state = 0; state < FileStateCount; ++state)
            m_fileIcons[isMonster][state] = listIcon(names[isMonster][state]);

    m_pathBox->setObjectName(QStringLiteral("importPathBox"));
    m_pathBox->setAccessibleName(tr("Import directory"));
    m_pathBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_files->setObjectName(QStringLiteral("importFileList"));
    m_files->setAccessibleName(tr("Files to import"));
    m_files->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_files->setUniformItemSizes(true);
    QWidget *buttons = createButtons();
    setLayout(vBox(m_pathBox, m_files, buttons));

    // Only a choice of the user's, not a box that is filled.
    connect(m_pathBox, &QComboBox::activated, this, &ImportPanel::onImportDirPopupClicked);
    connect(m_files, &QListWidget::itemSelectionChanged, this,
            &ImportPanel::onImportDirSelectionChanged);
    connect(m_files, &QListWidget::itemDoubleClicked, this, &ImportPanel::onImportDirDoubleClick);
    // Return does as a double-click does.
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *shortcut = new QShortcut(key, m_files, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (QListWidgetItem *item = m_files->currentItem())
                onImportDirDoubleClick(item);
        });
    }
    QString path = QSettings().value(PathKey).toString();
    if (path.isEmpty() || !QDir(path).exists())
        path = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    setImportDir(QDir(path).exists() ? path : QDir::homePath());
}

QPushButton *ImportPanel::addButton(const QString &text, const QString &tip, const char *name,
                                    void (ImportPanel::*slot)())
{
    auto *button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget *ImportPanel::createButtons()
{
    QPushButton *select =
        addButton(tr("Select Directory..."), tr("Select a directory with files to import"),
                  "selectImportDir", &ImportPanel::onSelectImportDir);
    m_import = addButton(tr("Import Selection"), tr("Import or re-import selected monster files"),
                         "importSelection", &ImportPanel::onImportSelected);
    m_previous = addButton(tr("Previous"), tr("Previous directory"), "previousImportDir",
                           &ImportPanel::onImportPrevDirClicked);
    m_next = addButton(tr("Next"), tr("Next directory"), "nextImportDir",
                       &ImportPanel::onImportNextClicked);
    QPushButton *refresh = addButton(QString(), tr("Refresh directory list"), "refreshImportDir",
                                     &ImportPanel::onImportRefreshClicked);
    refresh->setIcon(listIcon("refresh.png"));
    refresh->setAccessibleName(tr("Refresh"));
    return vWidget(hWidget(select, m_import), hWidget(false, true, m_previous, m_next, refresh));
}

// --- the folder ---

void ImportPanel::setImportDir(const QString &path)
{
    const QString dir = QDir::cleanPath(QDir::fromNativeSeparators(path));
    if (dir == m_importDir || dir.isEmpty())
        return;
    m_importDir = dir;
    m_dirHistory.resize(m_dirHistoryPos + 1);
    m_dirHistory << dir;
    while (m_dirHistory.size() > MostVisited)
        m_dirHistory.removeFirst();
    m_dirHistoryPos = int(m_dirHistory.size()) - 1;
    QSettings().setValue(PathKey, dir);
    showDir();
}

void ImportPanel::stepDir(int delta)
{
    const int position = m_dirHistoryPos + delta;
    if (position < 0 || position >= m_dirHistory.size())
        return;
    m_dirHistoryPos = position;
    m_importDir = m_dirHistory.at(position);
    showDir();
}

void ImportPanel::onImportPrevDirClicked()
{
    stepDir(-1);
}

void ImportPanel::onImportNextClicked()
{
    stepDir(1);
}

void ImportPanel::onSelectImportDir()
{
    QFileDialog dialog(this, tr("Select Import Directory"), m_importDir);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() && !dialog.selectedFiles().isEmpty())
        setImportDir(dialog.selectedFiles().constFirst());
}

void ImportPanel::onImportDirPopupClicked()
{
    QStringList parts;
    for (int i = 0; i <= m_pathBox->currentIndex(); ++i)
        parts << m_pathBox->itemText(i);
    // The first one is the root of the file system or the name of a drive.
    QString path = parts.takeFirst();
    if (!path.endsWith(u'/'))
        path += u'/';
    setImportDir(path + parts.join(u'/'));
}

void ImportPanel::showDir()
{
    fillPathBox();
    updateButtons();
    // Files are looked at once the panel is to be seen.
    if (isVisible())
        fillFileList();
    else
        m_files->clear();
}

void ImportPanel::fillPathBox()
{
    m_pathBox->clear();
    QStringList parts = m_importDir.split(u'/', Qt::SkipEmptyParts);
    if (m_importDir.startsWith(u'/'))
        parts.prepend(QStringLiteral("/"));
    m_pathBox->addItems(parts);
    m_pathBox->setCurrentIndex(m_pathBox->count() - 1);
}

void ImportPanel::fillFileList()
{
    m_files->clear();
    const QHash<QString, const Creature *> library = libraryByFile();
    const QFileInfoList entries =
        QDir(m_importDir)
            .entryInfoList(QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot,
                           QDir::DirsFirst | QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &entry : entries) {
        auto *item = new QListWidgetItem(entry.fileName(), m_files);
        item->setData(IsFolderRole, entry.isDir());
        if (entry.isDir()) {
            item->setIcon(m_folderIcon);
            item->setData(Qt::AccessibleDescriptionRole, tr("folder"));
            continue;
        }
        const Creature *known = library.value(entry.fileName().toLower());
        const FileState state = !known                 ? Unknown
            : known->importIsCurrent(entry.filePath()) ? SameText
                                                       : OtherText;
        item->setIcon(m_fileIcons[isMonsterFile(entry.fileName())][state]);
        item->setToolTip(stateText(state));
        item->setData(Qt::AccessibleDescriptionRole, stateText(state));
    }
    onImportDirSelectionChanged();
}

void ImportPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fillFileList();
}

void ImportPanel::updateButtons()
{
    m_previous->setEnabled(m_dirHistoryPos > 0);
    m_next->setEnabled(m_dirHistoryPos < m_dirHistory.size() - 1);
}

// --- the files ---

QString ImportPanel::pathOf(const QListWidgetItem &item) const
{
    return QDir(m_importDir).filePath(item.text());
}

// Keeps the rows that are selected.
void ImportPanel::onImportRefreshClicked()
{
    QSet<QString> selected;
    for (const QListWidgetItem *item : m_files->selectedItems())
        selected << item->text();
    fillFileList();
    {
        const QSignalBlocker once(m_files);
        for (int row = 0; row < m_files->count(); ++row)
            m_files->item(row)->setSelected(selected.contains(m_files->item(row)->text()));
    }
    onImportDirSelectionChanged();
}

void ImportPanel::onImportDirSelectionChanged()
{
    bool hasFile = false;
    for (const QListWidgetItem *item : m_files->selectedItems())
        hasFile |= !item->data(IsFolderRole).toBool();
    m_import->setEnabled(hasFile);
}

void ImportPanel::onImportDirDoubleClick(QListWidgetItem *item)
{
    const QString path = pathOf(*item);
    if (item->data(IsFolderRole).toBool()) {
        setImportDir(path);
        m_files->setFocus();
    } else {
        Q_EMIT doImport({path});
    }
}

void ImportPanel::onImportSelected()
{
    QStringList paths;
    for (const QListWidgetItem *item : m_files->selectedItems())
        if (!item->data(IsFolderRole).toBool())
            paths << pathOf(*item);
    if (!paths.isEmpty())
        Q_EMIT doImport(paths);
}

#include "moc_importpanel.cpp"
