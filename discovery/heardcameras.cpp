#include "discovery/heardcameras.h"

#include "discovery/fleetmerge.h"

namespace veltor {

void HeardCameras::add(const SeenCamera &camera)
{
    if (!byMac.contains(camera.record.mac))
        byMac.insert(camera.record.mac, camera);
}

void HeardCameras::clear()
{
    byMac.clear();
}

QVector<SeenCamera> HeardCameras::listed(const QStringList &rowMacs, QVector<int> *rows) const
{
    QVector<SeenCamera> cameras;
    cameras.reserve(rowMacs.size());
    for (int row = 0; row < rowMacs.size(); ++row) {
        const auto found = byMac.constFind(rowMacs.at(row));
        if (found == byMac.constEnd())
            continue;
        cameras << *found;
        if (rows)
            *rows << row;
    }
    return cameras;
}

QVector<HeardCameras::Change> HeardCameras::reflag(const QStringList &rowMacs,
                                                   const SearchInterface &interface)
{
    QVector<int> rows;
    QVector<SeenCamera> cameras = listed(rowMacs, &rows);
    for (SeenCamera &camera : cameras) {
        camera.interfaceAddress = interface.address;
        camera.receivedOn = {interface.address};
    }
    flagFindings(&cameras, {interface});
    QVector<Change> changes;
    for (int i = 0; i < cameras.size(); ++i) {
        SeenCamera &kept = byMac[cameras.at(i).record.mac];
        // A marker's tooltip names the interface's subnet: redone when it changed.
        const bool changed =
            kept.findings != cameras.at(i).findings ||
            (!kept.findings.isEmpty() && kept.interfaceAddress != interface.address);
        kept = cameras.at(i);
        if (changed)
            changes << Change{rows.at(i), cameras.at(i)};
    }
    return changes;
}

} // namespace veltor
