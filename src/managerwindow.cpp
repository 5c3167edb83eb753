#include "managerwindow.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QSplitter>

#include "encountereditor.h"
#include "encounters.h"
#include "libraryquestions.h"
#include "monstereditor.h"
#include "monsters.h"

namespace {

constexpr QSize DefaultSize(1280, 760);
const QString GeometryKey = QStringLiteral("managerWindow/geometry");

bool hasChanges(const ChangeCounters &counters)
{
    return counters.isNew > 0 || counters.isModified > 0 || counters.isDeleted > 0;
}

} // namespace

ManagerWindow::ManagerWindow(QWidget *parent)
    : QWidget(parent), m_monsters(new MonsterEditor), m_encounters(new EncounterEditor),
      m_revert(new QPushButton(tr("Revert All"))), m_save(new QPushButton(tr("Save All")))
{
    setObjectName(QStringLiteral("managerWindow"));
    setWindowTitle(tr("Monster Manager"));
    m_revert->setObjectName(QStringLiteral("revertAll"));
    m_revert->setToolTip(tr("Discard all changes"));
    m_save->setObjectName(QStringLiteral("saveAll"));
    m_save->setToolTip(tr("Save all changes"));
    auto *sides = new QSplitter;
    sides->setChildrenCollapsible(false);
    sides->addWidget(m_monsters);
    sides->addWidget(m_encounters);
    sides->setStretchFactor(0, 1);
    sides->setStretchFactor(1, 1);
    QVBoxLayout *box = vBox(sides, hWidget(true, false, m_revert, m_save));
    box->setStretch(0, 1);
    box->setContentsMargins(8, 8, 8, 8);
    setLayout(box);
    resize(DefaultSize.boundedTo(screen()->availableSize() * 0.95));

    connect(m_monsters, &MonsterEditor::doAdd, this, [this](const Creature *monster) {
        if (monster)
            m_encounters->addMonster(*monster);
    });
    connect(m_monsters, &MonsterEditor::doTemplatesChanged, m_encounters,
            &EncounterEditor::refreshTemplates);
    connect(m_encounters, &EncounterEditor::doSelectionChanged, this,
            [this] { m_monsters->setCanAdd(m_encounters->selected()); });
    connect(m_monsters, &MonsterEditor::doChanged, this, &ManagerWindow::updateButtons);
    connect(m_encounters, &EncounterEditor::doChanged, this, &ManagerWindow::updateButtons);
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, m_save,
            &QPushButton::click);
    connect(m_revert, &QPushButton::clicked, this, &ManagerWindow::onRevertAll);
    connect(m_save, &QPushButton::clicked, this, &ManagerWindow::onSaveAll);
    if (theMonsters)
        connect(theMonsters, &Monsters::doTemplatesUpdated, this,
                &ManagerWindow::onTemplateListChanged);
    if (theEncounters)
        connect(theEncounters, &Encounters::doEncountersUpdated, this,
                &ManagerWindow::onEncounterListUpdated);
    updateButtons();
    theManagerWindow = this;
}

ManagerWindow::~ManagerWindow()
{
    theManagerWindow = nullptr;
}

void ManagerWindow::refresh()
{
    m_monsters->refresh();
    m_encounters->refresh();
    m_monsters->refreshImport();
    updateButtons();
}

void ManagerWindow::onTemplateListChanged()
{
    m_monsters->refresh();
    m_encounters->refreshTemplates();
    updateButtons();
}

void ManagerWindow::onEncounterListUpdated()
{
    m_encounters->refresh();
    updateButtons();
}

void ManagerWindow::updateButtons()
{
    const bool canSave = theMonsters && theEncounters
        && (hasChanges(theMonsters->counters()) || hasChanges(theEncounters->counters()));
    // The focus stays in this window's lists, and doesn't go on to whatever comes next.
    if (!canSave && (m_revert->hasFocus() || m_save->hasFocus()))
        m_monsters->focusOnList();
    m_revert->setEnabled(canSave);
    m_save->setEnabled(canSave);
}

void ManagerWindow::saveAll()
{
    theMonsters->saveAll();
    theEncounters->saveAll();
    refresh();
}

void ManagerWindow::onSaveAll()
{
    saveAll();
    tellUnsaved(theMonsters->changedNames() + theEncounters->changedNames());
}

void ManagerWindow::onRevertAll()
{
    if (!askRevertAll(tr("Do you really want to discard all changes?<p>This action will restore "
                         "the Monster and Encounter lists to the last saved state.")))
        return;
    theMonsters->revertAll();
    theEncounters->revertAll();
    refresh();
}

void ManagerWindow::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        restoreGeometry(QSettings().value(GeometryKey).toByteArray());
    QWidget::showEvent(event);
}

void ManagerWindow::closeEvent(QCloseEvent *event)
{
    QSettings().setValue(GeometryKey, saveGeometry());
    QWidget::closeEvent(event);
}

#include "moc_managerwindow.cpp"
