#include "update/uploadrequest.h"

#include <QtTest>

using veltor::UploadTarget;
Q_DECLARE_METATYPE(veltor::UploadTarget)

class tst_UploadRequest : public QObject
{
    Q_OBJECT

private slots:
    void exactBytes_data();
    void exactBytes();
    void contentLengthMatchesBody_data();
    void contentLengthMatchesBody();
};

namespace {

UploadTarget target(const char *family, int kind, const QString &user, const QString &password,
                    const QString &fileName, qint64 size)
{
    UploadTarget t;
    t.family = QString::fromLatin1(family);
    t.kind = kind;
    t.ip = QStringLiteral("192.168.1.5");
    t.port = QStringLiteral("8080");
    t.user = user;
    t.password = password;
    t.fileName = fileName;
    t.fileSize = size;
    return t;
}

QByteArray haisiHead(const QByteArray &query, const QByteArray &contentLength,
                     const QByteArray &basic, const QByteArray &rawName)
{
    return "POST /web/cgi-bin/hi3510/upgrade.cgi?-filename=" + query +
           " HTTP/1.1\r\n"
           "Host:192.168.1.5:8080\r\n"
           "User-Agent: VELTOR Camera Tool\r\n"
           "Content-Length: " +
           contentLength +
           "\r\n"
           "Accept: text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8\r\n"
           "Origin:192.168.1.5:8080\r\n"
           "Authorization: Basic " +
           basic +
           "\r\n"
           "Content-Type: multipart/form-data; boundary=----WebKitFormBoundary91xFQXj5MnrAUIRd\r\n"
           "Referer: http://192.168.1.5:8080/web/initializemain.html\r\n"
           "DTN: 1\r\n"
           "Accept-Language: en-us\r\n"
           "Accept-Encoding: gzip, deflate\r\n"
           "Connection: keep-alive\r\n\r\n"
           "------WebKitFormBoundary91xFQXj5MnrAUIRd\r\n"
           "Content-Disposition: form-data; name=\"setting_file\"; filename=\"" +
           rawName +
           "\"\r\n"
           "Content-Type: application/octet-stream\r\n\r\n";
}

QByteArray winbondHead(const QByteArray &requestLine, const QByteArray &contentLength)
{
    return requestLine + "Content-Length: " + contentLength +
           "\r\n"
           "Content-Type: multipart/form-data; boundary=----ipcamera\r\n\r\n"
           "------ipcamera\r\n"
           "Content-Disposition: form-data; name=\"file\"; filename=\"upgrade.bin\"\r\n"
           "Content-Type: application/x-macbinary\r\n\r\n";
}

const QByteArray kWinbondTrailer = "\r\n------ipcamera--\r\n";
const QByteArray kHaisiTrailer = "\r\n------WebKitFormBoundary91xFQXj5MnrAUIRd--\r\n";

} // namespace

void tst_UploadRequest::exactBytes_data()
{
    QTest::addColumn<UploadTarget>("target");
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("trailer");

    const QString admin = QStringLiteral("admin");
    QTest::newRow("winbond firmware, a million bytes")
        << target("Winbond", 0, admin, QStringLiteral("1234"), QStringLiteral("fw.bin"), 1000000)
        << winbondHead("POST /upgrade_firmware.cgi?user=admin&pwd=1234 HTTP/1.1\r\n", "1000146")
        << kWinbondTrailer;
    QTest::newRow("winbond webui, credentials unescaped")
        << target("Winbond", 1, QStringLiteral("a&b c"), QStringLiteral("p w&x=%"),
                  QStringLiteral("ui.bin"), 10)
        << winbondHead("POST /upgrade_htmls.cgi?user=a&b c&pwd=p w&x=% HTTP/1.1\r\n", "156")
        << kWinbondTrailer;
    QTest::newRow("winbond zero-length file")
        << target("Winbond", 0, admin, QString(), QStringLiteral("x.bin"), 0)
        << winbondHead("POST /upgrade_firmware.cgi?user=admin&pwd= HTTP/1.1\r\n", "146")
        << kWinbondTrailer;
    // base64("admin:1234") = YWRtaW46MTIzNA==
    QTest::newRow("haisi firmware, blank in name")
        << target("Haisi", 0, admin, QStringLiteral("1234"), QStringLiteral("a b.pkg"), 500)
        << haisiHead("a%20b.pkg", "703", "YWRtaW46MTIzNA==", "a b.pkg") << kHaisiTrailer;
    QTest::newRow("haisi webui sends the same request")
        << target("Haisi", 1, admin, QStringLiteral("1234"), QStringLiteral("a b.pkg"), 500)
        << haisiHead("a%20b.pkg", "703", "YWRtaW46MTIzNA==", "a b.pkg") << kHaisiTrailer;
    // "é" is two UTF-8 bytes; reserved characters are escaped, unreserved kept.
    QTest::newRow("haisi utf-8 and reserved characters")
        << target("Haisi", 0, QStringLiteral("ü"), QStringLiteral("p:w"),
                  QString::fromUtf8("é&_~-.x+.pkg"), 0)
        << haisiHead("%C3%A9%26_~-.x%2B.pkg", "209", "w7w6cDp3", "\xc3\xa9&_~-.x+.pkg")
        << kHaisiTrailer;
    QTest::newRow("unknown family")
        << target("winbond", 0, admin, admin, "f.bin", 5) << QByteArray() << QByteArray();
    QTest::newRow("empty family") << target("", 1, admin, admin, "f.bin", 5) << QByteArray()
                                  << QByteArray();
    QTest::newRow("unknown kind") << target("Haisi", 2, admin, admin, "f.pkg", 5) << QByteArray()
                                  << QByteArray();
    QTest::newRow("no kind chosen")
        << target("Winbond", -1, admin, admin, "f.bin", 5) << QByteArray() << QByteArray();
}

void tst_UploadRequest::exactBytes()
{
    QFETCH(UploadTarget, target);
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, trailer);
    const veltor::UploadRequest request = veltor::buildUploadRequest(target);
    QCOMPARE(request.head, head);
    QCOMPARE(request.trailer, trailer);
    QCOMPARE(request.isValid(), !head.isEmpty());
}

// The announced length must cover exactly the multipart body: everything
// after the blank line, the file and the trailer.
void tst_UploadRequest::contentLengthMatchesBody_data()
{
    QTest::addColumn<UploadTarget>("target");
    QTest::newRow("winbond") << target("Winbond", 0, "u", "p", "a.bin", 12345);
    QTest::newRow("haisi long name")
        << target("Haisi", 1, "u", "p", QString(200, QChar(0x4e2d)) + ".pkg", 777);
}

void tst_UploadRequest::contentLengthMatchesBody()
{
    QFETCH(UploadTarget, target);
    const veltor::UploadRequest request = veltor::buildUploadRequest(target);
    const int bodyStart = request.head.indexOf("\r\n\r\n") + 4;
    const int lengthAt = request.head.indexOf("Content-Length: ") + 16;
    const qint64 announced =
        request.head.mid(lengthAt, request.head.indexOf('\r', lengthAt) - lengthAt).toLongLong();
    QCOMPARE(announced, request.head.size() - bodyStart + target.fileSize + request.trailer.size());
}

QTEST_APPLESS_MAIN(tst_UploadRequest)
#include "tst_uploadrequest.moc"
