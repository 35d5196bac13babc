#pragma once

#include "discovery/fleetsearch.h"

// What a search found, counted alike for the command line's report and the
// window's status bar.
namespace veltor {

struct FleetSummary
{
    int winbond = 0;
    int haisi = 0;
    int needAttention = 0; // cameras with at least one finding

    int cameras() const { return winbond + haisi; }
};

FleetSummary summarizeFleet(const QVector<SeenCamera> &cameras);

// The netmask as a prefix length; 32 for a null mask.
int prefixLength(const QHostAddress &netmask);

// "eth0 192.168.1.10/24", as the interface is named to the user.
QString interfaceText(const SearchInterface &interface);

} // namespace veltor
