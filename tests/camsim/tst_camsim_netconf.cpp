// The simulated camera's credential check and configuration receiver, in
// process and on loopback: what a camera accepts, refuses and ignores.
#include "auth/credentialcheck.h"
#include "camsim/features.h"
#include "camsim/networkchanger.h"
#include "camsim/simcamera.h"
#include "netconf/configmessages.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpServer>
#include <QtTest>

using namespace veltor::camsim;

namespace {

const QString kMac = QStringLiteral("02:56:4C:00:00:01");

CameraSettings settingsOf(Family family)
{
    CameraSettings camera;
    camera.family = family;
    camera.name = QStringLiteral("cam");
    camera.mac = kMac;
    camera.ip = QStringLiteral("127.0.0.1");
    camera.mask = QStringLiteral("255.0.0.0");
    camera.deviceId = QStringLiteral("DEV-1");
    camera.user = QStringLiteral("ad&min");
    camera.password = QString::fromUtf8("p#w+% ä");
    return camera;
}

// The status of one GET, or 0 when it ran into its timeout.
int statusOf(const QUrl &url, int timeoutMs = 3000)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMs);
    QNetworkReply *reply = manager.get(request);
    QSignalSpy done(reply, &QNetworkReply::finished);
    done.wait(timeoutMs + 2000);
    reply->deleteLater();
    if (reply->error() == QNetworkReply::OperationCanceledError)
        return 0;
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

SimDatagram datagram(const QByteArray &data, quint16 port)
{
    SimDatagram d;
    d.data = data;
    d.localPort = port;
    return d;
}

} // namespace

class CamsimNetconfTest : public QObject
{
    Q_OBJECT

private slots:
    void credentialCheck_data();
    void credentialCheck();
    void silentCamera();
    void configuration_data();
    void configuration();
};

void CamsimNetconfTest::credentialCheck_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("status");

    const CameraSettings right = settingsOf(Family::Winbond);
    for (const Family family : {Family::Winbond, Family::Haisi}) {
        const QByteArray name = familyName(family).toUtf8();
        QTest::newRow(QByteArray(name + " right").constData())
            << int(family) << right.user << right.password << 200;
        QTest::newRow(QByteArray(name + " wrong").constData())
            << int(family) << right.user << "p#w" << 401;
        QTest::newRow(QByteArray(name + " empty").constData()) << int(family) << ""
                                                               << "" << 401;
    }
}

void CamsimNetconfTest::credentialCheck()
{
    QFETCH(int, family);
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(int, status);
    SimCamera camera(settingsOf(Family(family)));
    installFeatures(camera);
    QString error;
    QVERIFY2(camera.startHttp(QHostAddress::LocalHost, 0, &error), qPrintable(error));
    const QString port = QString::number(camera.http().serverPort());
    const QString familyText = familyName(Family(family));
    QCOMPARE(statusOf(veltor::credentialCheckUrl(QStringLiteral("127.0.0.1"), port, familyText,
                                                 user, password)),
             status);
}

void CamsimNetconfTest::silentCamera()
{
    qputenv("VELTOR_CAMSIM_AUTH_SILENT", "7");
    CameraSettings settings = settingsOf(Family::Haisi);
    settings.index = 7;
    SimCamera camera(settings);
    installFeatures(camera);
    QString error;
    QVERIFY(camera.startHttp(QHostAddress::LocalHost, 0, &error));
    const QString port = QString::number(camera.http().serverPort());
    const int status = statusOf(
        veltor::credentialCheckUrl("127.0.0.1", port, "Haisi", settings.user, settings.password),
        500);
    qunsetenv("VELTOR_CAMSIM_AUTH_SILENT");
    QCOMPARE(status, 0);
}

void CamsimNetconfTest::configuration_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<QString>("mask"); // after the restart
    QTest::addColumn<int>("httpPort"); // the web server's port afterwards; 0: unchanged
    QTest::addColumn<int>("apply");    // ApplyMode; a camera that applies later is restarted

    veltor::NetworkSettings s;
    s.ip = QStringLiteral("127.0.0.1");
    s.subnet = QStringLiteral("255.255.0.0");
    s.gateway = QStringLiteral("127.0.0.1");
    s.dns = QStringLiteral("127.0.0.53");
    const CameraSettings cam = settingsOf(Family::Haisi);
    const auto cmd = [&](const QByteArray &body, const QString &password, const QString &id) {
        return veltor::hdsCmdRequest(1, cam.user, password, id, body);
    };
    const QByteArray netconf = veltor::netconfBody(s, kMac);
    const int haisi = int(Family::Haisi);
    const int winbond = int(Family::Winbond);
    const int later = int(ApplyMode::Later);
    QTest::newRow("haisi netconf")
        << haisi << cmd(netconf, cam.password, cam.deviceId) << true << "255.255.0.0" << 0 << later;
    QTest::newRow("haisi port") << haisi
                                << cmd(veltor::httpPortBody("0"), cam.password, cam.deviceId)
                                << true << "255.0.0.0" << 0 << later;
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
    const int freePort = probe.serverPort();
    probe.close();
    QTest::newRow("haisi new port")
        << haisi
        << cmd(veltor::httpPortBody(QByteArray::number(freePort)), cam.password, cam.deviceId)
        << true << "255.0.0.0" << freePort << later;
    QTest::newRow("haisi wrong password")
        << haisi << cmd(netconf, "x", cam.deviceId) << true << "255.0.0.0" << 0 << later;
    QTest::newRow("haisi other camera")
        << haisi << cmd(netconf, cam.password, "DEV-2") << false << "255.0.0.0" << 0 << later;
    QTest::newRow("haisi other MAC")
        << haisi << cmd(veltor::netconfBody(s, "02:56:4C:00:00:02"), cam.password, cam.deviceId)
        << true << "255.0.0.0" << 0 << later;
    QTest::newRow("haisi malformed") << haisi << QByteArray("CMD * HDS/1.0\r\n\r\nnetconf") << false
                                     << "255.0.0.0" << 0 << later;
    s.port = QStringLiteral("0");
    QTest::newRow("winbond wrong password")
        << winbond << veltor::winbondConfigDatagram(kMac, cam.user, "wrong", s) << true
        << "255.0.0.0" << 0 << later;
    QTest::newRow("winbond right password")
        << winbond << veltor::winbondConfigDatagram(kMac, cam.user, cam.password, s) << true
        << "255.255.0.0" << 0 << later;
    QTest::newRow("winbond other MAC")
        << winbond << veltor::winbondConfigDatagram("02:56:4C:00:00:09", cam.user, cam.password, s)
        << false << "255.0.0.0" << 0 << later;
    QTest::newRow("winbond cut short")
        << winbond << veltor::winbondConfigDatagram(kMac, cam.user, cam.password, s).left(60)
        << false << "255.0.0.0" << 0 << later;
    const QByteArray right = veltor::winbondConfigDatagram(kMac, cam.user, cam.password, s);
    QTest::newRow("winbond at once")
        << winbond << right << true << "255.255.0.0" << 0 << int(ApplyMode::Instantly);
    QTest::newRow("winbond ignoring it")
        << winbond << right << true << "255.0.0.0" << 0 << int(ApplyMode::Never);
}

void CamsimNetconfTest::configuration()
{
    QFETCH(int, family);
    QFETCH(QByteArray, message);
    QFETCH(bool, taken);
    QFETCH(QString, mask);
    QFETCH(int, httpPort);
    QFETCH(int, apply);
    CameraSettings settings = settingsOf(Family(family));
    settings.apply = ApplyMode(apply);
    SimCamera camera(settings);
    installFeatures(camera);
    QString error;
    QVERIFY(camera.startHttp(QHostAddress::LocalHost, 0, &error));
    const quint16 before = camera.http().serverPort();
    const quint16 port = family == int(Family::Haisi) ? 8002 : 10000;
    QCOMPARE(camera.handleDatagram(datagram(message, port)), taken);
    if (settings.apply != ApplyMode::Instantly)
        NetworkChanger::of(camera)->restartNow();
    QCOMPARE(camera.settings().mask, mask);
    QCOMPARE(int(camera.http().serverPort()), httpPort ? httpPort : int(before));
    QCOMPARE(camera.http().serverAddress(), QHostAddress(QHostAddress::LocalHost));
}

QTEST_GUILESS_MAIN(CamsimNetconfTest)
#include "tst_camsim_netconf.moc"
