#pragma once

#include <QString>
#include <optional>

namespace veltor::cli {

// A place on a camera's SD card as typed: "" or "/" is the card,
// "20261123" a day folder, "20261123/images001" one of its sub-folders and
// "20261123/images001/P26112310000000.jpg" a file. Folder names get the
// trailing "/" with which the camera's listings name them.
struct SdPath
{
    QString folder;
    QString subFolder;
    QString file;

    // 0 the card, 1 a day folder, 2 a sub-folder, 3 a file.
    int depth() const;
    QString cameraPath() const { return folder + subFolder + file; }
};

// Empty with `error` set for "." and ".." parts, characters that would end
// the path in a URL, and paths deeper than a file.
std::optional<SdPath> parseSdPath(const QString &text, QString *error);

} // namespace veltor::cli
