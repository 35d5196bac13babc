#pragma once

#include "camsim/camerasettings.h"
#include "camsim/httprequest.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QString>

// What a camera's upgrade CGI insists on, written from the camera's side and
// independent of how the tool builds its requests: the request line, the
// header set and order of the family's form, and multipart framing with one
// file part.
namespace veltor::camsim {

// The multipart part the camera expects, learnt from the request head.
struct UploadExpectation
{
    QByteArray boundary;  // as in the Content-Type, without the leading "--"
    QByteArray fieldName; // "file" or "setting_file"
    QByteArray fileName;  // "upgrade.bin", or the name from the Haisi query
    QByteArray partType;
    qint64 contentLength = -1;
};

// Checks the head of an upload request for `camera`; the error text, empty
// when the head is what the camera's CGI wants.
QString checkUploadHead(const HttpRequest &request, const CameraSettings &camera,
                        UploadExpectation *expected);

// Takes the body piece by piece: the opening line and part headers are
// checked, the file goes to disk and into a SHA-256 as it comes, and only the
// bytes that may still be the closing line stay in memory.
class UploadReceiver
{
public:
    UploadReceiver(const UploadExpectation &expected, const QString &bodyPath,
                   const QString &filePath);
    void feed(const QByteArray &piece);
    // The framing error, empty when the body was complete and well framed.
    QString finish(bool complete);

    qint64 fileBytes() const { return fileSize; }
    QByteArray sha256Hex() const { return sha.result().toHex(); }

private:
    void feedPartHead(const QByteArray &piece);
    void feedFile(const QByteArray &piece);
    QByteArray closingLine() const;

    UploadExpectation expect;
    QFile body;
    QFile file;
    QCryptographicHash sha{QCryptographicHash::Sha256};
    QByteArray partHead;
    QByteArray tail;
    bool inFile = false;
    qint64 received = 0;
    qint64 fileSize = 0;
    QString error;
};

} // namespace veltor::camsim
