// veltor-cli discover on two simulated networks, judged by the fleet's layout alone.
#include "camsimfleet.h"
#include "clirun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {

const QString kNetworkA = QStringLiteral("10.79.0.1");
const QString kNetworkB = QStringLiteral("10.80.0.1");
const int kAnswersTheSearcher = 1; // replies to each searcher: heard on both networks

CliRun discover(const QStringList &options)
{
    return runCli(QString("discover --rounds 2 --wait 600 --format json").split(' ') + options);
}

QMap<QString, QJsonObject> camerasByMac(const QString &json)
{
    QMap<QString, QJsonObject> cameras;
    for (const QJsonValue &value : QJsonDocument::fromJson(json.toUtf8()).array())
        cameras.insert(value["mac"].toString(), value.toObject());
    return cameras;
}

bool onB(const camsimfleet::Camera &camera)
{
    return QHostAddress(camera.ip).isInSubnet(QHostAddress(kNetworkB), 16);
}

} // namespace

class TestDiscoverE2e : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        fleet.erase(std::remove_if(fleet.begin(), fleet.end(), [](auto &c) { return c.malformed; }),
                    fleet.end());
    }
    void search_data()
    {
        QTest::addColumn<QString>("tool"); // the interface given, none: all
        for (const QString &tool : {QString(), kNetworkA, kNetworkB, QString("127.0.0.1")})
            QTest::newRow(tool.isEmpty() ? "all" : qPrintable(tool)) << tool;
    }
    // On one network: its cameras and the one answering the searcher (the third subnet is on
    // A's link); on all, each camera with its findings and where it was heard.
    void search()
    {
        QFETCH(QString, tool);
        const CliRun run =
            discover(tool.isEmpty() ? QStringList() : QStringList{"--interface", tool});
        QStringList expected;
        QHash<QString, int> camerasPerIp;
        for (const camsimfleet::Camera &camera : qAsConst(fleet)) {
            ++camerasPerIp[camera.ip];
            if (tool.isEmpty() || (tool != "127.0.0.1" && (camera.index == kAnswersTheSearcher ||
                                                           onB(camera) == (tool == kNetworkB))))
                expected << camera.mac;
        }
        expected.sort();
        const QMap<QString, QJsonObject> found = camerasByMac(run.out);
        QCOMPARE(found.keys(), expected);
        QCOMPARE(run.exitCode, expected.isEmpty() ? 1 : 0);
        QCOMPARE(run.err.contains("No camera answered") && run.err.contains("firewall"),
                 expected.isEmpty());
        QVERIFY(tool.isEmpty() || !run.err.contains(tool == kNetworkA ? kNetworkB : kNetworkA));
        if (!tool.isEmpty())
            return;
        for (const camsimfleet::Camera &camera : qAsConst(fleet)) {
            const QJsonObject row = found.value(camera.mac);
            QCOMPARE(row["ip"].toString(), camera.ip);
            QCOMPARE(row["family"].toString(), camera.family);
            QCOMPARE(row["source"].toString(), camera.ip);
            QStringList findings;
            if (camerasPerIp[camera.ip] > 1)
                findings << "ip-conflict";
            if (!onB(camera) && !QHostAddress(camera.ip).isInSubnet(QHostAddress(kNetworkA), 16))
                findings << "other-subnet";
            QCOMPARE(row["findings"].toArray(), QJsonArray::fromStringList(findings));
            QStringList interfaces{onB(camera) ? kNetworkB : kNetworkA};
            if (camera.index == kAnswersTheSearcher)
                interfaces << (onB(camera) ? kNetworkA : kNetworkB);
            QCOMPARE(row["interfaces"].toArray(), QJsonArray::fromStringList(interfaces));
        }
        const QString probed = "(va0 10.79.0.1/16|vb0 10.80.0.1/16) \\(broadcast [.0-9]+\\)";
        QVERIFY2(
            run.err.contains(QRegularExpression("Interfaces probed: " + probed + ", " + probed +
                                                    "\n.*malformed dropped: [1-9]",
                                                QRegularExpression::DotMatchesEverythingOption)) &&
                run.err.contains("va0") && run.err.contains("vb0"),
            qPrintable(run.err));
    }

private:
    QVector<camsimfleet::Camera> fleet; // those that answer well
};

QTEST_GUILESS_MAIN(TestDiscoverE2e)
#include "tst_discover_e2e.moc"
