#include "app/mainwindow.h"

#include "ui_mainwindow.h"

void MainWindow::mycellClickedIpConf(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_2, row, column);
    const QTableWidgetItem *ipItem = ui->tableWidgetSearch_2->item(row, 1);
    const QString ip = ipItem ? ipItem->text() : QString();
    checkIpLock(ip);
    showStoredCamera(storedCamera(ip));
    if (lockState.value(ip) == QLatin1String("lock"))
        askCredentials(ip, &MainWindow::receiveCamConfIp);
    else
        requestSdCardStatus(ip);
}

void MainWindow::receiveCamConfIp(QStringList cameraStatus)
{
    acceptCredentials(ui->ipFixEdit->text(), cameraStatus);
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
