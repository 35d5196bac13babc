#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// Waiting transfers for the SD card browser and the command line. They wait
// in a local event loop, so a window stays responsive and other replies are
// handled meanwhile.
namespace veltor {

void waitForFinished(QNetworkReply *reply);

// Why a finished reply failed, or empty when it did not. Never Qt's own
// error text with the URL in it: the URL's query carries the password.
QString replyProblem(QNetworkReply *reply);

// Streams the body of `url` into the file `path` as it arrives, so that a
// recording of any size costs only a bounded buffer. The file appears under
// its real name only when the whole body arrived ("<name>.part" is
// renamed); a refused, failed or cut transfer leaves nothing there and gives
// false with a reason in `error`.
bool downloadToFile(QNetworkAccessManager *manager, const QUrl &url, const QString &path,
                    QString *error);

// A finished request for a small resource.
struct SdAnswer
{
    QByteArray body;    // at most the bytes asked for
    QString problem;    // empty on success
    int httpStatus = 0; // 0 when no HTTP answer came

    bool ok() const { return problem.isEmpty(); }
    bool refused() const { return httpStatus == 401; }
};

SdAnswer fetchAnswer(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes);

// The whole body of a small resource (a preview picture), or empty on failure.
QByteArray fetchBody(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes);

} // namespace veltor
