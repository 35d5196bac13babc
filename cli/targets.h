#pragma once

#include "discovery/fleetsearch.h"

#include <QStringList>
#include <optional>

namespace veltor::cli {

// "00:11:22:AA:BB:CC" for a MAC written with ":", "-" or nothing between the
// pairs, in either case; empty when the text is no MAC.
QString normalizedMac(const QString &text);

// The cameras named by `targets` (MACs or IPv4 addresses), in the order
// given. Names that match no camera go to `missing`.
QVector<SeenCamera> selectTargets(const QVector<SeenCamera> &cameras, const QStringList &targets,
                                  QStringList *missing);

// Every camera of one family ("Winbond" or "Haisi", any case).
QVector<SeenCamera> selectFamily(const QVector<SeenCamera> &cameras, const QString &family);

} // namespace veltor::cli
