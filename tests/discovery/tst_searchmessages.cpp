#include "discovery/listedcameras.h"
#include "discovery/searchmessages.h"
#include "netconf/validators.h"

#include <QtTest>

class tst_SearchMessages : public QObject
{
    Q_OBJECT

private slots:
    void binarySearchDatagram();
    void hdsSearchRequest();
    void insertionOrder_data();
    void insertionOrder();
};

void tst_SearchMessages::binarySearchDatagram()
{
    const QByteArray expected = QByteArray::fromHex("4D4F5F49"
                                                    "0000"
                                                    "000000000000000000"
                                                    "04000000"
                                                    "04000000"
                                                    "000000"
                                                    "01");
    QCOMPARE(expected.size(), 27);
    QCOMPARE(veltor::binarySearchDatagram(), expected);
}

void tst_SearchMessages::hdsSearchRequest()
{
    const QByteArray expected = "SEARCH * HDS/1.0\r\n"
                                "CSeq:0\r\n"
                                "Client-ID:TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr\r\n"
                                "Accept-Type:text/HDP\r\n"
                                "Content-Length:0\r\n\r\n";
    QCOMPARE(expected.size(), 112);
    QCOMPARE(veltor::hdsSearchRequest(), expected);
}

// Cameras listed one after another, in arrival order, each named by its IP
// (so an IP arriving twice is a duplicate); `expected` is the resulting table
// order. The key joins the address parts as decimal text, so it is
// deliberately not the numeric address order.
void tst_SearchMessages::insertionOrder_data()
{
    QTest::addColumn<QStringList>("arrivals");
    QTest::addColumn<QStringList>("expected");

    const QStringList small{"192.168.1.3", "192.168.1.20", "192.168.1.100"};
    QTest::newRow("ascending") << small << small;
    QTest::newRow("mixed") << QStringList{"192.168.1.20", "192.168.1.3", "192.168.1.100"} << small;
    QTest::newRow("descending") << QStringList{"192.168.1.100", "192.168.1.20", "192.168.1.3"}
                                << small;
    QTest::newRow("key not address") << QStringList{"192.168.1.99", "192.168.10.1"}
                                     << QStringList{"192.168.10.1", "192.168.1.99"};
    QTest::newRow("too large key sorts first")
        << QStringList{"10.0.0.1", "200.200.200.200", "1.1.1.1"}
        << QStringList{"200.200.200.200", "1.1.1.1", "10.0.0.1"};
    QTest::newRow("empty IP like 0") << QStringList{"1.1.1.1", ""} << QStringList{"", "1.1.1.1"};
    // Equal keys: the newcomer goes before the rows already there.
    QTest::newRow("equal keys") << QStringList{"1.11.1.1", "11.1.1.1", "1.1.11.1"}
                                << QStringList{"1.1.11.1", "11.1.1.1", "1.11.1.1"};
    QTest::newRow("duplicates dropped")
        << QStringList{"10.0.0.5", "10.0.0.1", "10.0.0.5", "10.0.0.9", "10.0.0.1", "10.0.0.3"}
        << QStringList{"10.0.0.1", "10.0.0.3", "10.0.0.5", "10.0.0.9"};
}

void tst_SearchMessages::insertionOrder()
{
    QFETCH(QStringList, arrivals);
    QFETCH(QStringList, expected);

    veltor::ListedCameras listed;
    QStringList table;
    for (const QString &ip : arrivals) {
        if (const std::optional<int> row = listed.admit(ip, veltor::ipToKey(ip)))
            table.insert(*row, ip);
    }
    QCOMPARE(table, expected);
    QCOMPARE(listed.size(), expected.size());
}

QTEST_APPLESS_MAIN(tst_SearchMessages)
#include "tst_searchmessages.moc"
