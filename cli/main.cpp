#include "cli/commands.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("veltor-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELTOR_VERSION));
    return veltor::cli::run(QCoreApplication::arguments());
}
