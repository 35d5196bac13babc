#include "update/uploadjob.h"
#include "update/uploadrequest.h"

#include <QtTest>

using veltor::UploadTarget;
Q_DECLARE_METATYPE(veltor::UploadTarget)

namespace {

UploadTarget target(const char *family, int kind, const QString &user, const QString &password,
                    const QString &fileName, qint64 size)
{
    return UploadTarget{
        QString::fromLatin1(family), kind, "192.168.1.5", "8080", user, password, fileName, size};
}

QByteArray haisiHead(const QByteArray &query, const QByteArray &contentLength,
                     const QByteArray &basic, const QByteArray &rawName)
{
    return "POST /web/cgi-bin/hi3510/upgrade.cgi?-filename=" + query +
           " HTTP/1.1\r\nHost:192.168.1.5:8080\r\nUser-Agent: VELTOR Camera Tool\r\n"
           "Content-Length: " +
           contentLength +
           "\r\nAccept: text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8\r\n"
           "Origin:192.168.1.5:8080\r\nAuthorization: Basic " +
           basic +
           "\r\nContent-Type: multipart/form-data; "
           "boundary=----WebKitFormBoundary91xFQXj5MnrAUIRd\r\n"
           "Referer: http://192.168.1.5:8080/web/initializemain.html\r\nDTN: 1\r\n"
           "Accept-Language: en-us\r\nAccept-Encoding: gzip, deflate\r\n"
           "Connection: keep-alive\r\n\r\n------WebKitFormBoundary91xFQXj5MnrAUIRd\r\n"
           "Content-Disposition: form-data; name=\"setting_file\"; filename=\"" +
           rawName + "\"\r\nContent-Type: application/octet-stream\r\n\r\n";
}

QByteArray winbondHead(const QByteArray &requestLine, const QByteArray &contentLength)
{
    return requestLine + "Content-Length: " + contentLength +
           "\r\nContent-Type: multipart/form-data; boundary=----ipcamera\r\n\r\n"
           "------ipcamera\r\n"
           "Content-Disposition: form-data; name=\"file\"; filename=\"upgrade.bin\"\r\n"
           "Content-Type: application/x-macbinary\r\n\r\n";
}

const QByteArray kWinbondTrailer = "\r\n------ipcamera--\r\n";
const QByteArray kHaisiTrailer = "\r\n------WebKitFormBoundary91xFQXj5MnrAUIRd--\r\n";

} // namespace

// The hand-built upload requests byte for byte, and how the command line
// judges the camera's answer to one.
class tst_UploadRequest : public QObject
{
    Q_OBJECT

private slots:
    void exactBytes_data()
    {
        QTest::addColumn<UploadTarget>("target");
        QTest::addColumn<QByteArray>("head");
        const QString admin = QStringLiteral("admin");
        QTest::newRow("winbond firmware, a million bytes")
            << target("Winbond", 0, admin, "1234", "fw.bin", 1000000)
            << winbondHead("POST /upgrade_firmware.cgi?user=admin&pwd=1234 HTTP/1.1\r\n",
                           "1000146");
        QTest::newRow("winbond webui, credentials unescaped")
            << target("Winbond", 1, "a&b c", "p w&x=%", "ui.bin", 10)
            << winbondHead("POST /upgrade_htmls.cgi?user=a&b c&pwd=p w&x=% HTTP/1.1\r\n", "156");
        // base64("admin:1234") = YWRtaW46MTIzNA==
        QTest::newRow("haisi webui, blank in name")
            << target("Haisi", 1, admin, "1234", "a b.pkg", 500)
            << haisiHead("a%20b.pkg", "703", "YWRtaW46MTIzNA==", "a b.pkg");
        // "é" is two UTF-8 bytes; reserved characters are escaped, unreserved kept.
        QTest::newRow("haisi utf-8 and reserved characters")
            << target("Haisi", 0, "ü", "p:w", QString::fromUtf8("é&_~-.x+.pkg"), 0)
            << haisiHead("%C3%A9%26_~-.x%2B.pkg", "209", "w7w6cDp3", "\xc3\xa9&_~-.x+.pkg");
        for (const UploadTarget &t :
             {target("winbond", 0, admin, admin, "f.bin", 5),
              target("", 1, admin, admin, "f.bin", 5), target("Haisi", 2, admin, admin, "f.pkg", 5),
              target("Winbond", -1, admin, admin, "f.bin", 5)})
            QTest::addRow("no request: family \"%s\", kind %d", qPrintable(t.family), t.kind)
                << t << QByteArray();
    }
    void exactBytes()
    {
        QFETCH(UploadTarget, target);
        QFETCH(QByteArray, head);
        const veltor::UploadRequest request = veltor::buildUploadRequest(target);
        QCOMPARE(request.head, head);
        QCOMPARE(request.trailer, head.isEmpty()              ? QByteArray()
                                  : head.contains("ipcamera") ? kWinbondTrailer
                                                              : kHaisiTrailer);
        QCOMPARE(request.isValid(), !head.isEmpty());
    }
    void answerProblem_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("problem");
        const QString refused = QStringLiteral("the camera refused the file: \"%1\"");
        for (const char *ok : {"HTTP/1.0 204 No Content\r\n", "HTTP/1.1 200\r\n"})
            QTest::newRow(ok) << QByteArray(ok) << QString();
        for (const char *no : {"HTTP/1.1 400 Bad Request", "200 OK", "HTTP/1.1 2000 OK"})
            QTest::newRow(no) << QByteArray(no) + "\r\n" << refused.arg(no);
        QTest::newRow("control characters") << QByteArray("HTTP/1.1 500 \x1b[2J\x07oops\r\n")
                                            << refused.arg("HTTP/1.1 500 ?[2J?oops");
        QTest::newRow("empty") << QByteArray("\r\n")
                               << QStringLiteral("the camera answered with an empty line");
    }
    void answerProblem()
    {
        QFETCH(QByteArray, line);
        QTEST(veltor::uploadAnswerProblem(line), "problem");
    }
};

QTEST_APPLESS_MAIN(tst_UploadRequest)
#include "tst_uploadrequest.moc"
