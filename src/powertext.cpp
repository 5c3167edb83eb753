#include "powertext.h"

#include <algorithm>
#include <array>

namespace {
// No creature comes near it. Each power moves those behind it, so the work of a file made of
// nothing else would have no bound.
constexpr qsizetype maxPowers = 1000;

// By icon; the empty ones still get their image tag.
constexpr std::array iconImages = {
    "",
    ":/images/stats/Z2a.gif",
    "",
    ":/images/stats/S2.gif",
    ":/images/stats/Z2a.gif",
    ":/images/stats/S3.gif",
    ":/images/stats/Z3a.gif",
    ":/images/stats/S4.gif",
    ":/images/stats/Z4a.gif",
    ":/images/stats/S1.gif",
    ":/images/stats/Z1a.gif",
    ":/images/stats/aura.png",
    ":/images/stats/M_R.png",
    "",
    "",
};

void addToUnplaced(QString &unplaced, const Power &power)
{
    if (!unplaced.isEmpty())
        unplaced += QStringLiteral("<br>");
    unplaced += QStringLiteral("<i>") + power.name;
    if (!power.keywords.isEmpty())
        unplaced += QStringLiteral(" &bull; ") + power.keywords;
    // The last tag opens where one would expect it to close: texts in use rely on the form.
    unplaced += QStringLiteral("<br>") + power.details.join(QString()) + QStringLiteral("<i>");
}
} // namespace

void insertPower(CreatureData &record, Power power)
{
    if (power.section == PowerSection::TrapOpening) {
        addToUnplaced(record.unplacedText, power);
        return;
    }
    if (power.section == PowerSection::TrapWarning)
        power.icon = PowerIcon::None;
    else if (power.section == PowerSection::None)
        power.section = PowerSection::Traits;
    QList<Power> &powers = record.powers;
    if (power.icon == PowerIcon::Secondary && power.keywords.isEmpty()) {
        if (record.currentPower >= 0 && record.currentPower < powers.size())
            powers[record.currentPower].details << power.name << power.details;
        return;
    }
    if (powers.size() >= maxPowers)
        return;
    // The list is in order of sections, since nothing else adds to it.
    const auto place =
        std::upper_bound(powers.cbegin(), powers.cend(), power.section,
                         [](int section, const Power &other) { return section < other.section; });
    record.currentPower = int(place - powers.cbegin());
    powers.insert(record.currentPower, std::move(power));
}

QString powerHeaderHtml(const Power &power, bool crossedOut)
{
    QString html;
    if (power.icon > 0) {
        const char *image =
            power.icon < int(iconImages.size()) ? iconImages[std::size_t(power.icon)] : "";
        html += QStringLiteral("<img src='%1'> ").arg(QLatin1String(image));
    }
    const bool struck = power.isUsed() != crossedOut;
    if (struck && power.usageKind >= 2 && power.usageKind <= 9)
        html += QStringLiteral("<s>");
    html += QStringLiteral("<b>%1</b>").arg(power.name);
    if (!power.keywords.isEmpty())
        html += u' ' + power.keywords;
    // Without its opening tag it shows nothing: a power that is never spent stays readable.
    if (struck)
        html += QStringLiteral("</s>");
    return html;
}

QString rechargeImages(int n)
{
    static const std::array images = [] {
        std::array<QString, 7> byLowest;
        for (int lowest = 6; lowest >= 2; --lowest) {
            byLowest[size_t(lowest)] =
                QStringLiteral(" <img src=':/images/stats/%1a.gif'>").arg(lowest)
                + (lowest < 6 ? byLowest[size_t(lowest) + 1] : QString());
        }
        byLowest[1] = byLowest[2];
        return byLowest;
    }();
    return n >= 1 && n <= 6 ? images[size_t(n)] : QString();
}
