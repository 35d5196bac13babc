#include "app/mainwindow.h"

#include "auth/usercheckdialog.h"

QString MainWindow::base64_encode(QString text)
{
    return QString::fromLatin1(text.toUtf8().toBase64());
}

void MainWindow::askCredentials(const QString &ip, const QString &port, const QString &family,
                                void (MainWindow::*receiver)(QStringList))
{
    auto *dialog = new userCheckDialog(this);
    dialog->setNetwork(getNetwork());
    dialog->setData(QStringList{ip, port, family});
    dialog->setWindowTitle(tr("Authentication required"));
    dialog->setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    connect(dialog, &userCheckDialog::sendData, this, receiver);
    dialog->exec();
    // Typed credentials should not linger in a hidden dialog.
    dialog->deleteLater();
}
