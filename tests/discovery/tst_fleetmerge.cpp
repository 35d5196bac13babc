// What the fleet search makes of each reply, and the findings over the cameras.
#include "discovery/fleetmerge.h"
#include "discovery/heardcameras.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"
#include "replybuilder.h"

#include <QtTest>

using namespace veltor;

namespace {

const QHostAddress kInterfaceA{QStringLiteral("192.168.1.1")};
const QHostAddress kInterfaceB{QStringLiteral("10.0.0.1")};

ReceivedReply received(quint16 port, const QByteArray &data, const QString &source = "192.168.1.20",
                       const QHostAddress &interface = kInterfaceA)
{
    return {data, port, QHostAddress(source), interface};
}

QVector<SearchInterface> interfaces()
{
    return {{"a", kInterfaceA, QHostAddress("255.255.255.0"), QHostAddress("192.168.1.255"), 2},
            {"b", kInterfaceB, QHostAddress("255.0.0.0"), QHostAddress("10.255.255.255"), 3}};
}

SeenCamera seen(const QString &ip, const QString &mac, const QString &source,
                const QStringList &receivedOn = {})
{
    SeenCamera camera;
    camera.record.ip = ip;
    camera.record.mac = mac;
    camera.source = QHostAddress(source);
    for (const QString &address : receivedOn)
        camera.receivedOn << QHostAddress(address);
    camera.interfaceAddress = camera.receivedOn.value(0);
    return camera;
}

} // namespace

class TestFleetMerge : public QObject
{
    Q_OBJECT

private slots:
    void outcome_data();
    void outcome();
    void cameraHeardOnTwoInterfaces();
    void windowOrder();
    void findings_data();
    void findings();
    void reflagReportsChangedCamerasOnly();
};

// Each row follows one Winbond camera (00:0A:1B:2C:3D:4E at 192.168.1.20).
void TestFleetMerge::outcome_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("outcome");
    const int w = kBinarySearchPort, h = kHdsPort;
    const QString at = "192.168.1.20";
    const QByteArray otherHds = replybuilder::hdsCamera("192.168.1.30", "00:11:22:33:44:55");
    QTest::newRow("own binary search")
        << w << binarySearchDatagram() << at << +FleetMerge::OwnSearch;
    QTest::newRow("own HDS search") << h << hdsSearchRequest() << at << +FleetMerge::OwnSearch;
    QTest::newRow("binary search, HDS port")
        << h << binarySearchDatagram() << at << +FleetMerge::Malformed;
    QTest::newRow("27 bytes") << w << replybuilder::winbondReply().left(27) << at
                              << +FleetMerge::Malformed;
    QTest::newRow("HDS, other status")
        << h << QByteArray(otherHds).replace("200 OK", "404 Not Found") << at
        << +FleetMerge::Malformed;
    QTest::newRow("the same reply again")
        << w << replybuilder::winbondReply() << at << +FleetMerge::Duplicate;
    QTest::newRow("same MAC in HDS, lower case, from elsewhere")
        << h << replybuilder::hdsCamera("192.168.1.99", "00:0a:1b:2c:3d:4e") << "192.168.1.99"
        << +FleetMerge::Duplicate;
    QTest::newRow("another MAC, same IP")
        << w << replybuilder::winbondAt(at, "000A1B2C3D4F") << at << +FleetMerge::NewCamera;
    QTest::newRow("HDS camera") << h << otherHds << at << +FleetMerge::NewCamera;
}

void TestFleetMerge::outcome()
{
    QFETCH(int, port);
    QFETCH(QByteArray, reply);
    QFETCH(QString, source);
    QFETCH(int, outcome);
    FleetMerge merge;
    QCOMPARE(merge.add(received(kBinarySearchPort, replybuilder::winbondReply())),
             FleetMerge::NewCamera);
    QCOMPARE(int(merge.add(received(quint16(port), reply, source))), outcome);
    QCOMPARE(merge.cameras().size(), outcome == FleetMerge::NewCamera ? 2 : 1);
}

void TestFleetMerge::cameraHeardOnTwoInterfaces()
{
    FleetMerge merge;
    const QByteArray reply = replybuilder::hdsCamera("10.0.0.7", "00:11:22:33:44:55", "");
    for (const QHostAddress &interface : {kInterfaceA, kInterfaceB, kInterfaceA})
        merge.add(received(kHdsPort, reply, "10.0.0.7", interface));
    const QVector<SeenCamera> cameras = merge.cameras();
    QCOMPARE(cameras.size(), 1);
    QCOMPARE(cameras[0].receivedOn, (QVector<QHostAddress>{kInterfaceA, kInterfaceB}));
    QCOMPARE(cameras[0].family, QString(kHaisiFamily));
    QCOMPARE(cameras[0].record.name, QString("Unnamed"));
}

// By ordering key, not by address; a later camera goes before an equal key.
void TestFleetMerge::windowOrder()
{
    FleetMerge merge;
    const QStringList ips{"192.168.1.99", "192.168.10.1", "200.200.200.200", "192.168.1.99"};
    for (int i = 0; i < ips.size(); ++i)
        merge.add(received(kBinarySearchPort,
                           replybuilder::winbondAt(ips[i], "00000000000" + QByteArray::number(i))));
    QStringList order;
    for (const SeenCamera &camera : merge.cameras())
        order << camera.record.ip + '/' + camera.record.mac.right(1);
    QCOMPARE(order, (QStringList{"200.200.200.200/2", "192.168.10.1/1", "192.168.1.99/3",
                                 "192.168.1.99/0"}));
}

// The edge cases: one finding at a time, as the window shows them, is
// tst_findingswindow's; a fleet on two networks is veltor-cli's (tst_discover_e2e).
void TestFleetMerge::findings_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("otherMac"); // of a second camera at the same IP, if any
    QTest::addColumn<QStringList>("findings");
    const QStringList both{"other-subnet", "source-differs"};
    QTest::newRow("same MAC in other case is no conflict") << "192.168.1.20"
                                                           << "00:0a:1b:2c:3d:4e" << QStringList{};
    QTest::newRow("not an address") << "192.168.1.999"
                                    << "" << both;
    QTest::newRow("no address, no conflict between two") << ""
                                                         << "00:0A:1B:2C:3D:99" << both;
}

void TestFleetMerge::findings()
{
    QFETCH(QString, ip);
    QFETCH(QString, otherMac);
    QFETCH(QStringList, findings);
    const QString a = kInterfaceA.toString();
    QVector<SeenCamera> cameras{seen(ip, "00:0A:1B:2C:3D:4E", "192.168.1.20", {a})};
    if (!otherMac.isEmpty())
        cameras << seen(ip, otherMac, "192.168.1.20", {a});
    flagFindings(&cameras, interfaces());
    QCOMPARE(cameras[0].findings, findings);
}

// The window redoes the findings after every burst and touches only the
// cameras whose markers change: the new ones and those sharing their IP.
void TestFleetMerge::reflagReportsChangedCamerasOnly()
{
    HeardCameras heard;
    const auto changed = [&](const SearchInterface &interface) {
        QStringList macs;
        for (const SeenCamera &camera : heard.reflag(interface))
            macs << camera.record.mac;
        macs.sort();
        return macs;
    };
    const SearchInterface a = interfaces().first();
    heard.add(seen("192.168.1.20", "m1", "192.168.1.20"));
    heard.add(seen("172.16.0.5", "m2", "172.16.0.5"));
    QCOMPARE(changed(a), QStringList{"m2"});
    QCOMPARE(changed(a), QStringList{});
    heard.add(seen("192.168.1.20", "m3", "192.168.1.20"));
    heard.add(seen("192.168.1.21", "m1", "192.168.1.21")); // a later reply changes nothing
    QCOMPARE(changed(a), (QStringList{"m1", "m3"}));
    // Another interface: every marked camera's tooltip names it.
    QCOMPARE(changed(interfaces().last()), (QStringList{"m1", "m2", "m3"}));
    QCOMPARE(heard.listed({"m3", "foreign", "m1"}).size(), 2);
}

QTEST_GUILESS_MAIN(TestFleetMerge)
#include "tst_fleetmerge.moc"
