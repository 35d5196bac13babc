// The window's findings, summary, export and copy against simulated cameras
// in a private network (see CMakeLists.txt for the fleet): the markers and the
// summary come from one real search, the export is compared with what
// veltor-cli discover prints for the same fleet.
#include "app/mainwindow.h"
#include "camsimfleet.h"
#include "testsupport.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QProcess>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Header first, then the rows sorted: cameras with one key (one IP) are listed
// in arrival order, which two searches need not share.
QStringList csvLines(const QByteArray &csv)
{
    QStringList lines = QString::fromUtf8(csv).split(QStringLiteral("\r\n"));
    std::sort(lines.begin() + 1, lines.end());
    return lines;
}

} // namespace

class TestFindingsWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        window = new MainWindow;
        window->resize(1000, 430);
        window->show();
        QCOMPARE(window->findChild<QComboBox *>("wifiComboBox")->currentText(),
                 QString::fromLocal8Bit(qgetenv("VELTOR_TOOL_IP")));
        QMetaObject::invokeMethod(window, "on_searchButton_clicked");
        QTRY_COMPARE(deviceTable(1)->rowCount(), fleet.size());
    }
    void markers_data()
    {
        QTest::addColumn<int>("camera");
        QTest::addColumn<QString>("toolTip");
        const auto row = [](const char *name, int camera, const char *toolTip) {
            QTest::newRow(name) << camera << QString(toolTip);
        };
        const char *conflict =
            "Another camera claims 10.78.1.5 too: give one of them another address.";
        row("healthy Winbond", 0, "");
        row("healthy Haisi", 5, "");
        row("one IP, first", 1, conflict);
        row("one IP, second", 4, conflict);
        row("third subnet", 2, "On another subnet than 10.78.0.1/16: change its address first.");
        row("claims another", 3, "The reply came from 10.78.1.4, not from the address it claims.");
    }
    // The name cell of the camera's row, in all four tables alike.
    void markers()
    {
        QFETCH(int, camera);
        QFETCH(QString, toolTip);
        for (int n = 1; n <= 4; ++n) {
            const QTableWidgetItem *name = deviceTable(n)->item(rowOf(camera), 0);
            QTRY_COMPARE(name->toolTip(), toolTip); // marked between events
            QCOMPARE(name->icon().isNull(), toolTip.isEmpty());
        }
    }
    void summary()
    {
        const QString text = window->findChild<QLabel *>("searchSummary")->text();
        QVERIFY2(text.startsWith("Cameras found: 6 (Winbond 3, Haisi 3); need attention: 4") &&
                     text.endsWith("v0 10.78.0.1/16"),
                 qPrintable(text));
    }
    // Through the View menu's entry and its file dialog, as a user exports.
    void exportEqualsCli()
    {
        const QString path = dir.filePath("cameras.csv");
        testsupport::answerNextModal([&](QWidget *modal) {
            qobject_cast<QFileDialog *>(modal)->selectFile(path);
            QMetaObject::invokeMethod(modal, "accept");
        });
        window->findChild<QAction *>("actionExportCameras")->trigger();
        QFile exported(path);
        QVERIFY(exported.open(QIODevice::ReadOnly));
        QProcess cli;
        cli.start(QStringLiteral(VELTOR_CLI), {"discover", "--format", "csv", "--interface",
                                               "10.78.0.1", "--rounds", "2", "--wait", "600"});
        QVERIFY(cli.waitForFinished(30000));
        QCOMPARE(csvLines(exported.readAll()), csvLines(cli.readAllStandardOutput()));
    }
    void copySelectedRow()
    {
        QMetaObject::invokeMethod(window, "mycellClicked", Q_ARG(int, rowOf(2)), Q_ARG(int, 1));
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        QTest::keyClick(window, Qt::Key_C, Qt::ControlModifier);
        const camsimfleet::Camera &c = fleet.at(2);
        const QStringList cells{
            c.name,    c.ip,  QString::number(c.httpPort), c.mac,       "off", c.mask,
            c.gateway, c.dns, c.firmwareVersion,           c.webVersion};
        QCOMPARE(QGuiApplication::clipboard()->text(), cells.join('\t') + '\n');
    }
    void cleanupTestCase() { delete window; }

private:
    int rowOf(int camera) const
    {
        return deviceTable(1)->findItems(fleet.at(camera).mac, Qt::MatchExactly).value(0)->row();
    }
    QTableWidget *deviceTable(int n) const
    {
        return window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_%1").arg(n));
    }

    QVector<camsimfleet::Camera> fleet;
    MainWindow *window = nullptr;
    QTemporaryDir dir;
};

QTEST_MAIN(TestFindingsWindow)
#include "tst_findingswindow.moc"
