#include "app/mainwindow.h"

#include "netconf/validators.h"
#include "ui_mainwindow.h"

int MainWindow::IPtoInt(QString *dotted)
{
    return veltor::ipToKey(*dotted);
}

bool MainWindow::checkIp(QString text)
{
    return veltor::checkIp(text);
}

bool MainWindow::checkSubnet(QString text)
{
    return veltor::checkSubnet(text);
}

bool MainWindow::checkGateway(QString text)
{
    return veltor::checkGateway(text);
}

bool MainWindow::checkDns(QString text)
{
    return veltor::checkDns(text);
}

bool MainWindow::checkPort(QString text)
{
    return veltor::checkPort(text);
}

bool MainWindow::isNum(QString text)
{
    return veltor::isNum(text);
}

bool MainWindow::isAddr(QString text)
{
    return veltor::isAddr(text);
}

bool MainWindow::appendWinbondIP(QStringList ipValues, QByteArray *data, int start)
{
    return veltor::appendWinbondIP(ipValues, data, start);
}

void MainWindow::checkIpLock(QString ip)
{
    // One lock word per camera governs the controls of all three working tabs.
    const bool unlocked = lockState.value(ip) == QLatin1String("unlock");
    if (!unlocked) {
        for (QWidget *field : {ui->ipaddress, ui->subnet, ui->gateway, ui->dns})
            field->setEnabled(false);
    }
    for (QWidget *control :
         {static_cast<QWidget *>(ui->dhcpCheckbox), static_cast<QWidget *>(ui->httpport),
          static_cast<QWidget *>(ui->dhcpsubmit), static_cast<QWidget *>(ui->selectBox),
          static_cast<QWidget *>(ui->fileEdit), static_cast<QWidget *>(ui->fileChoose),
          static_cast<QWidget *>(ui->updateSubmit), static_cast<QWidget *>(ui->viewFilesBtn)})
        control->setEnabled(unlocked);
}
