#include "yourturnwidget.h"

#include "creature.h"
#include "encounter.h"
#include "fittedtext.h"
#include "playerslistmodel.h"
#include "switchboard.h"
#include "text.h"

namespace {

// "Initiative" once it is rolled, in the words of the message that asks for it.
QString initiativeText(const Creature &creature)
{
    const bool isRolled = theEncounter && theEncounter->isRunning() && creature.initRoll() != 0
        && creature.initRoll() != NotStated;
    return isRolled ? YourTurnWidget::tr("Initiative <b>%1</b>").arg(creature.initRoll())
                    : QString();
}

QString joined(QStringList texts)
{
    texts.removeAll(QString());
    return texts.join(QStringLiteral("; "));
}

} // namespace

YourTurnWidget::YourTurnWidget(PlayersListModel *model, QWidget *parent)
    : PlayersWidget(parent), m_model(model), m_portraitLabel(new PortraitLabel(this)),
      m_nameLabel(new FittedLabel(false, this)), m_stateLabel(new FittedLabel(false, this)),
      m_hpLabel(new FittedLabel(false, this)), m_conditionLabel(new FittedLabel(true, this)),
      m_nextLabel(new FittedLabel(false, this))
{
    setObjectName(QStringLiteral("yourTurnWidget"));
    m_portraitLabel->setObjectName(QStringLiteral("portraitLabel"));
    m_nameLabel->setObjectName(QStringLiteral("nameLabel"));
    m_stateLabel->setObjectName(QStringLiteral("stateLabel"));
    m_hpLabel->setObjectName(QStringLiteral("hpLabel"));
    m_conditionLabel->setObjectName(QStringLiteral("conditionLabel"));
    m_nextLabel->setObjectName(QStringLiteral("nextLabel"));
    m_conditionLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setFontSize(SmallestFont);
    connect(model, &PlayersListModel::doCurrentChanged, this, &YourTurnWidget::onCurrentChanged);
    connect(switchBoard(), &SwitchBoard::doCreatureUpdated, this,
            &YourTurnWidget::onCreatureUpdated);
    onCurrentChanged();
}

void YourTurnWidget::onCurrentChanged()
{
    show(nullptr, QString());
}

void YourTurnWidget::onCreatureUpdated(Creature *creature)
{
    if (creature && creature == m_model->currentCreature()) {
        show(nullptr, QString());
    } else if (m_showsNext) {
        showNext(); // it may have died, or taken an alias
        fit();
    }
}

void YourTurnWidget::show(Creature *creature, const QString &message)
{
    const Creature *shown = creature ? creature : m_model->currentCreature();
    if (!shown) {
        clear();
        return;
    }
    m_portraitLabel->setPortrait(shown->portrait());
    m_nameLabel->setText(tr("<b>%1</b>").arg(asHtml(shown->playersName(), LongestName)));
    m_stateLabel->setText(
        joined({shown->conditionsText(true, false, true, true), initiativeText(*shown), message}));
    m_conditionLabel->setText(asHtml(playersEffectsText(shown)));
    m_hpLabel->setText(shown->isMonster() ? QString()
                                          : shown->playersHealthText(m_model->showsDamage()));
    m_showsCurrent = shown == m_model->currentCreature();
    showNext();
    fit(); // an empty line takes no room
}

void YourTurnWidget::clear()
{
    m_portraitLabel->setPortrait({});
    for (QLabel *label : {m_nameLabel, m_stateLabel, m_hpLabel, m_conditionLabel, m_nextLabel})
        label->clear();
}

// Not beside a creature that a form asks about.
void YourTurnWidget::showNext()
{
    const Creature *next = m_showsNext && m_showsCurrent ? m_model->nextCreature() : nullptr;
    m_nextLabel->setText(next ? tr("Next: %1").arg(asHtml(next->playersName(), LongestName))
                              : QString());
}

void YourTurnWidget::setShowNext(bool show)
{
    m_showsNext = show;
    updateGeometry();
    fit();
    onCurrentChanged();
}

int YourTurnWidget::lineCount() const
{
    return BottomLines + (m_showsNext ? 1 : 0);
}

QSize YourTurnWidget::minimumSizeHint() const
{
    // One line for the conditions is enough where room is scarce.
    return {leastWidth(), pixels(SmallestFont * LineSpacing * (lineCount() - 1) + 2 * EdgeMargin)};
}

QSize YourTurnWidget::sizeHint() const
{
    return {pixels(400), pixels(LargestFont * LineSpacing * lineCount())};
}

// Grows with the panel, as long as the lines that don't wrap are whole.
int YourTurnWidget::typeFor(int lineSpace, int textWidth) const
{
    const int size = qBound(SmallestFont, int(lineSpace / LineSpacing * 100 / zoom()), LargestFont);
    QFont sized = font();
    sized.setPixelSize(pixels(size));
    qreal widest = 0;
    for (const FittedLabel *label : {m_nameLabel, m_stateLabel, m_hpLabel, m_nextLabel})
        widest = qMax(widest, label->widthIn(sized));
    return widest <= textWidth ? size : int(size * textWidth / widest);
}

// The portrait is as high as the panel.
void YourTurnWidget::fit()
{
    const int margin = pixels(EdgeMargin);
    const int height = this->height() - 2 * margin;
    const int portrait = qMin(height, width() / 3);
    m_portraitLabel->setGeometry(margin, margin, portrait, portrait);
    const int left = margin + portrait + pixels(Spacing);
    const int textWidth = qMax(0, width() - left - margin);
    setFontSize(typeFor(height / lineCount(), textWidth));
    const int textHeight = lineHeight(font());
    int top = margin;
    const auto place = [&](QLabel *label, int space) {
        label->setGeometry(left, top, textWidth, space);
        top += space;
    };
    for (QLabel *label : {m_nameLabel, m_stateLabel, m_hpLabel})
        place(label, label->text().isEmpty() ? 0 : textHeight);
    const int below = m_showsNext ? textHeight : 0;
    place(m_conditionLabel, qMax(textHeight, margin + height - below - top));
    place(m_nextLabel, below);
}

void YourTurnWidget::resizeEvent(QResizeEvent *event)
{
    PlayersWidget::resizeEvent(event);
    fit();
}

#include "moc_yourturnwidget.cpp"
