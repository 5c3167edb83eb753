#include "powertext.h"

#include <algorithm>
#include <array>

namespace {
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

void addPower(CreatureData &record, Power power)
{
    if (power.section == PowerSection::TrapOpening) {
        addToUnplaced(record.unplacedText, power);
        return;
    }
    if (power.section == PowerSection::TrapWarning)
        power.icon = PowerIcon::None;
    else if (power.section == PowerSection::None)
        power.section = PowerSection::Traits;
    if (power.icon != PowerIcon::Secondary || !power.keywords.isEmpty())
        record.powers.append(std::move(power));
    else if (!record.powers.isEmpty())
        record.powers.last().details << power.name << power.details;
}

void sortPowers(CreatureData &record)
{
    if (record.powers.isEmpty())
        return;
    const int lastAdded = record.powers.constLast().section;
    std::ranges::stable_sort(record.powers, {}, &Power::section);
    const auto behind =
        std::ranges::upper_bound(std::as_const(record.powers), lastAdded, {}, &Power::section);
    record.currentPower = int(behind - record.powers.cbegin()) - 1;
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
