#include "creaturedisplay.h"

#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QPainter>
#include <QScrollBar>
#include <QToolButton>

#include <algorithm>

#include "dialoghost.h"
#include "dynlabel.h"
#include "panelhead.h"
#include "panelrowlabel.h"
#include "panelstyle.h"
#include "powerlabel.h"
#include "readablecolours.h"
#include "smallwidgets.h"
#include "switchboard.h"
#include "text.h"

namespace {

constexpr int PortraitSize = 96;
constexpr int GroupHeight = 48;
// Greatest height of a group whose text wraps, in pixels.
constexpr int WrappedHeight = 80;
// Height kept free for the stat block, in pixels.
constexpr int StatBlockHeight = 120;
constexpr int WidestFixedText = 150; // pixels, of the narrow one of two texts
constexpr int NarrowStretch = 1;
constexpr int WideStretch = 100;
constexpr int RowSpacing = 3;

// Puts the picture in the middle of a square, so that scaling to a square keeps its proportions.
QPixmap squared(const QPixmap &picture)
{
    const int side = qMax(picture.width(), picture.height());
    if (picture.isNull() || picture.width() == picture.height())
        return picture;
    QPixmap square(side, side);
    square.fill(Qt::transparent);
    QPainter painter(&square);
    painter.drawPixmap((side - picture.width()) / 2, (side - picture.height()) / 2, picture.width(),
                       picture.height(), picture);
    return square;
}

// Deletes the widget later, because it may be handling a click that runs an event loop.
void removeLater(QLayout *layout, QWidget *widget)
{
    layout->removeWidget(widget);
    widget->hide();
    widget->deleteLater();
}

// High enough for one line of text in any font.
int heightOfGroup(const QWidget *group, const QLabel *content)
{
    const int frame = group->minimumSizeHint().height() - content->minimumSizeHint().height();
    return qMax(GroupHeight, frame + content->fontMetrics().height());
}

// The label takes the width there is and asks for none.
void letShrink(QLabel *label)
{
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

} // namespace

CreatureDisplay::CreatureDisplay(bool editing, bool showEffects, QObject *parent)
    : QObject(parent), m_editing(editing), m_showEffects(showEffects),
      m_selectPortrait(QStringLiteral(":/images/select-portrait.png")),
      m_noPortrait(QStringLiteral(":/images/no-icon.png")),
      m_monsterShield(QStringLiteral(":/images/monster-shield.png")),
      m_heroShield(QStringLiteral(":/images/hero-shield.png"))
{
    createHead();
    createBody();
    rebuildHead();
    connect(switchBoard(), &SwitchBoard::doRefreshTimer, this, &CreatureDisplay::onRefreshTimer);
    connect(switchBoard(), &SwitchBoard::doDisableWidgetDisplay, this, [this] { m_frozen = true; });
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, this, [this] {
        m_frozen = false;
        markDirty();
    });
}

// --- the head ---

QLabel *CreatureDisplay::headLabel()
{
    QLabel *made = label(QString());
    letShrink(made);
    return made;
}

void CreatureDisplay::createHead()
{
    m_grid = new QGridLayout;
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(8);
    m_grid->setVerticalSpacing(4);
    m_grid->setColumnStretch(1, 1);
    if (m_editing) {
        m_portraitButton = new QToolButton;
        m_portraitButton->setObjectName(QStringLiteral("portraitButton"));
        m_portraitButton->setIconSize(QSize(PortraitSize, PortraitSize));
        m_portraitButton->setStatusTip(tr("Click to select a portrait..."));
        m_portraitButton->setAccessibleName(tr("Portrait"));
        connect(m_portraitButton, &QToolButton::clicked, this, &CreatureDisplay::doPortraitClicked);
        m_grid->addWidget(m_portraitButton, 0, 0);
    } else {
        m_portraitLabel = new QLabel;
        m_portraitLabel->setObjectName(QStringLiteral("portraitLabel"));
        m_portraitLabel->setScaledContents(true);
        m_portraitLabel->setFrameStyle(int(QFrame::WinPanel) | int(QFrame::Sunken));
        m_portraitLabel->setFixedSize(PortraitSize, PortraitSize);
        m_portraitLabel->setLineWidth(2);
        m_grid->addWidget(m_portraitLabel, 0, 0);
    }

    m_nameLabel = headLabel();
    m_subLabel = headLabel();
    m_typeLabel = headLabel();
    m_levelLabel = headLabel();
    m_defensesLabel = headLabel();
    m_healthLabel = headLabel();
    m_actionsLabel = headLabel();
    m_actionsLabel->setWordWrap(true);
    m_lines = new PanelHead(PortraitSize);
    for (QLabel *line : {m_nameLabel, m_subLabel, m_typeLabel, m_levelLabel})
        m_lines->addLine(line);
    m_grid->addWidget(m_lines, 0, 1);

    addGroup(1, tr("Defenses"), m_defensesLabel);
    addGroup(2, tr("Health"), m_healthLabel);
    addGroup(3, tr("Actions"), m_actionsLabel);
    if (m_showEffects) {
        m_effectsLabel = headLabel();
        m_effectsLabel->setWordWrap(true);
        m_effectsLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        addGroup(4, tr("Conditions and Effects"), m_effectsLabel);
    }
    const std::pair<QLabel *, const char *> names[] = {
        {m_nameLabel, "nameLabel"},         {m_subLabel, "subLabel"},
        {m_levelLabel, "levelLabel"},       {m_typeLabel, "typeLabel"},
        {m_defensesLabel, "defensesLabel"}, {m_healthLabel, "healthLabel"},
        {m_actionsLabel, "actionsLabel"},   {m_effectsLabel, "effectsLabel"},
    };
    for (const auto &[named, name] : names) {
        if (named)
            named->setObjectName(QLatin1String(name));
    }
    m_head = wrap(m_grid);
    m_head->setObjectName(QStringLiteral("creatureHead"));
    m_head->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void CreatureDisplay::addGroup(int row, const QString &title, QLabel *content)
{
    auto *group = new QGroupBox(title);
    QVBoxLayout *box = vBox(content);
    box->setContentsMargins(6, 1, 6, 1);
    group->setLayout(box);
    group->setFixedHeight(heightOfGroup(group, content));
    m_grid->addWidget(group, row, 0, 1, 2);
    m_groups << group;
}

void CreatureDisplay::fitHead(int height)
{
    int room = height - PortraitSize - StatBlockHeight;
    for (QWidget *group : std::as_const(m_groups)) {
        room -= group->height() + m_grid->verticalSpacing();
        group->setVisible(room >= 0);
    }
    // In another width, texts that wrap need another height.
    markDirty();
}

void CreatureDisplay::setText(QLabel *target, const QString &html)
{
    if (!target)
        return;
    const QString shown = readableColours(shortenedHtml(html, LongestLine), target->palette());
    m_lines->setLine(target, shown);
    target->setText(shown);
    // Shows a line that is cut in full. The paragraph tag makes it rich text, which wraps.
    target->setToolTip(html.isEmpty() ? html : QStringLiteral("<p>%1</p>").arg(html));
}

void CreatureDisplay::rebuildHead()
{
    const Creature *creature = m_creature;
    showPortrait(creature);
    if (!creature) {
        for (QLabel *cleared : {m_nameLabel, m_subLabel, m_typeLabel, m_levelLabel, m_defensesLabel,
                                m_healthLabel, m_actionsLabel, m_effectsLabel})
            setText(cleared, QString());
        m_lines->fitLines();
        return;
    }
    setText(m_nameLabel, tr("<b>%1</b>").arg(asHtml(creature->displayName())));
    setText(m_subLabel, subText(creature));
    setText(m_levelLabel, panelLevelText(creature));
    setText(m_typeLabel, asHtml(creature->typeAndRace()));
    setText(m_defensesLabel, creature->defencesText(false));
    setText(m_healthLabel, creature->healthText(m_editing));
    setText(m_actionsLabel, creature->speedLine(m_editing));
    setText(m_effectsLabel, panelConditions(creature, QStringLiteral("; ")));
    m_lines->fitLines();
    for (QLabel *wrapped : {m_actionsLabel, m_effectsLabel})
        fitGroup(wrapped);
}

// Shows a few lines of a text that wraps; the tool tip has all of it.
void CreatureDisplay::fitGroup(const QLabel *content)
{
    if (!content)
        return;
    const int more = content->heightForWidth(content->width()) - content->fontMetrics().height();
    QWidget *group = content->parentWidget();
    const int height = heightOfGroup(group, content);
    group->setFixedHeight(qBound(height, height + more, height + WrappedHeight - GroupHeight));
}

// The creature's state and initiative; its description while it is edited.
QString CreatureDisplay::subText(const Creature *creature) const
{
    if (m_editing)
        return asHtml(creature->description());
    QStringList parts;
    if (const QString state = creature->statusText(); !state.isEmpty())
        parts << asHtml(state);
    if (!creature->initiativeText(false, 0).isEmpty())
        parts << creature->initiativeText(false, 2);
    return parts.join(QStringLiteral("; "));
}

void CreatureDisplay::showPortrait(const Creature *creature)
{
    const QPixmap picture = creature ? squared(creature->portrait()) : QPixmap();
    if (m_portraitButton) {
        m_portraitButton->setIcon(picture.isNull() ? m_selectPortrait : picture);
        m_portraitButton->setEnabled(creature);
    } else if (!creature) {
        m_portraitLabel->setPixmap(m_noPortrait);
    } else if (picture.isNull()) {
        m_portraitLabel->setPixmap(creature->isMonster() ? m_monsterShield : m_heroShield);
    } else {
        m_portraitLabel->setPixmap(picture);
    }
}

// --- the stat block ---

void CreatureDisplay::createBody()
{
    m_scrollArea = new ResizableScrollArea;
    m_scrollArea->setObjectName(QStringLiteral("statBlockArea"));
    // A click in it leaves the focus with the initiative list, or the form in its place.
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setMinimumHeight(GroupHeight);
    m_body = new QWidget;
    m_body->setObjectName(QStringLiteral("statBlock"));
    m_body->setStyleSheet(
        QStringLiteral("QLabel { font-family: Arial, Helvetica, sans-serif; font-size: 12px }"));
    m_bodyLayout = new QVBoxLayout(m_body);
    m_bodyLayout->setContentsMargins(0, 0, 0, 0);
    m_bodyLayout->setSpacing(0);
    m_bodyLayout->addStretch();
    m_scrollArea->setWidget(m_body);
}

QList<Creature *> CreatureDisplay::shownCreatures() const
{
    QList<Creature *> creatures(m_creatures.begin(), m_creatures.end());
    if (creatures.isEmpty() && m_creature)
        creatures << m_creature;
    return creatures;
}

void CreatureDisplay::rebuildBody()
{
    m_creatures.removeAll(nullptr);
    const QList<Creature *> creatures = shownCreatures();
    m_body->setUpdatesEnabled(false);
    for (int i = 0; i < creatures.size(); ++i) {
        Creature *creature = creatures.at(i);
        const QString style = styleFor(PanelRowStyle::Name, creature);
        if (i < m_blocks.size() && m_blocks.at(i).creature == creature
            && m_blocks.at(i).style == style) {
            setRows(m_blocks[i], i, panelRows(creature, m_editing));
            continue;
        }
        if (i < m_blocks.size())
            removeLater(m_bodyLayout, m_blocks.takeAt(i).widget);
        auto *widget = new QWidget(m_body);
        auto *layout = new QVBoxLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        m_blocks.insert(i, Block {creature, {}, style, widget, layout});
        setRows(m_blocks[i], i, panelRows(creature, m_editing));
        m_bodyLayout->insertWidget(i, widget);
        widget->show();
    }
    while (m_blocks.size() > creatures.size())
        removeLater(m_bodyLayout, m_blocks.takeLast().widget);
    m_bodyLayout->activate();
    m_scrollArea->fitWidget();
    m_body->setUpdatesEnabled(true);
}

// Most changes touch a few rows. The rows before and behind them stay, so that a row under the
// mouse keeps its hover and nothing else is laid out again.
void CreatureDisplay::setRows(Block &block, int index, const QList<PanelRow> &rows)
{
    qsizetype first = 0;
    qsizetype oldEnd = block.rows.size();
    qsizetype newEnd = rows.size();
    while (first < oldEnd && first < newEnd && block.rows.at(first) == rows.at(first))
        ++first;
    while (first < oldEnd && first < newEnd && block.rows.at(oldEnd - 1) == rows.at(newEnd - 1)) {
        --oldEnd;
        --newEnd;
    }
    while (oldEnd > first)
        removeLater(block.layout, block.layout->itemAt(int(--oldEnd))->widget());
    for (qsizetype i = first; i < newEnd; ++i) {
        QFrame *frame = buildRow(block.widget, block.creature, index, rows.at(i));
        block.layout->insertWidget(int(i), frame);
        frame->show();
    }
    block.rows = rows;
}

QFrame *CreatureDisplay::buildRow(QWidget *block, Creature *creature, int index,
                                  const PanelRow &row)
{
    auto *frame = new QFrame(block);
    frame->setContentsMargins(0, 0, 0, 0);
    frame->setStyleSheet(styleFor(row.flags, creature)
                         + QStringLiteral(" QLabel { padding: 0px }"));
    auto *line = new QHBoxLayout(frame);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(RowSpacing);
    if (row.content == PanelRow::PowerRow)
        line->addWidget(new PowerLabel(creature, row.power, frame, row.flags));
    else if (row.content == PanelRow::AliasRow)
        addAlias(line, row, index, creature->aliasMode() != 0);
    else
        addTexts(line, row);
    return frame;
}

void CreatureDisplay::addAlias(QHBoxLayout *line, const PanelRow &row, int index, bool used)
{
    const QString picture = QStringLiteral(" <img align=bottom src=':/images/stats/%1.png'>");
    auto *tick = new DynLabel(row.left, tickImage(!used), index);
    auto *alias = new DynLabel(row.right + picture.arg(QStringLiteral("blank")),
                               row.right + picture.arg(QStringLiteral("edit")), index);
    letShrink(alias);
    tick->setToolTip(tr("Click to show or hide the alias"));
    alias->setToolTip(tr("Click to edit the alias"));
    // Queued, so that the label's press has ended: the refresh tick runs while a dialog is open,
    // and deletes the label.
    connect(tick, &DynLabel::clicked, this, &CreatureDisplay::onSetUseAlias, Qt::QueuedConnection);
    connect(alias, &DynLabel::clicked, this, &CreatureDisplay::onEditAlias, Qt::QueuedConnection);
    line->addWidget(tick, NarrowStretch);
    line->addWidget(alias, WideStretch);
}

void CreatureDisplay::addTexts(QHBoxLayout *line, const PanelRow &row)
{
    const auto add = [line](const QString &html, int stretch) {
        auto *made = new PanelRowLabel(html);
        line->addWidget(made, stretch);
        return made;
    };
    const bool single = row.content == PanelRow::OneText;
    const bool leads = row.content == PanelRow::RightText;
    PanelRowLabel *left = add(row.left, single || leads ? WideStretch : NarrowStretch);
    if (!single) {
        PanelRowLabel *right = add(row.right, leads ? NarrowStretch : WideStretch);
        PanelRowLabel *narrow = leads ? right : left;
        narrow->ensurePolished();
        narrow->setMinimumWidth(qMin(narrow->oneLineWidth(), WidestFixedText));
        left->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        right->setAlignment((leads ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop);
    }
}

// --- what is shown ---

void CreatureDisplay::watch(Creature *creature)
{
    // One connection for each creature, however often it is shown.
    if (creature)
        connect(creature, &QObject::destroyed, this, &CreatureDisplay::markDirty,
                Qt::UniqueConnection);
}

void CreatureDisplay::setCreature(Creature *creature)
{
    m_creature = creature;
    m_creatures.clear();
    watch(creature);
    markDirty();
}

void CreatureDisplay::setCreatures(const QList<Creature *> &creatures)
{
    m_creatures.clear();
    for (Creature *creature : creatures) {
        m_creatures << creature;
        watch(creature);
    }
    m_creature = creatures.isEmpty() ? nullptr : creatures.first();
    markDirty();
}

void CreatureDisplay::onRefreshTimer()
{
    if (!m_dirty || m_frozen || !m_head || !m_scrollArea)
        return;
    m_dirty = false;
    QScrollBar *bar = m_scrollArea->verticalScrollBar();
    const QList<Creature *> creatures = shownCreatures();
    const bool same = m_shown == m_creature
        && std::equal(m_blocks.cbegin(), m_blocks.cend(), creatures.cbegin(), creatures.cend(),
                      [](const Block &block, const Creature *creature) {
                          return block.creature == creature;
                      });
    const int position = bar->value();
    m_shown = m_creature;
    rebuildHead();
    rebuildBody();
    bar->setValue(same && position >= 0 ? position : 0);
}

Creature *CreatureDisplay::creatureAt(int index) const
{
    return index >= 0 && index < m_creatures.size() ? m_creatures.at(index) : m_creature;
}

void CreatureDisplay::onSetUseAlias(int index)
{
    Creature *creature = creatureAt(index);
    if (creature && !activeFlatDialog())
        Q_EMIT doSetAliasShown({creature}, creature->aliasMode() == 0);
}

void CreatureDisplay::onEditAlias(int index)
{
    Creature *creature = creatureAt(index);
    if (creature && !activeFlatDialog())
        Q_EMIT doEditAlias({creature});
}

#include "moc_creaturedisplay.cpp"
