#include "app/aboutdialog.h"
#include "app/mainwindow.h"
#include "app/startup.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QTableWidget>
#include <QTranslator>
#include <QtTest>

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }

    // Nothing of a camera can be changed before its credentials are proved; refresh rebuilds the
    // interface list.
    void startState()
    {
        MainWindow window;
        for (const char *name :
             {"dhcpCheckbox", "ipaddress", "subnet", "gateway", "dns", "httpport", "dhcpsubmit",
              "selectBox", "fileEdit", "fileChoose", "updateSubmit", "viewFilesBtn"})
            QVERIFY2(!window.findChild<QWidget *>(name)->isEnabled(), name);
        for (int i = 1; i <= 4; ++i) {
            auto *table = window.findChild<QTableWidget *>(QString("tableWidgetSearch_%1").arg(i));
            QCOMPARE(QSize(table->columnCount(), table->rowCount()), QSize(10, 0));
            QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        }
        QCOMPARE(window.getSeqNum(), 0u);
        QCOMPARE(window.getSeqNum(), 1u);
        QCOMPARE(window.windowTitle(), QString("VELTOR Camera Tool"));
        auto *full = window.findChild<QAction *>("actionFull");
        QCOMPARE(full->shortcut(), QKeySequence("F11"));
        full->setChecked(true);
        QVERIFY(window.windowState() & Qt::WindowFullScreen);
        full->setChecked(false);
        QVERIFY(!(window.windowState() & Qt::WindowFullScreen));
        auto *combo = window.findChild<QComboBox *>("wifiComboBox");
        QCOMPARE(combo->itemText(combo->count() - 1), QString("127.0.0.1"));
        combo->addItem("leftover");
        window.findChild<QAction *>("actionRefresh")->trigger();
        QCOMPARE(combo->findText("leftover"), -1);
        QCOMPARE(window.getNetwork(), combo->itemText(0));
    }
    // The version the build was made with, looked up under the form's context: a catalogue
    // keyed on an old "Version x.y" would leave the German line English.
    void aboutVersion()
    {
        QTranslator german;
        QVERIFY(german.load(QLatin1String(veltor::kGermanTranslation)));
        for (const char *expected : {"VELTOR Camera Tool,Version " VELTOR_VERSION "<",
                                     "VELTOR Camera Tool, Version " VELTOR_VERSION "<"}) {
            const QString text = aboutDialog().findChild<QLabel *>("label_2")->text();
            QVERIFY2(text.contains(expected) && !text.contains("%1"), qPrintable(text));
            QCoreApplication::installTranslator(&german);
        }
        QCoreApplication::removeTranslator(&german);
    }
};

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
