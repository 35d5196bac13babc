#include "cli/sdactions.h"

#include "sdcard/sdfolderdownload.h"

#include <QDir>
#include <QTextStream>

namespace veltor::cli {

namespace {

void walk(SdFolderDownload *download, const SdJob &job)
{
    const SdPath &path = job.path;
    switch (path.depth()) {
    case 0:
        download->fetchCard(job.dest);
        break;
    case 1:
        download->fetchFolder(path.folder, job.dest);
        break;
    case 2:
        download->fetchSubFolder(path.folder, path.subFolder, job.dest);
        break;
    default:
        download->fetchFile(job.camera.sdUrl(path.cameraPath()), job.dest);
    }
}

} // namespace

int fetchSdPath(const SdJob &job, Io io)
{
    if (!sdCardReady(job, io))
        return Failure;
    if (!QDir().mkpath(job.dest)) {
        io.err << "veltor-cli sd: cannot create the directory " << job.dest << '\n';
        return Failure;
    }
    SdFolderDownload download(job.manager, job.camera);
    download.keepExisting = !job.overwrite;
    int saved = 0;
    download.onFile = [&](const QString &cameraPath, const QString &localPath) {
        if (localPath.isEmpty())
            return;
        ++saved;
        io.out << cameraPath << " -> " << QDir::toNativeSeparators(localPath) << '\n' << Qt::flush;
    };
    walk(&download, job);
    for (const QString &kept : download.kept)
        io.err << "veltor-cli sd: kept " << kept << " (already there; --overwrite replaces it)\n";
    for (const QString &failure : download.failures)
        io.err << "veltor-cli sd: not fetched: " << failure << '\n';
    io.err << saved << " saved, " << download.kept.size() << " kept, " << download.failures.size()
           << " failed\n";
    return download.failures.isEmpty() ? Success : Failure;
}

} // namespace veltor::cli
