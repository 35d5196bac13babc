#include "app/mainwindow.h"

#include "ui_mainwindow.h"
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
    showStoredCamera(storedCamera(ip));
    if (lockState.value(ip) == QLatin1String("lock")) {
        ui->fileEdit->clear();
        askCredentials(ip, &MainWindow::receiveCamUpdate);
    } else {
        requestSdCardStatus(ip);
    }
}

void MainWindow::receiveCamUpdate(QStringList cameraStatus)
{
    acceptCredentials(ui->iplabel->text(), cameraStatus);
}

void MainWindow::on_selectBox_currentIndexChanged(int index)
{
    ui->versionEdit->setText(
        veltor::versionByLineForKind(storedCamera(ui->iplabel->text()), index));
}

void MainWindow::on_fileChoose_clicked()
{
    const QString family = newestLogin(ui->iplabel->text()).family;
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
    const quint16 port = newestLogin(ip).port.toUShort();
    tcpClient->abort();
    tcpClient->connectToHost(ip, port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    ui->updateSubmit->setEnabled(false);
}
