// Both reply parsers as tables of datagrams, and the window's row order.
#include "discovery/hdsreply.h"
#include "discovery/listedcameras.h"
#include "discovery/searchmessages.h"
#include "discovery/winbondreply.h"
#include "netconf/validators.h"
#include "replybuilder.h"

#include <QtTest>

using replybuilder::hdsReply;

namespace {

const QString kRejected = QStringLiteral("<rejected>");
const QString kAll = QStringLiteral("Cam1|192.168.1.20|80|00:0A:1B:2C:3D:4E|off|255.255.255.0|"
                                    "192.168.1.1|8.8.8.8|1.2.3.4|5.6.7.8");
const QList<QByteArray> kLines{
    "Device-Name=Garden",      "Device-ID=HX-0042",  "IP=192.168.1.64",
    "MAC=00:11:22:33:44:55",   "MASK=255.255.255.0", "Gateway=192.168.1.1",
    "Fdns=192.168.1.2",        "Http-Port=8080",     "Dhcp=0",
    "Software-Version=V5.1.0", "Web-Version=W2.0"};

QString cells(const std::optional<veltor::DeviceRecord> &record, int column)
{
    if (!record)
        return kRejected;
    QStringList all;
    for (int c = 0; c < veltor::DeviceRecord::kColumnCount; ++c)
        all << record->column(c);
    return column < 0 ? all.join('|') : all.at(column);
}

QByteArray winbond(void (*change)(replybuilder::WinbondFields &))
{
    replybuilder::WinbondFields fields;
    change(fields);
    return replybuilder::winbondReply(fields);
}

// kLines with line `index` replaced, or `line` added at the end.
QByteArray hds(int index, const QByteArray &line)
{
    QList<QByteArray> lines = kLines;
    if (index >= lines.size())
        lines << QByteArray();
    lines[index] = line;
    return hdsReply(lines);
}

QByteArray withStatus(const QByteArray &status)
{
    return hdsReply(kLines).replace("HDS/1.0 200 OK", status);
}

// Names start with the family: "W" a Winbond datagram, "H" an HDS one.
void row(const char *name, const QByteArray &datagram, int column, const QString &cells)
{
    QTest::newRow(name) << datagram << column << cells;
}

} // namespace

class tst_Replies : public QObject
{
    Q_OBJECT

private slots:
    // `column` -1 compares all ten columns joined by "|".
    void replies_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("expected");
        const QByteArray full = replybuilder::winbondReply();
        row("W Cam1", full, -1, kAll);
        row("W 22 zeros", winbond([](auto &f) { f.name = QByteArray(22, '\0'); }), 0,
            "VELTOR VGA Series");
        row("W 22 blanks", winbond([](auto &f) { f.name = QByteArray(22, ' '); }), 0, "");
        row("W 22 letters", winbond([](auto &f) { f.name = "ABCDEFGHIJKLMNOPQRSTUV"; }), 0,
            "ABCDEFGHIJKLMNOPQRSTUV");
        row("W latin1 name", winbond([](auto &f) { f.name = "\xe9\xe9"; }), 0, "\u00e9\u00e9");
        row("W port 255", winbond([](auto &f) { f.port = 0xff; }), 2, "255");
        row("W dhcp on", winbond([](auto &f) { f.dhcp = 1; }), 4, "on");
        row("W dhcp 2", winbond([](auto &f) { f.dhcp = 2; }), 4, "");
        row("W trailing bytes", full + QByteArray(400, '\x07'), -1, kAll);
        row("W header not read", QByteArray(full).replace(0, 23, QByteArray(23, '\xff')), -1, kAll);
        for (int size : {0, 1, 27, 28, 57, 86, 87})
            row(qPrintable(QString("W %1 bytes").arg(size)), full.left(size), 0, kRejected);

        row("H full", hdsReply(kLines), -1,
            "Garden|192.168.1.64|8080|00:11:22:33:44:55|off|255.255.255.0|192.168.1.1|192.168.1.2|"
            "V5.1.0|W2.0");
        row("H dhcp 1", hds(8, "Dhcp=1"), 4, "on");
        row("H dhcp other", hds(8, "Dhcp=on"), 4, "");
        row("H absent name", hds(0, "Name=Garden"), 0, "");
        row("H key not trimmed", hds(2, "IP = 10.0.0.2"), 1, "");
        row("H value not trimmed", hds(2, "IP= 10.0.0.2"), 1, " 10.0.0.2");
        row("H value cut at second =", hds(9, "Software-Version=V1=beta"), 8, "V1");
        row("H later key wins", hds(11, "IP=10.0.0.9"), 1, "10.0.0.9");
        row("H lowercase key", hds(11, "ip=10.0.0.9"), 1, "192.168.1.64");
        row("H utf8", hds(0, "Device-Name=Gärten"), 0, QString::fromUtf8("Gärten"));
        row("H after zero", hdsReply(kLines) + QByteArray("\0IP=6\r\n", 7), 1, "192.168.1.64");
        row("H eight parts", hdsReply({"IP=1.2.3.4", "a", "b", "c", "d", "e"}), 1, "1.2.3.4");
        row("H no final end", "HDS/1.0 200 OK\r\na\r\nb\r\nc\r\nd\r\ne\r\nf\r\nMAC=m", 3, "m");
        row("H empty", QByteArray(), 0, kRejected);
        row("H seven parts", hdsReply({"IP=1.2.3.4", "a", "b", "c", "d"}), 0, kRejected);
        row("H lower case status", withStatus("hds/1.0 200 ok"), 0, kRejected);
        row("H 404", withStatus("HDS/1.0 404 Not Found"), 0, kRejected);
        row("H status blank", withStatus("HDS/1.0 200 OK "), 0, kRejected);
        row("H own SEARCH", veltor::hdsSearchRequest(), 0, kRejected);
        row("H zero cuts lines",
            QByteArray("HDS/1.0 200 OK\r\na\r\n") + '\0' + "b\r\nc\r\nd\r\ne\r\nf\r\ng\r\n", 0,
            kRejected);
        row("H leading zero", QByteArray(1, '\0') + hdsReply(kLines), 0, kRejected);
        row("H bare LF", hdsReply(kLines).replace("\r\n", "\n"), 0, kRejected);
    }
    void replies()
    {
        QFETCH(QByteArray, datagram);
        QFETCH(int, column);
        QFETCH(QString, expected);
        if (QTest::currentDataTag()[0] == 'H') {
            QCOMPARE(cells(veltor::parseHdsReply(datagram), column), expected);
            return;
        }
        QCOMPARE(cells(veltor::parseWinbondReply(datagram), column), expected);
        // Stored replies are decoded again later, possibly from upper-case hex.
        QCOMPARE(cells(veltor::winbondRecordFromHex(datagram.toHex().toUpper()), column), expected);
    }
    // Cameras by IP in arrival order (an IP arriving twice is a duplicate) and
    // the table order they end in ("-" an empty IP). The key joins the address
    // parts as decimal text, so it is deliberately not the numeric address order;
    // among equal keys the newcomer goes first.
    void insertionOrder_data()
    {
        QTest::addColumn<QStringList>("arrivals");
        QTest::addColumn<QStringList>("expected");
        const char *const table =
            R"(192.168.1.20 192.168.1.3 192.168.1.100>192.168.1.3 192.168.1.20 192.168.1.100
192.168.1.99 192.168.10.1>192.168.10.1 192.168.1.99
10.0.0.1 200.200.200.200 1.1.1.1>200.200.200.200 1.1.1.1 10.0.0.1
1.1.1.1 ->- 1.1.1.1
1.11.1.1 11.1.1.1 1.1.11.1>1.1.11.1 11.1.1.1 1.11.1.1
10.0.0.5 10.0.0.1 10.0.0.5 10.0.0.9 10.0.0.1 10.0.0.3>10.0.0.1 10.0.0.3 10.0.0.5 10.0.0.9)";
        for (const QString &line : QString(table).replace('-', QString()).split('\n')) {
            const QStringList sides = line.split('>');
            QTest::newRow(qPrintable(line)) << sides[0].split(' ') << sides[1].split(' ');
        }
    }
    void insertionOrder()
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
};

QTEST_APPLESS_MAIN(tst_Replies)
#include "tst_replies.moc"
