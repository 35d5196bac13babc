#include "app/mainwindow.h"
#include "ipconfharness.h"
#include "loopbackhttpserver.h"
#include "netconf/configparse.h"

#include <QPushButton>
#include <QTableWidget>
#include <QUdpSocket>
#include <QtTest>

namespace {

const QString kCamera = QStringLiteral("127.0.0.1");
const QString kMac = QStringLiteral("00:0A:1B:2C:3D:4E");
const QStringList kStatic = {"127.0.0.20", "255.255.255.0", "127.0.0.1", "8.8.8.8"};

QList<QByteArray> drain(QUdpSocket *socket)
{
    QList<QByteArray> datagrams;
    while (socket->hasPendingDatagrams()) {
        QByteArray datagram(int(socket->pendingDatagramSize()), '\0');
        socket->readDatagram(datagram.data(), datagram.size());
        datagrams << datagram;
    }
    return datagrams;
}

} // namespace

class IpConfSubmitTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void refused_data();
    void refused();
    void haisiRequests_data();
    void haisiRequests();
    void winbondDatagram();
    void confirmation_data();
    void confirmation();

private:
    void submit();

    MainWindow *window = nullptr;
    QUdpSocket *group = nullptr;
    QUdpSocket *broadcast = nullptr;
    BoxRecorder *boxes = nullptr;
};

void IpConfSubmitTest::initTestCase()
{
    QString why;
    if (!sendingIsHermetic(&why))
        QSKIP(qPrintable(why));
    qputenv("VELTOR_REBOOT_STEP_MS", "1");
}

void IpConfSubmitTest::init()
{
    window = new MainWindow;
    const auto shared = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;
    group = new QUdpSocket(window);
    QVERIFY(group->bind(QHostAddress::AnyIPv4, 8002, shared));
    QVERIFY(group->joinMulticastGroup(QHostAddress(QStringLiteral("239.255.250.150"))));
    broadcast = new QUdpSocket(window);
    QVERIFY(broadcast->bind(QHostAddress::AnyIPv4, 10000, shared));
    boxes = new BoxRecorder(window);
}

void IpConfSubmitTest::cleanup()
{
    delete window;
    window = nullptr;
}

void IpConfSubmitTest::submit()
{
    window->findChild<QPushButton *>(QStringLiteral("dhcpsubmit"))->click();
    QTest::qWait(100);
}

void IpConfSubmitTest::refused_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<bool>("dhcp");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("mac");
    QTest::addColumn<QString>("message");

    const QStringList good = kStatic;
    auto with = [&](int i, const QString &value) {
        QStringList a = good;
        a[i] = value;
        return a;
    };
    const QString range = QStringLiteral("Port needs to be a value in range of 0-65535");
    QTest::newRow("1") << "Haisi" << false << "-1" << good << "pw" << kMac << "Port invalid";
    QTest::newRow("2") << "Haisi" << false << "65536" << good << "pw" << kMac << range;
    QTest::newRow("4") << "Haisi" << true << "80" << with(0, "1.2.3") << "pw" << kMac
                       << "Ip-address has a wrong format";
    QTest::newRow("5") << "Haisi" << false << "80" << with(1, "255.255.255.0.0") << "pw" << kMac
                       << "Subnet has a wrong format";
    QTest::newRow("6") << "Winbond" << false << "80" << with(2, "") << "pw" << kMac
                       << "Gateway has a wrong format";
    QTest::newRow("7") << "Winbond" << false << "80" << with(3, "8.8.8.x") << "pw" << kMac
                       << "DNS has a wrong format";
    QTest::newRow("8") << "Winbond" << false << "80" << with(0, "1..2.3") << "pw" << kMac
                       << "Ip-address has invalid values";
    QTest::newRow("9") << "Winbond" << false << "80" << with(1, "255.255.256.0") << "pw" << kMac
                       << "Subnet-address has invalid values";
    QTest::newRow("10") << "Winbond" << false << "80" << with(2, "1.1.1.300") << "pw" << kMac
                        << "Gateway-address has invalid values";
    QTest::newRow("11") << "Winbond" << false << "80" << with(3, "999.8.8.8") << "pw" << kMac
                        << "DNS-address has invalid values";
    QTest::newRow("13-byte password")
        << "Winbond" << true << "80" << good << "1234567890123" << kMac
        << "The password is too long for this camera (at most 12 "
           "bytes)";
    QTest::newRow("short MAC") << "Winbond" << true << "80" << good << "pw"
                               << "00:0A:1B"
                               << "The MAC address of this camera has a wrong format";
    QTest::newRow("unknown family sends nothing")
        << "Sony" << false << "80" << good << "pw" << kMac << "";
}

void IpConfSubmitTest::refused()
{
    QFETCH(QString, family);
    QFETCH(bool, dhcp);
    QFETCH(QString, port);
    QFETCH(QStringList, addresses);
    QFETCH(QString, password);
    QFETCH(QString, mac);
    QFETCH(QString, message);
    prepareCamera(window, kCamera, mac, {"admin", password, "80", family});
    fillForm(window, dhcp, port, addresses);
    submit();
    QCOMPARE(boxes->texts, message.isEmpty() ? QStringList() : QStringList{message});
    if (!message.isEmpty())
        QCOMPARE(boxes->titles, QStringList{"Error"});
    QVERIFY(drain(group).isEmpty());
    QVERIFY(drain(broadcast).isEmpty());
}

void IpConfSubmitTest::haisiRequests_data()
{
    QTest::addColumn<bool>("dhcp");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QStringList>("bodies");

    QTest::newRow("dhcp on, no port") << true << "" << QStringList{"netconf set -dhcp on"};
    QTest::newRow("dhcp off, port kept")
        << false << "80"
        << QStringList{"netconf set -dhcp off -ipaddr 127.0.0.20 -netmask 255.255.255.0 "
                       "-gateway 127.0.0.1 -hwaddr 00:0A:1B:2C:3D:4E -fdnsip 8.8.8.8",
                       "httpport set -httpport 80"};
    QTest::newRow("haisi takes 300 as typed")
        << false << "8080"
        << QStringList{"netconf set -dhcp off -ipaddr 300.1.1.1 -netmask 255.255.255.0 "
                       "-gateway 300.1.1.1 -hwaddr 00:0A:1B:2C:3D:4E -fdnsip 8.8.8.8",
                       "httpport set -httpport 8080"};
}

void IpConfSubmitTest::haisiRequests()
{
    QFETCH(bool, dhcp);
    QFETCH(QString, port);
    QFETCH(QStringList, bodies);
    // The camera is "elsewhere" so that no HTTP follow-up is asked for here.
    prepareCamera(window, QStringLiteral("10.0.0.9"), kMac, {"ad:min", "p&#w", "80", "Haisi"});
    QStringList addresses = kStatic;
    if (QTest::currentDataTag() == QLatin1String("haisi takes 300 as typed"))
        addresses[0] = QStringLiteral("300.1.1.1");
    fillForm(window, dhcp, port, addresses);
    submit();
    QTRY_COMPARE(group->hasPendingDatagrams(), true);
    QTest::qWait(50);
    const QList<QByteArray> datagrams = drain(group);
    QCOMPARE(datagrams.size(), bodies.size());
    for (int i = 0; i < datagrams.size(); ++i) {
        const auto cmd = veltor::parseHdsCmd(datagrams.at(i));
        QVERIFY(cmd);
        QCOMPARE(cmd->cseq, quint32(i)); // consecutive, from the window's counter
        QCOMPARE(cmd->user + ':' + cmd->password, QStringLiteral("ad:min:p&#w"));
        QCOMPARE(QString::fromUtf8(cmd->body), bodies.at(i));
    }
    QVERIFY(boxes->texts.isEmpty());
}

void IpConfSubmitTest::winbondDatagram()
{
    prepareCamera(window, QStringLiteral("10.0.0.9"), kMac, {"admin", "p&#w", "80", "Winbond"});
    fillForm(window, false, QStringLiteral("8080"), kStatic);
    submit();
    QTRY_COMPARE(broadcast->hasPendingDatagrams(), true);
    const QList<QByteArray> datagrams = drain(broadcast);
    QCOMPARE(datagrams.size(), 1);
    const auto config = veltor::parseWinbondConfig(datagrams.first());
    QVERIFY(config);
    QCOMPARE(config->mac, QStringLiteral("000A1B2C3D4E"));
    QCOMPARE(config->password, QStringLiteral("p&#w"));
    QCOMPARE(config->settings.ip, kStatic.at(0));
    QCOMPARE(datagrams.first().mid(82).toHex(), QByteArray("1f90"));
    // The window hears its own broadcast too: it must not become a camera row,
    // whose name and address would be made of the user name and password.
    QTest::qWait(100);
    QCOMPARE(window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_2"))->rowCount(),
             1);
}

void IpConfSubmitTest::confirmation_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QString>("result");
    QTest::addColumn<int>("sent"); // configuration datagrams

    const QString done = QStringLiteral("IP Configure");
    // Nothing answers the searches that look for the changed camera here.
    const QString unseen = QStringLiteral(
        "The camera was not seen with the new settings after N s: it did not answer the searches");
    QTest::newRow("winbond accepted")
        << "Winbond" << 200 << QStringList{done}
        << QStringList{"/check_user.cgi?user=ad%26min&pwd=p%23w"} << unseen << 1;
    QTest::newRow("haisi accepted")
        << "Haisi" << 200 << QStringList{"Camera rebooting", done}
        << QStringList{"/param.cgi?cmd=getuserinfo&usr=ad%26min&pwd=p%23w",
                       "/reboot.cgi?user=ad%26min&pwd=p%23w"}
        << unseen << 1;
    // Refused credentials: the change never goes out.
    QTest::newRow("refused") << "Haisi" << 401 << QStringList{"Error"}
                             << QStringList{"/param.cgi?cmd=getuserinfo&usr=ad%26min&pwd=p%23w"}
                             << "Your request has failed, retry please!" << 0;
}

void IpConfSubmitTest::confirmation()
{
    QFETCH(QString, family);
    QFETCH(int, status);
    QFETCH(QStringList, titles);
    QFETCH(QStringList, paths);
    LoopbackHttpServer camera;
    QVERIFY(camera.start());
    camera.status = status;
    prepareCamera(window, kCamera, kMac, {"ad&min", "p#w", QString::number(camera.port()), family});
    fillForm(window, true, QString(), kStatic);
    submit();
    QTRY_COMPARE_WITH_TIMEOUT(boxes->titles.size(), titles.size(), 30000);
    // Unlocking also asked for the SD card status; only the configuration's requests count here.
    const auto configurationPaths = [&camera] {
        QList<QByteArray> seen;
        for (const QByteArray &path : camera.paths) {
            if (!path.contains("cmd=getserverinfo"))
                seen << path;
        }
        return seen;
    };
    QTRY_COMPARE(configurationPaths().size(), paths.size());
    QCOMPARE(boxes->titles, titles);
    QList<QByteArray> expected;
    for (const QString &path : paths)
        expected << path.toUtf8();
    QCOMPARE(configurationPaths(), expected);
    QTEST(secondsAsN(boxes->texts.last()), "result");
    // The window's own searches for the camera arrive here too; they are no configuration.
    int sent = 0;
    for (const QByteArray &datagram : drain(group) + drain(broadcast))
        sent += veltor::parseHdsCmd(datagram) || veltor::parseWinbondConfig(datagram);
    QTEST(sent, "sent");
    QVERIFY(window->isEnabled());
}

QTEST_MAIN(IpConfSubmitTest)
#include "tst_ipconfsubmit.moc"
