// The credential dialog against a simulated camera on a free loopback port.
#include "auth/cameralogin.h"
#include "auth/usercheckdialog.h"
#include "camsim/features.h"
#include "camsim/simcamera.h"
#include "testsupport.h"

#include <QLineEdit>
#include <QNetworkReply>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace veltor::camsim;

// Everything the code under test writes to the debug log.
static QStringList logged;
static QtMessageHandler previousHandler = nullptr;

class UserCheckDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        previousHandler = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &at, const QString &text) {
                logged << text;
                previousHandler(type, at, text);
            });
    }
    void check_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("mode"); // the camera's misbehaviour, or "cancel" pressed
        QTest::addColumn<QString>("login");
        QTest::addColumn<QString>("box");  // title|text, empty: no message box
        QTest::addColumn<bool>("emitted"); // and closed
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("local");
        const auto row = [](const char *tag, const char *family, const char *mode,
                            const QString &login, const char *box, bool emitted, const char *path,
                            const char *local = "127.0.0.1") {
            QTest::newRow(tag) << QString(family) << QString(mode) << login << QString(box)
                               << emitted << QString(path) << QString(local);
        };
        const char *wrong = "Authentification|Your username or password is not correct!";
        row("empty credentials", "Haisi", "", ":", "", true,
            "/param.cgi?cmd=getuserinfo&usr=&pwd=");
        // The camera decodes exactly what was typed, or it would refuse.
        row("special characters", "Winbond", "", QString::fromUtf8("a&b=c:p#w+ %2Fä&pwd=x"), "",
            true, "/check_user.cgi?user=a%26b%3Dc&pwd=p%23w%2B%20%252F%C3%A4%26pwd%3Dx");
        row("401 stays open", "Winbond", "401", "admin:bad", wrong, false,
            "/check_user.cgi?user=admin&pwd=bad");
        // Never needed, and must not pile up in memory while it arrives.
        row("100 MiB answer", "Haisi", "garbage", "admin:x", "", true,
            "/param.cgi?cmd=getuserinfo&usr=admin&pwd=x");
        row("other /24 is not asked", "Winbond", "", "admin:secret",
            "Authentication|Username and password can not be checked, changes might be invalid",
            true, "", "127.0.1.1");
        row("unknown family on the same /24", "Sony", "", "admin:secret", wrong, false, "",
            "127.0.0.9");
        row("cancel", "Winbond", "cancel", "admin:secret", "", false, "");
    }
    void check()
    {
        QFETCH(QString, family);
        QFETCH(QString, mode);
        QFETCH(QString, login);
        const QString user = login.section(':', 0, 0), password = login.section(':', 1);
        QFETCH(bool, emitted);
        logged.clear();
        qputenv("VELTOR_CAMSIM_HOSTILE", mode.toUtf8());
        CameraSettings settings;
        settings.family = family == "Haisi" ? Family::Haisi : Family::Winbond;
        settings.user = user;
        settings.password = password;
        SimCamera camera(settings);
        installFeatures(camera);
        QVERIFY(camera.http().listen(QHostAddress::LocalHost, 0));
        const QString port = QString::number(camera.http().serverPort());

        userCheckDialog dialog;
        QFETCH(QString, local);
        dialog.setNetwork(local);
        dialog.setData({QStringLiteral("127.0.0.1"), port, family});
        auto *pass = dialog.findChild<QLineEdit *>(QStringLiteral("pass"));
        QCOMPARE(pass->echoMode(), QLineEdit::Password);
        dialog.findChild<QLineEdit *>(QStringLiteral("user"))->setText(user);
        pass->setText(password);
        dialog.show();
        QSignalSpy sent(&dialog, &userCheckDialog::sendData);
        // Static: an earlier row's answerer, still waiting, may take this row's box.
        static testsupport::SeenBox box;
        box = {};
        testsupport::answerNextMessageBox(&box, QString(), 15000);
        qint64 mostHeld = 0;
        QTimer watch;
        connect(&watch, &QTimer::timeout, [&] {
            for (const QNetworkReply *reply : dialog.findChildren<QNetworkReply *>())
                mostHeld = qMax(mostHeld, reply->bytesAvailable());
        });
        watch.start(1);

        const bool cancel = mode == "cancel";
        dialog.findChild<QPushButton *>(cancel ? "usercancel" : "userok")->click();
        QTRY_VERIFY_WITH_TIMEOUT(cancel || box.seen || !sent.isEmpty(), 30000);
        QTest::qWait(50); // a second, wrong box or emission would show up here

        QTEST(box.seen ? box.title + '|' + box.text : QString(), "box");
        QCOMPARE(sent.size(), int(emitted));
        QCOMPARE(sent.value(0).value(0).toStringList(),
                 (emitted ? QStringList{user, password, port, family} : QStringList()));
        QCOMPARE(dialog.isVisible(), !emitted && !cancel);
        QStringList paths;
        for (const CameraLogEntry &entry : camera.logEntries())
            paths << entry.text.section(' ', 1);
        QFETCH(QString, path);
        QCOMPARE(paths, path.isEmpty() ? QStringList() : QStringList{path});
        QVERIFY2(mostHeld < 4 * 1024 * 1024, qPrintable(QString::number(mostHeld)));
        // Credentials never reach the debug log, whatever the outcome.
        for (const QString &line : qAsConst(logged)) {
            QVERIFY2(password.size() < 4 || !line.contains(password), qPrintable(line));
            QVERIFY2(user.size() < 4 || !line.contains(user), qPrintable(line));
        }
    }
    // The multi-map of logins reads back newest first, under Qt 5 and Qt 6 alike.
    void newestLogin()
    {
        QMultiMap<QString, QString> store;
        const auto newest = [&store](const char *ip) {
            const veltor::CameraLogin got = veltor::newestLogin(store, ip);
            return QStringList{got.user, got.password, got.port, got.family}.join(' ');
        };
        QCOMPARE(newest("10.0.0.5"), "   ");
        veltor::storeLogin(&store, "10.0.0.5", {"admin", "one", "80", "Haisi"});
        QCOMPARE(newest("10.0.0.5"), "admin one 80 Haisi");
        veltor::storeLogin(&store, "10.0.0.5", {"opr", "two", "81", "Haisi"});
        QCOMPARE(newest("10.0.0.5"), "opr two 81 Haisi");
        QCOMPARE(newest("10.0.0.6"), "   ");
    }
};

QTEST_MAIN(UserCheckDialogTest)
#include "tst_usercheckdialog.moc"
