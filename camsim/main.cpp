#include "camsim/fleet.h"

#include <QCoreApplication>
#include <QTextStream>
#include <csignal>
#include <sys/resource.h>

namespace {

// A camera takes three descriptors (HTTP, and UDP for each protocol it speaks);
// a thousand of them outgrow the usual soft limit.
void raiseDescriptorLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

void quitOnSignal(int)
{
    QCoreApplication::quit();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    veltor::camsim::FleetOptions options;
    QString error;
    if (!veltor::camsim::parseFleetOptions(app.arguments(), &options, &error)) {
        err << error << '\n';
        return app.arguments().contains(QStringLiteral("--help")) ? 0 : 2;
    }
    QVector<veltor::camsim::CameraSettings> settings;
    if (!veltor::camsim::makeCameraSettings(options, &settings, &error)) {
        err << "veltor-camsim: " << error << '\n';
        return 2;
    }
    if (options.listAddresses) {
        QTextStream out(stdout);
        for (const auto &camera : qAsConst(settings))
            out << camera.ip << '\n';
        return 0;
    }
    raiseDescriptorLimit();
    veltor::camsim::Fleet fleet(options);
    if (!fleet.start(&error)) {
        err << "veltor-camsim: " << error << '\n';
        return 1;
    }
    if (!options.statusFile.isEmpty() && !fleet.writeStatusFile(options.statusFile, &error)) {
        err << "veltor-camsim: " << error << '\n';
        return 1;
    }
    std::signal(SIGTERM, quitOnSignal);
    std::signal(SIGINT, quitOnSignal);
    err << "veltor-camsim: " << fleet.cameras().size() << " cameras ready\n";
    err.flush();
    return app.exec();
}
