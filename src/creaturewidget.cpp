#include "creaturewidget.h"

#include <QBoxLayout>
#include <QEvent>

#include "creaturedisplay.h"
#include "encounter.h"
#include "smallwidgets.h"
#include "switchboard.h"

namespace {

constexpr int Margin = 4;
constexpr QSize LeastSize(180, 170);

} // namespace

CreatureWidget::CreatureWidget(bool showEffects, QWidget *parent)
    : QWidget(parent), m_display(new CreatureDisplay(false, showEffects, this))
{
    QVBoxLayout *box = vBox(m_display->head(), m_display->scrollArea());
    box->setContentsMargins(Margin, Margin, Margin, Margin);
    box->setSpacing(Margin);
    setLayout(box);
    connect(switchBoard(), &SwitchBoard::doCreatureUpdated, this,
            &CreatureWidget::currentDetailsChanged);
    connect(m_display, &CreatureDisplay::doSetAliasShown, this, &CreatureWidget::doSetAliasShown);
    connect(m_display, &CreatureDisplay::doEditAlias, this, &CreatureWidget::doEditAlias);
}

void CreatureWidget::setCreature(Creature *creature)
{
    m_several.clear();
    m_single = creature;
    m_display->setCreature(creature);
}

void CreatureWidget::setCreatures(const QList<Creature *> &creatures)
{
    m_single = nullptr;
    m_several = QList<QPointer<Creature>>(creatures.begin(), creatures.end());
    m_display->setCreatures(creatures);
}

void CreatureWidget::refresh()
{
    m_display->markDirty();
}

void CreatureWidget::creatureSelectionChanged()
{
    const QList<Creature *> creatures = m_selection ? m_selection() : QList<Creature *>();
    if (creatures.size() > 1)
        setCreatures(creatures);
    else
        setCreature(creatures.value(0));
    Q_EMIT doSingleChosen(m_single);
}

void CreatureWidget::currentCreatureChanged()
{
    setCreature(theEncounter->current());
}

void CreatureWidget::currentDetailsChanged(Creature *creature)
{
    if (creature && (creature == m_single || m_several.contains(creature)))
        refresh();
}

QSize CreatureWidget::minimumSizeHint() const
{
    return LeastSize;
}

void CreatureWidget::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_display->fitHead(height());
}

void CreatureWidget::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The colours in the texts of the head are chosen for the palette.
    if (event->type() == QEvent::PaletteChange)
        refresh();
}

#include "moc_creaturewidget.cpp"
