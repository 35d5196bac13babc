#include "app/mainwindow.h"

#include "testsupport.h"

#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

// The Update tab's own decisions: when to ask for credentials, what unlocking
// opens, and which files the browser offers.
// A file dialog can take seconds to come up on a loaded machine; an answer
// that gives up too early leaves it open for good.
constexpr int kSlowDialogMs = 30000;

class tst_UpdateTab : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void unlockedCameraIsNotAskedAgain();
    void fileFilter_data();
    void fileFilter();
    void cancelledBrowseLeavesPathEmpty();

private:
    void addRow(const QString &ip);
    void clickRow(int row);
    void unlock(const QString &family);
    template <class T> T *child(const char *name)
    {
        return window->findChild<T *>(QLatin1String(name));
    }

    MainWindow *window = nullptr;
};

void tst_UpdateTab::init()
{
    window = new MainWindow;
}

void tst_UpdateTab::cleanup()
{
    delete window;
}

void tst_UpdateTab::addRow(const QString &ip)
{
    for (const char *name : {"tableWidgetSearch_1", "tableWidgetSearch_2", "tableWidgetSearch_3",
                             "tableWidgetSearch_4"}) {
        auto *table = child<QTableWidget>(name);
        const int row = table->rowCount();
        table->insertRow(row);
        table->setItem(row, 0, new QTableWidgetItem(QStringLiteral("Cam")));
        table->setItem(row, 1, new QTableWidgetItem(ip));
        table->setItem(row, 2, new QTableWidgetItem(QStringLiteral("80")));
    }
}

void tst_UpdateTab::clickRow(int row)
{
    QMetaObject::invokeMethod(window, "mycellClickedUpdate", Q_ARG(int, row), Q_ARG(int, 0));
}

void tst_UpdateTab::unlock(const QString &family)
{
    child<QLabel>("iplabel")->setText(QStringLiteral("127.0.0.9"));
    QMetaObject::invokeMethod(
        window, "receiveCamUpdate",
        Q_ARG(QStringList, QStringList({QStringLiteral("admin"), QStringLiteral("pw"),
                                        QStringLiteral("1"), family})));
}

void tst_UpdateTab::unlockedCameraIsNotAskedAgain()
{
    addRow(QStringLiteral("127.0.0.9"));
    unlock(QStringLiteral("Haisi"));
    // Unlocking here opens the other tabs' controls for the same camera too.
    for (const char *name : {"dhcpCheckbox", "ipaddress", "httpport", "dhcpsubmit", "selectBox",
                             "fileEdit", "fileChoose", "updateSubmit", "viewFilesBtn"})
        QVERIFY2(child<QWidget>(name)->isEnabled(), name);

    bool asked = false;
    testsupport::answerNextModal(
        [&](QWidget *modal) {
            asked = modal->inherits("userCheckDialog");
            modal->close();
        },
        500);
    clickRow(0);
    QTest::qWait(600);
    QVERIFY(!asked);
    QVERIFY(child<QWidget>("updateSubmit")->isEnabled());
}

void tst_UpdateTab::fileFilter_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("filter");
    QTest::newRow("winbond firmware") << "Winbond" << 0 << "Firmware Files(*.bin)";
    QTest::newRow("winbond webui") << "Winbond" << 1 << "Firmware Files(*.bin)";
    QTest::newRow("haisi firmware") << "Haisi" << 0 << "Firmware Files(*.pkg)";
    QTest::newRow("haisi webui") << "Haisi" << 1 << "Firmware Files(*.pkg)";
}

void tst_UpdateTab::fileFilter()
{
    QFETCH(QString, family);
    QFETCH(int, kind);
    unlock(family);
    child<QComboBox>("selectBox")->setCurrentIndex(kind);
    QStringList filters;
    QString caption;
    testsupport::answerNextModal(
        [&](QWidget *modal) {
            auto *dialog = qobject_cast<QFileDialog *>(modal);
            if (!dialog)
                return modal->close(), void();
            filters = dialog->nameFilters();
            caption = dialog->windowTitle();
            dialog->reject();
        },
        kSlowDialogMs);
    QMetaObject::invokeMethod(window, "on_fileChoose_clicked");
    QCOMPARE(caption, QStringLiteral("Open File"));
    QTEST(filters.join(QLatin1Char(';')), "filter");
    QVERIFY(child<QLineEdit>("fileEdit")->text().isEmpty());
}

void tst_UpdateTab::cancelledBrowseLeavesPathEmpty()
{
    unlock(QStringLiteral("Winbond"));
    child<QLineEdit>("fileEdit")->setText(QStringLiteral("/old.bin"));
    testsupport::answerNextModal([](QWidget *modal) { modal->close(); }, kSlowDialogMs);
    QMetaObject::invokeMethod(window, "on_fileChoose_clicked");
    QVERIFY(child<QLineEdit>("fileEdit")->text().isEmpty());

    // No dialog at all for a camera of unknown family.
    unlock(QStringLiteral("Other"));
    child<QLineEdit>("fileEdit")->setText(QStringLiteral("/old.bin"));
    QMetaObject::invokeMethod(window, "on_fileChoose_clicked");
    QVERIFY(child<QLineEdit>("fileEdit")->text().isEmpty());
}

QTEST_MAIN(tst_UpdateTab)
#include "tst_updatetab.moc"
