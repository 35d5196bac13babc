#pragma once

#include "sdcard/sdlisting.h"
#include "sdcard/sdrequest.h"

#include <QStringList>
#include <QUrl>
#include <functional>

class QNetworkAccessManager;
class QNetworkReply;

namespace veltor {

// Copies camera folders and files into local directories, walking the three
// listing levels down from whatever is asked for, one request at a time,
// each waited for in a local event loop. Local names come from sdLocalName,
// so a hostile listing cannot write outside the directory given, and files
// arrive through downloadToFile, so none is ever left half-written.
class SdFolderDownload
{
public:
    SdFolderDownload(QNetworkAccessManager *manager, const SdCamera &camera);

    // Sees every finished listing request before it is read (the window tells
    // the user of a failed one at once).
    std::function<void(QNetworkReply *reply, SdLevel level)> onListing;
    // After every file: its camera path, and its local path or empty on failure.
    std::function<void(const QString &cameraPath, const QString &localPath)> onFile;
    // Leaves a local file that is already there alone (and names it in `kept`)
    // instead of replacing it.
    bool keepExisting = false;

    // Every day folder of the card, each into localDir/<day>.
    void fetchCard(const QString &localDir);
    // A day folder ("20261123/"): its sub-folders into localDir/20261123/.
    void fetchFolder(const QString &folder, const QString &localDir);
    // A sub-folder ("images001/") of a day folder: its files into localDir/images001/.
    void fetchSubFolder(const QString &folder, const QString &subFolder, const QString &localDir);
    // One file into localDir, named after the last part of the URL's path.
    bool fetchFile(const QUrl &url, const QString &localDir);

    // "camera path (reason)" for everything that did not arrive.
    QStringList failures;
    QStringList kept;

private:
    bool listing(const QString &path, SdLevel level, QByteArray *body);
    QString makeChild(const QString &localDir, const QString &cameraName, const QString &shown);

    QNetworkAccessManager *manager;
    SdCamera camera;
};

} // namespace veltor
