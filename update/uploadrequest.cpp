#include "update/uploadrequest.h"

#include <QUrl>

namespace veltor {

namespace {

const char kWinbondOpening[] = "------ipcamera\r\n";
const char kWinbondPartHeaders[] =
    "Content-Disposition: form-data; name=\"file\"; filename=\"upgrade.bin\"\r\n"
    "Content-Type: application/x-macbinary\r\n\r\n";
const char kWinbondClosing[] = "\r\n------ipcamera--\r\n";

const char kHaisiOpening[] = "------WebKitFormBoundary91xFQXj5MnrAUIRd\r\n";
const char kHaisiDispositionStart[] =
    "Content-Disposition: form-data; name=\"setting_file\"; filename=\"";
const char kHaisiDispositionEnd[] = "\"\r\n"
                                    "Content-Type: application/octet-stream\r\n\r\n";
const char kHaisiClosing[] = "\r\n------WebKitFormBoundary91xFQXj5MnrAUIRd--\r\n";

QByteArray decimal(qint64 value)
{
    return QByteArray::number(value);
}

QByteArray haisiBodyHead(const QString &fileName)
{
    return QByteArray(kHaisiOpening) + kHaisiDispositionStart + fileName.toUtf8() +
           kHaisiDispositionEnd;
}

} // namespace

QByteArray winbondUploadTrailer()
{
    return QByteArray(kWinbondClosing);
}

QByteArray haisiUploadTrailer()
{
    return QByteArray(kHaisiClosing);
}

QByteArray winbondUploadHead(const char *path, const QString &user, const QString &password,
                             qint64 fileSize)
{
    const qint64 framing =
        qstrlen(kWinbondOpening) + qstrlen(kWinbondPartHeaders) + qstrlen(kWinbondClosing);
    QByteArray head;
    head += QByteArray("POST ") + path + "?user=" + user.toUtf8() + "&pwd=" + password.toUtf8() +
            " HTTP/1.1\r\n";
    head += QByteArray("Content-Length: ") + decimal(fileSize + framing) + "\r\n";
    head += "Content-Type: multipart/form-data; boundary=----ipcamera\r\n\r\n";
    head += kWinbondOpening;
    head += kWinbondPartHeaders;
    return head;
}

QByteArray haisiUploadHead(const UploadTarget &t)
{
    const QByteArray hostPort = t.ip.toUtf8() + ':' + t.port.toUtf8();
    const QByteArray basic = QString(t.user + QLatin1Char(':') + t.password).toUtf8().toBase64();
    const QByteArray bodyHead = haisiBodyHead(t.fileName);
    const qint64 contentLength = bodyHead.size() + qstrlen(kHaisiClosing) + t.fileSize;

    QByteArray head;
    head += QByteArray("POST ") + kHaisiUpgradePath +
            "?-filename=" + QUrl::toPercentEncoding(t.fileName) + " HTTP/1.1\r\n";
    head += "Host:" + hostPort + "\r\n";
    head += "User-Agent: VELTOR Camera Tool\r\n";
    head += QByteArray("Content-Length: ") + decimal(contentLength) + "\r\n";
    head += "Accept: text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8\r\n";
    head += "Origin:" + hostPort + "\r\n";
    head += "Authorization: Basic " + basic + "\r\n";
    head +=
        "Content-Type: multipart/form-data; boundary=----WebKitFormBoundary91xFQXj5MnrAUIRd\r\n";
    head += "Referer: http://" + hostPort + "/web/initializemain.html\r\n";
    head += "DTN: 1\r\n";
    head += "Accept-Language: en-us\r\n";
    head += "Accept-Encoding: gzip, deflate\r\n";
    head += "Connection: keep-alive\r\n\r\n";
    head += bodyHead;
    return head;
}

UploadRequest buildUploadRequest(const UploadTarget &t)
{
    const bool knownKind = t.kind == FirmwareUpdate || t.kind == WebUiUpdate;
    UploadRequest request;
    if (!knownKind)
        return request;
    if (t.family == QLatin1String(kWinbondFamily)) {
        const char *path = t.kind == FirmwareUpdate ? kWinbondFirmwarePath : kWinbondWebUiPath;
        request.head = winbondUploadHead(path, t.user, t.password, t.fileSize);
        request.trailer = winbondUploadTrailer();
    } else if (t.family == QLatin1String(kHaisiFamily)) {
        request.head = haisiUploadHead(t);
        request.trailer = haisiUploadTrailer();
    }
    return request;
}

} // namespace veltor
