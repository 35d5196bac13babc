#include "app/mainwindow.h"

#include "ui_mainwindow.h"

void MainWindow::mycellClickedIpConf(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_2, row, column);
    const QTableWidgetItem *ipItem = ui->tableWidgetSearch_2->item(row, 1);
    const QString ip = ipItem ? ipItem->text() : QString();
    checkIpLock(ip);
    // Fills all three tabs from the stored replies and keeps a locked camera's
    // fields shut whatever its DHCP flag.
    showStoredCamera(ip);
    if (lockState.value(ip) == QLatin1String("lock"))
        askCredentials(ip, cameraPort, cameraFamily, &MainWindow::receiveCamConfIp);
    else
        requestSdCardStatus(ip);
}

void MainWindow::receiveCamConfIp(QStringList cameraStatus)
{
    const QString key = ui->ipFixEdit->text();
    for (int i = 0; i < 4; ++i)
        cameraCredentials.insert(key, cameraStatus.value(i));
    lockState[key] = QStringLiteral("unlock");
    // The update and SD card tabs open for the same camera.
    enableUnlockedControls();
    requestSdCardStatus(key);
}

void MainWindow::on_dhcpCheckbox_toggled(bool checked)
{
    for (QWidget *field : {ui->ipaddress, ui->subnet, ui->gateway, ui->dns})
        field->setEnabled(!checked);
}

void MainWindow::ipConf_right_frame_disable()
{
    // A new search must leave no camera of the earlier list changeable. The box
    // is unchecked first: its toggled slot would enable the address fields again.
    ui->dhcpCheckbox->setChecked(false);
    for (QLineEdit *field : {ui->ipaddress, ui->subnet, ui->gateway, ui->dns, ui->httpport}) {
        field->setEnabled(false);
        field->clear();
    }
    ui->dhcpCheckbox->setEnabled(false);
    ui->dhcpsubmit->setEnabled(false);
    for (QWidget *control :
         {static_cast<QWidget *>(ui->selectBox), static_cast<QWidget *>(ui->fileEdit),
          static_cast<QWidget *>(ui->fileChoose), static_cast<QWidget *>(ui->updateSubmit)})
        control->setEnabled(false);
    ui->selectBox->setCurrentIndex(0);
    ui->versionEdit->clear();
    ui->fileEdit->clear();
    ui->viewFilesBtn->setEnabled(false);
}
