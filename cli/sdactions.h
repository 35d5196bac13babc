#pragma once

#include "cli/commands.h"
#include "cli/sdpath.h"
#include "sdcard/sdrequest.h"
#include "sdcard/sdstatus.h"

#include <optional>

class QNetworkAccessManager;

namespace veltor::cli {

// One "sd" action, ready to run against a camera that was found.
struct SdJob
{
    QNetworkAccessManager *manager = nullptr;
    SdCamera camera;
    SdPath path;
    QString dest;
    bool overwrite = false;
    bool json = false;
};

// The card's status, the first request of every action: it proves the
// credentials before anything else is asked. Empty after telling why.
std::optional<SdStatus> fetchSdStatus(const SdJob &job, Io io);
// The status as above, and a card that is ready.
bool sdCardReady(const SdJob &job, Io io);

int showSdStatus(const SdJob &job, Io io);
int listSdFolder(const SdJob &job, Io io);
int fetchSdPath(const SdJob &job, Io io);
int formatSdCard(const SdJob &job, Io io);

} // namespace veltor::cli
