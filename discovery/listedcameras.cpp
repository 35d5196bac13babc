#include "discovery/listedcameras.h"

#include "discovery/rowordering.h"

namespace veltor {

std::optional<int> ListedCameras::admit(const QString &mac, int key)
{
    if (macs.contains(mac))
        return std::nullopt;
    macs.insert(mac);
    const int row = insertionRow(keys, key);
    keys.insert(row, key);
    return row;
}

void ListedCameras::clear()
{
    macs.clear();
    keys.clear();
}

} // namespace veltor
