#include "auth/cameralogin.h"
#include "auth/usercheckdialog.h"
#include "loopbackhttpserver.h"
#include "testsupport.h"

#include <QLineEdit>
#include <QNetworkReply>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

namespace {

// Everything the code under test writes to the debug log.
QStringList logged;
QtMessageHandler previousHandler = nullptr;

void recordMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    logged << text;
    if (previousHandler)
        previousHandler(type, context, text);
}

} // namespace

class UserCheckDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { previousHandler = qInstallMessageHandler(recordMessage); }
    void cleanupTestCase() { qInstallMessageHandler(previousHandler); }
    void init() { logged.clear(); }
    void check_data();
    void check();
    void cancelSendsNothing();
    void largeAnswerIsNotHeld();
    void form();
    void newestLogin_data();
    void newestLogin();
};

void UserCheckDialogTest::check_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("localAddress");
    QTest::addColumn<int>("status"); // 0: the camera never answers
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("boxTitle"); // empty: no message box
    QTest::addColumn<QString>("boxText");
    QTest::addColumn<bool>("emitted"); // and closed
    QTest::addColumn<QByteArray>("path");

    const QString wrong = QStringLiteral("Your username or password is not correct!");
    QTest::newRow("winbond accepted")
        << "Winbond"
        << "127.0.0.1" << 200 << "admin"
        << "secret"
        << ""
        << "" << true << QByteArray("/check_user.cgi?user=admin&pwd=secret");
    QTest::newRow("haisi accepted")
        << "Haisi"
        << "127.0.0.1" << 200 << "admin"
        << "secret"
        << ""
        << "" << true << QByteArray("/param.cgi?cmd=getuserinfo&usr=admin&pwd=secret");
    QTest::newRow("empty credentials")
        << "Haisi"
        << "127.0.0.1" << 200 << ""
        << ""
        << ""
        << "" << true << QByteArray("/param.cgi?cmd=getuserinfo&usr=&pwd=");
    QTest::newRow("401 stays open")
        << "Winbond"
        << "127.0.0.1" << 401 << "admin"
        << "bad"
        << "Authentification" << wrong << false << QByteArray("/check_user.cgi?user=admin&pwd=bad");
    QTest::newRow("no answer is a timeout")
        << "Haisi"
        << "127.0.0.1" << 0 << "admin"
        << "x"
        << "Authentication"
        << "Timeout, username and password could not be checked" << true
        << QByteArray("/param.cgi?cmd=getuserinfo&usr=admin&pwd=x");
    QTest::newRow("other /24 is not asked")
        << "Winbond"
        << "127.0.1.1" << 200 << "admin"
        << "secret"
        << "Authentication"
        << "Username and password can not be checked, changes might be invalid" << true
        << QByteArray();
    QTest::newRow("unknown family on the same /24")
        << "Sony"
        << "127.0.0.9" << 200 << "admin"
        << "secret"
        << "Authentification" << wrong << false << QByteArray();
    QTest::newRow("special characters")
        << "Winbond"
        << "127.0.0.1" << 200 << "a&b=c" << QString::fromUtf8("p#w+ %2Fä&pwd=x") << ""
        << "" << true << QByteArray();
}

void UserCheckDialogTest::check()
{
    QFETCH(QString, family);
    QFETCH(QString, localAddress);
    QFETCH(int, status);
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QString, boxTitle);
    QFETCH(QString, boxText);
    QFETCH(bool, emitted);
    QFETCH(QByteArray, path);
    const bool sameNet = localAddress.startsWith(QLatin1String("127.0.0."));

    LoopbackHttpServer camera;
    QVERIFY(camera.start());
    camera.status = status;
    userCheckDialog dialog;
    dialog.setNetwork(localAddress);
    dialog.setData({QStringLiteral("127.0.0.1"), QString::number(camera.port()), family});
    dialog.findChild<QLineEdit *>(QStringLiteral("user"))->setText(user);
    dialog.findChild<QLineEdit *>(QStringLiteral("pass"))->setText(password);
    dialog.show();
    QSignalSpy sent(&dialog, &userCheckDialog::sendData);
    testsupport::SeenBox box;
    testsupport::answerNextMessageBox(&box, QString(), 15000);

    dialog.findChild<QPushButton *>(QStringLiteral("userok"))->click();
    QTRY_VERIFY_WITH_TIMEOUT(box.seen || !sent.isEmpty(), 15000);
    QTest::qWait(50); // a second, wrong box or emission would show up here

    QCOMPARE(box.title, boxTitle);
    QCOMPARE(box.text, boxText);
    QCOMPARE(sent.size(), emitted ? 1 : 0);
    if (emitted)
        QCOMPARE(sent.first().first().toStringList(),
                 QStringList({user, password, QString::number(camera.port()), family}));
    QCOMPARE(dialog.isVisible(), !emitted);
    // Whatever the characters, the camera decodes exactly what was typed.
    const bool asked = sameNet && (family == "Winbond" || family == "Haisi");
    QCOMPARE(camera.paths.size(), asked ? 1 : 0);
    if (!path.isEmpty())
        QCOMPARE(camera.paths.first(), path);
    if (asked) {
        const QString userKey =
            family == "Winbond" ? QStringLiteral("user") : QStringLiteral("usr");
        QCOMPARE(camera.lastQuery.value(userKey), user);
        QCOMPARE(camera.lastQuery.value(QStringLiteral("pwd")), password);
    }
    // Credentials never reach the debug log, whatever the outcome.
    for (const QString &line : qAsConst(logged)) {
        QVERIFY2(password.size() < 4 || !line.contains(password), qPrintable(line));
        QVERIFY2(user.size() < 4 || !line.contains(user), qPrintable(line));
    }
}

void UserCheckDialogTest::cancelSendsNothing()
{
    LoopbackHttpServer camera;
    QVERIFY(camera.start());
    userCheckDialog dialog;
    dialog.setNetwork(QStringLiteral("127.0.0.1"));
    dialog.setData({QStringLiteral("127.0.0.1"), QString::number(camera.port()), "Winbond"});
    dialog.show();
    QSignalSpy sent(&dialog, &userCheckDialog::sendData);
    dialog.findChild<QPushButton *>(QStringLiteral("usercancel"))->click();
    QTest::qWait(100);
    QVERIFY(!dialog.isVisible());
    QVERIFY(sent.isEmpty());
    QVERIFY(camera.paths.isEmpty());
}

// A camera may answer the check with any amount of body; it is never needed
// and must not pile up in memory while it arrives.
void UserCheckDialogTest::largeAnswerIsNotHeld()
{
    LoopbackHttpServer camera;
    QVERIFY(camera.start());
    camera.bodyBytes = 64 * 1024 * 1024;
    userCheckDialog dialog;
    dialog.setNetwork(QStringLiteral("127.0.0.1"));
    dialog.setData({QStringLiteral("127.0.0.1"), QString::number(camera.port()), "Haisi"});
    dialog.show();
    QSignalSpy sent(&dialog, &userCheckDialog::sendData);
    qint64 mostHeld = 0;
    QTimer watch;
    connect(&watch, &QTimer::timeout, [&] {
        for (const QNetworkReply *reply : dialog.findChildren<QNetworkReply *>())
            mostHeld = qMax(mostHeld, reply->bytesAvailable());
    });
    watch.start(1);
    dialog.findChild<QPushButton *>(QStringLiteral("userok"))->click();
    QTRY_COMPARE_WITH_TIMEOUT(sent.size(), 1, 30000);
    QVERIFY2(mostHeld < 4 * 1024 * 1024, qPrintable(QString::number(mostHeld)));
}

void UserCheckDialogTest::form()
{
    userCheckDialog dialog;
    const auto *pass = dialog.findChild<QLineEdit *>(QStringLiteral("pass"));
    QVERIFY(pass);
    QCOMPARE(pass->echoMode(), QLineEdit::Password);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Dialog"));
    QCOMPARE(dialog.styleSheet(), QStringLiteral("background-color:#dcdcdc"));
    for (const char *name :
         {"label", "username", "user", "password", "userok", "usercancel", "gridLayout",
          "horizontalLayout", "horizontalLayout_2", "horizontalLayout_3"})
        QVERIFY2(dialog.findChild<QObject *>(QLatin1String(name)), name);
}

QTEST_MAIN(UserCheckDialogTest)
// The multi-map of logins reads back newest first, under Qt 5 and Qt 6 alike.
void UserCheckDialogTest::newestLogin_data()
{
    QTest::addColumn<QList<QStringList>>("logins");
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QStringList>("expected");
    const QStringList first{"admin", "one", "80", "Haisi"};
    const QStringList second{"opr", "two", "81", "Haisi"};
    QTest::newRow("none") << QList<QStringList>() << "10.0.0.5" << QStringList{"", "", "", ""};
    QTest::newRow("one") << QList<QStringList>{first} << "10.0.0.5" << first;
    QTest::newRow("the second wins") << QList<QStringList>{first, second} << "10.0.0.5" << second;
    QTest::newRow("another camera's")
        << QList<QStringList>{first} << "10.0.0.6" << QStringList{"", "", "", ""};
}

void UserCheckDialogTest::newestLogin()
{
    QFETCH(QList<QStringList>, logins);
    QFETCH(QString, ip);
    QFETCH(QStringList, expected);
    QMultiMap<QString, QString> store;
    for (const QStringList &login : logins)
        veltor::storeLogin(&store, QStringLiteral("10.0.0.5"), login);
    const veltor::CameraLogin got = veltor::newestLogin(store, ip);
    QCOMPARE((QStringList{got.user, got.password, got.port, got.family}), expected);
}

#include "tst_usercheckdialog.moc"
