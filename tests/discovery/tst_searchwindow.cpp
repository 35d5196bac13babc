// The search and the row highlight as the window does them. Network cases
// send over loopback broadcast and multicast inside a private network
// namespace (see in-private-netns.sh) and skip without one.
#include "app/mainwindow.h"
#include "discovery/fleetsearch.h"
#include "discovery/protocolconstants.h"
#include "replybuilder.h"

#include <QCheckBox>
#include <QNetworkInterface>
#include <QTableWidget>
#include <QThread>
#include <QUdpSocket>
#include <QtTest>
#include <atomic>
#include <memory>

namespace {

QTableWidget *deviceTable(const MainWindow *window, int n)
{
    return window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_%1").arg(n));
}

QStringList tableRows(const QTableWidget *table)
{
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int c = 0; c < table->columnCount(); ++c)
            cells << (table->item(row, c) ? table->item(row, c)->text() : "<no item>");
        rows << cells.join('|');
    }
    return rows;
}

} // namespace

#define NEEDS_NETNS()                                                                              \
    if (!netnsProblem.isEmpty())                                                                   \
    QSKIP(qPrintable(netnsProblem))

class tst_SearchWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        netnsProblem = qEnvironmentVariable("VELTOR_NETNS_UNAVAILABLE");
        // Broadcasts and the group must stay on this machine.
        if (netnsProblem.isEmpty() && QNetworkInterface::allInterfaces().size() != 1)
            netnsProblem = "not in a private network namespace (run through in-private-netns.sh)";
    }
    void init() { window = new MainWindow; }
    void cleanup() { delete window; }
    // The first automatic search is due one interval after the check, and
    // unchecking stops the timer.
    void automaticSearchTimer()
    {
        auto *box = window->findChild<QCheckBox *>("automaticSearchBox");
        box->setChecked(true);
        // The newest timer of the window is the one the check created.
        auto *timer = window->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).last();
        QVERIFY(timer->isActive() && !timer->isSingleShot());
        QCOMPARE(timer->interval(), veltor::kAutoSearchIntervalMs);
        QVERIFY(timer->remainingTime() > veltor::kAutoSearchIntervalMs - 1000);
        box->setChecked(false);
        QVERIFY(!timer->isActive());
    }
    // A burst already waiting in the kernel is listed in slices with other events
    // in between (a window that listed it in one go would not answer input until
    // the last row), and every reply is listed in the end.
    void burstLongerThanOneSlice()
    {
        NEEDS_NETNS();
        constexpr int kCameras = 1500;
        for (int n = 0; n < kCameras; ++n) {
            const QString ip = QStringLiteral("10.%1.%2.7").arg(n / 250).arg(n % 250 + 1);
            QString low = QStringLiteral("%1").arg(n, 4, 16, QLatin1Char('0')).toUpper();
            send(n % 2 ? replybuilder::winbondAt(ip, "001A2B3C" + low.toLatin1())
                       : replybuilder::hdsCamera(ip, "00:1A:2B:3C:" + low.insert(2, ':')));
        }
        const QTableWidget *table = deviceTable(window, 1);
        QSet<int> countsSeen;
        QTimer tick;
        connect(&tick, &QTimer::timeout, [&] { countsSeen << table->rowCount(); });
        tick.start(0);
        QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), kCameras, 30000);
        countsSeen.remove(0);
        countsSeen.remove(kCameras);
        QVERIFY2(countsSeen.size() > 1, "no event ran while the burst was listed");
        verifyTablesEqual();
    }
    // The command line's search: replies that never stop must not keep it from
    // ending when its time is up.
    void floodDoesNotHoldFleetSearch()
    {
        NEEDS_NETNS();
        delete window; // its receiver would share the flood
        window = nullptr;
        const auto loopback = veltor::interfaceWithAddress(QHostAddress::LocalHost);
        QVERIFY(loopback);
        // Garbage (too short for a reply) to the binary search port until stopped.
        std::atomic<bool> stop{false};
        std::atomic<int> sent{0};
        std::unique_ptr<QThread> flooder(QThread::create([&] {
            QUdpSocket socket;
            while (!stop)
                sent +=
                    socket.writeDatagram(QByteArray(20 + sent % 60, '\x5a'),
                                         QHostAddress::LocalHost, veltor::kBinarySearchPort) > 0;
        }));
        flooder->start();
        QTRY_VERIFY(sent > 0);
        veltor::FleetSearchOptions options;
        options.interfaces = {*loopback};
        options.rounds = 2;
        options.waitMs = 200;
        const veltor::FleetSearchResult result = veltor::searchFleet(options);
        stop = true;
        flooder->wait();
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QVERIFY(result.cameras.isEmpty() && result.stats.malformed > 0);
        QCOMPARE(result.stats.replies, result.stats.malformed);
        // The directed broadcast, if the link has one, and 255.255.255.255, each round.
        QCOMPARE(result.stats.binarySent, loopback->broadcast.isNull() ? 2 : 4);
        QCOMPARE(result.stats.hdsSent, 2);
    }
    // Rows 0..4 are cameras; row 3 has no DHCP item, row 5 only empty texts.
    void clicks_data()
    {
        QTest::addColumn<QList<int>>("clickedRows");
        QTest::addColumn<QString>("paintOfRows"); // rows 0..5 after the clicks
        QTest::newRow("first click") << QList<int>{2} << "uuhuuu";
        QTest::newRow("row 4 after row 2") << QList<int>{2, 4} << "uunuhu";
        QTest::newRow("same row twice") << QList<int>{2, 2} << "uuhuuu";
        QTest::newRow("row without DHCP item") << QList<int>{3} << "uuuhuu";
        QTest::newRow("empty cell") << QList<int>{5} << "uuuuuu";
        QTest::newRow("empty cell after row 2") << QList<int>{2, 5} << "uunuuu";
        QTest::newRow("beyond the rows") << QList<int>{1, 9, 0} << "hnuuuu";
    }
    void clicks()
    {
        QFETCH(QList<int>, clickedRows);
        QFETCH(QString, paintOfRows);
        for (int n = 1; n <= 4; ++n) {
            deviceTable(window, n)->setRowCount(6);
            for (int row = 0; row < 6; ++row) {
                for (int column = 0; column < 10; ++column) {
                    if (row != 3 || column != 4)
                        deviceTable(window, n)->setItem(row, column,
                                                        new QTableWidgetItem(row == 5 ? "" : "x"));
                }
            }
        }
        for (int row : clickedRows)
            emit deviceTable(window, 1)->cellClicked(row, 0);
        // Per row, when all its cells in all four tables agree: "h" highlighted,
        // "n" normal, "u" unpainted.
        const QHash<QString, QString> names{
            {"", "u"}, {"#49b2eb#ffffff", "h"}, {"#ffffff#000000", "n"}};
        QString paint;
        for (int row = 0; row < 6; ++row) {
            QSet<QString> seen;
            for (int n = 1; n <= 4; ++n) {
                for (int column = 0; column < 10; ++column) {
                    if (const QTableWidgetItem *item = deviceTable(window, n)->item(row, column))
                        seen << item->data(Qt::BackgroundRole).toString() +
                                    item->data(Qt::ForegroundRole).toString();
                }
            }
            paint += seen.size() == 1 ? names.value(*seen.begin(), "?") : "mixed";
        }
        QCOMPARE(paint, paintOfRows);
    }

private:
    void send(const QByteArray &reply)
    {
        const bool binary = reply.startsWith("MO_I");
        sender.writeDatagram(reply, QHostAddress(binary ? "255.255.255.255" : veltor::kHdsGroup),
                             binary ? veltor::kBinarySearchPort : veltor::kHdsPort);
    }
    void verifyTablesEqual()
    {
        for (int n = 2; n <= 4; ++n)
            QCOMPARE(tableRows(deviceTable(window, n)), tableRows(deviceTable(window, 1)));
    }

    MainWindow *window = nullptr;
    QUdpSocket sender;
    QString netnsProblem; // why the network cases cannot run, if they cannot
};

QTEST_MAIN(tst_SearchWindow)
#include "tst_searchwindow.moc"
