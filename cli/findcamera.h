#pragma once

#include "cli/commands.h"
#include "discovery/fleetsearch.h"

#include <optional>

namespace veltor::cli {

// Searches on every interface that can broadcast and gives the camera that
// `target` (a MAC or an IPv4 address) names, with the family and HTTP port
// it announced. Empty after telling why on err.
std::optional<SeenCamera> findCamera(const QString &target, int waitMs, const QString &command,
                                     Io io);

} // namespace veltor::cli
