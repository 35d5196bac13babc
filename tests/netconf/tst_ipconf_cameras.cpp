// A user unlocking simulated cameras of both families, changing their network
// settings, told whether each camera took them, and finding them with the
// next search. Run under tests/netns/with-cameras.sh (fleet in CMakeLists.txt).
#include "app/mainwindow.h"
#include "camsimfleet.h"
#include "ipconfharness.h"

#include <QComboBox>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

// The fleet's password: characters a query string must carry intact.
const QString kPassword = QStringLiteral("p&#w+%1");

} // namespace

class IpConfCamerasTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void changeSettings_data();
    void changeSettings();
    void silentCameraUnlocksAfterTimeout();

private:
    void search();
    int rowOf(const QString &ip) const;
    QString cell(int row, int column) const;
    bool enabled(const char *name) const;

    QVector<camsimfleet::Camera> fleet;
    MainWindow *window = nullptr;
    BoxRecorder *modals = nullptr;
    QTableWidget *table = nullptr;
};

void IpConfCamerasTest::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(fleet);
    QCOMPARE(fleet.size(), 4);
    QCOMPARE(fleet.first().password, kPassword);
    qputenv("VELTOR_REBOOT_STEP_MS", "1");
}

void IpConfCamerasTest::init()
{
    window = new MainWindow;
    modals = new BoxRecorder(window);
    table = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_2"));
    const QString tool = qEnvironmentVariable("VELTOR_TOOL_IP");
    window->findChild<QComboBox *>(QStringLiteral("wifiComboBox"))->setCurrentText(tool);
    QCOMPARE(window->getNetwork(), tool);
}

void IpConfCamerasTest::cleanup()
{
    delete window;
    window = nullptr;
}

void IpConfCamerasTest::search()
{
    window->findChild<QPushButton *>(QStringLiteral("searchButton"))->click();
    QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), fleet.size(), 10000);
}

int IpConfCamerasTest::rowOf(const QString &ip) const
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (cell(row, 1) == ip)
            return row;
    }
    return -1;
}

QString IpConfCamerasTest::cell(int row, int column) const
{
    const QTableWidgetItem *item = table->item(row, column);
    return item ? item->text() : QString();
}

bool IpConfCamerasTest::enabled(const char *name) const
{
    return window->findChild<QWidget *>(QLatin1String(name))->isEnabled();
}

void IpConfCamerasTest::changeSettings_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("typed"); // ip, mask, gateway, dns
    QTest::addColumn<QString>("port");
    QTest::addColumn<QStringList>("listed"); // ip, mask, gateway, dns after the next search
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("result");

    const QString done = QStringLiteral("IP Configure");
    const QString success = QStringLiteral("IP Config Successful! Please search again!");
    // Cameras 0 and 1 take the change at once, web server included: the
    // credentials can no longer be asked for at the old address by then.
    // A Winbond reply carries the port in one byte: 81 survives the search.
    QTest::newRow("winbond") << 0
                             << QStringList{"10.78.0.21", "255.255.0.0", "10.78.0.1", "10.78.0.53"}
                             << "81"
                             << QStringList{"10.78.0.21", "255.255.0.0", "10.78.0.1", "10.78.0.53"}
                             << QStringList{done} << success;
    // The gateway outside the new /24 is moved into it.
    QTest::newRow("haisi") << 1
                           << QStringList{"10.78.0.22", "255.255.0.0", "10.78.9.1", "10.78.0.54"}
                           << "8081"
                           << QStringList{"10.78.0.22", "255.255.0.0", "10.78.0.1", "10.78.0.54"}
                           << QStringList{"Camera rebooting", done} << success;
    // Camera 3 accepts the credentials but ignores the change.
    QTest::newRow("haisi ignoring it")
        << 3 << QStringList{"10.78.0.24", "255.255.0.0", "10.78.0.1", "10.78.0.1"} << "80"
        << QStringList{"10.78.0.14", "255.255.0.0", "10.78.0.1", "10.78.0.1"}
        << QStringList{"Camera rebooting", done}
        << "The camera was not seen with the new settings after N s: ip 10.78.0.14 (wanted "
           "10.78.0.24)";
}

void IpConfCamerasTest::changeSettings()
{
    QFETCH(int, index);
    QFETCH(QStringList, typed);
    QFETCH(QString, port);
    QFETCH(QStringList, listed);
    QFETCH(QStringList, boxes);
    const camsimfleet::Camera camera = fleet.at(index);
    search();
    const int row = rowOf(camera.ip);
    QVERIFY(row >= 0);

    // A wrong password keeps the dialog; the right one unlocks all three tabs.
    modals->dialogActions << typeCredentials(camera.user, QStringLiteral("wrong"))
                          << typeCredentials(camera.user, camera.password);
    QMetaObject::invokeMethod(window, "mycellClickedIpConf", Q_ARG(int, row), Q_ARG(int, 1));
    QCOMPARE(modals->dialogTitles, QStringList{"Authentication required"});
    QCOMPARE(modals->texts, QStringList{"Your username or password is not correct!"});
    for (const char *name : {"dhcpsubmit", "httpport", "updateSubmit", "viewFilesBtn"})
        QVERIFY2(enabled(name), name);

    modals->titles.clear();
    modals->texts.clear();
    fillForm(window, false, port, typed);
    window->findChild<QPushButton *>(QStringLiteral("dhcpsubmit"))->click();
    QTRY_COMPARE_WITH_TIMEOUT(modals->titles, boxes, 40000);
    QVERIFY(!modals->texts.contains(QStringLiteral("Your request has failed, retry please!")));
    QTEST(secondsAsN(modals->texts.last()), "result");
    // Our own configuration broadcast comes back to us; it must not list a camera.
    QCOMPARE(table->rowCount(), fleet.size());

    search();
    const int now = rowOf(listed.at(0));
    QVERIFY2(now >= 0, "the camera is not listed where it should be");
    QCOMPARE(cell(now, 3), camera.mac);
    QCOMPARE(cell(now, 2), port);
    QCOMPARE(cell(now, 4), QStringLiteral("off"));
    QCOMPARE(QStringList({cell(now, 1), cell(now, 5), cell(now, 6), cell(now, 7)}), listed);

    // Its web server is where the camera is.
    camsimfleet::Camera there = camera;
    there.ip = listed.at(0);
    there.httpPort = port.toInt();
    QCOMPARE(camsimfleet::fetchJson(there, QStringLiteral("/camsim/status"))
                 .value(QStringLiteral("ip"))
                 .toString(),
             listed.at(0));
}

void IpConfCamerasTest::silentCameraUnlocksAfterTimeout()
{
    const camsimfleet::Camera camera = fleet.at(2);
    search();
    modals->dialogActions << typeCredentials(camera.user, camera.password);
    QMetaObject::invokeMethod(window, "mycellClickedIpConf", Q_ARG(int, rowOf(camera.ip)),
                              Q_ARG(int, 1));
    QCOMPARE(modals->titles, QStringList{"Authentication"});
    QCOMPARE(modals->texts, QStringList{"Timeout, username and password could not be checked"});
    QVERIFY(enabled("dhcpsubmit"));
}

QTEST_MAIN(IpConfCamerasTest)
#include "tst_ipconf_cameras.moc"
