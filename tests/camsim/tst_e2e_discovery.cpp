// The real main window (offscreen) searching a mixed simulated fleet across the
// namespace harness; see CMakeLists.txt for the fleet. Rows are checked against
// the fleet file, never against the tool's own parsers.
#include "app/mainwindow.h"
#include "camsimfleet.h"

#include <QDesktopServices>
#include <QTableWidget>
#include <QtTest>

namespace {

const int kColumns = 10;

QStringList expectedRow(const camsimfleet::Camera &camera)
{
    const bool winbond = camera.family == QLatin1String("Winbond");
    QString name =
        winbond ? QString::fromLatin1(camera.name.toLatin1().left(22)).trimmed() : camera.name;
    if (name.isEmpty())
        name = winbond ? QStringLiteral("VELTOR VGA Series") : QStringLiteral("Unnamed");
    const int port = winbond ? camera.httpPort & 0xFF : camera.httpPort;
    return {name,
            camera.ip,
            QString::number(port),
            camera.mac,
            camera.dhcp ? QStringLiteral("on") : QStringLiteral("off"),
            camera.mask,
            camera.gateway,
            camera.dns,
            camera.firmwareVersion,
            camera.webVersion};
}

// The ordering key: the four parts joined without padding, read as a signed
// 32-bit number, 0 when it does not fit.
qint64 orderKey(const QString &ip)
{
    bool ok = false;
    const int key = QString(ip).remove('.').toInt(&ok);
    return ok ? key : 0;
}

QStringList rowOf(const QTableWidget *table, int row)
{
    QStringList cells;
    for (int column = 0; column < kColumns; ++column) {
        const QTableWidgetItem *item = table->item(row, column);
        cells << (item ? item->text() : QString());
    }
    return cells;
}

} // namespace

class UrlCatcher : public QObject
{
    Q_OBJECT

public slots:
    void openUrl(const QUrl &url) { opened << url; }

public:
    QList<QUrl> opened;
};

class TestE2eDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void mixedFleetListedOnceInKeyOrder();
    void nestedSearchLeavesConsistentTables();
    void doubleClickOpensTheCamera_data();
    void doubleClickOpensTheCamera();

private:
    QList<QStringList> expectedRows() const;
    void checkTables();

    QVector<camsimfleet::Camera> fleet;
    MainWindow *window = nullptr;
    QList<QTableWidget *> tables;
    UrlCatcher catcher;
};

void TestE2eDiscovery::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(fleet);
    window = new MainWindow;
    window->show();
    for (int i = 1; i <= 4; ++i)
        tables << window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_%1").arg(i));
    QVERIFY(!tables.contains(nullptr));
    QDesktopServices::setUrlHandler("http", &catcher, "openUrl");
}

void TestE2eDiscovery::cleanupTestCase()
{
    QDesktopServices::unsetUrlHandler("http");
    delete window;
}

// Cameras with a malformed reply are not listed; one answering both protocols
// once. Equal keys keep no particular order among themselves here: the fleet
// has none.
QList<QStringList> TestE2eDiscovery::expectedRows() const
{
    QList<QStringList> rows;
    for (const camsimfleet::Camera &camera : fleet) {
        if (!camera.malformed)
            rows << expectedRow(camera);
    }
    std::stable_sort(rows.begin(), rows.end(), [](const QStringList &a, const QStringList &b) {
        return orderKey(a[1]) < orderKey(b[1]);
    });
    return rows;
}

void TestE2eDiscovery::checkTables()
{
    const QList<QStringList> expected = expectedRows();
    for (QTableWidget *table : qAsConst(tables)) {
        QList<QStringList> listed;
        for (int row = 0; row < table->rowCount(); ++row)
            listed << rowOf(table, row);
        QCOMPARE(listed, expected);
    }
}

void TestE2eDiscovery::mixedFleetListedOnceInKeyOrder()
{
    QMetaObject::invokeMethod(window, "on_searchButton_clicked");
    checkTables();
}

void TestE2eDiscovery::nestedSearchLeavesConsistentTables()
{
    // A second search starts inside the first one's waits, as the automatic
    // search's timer does.
    QTimer::singleShot(1000, window,
                       [this] { QMetaObject::invokeMethod(window, "on_searchButton_clicked"); });
    QMetaObject::invokeMethod(window, "on_searchButton_clicked");
    checkTables();
}

void TestE2eDiscovery::doubleClickOpensTheCamera_data()
{
    QTest::addColumn<int>("table");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::newRow("Search tab, name cell") << 1 << 0 << 0;
    QTest::newRow("IP Conf. tab, last cell") << 2 << 1 << 9;
    QTest::newRow("Update tab") << 3 << 2 << 4;
    QTest::newRow("SD card tab") << 4 << 3 << 1;
}

void TestE2eDiscovery::doubleClickOpensTheCamera()
{
    QFETCH(int, table);
    QFETCH(int, row);
    QFETCH(int, column);
    const QStringList expected = expectedRows().value(row);
    QVERIFY(!expected.isEmpty());
    catcher.opened.clear();
    const QByteArray slot = "mycellDoubleClicked" + QByteArray::number(table);
    QVERIFY(
        QMetaObject::invokeMethod(window, slot.constData(), Q_ARG(int, row), Q_ARG(int, column)));
    QCOMPARE(catcher.opened,
             QList<QUrl>{QUrl(QStringLiteral("http://%1:%2").arg(expected[1], expected[2]))});
}

QTEST_MAIN(TestE2eDiscovery)
#include "tst_e2e_discovery.moc"
