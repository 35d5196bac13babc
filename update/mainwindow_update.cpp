#include "app/mainwindow.h"

#include "ui_mainwindow.h"

// TODO(update): the update tab and the upload stream land with the firmware feature.
void MainWindow::mycellClickedUpdate(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_3, row, column);
}
void MainWindow::receiveCamUpdate(QStringList) {}
void MainWindow::on_fileChoose_clicked() {}
void MainWindow::on_updateSubmit_clicked() {}
void MainWindow::on_selectBox_currentIndexChanged(int) {}
void MainWindow::startTransfer() {}
void MainWindow::updateClientProgress(qint64) {}
void MainWindow::displayError(QAbstractSocket::SocketError) {}
