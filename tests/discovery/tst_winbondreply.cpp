#include "discovery/winbondreply.h"
#include "replybuilder.h"

#include <QRandomGenerator>
#include <QtTest>

using replybuilder::WinbondFields;

namespace {

QStringList columns(const veltor::DeviceRecord &record)
{
    QStringList cells;
    for (int c = 0; c < veltor::DeviceRecord::kColumnCount; ++c)
        cells << record.column(c);
    return cells;
}

// Name, IP, port, MAC, DHCP, mask, gateway, DNS, firmware, WebUI of the default reply.
QStringList defaultColumns()
{
    return {"Cam1",          "192.168.1.20", "80",      "00:0A:1B:2C:3D:4E", "off",
            "255.255.255.0", "192.168.1.1",  "8.8.8.8", "1.2.3.4",           "5.6.7.8"};
}

} // namespace

class tst_WinbondReply : public QObject
{
    Q_OBJECT

private slots:
    void dataHandle_data();
    void dataHandle();
    void reply_data();
    void reply();
    void shortReplies_data();
    void shortReplies();
    void randomDatagrams();
};

void tst_WinbondReply::dataHandle_data()
{
    QTest::addColumn<QString>("hex");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expected");

    QTest::newRow("mac") << "303030413142324333443445"
                         << "mac"
                         << "00:0A:1B:2C:3D:4E";
    QTest::newRow("mac odd pieces") << "3031323334"
                                    << "mac"
                                    << "01:23:4";
    QTest::newRow("mac hex upper") << "6162"
                                   << "mac"
                                   << "ab";
    QTest::newRow("mac hex lower") << "4A4b"
                                   << "mac"
                                   << "JK";
    QTest::newRow("name Cam1 and zeros") << QString("43616d31" + QString(36, '0')) << "name"
                                         << "Cam1";
    QTest::newRow("name zeros inside") << "41004200"
                                       << "name"
                                       << "AB";
    QTest::newRow("name all zeros") << QString(44, '0') << "name"
                                    << "";
    QTest::newRow("name trimmed") << "2020436120"
                                  << "name"
                                  << "Ca";
    QTest::newRow("name latin1") << "e9E9"
                                 << "name" << QString::fromLatin1("\xe9\xe9");
    // The trailing single "9" is a piece of its own: a tab, then trimmed away.
    QTest::newRow("name odd length") << "419"
                                     << "name"
                                     << "A";
    QTest::newRow("ip lower") << "c0a80114"
                              << "ip"
                              << "192.168.1.20";
    QTest::newRow("ip upper") << "C0A80114"
                              << "ip"
                              << "192.168.1.20";
    QTest::newRow("ip odd length") << "c0a8011"
                                   << "ip"
                                   << "192.168.1.1";
    QTest::newRow("subnet") << "ffffff00"
                            << "subnet"
                            << "255.255.255.0";
    QTest::newRow("gateway") << "c0a80101"
                             << "gateway"
                             << "192.168.1.1";
    QTest::newRow("dns") << "08080404"
                         << "dns"
                         << "8.8.4.4";
    QTest::newRow("frimware") << "0102030a"
                              << "frimware"
                              << "1.2.3.10";
    QTest::newRow("webui") << "0a0B0c0D"
                           << "webui"
                           << "10.11.12.13";
    QTest::newRow("port one byte") << "50"
                                   << "port"
                                   << "80";
    QTest::newRow("port two bytes") << "1f90"
                                    << "port"
                                    << "31.144";
    QTest::newRow("dhcp") << "01"
                          << "dhcp"
                          << "1";
    QTest::newRow("unknown key no separator") << "0102"
                                              << "other"
                                              << "12";
    QTest::newRow("empty") << ""
                           << "ip"
                           << "";
}

void tst_WinbondReply::dataHandle()
{
    QFETCH(QString, hex);
    QFETCH(QString, key);
    QFETCH(QString, expected);
    QCOMPARE(veltor::winbondDataHandle(hex, key), expected);
}

void tst_WinbondReply::reply_data()
{
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<QStringList>("expected");

    const QStringList base = defaultColumns();
    auto with = [&base](int column, const QString &text) {
        QStringList cells = base;
        cells[column] = text;
        return cells;
    };

    WinbondFields fields;
    QTest::newRow("Cam1") << replybuilder::winbondReply(fields) << base;

    fields = WinbondFields();
    fields.name = QByteArray(22, '\0');
    QTest::newRow("22 zeros") << replybuilder::winbondReply(fields) << with(0, "VELTOR VGA Series");
    fields.name = QByteArray(22, ' ');
    QTest::newRow("22 blanks") << replybuilder::winbondReply(fields) << with(0, "");
    fields.name = "ABCDEFGHIJKLMNOPQRSTUV";
    QTest::newRow("22 letters") << replybuilder::winbondReply(fields)
                                << with(0, "ABCDEFGHIJKLMNOPQRSTUV");

    fields = WinbondFields();
    fields.port = 0xff;
    QTest::newRow("port 255") << replybuilder::winbondReply(fields) << with(2, "255");
    fields = WinbondFields();
    fields.dhcp = 1;
    QTest::newRow("dhcp on") << replybuilder::winbondReply(fields) << with(4, "on");
    fields.dhcp = 2;
    QTest::newRow("dhcp 2 empty") << replybuilder::winbondReply(fields) << with(4, "");
    fields.dhcp = 0xff;
    QTest::newRow("dhcp 255 empty") << replybuilder::winbondReply(fields) << with(4, "");

    QTest::newRow("trailing bytes ignored")
        << replybuilder::winbondReply() + QByteArray(400, '\x07') << base;
    QByteArray header = replybuilder::winbondReply();
    header.replace(0, 23, QByteArray(23, '\xff'));
    QTest::newRow("header not read") << header << base;
}

void tst_WinbondReply::reply()
{
    QFETCH(QByteArray, datagram);
    QFETCH(QStringList, expected);

    const std::optional<veltor::DeviceRecord> record = veltor::parseWinbondReply(datagram);
    QVERIFY(record);
    QCOMPARE(columns(*record), expected);
    QVERIFY(record->deviceId.isEmpty());

    // Stored replies are decoded again later, possibly from upper-case hex.
    const QString hex = QString::fromLatin1(datagram.toHex());
    const auto fromLower = veltor::winbondRecordFromHex(hex);
    const auto fromUpper = veltor::winbondRecordFromHex(hex.toUpper());
    QVERIFY(fromLower && fromUpper);
    QCOMPARE(columns(*fromLower), expected);
    QCOMPARE(columns(*fromUpper), expected);
}

void tst_WinbondReply::shortReplies_data()
{
    QTest::addColumn<int>("size");
    for (int size : {0, 1, 26, 27, 28, 57, 86, 87})
        QTest::newRow(qPrintable(QString::number(size))) << size;
}

// A truncated reply lacks fields; it lists nothing rather than a half-empty row.
void tst_WinbondReply::shortReplies()
{
    QFETCH(int, size);
    const QByteArray datagram = replybuilder::winbondReply().left(size);
    QVERIFY(!veltor::parseWinbondReply(datagram));
    QVERIFY(!veltor::winbondRecordFromHex(QString::fromLatin1(datagram.toHex())));
}

// Every length up to 64 KiB: no crash, and a record exactly when the reply
// reaches the DHCP byte (the reply has no header check by design).
void tst_WinbondReply::randomDatagrams()
{
    QByteArray noise(64 * 1024, Qt::Uninitialized);
    QRandomGenerator generator(20261123);
    generator.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
    for (int size = 0; size <= noise.size(); ++size) {
        const QByteArray datagram = QByteArray::fromRawData(noise.constData(), size);
        const auto record = veltor::parseWinbondReply(datagram);
        if (record.has_value() != (size >= veltor::kWinbondReplyMinSize))
            QFAIL(qPrintable(QString("size %1").arg(size)));
    }
    // Odd-length and non-hex text from a corrupted store.
    for (const QString &hex : {QString(175, 'f'), QString(176, 'z'), QString(177, '-')})
        veltor::winbondRecordFromHex(hex);
}

QTEST_APPLESS_MAIN(tst_WinbondReply)
#include "tst_winbondreply.moc"
