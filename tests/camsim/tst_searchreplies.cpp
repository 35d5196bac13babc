#include "camsim/searchreplies.h"

#include <QtTest>

using namespace veltor::camsim;

namespace {

CameraSettings sample(Family family)
{
    CameraSettings camera;
    camera.family = family;
    camera.index = 4;
    camera.name = QStringLiteral("Cam1");
    camera.mac = QStringLiteral("00:0A:1B:2C:3D:4E");
    camera.ip = QStringLiteral("192.168.1.10");
    camera.mask = QStringLiteral("255.255.255.0");
    camera.gateway = QStringLiteral("192.168.1.1");
    camera.dns = QStringLiteral("8.8.4.4");
    camera.httpPort = 8080;
    camera.dhcp = true;
    camera.firmwareVersion = QStringLiteral("1.2.3.4");
    camera.webVersion = QStringLiteral("5.6.7.250");
    camera.deviceId = QStringLiteral("VLTR00000005");
    return camera;
}

QStringList hdsLines(const QByteArray &reply)
{
    return QString::fromUtf8(reply).split("\r\n");
}

} // namespace

class TestSearchReplies : public QObject
{
    Q_OBJECT

private slots:
    void searchRequestsAreExact_data();
    void searchRequestsAreExact();
    void winbondFields_data();
    void winbondFields();
    void winbondNameIsCutAndPadded();
    void hdsLinesByPosition();
    void hdsContentLengthCountsTheBody();
    void malformed_data();
    void malformed();
};

void TestSearchReplies::searchRequestsAreExact_data()
{
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<bool>("binary");
    QTest::addColumn<bool>("hds");
    const QByteArray binary = QByteArray::fromHex("4D4F5F49000000000000000000000004000000"
                                                  "0400000000000001");
    const QByteArray hds = "SEARCH * HDS/1.0\r\nCSeq:0\r\nClient-ID:TzLqRbHwXeNcKvUaPmYdGsJoFiWnB"
                           "hVr\r\nAccept-Type:text/HDP\r\nContent-Length:0\r\n\r\n";
    QTest::newRow("binary search") << binary << true << false;
    QTest::newRow("HDS search") << hds << false << true;
    QTest::newRow("binary, last byte 0")
        << QByteArray(binary).replace(26, 1, "\0", 1) << false << false;
    QTest::newRow("binary, one byte more") << binary + '\0' << false << false;
    QTest::newRow("binary, 26 bytes") << binary.left(26) << false << false;
    QTest::newRow("HDS, CSeq 1") << QByteArray(hds).replace("CSeq:0", "CSeq:1") << false << false;
    QTest::newRow("HDS, no final empty line") << hds.left(hds.size() - 2) << false << false;
    QTest::newRow("a reply") << winbondReply(sample(Family::Winbond)) << false << false;
}

void TestSearchReplies::searchRequestsAreExact()
{
    QFETCH(QByteArray, datagram);
    QFETCH(bool, binary);
    QFETCH(bool, hds);
    QCOMPARE(isBinarySearch(datagram), binary);
    QCOMPARE(isHdsSearch(datagram), hds);
    QCOMPARE(binarySearchRequest().size(), 27);
    QCOMPARE(hdsSearchRequest().size(), 112);
}

void TestSearchReplies::winbondFields_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("header") << 0 << QByteArray("MO_I");
    QTest::newRow("MAC as 12 characters") << 23 << QByteArray("000A1B2C3D4E");
    QTest::newRow("name, zero padded") << 35 << QByteArray("Cam1\0\0", 6);
    QTest::newRow("IP") << 57 << QByteArray::fromHex("C0A8010A");
    QTest::newRow("mask") << 61 << QByteArray::fromHex("FFFFFF00");
    QTest::newRow("gateway") << 65 << QByteArray::fromHex("C0A80101");
    QTest::newRow("DNS") << 69 << QByteArray::fromHex("08080404");
    QTest::newRow("firmware") << 77 << QByteArray::fromHex("01020304");
    QTest::newRow("webui") << 81 << QByteArray::fromHex("050607FA");
    QTest::newRow("port 8080 keeps its low byte") << 86 << QByteArray::fromHex("90");
    QTest::newRow("DHCP on") << 87 << QByteArray::fromHex("01");
}

void TestSearchReplies::winbondFields()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, expected);
    const QByteArray reply = winbondReply(sample(Family::Winbond));
    QCOMPARE(reply.size(), 88);
    QCOMPARE(reply.mid(offset, expected.size()).toHex(), expected.toHex());
}

void TestSearchReplies::winbondNameIsCutAndPadded()
{
    CameraSettings camera = sample(Family::Winbond);
    camera.name = QStringLiteral("A name much longer than twenty-two bytes");
    QCOMPARE(winbondReply(camera).mid(35, 22), QByteArray("A name much longer tha"));
    camera.name.clear();
    QCOMPARE(winbondReply(camera).mid(35, 22), QByteArray(22, '\0'));
}

void TestSearchReplies::hdsLinesByPosition()
{
    const QStringList lines = hdsLines(hdsReply(sample(Family::Haisi)));
    QCOMPARE(lines.first(), QStringLiteral("HDS/1.0 200 OK"));
    QCOMPARE(lines.at(17), QStringLiteral("Software-Version=1.2.3.4"));
    QCOMPARE(lines.at(18), QStringLiteral("Web-Version=5.6.7.250"));
    QCOMPARE(lines.last(), QString()); // ends with CR LF
    QMap<QString, QString> fields;
    for (const QString &line : lines) {
        if (line.contains('='))
            fields.insert(line.section('=', 0, 0), line.section('=', 1));
    }
    QCOMPARE(fields.value("Device-Name"), QStringLiteral("Cam1"));
    QCOMPARE(fields.value("Device-ID"), QStringLiteral("VLTR00000005"));
    QCOMPARE(fields.value("IP"), QStringLiteral("192.168.1.10"));
    QCOMPARE(fields.value("MAC"), QStringLiteral("00:0A:1B:2C:3D:4E"));
    QCOMPARE(fields.value("MASK"), QStringLiteral("255.255.255.0"));
    QCOMPARE(fields.value("Gateway"), QStringLiteral("192.168.1.1"));
    QCOMPARE(fields.value("Fdns"), QStringLiteral("8.8.4.4"));
    QCOMPARE(fields.value("Http-Port"), QStringLiteral("8080"));
    QCOMPARE(fields.value("Dhcp"), QStringLiteral("1"));
}

void TestSearchReplies::hdsContentLengthCountsTheBody()
{
    CameraSettings camera = sample(Family::Haisi);
    camera.name = QStringLiteral("Kamera Süd"); // UTF-8: the length is in bytes
    const QByteArray reply = hdsReply(camera);
    const int bodyStart = reply.indexOf("\r\n\r\n") + 4;
    const QByteArray header = reply.left(bodyStart);
    const int at = header.indexOf("Content-Length:") + 15;
    QCOMPARE(header.mid(at, header.indexOf('\r', at) - at).toInt(), reply.size() - bodyStart);
}

void TestSearchReplies::malformed_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("size");     // -1: not checked
    QTest::addColumn<int>("hdsLines"); // parts after splitting at CR LF; -1: not checked
    QTest::addColumn<QByteArray>("head");
    const int winbond = int(Family::Winbond);
    const int haisi = int(Family::Haisi);
    QTest::newRow("winbond truncated")
        << winbond << int(Malformed::Truncated) << 27 << -1 << QByteArray("MO_I");
    QTest::newRow("winbond random")
        << winbond << int(Malformed::Random) << 88 << -1 << QByteArray("\0", 1);
    QTest::newRow("winbond status")
        << winbond << int(Malformed::Status) << 88 << -1 << QByteArray("MO_X");
    QTest::newRow("haisi truncated")
        << haisi << int(Malformed::Truncated) << -1 << 7 << QByteArray("HDS/1.0 200 OK\r\n");
    QTest::newRow("haisi random") << haisi << int(Malformed::Random) << -1 << -1
                                  << QByteArray("\0", 1);
    QTest::newRow("haisi status") << haisi << int(Malformed::Status) << -1 << 20
                                  << QByteArray("HDS/1.0 404 Not Found\r\n");
}

void TestSearchReplies::malformed()
{
    QFETCH(int, family);
    QFETCH(int, kind);
    QFETCH(int, size);
    QFETCH(int, hdsLines);
    QFETCH(QByteArray, head);
    CameraSettings camera = sample(Family(family));
    camera.behaviour.malformed = Malformed(kind);
    const QByteArray reply = searchReply(camera, Family(family));
    QVERIFY(reply.startsWith(head));
    if (size >= 0)
        QCOMPARE(reply.size(), size);
    if (hdsLines >= 0)
        QCOMPARE(reply.split('\n').size(), hdsLines);
    QCOMPARE(searchReply(camera, Family(family)), reply); // reproducible
}

QTEST_GUILESS_MAIN(TestSearchReplies)
#include "tst_searchreplies.moc"
