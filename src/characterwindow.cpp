#include "characterwindow.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>

#include "characterform.h"
#include "characters.h"
#include "creaturedisplay.h"
#include "creaturefile.h"
#include "creaturetext.h"
#include "filedialogs.h"
#include "global.h"
#include "librarylistmodel.h"
#include "librarypane.h"
#include "libraryquestions.h"
#include "messagedialog.h"
#include "paths.h"
#include "smallwidgets.h"
#include "switchboard.h"
#include "terms.h"
#include "text.h"

namespace {

constexpr QSize DefaultSize(980, 800);
constexpr int ListWidth = 220;
constexpr int PortraitSize = 140;
const QString GeometryKey = QStringLiteral("characterWindow/geometry");
const QString ReadOnlyKey = QStringLiteral("characterWindow/statBlockReadOnly");

} // namespace

CharacterWindow::CharacterWindow(QWidget *parent)
    : QWidget(parent), m_list(new LibraryPane(new CharacterListModel)), m_form(new CharacterForm),
      m_display(new CreatureDisplay(true, false, this)), m_tabs(new QTabWidget),
      m_text(new QPlainTextEdit), m_writeable(new QCheckBox(tr("Stat block writeable"))),
      m_portrait(new QLabel), m_portraitFile(new QLabel), m_importFile(new QLabel),
      m_importPath(new QLabel), m_importNote(label(QString())),
      m_linked(new QCheckBox(tr("Link to the import file")))
{
    setObjectName(QStringLiteral("characterCreator"));
    setWindowTitle(tr("Character Creator"));
    m_tabs->setObjectName(QStringLiteral("characterTabs"));
    m_tabs->addTab(createEditTab(), tr("Edit"));
    m_tabs->addTab(createTextTab(), tr("Stat Block Text"));
    m_tabs->addTab(vWidget(m_display->head(), m_display->scrollArea()), tr("View"));
    for (int tab = 1; tab < m_tabs->count(); ++tab)
        m_tabs->widget(tab)->layout()->setContentsMargins(6, 6, 6, 6);
    auto *sides = new QSplitter;
    sides->setChildrenCollapsible(false);
    sides->addWidget(createList());
    sides->addWidget(m_tabs);
    sides->setStretchFactor(1, 1);
    sides->setSizes({ListWidth, DefaultSize.width() - ListWidth});
    QVBoxLayout *box = vBox(sides);
    box->setContentsMargins(8, 8, 8, 8);
    setLayout(box);
    resize(DefaultSize.boundedTo(screen()->availableSize() * 0.95));
    connectSignals();
    updateTerms();
    m_text->setReadOnly(!m_writeable->isChecked());
    onCharacterSelectionChanged();
    theCharacterWindow = this;
}

CharacterWindow::~CharacterWindow()
{
    theCharacterWindow = nullptr;
}

// --- construction ---

QPushButton *CharacterWindow::addButton(const QString &text, const char *name,
                                        void (CharacterWindow::*slot)())
{
    auto *button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget *CharacterWindow::createList()
{
    m_list->view()->setObjectName(QStringLiteral("characterList"));
    m_list->view()->setAccessibleName(tr("Characters"));
    QPushButton *create = addButton(tr("New"), "newCharacter", &CharacterWindow::onNewCharacter);
    m_delete = addButton(tr("Delete"), "deleteCharacter", &CharacterWindow::onDeleteCharacter);
    m_revert = addButton(tr("Revert All"), "revertAll", &CharacterWindow::onRevertAll);
    m_revert->setToolTip(tr("Discard all changes"));
    m_save = addButton(tr("Save All"), "saveAll", &CharacterWindow::onSaveAll);
    m_save->setToolTip(tr("Save all changes"));
    return vWidget(m_list, hWidget(create, m_delete), hWidget(m_revert, m_save));
}

QWidget *CharacterWindow::createPortrait()
{
    m_portrait->setFixedSize(PortraitSize, PortraitSize);
    m_portrait->setFrameShape(QFrame::StyledPanel);
    m_portrait->setAlignment(Qt::AlignCenter);
    m_portraitFile->setObjectName(QStringLiteral("portraitFileLabel"));
    m_portraitFile->setWordWrap(true);
    m_selectPortrait =
        addButton(tr("Select..."), "selectPortrait", &CharacterWindow::onSelectPortrait);
    m_selectPortrait->setAccessibleName(tr("Select a portrait"));
    QVBoxLayout *box = vBox(m_portrait, m_portraitFile, m_selectPortrait);
    box->addStretch();
    QWidget *made = wrap(box);
    made->setFixedWidth(PortraitSize);
    return made;
}

QWidget *CharacterWindow::createImport()
{
    auto *group = new QGroupBox(tr("Import from .dnd4e File"));
    m_importFile->setObjectName(QStringLiteral("importFileLabel"));
    m_importPath->setObjectName(QStringLiteral("importPathLabel"));
    m_linked->setObjectName(QStringLiteral("linkedBox"));
    m_importPath->setWordWrap(true);
    m_importNote->setWordWrap(true);
    m_selectImport = addButton(tr("Select..."), "selectImport", &CharacterWindow::onSelectImport);
    m_selectImport->setAccessibleName(tr("Select an import file"));
    m_refreshImport = addButton(tr("Refresh"), "refreshImport", &CharacterWindow::onRefreshImport);
    auto *grid = new QGridLayout(group);
    grid->addWidget(label(tr("<b>File:</b>")), 0, 0);
    grid->addWidget(m_importFile, 0, 1);
    grid->addWidget(m_selectImport, 0, 2);
    grid->addWidget(label(tr("<b>Path:</b>")), 1, 0);
    grid->addWidget(m_importPath, 1, 1);
    grid->addWidget(m_refreshImport, 1, 2);
    grid->addWidget(m_linked, 2, 0, 1, 3);
    grid->addWidget(m_importNote, 3, 0, 1, 3);
    grid->setColumnStretch(1, 1);
    return group;
}

QWidget *CharacterWindow::createEditTab()
{
    QHBoxLayout *top = hBox(m_form, createPortrait());
    top->setStretch(0, 1);
    top->setSpacing(12);
    QVBoxLayout *box = vBox(wrap(top), createImport());
    box->addStretch();
    box->setContentsMargins(6, 6, 6, 6);
    // On a small screen, or with a large font.
    auto *area = new ResizableScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(wrap(box));
    return area;
}

QWidget *CharacterWindow::createTextTab()
{
    m_text->setObjectName(QStringLiteral("characterTextEdit"));
    m_text->setAccessibleName(tr("Stat Block Text"));
    m_text->setTabChangesFocus(true);
    m_writeable->setObjectName(QStringLiteral("writeableBox"));
    m_writeable->setChecked(!QSettings().value(ReadOnlyKey, true).toBool());
    return vWidget(m_text, m_writeable);
}

void CharacterWindow::connectSignals()
{
    connect(m_list, &LibraryPane::doSelectionChanged, this,
            &CharacterWindow::onCharacterSelectionChanged);
    connect(m_list->view(), &LibraryView::doDeletePressed, this,
            &CharacterWindow::onDeleteCharacter);
    connect(m_form, &CharacterForm::doFieldChanged, this, &CharacterWindow::onFieldChanged);
    connect(m_text, &QPlainTextEdit::textChanged, this, &CharacterWindow::onCharacterStatsChanged);
    connect(m_writeable, &QCheckBox::clicked, this, &CharacterWindow::onWriteableClicked);
    connect(m_linked, &QCheckBox::clicked, this, &CharacterWindow::onLinkedClicked);
    connect(m_display, &CreatureDisplay::doPortraitClicked, this,
            &CharacterWindow::onSelectPortrait);
    connect(switchBoard(), &SwitchBoard::doCreatureUpdated, this,
            &CharacterWindow::onCreatureChanged);
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, this,
            &CharacterWindow::onSaveAll);
    if (theCharacters)
        connect(theCharacters, &Characters::doCharactersUpdated, this,
                &CharacterWindow::onCharacterListChanged);
}

void CharacterWindow::updateTerms()
{
    m_form->updateTerms();
    m_importNote->setText(
        tr("When linked to the import file, Morvane will automatically update statistics during "
           "an %1. You can press the 'Refresh' button at any time to load and save the latest "
           "values.")
            .arg(asHtml(term(Term::ExtendedRest), LongestName)));
}

// --- what is shown ---

Creature *CharacterWindow::selected() const
{
    return m_list->selected();
}

void CharacterWindow::refresh()
{
    updateTerms();
    onCharacterListChanged();
}

void CharacterWindow::onCharacterListChanged()
{
    m_list->refresh();
    showAll();
}

void CharacterWindow::onCharacterSelectionChanged()
{
    m_display->setCreature(selected());
    showAll();
}

void CharacterWindow::showAll()
{
    const QScopedValueRollback updating(m_updating, true);
    m_form->show(selected());
    showRest();
}

void CharacterWindow::showRest()
{
    const QScopedValueRollback updating(m_updating, true);
    Creature *creature = selected();
    const QString text = creature ? creature->statBlock() : QString();
    if (m_text->toPlainText() != text)
        m_text->setPlainText(text);
    m_text->setEnabled(creature);
    showPortrait(creature);
    showImport(creature);
    m_display->markDirty();
    if (creature)
        m_list->model()->noteChanged(creature);
    updateButtons();
}

void CharacterWindow::showPortrait(const Creature *creature)
{
    const QString file = creature ? creature->portraitFile() : QString();
    m_portraitFile->setText(file.isEmpty() ? tr("*.gif, *.jpg, *.png, etc.")
                                           : shortened(file, LongestName));
    const QPixmap &own = creature ? creature->portrait() : QPixmap();
    const QPixmap picture = !own.isNull() ? own : blankPortrait ? *blankPortrait : QPixmap();
    m_portrait->setPixmap(picture.isNull()
                              ? picture
                              : picture.scaled(QSize(PortraitSize - 6, PortraitSize - 6),
                                               Qt::KeepAspectRatio, Qt::SmoothTransformation));
    m_selectPortrait->setEnabled(creature && !creature->isMonster());
}

void CharacterWindow::showImport(const Creature *creature)
{
    const QString file = creature ? creature->importFile() : QString();
    m_importFile->setText(file.isEmpty() ? tr("*.dnd4e")
                                         : shortened(QFileInfo(file).fileName(), LongestName));
    // One that lies among the characters is stored without its folder.
    const QFileInfo place(QDir(creaturePath(QString(), false)), file);
    m_importPath->setText(file.isEmpty() ? QString() : shortened(place.path()));
    m_linked->setChecked(creature && creature->isLinked());
    m_selectImport->setEnabled(creature);
    m_linked->setEnabled(!file.isEmpty());
    m_refreshImport->setEnabled(!file.isEmpty());
}

void CharacterWindow::updateRow(Creature *creature)
{
    if (theCharacters->resort(creature) >= 0)
        m_list->refresh();
}

void CharacterWindow::updateButtons()
{
    const bool canSave = theCharacters
        && (theCharacters->counters().isNew > 0 || theCharacters->counters().isModified > 0
            || theCharacters->counters().isDeleted > 0);
    m_delete->setEnabled(selected());
    m_revert->setEnabled(canSave);
    m_save->setEnabled(canSave);
}

// A fight changes creatures often: a hidden window reads them once it is shown.
void CharacterWindow::onCreatureChanged(Creature *creature)
{
    if (m_updating || !theCharacters || (creature && creature->isMonster()))
        return;
    if (!isVisible()) {
        m_isStale = true;
        return;
    }
    const QScopedValueRollback updating(m_updating, true);
    if (creature)
        updateRow(creature);
    else
        m_list->refresh();
    if (!creature || creature == selected())
        showAll();
    else
        updateButtons();
}

// --- new and deleted ---

void CharacterWindow::onNewCharacter()
{
    Creature *added = nullptr;
    {
        const QScopedValueRollback updating(m_updating, true);
        added = theCharacters->addNew(theCharacters->newCharacter());
        // As the box shows it: who has no bonus takes no turns.
        added->setField(&CreatureData::initBonus, 0);
        m_list->refresh();
    }
    m_list->select(added);
    m_tabs->setCurrentIndex(0);
    m_form->focusOnName();
}

void CharacterWindow::onDeleteCharacter()
{
    const QPointer<Creature> creature = selected();
    if (!creature)
        return;
    if (!creature->isNew() && !creature->isInvalid()
        && !askDelete(QStringLiteral("characterWindow/deleteMonster"), creature->name(),
                      creature->fileName()))
        return;
    if (!creature)
        return;
    {
        const QScopedValueRollback updating(m_updating, true);
        if (creature->isNew())
            clearFlags(*creature);
        else
            creature->setDeleted(true);
        theCharacters->remove(theCharacters->indexOf(creature), true);
    }
    onCharacterListChanged();
}

// --- fields ---

void CharacterWindow::onFieldChanged(CharacterField field)
{
    Creature *creature = selected();
    if (m_updating || !creature)
        return;
    if (field == CharacterField::Name) {
        onNameChanged();
        return;
    }
    const QScopedValueRollback updating(m_updating, true);
    m_form->store(field, *creature);
    // The running values change with these two.
    if (field == CharacterField::HP || field == CharacterField::Surges)
        m_form->show(creature);
    showRest();
}

void CharacterWindow::onNameChanged()
{
    Creature *creature = selected();
    if (m_updating || !creature)
        return;
    const QScopedValueRollback updating(m_updating, true);
    const QString oldName = creature->name();
    const QString newName = m_form->text(CharacterField::Name).trimmed();
    if (newName != oldName) {
        creature->setField(&CreatureData::name, newName);
        // With a name that no load accepts it would be lost to the next start.
        if (!isUsableName(newName) || !checkDuplicate(creature, oldName, newName))
            creature->setField(&CreatureData::name, oldName);
        else
            updateRow(creature);
    }
    m_form->show(creature);
    showRest();
}

bool CharacterWindow::checkDuplicate(Creature *creature, const QString &oldName,
                                     const QString &newName, const CreatureData *record)
{
    const NameState state =
        oldName == newName ? NameState::Free : theCharacters->nameState(newName, creature);
    if (state != NameState::Free) {
        const QString text = state == NameState::TakenByDeleted
            ? tr("You have just deleted a character called <b>%1</b>.<p>You must save the change "
                 "before you can create another character with the same name.")
            : tr("You already have a character called <b>%1</b>.<p>Another one would cause "
                 "confusion!");
        showMessage(tr("Duplicate %1").arg(shortened(newName, LongestName)),
                    text.arg(asHtml(newName, LongestName)));
        return false;
    }
    if (record) {
        creature->assign(*record);
        creature->statBlockChanged();
    }
    return true;
}

void CharacterWindow::onClassChanged()
{
    onFieldChanged(CharacterField::Class);
}
void CharacterWindow::onRaceChanged()
{
    onFieldChanged(CharacterField::Race);
}
void CharacterWindow::onRoleChanged()
{
    onFieldChanged(CharacterField::Role);
}
void CharacterWindow::onLevelChanged()
{
    onFieldChanged(CharacterField::Level);
}
void CharacterWindow::onACChanged()
{
    onFieldChanged(CharacterField::ArmourClass);
}
void CharacterWindow::onFortChanged()
{
    onFieldChanged(CharacterField::Fortitude);
}
void CharacterWindow::onReflChanged()
{
    onFieldChanged(CharacterField::Reflex);
}
void CharacterWindow::onWillChanged()
{
    onFieldChanged(CharacterField::Will);
}
void CharacterWindow::onCurrHPChanged()
{
    onFieldChanged(CharacterField::CurrentHP);
}
void CharacterWindow::onHPChanged()
{
    onFieldChanged(CharacterField::HP);
}
void CharacterWindow::onCurrHSChanged()
{
    onFieldChanged(CharacterField::CurrentSurges);
}
void CharacterWindow::onHSChanged()
{
    onFieldChanged(CharacterField::Surges);
}
void CharacterWindow::onSurgeValueChanged()
{
    onFieldChanged(CharacterField::SurgeValue);
}
void CharacterWindow::onSpeedChanged()
{
    onFieldChanged(CharacterField::Speed);
}
void CharacterWindow::onInitChanged()
{
    onFieldChanged(CharacterField::Initiative);
}
void CharacterWindow::onCurrAPChanged()
{
    onFieldChanged(CharacterField::ActionPoints);
}
void CharacterWindow::onPerceptionChanged()
{
    onFieldChanged(CharacterField::Perception);
}
void CharacterWindow::onInsightChanged()
{
    onFieldChanged(CharacterField::Insight);
}
void CharacterWindow::onStrChanged()
{
    onFieldChanged(CharacterField::Strength);
}
void CharacterWindow::onDexChanged()
{
    onFieldChanged(CharacterField::Dexterity);
}
void CharacterWindow::onWisChanged()
{
    onFieldChanged(CharacterField::Wisdom);
}
void CharacterWindow::onConChanged()
{
    onFieldChanged(CharacterField::Constitution);
}
void CharacterWindow::onIntChanged()
{
    onFieldChanged(CharacterField::Intelligence);
}
void CharacterWindow::onChaChanged()
{
    onFieldChanged(CharacterField::Charisma);
}
void CharacterWindow::onAlignmentChanged()
{
    onFieldChanged(CharacterField::Alignment);
}
void CharacterWindow::onLanguagesChanged()
{
    onFieldChanged(CharacterField::Languages);
}

// --- text ---

void CharacterWindow::onWriteableClicked()
{
    const bool isReadOnly = !m_writeable->isChecked();
    m_text->setReadOnly(isReadOnly);
    QSettings().setValue(ReadOnlyKey, isReadOnly);
}

// A text that can't be read stays as it is typed, and the fields as they were.
void CharacterWindow::onCharacterStatsChanged()
{
    Creature *creature = selected();
    const QString text = m_text->toPlainText();
    if (m_updating || !creature || text == creature->statBlock())
        return;
    CreatureData record;
    if (!parseText(false, text.toUtf8(), record, QString()) || !isUsableName(record.name))
        return;
    const QScopedValueRollback updating(m_updating, true);
    if (checkDuplicate(creature, creature->name(), record.name, &record)) {
        updateRow(creature);
        m_form->show(creature);
    }
    showRest();
}

// --- portrait and import ---

void CharacterWindow::onSelectPortrait()
{
    const QPointer<Creature> creature = selected();
    const QString path = creature && !creature->isMonster() ? selectPortraitFile(this) : QString();
    if (path.isEmpty() || !creature)
        return;
    const QScopedValueRollback updating(m_updating, true);
    creature->setPortrait(path);
    showRest();
}

bool CharacterWindow::importFrom(Creature *creature, const QString &path)
{
    const QScopedValueRollback updating(m_updating, true);
    if (!creature->refreshFromImport(path))
        return false;
    if (creature->importFile() != path)
        creature->setField(&CreatureData::importFile, path);
    updateRow(creature);
    m_form->show(selected());
    showRest();
    return true;
}

void CharacterWindow::onSelectImport()
{
    const QPointer<Creature> creature = selected();
    const QString path = creature ? selectImportFile(this) : QString();
    if (!path.isEmpty() && creature)
        importFrom(creature, path);
}

void CharacterWindow::onRefreshImport()
{
    Creature *creature = selected();
    if (!creature)
        return;
    const QString file = creature->importFile();
    if (!importFrom(creature, file))
        showMessage(tr("File Not Found"),
                    tr("Import file, <b>%1</b>, not found.").arg(asHtml(file)));
}

void CharacterWindow::onLinkedClicked()
{
    Creature *creature = selected();
    if (m_updating || !creature)
        return;
    const QScopedValueRollback updating(m_updating, true);
    creature->setField(&CreatureData::linked, m_linked->isChecked());
    showRest();
}

// --- all of them ---

void CharacterWindow::saveAll()
{
    onNameChanged(); // one that is still being typed
    {
        const QScopedValueRollback updating(m_updating, true);
        theCharacters->saveAll();
    }
    onCharacterListChanged();
}

void CharacterWindow::onSaveAll()
{
    saveAll();
    tellUnsaved(theCharacters->changedNames());
}

void CharacterWindow::onRevertAll()
{
    if (!askRevertAll(tr("Do you really want to discard all changes?<p>This action will restore "
                         "all Characters to the last saved state.")))
        return;
    {
        const QScopedValueRollback updating(m_updating, true);
        theCharacters->revertAll();
    }
    onCharacterListChanged();
}

void CharacterWindow::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        restoreGeometry(QSettings().value(GeometryKey).toByteArray());
        if (std::exchange(m_isStale, false))
            onCharacterListChanged();
    }
    QWidget::showEvent(event);
}

void CharacterWindow::closeEvent(QCloseEvent *event)
{
    QSettings().setValue(GeometryKey, saveGeometry());
    QWidget::closeEvent(event);
}

#include "moc_characterwindow.cpp"
