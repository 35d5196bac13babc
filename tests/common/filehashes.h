#pragma once

#include <QCryptographicHash>
#include <QDirIterator>
#include <QMap>

namespace testsupport {

// Every file below `dir` (hidden ones too), path relative to it -> SHA-256
// in hex, read after the transfers that wrote them are complete.
inline QMap<QString, QByteArray> fileHashes(const QString &dir)
{
    QMap<QString, QByteArray> found;
    QDirIterator it(dir, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        QCryptographicHash hash(QCryptographicHash::Sha256);
        // An unreadable file hashes as empty and so differs from what was served.
        if (file.open(QIODevice::ReadOnly))
            hash.addData(&file);
        found.insert(file.fileName().mid(dir.size() + 1), hash.result().toHex());
    }
    return found;
}

} // namespace testsupport
