// The rows of a creature panel as data. The panel compares them with the rows it shows, and builds
// widgets only where something changed.
#pragma once

#include <QList>
#include <QString>

class Creature;
struct Power;

struct PanelRow {
    enum Content {
        OneText,
        RightText, // the second one at the right edge
        BulletText, // the first one is a bullet
        AliasRow, // left: the tick's picture; right: the alias
        PowerRow // left: the heading, of the power at `power`
    };

    int flags = 0; // as of PanelRowStyle
    Content content = OneText;
    QString left; // HTML, as is the other
    QString right;
    int power = -1;

    bool operator==(const PanelRow &) const = default;
};

// The stat block of the creature from the top. With `editing` the rows are those of the file alone,
// as a manager shows them: no alias, no conditions, no power to tick.
QList<PanelRow> panelRows(const Creature *creature, bool editing);

// "Level 3 Skirmisher", as HTML; "Level 5 Fighter (Defender)" where a class stands beside the role.
QString panelLevelText(const Creature *creature);
// State and effects of the creature as HTML, joined by `separator`; empty when there are none.
QString panelConditions(const Creature *creature, const QString &separator);
// The HTML of a tick box's picture.
QString tickImage(bool ticked);

// Whether the DM ticks the power off when it is used. False for what isn't used, such as a trait.
bool isTickablePower(const Power &power);
// The headline of a power, with a tick box if it can be ticked. With `opposite` it looks as after a
// click.
QString powerHeadingHtml(const Power &power, bool opposite);
