#include "discovery/storedcamera.h"

#include "../discovery/replybuilder.h"

#include <QtTest>

namespace {

// A binary search reply as the search stores it: lower-case hex text.
QString winbondReply(QVector<int> ip, QVector<int> firmware, QVector<int> webui)
{
    replybuilder::WinbondFields fields;
    fields.ip = ip;
    fields.firmware = firmware;
    fields.webui = webui;
    return QString::fromLatin1(replybuilder::winbondReply(fields).toHex());
}

const QVector<int> kIp5{192, 168, 1, 5}, kZeros{0, 0, 0, 0};

// Stands in for the window's decoder: bytes in decimal, joined by ".".
QString dotted(const QString &hex, const QString &)
{
    QStringList parts;
    for (int i = 0; i < hex.size(); i += 2)
        parts << QString::number(hex.mid(i, 2).toUInt(nullptr, 16));
    return parts.join(QLatin1Char('.'));
}

QString hdsReply(const QByteArray &ipLine, int extraLines = 0)
{
    QList<QByteArray> lines{
        "Device-Name=Cam", ipLine,   "MASK=255.255.255.0",    "Gateway=192.168.1.1", "Fdns=8.8.8.8",
        "Http-Port=81",    "Dhcp=0", "Software-Version=V5.1", "Web-Version=W2.0"};
    for (int i = 0; i < extraLines; ++i)
        lines << QStringLiteral("Extra%1=line%1").arg(i + 11).toLatin1();
    return QString::fromLatin1(replybuilder::hdsReply(lines));
}

} // namespace

// The chosen camera looked up among the raw replies of the last search.
class tst_StoredCamera : public QObject
{
    Q_OBJECT

private slots:
    void lookup_data()
    {
        QTest::addColumn<QStringList>("winbond");
        QTest::addColumn<QStringList>("hds");
        QTest::addColumn<QString>("expected"); // family|versions by kind 0 and 1|by line
        const auto row = [](const char *name, const QStringList &winbond, const QStringList &hds,
                            const char *expected) {
            QTest::newRow(name) << winbond << hds << expected;
        };
        const QString own = QStringLiteral("4d4f5f49");
        const QString w5 = winbondReply(kIp5, {1, 2, 3, 4}, {5, 6, 7, 8});
        const QString h5 = hdsReply("IP=192.168.1.5", 9);
        const char *none = "||||";
        const char *winbond = "Winbond|1.2.3.4|5.6.7.8|1.2.3.4|5.6.7.8";
        row("winbond", {own, w5}, {}, winbond);
        row("winbond newest reply wins",
            {own, w5, winbondReply({192, 168, 1, 6}, kZeros, kZeros),
             winbondReply(kIp5, {1, 2, 3, 9}, {5, 6, 7, 9})},
            {}, "Winbond|1.2.3.9|5.6.7.9|1.2.3.9|5.6.7.9");
        row("winbond first reply never read", {w5}, {}, none);
        row("27-byte reply carries no camera", {own, QString(54, '0')}, {}, none);
        // Lines 18 and 19 are the ninth and tenth extra lines, whatever their keys.
        row("haisi", {own}, {"", h5}, "Haisi|V5.1|W2.0|line18|line19");
        row("haisi without 19 lines", {}, {"", hdsReply("IP=192.168.1.5")}, "Haisi|V5.1|W2.0||");
        row("haisi first reply never read", {}, {h5}, none);
        row("haisi blank before = is another key", {}, {"", hdsReply("IP =192.168.1.5")}, none);
        row("haisi of 8 lines", {},
            {"", "HDS/1.0 200 OK\r\nIP=192.168.1.5\r\nA\r\nB\r\nC\r\nD\r\nE\r\nF"}, "Haisi||||");
        row("haisi of 7 lines ignored", {},
            {"",
             "HDS/1.0 200 OK\r\nIP=192.168.1.5\r\nA=1\r\nB=2\r\nSoftware-Version=V\r\nC=3\r\nD=4"},
            none);
        row("winbond before haisi", {own, w5}, {"", h5}, winbond);
    }
    void lookup()
    {
        QFETCH(QStringList, winbond);
        QFETCH(QStringList, hds);
        const veltor::StoredCamera camera =
            veltor::findStoredCamera(winbond, hds, "192.168.1.5", dotted);
        QTEST(
            QStringList({camera.family, veltor::versionForKind(camera, 0),
                         veltor::versionForKind(camera, 1), veltor::versionByLineForKind(camera, 0),
                         veltor::versionByLineForKind(camera, 1)})
                .join('|'),
            "expected");
    }
};

QTEST_APPLESS_MAIN(tst_StoredCamera)
#include "tst_storedcamera.moc"
