#include "app/aboutdialog.h"
#include "app/mainwindow.h"

#include <QDesktopServices>
#include <QUrl>

namespace {
const char kOnlineHelpUrl[] = "https://www.veltor.example/support/camera-tool/";
}

void MainWindow::on_actionFull_toggled(bool arg1)
{
    if (arg1)
        showFullScreen();
    else
        showNormal();
}

void MainWindow::on_actionAbout_triggered()
{
    // A new box each time; it stays a child of the window until the program ends.
    auto *about = new aboutDialog(this);
    about->setWindowTitle(tr("About VELTOR Camera Tool"));
    about->setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    about->exec();
}

void MainWindow::on_actionOnline_triggered()
{
    QDesktopServices::openUrl(QUrl(QLatin1String(kOnlineHelpUrl)));
}
