#include "app/mainwindow.h"

#include "ui_mainwindow.h"
#include "update/storedcamera.h"
#include "update/uploadrequest.h"

#include <QDir>
#include <QFileDialog>
#include <QTcpSocket>

// The Update tab: choosing and unlocking a camera, the kind and the file, and
// the connection that starts the upload (the stream itself is in
// mainwindow_upload.cpp).

QStringList MainWindow::newestCredentials(const QString &ip) const
{
    // Values come back newest first: family, port, password, user of the latest check.
    return cameraCredentials.values(ip).mid(0, 4);
}

void MainWindow::mycellClickedUpdate(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_3, row, column);
    const QTableWidgetItem *ipItem = ui->tableWidgetSearch_3->item(row, 1);
    const QString ip = ipItem ? ipItem->text() : QString();
    checkIpLock(ip);
    showStoredCamera(ip);

    if (lockState.value(ip) == QLatin1String("lock")) {
        ui->fileEdit->clear();
        askUpdateCredentials(ip);
    } else {
        requestSdCardStatus(ip);
    }
}

void MainWindow::showStoredCamera(const QString &ip)
{
    const veltor::StoredCamera camera = veltor::findStoredCamera(
        winbondReplies, hdsReplies, ip,
        [this](const QString &hex, const QString &key) { return WinbondDataHandle(hex, key); });
    if (camera.family.isEmpty())
        return;
    cameraFamily = camera.family;
    cameraPort = camera.port;
    ui->ipFixEdit->setText(camera.ip);
    ui->ipaddress->setText(camera.ip);
    ui->iplabel->setText(camera.ip);
    ui->ipFixSd->setText(camera.ip);
    ui->subnet->setText(camera.subnet);
    ui->gateway->setText(camera.gateway);
    ui->dns->setText(camera.dns);
    ui->httpport->setText(camera.port);
    if (camera.dhcp == QLatin1String("0") || camera.dhcp == QLatin1String("1"))
        ui->dhcpCheckbox->setChecked(camera.dhcp == QLatin1String("1"));
    ui->versionEdit->setText(veltor::versionForKind(camera, ui->selectBox->currentIndex()));

    // Setting the box runs its toggled slot, which must not open the address
    // fields of a camera that is still locked.
    if (lockState.value(ip) == QLatin1String("unlock"))
        on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    else
        checkIpLock(ip);
}

void MainWindow::askUpdateCredentials(const QString &ip)
{
    askCredentials(ip, cameraPort, cameraFamily, &MainWindow::receiveCamUpdate);
}

void MainWindow::receiveCamUpdate(QStringList cameraStatus)
{
    const QString ip = ui->iplabel->text();
    for (int i = 0; i < 4; ++i)
        cameraCredentials.insert(ip, cameraStatus.value(i));
    lockState.insert(ip, QStringLiteral("unlock"));
    enableUnlockedControls();
    requestSdCardStatus(ip);
}

void MainWindow::enableUnlockedControls()
{
    ui->dhcpCheckbox->setEnabled(true);
    const bool manual = !ui->dhcpCheckbox->isChecked();
    for (QWidget *field : {ui->ipaddress, ui->subnet, ui->gateway, ui->dns})
        field->setEnabled(manual);
    for (QWidget *control :
         {static_cast<QWidget *>(ui->httpport), static_cast<QWidget *>(ui->dhcpsubmit),
          static_cast<QWidget *>(ui->selectBox), static_cast<QWidget *>(ui->fileEdit),
          static_cast<QWidget *>(ui->fileChoose), static_cast<QWidget *>(ui->updateSubmit),
          static_cast<QWidget *>(ui->viewFilesBtn)})
        control->setEnabled(true);
}

void MainWindow::requestSdCardStatus(const QString &ip)
{
    const QStringList camera = newestCredentials(ip);
    sdInfoCache.clear();
    postSdCardStatus(ip, camera.value(3), camera.value(2), camera.value(1));
}

void MainWindow::on_selectBox_currentIndexChanged(int index)
{
    const veltor::StoredCamera camera = veltor::findStoredCamera(
        winbondReplies, hdsReplies, ui->iplabel->text(),
        [this](const QString &hex, const QString &key) { return WinbondDataHandle(hex, key); });
    ui->versionEdit->setText(veltor::versionByLineForKind(camera, index));
}

void MainWindow::on_fileChoose_clicked()
{
    const QString family = newestCredentials(ui->iplabel->text()).value(0);
    const int kind = ui->selectBox->currentIndex();
    QString filter;
    if (kind == veltor::FirmwareUpdate || kind == veltor::WebUiUpdate) {
        // The filter follows the family only: both kinds come as one file type.
        if (family == QLatin1String(veltor::kWinbondFamily))
            filter = tr("Firmware Files(*.bin)");
        else if (family == QLatin1String(veltor::kHaisiFamily))
            filter = tr("Firmware Files(*.pkg)");
    }
    QString path;
    if (!filter.isEmpty())
        path = QFileDialog::getOpenFileName(this, tr("Open File"), QDir::currentPath(), filter);
    ui->fileEdit->setText(path);
}

void MainWindow::on_updateSubmit_clicked()
{
    bytesWritten = 0;
    const QString ip = ui->iplabel->text();
    const quint16 port = newestCredentials(ip).value(1).toUShort();
    tcpClient->abort();
    tcpClient->connectToHost(ip, port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    ui->updateSubmit->setEnabled(false);
}
