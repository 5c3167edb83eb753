#include "pickcharactersdialog.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <algorithm>

#include "characters.h"
#include "encounter.h"
#include "global.h"
#include "smallwidgets.h"
#include "text.h"

namespace {

constexpr int PortraitSize = 64;
constexpr int CellSpacing = 12;

// Its cells stand in as many columns as fit the width.
class WrappingArea : public QScrollArea {
public:
    explicit WrappingArea(const QList<QWidget *> &cells) : m_cells(cells), m_grid(new QGridLayout)
    {
        auto *content = new QWidget;
        m_grid->setSpacing(CellSpacing);
        m_grid->setAlignment(Qt::AlignTop);
        content->setLayout(m_grid);
        setWidget(content);
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        for (const QWidget *cell : m_cells)
            m_cellWidth = qMax(m_cellWidth, cell->sizeHint().width());
        place(1);
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        const int room = viewport()->width() - CellSpacing;
        const int columns = qMax(1, room / (m_cellWidth + CellSpacing));
        if (columns != m_columns)
            place(columns);
        QScrollArea::resizeEvent(event);
    }

private:
    void place(int columns)
    {
        for (int column = 0; column < m_columns; ++column)
            m_grid->setColumnStretch(column, 0);
        m_columns = columns;
        for (int i = 0; i < m_cells.size(); ++i)
            m_grid->addWidget(m_cells.at(i), i / columns, i % columns);
        for (int column = 0; column < columns; ++column)
            m_grid->setColumnStretch(column, 1);
    }

    QList<QWidget *> m_cells;
    QGridLayout *m_grid;
    int m_cellWidth = 1;
    int m_columns = 0;
};

QPixmap portraitOf(const Creature *character, qreal ratio)
{
    QPixmap picture = character->portrait();
    if (picture.isNull() && blankPortrait)
        picture = *blankPortrait;
    if (picture.isNull())
        return picture;
    picture = picture.scaled(QSize(PortraitSize, PortraitSize) * ratio, Qt::KeepAspectRatio,
                             Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    return picture;
}

} // namespace

PickCharactersDialog::PickCharactersDialog(QWidget *parent)
    : FlatDialog(QString(), parent), m_running(theEncounter && theEncounter->isRunning())
{
    setObjectName(QStringLiteral("pickCharactersDialog"));
    setWindowTitle(m_running ? tr("Add to the Party") : tr("Pick the Party"));
    QList<QWidget *> cells;
    for (int i = 0; theCharacters && i < theCharacters->count(); ++i) {
        Creature *character = theCharacters->at(i);
        const bool present = theEncounter && theEncounter->contains(character);
        if (character->isDeleted() && !present)
            continue;
        m_choices << Choice {character, present, nullptr};
        cells << buildChoice(m_choices.last());
    }
    auto *area = new WrappingArea(cells);
    area->setObjectName(QStringLiteral("charactersArea"));
    setLayout(vBox(area, buildButtons()));
    onChecked();

    const auto enabled = std::find_if(m_choices.cbegin(), m_choices.cend(),
                                      [](const Choice &c) { return c.box->isEnabled(); });
    setFocusProxy(enabled != m_choices.cend() ? static_cast<QWidget *>(enabled->box) : m_selectAll);
}

QWidget *PickCharactersDialog::buildChoice(Choice &choice)
{
    const Creature *character = choice.character;
    choice.box = new QCheckBox;
    choice.box->setObjectName(QStringLiteral("character:") + character->name());
    choice.box->setAccessibleName(character->name());
    choice.box->setChecked(choice.present);
    choice.box->setEnabled(!m_running || !choice.present);
    connect(choice.box, &QCheckBox::toggled, this, &PickCharactersDialog::onChecked);
    const auto show = [clicked = QPointer<Creature>(choice.character)] { showInPanel(clicked); };
    connect(choice.box, &QCheckBox::clicked, this, show);

    auto *portrait = new ClickableLabel(QString(), choice.box);
    portrait->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    portrait->setAlignment(Qt::AlignCenter);
    portrait->setFixedSize(PortraitSize + 4, PortraitSize + 4);
    portrait->setPixmap(portraitOf(character, devicePixelRatioF()));
    auto *name = new ClickableLabel(
        QStringLiteral("<b>%1</b><br>%2")
            .arg(asHtml(withLiteralAmpersands(character->name()), LongestName),
                 asHtml(withLiteralAmpersands(character->headerLine()), LongestName)),
        choice.box);
    name->setTextFormat(Qt::RichText);
    for (const ClickableLabel *label : {portrait, name})
        connect(label, &ClickableLabel::clicked, this, show);
    QWidget *cell = hWidget(false, true, choice.box, portrait, name);
    cell->layout()->setSpacing(8);
    cell->setEnabled(choice.box->isEnabledTo(cell));
    return cell;
}

QWidget *PickCharactersDialog::buildButtons()
{
    const QList<Button> texts = m_running
        ? QList<Button> {{tr("Add"), 1}, {tr("Add All"), 1}, {tr("Cancel"), 0}}
        : QList<Button> {{tr("Select"), 1}, {tr("Select All"), 1}, {tr("Cancel"), 0}};
    QDialogButtonBox *box = buttonRow(texts);
    m_select = qobject_cast<QPushButton *>(box->buttons().at(0));
    m_selectAll = qobject_cast<QPushButton *>(box->buttons().at(1));
    m_select->setDefault(true);
    connect(box, &QDialogButtonBox::clicked, this, &PickCharactersDialog::onClicked);
    return box;
}

void PickCharactersDialog::onChecked()
{
    m_select->setEnabled(std::any_of(m_choices.cbegin(), m_choices.cend(), [](const Choice &c) {
        return c.box->isEnabled() && c.box->isChecked();
    }));
}

void PickCharactersDialog::onClicked(QAbstractButton *button)
{
    m_all = button == m_selectAll;
    done(resultOf(button));
}

void PickCharactersDialog::accept()
{
    m_select->click();
}

CreatureList PickCharactersDialog::selectedCharacters() const
{
    QList<Creature *> picked;
    bool changed = false;
    for (const Choice &choice : m_choices) {
        const bool checked = m_all || choice.box->isChecked();
        changed = changed || checked != choice.present;
        if (choice.character && checked && !(m_running && choice.present))
            picked << choice.character;
    }
    return changed ? CreatureList(picked) : CreatureList();
}

#include "moc_pickcharactersdialog.cpp"
