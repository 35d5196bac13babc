#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

// The camera's "/sd/" listing is a fixed-column text page: every field sits
// at a fixed offset from the line break before its line. The line after the
// last line break is never read, and a short line gives short or empty
// fields rather than an error.
namespace veltor {

enum class SdLevel { Root, Folder, SubFolder };

struct SdEntry
{
    QString name;
    QString time;
    QString size; // only at SubFolder level
};

// Entries of a listing at `level`. At SubFolder level `subFolder` (the
// second-level name) decides between the images and the record layout; a
// sub-folder of neither kind lists nothing.
QVector<SdEntry> parseSdListing(const QByteArray &body, SdLevel level,
                                const QString &subFolder = QString());

// Size column rule: "0" for a field starting with 0; else the part before
// the first "k" plus "k" (images, and records given in k), or the part before
// the first "M" plus "M" (records given in M).
QString sdSizeText(const QString &field, bool recordFolder);

// Sub-folders named in a folder listing for a download: the 10-character
// field whose 10th character is "/".
QStringList sdSubFolderNames(const QByteArray &body);

// File names of a sub-folder listing for a download (empty fields dropped).
QStringList sdFileNames(const QByteArray &body, const QString &subFolder);

// The local directory or file name for a camera name: the part before the
// first "/". Empty when that would not name a child of the target directory
// ("", ".", ".."), so a hostile listing cannot write outside it.
QString sdLocalName(const QString &cameraName);

} // namespace veltor
