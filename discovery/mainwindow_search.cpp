#include "app/mainwindow.h"

#include "discovery/devicerecord.h"
#include "discovery/eventwait.h"
#include "discovery/hdsreply.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"
#include "discovery/winbondreply.h"
#include "netconf/validators.h"
#include "ui_mainwindow.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QUdpSocket>
#include <optional>

namespace {

// Every cell gets an item, an empty DHCP flag included: the row colouring and
// the working tabs read all ten cells of a row.
void setCell(QTableWidget *table, int row, int column, const QString &text)
{
    table->setItem(row, column, new QTableWidgetItem(text));
}

// The datagram with its source address; the port it came in on names the protocol.
std::optional<veltor::ReceivedReply> nextDatagram(QUdpSocket *socket, quint16 port)
{
    if (!socket->hasPendingDatagrams())
        return std::nullopt;
    const qint64 size = socket->pendingDatagramSize();
    veltor::ReceivedReply reply;
    reply.port = port;
    reply.data = QByteArray(int(qMax<qint64>(size, 0)), Qt::Uninitialized);
    const qint64 read = socket->readDatagram(reply.data.data(), reply.data.size(), &reply.source);
    // A failed read ends the drain instead of spinning on a pending error.
    if (size < 0 || read < 0)
        return std::nullopt;
    reply.data.truncate(int(read));
    // A dual-stack receiver gives IPv4 senders as mapped IPv6 addresses.
    bool isIpv4 = false;
    const quint32 ipv4 = reply.source.toIPv4Address(&isIpv4);
    if (isIpv4)
        reply.source = QHostAddress(ipv4);
    return reply;
}

} // namespace

void MainWindow::on_searchButton_clicked()
{
    // A nested search (timer tick or click during the waits below) starts
    // over from here; each step leaves the four tables row-for-row equal.
    for (QTableWidget *table : deviceTables())
        table->setRowCount(0);
    ipConf_right_frame_disable();
    lockState.clear();
    sdInfoCache.clear();
    cameraCredentials.clear();
    winbondReplies.clear();
    hdsReplies.clear();
    listedCameras.clear();
    queuedReplies.clear(); // answers to the previous search
    forgetFindings();

    for (int round = 0; round < veltor::kSearchRounds; ++round) {
        searchHaddle();
        ui->progressBar->setValue(0);
        sleep(veltor::kProgressStepMs);
        for (int value = 1; value <= 100; ++value) {
            ui->progressBar->setValue(value);
            sleep(veltor::kProgressStepMs);
        }
        ui->progressBar->setValue(0);
    }
    showSearchSummary();
}

void MainWindow::searchHaddle()
{
    static const QByteArray binary = veltor::binarySearchDatagram();
    static const QByteArray hds = veltor::hdsSearchRequest();
    broadcastSender->writeDatagram(binary, QHostAddress(QLatin1String(veltor::kBroadcastAddress)),
                                   veltor::kBinarySearchPort);
    multicastSender->writeDatagram(hds, QHostAddress(QLatin1String(veltor::kHdsGroup)),
                                   veltor::kHdsPort);
}

void MainWindow::processPendingDatagram()
{
    drainReceiver(qobject_cast<QUdpSocket *>(sender()));
}

void MainWindow::drainReceiver(QUdpSocket *receiver)
{
    if (receiver != binaryReceiver && receiver != multicastReceiver)
        return;
    const quint16 port = receiver == binaryReceiver ? veltor::kBinarySearchPort : veltor::kHdsPort;
    while (std::optional<veltor::ReceivedReply> reply = nextDatagram(receiver, port)) {
        if (queuedReplies.size() < veltor::kMaxQueuedReplies)
            queuedReplies.enqueue(std::move(*reply));
    }
    if (!listingQueued && !queuedReplies.isEmpty()) {
        listingQueued = true;
        QTimer::singleShot(0, this, &MainWindow::listQueuedReplies);
    }
}

void MainWindow::listQueuedReplies()
{
    listingQueued = false;
    QElapsedTimer slice;
    slice.start();
    int newestRow = -1;
    while (!queuedReplies.isEmpty() && slice.elapsed() < veltor::kReplySliceMs) {
        const veltor::ReceivedReply reply = queuedReplies.dequeue();
        const int row = reply.port == veltor::kBinarySearchPort
                            ? listWinbondReply(reply.data, reply.source)
                            : listHdsReply(reply.data, reply.source);
        if (row >= 0)
            newestRow = row;
    }
    // Selecting costs as much as listing: once a slice, the newest camera,
    // which is where selecting after every reply would end as well.
    if (newestRow >= 0) {
        for (QTableWidget *table : deviceTables())
            table->selectRow(newestRow);
    }
    if (!queuedReplies.isEmpty()) {
        listingQueued = true;
        // A timer, not a queued call: the window's own timers run between
        // slices (queued calls could follow each other in one pass).
        QTimer::singleShot(1, Qt::PreciseTimer, this, &MainWindow::listQueuedReplies);
    } else {
        scheduleFindings();
    }
}

QString MainWindow::WinbondDataHandle(QString hex, QString key)
{
    return veltor::winbondDataHandle(hex, key);
}

int MainWindow::listWinbondReply(const QByteArray &datagram, const QHostAddress &source)
{
    const QString hex = QString::fromLatin1(datagram.toHex());
    winbondReplies.append(hex);
    if (hex.size() <= veltor::kWinbondShortReplyHexChars)
        return -1;
    const std::optional<veltor::DeviceRecord> record = veltor::winbondRecordFromHex(hex);
    if (!record)
        return -1;
    const std::optional<int> row = admitDeviceRow(*record);
    if (!row)
        return -1;
    lockState[record->ip] = QStringLiteral("lock");
    for (QTableWidget *table : deviceTables()) {
        table->insertRow(*row);
        for (int column = 0; column < veltor::DeviceRecord::kColumnCount; ++column)
            setCell(table, *row, column, record->column(column));
    }
    noteListedCamera(*record, veltor::kWinbondFamily, source);
    return *row;
}

int MainWindow::listHdsReply(const QByteArray &datagram, const QHostAddress &source)
{
    const QString text = veltor::hdsReplyText(datagram);
    hdsReplies.append(text);
    std::optional<veltor::DeviceRecord> record = veltor::hdsRecordFromText(text);
    if (!record)
        return -1;
    const std::optional<int> row = admitDeviceRow(*record);
    if (!row)
        return -1;
    if (record->name.isEmpty())
        record->name = tr("Unnamed");
    const QList<QTableWidget *> tables = deviceTables();
    for (QTableWidget *table : tables)
        table->insertRow(*row);
    auto fillColumn = [&](int column) {
        for (QTableWidget *table : tables)
            setCell(table, *row, column, record->column(column));
    };
    fillColumn(0);
    deviceIds[record->mac] = record->deviceId;
    fillColumn(1);
    lockState[record->ip] = QStringLiteral("lock");
    for (int column = 2; column < veltor::DeviceRecord::kColumnCount; ++column)
        fillColumn(column);
    noteListedCamera(*record, veltor::kHaisiFamily, source);
    return *row;
}

std::optional<int> MainWindow::admitDeviceRow(const veltor::DeviceRecord &record)
{
    const QTableWidget *table = ui->tableWidgetSearch_1;
    // Rows put in or taken out by anyone else: learn the table anew.
    if (listedCameras.size() != table->rowCount()) {
        listedCameras.clear();
        for (int row = 0; row < table->rowCount(); ++row) {
            const QTableWidgetItem *ip = table->item(row, 1);
            const QTableWidgetItem *mac = table->item(row, 3);
            listedCameras.admit(mac ? mac->text() : QString(),
                                veltor::ipToKey(ip ? ip->text() : QString()));
        }
    }
    return listedCameras.admit(record.mac, veltor::ipToKey(record.ip));
}

QList<QTableWidget *> MainWindow::deviceTables() const
{
    return {ui->tableWidgetSearch_1, ui->tableWidgetSearch_2, ui->tableWidgetSearch_3,
            ui->tableWidgetSearch_4};
}

void MainWindow::enlargeReceiveBuffers()
{
    for (QUdpSocket *receiver : {binaryReceiver, multicastReceiver})
        receiver->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption,
                                  veltor::kReceiveBufferBytes);
}

void MainWindow::on_automaticSearchBox_toggled(bool checked)
{
    if (checked) {
        // A new timer per check; the first search runs one interval later.
        autoSearchTimer = new QTimer(this);
        connect(autoSearchTimer, &QTimer::timeout, this, &MainWindow::on_searchButton_clicked);
        autoSearchTimer->start(veltor::kAutoSearchIntervalMs);
    } else if (autoSearchTimer) {
        autoSearchTimer->stop();
    }
}

void MainWindow::sleep(unsigned int msec)
{
    veltor::waitProcessingEvents(msec, veltor::kMaxEventSliceMs);
}
