#pragma once

#include "discovery/fleetsearch.h"

#include <QHash>
#include <QStringList>
#include <QVector>

// What the window heard of each listed camera beside its row: the reply's
// family and source address, and the findings its row shows. Keyed by the MAC
// text as listed, so rows are matched whatever their order.
namespace veltor {

class HeardCameras
{
public:
    // Kept from the reply that listed the camera; later replies change nothing.
    void add(const SeenCamera &camera);
    void clear();

    // The heard cameras of the listed rows (by their MAC texts), in row order;
    // rows listed by anyone else are left out.
    QVector<SeenCamera> listed(const QStringList &rowMacs) const;

    // Flags the cameras as heard on `interface` and returns those whose
    // findings differ from the previous call's. Only the cameras heard since
    // then and those claiming the same IP can change, unless the interface
    // did: a burst costs what it brings, not the whole fleet.
    QVector<SeenCamera> reflag(const SearchInterface &interface);

private:
    QVector<SeenCamera> affectedBy(const QStringList &macs) const;

    QHash<QString, SeenCamera> byMac;
    QHash<QString, QStringList> macsByIp;
    QStringList fresh; // heard since the last reflag
    QHostAddress flaggedOn;
};

} // namespace veltor
