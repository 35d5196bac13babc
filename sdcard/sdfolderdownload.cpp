#include "sdcard/sdfolderdownload.h"

#include "sdcard/sdtexts.h"
#include "sdcard/sdtransfer.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkReply>

namespace veltor {

namespace {

} // namespace

SdFolderDownload::SdFolderDownload(QNetworkAccessManager *manager, const SdCamera &camera)
    : manager(manager), camera(camera)
{
}

void SdFolderDownload::fetchCard(const QString &localDir)
{
    QByteArray body;
    if (!listing(QString(), SdLevel::Root, &body))
        return;
    for (const SdEntry &day : parseSdListing(body, SdLevel::Root))
        fetchFolder(day.name, localDir);
}

void SdFolderDownload::fetchFolder(const QString &folder, const QString &localDir)
{
    const QString local = makeChild(localDir, folder, folder);
    QByteArray body;
    if (local.isEmpty() || !listing(folder, SdLevel::Folder, &body))
        return;
    for (const QString &subFolder : sdSubFolderNames(body))
        fetchSubFolder(folder, subFolder, local);
}

void SdFolderDownload::fetchSubFolder(const QString &folder, const QString &subFolder,
                                      const QString &localDir)
{
    const QString path = folder + subFolder;
    const QString local = makeChild(localDir, subFolder, path);
    QByteArray body;
    if (local.isEmpty() || !listing(path, SdLevel::SubFolder, &body))
        return;
    for (const QString &name : sdFileNames(body, subFolder))
        fetchFile(camera.sdUrl(path + name), local);
}

bool SdFolderDownload::fetchFile(const QUrl &url, const QString &localDir)
{
    const QString path = url.path(QUrl::FullyDecoded);
    const QString shown = path.mid(int(qstrlen("/sd/")));
    const QString name = QFileInfo(path).fileName();
    const QString target = localDir + QLatin1Char('/') + name;
    QString error;
    if (name.isEmpty() || sdLocalName(name) != name) {
        failures << SdTexts::tr("%1 (not a valid file name)").arg(shown);
    } else if (keepExisting && (QFileInfo::exists(target) || QFileInfo(target).isSymLink())) {
        kept << target;
        return true;
    } else if (downloadToFile(manager, url, target, &error)) {
        if (onFile)
            onFile(shown, target);
        return true;
    } else {
        failures << SdTexts::tr("%1 (%2)").arg(shown, error);
    }
    if (onFile)
        onFile(shown, QString());
    return false;
}

bool SdFolderDownload::listing(const QString &path, SdLevel level, QByteArray *body)
{
    QNetworkReply *reply =
        sdGet(manager, camera.sdUrl(path), kSdListingTimeoutMs, kSdListingMaxBytes);
    waitForFinished(reply);
    if (onListing)
        onListing(reply, level);
    const QString problem = replyProblem(reply);
    if (problem.isEmpty())
        *body = reply->read(kSdListingMaxBytes);
    else
        failures << SdTexts::tr("%1 (the listing failed: %2)")
                        .arg(path.isEmpty() ? QStringLiteral("/") : path, problem);
    reply->deleteLater();
    return problem.isEmpty();
}

// The local directory for a camera folder, made below localDir; empty (and a
// failure noted) when the name cannot be one or a link stands in its place.
QString SdFolderDownload::makeChild(const QString &localDir, const QString &cameraName,
                                    const QString &shown)
{
    const QString local = sdLocalName(cameraName);
    const QString path = localDir + QLatin1Char('/') + local;
    if (local.isEmpty() || QFileInfo(path).isSymLink() || !QDir().mkpath(path)) {
        failures << SdTexts::tr("%1 (the folder could not be created)").arg(shown);
        return QString();
    }
    return path;
}

} // namespace veltor
