// What the fleet search makes of each reply, its camera order and the re-flagging.
#include "discovery/fleetmerge.h"
#include "discovery/heardcameras.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"
#include "replybuilder.h"

#include <QtTest>

using namespace veltor;
using replybuilder::hdsCamera;
using replybuilder::winbondAt;

namespace {

const QHostAddress kInterfaceA{QStringLiteral("192.168.1.1")};

ReceivedReply received(quint16 port, const QByteArray &data, const QString &source = "192.168.1.20")
{
    return {data, port, QHostAddress(source), kInterfaceA};
}

SeenCamera seen(const QString &ip, const QString &mac)
{
    SeenCamera camera;
    camera.record.ip = ip;
    camera.record.mac = mac;
    camera.source = QHostAddress(ip);
    return camera;
}

} // namespace

class TestFleetMerge : public QObject
{
    Q_OBJECT

private slots:
    // After one Winbond camera (00:0A:1B:2C:3D:4E at 192.168.1.20), one more
    // reply from 192.168.1.99.
    void outcome_data()
    {
        QTest::addColumn<int>("port");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<int>("outcome");
        const int w = kBinarySearchPort, h = kHdsPort, own = FleetMerge::OwnSearch,
                  bad = FleetMerge::Malformed, again = FleetMerge::Duplicate,
                  add = FleetMerge::NewCamera;
        QTest::newRow("own binary") << w << binarySearchDatagram() << own;
        QTest::newRow("own HDS") << h << hdsSearchRequest() << own;
        QTest::newRow("binary on HDS port") << h << binarySearchDatagram() << bad;
        QTest::newRow("same MAC lower case")
            << h << hdsCamera("192.168.1.99", "00:0a:1b:2c:3d:4e") << again;
        QTest::newRow("other MAC, same IP")
            << w << winbondAt("192.168.1.20", "000A1B2C3D4F") << add;
    }
    void outcome()
    {
        QFETCH(int, port);
        QFETCH(QByteArray, reply);
        QFETCH(int, outcome);
        FleetMerge merge;
        QCOMPARE(merge.add(received(kBinarySearchPort, replybuilder::winbondReply())),
                 FleetMerge::NewCamera);
        QCOMPARE(int(merge.add(received(quint16(port), reply, "192.168.1.99"))), outcome);
        QCOMPARE(merge.cameras().size(), outcome == FleetMerge::NewCamera ? 2 : 1);
    }
    // By ordering key, not by address; a later camera goes before an equal key.
    void windowOrder()
    {
        FleetMerge merge;
        const QStringList ips{"192.168.1.99", "192.168.10.1", "200.200.200.200", "192.168.1.99"};
        for (int i = 0; i < ips.size(); ++i)
            merge.add(received(kBinarySearchPort,
                               winbondAt(ips[i], "00000000000" + QByteArray::number(i))));
        QStringList order;
        for (const SeenCamera &camera : merge.cameras())
            order << camera.record.ip + '/' + camera.record.mac.right(1);
        QCOMPARE(order, (QStringList{"200.200.200.200/2", "192.168.10.1/1", "192.168.1.99/3",
                                     "192.168.1.99/0"}));
    }
    // The window redoes the findings after every burst and touches only the
    // cameras whose markers change: the new ones and those sharing their IP.
    void reflagReportsChangedCamerasOnly()
    {
        HeardCameras heard;
        const auto changed = [&](const char *address, const char *mask) {
            QStringList macs;
            for (const SeenCamera &camera : heard.reflag(
                     {address, QHostAddress(address), QHostAddress(mask), QHostAddress(), 1}))
                macs << camera.record.mac;
            macs.sort();
            return macs;
        };
        heard.add(seen("192.168.1.20", "m1"));
        heard.add(seen("172.16.0.5", "m2"));
        QCOMPARE(changed("192.168.1.1", "255.255.255.0"), QStringList{"m2"});
        QCOMPARE(changed("192.168.1.1", "255.255.255.0"), QStringList{});
        heard.add(seen("192.168.1.20", "m3"));
        heard.add(seen("192.168.1.21", "m1")); // a later reply changes nothing
        QCOMPARE(changed("192.168.1.1", "255.255.255.0"), (QStringList{"m1", "m3"}));
        // Another interface: every marked camera's tooltip names it.
        QCOMPARE(changed("10.0.0.1", "255.0.0.0"), (QStringList{"m1", "m2", "m3"}));
        QCOMPARE(heard.listed({"m3", "foreign", "m1"}).size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestFleetMerge)
#include "tst_fleetmerge.moc"
