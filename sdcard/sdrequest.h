#pragma once

#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// The SD card CGI requests of one camera, and the limits that keep a silent
// or hostile camera from hanging the tool or filling its memory.
namespace veltor {

// Inactivity limits: a request that receives nothing for this long fails.
constexpr int kSdStatusTimeoutMs = 5000;
constexpr int kSdListingTimeoutMs = 10000;
constexpr int kSdFileTimeoutMs = 20000;
constexpr int kSdFormatTimeoutMs = 120000; // formatting a large card takes a while

// Largest bodies read whole; anything bigger is cut off and fails.
constexpr qint64 kSdStatusMaxBytes = 64 * 1024;
constexpr qint64 kSdListingMaxBytes = 8 * 1024 * 1024;
constexpr qint64 kSdPictureMaxBytes = 32 * 1024 * 1024;
// Bytes a file transfer may hold in memory before they are written.
constexpr qint64 kSdFileBufferBytes = 8 * 1024 * 1024;

struct SdCamera
{
    QString ip;
    QString port;
    QString user;
    QString password;

    QUrl statusUrl() const;
    QUrl formatUrl() const;
    // "/sd/" + path, where path is the folders and file joined as listed
    // (folder names keep their trailing "/").
    QUrl sdUrl(const QString &path) const;
};

// Set on a reply that sdGet aborted for its length, so the failure can be
// told apart from a timeout (both end as OperationCanceledError).
constexpr char kSdTooLongProperty[] = "sdTooLong";

// GET with an inactivity timeout; when maxBytes > 0, a body growing beyond
// it aborts the reply (which then finishes with an error).
QNetworkReply *sdGet(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes = 0);

} // namespace veltor
