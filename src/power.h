// One power of a stat block, and how often it has been used.
#pragma once

#include <QString>
#include <QStringList>

struct Power {
    // The picture in front of the headline, and the section that the power stands in.
    int icon = 0;
    int section = 0;
    // How a used power comes back at the start of its owner's turn: 1 by itself, 3 by itself after
    // the first use only, 5 to 9 by a six-sided die of at least usageKind - 3, others never.
    int usageKind = 0;
    QString name; // HTML, and what the log knows the power by
    QString keywords; // HTML of what follows the name
    bool flavour = false; // the first paragraph describes the power before its rules begin
    QStringList details; // HTML, a paragraph each
    // 0 unused, 1 used, 2 recharged after one use, 3 used after a recharge, 4 recharged after that.
    int usageState = 0;

    bool isUsed() const { return usageState == 1 || usageState == 3; }
    // Moves to the next state of the kind asked for; marking a used power used does nothing.
    void setUsed(bool used);
    // Least die that brings the power back, for the recharge kinds.
    int rechargeLimit() const { return usageKind - 3; }

    bool operator==(const Power &) const = default;
};
