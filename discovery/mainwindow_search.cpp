#include "app/mainwindow.h"

#include "discovery/protocolconstants.h"
#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QTime>
#include <QTimer>

// TODO(discovery): search rounds and reply handling land with the search feature.
void MainWindow::on_searchButton_clicked() {}
void MainWindow::searchHaddle() {}
void MainWindow::processPendingDatagram() {}
QString MainWindow::WinbondDataHandle(QString, QString) { return QString(); }

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
    const QTime deadline = QTime::currentTime().addMSecs(int(msec));
    while (QTime::currentTime() < deadline)
        QCoreApplication::processEvents(QEventLoop::AllEvents, veltor::kMaxEventSliceMs);
}
