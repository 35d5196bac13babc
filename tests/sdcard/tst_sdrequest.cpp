// The body limit must hold even when the whole answer is in before the progress
// check runs (at most every 100 ms); a redirect is the answer (Qt 6 would follow).
#include "auth/credentialcheck.h"
#include "sdcard/sdrequest.h"
#include "sdcard/sdtransfer.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QtTest>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr qint64 kLimit = 8 * 1024 * 1024;

// One connection on loopback, answered with `head` and `bodyBytes` bytes of
// body from a thread of its own, as fast as the peer takes them.
struct BlurtingCamera
{
    explicit BlurtingCamera(qint64 bodyBytes, const QByteArray &head = "HTTP/1.1 200 OK\r\n")
    {
        listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        bind(listener, reinterpret_cast<sockaddr *>(&address), length);
        listen(listener, 1);
        getsockname(listener, reinterpret_cast<sockaddr *>(&address), &length);
        url = QUrl(QStringLiteral("http://127.0.0.1:%1/sd/").arg(ntohs(address.sin_port)));
        const QByteArray answer = head + "Content-Length: " + QByteArray::number(bodyBytes) +
                                  "\r\nConnection: close\r\n\r\n" + QByteArray(int(bodyBytes), 'a');
        worker = std::thread([this, answer] {
            const int peer = accept(listener, nullptr, nullptr);
            char request[4096];
            recv(peer, request, sizeof request, 0);
            for (qint64 sent = 0, n = 1; sent < answer.size() && n > 0; sent += n)
                n = send(peer, answer.constData() + sent, size_t(answer.size() - sent),
                         MSG_NOSIGNAL);
            close(peer);
        });
    }
    ~BlurtingCamera()
    {
        worker.join();
        close(listener);
    }

    QUrl url;
    int listener = -1;
    std::thread worker;
};

} // namespace

class TestSdRequest : public QObject
{
    Q_OBJECT

private slots:
    void bodyLimit_data()
    {
        QTest::addColumn<qint64>("bodyBytes");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("at the limit") << kLimit << true;
        QTest::newRow("one byte over") << kLimit + 1 << false;
        QTest::newRow("twice the limit") << 2 * kLimit << false;
    }
    void bodyLimit()
    {
        QFETCH(qint64, bodyBytes);
        QFETCH(bool, accepted);
        BlurtingCamera camera(bodyBytes);
        QNetworkAccessManager manager;
        std::unique_ptr<QNetworkReply> reply(veltor::sdGet(&manager, camera.url, 10000, kLimit));
        QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 15000);
        QCOMPARE(reply->error() == QNetworkReply::NoError, accepted);
        QCOMPARE(veltor::replyProblem(reply.get()),
                 accepted ? QString() : QString("the answer is longer than the tool accepts"));
        if (accepted)
            QCOMPARE(reply->readAll().size(), bodyBytes);
    }
    void redirectIsTheAnswer_data()
    {
        QTest::addColumn<bool>("credentialCheck");
        QTest::newRow("SD request") << false;
        QTest::newRow("credential check") << true;
    }
    // The camera takes one connection only: a followed redirect would never finish.
    void redirectIsTheAnswer()
    {
        QFETCH(bool, credentialCheck);
        BlurtingCamera camera(0, "HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\n");
        QNetworkAccessManager manager;
        std::unique_ptr<QNetworkReply> reply(
            credentialCheck ? veltor::getOutcomeOnly(&manager, QNetworkRequest(camera.url))
                            : veltor::sdGet(&manager, camera.url, 10000, 1024));
        QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 15000);
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 302);
    }
};

QTEST_GUILESS_MAIN(TestSdRequest)
#include "tst_sdrequest.moc"
