#include "app/mainwindow.h"

#include "app/groovecache.h"

#include "app/startuprules.h"
#include "discovery/protocolconstants.h"
#include "ui_mainwindow.h"

#include <QFile>
#include <QHeaderView>
#include <QNetworkInterface>
#include <QTcpSocket>
#include <QUdpSocket>

namespace {

const char kHeaderStyle[] = "QHeaderView::section {background-color:#fdfdfd;color: black;"
                            "padding:3px 3px;border: 1px solid #d5d5d5;border-right:none;}";
// The doubled "#" on the Search table's header is kept as it has always been.
const char kSearchHeaderStyle[] = "QHeaderView::section {background-color:##fdfdfd;color: black;"
                                  "padding:3px 3px;border: 1px solid #d5d5d5;border-right:none;}";
const char kButtonStyle[] =
    "QPushButton{ font-family:'Microsoft YaHei';height:25px;font-size:12px;color:0;"
    "background-color:#ffffff;border-radius:3px;border:1px;font-weight:bold;}";

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), ui(new Ui::MainWindow)
{
    sdStatusMessage = QString();
    broadcastSender = new QUdpSocket(this);
    multicastSender = new QUdpSocket(this);

    ui->setupUi(this);
    setMinimumSize(400, 300);
    setWindowIcon(QIcon(QStringLiteral("/images/about.ico")));
    if (windowIcon().isNull())
        setWindowIcon(QIcon(QStringLiteral(":/images/about.ico")));
    setWindowTitle(tr("VELTOR Camera Tool"));

    ui->tableWidgetSearch_1->setColumnWidth(0, 200);
    for (QTableWidget *table : {ui->tableWidgetSearch_1, ui->tableWidgetSearch_2,
                                ui->tableWidgetSearch_3, ui->tableWidgetSearch_4})
        table->horizontalHeader()->setVisible(true);
    ui->progressBar->setStyleSheet(
        QStringLiteral("QProgressBar::chunk{background-color:#ffffff;}"));
    // The window-wide background colour fills the whole bar, so nothing behind
    // it needs painting again at each of its many steps, nor its groove.
    ui->progressBar->setAttribute(Qt::WA_OpaquePaintEvent);
    new GrooveCache(ui->progressBar);
    ui->ipFixEdit->hide();

    setStyleSheet(QStringLiteral("background-color:#dcdcdc"));
    ui->tableWidgetSearch_1->horizontalHeader()->setStyleSheet(QLatin1String(kSearchHeaderStyle));
    for (QTableWidget *table :
         {ui->tableWidgetSearch_2, ui->tableWidgetSearch_3, ui->tableWidgetSearch_4})
        table->horizontalHeader()->setStyleSheet(QLatin1String(kHeaderStyle));
    for (QPushButton *button :
         {ui->searchButton, ui->dhcpsubmit, ui->updateSubmit, ui->viewFilesBtn, ui->fileChoose})
        button->setStyleSheet(QLatin1String(kButtonStyle));

    init();

    const auto shared = QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint;
    binaryReceiver = new QUdpSocket(this);
    binaryReceiver->bind(QHostAddress::Any, veltor::kBinarySearchPort, shared);
    connect(binaryReceiver, &QUdpSocket::readyRead, this, &MainWindow::processPendingDatagram);
    multicastReceiver = new QUdpSocket(this);
    multicastReceiver->bind(QHostAddress::AnyIPv4, veltor::kHdsPort, shared);
    multicastReceiver->setSocketOption(QAbstractSocket::MulticastLoopbackOption, 0);
    multicastReceiver->joinMulticastGroup(QHostAddress(QLatin1String(veltor::kHdsGroup)));
    connect(multicastReceiver, &QUdpSocket::readyRead, this, &MainWindow::processPendingDatagram);
    enlargeReceiveBuffers();

    lastClickedRow = -1;
    rowTextColor = QColor(255, 255, 255, 255);

    connect(ui->tableWidgetSearch_1, &QTableWidget::cellClicked, this, &MainWindow::mycellClicked);
    connect(ui->tableWidgetSearch_2, &QTableWidget::cellClicked, this,
            &MainWindow::mycellClickedIpConf);
    connect(ui->tableWidgetSearch_3, &QTableWidget::cellClicked, this,
            &MainWindow::mycellClickedUpdate);
    connect(ui->tableWidgetSearch_4, &QTableWidget::cellClicked, this,
            &MainWindow::mycellClickedSdmanager);
    connect(ui->tableWidgetSearch_1, &QTableWidget::cellDoubleClicked, this,
            &MainWindow::mycellDoubleClicked1);
    connect(ui->tableWidgetSearch_2, &QTableWidget::cellDoubleClicked, this,
            &MainWindow::mycellDoubleClicked2);
    connect(ui->tableWidgetSearch_3, &QTableWidget::cellDoubleClicked, this,
            &MainWindow::mycellDoubleClicked3);
    connect(ui->tableWidgetSearch_4, &QTableWidget::cellDoubleClicked, this,
            &MainWindow::mycellDoubleClicked4);
    setUpTableActions();

    uploadChunkSize = 4096;
    totalBytes = 0;
    bytesWritten = 0;
    bytesToWrite = 0;
    tcpClient = new QTcpSocket(this);
    connect(tcpClient, &QTcpSocket::connected, this, &MainWindow::startTransfer);
    connect(tcpClient, &QTcpSocket::bytesWritten, this, &MainWindow::updateClientProgress);
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    connect(tcpClient, &QAbstractSocket::errorOccurred, this, &MainWindow::displayError);
#else
    connect(tcpClient, QOverload<QAbstractSocket::SocketError>::of(&QAbstractSocket::error), this,
            &MainWindow::displayError);
#endif
}

MainWindow::~MainWindow()
{
    delete ui;
}

quint32 MainWindow::getSeqNum()
{
    return seqNum++;
}

void MainWindow::init()
{
    ui->wifiComboBox->clear();
    ui->wifiComboBox->addItems(veltor::interfaceChoices(QNetworkInterface::allAddresses()));
}

QString MainWindow::getNetwork()
{
    return ui->wifiComboBox->currentText();
}

void MainWindow::on_actionRefresh_triggered()
{
    init();
}

void MainWindow::on_wifiComboBox_currentTextChanged(const QString &addr)
{
    broadcastSender->close();
    multicastSender->close();
    broadcastSender->bind(QHostAddress(addr), veltor::kBinarySearchPort,
                          QUdpSocket::ReuseAddressHint);
    multicastSender->bind(QHostAddress::AnyIPv4, veltor::kHdsPort, QUdpSocket::ReuseAddressHint);
}
