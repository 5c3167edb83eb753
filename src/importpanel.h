// A folder of monster files to take into the library, with the way back through those visited.
#pragma once

#include <QIcon>
#include <QStringList>
#include <QWidget>

#include "windowsanddialogs.h"

class QComboBox;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QToolButton;

// Tells which files are asked for and takes none itself. Each file's icon says whether the library
// has it, and whether with the same text.
class ImportPanel : public QWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit ImportPanel(QWidget *parent = nullptr);

    // With forward slashes and no "/" at its end.
    const QString &importDir() const { return m_importDir; }
    // Enters the folder, and makes it the last of those visited.
    void setImportDir(const QString &path);

Q_SIGNALS:
    // Full paths.
    void doImport(const QStringList &paths);

public Q_SLOTS:
    void onSelectImportDir();
    void onImportSelected();
    // A folder above the present one was chosen in the box.
    void onImportDirPopupClicked();
    void onImportNextClicked();
    void onImportPrevDirClicked();
    void onImportRefreshClicked();
    void onImportDirSelectionChanged();
    void onImportDirDoubleClick(QListWidgetItem *item);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *createButtons();
    QPushButton *addButton(const QString &text, const QString &tip, const char *name,
                           void (ImportPanel::*slot)());
    void stepDir(int delta);
    void showDir();
    void fillPathBox();
    void fillFileList();
    void updateButtons();
    QString pathOf(const QListWidgetItem &item) const;

    QString m_importDir;
    QStringList m_dirHistory;
    int m_dirHistoryPos = -1;
    QComboBox *m_pathBox;
    QListWidget *m_files;
    QPushButton *m_import;
    QPushButton *m_previous;
    QPushButton *m_next;
    QIcon m_folderIcon;
    // By isMonsterFile() and FileState.
    QIcon m_fileIcons[2][3];
};
