#include "discovery/fleetsearch.h"

namespace veltor {

QVector<SearchInterface> broadcastInterfaces()
{
    return {};
}

FleetSearchResult searchFleet(const FleetSearchOptions &)
{
    return {};
}

} // namespace veltor
