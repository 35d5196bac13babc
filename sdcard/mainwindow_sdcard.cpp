#include "app/mainwindow.h"

#include "ui_mainwindow.h"

// TODO(sdcard): the SD card tab lands with the SD card feature.
void MainWindow::mycellClickedSdmanager(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_4, row, column);
}
void MainWindow::receiveCamSdCard(QStringList) {}
void MainWindow::postSdCardStatus(QString, QString, QString, QString) {}
void MainWindow::checkSdCardMountedReply(QNetworkReply *) {}
void MainWindow::on_viewFilesBtn_clicked() {}
QString MainWindow::getSDCardDataHandle(QString text)
{
    return text.split(QLatin1Char('"')).value(1);
}
