#include "monstereditor.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>

#include "creaturedisplay.h"
#include "creaturefile.h"
#include "creaturetext.h"
#include "doubleplaintextedit.h"
#include "encounters.h"
#include "filedialogs.h"
#include "importpanel.h"
#include "librarylistmodel.h"
#include "librarypane.h"
#include "libraryquestions.h"
#include "messagedialog.h"
#include "monsters.h"
#include "renamedialog.h"
#include "safefile.h"
#include "statblockreading.h"
#include "text.h"
#include "tidystatblock.h"

namespace {

constexpr int LongestList = 12; // names in a summary

// For a summary: a few names, and how many more.
QString listed(const QStringList &names)
{
    QStringList some;
    for (const QString &name : names.mid(0, LongestList))
        some << asHtml(name, LongestName);
    const qsizetype more = names.size() - some.size();
    if (more > 0)
        some << MonsterEditor::tr("and %1 more").arg(more);
    return some.join(QStringLiteral(", "));
}

} // namespace

MonsterEditor::MonsterEditor(QWidget *parent)
    : QGroupBox(tr("Monster"), parent), m_list(new LibraryPane(new TemplateListModel)),
      m_text(new DoublePlainTextEdit(this)), m_display(new CreatureDisplay(true, false, this)),
      m_import(new ImportPanel), m_tabs(new QTabWidget), m_reading(label(QString()))
{
    m_list->view()->setObjectName(QStringLiteral("monsterList"));
    m_list->view()->setAccessibleName(tr("Monsters"));
    auto *splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(vWidget(m_list, createButtons()));
    splitter->addWidget(createTabs());
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    QVBoxLayout *box = vBox(splitter);
    box->setContentsMargins(8, 8, 8, 8);
    setLayout(box);
    connect(m_list, &LibraryPane::doSelectionChanged, this,
            &MonsterEditor::onTemplateSelectionChanged);
    connect(m_list->view(), &LibraryView::doDeletePressed, this, &MonsterEditor::onDeleteTemplate);
    connect(m_text, &DoublePlainTextEdit::textChanged, this,
            &MonsterEditor::onTemplateStatsChanged);
    connect(m_text, &DoublePlainTextEdit::doTidied, this, &MonsterEditor::tellReading);
    connect(m_display, &CreatureDisplay::doPortraitClicked, this,
            &MonsterEditor::onTemplatePortraitClicked);
    connect(m_import, &ImportPanel::doImport, this, &MonsterEditor::onImport);
    connect(m_tabs, &QTabWidget::currentChanged, this, &MonsterEditor::onTemplateTabChanged);
    onTemplateSelectionChanged();
}

QPushButton *MonsterEditor::addButton(const QString &text, const QString &tip, const char *name,
                                      void (MonsterEditor::*slot)())
{
    auto *button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget *MonsterEditor::createButtons()
{
    QPushButton *create = addButton(tr("New"), tr("Create a new monster"), "newTemplate",
                                    &MonsterEditor::onNewTemplate);
    QPushButton *paste =
        addButton(tr("New && Paste"), tr("Use already copied data to create a monster"),
                  "newAndPasteTemplate", &MonsterEditor::onNewAndPasteTemplate);
    m_delete = addButton(tr("Delete"), tr("Delete this monster"), "deleteTemplate",
                         &MonsterEditor::onDeleteTemplate);
    m_add = addButton(tr("Add"), tr("Add this monster to the encounter"), "addTemplate",
                      &MonsterEditor::onAddTemplate);
    m_add->setIcon(QIcon(QStringLiteral(":/images/arrow-right128.png")));
    return vWidget(hWidget(create, paste), hWidget(m_delete, m_add));
}

QWidget *MonsterEditor::createTabs()
{
    m_tabs->setObjectName(QStringLiteral("monsterTabs"));
    m_text->first()->setObjectName(QStringLiteral("statBlockEdit"));
    m_text->second()->setObjectName(QStringLiteral("importTextEdit"));
    m_reading->setObjectName(QStringLiteral("readingLabel"));
    m_reading->setWordWrap(true);
    m_reading->setToolTip(tr("F8 goes to the first line that was not understood"));
    m_tabs->addTab(vWidget(label(tr("<b>Stat Block Text</b>")), m_text->first(), m_reading),
                   tr("Edit"));
    auto *find = new QShortcut(Qt::Key_F8, this);
    connect(find, &QShortcut::activated, this, &MonsterEditor::goToNotUnderstood);
    m_tabs->addTab(vWidget(m_display->head(), m_display->scrollArea()), tr("View"));
    auto *import = new QSplitter(Qt::Vertical);
    import->setChildrenCollapsible(false);
    import->addWidget(m_import);
    import->addWidget(m_text->second());
    m_tabs->addTab(vWidget(import), tr("Import"));
    for (int tab = 0; tab < m_tabs->count(); ++tab)
        m_tabs->widget(tab)->layout()->setContentsMargins(6, 6, 6, 6);
    return m_tabs;
}

Creature *MonsterEditor::selected() const
{
    return m_list->selected();
}

void MonsterEditor::refresh()
{
    m_list->refresh();
    onTemplateSelectionChanged();
}

void MonsterEditor::refreshImport()
{
    m_import->onImportRefreshClicked();
}

void MonsterEditor::focusOnList()
{
    m_list->view()->setFocus();
}

void MonsterEditor::setCanAdd(bool can)
{
    m_canAdd = can;
    updateButtons();
}

void MonsterEditor::updateButtons()
{
    const bool isSelected = selected();
    m_delete->setEnabled(isSelected);
    m_add->setEnabled(isSelected && m_canAdd);
}

// --- selection ---

void MonsterEditor::showText(const QString &text)
{
    const QScopedValueRollback busy(m_templateBusy, true);
    m_text->setText(text);
}

void MonsterEditor::onTemplateSelectionChanged()
{
    Creature *creature = selected();
    m_display->setCreature(creature);
    if (!creature || m_text->text() != creature->statBlock())
        showText(creature ? creature->statBlock() : QString());
    m_text->setEnabled(creature);
    tellReading();
    updateButtons();
}

void MonsterEditor::tellReading(const QStringList &changes)
{
    const StatBlockReading reading =
        selected() ? readingOf(true, m_text->text()) : StatBlockReading();
    m_notUnderstood = reading.firstNotUnderstood();
    m_text->setReadings(reading.lines);
    QString text = asHtml(reading.summary);
    if (!changes.isEmpty())
        text += tr("<br><i>The copied text was tidied: %1. Undo brings it back.</i>")
                    .arg(asHtml(changes.join(QStringLiteral("; "))));
    m_reading->setText(text);
}

void MonsterEditor::goToNotUnderstood()
{
    if (m_notUnderstood < 0)
        return;
    m_tabs->setCurrentIndex(EditTab);
    m_text->first()->goToLine(m_notUnderstood);
}

void MonsterEditor::onTemplateTabChanged(int tab)
{
    if (tab == ImportTab)
        m_import->onImportRefreshClicked();
}

// --- new, deleted, added ---

void MonsterEditor::addNew(std::unique_ptr<Creature> creature, const QString &pasted,
                           const QStringList &changes)
{
    Creature *added = theMonsters->addNew(std::move(creature));
    m_list->refresh();
    m_list->select(added);
    if (!pasted.isNull() && pasted != added->statBlock()) {
        showText(pasted);
        const QScopedValueRollback busy(m_templateBusy, true);
        m_text->replaceText(added->statBlock());
    }
    m_tabs->setCurrentIndex(EditTab);
    m_text->focusOnAll();
    tellReading(changes);
    Q_EMIT doTemplatesChanged();
    Q_EMIT doChanged();
}

void MonsterEditor::onNewTemplate()
{
    addNew(theMonsters->newMonster());
}

void MonsterEditor::onNewAndPasteTemplate()
{
    const QString pasted = QGuiApplication::clipboard()->text();
    if (pasted.trimmed().isEmpty()) {
        showMessage(tr("New & Paste"), tr("There is no text to paste. Copy a stat block first."));
        return;
    }
    const TidiedText tidied = tidyStatBlock(pasted);
    CreatureData record;
    parseText(true, tidied.text.toUtf8(), record, QString());
    if (!validate(record, true, QString()))
        makeUnique(record, true, [](const QString &name, const Creature *self) {
            return theMonsters->uniqueGroup(name, self);
        });
    else if (!checkDuplicate(QString(), record, nullptr))
        return;
    auto creature = std::make_unique<Creature>();
    creature->assign(record);
    creature->readyForPlay();
    addNew(std::move(creature), pasted, tidied.changes);
}

void MonsterEditor::onDeleteTemplate()
{
    const QPointer<Creature> creature = selected();
    if (!creature)
        return;
    if (creature->isNew()) {
        theMonsters->remove(theMonsters->indexOf(creature), true);
    } else {
        if (!creature->isInvalid()
            && !askDelete(QStringLiteral("managerWindow/deleteMonster"), creature->group(),
                          creature->fileName()))
            return;
        if (!creature)
            return;
        creature->setDeleted(true);
        theEncounters->templateDeleted(creature->group());
    }
    refresh();
    Q_EMIT doTemplatesChanged();
    Q_EMIT doChanged();
}

void MonsterEditor::onAddTemplate()
{
    if (Creature *creature = selected())
        Q_EMIT doAdd(creature);
}

// --- the text ---

void MonsterEditor::onTemplateStatsChanged()
{
    Creature *creature = selected();
    if (!creature || m_templateBusy)
        return;
    applyText(creature, m_text->text());
    tellReading();
}

void MonsterEditor::applyText(Creature *creature, const QString &text)
{
    if (text == creature->statBlock())
        return;
    CreatureData record;
    parseText(true, text.toUtf8(), record, QString());
    const bool isRead = validate(record, true, creature->fileName());
    const QString oldGroup = creature->group();
    const int oldLevel = creature->level();
    const int oldXP = creature->xp();
    if (!isRead) {
        makeUnique(
            record, true,
            [](const QString &name, const Creature *self) {
                return theMonsters->uniqueGroup(name, self);
            },
            creature);
    } else if (record.group != oldGroup) {
        const bool isAccepted = checkDuplicate(oldGroup, record, creature);
        correctText(creature, isAccepted ? record.statBlock : creature->statBlock());
        if (!isAccepted)
            return;
    }
    creature->assign(record);
    creature->readyForPlay();
    creature->statBlockChanged();
    m_display->markDirty();
    if (creature->xp() != oldXP)
        theEncounters->markLevelsStale();
    if (creature->group() != oldGroup) {
        theMonsters->resort(creature);
        theEncounters->templateRenamed(oldGroup, creature->group());
        m_list->refresh();
    } else {
        m_list->model()->noteChanged(creature);
    }
    if (creature->xp() != oldXP || creature->level() != oldLevel || creature->group() != oldGroup)
        Q_EMIT doTemplatesChanged();
    Q_EMIT doChanged();
}

// Behind the edit that is just being made, which nothing may cut into.
void MonsterEditor::correctText(const QPointer<Creature> &creature, const QString &text)
{
    if (text == m_text->text())
        return;
    const auto correct = [this, creature, text] {
        if (!creature || creature != selected())
            return;
        const QScopedValueRollback busy(m_templateBusy, true);
        m_text->replaceText(text);
        tellReading();
    };
    QMetaObject::invokeMethod(this, correct, Qt::QueuedConnection);
}

bool MonsterEditor::checkDuplicate(const QString &oldName, CreatureData &record,
                                   const Creature *except)
{
    switch (theMonsters->nameState(record.group, except)) {
    case NameState::Free:
        return true;
    case NameState::TakenByDeleted:
        showMessage(tr("Duplicate %1").arg(shortened(record.group, LongestName)),
                    tr("You have just deleted a monster called <b>%1</b>.<p>You must save the "
                       "change before you can create another monster with the same name.")
                        .arg(asHtml(record.group, LongestName)));
        return false;
    case NameState::Taken:
        break;
    }
    RenameDialog dialog(oldName, record.group, this);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QString name = dialog.name();
    const QString text = replacedName(record.statBlock, record.group, name);
    CreatureData renamed;
    parseText(true, text.toUtf8(), renamed, QString());
    if (!validate(renamed, true, QString())) {
        record.statBlock = text;
        record.group = name;
        return true;
    }
    record = renamed;
    // A name with brackets is read as a shorter one, which may be taken too.
    return record.group == name || checkDuplicate(oldName, record, except);
}

void MonsterEditor::onTemplatePortraitClicked()
{
    const QPointer<Creature> creature = selected();
    if (!creature)
        return;
    const QString path = selectPortraitFile(this);
    if (path.isEmpty() || !creature)
        return;
    creature->setPortrait(path);
    if (creature == selected()) {
        const QScopedValueRollback busy(m_templateBusy, true);
        m_text->replaceText(creature->statBlock());
    }
    m_display->markDirty();
    m_list->model()->noteChanged(creature);
    Q_EMIT doChanged();
}

// --- import ---

MonsterEditor::Import MonsterEditor::resultOf(const Creature &creature)
{
    return creature.isInvalid() ? Import::NeedsALook : Import::Taken;
}

MonsterEditor::Import MonsterEditor::importFile(const QString &path, Imported &last)
{
    QByteArray bytes;
    if (readTextFile(path, bytes) != FileText::Read)
        return Import::Refused;
    Creature *creature = theMonsters->findFile(QFileInfo(path).fileName());
    const bool isKnown = creature;
    if (!isKnown)
        creature = theMonsters->takeFile(path);
    if (!creature)
        return Import::Refused;
    const TidiedText tidied = tidyStatBlock(QString::fromUtf8(toLF(bytes)));
    last = {creature, tidied.changes};
    const bool keepsPortrait = isKnown && !creature->portraitFile().isEmpty();
    const QString text =
        keepsPortrait ? withPortraitInText(tidied.text, creature->portraitFile()) : tidied.text;
    if (text == creature->statBlock())
        return isKnown ? Import::Current : resultOf(*creature);
    applyText(creature, text);
    return resultOf(*creature);
}

void MonsterEditor::onImport(const QStringList &paths)
{
    QMap<Import, QStringList> files;
    Imported last;
    {
        const QSignalBlocker once(this); // told of all below
        for (const QString &path : paths)
            files[importFile(path, last)] << QFileInfo(path).fileName();
    }
    m_list->refresh();
    if (last.creature) {
        m_list->select(last.creature);
        const QScopedValueRollback busy(m_templateBusy, true);
        if (m_text->text() != last.creature->statBlock())
            m_text->replaceText(last.creature->statBlock());
        tellReading(last.changes);
    }
    m_import->onImportRefreshClicked();
    Q_EMIT doTemplatesChanged();
    Q_EMIT doChanged();
    if (paths.size() > 1 || files.contains(Import::Refused))
        tellImport(files);
}

// One message for all, and none for a single file that was taken.
void MonsterEditor::tellImport(const QMap<Import, QStringList> &files)
{
    QStringList parts;
    const auto add = [&](Import kind, const QString &text) {
        const QStringList names = files.value(kind);
        if (!names.isEmpty())
            parts << text.arg(QString::number(names.size()), listed(names));
    };
    add(Import::Taken, tr("<b>Taken: %1</b><br>%2"));
    add(Import::Current, tr("<b>Already there: %1</b><br>%2"));
    add(Import::NeedsALook, tr("<b>Taken, but in need of a look: %1</b><br>%2"));
    add(Import::Refused, tr("<b>Not taken: %1</b><br>%2"));
    showMessage(tr("Import"), parts.join(QStringLiteral("<p>")));
}

#include "moc_monstereditor.cpp"
