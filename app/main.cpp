#include "app/mainwindow.h"
#include "app/startup.h"

#include <QApplication>
#include <QLocale>

int main(int argc, char *argv[])
{
    // The language is chosen from the system locale before the application exists.
    const QStringList uiLanguages = QLocale::system().uiLanguages();
    QApplication app(argc, argv);
    veltor::initResources();
    if (veltor::installTranslation(uiLanguages) != 0)
        return -1;
    MainWindow window;
    window.show();
    return app.exec();
}
