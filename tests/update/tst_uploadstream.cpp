// Firmware uploads to a loopback camera from the Update tab and from UploadJob:
// the camera's framing check and the SHA-256 of what it stored judge them.
#include "app/mainwindow.h"
#include "update/uploadjob.h"

#include "loopcamera.h"
#include "testsupport.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

using namespace veltor;
using namespace veltor::camsim;

namespace {

const QString kPassword = QStringLiteral("se&cret");
const QString kRebooting = QStringLiteral(
    "Camera rebooting!: The camera is rebooting now! Please wait a few minutes and search again!");

// UploadJob as the command line runs it: empty on success, else the reason.
QString runJob(const QString &family, const QString &port, const QString &password,
               const QString &path, int kind = 0)
{
    UploadJob job(UploadTarget{family, kind, "127.0.0.1", port, "admin", password, {}, 0}, path);
    QSignalSpy finished(&job, &UploadJob::finished);
    job.start();
    if (finished.isEmpty() && !finished.wait(30000))
        return QStringLiteral("no end");
    return finished.first().at(0).toBool() ? QString() : finished.first().at(1).toString();
}

} // namespace

class tst_UploadStream : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        qputenv("VELTOR_NETNS_WORK", dir.path().toUtf8()); // where the camera keeps uploads
        window = new MainWindow;
    }
    void cleanup() { delete window; }
    void toCamera_data()
    {
        QTest::addColumn<int>("family");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("password");
        QTest::newRow("winbond, empty file")
            << int(Family::Winbond) << "empty.bin" << 0 << kPassword;
        QTest::newRow("winbond, odd tail")
            << int(Family::Winbond) << "fw.bin" << 3 * 4096 + 17 << kPassword;
        // A head longer than one piece must still see the whole file before the trailer.
        QTest::newRow("haisi, head longer than a piece")
            << int(Family::Haisi) << "a b.pkg" << 8000 << QString(8000, QLatin1Char('x'));
    }
    // Through the window, and through UploadJob as the command line streams it.
    void toCamera()
    {
        QFETCH(int, family);
        QFETCH(QString, name);
        QFETCH(int, size);
        QFETCH(QString, password);
        const LoopCamera camera = startCamera(Family(family), password);
        const QString path = dir.filePath(name);
        const QString sha = writeFile(path, size);
        QVERIFY(!sha.isEmpty());
        unlock(familyName(Family(family)), camera.seen.httpPort, password);
        testsupport::SeenBox box;
        submit(path, 0, &box);
        compareStored(upload(camera.seen, 1), sha);
        QTRY_VERIFY(box.seen);
        QCOMPARE(box.title + ": " + box.text, kRebooting);
        QCOMPARE(runJob(familyName(Family(family)), QString::number(camera.seen.httpPort), password,
                        path, 1),
                 QString());
        compareStored(upload(camera.seen, 2), sha);
    }
    void nothingSent_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("box"); // title: text
        QTest::newRow("no file chosen") << "Winbond" << QString() << "Error: Please choose a file!";
        QTest::newRow("a folder") << "Winbond" << dir.path()
                                  << "Error: An error occured while trying to open the file!";
        QTest::newRow("unknown family") << "Sony" << dir.filePath("f.bin") << kRebooting;
    }
    void nothingSent()
    {
        QFETCH(QString, family);
        QFETCH(QString, path);
        QFETCH(QString, box);
        const LoopCamera camera = startCamera(Family::Winbond, kPassword);
        unlock(family, camera.seen.httpPort);
        QVERIFY(!writeFile(dir.filePath("f.bin"), 10000).isEmpty());
        testsupport::SeenBox seen;
        submit(path, 0, &seen);
        QTRY_VERIFY(seen.seen);
        QCOMPARE(seen.title + ": " + seen.text, box);
        if (box.startsWith("Error"))
            QVERIFY(submitButton()->isEnabled());
        QTest::qWait(200);
        QVERIFY(uploads(camera.seen).isEmpty());
    }
    void failureThenUpload_data()
    {
        QTest::addColumn<bool>("hangUp"); // else nobody listens on the port
        QTest::newRow("refused connection") << false;
        QTest::newRow("camera hangs up") << true;
    }
    // After a failed upload the tab is still usable: the next one goes through.
    void failureThenUpload()
    {
        QFETCH(bool, hangUp);
        const LoopCamera camera = startCamera(Family::Haisi, kPassword);
        // The camera takes 256 KiB, then resets the connection.
        camsimfleet::fetchJson(camera.seen,
                               "/camsim/hostile?mode=" + QString(hangUp ? "reset" : "off"));
        unlock("Haisi", hangUp ? camera.seen.httpPort : 1); // nobody listens on port 1
        QVERIFY(!writeFile(dir.filePath("first.pkg"), 4 << 20).isEmpty());
        testsupport::SeenBox box;
        submit(dir.filePath("first.pkg"), 0, hangUp ? &box : nullptr);
        if (hangUp) {
            QTRY_VERIFY(box.seen);
            auto *socket = window->findChild<QTcpSocket *>();
            QTRY_COMPARE_WITH_TIMEOUT(socket->state(), QAbstractSocket::UnconnectedState, 20000);
        } else {
            QTest::qWait(300);
            QVERIFY2(!QApplication::activeModalWidget(), "a refused connection shows no box");
            QVERIFY(!submitButton()->isEnabled());
        }
        camsimfleet::fetchJson(camera.seen, "/camsim/hostile?mode=off");
        unlock("Haisi", camera.seen.httpPort); // the user picks the camera again
        const QString sha = writeFile(dir.filePath("second.pkg"), 1 << 20);
        submit(dir.filePath("second.pkg"), 1, &box);
        compareStored(upload(camera.seen, 1), sha);
    }
    // What UploadJob refuses to take for a success, or to start at all.
    void jobRefusals()
    {
        LoopCamera camera = startCamera(Family::Haisi, kPassword);
        const QString file = dir.filePath("any.pkg");
        QVERIFY(!writeFile(file, 5000).isEmpty());
        const QString port = QString::number(camera.seen.httpPort);
        const QString refused = runJob("Haisi", port, "wrong", file);
        QVERIFY2(refused.contains("refused") && !refused.contains("wrong"), qPrintable(refused));
        QVERIFY(!runJob("Haisi", port, kPassword, dir.filePath("missing.pkg")).isEmpty());
        QVERIFY(runJob("Other", port, kPassword, file).contains("family"));
        // Refused before connecting: nobody listens, yet the reason is the password.
        QVERIFY(runJob("Winbond", "1", "two words", file).contains("blank"));
        camera.sim.reset();
        QVERIFY(!runJob("Haisi", port, kPassword, file).isEmpty());
    }
    void fileFilter_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("dialog"); // caption: filters; empty: no dialog at all
        QTest::newRow("winbond") << "Winbond"
                                 << "Open File: Firmware Files(*.bin)";
        QTest::newRow("haisi") << "Haisi"
                               << "Open File: Firmware Files(*.pkg)";
        QTest::newRow("other family") << "Other" << QString();
    }
    // The browser offers the family's file type; a cancelled one leaves no path.
    void fileFilter()
    {
        QFETCH(QString, family);
        QFETCH(QString, dialog);
        unlock(family, 1);
        window->findChild<QLineEdit *>("fileEdit")->setText("/old.bin");
        QString seen;
        if (!dialog.isEmpty()) {
            // A file dialog can take seconds to come up on a loaded machine.
            testsupport::answerNextModal(
                [&](QWidget *modal) {
                    if (auto *files = qobject_cast<QFileDialog *>(modal))
                        seen = files->windowTitle() + ": " + files->nameFilters().join(';');
                    modal->close();
                },
                30000);
        }
        QMetaObject::invokeMethod(window, "on_fileChoose_clicked");
        QCOMPARE(seen, dialog);
        QVERIFY(window->findChild<QLineEdit *>("fileEdit")->text().isEmpty());
    }

private:
    // The credential dialog's answer, as the tab receives it.
    void unlock(const QString &family, quint16 port, const QString &password = kPassword)
    {
        window->findChild<QLabel *>("iplabel")->setText("127.0.0.1");
        QMetaObject::invokeMethod(
            window, "receiveCamUpdate",
            Q_ARG(QStringList, (QStringList{"admin", password, QString::number(port), family})));
    }
    void submit(const QString &path, int kind, testsupport::SeenBox *box)
    {
        window->findChild<QLineEdit *>("fileEdit")->setText(path);
        window->findChild<QComboBox *>("selectBox")->setCurrentIndex(kind);
        if (box)
            testsupport::answerNextMessageBox(box, QString(), 20000);
        QVERIFY(submitButton()->isEnabled());
        submitButton()->click();
        QVERIFY(!submitButton()->isEnabled());
    }
    QPushButton *submitButton() { return window->findChild<QPushButton *>("updateSubmit"); }

    QTemporaryDir dir;
    MainWindow *window = nullptr;
};

QTEST_MAIN(tst_UploadStream)
#include "tst_uploadstream.moc"
