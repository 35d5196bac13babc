#include "app/mainwindow.h"

#include "auth/usercheckdialog.h"
#include "ui_mainwindow.h"
#include "update/storedversions.h"
#include "update/uploadrequest.h"

#include <QDir>
#include <QFileDialog>
#include <QTcpSocket>

// The Update tab: choosing and unlocking a camera, the kind and the file, and
// the connection that starts the upload (the stream itself is in
// mainwindow_upload.cpp).

void MainWindow::mycellClickedUpdate(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_3, row, column);
    const QTableWidgetItem *ipItem = ui->tableWidgetSearch_3->item(row, 1);
    const QString ip = ipItem ? ipItem->text() : QString();
    checkIpLock(ip);
    // The same reply fills the IP Conf. form: all three tabs name this camera.
    if (!fillFromWinbondReply(ip))
        fillFromHdsReply(ip);
    // Empty for a camera no stored reply names: an older camera's version must not stay.
    ui->versionEdit->setText(veltor::findStoredVersions(winbondReplies, hdsReplies, ip)
                                 .forKind(ui->selectBox->currentIndex()));

    // Filling the DHCP box ran its toggled slot, which must not open the
    // address fields of a camera that is still locked.
    const QString lock = lockState.value(ip);
    if (lock == QLatin1String("unlock"))
        on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    else
        checkIpLock(ip);

    if (lock == QLatin1String("lock")) {
        ui->fileEdit->clear();
        askUpdateCredentials(ip);
    } else {
        requestSdCardStatus(ip);
    }
}

void MainWindow::askUpdateCredentials(const QString &ip)
{
    auto *dialog = new userCheckDialog(this);
    dialog->setNetwork(getNetwork());
    dialog->setData(QStringList{ip, cameraPort, cameraFamily});
    dialog->setWindowTitle(tr("Authentication required"));
    dialog->setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    connect(dialog, &userCheckDialog::sendData, this, &MainWindow::receiveCamUpdate);
    dialog->exec();
    // Typed credentials should not linger in a hidden dialog.
    dialog->deleteLater();
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
    const QStringList credentials = newestCredentials(ip);
    sdInfoCache.clear();
    postSdCardStatus(ip, credentials.value(0), credentials.value(1), credentials.value(2));
}

void MainWindow::on_selectBox_currentIndexChanged(int index)
{
    ui->versionEdit->setText(
        veltor::findStoredVersions(winbondReplies, hdsReplies, ui->iplabel->text())
            .byLineForKind(index));
}

void MainWindow::on_fileChoose_clicked()
{
    const QString family = newestCredentials(ui->iplabel->text()).value(3);
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
    const quint16 port = newestCredentials(ip).value(2).toUShort();
    tcpClient->abort();
    tcpClient->connectToHost(ip, port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    ui->updateSubmit->setEnabled(false);
}
