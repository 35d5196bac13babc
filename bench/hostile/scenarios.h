#pragma once

#include "harness.h"

// Each runs one hostile situation against the window and says how it went.
Outcome udpSizes(Harness &harness);
Outcome replyFlood(Harness &harness);
Outcome sdStatus(Harness &harness, const QString &mode);
Outcome credentials(Harness &harness, const QString &mode);
Outcome sdListing(Harness &harness, const QString &mode);
Outcome uploadReset(Harness &harness);
Outcome sdDownloadCut(Harness &harness);

// Shared verdicts: the window froze, or memory grew by more than `maxGrowthKb`.
void judge(Outcome *outcome, qint64 rssBeforeKb, qint64 maxGrowthKb);
