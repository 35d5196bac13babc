// The real main window (offscreen) searching a mixed simulated fleet across the
// namespace harness; see CMakeLists.txt for the fleet. Rows are checked against
// the fleet file, never against the tool's own parsers.
#include "app/mainwindow.h"
#include "camsimfleet.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"

#include <QDesktopServices>
#include <QNetworkDatagram>
#include <QProgressBar>
#include <QTableWidget>
#include <QUdpSocket>
#include <QtTest>

namespace {

QStringList expectedRow(const camsimfleet::Camera &camera)
{
    const bool winbond = camera.family == QLatin1String("Winbond");
    QString name = winbond ? QString(camera.name.toLatin1().left(22)).trimmed() : camera.name;
    if (name.isEmpty())
        name = winbond ? "VELTOR VGA Series" : "Unnamed";
    return QStringList{name, camera.ip, QString::number(camera.httpPort & (winbond ? 0xFF : -1))}
           << camera.mac << (camera.dhcp ? "on" : "off") << camera.mask << camera.gateway
           << camera.dns << camera.firmwareVersion << camera.webVersion;
}

} // namespace

class UrlCatcher : public QObject
{
    Q_OBJECT

public slots:
    void openUrl(const QUrl &url) { opened << url; }

public:
    QList<QUrl> opened;
};

class TestE2eDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        window = new MainWindow;
        window->show();
        QDesktopServices::setUrlHandler("http", &catcher, "openUrl");
    }
    void cleanupTestCase()
    {
        QDesktopServices::unsetUrlHandler("http");
        delete window;
    }
    void mixedFleetListedOnceInKeyOrder()
    {
        QMetaObject::invokeMethod(window, "on_searchButton_clicked");
        checkTables();
    }
    // A second search started inside a running one (as a timer tick or a click
    // during its waits does) empties the tables again, and both searches send
    // their three rounds of both requests.
    void nestedSearchLeavesConsistentTables()
    {
        QUdpSocket binaryProbe, hdsProbe;
        const auto shared = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;
        QVERIFY(binaryProbe.bind(QHostAddress::AnyIPv4, veltor::kBinarySearchPort, shared));
        QVERIFY(hdsProbe.bind(QHostAddress::AnyIPv4, veltor::kHdsPort, shared));
        QVERIFY(hdsProbe.joinMulticastGroup(QHostAddress(veltor::kHdsGroup)));
        const auto countDatagrams = [](QUdpSocket *socket, const QByteArray &wanted) {
            int count = 0;
            while (socket->hasPendingDatagrams())
                count += socket->receiveDatagram().data() == wanted;
            return count;
        };
        QProgressBar *progress = window->findChild<QProgressBar *>("progressBar");
        int rowsAfterClear = -1, progressDuringSearch = 0;
        QTimer::singleShot(500, window, [&] { progressDuringSearch = progress->value(); });
        QTimer::singleShot(1000, window, [&] {
            // Due at the nested search's first wait, before any camera can answer it.
            QTimer::singleShot(0, window, [&] { rowsAfterClear = table(4)->rowCount(); });
            QMetaObject::invokeMethod(window, "on_searchButton_clicked");
        });
        QMetaObject::invokeMethod(window, "on_searchButton_clicked");
        QCOMPARE(rowsAfterClear, 0);
        QVERIFY(progressDuringSearch > 0);
        QCOMPARE(progress->value(), 0);
        checkTables();
        QCOMPARE(countDatagrams(&binaryProbe, veltor::binarySearchDatagram()), 6);
        QCOMPARE(countDatagrams(&hdsProbe, veltor::hdsSearchRequest()), 6);
    }
    void doubleClickOpensTheCamera_data()
    {
        QTest::addColumn<int>("table");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("Search tab, name cell") << 1 << 0 << 0;
        QTest::newRow("IP Conf. tab, last cell") << 2 << 1 << 9;
        QTest::newRow("Update tab") << 3 << 2 << 4;
        QTest::newRow("SD card tab") << 4 << 3 << 1;
    }
    void doubleClickOpensTheCamera()
    {
        QFETCH(int, table);
        QFETCH(int, row);
        QFETCH(int, column);
        const QStringList expected = expectedRows().value(row);
        QVERIFY(!expected.isEmpty());
        catcher.opened.clear();
        QVERIFY(QMetaObject::invokeMethod(
            window, QByteArray("mycellDoubleClicked" + QByteArray::number(table)), Q_ARG(int, row),
            Q_ARG(int, column)));
        QCOMPARE(catcher.opened, QList<QUrl>{QUrl("http://" + expected[1] + ':' + expected[2])});
    }

private:
    // Malformed replies are not listed, a camera answering both protocols once.
    // The ordering key is the address parts joined without padding, read as a
    // signed 32-bit number (0 when it does not fit); the fleet has no equal keys.
    QList<QStringList> expectedRows() const
    {
        QList<QStringList> rows;
        for (const camsimfleet::Camera &camera : fleet) {
            if (!camera.malformed)
                rows << expectedRow(camera);
        }
        std::stable_sort(rows.begin(), rows.end(), [](const QStringList &a, const QStringList &b) {
            return QString(a[1]).remove('.').toInt() < QString(b[1]).remove('.').toInt();
        });
        return rows;
    }
    QTableWidget *table(int n) const
    {
        return window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_%1").arg(n));
    }
    void checkTables()
    {
        for (int n = 1; n <= 4; ++n) {
            QList<QStringList> listed;
            for (int row = 0; row < table(n)->rowCount(); ++row) {
                QStringList cells;
                for (int column = 0; column < 10; ++column)
                    cells << (table(n)->item(row, column) ? table(n)->item(row, column)->text()
                                                          : "");
                listed << cells;
            }
            QCOMPARE(listed, expectedRows());
        }
    }

    QVector<camsimfleet::Camera> fleet;
    MainWindow *window = nullptr;
    UrlCatcher catcher;
};

QTEST_MAIN(TestE2eDiscovery)
#include "tst_e2e_discovery.moc"
