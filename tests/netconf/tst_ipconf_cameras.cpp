// A user unlocking simulated cameras of both families, changing their network settings, told
// whether each camera took them, and finding them with the next search (fleet in CMakeLists.txt).
#include "app/mainwindow.h"
#include "camsimfleet.h"
#include "netconf/configparse.h"
#include "testsupport.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkDatagram>
#include <QPushButton>
#include <QTableWidget>
#include <QUdpSocket>
#include <QtTest>

namespace {

const char *const kFormFields[] = {"ipaddress", "subnet", "gateway", "dns", "httpport"};

// Presses the default button of every message box, recording title and text. Other dialogs get
// the next of `logins` once OK is enabled (no check running), or are rejected when none is left.
struct BoxRecorder : QObject
{
    QStringList titles, texts, dialogTitles;
    QList<QStringList> logins; // user, password

    explicit BoxRecorder(QObject *parent) : QObject(parent) { startTimer(10); }
    void timerEvent(QTimerEvent *) override
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible() || modal->property("answered").toBool())
            return;
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            box->setProperty("answered", true);
            titles << box->windowTitle();
            texts << QString(box->text()).replace(QRegularExpression("\\b\\d+ s\\b"), "N s");
            box->defaultButton() ? box->defaultButton()->click() : box->buttons().first()->click();
            return;
        }
        auto *ok = modal->findChild<QPushButton *>(QStringLiteral("userok"));
        if (ok && !ok->isEnabled())
            return; // a check is running; its answer comes first
        if (!modal->property("seen").toBool())
            dialogTitles << modal->windowTitle();
        modal->setProperty("seen", true);
        if (!logins.isEmpty()) {
            const QStringList login = logins.takeFirst();
            modal->findChild<QLineEdit *>(QStringLiteral("user"))->setText(login.at(0));
            modal->findChild<QLineEdit *>(QStringLiteral("pass"))->setText(login.at(1));
            return ok->click();
        }
        modal->setProperty("answered", true);
        qobject_cast<QDialog *>(modal)->reject();
    }
};

} // namespace

class IpConfCamerasTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        QCOMPARE(fleet.size(), 4);
        qputenv("VELTOR_REBOOT_STEP_MS", "1");
    }
    void init()
    {
        window = new MainWindow;
        modals = new BoxRecorder(window);
        table = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_2"));
        window->findChild<QComboBox *>("wifiComboBox")->setCurrentText(getenv("VELTOR_TOOL_IP"));
    }
    void cleanup() { delete window; }

    void changeSettings_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QStringList>("typed");  // ip, mask, gateway, dns, port
        QTest::addColumn<QStringList>("listed"); // the same after the next search
        QTest::addColumn<QStringList>("boxes");
        QTest::addColumn<QString>("result");
        const auto row = [](const char *tag, int index, const QString &typed, const QString &listed,
                            const QStringList &boxes, const QString &result) {
            QTest::newRow(tag) << index << typed.split(' ') << listed.split(' ')
                               << boxes + QStringList{"IP Configure"}
                               << (result.isEmpty() ? "IP Config Successful! Please search again!"
                                                    : result);
        };
        // Cameras 0 and 1 take the change at once, web server included: the credentials can no
        // longer be asked for at the old address by then. A Winbond reply carries the port in
        // one byte: 81 survives the search.
        const QString winbond = QStringLiteral("10.78.0.21 255.255.0.0 10.78.0.1 10.78.0.53 81");
        row("winbond", 0, winbond, winbond, {}, "");
        // The gateway outside the new /24 is moved into it.
        row("haisi", 1, "10.78.0.22 255.255.0.0 10.78.9.1 10.78.0.54 8081",
            "10.78.0.22 255.255.0.0 10.78.0.1 10.78.0.54 8081", {"Camera rebooting"}, "");
        // Camera 3 accepts the credentials but ignores the change.
        row("haisi ignoring it", 3, "10.78.0.24 255.255.0.0 10.78.0.1 10.78.0.1 80",
            "10.78.0.14 255.255.0.0 10.78.0.1 10.78.0.1 80", {"Camera rebooting"},
            "The camera was not seen with the new settings after N s: ip 10.78.0.14 (wanted "
            "10.78.0.24)");
    }
    void changeSettings()
    {
        QFETCH(int, index);
        QFETCH(QStringList, typed);
        QFETCH(QStringList, listed);
        const camsimfleet::Camera camera = fleet.at(index);
        search();
        const int row = testsupport::rowOf(table, camera.ip);

        // Cancelled: the form stays shut.
        click(row);
        QCOMPARE(modals->dialogTitles, QStringList{"Authentication required"});
        expectEnabled(false, {"dhcpCheckbox", "ipaddress", "dns", "httpport", "dhcpsubmit",
                              "updateSubmit", "viewFilesBtn"});

        // A wrong password keeps the dialog; the right one unlocks all three tabs.
        modals->logins << QStringList{camera.user, "wrong"}
                       << QStringList{camera.user, camera.password};
        click(row);
        QCOMPARE(modals->texts, QStringList{"Your username or password is not correct!"});
        expectEnabled(true,
                      {"dhcpsubmit", "ipaddress", "httpport", "updateSubmit", "viewFilesBtn"});
        click(row); // unlocked now: no dialog
        QCOMPARE(modals->dialogTitles.size(), 2);

        modals->titles = modals->texts = QStringList();
        submit(false, typed);
        QFETCH(QStringList, boxes);
        QTRY_COMPARE_WITH_TIMEOUT(modals->titles, boxes, 40000);
        QTEST(modals->texts.last(), "result");
        // Our own configuration broadcast comes back to us; it must not list a camera.
        QCOMPARE(table->rowCount(), fleet.size());

        // A new search leaves nothing of the earlier list changeable.
        search();
        expectEnabled(false,
                      {"dhcpsubmit", "httpport", "fileChoose", "updateSubmit", "viewFilesBtn"});
        const int now = testsupport::rowOf(table, listed.at(0));
        QVERIFY2(now >= 0, "the camera is not listed where it should be");
        QCOMPARE(cell(now, 3) + ' ' + cell(now, 4), camera.mac + " off");
        QCOMPARE(listedForm(now), listed);
    }

    // Camera 2 never answers a credential check: the dialog lets the user on after the timeout,
    // but the change is not sent unchecked.
    void silentCamera()
    {
        const camsimfleet::Camera camera = fleet.at(2);
        search();
        // Whatever the order of the replies, each row fills the form with its camera.
        for (int row = 0; row < table->rowCount(); ++row) {
            click(row);
            QCOMPARE(form(), listedForm(row));
        }
        modals->logins << QStringList{camera.user, camera.password};
        click(testsupport::rowOf(table, camera.ip));
        QCOMPARE(modals->titles, QStringList{"Authentication"});
        QCOMPARE(modals->texts, QStringList{"Timeout, username and password could not be checked"});
        QVERIFY(window->findChild<QWidget *>("dhcpsubmit")->isEnabled());
        submit(false, {"10.78.0.23", "255.255.0.0", "10.78.0.1", "10.78.0.1", "80"});
        QTRY_COMPARE_WITH_TIMEOUT(modals->titles.size(), 2, 30000);
        QCOMPARE(modals->texts.last(), QStringLiteral("Your request has failed, retry please!"));
        QCOMPARE(camsimfleet::fetchJson(camera, "/camsim/status").value("ip").toString(),
                 camera.ip);
    }

    // A camera outside the PC's /24 cannot be asked: the change goes out at once, once the form
    // passes its checks. Nothing out there answers.
    void submitUnchecked_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("dhcp");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("sent"); // CSeq and body of each datagram
        const auto row = [](const char *tag, const char *family, const char *password, bool dhcp,
                            const char *port, const char *message, const QStringList &sent) {
            QTest::newRow(tag) << QString(family) << QString(password) << dhcp << QString(port)
                               << QString(message) << sent;
        };
        row("port invalid", "Haisi", "pw", false, "-1", "Port invalid", {});
        // Seven umlauts are 14 bytes.
        row("winbond password too long", "Winbond",
            "\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4", true, "80",
            "The password is too long for this camera (at most 12 bytes)", {});
        row("unknown family", "Sony", "pw", false, "80", "", {});
        row("haisi, dhcp on, no port", "Haisi", "pw", true, "", "", {"0 netconf set -dhcp on"});
    }
    void submitUnchecked()
    {
        QFETCH(QString, password);
        QFETCH(bool, dhcp);
        QFETCH(QString, port);
        QFETCH(QStringList, sent);
        const auto shared = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;
        QUdpSocket group, broadcast;
        QVERIFY(group.bind(QHostAddress::AnyIPv4, 8002, shared));
        QVERIFY(group.joinMulticastGroup(QHostAddress(QStringLiteral("239.255.250.150"))));
        QVERIFY(broadcast.bind(QHostAddress::AnyIPv4, 10000, shared));

        const QString ip = QStringLiteral("10.99.0.9");
        table->setRowCount(1);
        table->setItem(0, 1, new QTableWidgetItem(ip));
        table->setItem(0, 3, new QTableWidgetItem(QStringLiteral("00:0A:1B:2C:3D:4E")));
        window->findChild<QLineEdit *>(QStringLiteral("ipFixEdit"))->setText(ip);
        QFETCH(QString, family);
        QMetaObject::invokeMethod(
            window, "receiveCamConfIp",
            Q_ARG(QStringList, (QStringList{"ad:min", password, "80", family})));
        submit(dhcp, {"10.99.0.20", "255.255.255.0", "10.99.0.1", "8.8.8.8", port});

        QStringList seen;
        const auto collect = [&] {
            for (QUdpSocket *socket : {&group, &broadcast}) {
                while (socket->hasPendingDatagrams()) {
                    const QByteArray datagram = socket->receiveDatagram().data();
                    if (const auto cmd = veltor::parseHdsCmd(datagram))
                        seen << QString::number(cmd->cseq) + ' ' + QString::fromUtf8(cmd->body);
                    if (const auto config = veltor::parseWinbondConfig(datagram))
                        seen << config->mac + ' ' + config->settings.ip;
                }
            }
            return seen.size();
        };
        QTRY_COMPARE(collect(), sent.size());
        QTest::qWait(100); // one datagram too many would show up here
        collect();
        QCOMPARE(seen, sent);
        QFETCH(QString, message);
        QCOMPARE(modals->texts, message.isEmpty() ? QStringList() : QStringList{message});
    }

private:
    void search()
    {
        window->findChild<QPushButton *>(QStringLiteral("searchButton"))->click();
        QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), fleet.size(), 10000);
    }
    void click(int row)
    {
        QMetaObject::invokeMethod(window, "mycellClickedIpConf", Q_ARG(int, row), Q_ARG(int, 1));
    }
    void submit(bool dhcp, const QStringList &values)
    {
        window->findChild<QCheckBox *>(QStringLiteral("dhcpCheckbox"))->setChecked(dhcp);
        for (int i = 0; i < 5; ++i)
            window->findChild<QLineEdit *>(kFormFields[i])->setText(values.value(i));
        window->findChild<QPushButton *>(QStringLiteral("dhcpsubmit"))->click();
    }
    QStringList form() const
    {
        QStringList values;
        for (const char *name : kFormFields)
            values << window->findChild<QLineEdit *>(name)->text();
        return values;
    }
    // A row's ip, mask, gateway, dns and port, in the form's order.
    QStringList listedForm(int row) const
    {
        return {cell(row, 1), cell(row, 5), cell(row, 6), cell(row, 7), cell(row, 2)};
    }
    QString cell(int row, int column) const { return table->item(row, column)->text(); }
    void expectEnabled(bool enabled, std::initializer_list<const char *> names)
    {
        for (const char *name : names)
            QVERIFY2(window->findChild<QWidget *>(name)->isEnabled() == enabled, name);
    }

    QVector<camsimfleet::Camera> fleet;
    MainWindow *window = nullptr;
    BoxRecorder *modals = nullptr;
    QTableWidget *table = nullptr;
};

QTEST_MAIN(IpConfCamerasTest)
#include "tst_ipconf_cameras.moc"
