#include "app/mainwindow.h"

QString MainWindow::base64_encode(QString text)
{
    return QString::fromLatin1(text.toUtf8().toBase64());
}
