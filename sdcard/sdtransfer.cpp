#include "sdcard/sdtransfer.h"

#include "sdcard/sdrequest.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QNetworkReply>

namespace veltor {

namespace {

constexpr qint64 kWriteChunkBytes = 1024 * 1024;

void waitForFinished(QNetworkReply *reply)
{
    if (reply->isFinished())
        return;
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
}

// Why a finished transfer of `written` bytes is incomplete, or empty if it is not.
QString transferProblem(QNetworkReply *reply, qint64 written)
{
    if (reply->error() != QNetworkReply::NoError)
        return reply->errorString();
    const QVariant announced = reply->header(QNetworkRequest::ContentLengthHeader);
    if (announced.isValid() && announced.toLongLong() != written)
        return QCoreApplication::translate("sdmanager", "the transfer ended after %1 of %2 bytes")
            .arg(written)
            .arg(announced.toLongLong());
    return QString();
}

} // namespace

bool downloadToFile(QNetworkAccessManager *manager, const QUrl &url, const QString &path,
                    QString *error)
{
    // "<name>.part", renamed when complete. Not QSaveFile: its commit syncs
    // every file to disk, which made a folder of pictures several times slower.
    QFile file(path + QLatin1String(".part"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        *error = file.errorString();
        return false;
    }
    QNetworkReply *reply = sdGet(manager, url, kSdFileTimeoutMs);
    reply->setReadBufferSize(kSdFileBufferBytes);
    qint64 written = 0;
    QString writeError;
    auto drain = [&] {
        while (writeError.isEmpty() && reply->bytesAvailable() > 0) {
            const QByteArray chunk = reply->read(kWriteChunkBytes);
            if (file.write(chunk) != chunk.size()) {
                writeError = file.errorString();
                reply->abort();
            }
            written += chunk.size();
        }
    };
    QObject::connect(reply, &QNetworkReply::readyRead, reply, drain);
    waitForFinished(reply);
    drain();
    *error = writeError.isEmpty() ? transferProblem(reply, written) : writeError;
    reply->disconnect();
    reply->deleteLater();
    if (error->isEmpty() && !file.flush())
        *error = file.errorString();
    file.close();
    if (error->isEmpty() && QFile::exists(path) && !QFile::remove(path))
        *error =
            QCoreApplication::translate("sdmanager", "an older file of that name is in the way");
    if (error->isEmpty() && !file.rename(path))
        *error = file.errorString();
    if (!error->isEmpty())
        file.remove();
    return error->isEmpty();
}

QByteArray fetchBody(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes)
{
    QNetworkReply *reply = sdGet(manager, url, timeoutMs, maxBytes);
    waitForFinished(reply);
    const QByteArray body =
        reply->error() == QNetworkReply::NoError ? reply->read(maxBytes) : QByteArray();
    reply->deleteLater();
    return body;
}

} // namespace veltor
