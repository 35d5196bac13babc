#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;

// Waiting transfers for the SD card browser. Both wait in a local event loop,
// so the window stays responsive and other replies are handled meanwhile.
namespace veltor {

// Streams the body of `url` into the file `path` as it arrives, so that a
// recording of any size costs only a bounded buffer. The file appears under
// its real name only when the whole body arrived ("<name>.part" is
// renamed); a refused, failed or cut transfer leaves nothing there and gives
// false with a reason in `error`.
bool downloadToFile(QNetworkAccessManager *manager, const QUrl &url, const QString &path,
                    QString *error);

// The whole body of a small resource (a preview picture), or empty on failure.
QByteArray fetchBody(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes);

} // namespace veltor
