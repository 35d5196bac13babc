// veltor-cli discover, the real program, against simulated cameras on two
// networks (see CMakeLists.txt for the fleet). Expectations come from the
// fleet file and the fleet's layout, never from the tool's own parsers.
#include "camsimfleet.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

namespace {

const QString kNetworkA = QStringLiteral("10.79.0.1");
const QString kNetworkB = QStringLiteral("10.80.0.1");
const int kAnswersTheSearcher = 1; // replies to each searcher: heard on both networks

struct Run
{
    int exitCode = -1;
    QByteArray out;
    QString err;
};

Run discover(const QStringList &options)
{
    QProcess process;
    process.start(QStringLiteral(VELTOR_CLI),
                  QStringList{"discover", "--rounds", "2", "--wait", "600"} + options);
    Run run;
    if (!process.waitForFinished(30000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

// The cameras of the JSON output by MAC.
QHash<QString, QJsonObject> camerasByMac(const QByteArray &json)
{
    QHash<QString, QJsonObject> cameras;
    for (const QJsonValue &value : QJsonDocument::fromJson(json).array())
        cameras.insert(value["mac"].toString(), value.toObject());
    return cameras;
}

QStringList texts(const QJsonValue &array)
{
    QStringList list;
    for (const QJsonValue &value : array.toArray())
        list << value.toString();
    return list;
}

bool onNetwork(const QString &ip, const QString &tool)
{
    return QHostAddress(ip).isInSubnet(QHostAddress(tool), 16);
}

} // namespace

class TestDiscoverE2e : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void findsAndFlagsTheWholeFleet();
    void oneInterface_data();
    void oneInterface();
    void nothingAnswers();

private:
    QVector<camsimfleet::Camera> answering() const;
    QVector<camsimfleet::Camera> fleet;
};

void TestDiscoverE2e::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(fleet);
}

QVector<camsimfleet::Camera> TestDiscoverE2e::answering() const
{
    QVector<camsimfleet::Camera> cameras;
    for (const camsimfleet::Camera &camera : fleet) {
        if (!camera.malformed)
            cameras << camera;
    }
    return cameras;
}

void TestDiscoverE2e::findsAndFlagsTheWholeFleet()
{
    const Run run = discover({"--format", "json"});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QHash<QString, QJsonObject> found = camerasByMac(run.out);
    QCOMPARE(found.size(), answering().size());
    QHash<QString, int> camerasPerIp;
    for (const camsimfleet::Camera &camera : answering())
        ++camerasPerIp[camera.ip];
    for (const camsimfleet::Camera &camera : answering()) {
        const QJsonObject row = found.value(camera.mac);
        QCOMPARE(row["ip"].toString(), camera.ip);
        QCOMPARE(row["family"].toString(), camera.family);
        QCOMPARE(row["source"].toString(), camera.ip);
        const bool reachable = onNetwork(camera.ip, kNetworkA) || onNetwork(camera.ip, kNetworkB);
        QStringList findings;
        if (camerasPerIp[camera.ip] > 1)
            findings << "ip-conflict";
        if (!reachable)
            findings << "other-subnet";
        QCOMPARE(texts(row["findings"]), findings);
        const QString home = onNetwork(camera.ip, kNetworkB) ? kNetworkB : kNetworkA;
        const QStringList interfaces =
            camera.index == kAnswersTheSearcher
                ? QStringList{home, home == kNetworkA ? kNetworkB : kNetworkA}
                : QStringList{home};
        QCOMPARE(texts(row["interfaces"]), interfaces);
    }
    QVERIFY2(run.err.contains("va0 10.79.0.1/16") && run.err.contains("vb0 10.80.0.1/16"),
             qPrintable(run.err));
    QVERIFY2(run.err.contains(QRegularExpression("malformed dropped: [1-9]")), qPrintable(run.err));
}

void TestDiscoverE2e::oneInterface_data()
{
    QTest::addColumn<QString>("tool");
    QTest::newRow("network A") << kNetworkA;
    QTest::newRow("network B") << kNetworkB;
}

// Only that network's cameras answer, and the one answering the searcher;
// the camera on a third subnet lives on network A's link.
void TestDiscoverE2e::oneInterface()
{
    QFETCH(QString, tool);
    const Run run = discover({"--format", "json", "--interface", tool});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QStringList expected;
    for (const camsimfleet::Camera &camera : answering()) {
        const bool onB = onNetwork(camera.ip, kNetworkB);
        if (camera.index == kAnswersTheSearcher || onB == (tool == kNetworkB))
            expected << camera.mac;
    }
    QStringList macs = camerasByMac(run.out).keys();
    macs.sort();
    expected.sort();
    QCOMPARE(macs, expected);
    QVERIFY(!run.err.contains(tool == kNetworkA ? kNetworkB : kNetworkA));
}

// Loopback reaches none of the cameras' namespace.
void TestDiscoverE2e::nothingAnswers()
{
    const Run run = discover({"--interface", "127.0.0.1"});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("No camera answered") && run.err.contains("firewall"),
             qPrintable(run.err));
}

QTEST_GUILESS_MAIN(TestDiscoverE2e)
#include "tst_discover_e2e.moc"
