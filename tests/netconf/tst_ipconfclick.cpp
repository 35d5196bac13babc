#include "app/mainwindow.h"
#include "ipconfharness.h"
#include "loopbackhttpserver.h"
#include "replybuilder.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QUdpSocket>
#include <QtTest>

namespace {

const QHostAddress kLoopback(QHostAddress::LocalHost);

} // namespace

class IpConfClickTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void lockedCamera_data();
    void lockedCamera();
    void unlock();
    void shortHaisiReplyIsNotUsed();

private:
    // Delivers replies to the window the way a search round does: its own
    // search request comes back first and is element 0 of each list.
    void answer(const QByteArray &winbond, const QByteArray &hds);
    void clickRow(int row);
    QString text(const char *name) const;
    bool enabled(const char *name) const;

    MainWindow *window = nullptr;
    BoxRecorder *modals = nullptr;
    QUdpSocket *camera = nullptr;
};

void IpConfClickTest::initTestCase()
{
    QString why;
    if (!sendingIsHermetic(&why))
        QSKIP(qPrintable(why));
}

void IpConfClickTest::init()
{
    window = new MainWindow;
    modals = new BoxRecorder(window);
    camera = new QUdpSocket(window);
}

void IpConfClickTest::cleanup()
{
    delete window;
    window = nullptr;
}

void IpConfClickTest::answer(const QByteArray &winbond, const QByteArray &hds)
{
    auto *table = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_2"));
    const int before = table->rowCount();
    // Binary datagrams not to 127.0.0.1: the search sender is bound there on port
    // 10000 and, being bound more specifically, would take them from the receiver.
    const QHostAddress binaryTarget(QStringLiteral("127.0.0.2"));
    camera->writeDatagram(QByteArray(27, '\1'), binaryTarget, 10000);
    camera->writeDatagram("SEARCH * HDS/1.0\r\n\r\n", kLoopback, 8002);
    if (!winbond.isEmpty())
        camera->writeDatagram(winbond, binaryTarget, 10000);
    if (!hds.isEmpty())
        camera->writeDatagram(hds, kLoopback, 8002);
    const int expected = before + (winbond.isEmpty() ? 0 : 1) + (hds.isEmpty() ? 0 : 1);
    QTRY_COMPARE(table->rowCount(), expected);
}

void IpConfClickTest::clickRow(int row)
{
    QMetaObject::invokeMethod(window, "mycellClickedIpConf", Q_ARG(int, row), Q_ARG(int, 1));
}

QString IpConfClickTest::text(const char *name) const
{
    return window->findChild<QLineEdit *>(QLatin1String(name))->text();
}

bool IpConfClickTest::enabled(const char *name) const
{
    return window->findChild<QWidget *>(QLatin1String(name))->isEnabled();
}

void IpConfClickTest::lockedCamera_data()
{
    QTest::addColumn<QByteArray>("winbond");
    QTest::addColumn<QByteArray>("hds");
    QTest::addColumn<QStringList>("form"); // ip, subnet, gateway, dns, port
    QTest::addColumn<bool>("dhcp");

    replybuilder::WinbondFields w;
    w.ip = {127, 0, 0, 5};
    w.subnet = {255, 0, 0, 0};
    w.gateway = {127, 0, 0, 1};
    w.dns = {127, 0, 0, 53};
    w.port = 88;
    QTest::newRow("winbond") << replybuilder::winbondReply(w) << QByteArray()
                             << QStringList{"127.0.0.5", "255.0.0.0", "127.0.0.1", "127.0.0.53",
                                            "88"}
                             << false;
    QTest::newRow("haisi, dhcp on")
        << QByteArray()
        << replybuilder::hdsReply({"Device-Name=H", "IP=127.0.0.6", "MAC=00:11:22:33:44:55",
                                   "MASK=255.255.0.0", "Gateway=127.0.0.1", "Fdns=127.0.0.54",
                                   "Http-Port=8081", "Dhcp=1"})
        << QStringList{"127.0.0.6", "255.255.0.0", "127.0.0.1", "127.0.0.54", "8081"} << true;
}

void IpConfClickTest::lockedCamera()
{
    QFETCH(QByteArray, winbond);
    QFETCH(QByteArray, hds);
    QFETCH(QStringList, form);
    QFETCH(bool, dhcp);
    answer(winbond, hds);
    clickRow(0);

    // The dialog came and was cancelled: the form shows the camera but stays shut.
    QCOMPARE(modals->dialogTitles, QStringList{"Authentication required"});
    QCOMPARE((QStringList{text("ipaddress"), text("subnet"), text("gateway"), text("dns"),
                          text("httpport")}),
             form);
    QCOMPARE(text("ipFixEdit"), form.first());
    QCOMPARE(window->findChild<QCheckBox *>(QStringLiteral("dhcpCheckbox"))->isChecked(), dhcp);
    for (const char *name : {"dhcpCheckbox", "ipaddress", "subnet", "gateway", "dns", "httpport",
                             "dhcpsubmit", "updateSubmit", "viewFilesBtn"})
        QVERIFY2(!enabled(name), name);
}

void IpConfClickTest::unlock()
{
    LoopbackHttpServer cgi;
    QVERIFY(cgi.start());
    answer(QByteArray(),
           replybuilder::hdsReply({"IP=127.0.0.1", "MAC=00:11:22:33:44:66", "MASK=255.0.0.0",
                                   "Gateway=127.0.0.1", "Fdns=127.0.0.1",
                                   "Http-Port=" + QByteArray::number(cgi.port()), "Dhcp=1",
                                   "Device-ID=D"}));
    // Wrong first: the message, the dialog stays; then the right one.
    cgi.status = 401;
    modals->dialogActions << typeCredentials("admin", "wrong") << [&cgi](QWidget *dialog) {
        cgi.status = 200;
        typeCredentials("admin", "p&#w")(dialog);
    };
    clickRow(0);
    QCOMPARE(modals->texts, QStringList{"Your username or password is not correct!"});
    QCOMPARE(cgi.lastQuery.value("pwd"), QStringLiteral("p&#w"));
    for (const char *name : {"dhcpCheckbox", "httpport", "dhcpsubmit", "selectBox", "fileEdit",
                             "fileChoose", "updateSubmit", "viewFilesBtn"})
        QVERIFY2(enabled(name), name);
    // DHCP is on: the addresses stay shut.
    for (const char *name : {"ipaddress", "subnet", "gateway", "dns"})
        QVERIFY2(!enabled(name), name);

    // Unlocked now: no second dialog.
    clickRow(0);
    QTest::qWait(100);
    QCOMPARE(modals->dialogTitles.size(), 1);
    QVERIFY(enabled("dhcpsubmit"));
}

void IpConfClickTest::shortHaisiReplyIsNotUsed()
{
    // Six lines after the status line make seven parts: the search ignores
    // such a reply and so must the form, though it comes first and names the
    // clicked address.
    camera->writeDatagram("SEARCH * HDS/1.0\r\n\r\n", kLoopback, 8002);
    camera->writeDatagram("HDS/1.0 200 OK\r\nIP=127.0.0.7\r\nMASK=1.1.1.1\r\nGateway=1.1.1.1\r\n"
                          "Fdns=1.1.1.1\r\nHttp-Port=1",
                          kLoopback, 8002);
    answer(QByteArray(), replybuilder::hdsCamera("127.0.0.7", "00:11:22:33:44:77"));
    clickRow(0);
    QCOMPARE(text("subnet"), QStringLiteral("255.255.255.0"));
    QCOMPARE(text("httpport"), QStringLiteral("81"));
}

QTEST_MAIN(IpConfClickTest)
#include "tst_ipconfclick.moc"
