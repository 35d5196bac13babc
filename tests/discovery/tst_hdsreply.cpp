#include "discovery/hdsreply.h"
#include "replybuilder.h"

#include <QRandomGenerator>
#include <QtTest>

using replybuilder::hdsReply;

namespace {

const QList<QByteArray> kFullLines{
    "Device-Name=Garden",      "Device-ID=HX-0042",  "IP=192.168.1.64",
    "MAC=00:11:22:33:44:55",   "MASK=255.255.255.0", "Gateway=192.168.1.1",
    "Fdns=192.168.1.2",        "Http-Port=8080",     "Dhcp=0",
    "Software-Version=V5.1.0", "Web-Version=W2.0"};

// Name, IP, port, MAC, DHCP, mask, gateway, DNS, firmware, WebUI.
const QStringList kFullColumns{"Garden", "192.168.1.64",  "8080",        "00:11:22:33:44:55",
                               "off",    "255.255.255.0", "192.168.1.1", "192.168.1.2",
                               "V5.1.0", "W2.0"};

QList<QByteArray> replaced(QList<QByteArray> lines, int index, const QByteArray &line)
{
    lines[index] = line;
    return lines;
}

} // namespace

class tst_HdsReply : public QObject
{
    Q_OBJECT

private slots:
    void accepted_data();
    void accepted();
    void rejected_data();
    void rejected();
    void randomAndTruncated();
};

void tst_HdsReply::accepted_data()
{
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expected");

    QTest::newRow("full name") << hdsReply(kFullLines) << 0 << "Garden";
    QTest::newRow("full port") << hdsReply(kFullLines) << 2 << "8080";
    QTest::newRow("full mac") << hdsReply(kFullLines) << 3 << "00:11:22:33:44:55";
    QTest::newRow("dhcp 1") << hdsReply(replaced(kFullLines, 8, "Dhcp=1")) << 4 << "on";
    QTest::newRow("dhcp other") << hdsReply(replaced(kFullLines, 8, "Dhcp=on")) << 4 << "";
    QTest::newRow("dhcp absent") << hdsReply(replaced(kFullLines, 8, "x")) << 4 << "";
    QTest::newRow("empty name") << hdsReply(replaced(kFullLines, 0, "Device-Name=")) << 0 << "";
    QTest::newRow("absent name") << hdsReply(replaced(kFullLines, 0, "Name=Garden")) << 0 << "";
    // Keys are not trimmed: "IP " is not "IP".
    QTest::newRow("blanks around =")
        << hdsReply(replaced(kFullLines, 2, "IP = 10.0.0.2")) << 1 << "";
    QTest::newRow("blank after =")
        << hdsReply(replaced(kFullLines, 2, "IP= 10.0.0.2")) << 1 << " 10.0.0.2";
    QTest::newRow("value cut at second =")
        << hdsReply(replaced(kFullLines, 9, "Software-Version=V1=beta")) << 8 << "V1";
    QTest::newRow("later key wins")
        << hdsReply(kFullLines + QList<QByteArray>{"IP=10.0.0.9"}) << 1 << "10.0.0.9";
    QTest::newRow("lowercase key ignored")
        << hdsReply(kFullLines + QList<QByteArray>{"ip=10.0.0.9"}) << 1 << "192.168.1.64";
    QTest::newRow("utf8 name") << hdsReply(replaced(kFullLines, 0, "Device-Name=Gärten")) << 0
                               << QString::fromUtf8("Gärten");
    QTest::newRow("bytes after zero ignored")
        << hdsReply(kFullLines) + QByteArray("\0IP=6.6.6.6\r\n", 13) << 1 << "192.168.1.64";
    // Exactly eight parts: status, six lines, the empty part after the last "\r\n".
    QTest::newRow("eight parts") << hdsReply({"IP=1.2.3.4", "a", "b", "c", "d", "e"}) << 1
                                 << "1.2.3.4";
    QTest::newRow("no final line end")
        << QByteArray("HDS/1.0 200 OK\r\na\r\nb\r\nc\r\nd\r\ne\r\nf\r\nMAC=m") << 3 << "m";
}

void tst_HdsReply::accepted()
{
    QFETCH(QByteArray, datagram);
    QFETCH(int, column);
    QFETCH(QString, expected);

    const std::optional<veltor::DeviceRecord> record = veltor::parseHdsReply(datagram);
    QVERIFY(record);
    QCOMPARE(record->column(column), expected);
}

void tst_HdsReply::rejected_data()
{
    QTest::addColumn<QByteArray>("datagram");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("six lines") << hdsReply({"IP=1.2.3.4", "a", "b", "c", "d"});
    QTest::newRow("seven parts no final end")
        << QByteArray("HDS/1.0 200 OK\r\na\r\nb\r\nc\r\nd\r\ne\r\nf");
    QTest::newRow("status lower case")
        << QByteArray(hdsReply(kFullLines)).replace("HDS/1.0 200 OK", "hds/1.0 200 ok");
    QTest::newRow("status not OK")
        << QByteArray(hdsReply(kFullLines)).replace("200 OK", "404 Not Found");
    QTest::newRow("status trailing blank")
        << QByteArray(hdsReply(kFullLines)).replace("200 OK", "200 OK ");
    QTest::newRow("own SEARCH looped back")
        << QByteArray("SEARCH * HDS/1.0\r\nCSeq:0\r\nClient-ID:TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr\r\n"
                      "Accept-Type:text/HDP\r\nContent-Length:0\r\n\r\n");
    QTest::newRow("zero cuts lines") << QByteArray("HDS/1.0 200 OK\r\na\r\n") + '\0' +
                                            QByteArray("b\r\nc\r\nd\r\ne\r\nf\r\ng\r\n");
    QTest::newRow("leading zero") << QByteArray(1, '\0') + hdsReply(kFullLines);
    QTest::newRow("bare LF") << QByteArray(hdsReply(kFullLines)).replace("\r\n", "\n");
}

void tst_HdsReply::rejected()
{
    QFETCH(QByteArray, datagram);
    QVERIFY(!veltor::parseHdsReply(datagram));
}

// Random bytes of every length up to 64 KiB never make a camera; every
// truncation of a real reply either has its eight parts or is rejected.
void tst_HdsReply::randomAndTruncated()
{
    QByteArray noise(64 * 1024, Qt::Uninitialized);
    QRandomGenerator generator(8002);
    generator.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
    for (int size = 0; size <= noise.size(); ++size) {
        if (veltor::parseHdsReply(QByteArray::fromRawData(noise.constData(), size)))
            QFAIL(qPrintable(QString("random size %1").arg(size)));
    }
    // The status line in front of zero-free noise: parsed, whatever the lines hold.
    QByteArray text = noise;
    text.replace('\0', '\n').prepend("HDS/1.0 200 OK\r\n");
    for (int size = 0; size <= text.size(); size += 997)
        veltor::parseHdsReply(text.left(size));

    const QByteArray full = hdsReply(kFullLines);
    for (int size = 0; size <= full.size(); ++size) {
        const QByteArray cut = full.left(size);
        const bool eightParts = cut.count("\r\n") >= 7;
        if (veltor::parseHdsReply(cut).has_value() != eightParts)
            QFAIL(qPrintable(QString("truncated at %1").arg(size)));
    }
}

QTEST_APPLESS_MAIN(tst_HdsReply)
#include "tst_hdsreply.moc"
