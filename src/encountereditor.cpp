#include "encountereditor.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>

#include "characters.h"
#include "creature.h"
#include "creaturefile.h"
#include "encounterfields.h"
#include "encounters.h"
#include "encounterview.h"
#include "global.h"
#include "libraryquestions.h"
#include "monsters.h"
#include "switchboard.h"
#include "text.h"

namespace {

// As wide as the fields need, and lower than they are where a screen has no room for a large font.
class FieldArea : public QScrollArea {
public:
    explicit FieldArea(QWidget *fields)
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidgetResizable(true);
        setWidget(fields);
        setFocusPolicy(Qt::NoFocus);
    }

    QSize sizeHint() const override { return widget()->sizeHint().grownBy(room()); }
    QSize minimumSizeHint() const override
    {
        return {widget()->minimumSizeHint().grownBy(room()).width(),
                QScrollArea::minimumSizeHint().height()};
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (object == widget() && event->type() == QEvent::LayoutRequest)
            updateGeometry();
        return QScrollArea::eventFilter(object, event);
    }

private:
    QMargins room() const { return {0, 0, verticalScrollBar()->sizeHint().width(), 0}; }
};

} // namespace

EncounterEditor::EncounterEditor(QWidget *parent)
    : QGroupBox(tr("Encounter"), parent), m_model(new EncounterListModel(this)),
      m_view(new EncounterView(m_model)),
      m_filter(filterEdit(QStringLiteral("encounterFilterEdit"),
                          [this](QObject *edit) { onFilterChanged(edit); })),
      m_adventures(new QComboBox), m_new(new QPushButton(tr("New Encounter"))),
      m_delete(new QPushButton(tr("Delete Encounter"))), m_fields(new EncounterFields),
      m_monsterFields(new EncounterMonsterFields)
{
    buildList();
    connectFields();
    connectCollections();
    QVBoxLayout *list = vBox(m_filter, m_adventures, m_view, hWidget(m_new, m_delete));
    QVBoxLayout *fields = vBox(m_fields, m_monsterFields);
    fields->setStretch(0, 1);
    auto *both = new QHBoxLayout(this);
    both->addLayout(list, 1);
    m_fieldArea = new FieldArea(wrap(fields));
    both->addWidget(m_fieldArea, 1);
    fillAdventures();
    updatePartyLevel();
    fillFields();
}

EncounterEditor::~EncounterEditor()
{
    // A field that has the focus tells that it is left when it is hidden by what follows.
    for (QObject *sender : {static_cast<QObject *>(m_model), static_cast<QObject *>(m_fields),
                            static_cast<QObject *>(m_monsterFields)})
        sender->disconnect(this);
}

// --- building ---

void EncounterEditor::buildList()
{
    m_adventures->setObjectName(QStringLiteral("adventureFilterBox"));
    m_adventures->setAccessibleName(tr("Adventures"));
    m_adventures->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(m_adventures, &QComboBox::currentIndexChanged, this,
            &EncounterEditor::onEncounterAdventureSelected);

    m_view->setObjectName(QStringLiteral("encounterTree"));
    m_view->setAccessibleName(tr("Encounters"));
    connect(m_model, &EncounterListModel::doSelectionChanged, this,
            &EncounterEditor::onEncounterSelectionChanged);
    connect(m_view, &EncounterView::doDeletePressed, this, &EncounterEditor::onDeletePressed);

    m_new->setObjectName(QStringLiteral("newEncounterButton"));
    m_new->setToolTip(tr("Create a new encounter"));
    m_delete->setObjectName(QStringLiteral("deleteEncounterButton"));
    m_delete->setToolTip(tr("Delete this encounter"));
    for (QPushButton *button : {m_new, m_delete})
        button->setAutoDefault(false);
    connect(m_new, &QPushButton::clicked, this, &EncounterEditor::onNewEncounter);
    connect(m_delete, &QPushButton::clicked, this, &EncounterEditor::onDeleteEncounter);
}

void EncounterEditor::connectFields()
{
    connect(m_fields, &EncounterFields::doDataChanged, this,
            &EncounterEditor::onEncounterDataChanged);
    connect(m_fields, &EncounterFields::doDataEntered, this, &EncounterEditor::onDataEntered);
    connect(m_fields, &EncounterFields::doPartySizeChanged, this,
            &EncounterEditor::onPartySizeChanged);
    connect(m_fields, &EncounterFields::doPartyLevelChanged, this,
            &EncounterEditor::updatePartyLevel);
    connect(m_monsterFields, &EncounterMonsterFields::doNameChanged, this,
            &EncounterEditor::onMonsterNameChanged);
    connect(m_monsterFields, &EncounterMonsterFields::doDataChanged, this,
            &EncounterEditor::onMonsterDataChanged);
    connect(m_monsterFields, &EncounterMonsterFields::doDataEntered, this,
            &EncounterEditor::onDataEntered);
    connect(m_monsterFields, &EncounterMonsterFields::doAddClicked, this,
            &EncounterEditor::onNewMonster);
    connect(m_monsterFields, &EncounterMonsterFields::doRemoveClicked, this,
            &EncounterEditor::onDeleteMonster);
}

void EncounterEditor::connectCollections()
{
    if (theEncounters)
        connect(theEncounters, &Encounters::doEncountersUpdated, this,
                &EncounterEditor::onEncounterListUpdated);
    if (theMonsters)
        connect(theMonsters, &Monsters::doTemplatesUpdated, this,
                &EncounterEditor::refreshTemplates);
    if (theCharacters)
        connect(theCharacters, &Characters::doCharactersUpdated, this,
                &EncounterEditor::updatePartyLevel);
    connect(switchBoard(), &SwitchBoard::doCreatureUpdated, this, [this](const Creature *creature) {
        if (isVisible() && !creature->isMonster())
            updatePartyLevel();
    });
}

bool EncounterEditor::event(QEvent *event)
{
    // Heroes may have come, gone or risen in another window.
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::Show)
        updatePartyLevel();
    return QGroupBox::event(event);
}

// --- what is shown ---

PreparedEncounter *EncounterEditor::selected() const
{
    return m_model->encounterAt(m_model->selected().encounter);
}

void EncounterEditor::refresh()
{
    {
        const QScopedValueRollback setting(m_encounterSetting, true);
        m_view->refresh();
    }
    fillAdventures();
    updatePartyLevel();
    onEncounterSelectionChanged();
}

void EncounterEditor::onEncounterListUpdated()
{
    refresh();
}

void EncounterEditor::refreshTemplates()
{
    if (m_model->noteTemplatesChanged())
        onEncounterSelectionChanged();
    else
        refresh();
}

void EncounterEditor::onEncounterSelectionChanged()
{
    if (m_encounterSetting)
        return;
    fillFields();
    Q_EMIT doSelectionChanged();
}

void EncounterEditor::fillFields()
{
    const QScopedValueRollback busy(m_encounterBusy, true);
    const PreparedEncounter *encounter = selected();
    m_delete->setEnabled(encounter);
    m_fields->setEncounter(encounter);
    m_fields->showPartySize();
    m_fields->showNumbers(encounter);
    fillMonsterFields();
}

void EncounterEditor::fillMonsterFields()
{
    const QScopedValueRollback busy(m_encounterBusy, true);
    const EncounterPlace position = m_model->selected();
    const int index = m_model->monsterIndex(position);
    const EncounterMonster *monster = index < 0 ? nullptr : &selected()->monsters().at(index);
    const Creature *original =
        monster && theMonsters ? theMonsters->findGroup(monster->group) : nullptr;
    m_monsterFields->setMonster(monster, position.monster < 0, original, m_fields->partyLevel());
}

void EncounterEditor::fillAdventures()
{
    const QScopedValueRollback busy(m_encounterBusy, true);
    const QStringList adventures = theEncounters ? theEncounters->adventures() : QStringList();
    m_fields->setAdventures(adventures);
    const QString chosen = m_adventures->currentData().toString();
    {
        const QSignalBlocker blocker(m_adventures);
        m_adventures->clear();
        m_adventures->addItem(Encounters::allAdventures());
        for (const QString &adventure : adventures)
            m_adventures->addItem(shortened(adventure, LongestName), adventure);
        m_adventures->setCurrentIndex(qMax(0, m_adventures->findData(chosen)));
    }
    onEncounterAdventureSelected(m_adventures->currentIndex());
}

void EncounterEditor::updatePartyLevel()
{
    const int before = m_fields->partyLevel();
    m_fields->setHeroesLevel(libraryPartyLevel());
    m_model->setPartyLevel(m_fields->partyLevel());
    m_fields->showNumbers(selected());
    if (m_fields->partyLevel() != before)
        fillMonsterFields();
}

void EncounterEditor::onFilterChanged(QObject * /*object*/)
{
    m_view->setFilter(m_filter->text(), m_adventures->currentData().toString());
}

void EncounterEditor::onEncounterAdventureSelected(int /*index*/)
{
    m_view->setFilter(m_filter->text(), m_adventures->currentData().toString());
}

void EncounterEditor::onPartySizeChanged()
{
    if (m_encounterBusy)
        return;
    setPartySize(m_fields->partySize());
    m_fields->showNumbers(selected());
}

// --- encounters that come and go ---

void EncounterEditor::onNewEncounter()
{
    if (!theEncounters)
        return;
    auto encounter = std::make_unique<PreparedEncounter>();
    encounter->setName(theEncounters->newName());
    encounter->setAdventure(m_adventures->currentData().toString());
    // Otherwise the next key in the filter would hide the new encounter.
    if (!encounter->name().contains(m_filter->text(), Qt::CaseInsensitive)) {
        m_filter->clear();
        onFilterChanged(m_filter);
    }
    m_view->select({m_model->addEncounter(std::move(encounter)), -1, -1});
    m_fields->editName();
    m_fieldArea->ensureWidgetVisible(m_fields->focusWidget());
    noteChange();
}

void EncounterEditor::onDeleteEncounter()
{
    PreparedEncounter *encounter = selected();
    if (!encounter)
        return;
    if (!encounter->isNew()
        && !askDelete(QStringLiteral("managerWindow/deleteEncounter"), encounter->name(),
                      encounter->fileName()))
        return;
    // The question has a loop of its own, in which the library may be replaced.
    const int row = m_model->rowOf(encounter);
    if (encounter == m_model->encounterAt(row))
        removeEncounter(row);
}

void EncounterEditor::removeEncounter(int row)
{
    const PreparedEncounter *next = m_model->encounterAt(m_view->neighbourOf(row));
    {
        const QScopedValueRollback setting(m_encounterSetting, true);
        m_view->select({m_model->rowOf(next), -1, -1});
        if (m_model->encounterAt(row)->isNew())
            m_model->removeEncounter(row);
        else
            m_model->encounterAt(row)->setDeleted(true);
        m_view->applyFilter();
    }
    onEncounterSelectionChanged();
    noteChange();
}

void EncounterEditor::onDeletePressed()
{
    if (m_model->selected().group < 0)
        onDeleteEncounter();
    else
        onDeleteMonster();
}

// --- monsters that come and go ---

void EncounterEditor::addMonster(const Creature &monster)
{
    PreparedEncounter *encounter = selected();
    if (!encounter)
        return;
    insertMonster(monster.group(), monster.data().headerText);
    encounter->setModified(true);
    noteChange();
}

void EncounterEditor::onNewMonster()
{
    const PreparedEncounter *encounter = selected();
    const int index = m_model->monsterIndex(m_model->selected());
    if (index < 0)
        return;
    const QString group = encounter->monsters().at(index).group;
    const Creature *original = theMonsters ? theMonsters->findGroup(group) : nullptr;
    insertMonster(group, original ? original->data().headerText : QString());
    noteChange();
}

void EncounterEditor::insertMonster(const QString &group, const QString &prefix)
{
    const int row = m_model->selected().encounter;
    int scheme = m_monsterFields->scheme();
    const QString id =
        selected()->defaultId(group, prefix, scheme, m_monsterFields->isPerEncounter());
    m_monsterFields->setScheme(scheme);
    const int index = m_model->insertMonster(row, {group, id, QString(), false});
    m_view->select(m_model->placeOfMonster(row, index));
    m_monsterFields->editId();
    m_fieldArea->ensureWidgetVisible(m_monsterFields->focusWidget());
}

void EncounterEditor::onDeleteMonster()
{
    const EncounterPlace position = m_model->selected();
    if (m_model->monsterIndex(position) < 0)
        return;
    const int groups = m_model->rowCount(m_model->indexAt({position.encounter, -1, -1}));
    {
        const QScopedValueRollback setting(m_encounterSetting, true);
        m_model->removeMonsters(position);
        m_view->select(successorOf(position, groups));
    }
    onEncounterSelectionChanged();
    noteChange();
}

EncounterPlace EncounterEditor::successorOf(const EncounterPlace &removed, int groupsBefore) const
{
    const int groups = m_model->rowCount(m_model->indexAt({removed.encounter, -1, -1}));
    const auto monsters = [&](int group) {
        return m_model->rowCount(m_model->indexAt({removed.encounter, group, -1}));
    };
    if (groups == 0)
        return {removed.encounter, -1, -1};
    if (groups == groupsBefore)
        return {removed.encounter, removed.group,
                qMin(removed.monster, monsters(removed.group) - 1)};
    const int group = qMin(removed.group, groups - 1);
    if (removed.monster < 0)
        return {removed.encounter, group, -1};
    return {removed.encounter, group, group == removed.group ? 0 : monsters(group) - 1};
}

// --- fields ---

void EncounterEditor::onEncounterDataChanged()
{
    PreparedEncounter *encounter = selected();
    if (m_encounterBusy || !encounter)
        return;
    const QScopedValueRollback setting(m_encounterSetting, true);
    const QString name = m_fields->name().trimmed();
    // The last good name stays: a file without a name couldn't be read again.
    if (m_fields->name() != encounter->name() && isUsableName(name)) {
        m_model->renameEncounter(m_model->selected().encounter, name);
        m_view->scrollTo(m_view->currentIndex());
    }
    const QString adventure = m_fields->adventure().trimmed();
    if (m_fields->adventure() != encounter->adventure())
        encounter->setAdventure(adventure == Encounters::allAdventures() ? QString() : adventure);
    encounter->setDescription(m_fields->description());
    encounter->refreshChanged();
    noteChange();
}

void EncounterEditor::onMonsterNameChanged()
{
    PreparedEncounter *encounter = selected();
    const EncounterPlace position = m_model->selected();
    const int index = m_model->monsterIndex(position);
    if (m_encounterBusy || position.monster < 0 || index < 0)
        return;
    const QScopedValueRollback setting(m_encounterSetting, true);
    const QString id = m_monsterFields->id();
    const bool isGood = id == encounter->monsters().at(index).id
        || encounter->setMonsterId(index, id, m_monsterFields->isPerEncounter());
    m_monsterFields->setIdRefused(!isGood);
    noteChange();
}

void EncounterEditor::onMonsterDataChanged()
{
    PreparedEncounter *encounter = selected();
    const EncounterPlace position = m_model->selected();
    const int index = m_model->monsterIndex(position);
    if (m_encounterBusy || position.monster < 0 || index < 0)
        return;
    const QScopedValueRollback setting(m_encounterSetting, true);
    encounter->setMonsterAlias(index, m_monsterFields->alias());
    encounter->setMonsterHidden(index, m_monsterFields->isHiddenAtStart());
    noteChange();
}

void EncounterEditor::onDataEntered()
{
    if (m_encounterBusy)
        return;
    fillFields();
    fillAdventures();
}

void EncounterEditor::noteChange()
{
    m_model->noteChanged(m_model->selected());
    m_fields->showNumbers(selected());
    Q_EMIT doChanged();
}

#include "moc_encountereditor.cpp"
