#pragma once

#include "cli/commands.h"
#include "cli/upgradestate.h"
#include "discovery/fleetsearch.h"

#include <QHash>

// Which cameras an upgrade run takes on, and the state each starts in.
namespace veltor::cli {

// The version a camera reports for the kind of upload (UpdateKind).
QString reportedVersion(const DeviceRecord &record, int kind);

// Searches until every name (MAC or IP) has answered, or `seconds` have
// passed: a camera still restarting from an earlier run answers late.
QVector<SeenCamera> searchUntilFound(const QStringList &names, int seconds, Io io);

// The names of an earlier run's targets that are not done.
QStringList namesToRedo(const QVector<UpgradeTarget> &earlier, bool verifying);

// The targets of this run, `names` first looked up among `seen` (each camera
// once, however often it is named) and queued, or failed when absent; then the
// done targets of `earlier` as they were. A camera whose earlier upload went
// through and that already reports `run.expectVersion` is verified without a
// second upload. `cameras` gets the camera of each queued target by index.
QVector<UpgradeTarget> planTargets(const QStringList &names, const QVector<UpgradeTarget> &earlier,
                                   const QVector<SeenCamera> &seen, const UpgradeRun &run,
                                   QHash<int, SeenCamera> *cameras);

} // namespace veltor::cli
