#pragma once

#include "cli/commands.h"
#include "discovery/fleetsearch.h"

namespace veltor::cli {

// Both searches on every interface that can broadcast; problems of the
// search itself (a port in use, no interface) go to err, named by `command`.
FleetSearchResult searchAllInterfaces(const QString &command, int rounds, int waitMs, Io io);

// A camera of `cameras` by MAC (any spelling), or nullptr.
const SeenCamera *findByMac(const QVector<SeenCamera> &cameras, const QString &mac);

} // namespace veltor::cli
