#include "sdcard/sdtransfer.h"

#include "sdcard/sdrequest.h"
#include "sdcard/sdtexts.h"

#include <QEventLoop>
#include <QFile>
#include <QNetworkReply>

namespace veltor {

namespace {

constexpr qint64 kWriteChunkBytes = 1024 * 1024;

// Why a finished transfer of `written` bytes is incomplete, or empty if it is not.
QString transferProblem(QNetworkReply *reply, qint64 written)
{
    if (reply->error() != QNetworkReply::NoError)
        return replyProblem(reply);
    const QVariant announced = reply->header(QNetworkRequest::ContentLengthHeader);
    if (announced.isValid() && announced.toLongLong() != written)
        return SdTexts::tr("the transfer ended after %1 of %2 bytes")
            .arg(written)
            .arg(announced.toLongLong());
    return QString();
}

} // namespace

void waitForFinished(QNetworkReply *reply)
{
    if (reply->isFinished())
        return;
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
}

QString replyProblem(QNetworkReply *reply)
{
    if (reply->error() == QNetworkReply::NoError)
        return QString();
    if (reply->property(kSdTooLongProperty).toBool())
        return SdTexts::tr("the answer is longer than the tool accepts");
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != 0)
        return SdTexts::tr("the camera answered %1 %2")
            .arg(status)
            .arg(reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString())
            .trimmed();
    if (reply->error() == QNetworkReply::OperationCanceledError)
        return SdTexts::tr("the camera did not answer in time");
    QString text = reply->errorString();
    for (const QUrl::FormattingOptions form : {QUrl::FormattingOptions(QUrl::PrettyDecoded),
                                               QUrl::FormattingOptions(QUrl::FullyEncoded)})
        text.replace(reply->url().toString(form), reply->url().toString(QUrl::RemoveQuery));
    return text;
}

bool downloadToFile(QNetworkAccessManager *manager, const QUrl &url, const QString &path,
                    QString *error)
{
    // "<name>.part", renamed when complete. Not QSaveFile: its commit syncs
    // every file to disk, which made a folder of pictures several times slower.
    QFile file(path + QLatin1String(".part"));
    // A leftover of an earlier run; removed first so that a link of that name
    // cannot lead the bytes somewhere else.
    QFile::remove(file.fileName());
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
        *error = SdTexts::tr("an older file of that name is in the way");
    if (error->isEmpty() && !file.rename(path))
        *error = file.errorString();
    if (!error->isEmpty())
        file.remove();
    return error->isEmpty();
}

SdAnswer fetchAnswer(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes)
{
    QNetworkReply *reply = sdGet(manager, url, timeoutMs, maxBytes);
    waitForFinished(reply);
    SdAnswer answer;
    answer.problem = replyProblem(reply);
    answer.httpStatus = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (answer.ok())
        answer.body = reply->read(maxBytes);
    reply->deleteLater();
    return answer;
}

QByteArray fetchBody(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes)
{
    return fetchAnswer(manager, url, timeoutMs, maxBytes).body;
}

} // namespace veltor
