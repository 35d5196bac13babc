// The simulator seen from the tool's namespace, with plain sockets: run under
// with-cameras.sh (see CMakeLists.txt for the fleet).
#include "camsim/searchreplies.h"
#include "camsimfleet.h"
#include "discovery/protocolconstants.h"

#include <QJsonArray>
#include <QUdpSocket>
#include <QtTest>

namespace {

struct Reply
{
    QByteArray data;
    quint16 port = 0; // the search port it came to, 0 when sent back to the searcher
};

QString winbondMac(const QByteArray &reply)
{
    QString mac;
    for (int i = 0; i < 12; i += 2)
        mac += (i ? QStringLiteral(":") : QString()) + QString::fromLatin1(reply.mid(23 + i, 2));
    return mac;
}

QString hdsValue(const QByteArray &reply, const QString &key)
{
    for (const QString &line : QString::fromUtf8(reply).split("\r\n")) {
        if (line.startsWith(key + '='))
            return line.mid(key.size() + 1);
    }
    return QString();
}

} // namespace

class TestCamsimNetwork : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyCameraAnswersItsSearch_data();
    void everyCameraAnswersItsSearch();
    void webServerOnEveryAddress();

private:
    QList<Reply> search(int waitMs);

    QVector<camsimfleet::Camera> fleet;
    QList<Reply> replies;
};

void TestCamsimNetwork::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(fleet);
    replies = search(1500);
}

// Sends both searches once, as the tool does, and gathers what comes back.
QList<Reply> TestCamsimNetwork::search(int waitMs)
{
    const auto shared = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;
    QUdpSocket binary;
    QUdpSocket hds;
    QUdpSocket sender;
    [&] {
        QVERIFY(binary.bind(QHostAddress::AnyIPv4, veltor::kBinarySearchPort, shared));
        QVERIFY(hds.bind(QHostAddress::AnyIPv4, veltor::kHdsPort, shared));
        QVERIFY(hds.joinMulticastGroup(QHostAddress(veltor::kHdsGroup)));
    }();
    sender.writeDatagram(veltor::camsim::binarySearchRequest(),
                         QHostAddress(veltor::kBroadcastAddress), veltor::kBinarySearchPort);
    sender.writeDatagram(veltor::camsim::hdsSearchRequest(), QHostAddress(veltor::kHdsGroup),
                         veltor::kHdsPort);
    QList<Reply> got;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < waitMs) {
        QTest::qWait(20);
        for (QUdpSocket *socket : {&binary, &hds, &sender}) {
            while (socket->hasPendingDatagrams()) {
                QByteArray data(int(socket->pendingDatagramSize()), '\0');
                socket->readDatagram(data.data(), data.size());
                got.append({data, socket == &sender ? quint16(0) : socket->localPort()});
            }
        }
    }
    return got;
}

void TestCamsimNetwork::everyCameraAnswersItsSearch_data()
{
    QTest::addColumn<int>("index");
    QString why;
    for (const camsimfleet::Camera &camera : camsimfleet::load(&why))
        QTest::newRow(qPrintable(camera.name)) << camera.index;
}

void TestCamsimNetwork::everyCameraAnswersItsSearch()
{
    QFETCH(int, index);
    const camsimfleet::Camera &camera = fleet.at(index);
    int winbond = 0;
    int haisi = 0;
    int toSearcher = 0;
    for (const Reply &reply : qAsConst(replies)) {
        if (reply.port == 0 && hdsValue(reply.data, "MAC") == camera.mac)
            ++toSearcher;
        if (reply.port == veltor::kBinarySearchPort && reply.data.size() == 88 &&
            winbondMac(reply.data) == camera.mac) {
            ++winbond;
            QCOMPARE(reply.data.mid(57, 4), veltor::camsim::dottedBytes(camera.ip));
            QCOMPARE(int(quint8(reply.data[86])), camera.httpPort & 0xFF);
        }
        if (reply.port == veltor::kHdsPort && hdsValue(reply.data, "MAC") == camera.mac) {
            ++haisi;
            QCOMPARE(hdsValue(reply.data, "IP"), camera.ip);
            QCOMPARE(hdsValue(reply.data, "Device-ID"), camera.deviceId);
            QCOMPARE(hdsValue(reply.data, "Http-Port").toInt(), camera.httpPort);
        }
    }
    const bool isWinbond = camera.family == QLatin1String("Winbond");
    const int copies = camera.name.endsWith("W003") ? 3 : 1; // --camera 2:repeat=3
    const bool unicast = camera.name.endsWith("H003");       // --camera 5:unicast=1
    QCOMPARE(winbond, isWinbond || camera.bothProtocols ? copies : 0);
    QCOMPARE(haisi,
             ((!isWinbond && !camera.malformed) || camera.bothProtocols) && !unicast ? 1 : 0);
    QCOMPARE(toSearcher, unicast ? 1 : 0);
}

void TestCamsimNetwork::webServerOnEveryAddress()
{
    for (const camsimfleet::Camera &camera : qAsConst(fleet)) {
        const QJsonObject status = camsimfleet::fetchJson(camera, "/camsim/status");
        QCOMPARE(status.value("name").toString(), camera.name);
        QVERIFY2(status.value("log").toArray().size() >= 2, qPrintable(camera.name)); // search, GET
    }
}

QTEST_GUILESS_MAIN(TestCamsimNetwork)
#include "tst_camsim_network.moc"
