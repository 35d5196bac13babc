#include "app/mainwindow.h"

#include "loopcamera.h"
#include "testsupport.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

// The whole road in a private network: search, unlock on the Update tab,
// versions, and a 5 MiB upload the camera stores and a standard parser accepts.
class tst_UploadNetns : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        window = new MainWindow;
        child<QComboBox>("wifiComboBox")->setCurrentText(qEnvironmentVariable("VELTOR_TOOL_IP"));
        QMetaObject::invokeMethod(window, "on_searchButton_clicked");
        auto *table = child<QTableWidget>("tableWidgetSearch_3");
        for (const camsimfleet::Camera &camera : qAsConst(fleet))
            QVERIFY2(!table->findItems(camera.ip, Qt::MatchExactly).isEmpty(),
                     qPrintable(camera.ip));
    }
    void cleanupTestCase() { delete window; }
    void uploadToCamera_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("path");
        const auto row = [](const char *family, int kind, const char *name, const char *path) {
            QTest::addRow("%s %d", family, kind) << family << kind << name << path;
        };
        row("Winbond", 0, "fw 5.bin", "/upgrade_firmware.cgi");
        row("Winbond", 1, "ui.bin", "/upgrade_htmls.cgi");
        row("Haisi", 0, "a b.pkg", "/web/cgi-bin/hi3510/upgrade.cgi");
    }
    void uploadToCamera()
    {
        QFETCH(QString, family);
        QFETCH(int, kind);
        QFETCH(QString, name);
        const camsimfleet::Camera &camera = *std::find_if(
            fleet.cbegin(), fleet.cend(), [&](const auto &c) { return c.family == family; });
        const int before = uploads(camera).size();
        // The first visit asks for credentials, with the controls of every tab
        // locked (another camera may be unlocked already); later ones find it unlocked.
        QString title;
        bool lockedWhileAsked = false;
        if (before == 0) {
            testsupport::answerNextModal([&](QWidget *modal) {
                title = modal->windowTitle();
                lockedWhileAsked = !child<QWidget>("updateSubmit")->isEnabled() &&
                                   !child<QWidget>("dhcpsubmit")->isEnabled();
                // The dialog's own check is the auth tests' business: it answers as after one.
                QMetaObject::invokeMethod(
                    modal, "sendData",
                    Q_ARG(QStringList,
                          (QStringList{camera.user, camera.password,
                                       QString::number(camera.httpPort), camera.family})));
                static_cast<QDialog *>(modal)->reject();
            });
        }
        auto *table = child<QTableWidget>("tableWidgetSearch_3");
        emit table->cellClicked(table->findItems(camera.ip, Qt::MatchExactly).first()->row(), 1);
        if (before == 0) {
            QCOMPARE(title, QStringLiteral("Authentication required"));
            QVERIFY(lockedWhileAsked);
        }
        QVERIFY(child<QWidget>("updateSubmit")->isEnabled());
        child<QComboBox>("selectBox")->setCurrentIndex(kind);
        QCOMPARE(child<QLineEdit>("versionEdit")->text(),
                 kind == 1 ? camera.webVersion : camera.firmwareVersion);

        const QString sha = writeFile(dir.filePath(name), 5 << 20);
        QVERIFY(!sha.isEmpty());
        child<QLineEdit>("fileEdit")->setText(dir.filePath(name));
        testsupport::SeenBox box;
        testsupport::answerNextMessageBox(&box, QString(), 20000);
        child<QPushButton>("updateSubmit")->click();

        const QJsonObject record = upload(camera, before + 1);
        QTEST(record["path"].toString(), "path");
        compareStored(record, sha);
        QTRY_VERIFY(box.seen);
    }

private:
    template <class T> T *child(const char *name) { return window->findChild<T *>(name); }

    QVector<camsimfleet::Camera> fleet;
    QTemporaryDir dir;
    MainWindow *window = nullptr;
};

QTEST_MAIN(tst_UploadNetns)
#include "tst_upload_netns.moc"
