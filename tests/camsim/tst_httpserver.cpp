#include "camsim/httpserver.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QTcpSocket>
#include <QtTest>

using namespace veltor::camsim;

namespace {

QString joinQuery(const QList<QPair<QString, QString>> &items)
{
    QStringList pieces;
    for (const auto &item : items)
        pieces << item.first + '=' + item.second;
    return pieces.join(';');
}

// Raw client: sends `request` in `pieceSize` pieces, each once the last is
// written, and returns all the server said until it closed (or `timeoutMs`).
QByteArray talk(quint16 port, const QByteArray &request, int pieceSize = 1 << 20,
                int timeoutMs = 10000)
{
    QTcpSocket socket;
    QEventLoop loop;
    QByteArray answer;
    int sent = 0;
    auto sendPiece = [&] {
        if (socket.bytesToWrite() == 0 && sent < request.size()) {
            socket.write(request.mid(sent, pieceSize));
            sent += pieceSize;
        }
    };
    QObject::connect(&socket, &QTcpSocket::connected, sendPiece);
    QObject::connect(&socket, &QTcpSocket::bytesWritten, sendPiece);
    QObject::connect(&socket, &QTcpSocket::readyRead, [&] { answer += socket.readAll(); });
    QObject::connect(&socket, &QTcpSocket::disconnected, &loop, &QEventLoop::quit);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    socket.connectToHost(QHostAddress::LocalHost, port);
    loop.exec();
    return answer + socket.readAll();
}

QByteArray bodyOf(const QByteArray &answer)
{
    return answer.mid(answer.indexOf("\r\n\r\n") + 4);
}

QByteArray pattern(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 7 + i / 251) & 0xFF);
    return bytes;
}

QByteArray sha(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

} // namespace

class TestHttpServer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void parse_data();
    void parse();
    void routes_data();
    void routes();
    void uploadStreamsThrough_data();
    void uploadStreamsThrough();
    void answers_data();
    void answers();
    void neverAnswerKeepsTheConnection();

private:
    HttpServer server;
    QByteArray uploadHash;
    qint64 uploadSize = -1;
    bool uploadComplete = false;
    QByteArray download = pattern(3 * 1024 * 1024 + 17);
};

void TestHttpServer::initTestCase()
{
    QVERIFY(server.listen(QHostAddress::LocalHost, 0));
    // Two features sharing one CGI: each takes only its own command.
    server.route("/param.cgi", [](HttpExchange &x) {
        if (x.request().queryValue("cmd") != "getuserinfo")
            return false;
        x.respond(200, "user:" + x.request().queryValue("usr").toUtf8());
        return true;
    });
    server.route("/param.cgi", [](HttpExchange &x) {
        if (x.request().queryValue("cmd") != "getserverinfo")
            return false;
        x.respond(200, "server");
        return true;
    });
    server.route("/sd/", [](HttpExchange &x) {
        x.respond(200, "sd:" + x.request().path.toUtf8());
        return true;
    });
    server.route("/sd/record/", [](HttpExchange &x) {
        x.respond(200, "record");
        return true;
    });
    server.route("/upload", [this](HttpExchange &x) {
        auto hash = std::make_shared<QCryptographicHash>(QCryptographicHash::Sha256);
        auto size = std::make_shared<qint64>(0);
        x.streamBody(
            [hash, size](const QByteArray &piece) {
                hash->addData(piece);
                *size += piece.size();
            },
            [this, &x, hash, size](bool complete) {
                uploadHash = hash->result().toHex();
                uploadSize = *size;
                uploadComplete = complete;
                x.respond(200, "got it");
            });
        return true;
    });
    server.route("/echo", [](HttpExchange &x) {
        x.readBody([](HttpExchange &done) { done.respond(200, done.body()); });
        return true;
    });
    server.route("/big", [this](HttpExchange &x) {
        auto *buffer = new QBuffer;
        buffer->setData(download);
        buffer->open(QIODevice::ReadOnly);
        x.streamDevice(200, buffer, "application/octet-stream", 4096);
        return true;
    });
    server.route("/drip", [](HttpExchange &x) {
        x.drip(200, "slowly but surely", 3, 5);
        return true;
    });
    server.route("/cut", [this](HttpExchange &x) {
        x.closeMidBody(200, download.left(1000), 100);
        return true;
    });
    server.route("/silent", [](HttpExchange &x) {
        x.neverAnswer();
        return true;
    });
}

void TestHttpServer::parse_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QByteArray>("hostHeader");
    const int complete = HttpRequestParse::Complete;
    QTest::newRow("plain") << QByteArray("GET /a HTTP/1.1\r\nHost: x\r\n\r\n") << complete << "/a"
                           << "" << QByteArray("x");
    QTest::newRow("credentials escaped")
        << QByteArray("GET /check_user.cgi?user=a%26b&pwd=p+q%20r HTTP/1.1\r\n\r\n") << complete
        << "/check_user.cgi"
        << "user=a&b;pwd=p q r" << QByteArray();
    QTest::newRow("credentials as typed, '&' splits")
        << QByteArray("GET /check_user.cgi?user=a&b&pwd= HTTP/1.1\r\n\r\n") << complete
        << "/check_user.cgi"
        << "user=a;b=;pwd=" << QByteArray();
    QTest::newRow("leading empty piece")
        << QByteArray("GET /sd/?&usr=admin&pwd=x HTTP/1.1\r\n\r\n") << complete << "/sd/"
        << "usr=admin;pwd=x" << QByteArray();
    QTest::newRow("escaped path") << QByteArray("GET /sd/a%20b/ HTTP/1.1\r\n\r\n") << complete
                                  << "/sd/a b/"
                                  << "" << QByteArray();
    QTest::newRow("value with '='")
        << QByteArray("GET /p?a=b=c HTTP/1.1\r\n\r\n") << complete << "/p"
        << "a=b=c" << QByteArray();
    QTest::newRow("host without blank")
        << QByteArray("POST /u HTTP/1.1\r\nHost:10.0.0.2:80\r\nUser-Agent: t\r\n\r\nbody")
        << complete << "/u"
        << "" << QByteArray("10.0.0.2:80");
    QTest::newRow("bare LF") << QByteArray("GET /a HTTP/1.0\nHost: y\n\n") << complete << "/a"
                             << "" << QByteArray("y");
    QTest::newRow("head not finished")
        << QByteArray("GET /a HTTP/1.1\r\nHost: x\r\n") << int(HttpRequestParse::Incomplete) << ""
        << "" << QByteArray();
    QTest::newRow("no version") << QByteArray("GET /a\r\n\r\n") << int(HttpRequestParse::Bad) << ""
                                << "" << QByteArray();
    QTest::newRow("header without colon")
        << QByteArray("GET /a HTTP/1.1\r\nbroken\r\n\r\n") << int(HttpRequestParse::Bad) << ""
        << "" << QByteArray();
    QTest::newRow("endless head") << QByteArray(70000, 'a') << int(HttpRequestParse::Bad) << ""
                                  << "" << QByteArray();
}

void TestHttpServer::parse()
{
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    QFETCH(QString, path);
    QFETCH(QString, query);
    QFETCH(QByteArray, hostHeader);
    const HttpRequestParse parse = parseHttpRequest(text);
    QCOMPARE(int(parse.status), status);
    if (status != HttpRequestParse::Complete)
        return;
    QCOMPARE(parse.request.path, path);
    QCOMPARE(joinQuery(parse.request.query), query);
    QCOMPARE(parse.request.header("host"), hostHeader);
    QCOMPARE(parse.request.head, text.left(parse.headSize));
    QCOMPARE(text.mid(parse.headSize), QByteArray(text.endsWith("body") ? "body" : ""));
}

void TestHttpServer::routes_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("first of a shared CGI")
        << QByteArray("/param.cgi?cmd=getuserinfo&usr=admin") << QByteArray("user:admin");
    QTest::newRow("second of a shared CGI")
        << QByteArray("/param.cgi?cmd=getserverinfo") << QByteArray("server");
    QTest::newRow("neither takes it")
        << QByteArray("/param.cgi?cmd=sdfrmt") << QByteArray("HTTP/1.1 404");
    QTest::newRow("longest prefix wins")
        << QByteArray("/sd/record/x.mp4?&usr=a") << QByteArray("record");
    QTest::newRow("shorter prefix") << QByteArray("/sd/images/") << QByteArray("sd:/sd/images/");
    QTest::newRow("unknown") << QByteArray("/nothing") << QByteArray("HTTP/1.1 404");
}

void TestHttpServer::routes()
{
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, answer);
    const QByteArray got = talk(server.serverPort(), "GET " + target + " HTTP/1.1\r\n\r\n");
    QVERIFY2(got.startsWith(answer) || bodyOf(got) == answer, got.constData());
}

void TestHttpServer::uploadStreamsThrough_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("pieceSize");
    QTest::addColumn<bool>("announced"); // Content-Length sent
    QTest::newRow("empty") << 0 << 4096 << true;
    QTest::newRow("one byte") << 1 << 4096 << true;
    QTest::newRow("4 MB in firmware-sized pieces") << 4 * 1024 * 1024 + 3 << 4096 << true;
    QTest::newRow("head and body in one write") << 5000 << (1 << 20) << true;
    QTest::newRow("no length: up to the close") << 70000 << 4096 << false;
}

void TestHttpServer::uploadStreamsThrough()
{
    QFETCH(int, size);
    QFETCH(int, pieceSize);
    QFETCH(bool, announced);
    uploadSize = -1;
    const QByteArray body = pattern(size);
    QByteArray request = "POST /upload HTTP/1.1\r\n";
    if (announced)
        request += "Content-Length: " + QByteArray::number(size) + "\r\n";
    request += "\r\n" + body;
    if (announced) {
        QVERIFY(talk(server.serverPort(), request, pieceSize).endsWith("got it"));
    } else {
        QTcpSocket socket; // the body ends where the client stops sending
        socket.connectToHost(QHostAddress::LocalHost, server.serverPort());
        QVERIFY(socket.waitForConnected());
        socket.write(request);
        QTRY_COMPARE(socket.bytesToWrite(), 0);
        socket.disconnectFromHost();
    }
    QTRY_COMPARE(uploadSize, qint64(size));
    QCOMPARE(uploadHash, sha(body));
    QVERIFY(uploadComplete);
}

void TestHttpServer::answers_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("gathered body")
        << QByteArray("POST /echo HTTP/1.1\r\nContent-Length: 5\r\n\r\nhello") << QByteArray("200")
        << QByteArray("hello");
    QTest::newRow("streamed file")
        << QByteArray("GET /big HTTP/1.1\r\n\r\n") << QByteArray("200") << download;
    QTest::newRow("slow drip") << QByteArray("GET /drip HTTP/1.1\r\n\r\n") << QByteArray("200")
                               << QByteArray("slowly but surely");
    QTest::newRow("closed mid-body")
        << QByteArray("GET /cut HTTP/1.1\r\n\r\n") << QByteArray("200") << download.left(100);
    QTest::newRow("bad request") << QByteArray("nonsense\r\n\r\n") << QByteArray("400")
                                 << QByteArray("bad request line");
}

void TestHttpServer::answers()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, status);
    QFETCH(QByteArray, body);
    const QByteArray got = talk(server.serverPort(), request);
    QVERIFY2(got.startsWith(QByteArray("HTTP/1.1 " + status)), got.left(200).constData());
    QCOMPARE(sha(bodyOf(got)), sha(body));
}

void TestHttpServer::neverAnswerKeepsTheConnection()
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QVERIFY(socket.waitForConnected());
    socket.write("GET /silent HTTP/1.1\r\n\r\n");
    QVERIFY(!socket.waitForReadyRead(300));
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
}

QTEST_GUILESS_MAIN(TestHttpServer)
#include "tst_httpserver.moc"
