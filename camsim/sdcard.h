#pragma once

#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <QVector>

class QIODevice;

namespace veltor::camsim {

// What a simulated SD card holds: day folders ("20261123/"), each with
// "images001/" and "record001/" sub-folders of pictures and recordings.
struct SdLayout
{
    int days = 2;
    int pictures = 3;                                     // per images folder
    QVector<qint64> recordBytes{256 * 1024, 1536 * 1024}; // one recording per entry
};

struct SdFile
{
    QString path; // below "/sd/", e.g. "20261123/record001/R20261123_100000_0001.264"
    qint64 size = 0;
    quint64 seed = 0;
    QByteArray picture; // a JPEG, small enough to keep; recordings are generated when read
    QString time;       // "23-Nov-2026 10:00"
};

// The card's tree, built deterministically from a layout. Recordings are never
// held in memory: their bytes are a function of seed and offset, made as they
// are read.
class SdCard
{
public:
    explicit SdCard(const SdLayout &layout = SdLayout());

    void format() { files.clear(); }
    bool isFolder(const QString &path) const; // "" is the root
    const SdFile *file(const QString &path) const;
    const QMap<QString, SdFile> &allFiles() const { return files; }
    qint64 usedBytes() const;

    // The fixed-column listing page of a folder.
    QByteArray listing(const QString &folder) const;
    // The file's bytes as a device. A recording's device ends after `cutAt`
    // bytes while still announcing the full size when 0 <= cutAt < size.
    static QIODevice *open(const SdFile &file, qint64 cutAt = -1);
    static QByteArray sha256(const SdFile &file);

private:
    QStringList children(const QString &folder) const;

    QMap<QString, SdFile> files;
};

} // namespace veltor::camsim
