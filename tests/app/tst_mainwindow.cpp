#include "app/aboutdialog.h"
#include "app/mainwindow.h"
#include "app/startup.h"

#include "testsupport.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QTableWidget>
#include <QTranslator>
#include <QtTest>

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void widgetTree_data();
    void widgetTree();
    void tableHeaders_data();
    void tableHeaders();
    void slotOrder();
    void menus();
    void sequenceNumbers();
    void refreshRebuildsInterfaceList();
    void aboutIsNewEachTime();
    void germanTexts_data();
    void germanTexts();
};

void tst_MainWindow::widgetTree_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("enabled");
    const auto row = [](const char *name, const char *cls, const QString &text, bool enabled) {
        QTest::newRow(name) << QString(name) << QString(cls) << text << enabled;
    };
    row("searchButton", "QPushButton", "Search", true);
    row("automaticSearchBox", "QCheckBox", "Automatic Search", true);
    row("wifiComboBox", "QComboBox", QString(), true);
    row("progressBar", "QProgressBar", QString(), true);
    row("dhcpCheckbox", "QCheckBox", "Obtain IP from DHCP Server", false);
    row("ipFixEdit", "QLineEdit", QString(), false);
    row("ipaddress", "QLineEdit", QString(), false);
    row("subnet", "QLineEdit", QString(), false);
    row("gateway", "QLineEdit", QString(), false);
    row("dns", "QLineEdit", QString(), false);
    row("httpport", "QLineEdit", QString(), false);
    row("dhcpsubmit", "QPushButton", "Submit", false);
    row("label_4", "QLabel", "Gateway:", true);
    row("label_5", "QLabel", "DNS Server:", true);
    row("label_9", "QLabel", "HTTP Port:", true);
    row("iplabel", "QLabel", "TextLabel", true);
    row("updateLabel", "QLabel", "Update:", true);
    row("selectBox", "QComboBox", "Firmware", false);
    row("versionLabel", "QLabel", "Firmware Version:", true);
    row("versionEdit", "QLineEdit", QString(), false);
    row("fileChooseLabel", "QLabel", "Path:", true);
    row("fileEdit", "QLineEdit", QString(), false);
    row("fileChoose", "QPushButton", "Browse", false);
    row("updateSubmit", "QPushButton", "Submit", false);
    row("totalMenorySize", "QLabel", "<html><head/><body><p><br/></p></body></html>", true);
    row("UsedMemorySize", "QLabel", "<html><head/><body><p><br/></p></body></html>", true);
    row("leftMemorySize", "QLabel", "<html><head/><body><p><br/></p></body></html>", true);
    row("label_14", "QLabel", "<html><head/><body><p>Used Memory:</p></body></html>", true);
    row("label_35", "QLabel", "<html><head/><body><p>Free Memory:</p></body></html>", true);
    row("viewFilesBtn", "QPushButton", "Show Files", false);
    row("tabSdCrad", "QWidget", QString(), true);
    row("widget", "QWidget", QString(), true);
    row("widget_2", "QWidget", QString(), true);
    row("widget_3", "QWidget", QString(), true);
}

QString visibleText(QWidget *widget)
{
    if (auto *button = qobject_cast<QAbstractButton *>(widget))
        return button->text();
    if (auto *label = qobject_cast<QLabel *>(widget))
        return label->text();
    if (auto *combo = qobject_cast<QComboBox *>(widget))
        return combo->currentText();
    if (auto *edit = qobject_cast<QLineEdit *>(widget))
        return edit->text();
    return QString();
}

void tst_MainWindow::widgetTree()
{
    QFETCH(QString, name);
    QFETCH(QString, className);
    QFETCH(QString, text);
    QFETCH(bool, enabled);
    MainWindow window;
    auto *widget = window.findChild<QWidget *>(name);
    QVERIFY2(widget, qPrintable(name));
    QCOMPARE(widget->metaObject()->className(), className.toLatin1().constData());
    QCOMPARE(widget->isEnabled(), enabled);
    if (!text.isEmpty())
        QCOMPARE(visibleText(widget), text);
}

void tst_MainWindow::tableHeaders_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("firmwareHeader");
    QTest::addColumn<QAbstractItemView::SelectionBehavior>("behaviour");
    QTest::newRow("search") << "tableWidgetSearch_1" << "Firmware Version"
                            << QAbstractItemView::SelectRows;
    QTest::newRow("ipconf") << "tableWidgetSearch_2" << "Firmware Version"
                            << QAbstractItemView::SelectRows;
    QTest::newRow("update") << "tableWidgetSearch_3" << "Frimware Version"
                            << QAbstractItemView::SelectItems;
    QTest::newRow("sdcard") << "tableWidgetSearch_4" << "Firmware Version"
                            << QAbstractItemView::SelectItems;
}

void tst_MainWindow::tableHeaders()
{
    QFETCH(QString, table);
    QFETCH(QString, firmwareHeader);
    QFETCH(QAbstractItemView::SelectionBehavior, behaviour);
    MainWindow window;
    auto *widget = window.findChild<QTableWidget *>(table);
    QVERIFY(widget);
    const QStringList expected{"Name",        "IP Address", "Port",           "MAC Address",
                               "DHCP",        "Subnet Mask", "Gateway",       "DNS Server",
                               firmwareHeader, "WebUI Version"};
    QCOMPARE(widget->columnCount(), expected.size());
    for (int c = 0; c < expected.size(); ++c)
        QCOMPARE(widget->horizontalHeaderItem(c)->text(), expected.at(c));
    QCOMPARE(widget->rowCount(), 0);
    QCOMPARE(widget->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(widget->selectionBehavior(), behaviour);
    QCOMPARE(widget->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(widget->horizontalHeader()->defaultSectionSize(), 170);
    QVERIFY(widget->horizontalHeader()->isVisible() || !window.isVisible());
}

void tst_MainWindow::slotOrder()
{
    const QStringList expected{
        "getSeqNum", "appendWinbondIP", "isNum", "isAddr", "on_searchButton_clicked",
        "processPendingDatagram", "on_actionFull_toggled", "on_automaticSearchBox_toggled",
        "on_actionAbout_triggered", "on_actionOnline_triggered", "mycellClicked",
        "mycellClickedIpConf", "mycellClickedUpdate", "mycellClickedSdmanager",
        "mycellDoubleClicked1", "mycellDoubleClicked2", "mycellDoubleClicked3",
        "mycellDoubleClicked4", "receiveCamConfIp", "receiveCamUpdate", "receiveCamSdCard",
        "on_dhcpCheckbox_toggled", "on_dhcpsubmit_clicked", "ipConf", "on_fileChoose_clicked",
        "on_updateSubmit_clicked", "on_selectBox_currentIndexChanged",
        "on_actionRefresh_triggered", "startTransfer", "updateClientProgress", "displayError",
        "on_wifiComboBox_currentTextChanged", "checkSdCardMountedReply",
        "on_viewFilesBtn_clicked"};
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QStringList declared;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            declared << QString::fromLatin1(meta.method(i).name());
    }
    QCOMPARE(declared, expected);
}

void tst_MainWindow::menus()
{
    MainWindow window;
    const auto action = [&](const char *name) { return window.findChild<QAction *>(name); };
    QCOMPARE(action("actionRefresh")->shortcut(), QKeySequence("F5"));
    QCOMPARE(action("actionFull")->shortcut(), QKeySequence("F11"));
    QVERIFY(action("actionFull")->isCheckable());
    QCOMPARE(action("actionOnline")->shortcut(), QKeySequence("Ctrl+O"));
    QCOMPARE(action("actionAbout")->text(), QString("About VELTOR Camera Tool"));
    QCOMPARE(window.windowTitle(), QString("VELTOR Camera Tool"));

    action("actionFull")->setChecked(true);
    QVERIFY(window.windowState() & Qt::WindowFullScreen);
    action("actionFull")->setChecked(false);
    QVERIFY(!(window.windowState() & Qt::WindowFullScreen));
}

void tst_MainWindow::sequenceNumbers()
{
    MainWindow window;
    QCOMPARE(window.getSeqNum(), 0u);
    QCOMPARE(window.getSeqNum(), 1u);
    QCOMPARE(window.getSeqNum(), 2u);
}

void tst_MainWindow::refreshRebuildsInterfaceList()
{
    MainWindow window;
    auto *combo = window.findChild<QComboBox *>("wifiComboBox");
    QCOMPARE(combo->itemText(combo->count() - 1), QString("127.0.0.1"));
    combo->addItem("leftover");
    window.findChild<QAction *>("actionRefresh")->trigger();
    QCOMPARE(combo->findText("leftover"), -1);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(window.getNetwork(), combo->itemText(0));
}

void tst_MainWindow::aboutIsNewEachTime()
{
    MainWindow window;
    for (int i = 0; i < 2; ++i) {
        testsupport::answerNextModal([](QWidget *modal) {
            QCOMPARE(modal->windowTitle(), QString("About VELTOR Camera Tool"));
            modal->findChild<QPushButton *>("aboutbtn")->click();
        });
        window.findChild<QAction *>("actionAbout")->trigger();
    }
    QCOMPARE(window.findChildren<aboutDialog *>().size(), 2);
}

void tst_MainWindow::germanTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("english");
    QTest::newRow("search") << "searchButton" << "Search";
    QTest::newRow("automatic") << "automaticSearchBox" << "Automatic Search";
    QTest::newRow("dhcp") << "dhcpCheckbox" << "Obtain IP from DHCP Server";
    QTest::newRow("browse") << "fileChoose" << "Browse";
    QTest::newRow("show files") << "viewFilesBtn" << "Show Files";
    QTest::newRow("path") << "fileChooseLabel" << "Path:";
}

void tst_MainWindow::germanTexts()
{
    QFETCH(QString, name);
    QFETCH(QString, english);
    QTranslator translator;
    QVERIFY(translator.load(QLatin1String(veltor::kGermanTranslation)));
    QCoreApplication::installTranslator(&translator);
    MainWindow window;
    const QString shown = visibleText(window.findChild<QWidget *>(name));
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(!shown.isEmpty());
    QVERIFY2(shown != english, qPrintable(shown));
    QVERIFY(window.windowTitle().contains("VELTOR"));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
