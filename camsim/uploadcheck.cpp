#include "camsim/uploadcheck.h"

#include <cctype>

namespace veltor::camsim {

namespace {

constexpr int kMaxPartHead = 16 * 1024;

const QList<QByteArray> kWinbondHeaders = {"Content-Length", "Content-Type"};
const QList<QByteArray> kHaisiHeaders = {
    "Host",   "User-Agent",      "Content-Length",  "Accept",
    "Origin", "Authorization",   "Content-Type",    "Referer",
    "DTN",    "Accept-Language", "Accept-Encoding", "Connection"};

QString headerOrderError(const HttpRequest &request, const QList<QByteArray> &wanted)
{
    QList<QByteArray> names;
    for (const auto &header : request.headers)
        names << header.first;
    if (names == wanted)
        return QString();
    QByteArrayList got(names);
    return QStringLiteral("headers are %1, wanted %2")
        .arg(QString::fromLatin1(got.join(',')),
             QString::fromLatin1(QByteArrayList(wanted).join(',')));
}

// Every byte unreserved or a %XX escape: a browser-like form escapes the rest.
bool fullyEscaped(const QByteArray &value)
{
    for (int i = 0; i < value.size(); ++i) {
        const char c = value.at(i);
        if (c == '%' && i + 2 < value.size() &&
            isxdigit(static_cast<unsigned char>(value.at(i + 1))) &&
            isxdigit(static_cast<unsigned char>(value.at(i + 2)))) {
            i += 2;
            continue;
        }
        if (!(isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '.' || c == '_' ||
              c == '~'))
            return false;
    }
    return true;
}

QString checkWinbondHead(const HttpRequest &r, const CameraSettings &camera,
                         UploadExpectation *expected)
{
    if (camera.family != Family::Winbond)
        return QStringLiteral("a Haisi camera has no %1").arg(r.path);
    // The camera compares the query as sent: the tool must not escape anything.
    const QByteArray query = "user=" + camera.user.toUtf8() + "&pwd=" + camera.password.toUtf8();
    if (r.rawQuery != query)
        return QStringLiteral("query is \"%1\", wanted \"%2\"")
            .arg(QString::fromUtf8(r.rawQuery), QString::fromUtf8(query));
    expected->boundary = "----ipcamera";
    expected->fieldName = "file";
    expected->fileName = "upgrade.bin";
    expected->partType = "application/x-macbinary";
    return headerOrderError(r, kWinbondHeaders);
}

QString checkHaisiHead(const HttpRequest &r, const CameraSettings &camera,
                       UploadExpectation *expected)
{
    if (camera.family != Family::Haisi)
        return QStringLiteral("a Winbond camera has no %1").arg(r.path);
    const QByteArray escapedName = r.rawQuery.mid(qstrlen("-filename="));
    if (!r.rawQuery.startsWith("-filename=") || escapedName.isEmpty() || !fullyEscaped(escapedName))
        return QStringLiteral("query \"%1\" does not carry a fully escaped -filename")
            .arg(QString::fromUtf8(r.rawQuery));
    if (const QString order = headerOrderError(r, kHaisiHeaders); !order.isEmpty())
        return order;
    const QByteArray hostPort = camera.ip.toUtf8() + ':' + QByteArray::number(camera.httpPort);
    const QByteArray basic =
        "Basic " + (camera.user + QLatin1Char(':') + camera.password).toUtf8().toBase64();
    if (!r.head.contains(QByteArray("\r\nHost:" + hostPort + "\r\n")) ||
        !r.head.contains(QByteArray("\r\nOrigin:" + hostPort + "\r\n")))
        return QStringLiteral("Host and Origin must be \"%1\" right after the colon")
            .arg(QString::fromUtf8(hostPort));
    if (r.header("Authorization") != basic)
        return QStringLiteral("wrong Authorization \"%1\"")
            .arg(QString::fromUtf8(r.header("Authorization")));
    if (r.header("Referer") != "http://" + hostPort + "/web/initializemain.html")
        return QStringLiteral("wrong Referer");
    expected->boundary = "----WebKitFormBoundary91xFQXj5MnrAUIRd";
    expected->fieldName = "setting_file";
    expected->fileName = QByteArray::fromPercentEncoding(escapedName);
    expected->partType = "application/octet-stream";
    return QString();
}

} // namespace

QString checkUploadHead(const HttpRequest &r, const CameraSettings &camera,
                        UploadExpectation *expected)
{
    if (r.method != "POST" || r.version != "HTTP/1.1")
        return QStringLiteral("request line \"%1 %2\" is not a POST over HTTP/1.1")
            .arg(QString::fromLatin1(r.method), QString::fromLatin1(r.version));
    const bool haisi = r.path == QLatin1String("/web/cgi-bin/hi3510/upgrade.cgi");
    const QString error =
        haisi ? checkHaisiHead(r, camera, expected) : checkWinbondHead(r, camera, expected);
    if (!error.isEmpty())
        return error;
    if (r.header("Content-Type") != "multipart/form-data; boundary=" + expected->boundary)
        return QStringLiteral("wrong Content-Type \"%1\"")
            .arg(QString::fromLatin1(r.header("Content-Type")));
    expected->contentLength = r.contentLength();
    if (expected->contentLength < 0)
        return QStringLiteral("no Content-Length");
    return QString();
}

UploadReceiver::UploadReceiver(const UploadExpectation &expected, const QString &bodyPath,
                               const QString &filePath)
    : expect(expected), body(bodyPath), file(filePath)
{
    if (!body.open(QIODevice::WriteOnly) || !file.open(QIODevice::WriteOnly))
        error = QStringLiteral("cannot store the upload: %1").arg(file.errorString());
}

QByteArray UploadReceiver::closingLine() const
{
    return "\r\n--" + expect.boundary + "--\r\n";
}

void UploadReceiver::feed(const QByteArray &piece)
{
    received += piece.size();
    if (!error.isEmpty())
        return;
    body.write(piece);
    if (inFile)
        feedFile(piece);
    else
        feedPartHead(piece);
}

void UploadReceiver::feedPartHead(const QByteArray &piece)
{
    partHead += piece;
    const int end = partHead.indexOf("\r\n\r\n");
    if (end < 0) {
        if (partHead.size() > kMaxPartHead)
            error = QStringLiteral("no end of the part headers in %1 bytes").arg(kMaxPartHead);
        return;
    }
    const QByteArray wanted = "--" + expect.boundary +
                              "\r\n"
                              "Content-Disposition: form-data; name=\"" +
                              expect.fieldName + "\"; filename=\"" + expect.fileName +
                              "\"\r\n"
                              "Content-Type: " +
                              expect.partType + "\r\n\r\n";
    const QByteArray rest = partHead.mid(end + 4);
    partHead.truncate(end + 4);
    if (partHead != wanted) {
        error = QStringLiteral("opening and part headers are \"%1\", wanted \"%2\"")
                    .arg(QString::fromUtf8(partHead), QString::fromUtf8(wanted));
        return;
    }
    inFile = true;
    feedFile(rest);
}

void UploadReceiver::feedFile(const QByteArray &piece)
{
    // The last bytes may be the closing line; all before them is file.
    tail += piece;
    const int keep = closingLine().size();
    if (tail.size() <= keep)
        return;
    const int fileBytes = tail.size() - keep;
    file.write(tail.constData(), fileBytes);
    sha.addData(tail.left(fileBytes));
    fileSize += fileBytes;
    tail.remove(0, fileBytes);
}

QString UploadReceiver::finish(bool complete)
{
    body.close();
    file.close();
    if (!error.isEmpty())
        return error;
    if (!complete)
        return QStringLiteral("body ended after %1 of %2 announced bytes")
            .arg(received)
            .arg(expect.contentLength);
    if (!inFile)
        return QStringLiteral("the body ended inside the part headers");
    if (tail != closingLine())
        return QStringLiteral("the body does not end with the closing line \"%1\"")
            .arg(QString::fromLatin1(closingLine().toPercentEncoding()));
    return QString();
}

} // namespace veltor::camsim
