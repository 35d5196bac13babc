// The search as the window does it: replies over loopback broadcast and
// multicast inside a private network namespace (see in-private-netns.sh).
#include "app/mainwindow.h"
#include "discovery/hdsreply.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"
#include "replybuilder.h"

#include <QCheckBox>
#include <QNetworkInterface>
#include <QProgressBar>
#include <QSet>
#include <QTableWidget>
#include <QTimer>
#include <QUdpSocket>
#include <QtTest>

namespace {

QTableWidget *deviceTable(const MainWindow &window, int n)
{
    return window.findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_%1").arg(n));
}

QList<QStringList> tableRows(const QTableWidget *table)
{
    QList<QStringList> rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem *item = table->item(row, column);
            cells << (item ? item->text() : QStringLiteral("<no item>"));
        }
        rows << cells;
    }
    return rows;
}

QStringList ipColumn(const QTableWidget *table)
{
    QStringList ips;
    for (const QStringList &row : tableRows(table))
        ips << row.at(1);
    return ips;
}

int countDatagrams(QUdpSocket *socket, const QByteArray &wanted)
{
    int count = 0;
    while (socket->hasPendingDatagrams()) {
        QByteArray datagram(int(socket->pendingDatagramSize()), Qt::Uninitialized);
        socket->readDatagram(datagram.data(), datagram.size());
        count += datagram == wanted;
    }
    return count;
}

// "W <ip> <12 MAC characters>" or "H <ip> <MAC text>"; anything else is sent raw
// to the HDS group.
struct Reply
{
    bool binary;
    QByteArray datagram;
};

} // namespace

Q_DECLARE_METATYPE(Reply)

namespace {

Reply replyFor(const QString &description)
{
    const QStringList words = description.split(QLatin1Char(' '));
    if (words.size() == 3 && words.at(0) == QLatin1String("W")) {
        replybuilder::WinbondFields fields;
        fields.ip.clear();
        for (const QString &part : words.at(1).split(QLatin1Char('.')))
            fields.ip << part.toInt();
        fields.mac = words.at(2).toLatin1();
        return {true, replybuilder::winbondReply(fields)};
    }
    if (words.size() == 3 && words.at(0) == QLatin1String("H"))
        return {false, replybuilder::hdsCamera(words.at(1), words.at(2))};
    return {false, description.toUtf8()};
}

} // namespace

class tst_SearchWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void listing_data();
    void listing();
    void rowCells_data();
    void rowCells();
    void nestedSearch();
    void automaticSearchTimer();
    void burstLongerThanOneSlice();

private:
    void send(const Reply &reply);
    void verifyTablesEqual();

    MainWindow *window = nullptr;
    QUdpSocket sender;
    QString netnsProblem; // why the network cases cannot run, if they cannot
};

void tst_SearchWindow::initTestCase()
{
    netnsProblem = QString::fromLocal8Bit(qgetenv("VELTOR_NETNS_UNAVAILABLE"));
    // Broadcasts and the group must stay on this machine.
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces()) {
        if (netnsProblem.isEmpty() && !interface.flags().testFlag(QNetworkInterface::IsLoopBack))
            netnsProblem = "not in a private network namespace (run through in-private-netns.sh)";
    }
}

void tst_SearchWindow::init()
{
    window = new MainWindow;
}

void tst_SearchWindow::cleanup()
{
    delete window;
    window = nullptr;
}

void tst_SearchWindow::send(const Reply &reply)
{
    if (reply.binary)
        sender.writeDatagram(reply.datagram, QHostAddress::Broadcast, veltor::kBinarySearchPort);
    else
        sender.writeDatagram(reply.datagram, QHostAddress(QLatin1String(veltor::kHdsGroup)),
                             veltor::kHdsPort);
}

void tst_SearchWindow::verifyTablesEqual()
{
    const QList<QStringList> search = tableRows(deviceTable(*window, 1));
    for (int n = 2; n <= 4; ++n)
        QCOMPARE(tableRows(deviceTable(*window, n)), search);
}

void tst_SearchWindow::listing_data()
{
    QTest::addColumn<QStringList>("replies");
    QTest::addColumn<QStringList>("expectedIps");

    const QStringList sorted{"192.168.1.3", "192.168.1.20", "192.168.1.100"};
    QTest::newRow("binary any order")
        << QStringList{"W 192.168.1.20 AABBCCDDEE01", "W 192.168.1.100 AABBCCDDEE02",
                       "W 192.168.1.3 AABBCCDDEE03"}
        << sorted;
    QTest::newRow("hds any order")
        << QStringList{"H 192.168.1.100 m1", "H 192.168.1.3 m2", "H 192.168.1.20 m3"} << sorted;
    QTest::newRow("families mixed")
        << QStringList{"H 192.168.1.100 m1", "W 192.168.1.20 m2m2m2m2m2m2", "H 192.168.1.3 m3"}
        << sorted;
    QTest::newRow("key order, not address order")
        << QStringList{"W 192.168.1.99 AABBCCDDEE01", "H 192.168.10.1 m2"}
        << QStringList{"192.168.10.1", "192.168.1.99"};
    QTest::newRow("key too large goes first")
        << QStringList{"H 10.0.0.1 m1", "H 200.200.200.200 m2", "H 1.1.1.1 m3"}
        << QStringList{"200.200.200.200", "1.1.1.1", "10.0.0.1"};
    QTest::newRow("three rounds, listed once")
        << QStringList{"W 10.0.0.2 AABBCCDDEE01", "W 10.0.0.2 AABBCCDDEE01",
                       "W 10.0.0.2 AABBCCDDEE01", "H 10.0.0.3 m", "H 10.0.0.3 m"}
        << QStringList{"10.0.0.2", "10.0.0.3"};
    QTest::newRow("both protocols, binary first")
        << QStringList{"W 10.0.0.2 AABBCCDDEE01", "H 10.0.0.3 AA:BB:CC:DD:EE:01"}
        << QStringList{"10.0.0.2"};
    QTest::newRow("both protocols, hds first")
        << QStringList{"H 10.0.0.3 AA:BB:CC:DD:EE:01", "W 10.0.0.2 AABBCCDDEE01"}
        << QStringList{"10.0.0.3"};
    // A duplicate is judged by MAC only: a new address does not update the row.
    QTest::newRow("duplicate MAC, new IP")
        << QStringList{"H 10.0.0.3 m", "H 10.0.0.9 m"} << QStringList{"10.0.0.3"};
    QTest::newRow("own SEARCH looped back")
        << QStringList{QString::fromLatin1(veltor::hdsSearchRequest())} << QStringList();
    QTest::newRow("wrong status") << QStringList{"HDS/1.0 404 Not Found\r\nIP=1.2.3.4\r\nMAC=m"
                                                 "\r\n\r\n\r\n\r\n\r\n\r\n"}
                                  << QStringList();
}

void tst_SearchWindow::listing()
{
    if (!netnsProblem.isEmpty())
        QSKIP(qPrintable(netnsProblem));
    QFETCH(QStringList, replies);
    QFETCH(QStringList, expectedIps);

    for (const QString &description : replies) {
        send(replyFor(description));
        QTest::qWait(30); // the first of two replies with one MAC must win
    }
    QTRY_COMPARE(ipColumn(deviceTable(*window, 1)), expectedIps);
    QTest::qWait(200); // nothing late changes the list
    QCOMPARE(ipColumn(deviceTable(*window, 1)), expectedIps);
    verifyTablesEqual();
}

void tst_SearchWindow::rowCells_data()
{
    QTest::addColumn<Reply>("reply");
    QTest::addColumn<QStringList>("expected");

    replybuilder::WinbondFields fields;
    fields.dhcp = 2;
    QTest::newRow("binary, no DHCP flag")
        << Reply{true, replybuilder::winbondReply(fields)}
        << QStringList{"Cam1",          "192.168.1.20", "80",      "00:0A:1B:2C:3D:4E", "",
                       "255.255.255.0", "192.168.1.1",  "8.8.8.8", "1.2.3.4",           "5.6.7.8"};
    QTest::newRow("hds, unnamed")
        << Reply{false, replybuilder::hdsReply({"Device-Name=", "IP=10.1.1.5", "MAC=M", "Dhcp=1",
                                                "Http-Port=8080", "Web-Version=w"})}
        << QStringList{"Unnamed", "10.1.1.5", "8080", "M", "on", "", "", "", "", "w"};
}

void tst_SearchWindow::rowCells()
{
    if (!netnsProblem.isEmpty())
        QSKIP(qPrintable(netnsProblem));
    QFETCH(Reply, reply);
    QFETCH(QStringList, expected);

    send(reply);
    QTRY_COMPARE(deviceTable(*window, 1)->rowCount(), 1);
    QCOMPARE(tableRows(deviceTable(*window, 1)).first(), expected);
    verifyTablesEqual();
}

// A second search started inside a running one (as a timer tick or a click
// during its waits does) empties the tables again; replies keep landing in
// all four tables alike, and both searches send their three rounds.
void tst_SearchWindow::nestedSearch()
{
    if (!netnsProblem.isEmpty())
        QSKIP(qPrintable(netnsProblem));
    QUdpSocket binaryProbe;
    QUdpSocket hdsProbe;
    const auto shared = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;
    QVERIFY(binaryProbe.bind(QHostAddress::AnyIPv4, veltor::kBinarySearchPort, shared));
    QVERIFY(hdsProbe.bind(QHostAddress::AnyIPv4, veltor::kHdsPort, shared));
    QVERIFY(hdsProbe.joinMulticastGroup(QHostAddress(QLatin1String(veltor::kHdsGroup))));

    send(replyFor("W 10.0.0.50 AABBCCDDEE50"));
    QTRY_COMPARE(deviceTable(*window, 1)->rowCount(), 1);

    QProgressBar *progress = window->findChild<QProgressBar *>("progressBar");
    int rowsAfterClear = -1;
    int progressDuringSearch = 0;
    QStringList beforeNested;
    QTimer::singleShot(700, window, [&] {
        rowsAfterClear = deviceTable(*window, 4)->rowCount();
        progressDuringSearch = progress->value();
        send(replyFor("W 10.0.0.20 AABBCCDDEE20"));
        send(replyFor("H 10.0.0.3 m3"));
    });
    QTimer::singleShot(3000, window, [&] {
        beforeNested = ipColumn(deviceTable(*window, 3));
        QTimer::singleShot(700, window, [&] {
            send(replyFor("W 10.0.0.100 AABBCCDDEE01"));
            send(replyFor("H 10.0.0.3 m3"));
        });
        QMetaObject::invokeMethod(window, "on_searchButton_clicked");
    });
    QMetaObject::invokeMethod(window, "on_searchButton_clicked");

    QCOMPARE(rowsAfterClear, 0);
    QVERIFY(progressDuringSearch > 0);
    QCOMPARE(beforeNested, (QStringList{"10.0.0.3", "10.0.0.20"}));
    QCOMPARE(ipColumn(deviceTable(*window, 1)), (QStringList{"10.0.0.3", "10.0.0.100"}));
    verifyTablesEqual();
    QCOMPARE(progress->value(), 0);

    const int binarySearches = countDatagrams(&binaryProbe, veltor::binarySearchDatagram());
    const int hdsSearches = countDatagrams(&hdsProbe, veltor::hdsSearchRequest());
    QCOMPARE(binarySearches, 6);
    QCOMPARE(hdsSearches, 6);
}

// Needs no network: the first automatic search is due one interval after the
// check, and unchecking stops the timer.
void tst_SearchWindow::automaticSearchTimer()
{
    auto *box = window->findChild<QCheckBox *>("automaticSearchBox");
    QVERIFY(box);
    box->setChecked(true);
    // The newest timer of the window is the one the check created.
    const auto timers = window->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(!timers.isEmpty());
    QTimer *timer = timers.last();
    QVERIFY(timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QCOMPARE(timer->interval(), veltor::kAutoSearchIntervalMs);
    QVERIFY(timer->remainingTime() > veltor::kAutoSearchIntervalMs - 1000);
    box->setChecked(false);
    QVERIFY(!timer->isActive());
}

// A burst already waiting in the kernel is listed in slices with other events
// in between (a window that listed it in one go would not answer input until
// the last row), and every reply is listed in the end.
void tst_SearchWindow::burstLongerThanOneSlice()
{
    if (!netnsProblem.isEmpty())
        QSKIP(qPrintable(netnsProblem));
    constexpr int kCameras = 1500;
    for (int n = 0; n < kCameras; ++n) {
        const QString ip = QStringLiteral("10.%1.%2.7").arg(n / 250).arg(n % 250 + 1);
        QString low = QStringLiteral("%1%2")
                          .arg(n / 256, 2, 16, QLatin1Char('0'))
                          .arg(n % 256, 2, 16, QLatin1Char('0'))
                          .toUpper();
        const QString mac =
            n % 2 ? QString("001A2B3C" + low) : QString("00:1A:2B:3C:" + low.insert(2, ':'));
        send(replyFor(QStringLiteral("%1 %2 %3").arg(n % 2 ? "W" : "H", ip, mac)));
    }
    const QTableWidget *table = deviceTable(*window, 1);
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

QTEST_MAIN(tst_SearchWindow)
#include "tst_searchwindow.moc"
