#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace testsupport {

// Every file below `dir` (hidden ones too), path relative to it -> SHA-256
// in hex, read after the transfers that wrote them are complete.
QMap<QString, QByteArray> fileHashes(const QString &dir);

} // namespace testsupport
