#pragma once

#include "discovery/fleetsearch.h"

class QTextStream;

// The diagnostics of `discover` on stderr.
namespace veltor::cli {

void reportInterfaces(QTextStream &err, const QVector<SearchInterface> &interfaces);

// Errors, counts, and when nothing answered, the usual causes.
void reportSearch(QTextStream &err, const FleetSearchResult &result);

} // namespace veltor::cli
