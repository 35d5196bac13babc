#include "discovery/storedcamera.h"

#include <QtTest>

class tst_StoredCamera : public QObject
{
    Q_OBJECT

private slots:
    void lookup_data();
    void lookup();
    void winbondFields();
};

namespace {

// A binary search reply as the search stores it: lower-case hex text.
QString winbondReply(const QByteArray &ip, const QByteArray &firmware, const QByteArray &webui)
{
    QByteArray bytes(88, '\0');
    bytes.replace(57, 4, ip);
    bytes.replace(61, 4, QByteArray("\xff\xff\xff\x00", 4));
    bytes.replace(65, 4, QByteArray("\xc0\xa8\x01\x01", 4));
    bytes.replace(69, 4, QByteArray("\x08\x08\x08\x08", 4));
    bytes.replace(77, 4, firmware);
    bytes.replace(81, 4, webui);
    bytes[86] = char(0x50);
    bytes[87] = char(1);
    return QString::fromLatin1(bytes.toHex());
}

const QByteArray kIp5("\xc0\xa8\x01\x05", 4);
// A literal "\0\0\0\0" is an empty array, which would make the reply short.
const QByteArray kZeros(4, '\0');
const QByteArray kIp6("\xc0\xa8\x01\x06", 4);

// Stands in for the window's decoder: bytes in decimal, joined by ".".
QString dotted(const QString &hex, const QString &)
{
    QStringList parts;
    for (int i = 0; i < hex.size(); i += 2)
        parts << QString::number(hex.mid(i, 2).toUInt(nullptr, 16));
    return parts.join(QLatin1Char('.'));
}

QString hdsReply(const QString &ipLine, int extraLines = 0)
{
    QStringList lines{QStringLiteral("HDS/1.0 200 OK"),
                      QStringLiteral("Device-Name=Cam"),
                      ipLine,
                      QStringLiteral("MASK=255.255.255.0"),
                      QStringLiteral("Gateway=192.168.1.1"),
                      QStringLiteral("Fdns=8.8.8.8"),
                      QStringLiteral("Http-Port=81"),
                      QStringLiteral("Dhcp=0"),
                      QStringLiteral("Software-Version=V5.1"),
                      QStringLiteral("Web-Version=W2.0")};
    for (int i = 0; i < extraLines; ++i)
        lines << QStringLiteral("Extra%1=line%1").arg(i + 11);
    return lines.join(QLatin1String("\r\n")) + QLatin1String("\r\n");
}

} // namespace

void tst_StoredCamera::lookup_data()
{
    QTest::addColumn<QStringList>("winbond");
    QTest::addColumn<QStringList>("hds");
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("webui");
    QTest::addColumn<QString>("firmwareByLine");
    QTest::addColumn<QString>("webuiByLine");

    const QString own = QStringLiteral("4d4f5f49");
    const QString w5 = winbondReply(kIp5, "\x01\x02\x03\x04", "\x05\x06\x07\x08");
    const QString w5new = winbondReply(kIp5, "\x01\x02\x03\x09", "\x05\x06\x07\x09");
    const QString h5 = hdsReply(QStringLiteral("IP=192.168.1.5"), 9);
    QTest::newRow("winbond") << QStringList{own, w5} << QStringList() << "Winbond"
                             << "1.2.3.4"
                             << "5.6.7.8"
                             << "1.2.3.4"
                             << "5.6.7.8";
    QTest::newRow("winbond newest reply wins")
        << QStringList{own, w5, winbondReply(kIp6, kZeros, kZeros), w5new} << QStringList()
        << "Winbond"
        << "1.2.3.9"
        << "5.6.7.9"
        << "1.2.3.9"
        << "5.6.7.9";
    QTest::newRow("winbond first reply never read") << QStringList{w5} << QStringList() << ""
                                                    << ""
                                                    << ""
                                                    << ""
                                                    << "";
    QTest::newRow("27-byte reply carries no camera")
        << QStringList{own, QString(54, QLatin1Char('0'))} << QStringList() << ""
        << ""
        << ""
        << ""
        << "";
    // Lines 18 and 19 are the ninth and tenth extra lines, whatever their keys.
    QTest::newRow("haisi") << QStringList{own} << QStringList{QString(), h5} << "Haisi"
                           << "V5.1"
                           << "W2.0"
                           << "line18"
                           << "line19";
    QTest::newRow("haisi without 19 lines")
        << QStringList() << QStringList{QString(), hdsReply(QStringLiteral("IP=192.168.1.5"))}
        << "Haisi"
        << "V5.1"
        << "W2.0"
        << ""
        << "";
    QTest::newRow("haisi first reply never read") << QStringList() << QStringList{h5} << ""
                                                  << ""
                                                  << ""
                                                  << ""
                                                  << "";
    QTest::newRow("haisi blank before = is another key")
        << QStringList() << QStringList{QString(), hdsReply(QStringLiteral("IP =192.168.1.5"))}
        << ""
        << ""
        << ""
        << ""
        << "";
    QTest::newRow("haisi of 7 lines ignored")
        << QStringList()
        << QStringList{QString(),
                       QStringLiteral("HDS/1.0 200 OK\r\nIP=192.168.1.5\r\nA=1\r\nB=2\r\n"
                                      "Software-Version=V\r\nC=3\r\nD=4")}
        << ""
        << ""
        << ""
        << ""
        << "";
    QTest::newRow("winbond before haisi")
        << QStringList{own, w5} << QStringList{QString(), h5} << "Winbond"
        << "1.2.3.4"
        << "5.6.7.8"
        << "1.2.3.4"
        << "5.6.7.8";
}

void tst_StoredCamera::lookup()
{
    QFETCH(QStringList, winbond);
    QFETCH(QStringList, hds);
    const veltor::StoredCamera camera =
        veltor::findStoredCamera(winbond, hds, QStringLiteral("192.168.1.5"), dotted);
    QTEST(camera.family, "family");
    QTEST(veltor::versionForKind(camera, 0), "firmware");
    QTEST(veltor::versionForKind(camera, 1), "webui");
    QTEST(veltor::versionByLineForKind(camera, 0), "firmwareByLine");
    QTEST(veltor::versionByLineForKind(camera, 1), "webuiByLine");
}

void tst_StoredCamera::winbondFields()
{
    const QStringList replies{QString(), winbondReply(kIp5, kZeros, kZeros)};
    QStringList keys;
    const veltor::StoredCamera camera =
        veltor::findStoredCamera(replies, {}, QStringLiteral("192.168.1.5"),
                                 [&keys](const QString &hex, const QString &key) {
                                     keys << key;
                                     return dotted(hex, key);
                                 });
    QCOMPARE(camera.subnet, QStringLiteral("255.255.255.0"));
    QCOMPARE(camera.gateway, QStringLiteral("192.168.1.1"));
    QCOMPARE(camera.dns, QStringLiteral("8.8.8.8"));
    QCOMPARE(camera.port, QStringLiteral("80"));
    QCOMPARE(camera.dhcp, QStringLiteral("1"));
    QVERIFY(keys.contains(QStringLiteral("frimware")));
}

QTEST_APPLESS_MAIN(tst_StoredCamera)
#include "tst_storedcamera.moc"
