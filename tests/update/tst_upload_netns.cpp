#include "app/mainwindow.h"

#include "camsimfleet.h"
#include "testsupport.h"

#include <QComboBox>
#include <QCryptographicHash>
#include <QDialog>
#include <QJsonArray>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTableWidget>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

// The whole road against simulated cameras in a private network: search,
// unlock on the Update tab, versions, and a 5 MiB upload that the camera
// stores and a standard multipart parser accepts.
class tst_UploadNetns : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void uploadToCamera_data();
    void uploadToCamera();
    void simulatorRejectsBadFraming_data();
    void simulatorRejectsBadFraming();

private:
    int rowOf(const QString &ip) const;
    void unlockOnUpdateTab(const camsimfleet::Camera &camera);
    static QJsonArray uploads(const camsimfleet::Camera &camera);
    QJsonObject lastUpload(const camsimfleet::Camera &camera, int count);

    QVector<camsimfleet::Camera> fleet;
    QTemporaryDir dir;
    MainWindow *window = nullptr;
};

void tst_UploadNetns::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(fleet);
    window = new MainWindow;
    auto *interfaces = window->findChild<QComboBox *>(QStringLiteral("wifiComboBox"));
    interfaces->setCurrentText(qEnvironmentVariable("VELTOR_TOOL_IP"));
    QMetaObject::invokeMethod(window, "on_searchButton_clicked");
    for (const camsimfleet::Camera &camera : qAsConst(fleet))
        QVERIFY2(rowOf(camera.ip) >= 0, qPrintable(camera.ip + " was not found"));
}

void tst_UploadNetns::cleanupTestCase()
{
    delete window;
}

int tst_UploadNetns::rowOf(const QString &ip) const
{
    const auto *table = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_3"));
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 1) && table->item(row, 1)->text() == ip)
            return row;
    }
    return -1;
}

// The dialog's own check is the auth tests' business: here it answers as
// after a successful check.
void tst_UploadNetns::unlockOnUpdateTab(const camsimfleet::Camera &camera)
{
    QString title;
    testsupport::answerNextModal([&title, camera](QWidget *modal) {
        title = modal->windowTitle();
        const QStringList credentials{camera.user, camera.password,
                                      QString::number(camera.httpPort), camera.family};
        QMetaObject::invokeMethod(modal, "sendData", Q_ARG(QStringList, credentials));
        static_cast<QDialog *>(modal)->reject();
    });
    auto *table = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_3"));
    emit table->cellClicked(rowOf(camera.ip), 1);
    QCOMPARE(title, QStringLiteral("Authentication required"));
}

QJsonArray tst_UploadNetns::uploads(const camsimfleet::Camera &camera)
{
    return camsimfleet::fetchJson(camera, QStringLiteral("/camsim/uploads"))
        .value(QStringLiteral("uploads"))
        .toArray();
}

// The camera's record of upload number `count`, once both verdicts are in.
QJsonObject tst_UploadNetns::lastUpload(const camsimfleet::Camera &camera, int count)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 30000) {
        const QJsonObject last = uploads(camera).at(count - 1).toObject();
        if (last.value(QStringLiteral("done")).toBool() &&
            last.value(QStringLiteral("standardCheck")) != QLatin1String("pending"))
            return last;
        QTest::qWait(100);
    }
    return QJsonObject();
}

void tst_UploadNetns::uploadToCamera_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    QTest::newRow("winbond firmware") << "Winbond" << 0 << "fw 5.bin"
                                      << "/upgrade_firmware.cgi";
    QTest::newRow("winbond webui") << "Winbond" << 1 << "ui.bin"
                                   << "/upgrade_htmls.cgi";
    QTest::newRow("haisi firmware") << "Haisi" << 0 << "a b.pkg"
                                    << "/web/cgi-bin/hi3510/upgrade.cgi";
}

void tst_UploadNetns::uploadToCamera()
{
    QFETCH(QString, family);
    QFETCH(int, kind);
    QFETCH(QString, name);
    const auto camera =
        std::find_if(fleet.cbegin(), fleet.cend(),
                     [&](const camsimfleet::Camera &c) { return c.family == family; });
    QVERIFY(camera != fleet.cend());
    const int before = uploads(*camera).size();
    // The first visit asks for credentials; later ones find the camera unlocked.
    if (before == 0)
        unlockOnUpdateTab(*camera);
    else
        emit window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_3"))
            ->cellClicked(rowOf(camera->ip), 1);
    auto *kinds = window->findChild<QComboBox *>(QStringLiteral("selectBox"));
    kinds->setCurrentIndex(kind);
    QCOMPARE(window->findChild<QLineEdit *>(QStringLiteral("versionEdit"))->text(),
             kind == 1 ? camera->webVersion : camera->firmwareVersion);

    QByteArray content(5 << 20, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(content.data()),
                                          content.size() / 4);
    QFile file(dir.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    window->findChild<QLineEdit *>(QStringLiteral("fileEdit"))->setText(file.fileName());
    testsupport::SeenBox box;
    testsupport::answerNextMessageBox(&box, QString(), 20000);
    window->findChild<QPushButton *>(QStringLiteral("updateSubmit"))->click();

    const QJsonObject upload = lastUpload(*camera, before + 1);
    QVERIFY2(!upload.isEmpty(), "the camera saw no finished upload");
    QTEST(upload.value(QStringLiteral("path")).toString(), "path");
    QCOMPARE(upload.value(QStringLiteral("error")).toString(), QString());
    QCOMPARE(
        upload.value(QStringLiteral("sha256")).toString(),
        QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex()));
    const QString standard = upload.value(QStringLiteral("standardCheck")).toString();
    if (standard.startsWith(QLatin1String("unavailable")))
        QSKIP(qPrintable("no standard multipart parser: " + standard));
    QCOMPARE(standard, QStringLiteral("passed"));
    QTRY_VERIFY(box.seen);
}

// The simulator must catch what a broken tool would send, or the test above proves nothing.
void tst_UploadNetns::simulatorRejectsBadFraming_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("extraAnnounced");
    QTest::addColumn<bool>("cameraAccepts");
    QTest::addColumn<bool>("standardAccepts");
    const QByteArray head =
        "------ipcamera\r\nContent-Disposition: form-data; name=\"file\"; "
        "filename=\"upgrade.bin\"\r\nContent-Type: application/x-macbinary\r\n\r\n";
    const QByteArray good = head + "firmware\r\n------ipcamera--\r\n";
    QTest::newRow("well framed") << good << 0 << true << true;
    QTest::newRow("trailer without dashes") << head + "firmware\r\n------ipcamera\r\n"
                                            << 0 << false << false;
    QTest::newRow("other file name")
        << QByteArray(good).replace("upgrade.bin", "other.bin") << 0 << false << true;
    QTest::newRow("body shorter than announced") << good << 10 << false << true;
}

void tst_UploadNetns::simulatorRejectsBadFraming()
{
    QFETCH(QByteArray, body);
    QFETCH(int, extraAnnounced);
    const auto camera =
        std::find_if(fleet.cbegin(), fleet.cend(), [](const camsimfleet::Camera &c) {
            return c.family == QLatin1String("Winbond");
        });
    QVERIFY(camera != fleet.cend());
    const int before = uploads(*camera).size();
    QTcpSocket socket;
    socket.connectToHost(camera->ip, quint16(camera->httpPort));
    QVERIFY(socket.waitForConnected(5000));
    socket.write("POST /upgrade_firmware.cgi?user=" + camera->user.toUtf8() +
                 "&pwd=" + camera->password.toUtf8() + " HTTP/1.1\r\nContent-Length: " +
                 QByteArray::number(body.size() + extraAnnounced) +
                 "\r\nContent-Type: multipart/form-data; boundary=----ipcamera\r\n\r\n" + body);
    QVERIFY(socket.waitForBytesWritten(5000));
    socket.disconnectFromHost();
    const QJsonObject upload = lastUpload(*camera, before + 1);
    QVERIFY(!upload.isEmpty());
    QTEST(upload.value(QStringLiteral("ok")).toBool(), "cameraAccepts");
    const QString standard = upload.value(QStringLiteral("standardCheck")).toString();
    if (standard.startsWith(QLatin1String("unavailable")))
        QSKIP(qPrintable("no standard multipart parser: " + standard));
    QTEST(standard == QLatin1String("passed"), "standardAccepts");
}

QTEST_MAIN(tst_UploadNetns)
#include "tst_upload_netns.moc"
