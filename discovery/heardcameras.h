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

    // The heard cameras of the listed rows (by their MAC texts), in row order,
    // each with its row; rows listed by anyone else are left out.
    QVector<SeenCamera> listed(const QStringList &rowMacs, QVector<int> *rows = nullptr) const;

    struct Change
    {
        int row = 0;
        SeenCamera camera;
    };
    // Flags the listed cameras as heard on `interface` and returns the rows
    // whose findings differ from those of the previous call.
    QVector<Change> reflag(const QStringList &rowMacs, const SearchInterface &interface);

private:
    QHash<QString, SeenCamera> byMac;
};

} // namespace veltor
