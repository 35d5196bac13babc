// How fast the window lists a burst of camera replies, and whether any is lost.
// Sends broadcasts and multicasts, so it only runs inside a private network
// namespace:
//   sh tests/discovery/in-private-netns.sh build/bench/bench_search_burst [cameras]
#include "app/mainwindow.h"
#include "discovery/hdsreply.h"
#include "discovery/protocolconstants.h"
#include "discovery/winbondreply.h"
#include "replybuilder.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QTableWidget>
#include <QUdpSocket>
#include <cstdio>

namespace {

bool inPrivateNamespace()
{
    if (!qEnvironmentVariableIsEmpty("VELTOR_NETNS_UNAVAILABLE"))
        return false;
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces()) {
        if (!interface.flags().testFlag(QNetworkInterface::IsLoopBack))
            return false;
    }
    return true;
}

// Camera i: even ones answer the binary search, odd ones HDS/1.0.
QByteArray cameraReply(int i)
{
    const int a = (i >> 8) & 0xff, b = i & 0xff;
    if (i % 2 == 0) {
        replybuilder::WinbondFields fields;
        fields.ip = {10, 1, a, b};
        fields.mac = QStringLiteral("W%1").arg(i, 11, 10, QLatin1Char('0')).toLatin1();
        return replybuilder::winbondReply(fields);
    }
    return replybuilder::hdsCamera(QStringLiteral("10.2.%1.%2").arg(a).arg(b),
                                   QStringLiteral("H%1").arg(i));
}

void benchParsers()
{
    const QByteArray binary = cameraReply(0);
    const QByteArray hds = cameraReply(1);
    const int runs = 100000;
    QElapsedTimer clock;
    clock.start();
    int parsed = 0;
    for (int i = 0; i < runs; ++i)
        parsed += veltor::parseWinbondReply(binary).has_value();
    const qint64 binaryNs = clock.nsecsElapsed();
    clock.restart();
    for (int i = 0; i < runs; ++i)
        parsed += veltor::parseHdsReply(hds).has_value();
    const qint64 hdsNs = clock.nsecsElapsed();
    std::printf("parse binary reply: %.2f us each\n", binaryNs / 1000.0 / runs);
    std::printf("parse HDS reply:    %.2f us each (%d parsed)\n", hdsNs / 1000.0 / runs, parsed);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int cameras = argc > 1 ? QByteArray(argv[1]).toInt() : 1000;
    benchParsers();
    if (!inPrivateNamespace()) {
        std::printf("burst skipped: not in a private network namespace "
                    "(run through tests/discovery/in-private-netns.sh)\n");
        return 0;
    }

    MainWindow window;
    auto *table = window.findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_1"));
    QUdpSocket sender;
    const QHostAddress group(QLatin1String(veltor::kHdsGroup));
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < cameras; ++i) {
        if (i % 2 == 0)
            sender.writeDatagram(cameraReply(i), QHostAddress::Broadcast,
                                 veltor::kBinarySearchPort);
        else
            sender.writeDatagram(cameraReply(i), group, veltor::kHdsPort);
    }
    const qint64 sentMs = clock.elapsed();
    while (table->rowCount() < cameras && clock.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    const qint64 listedMs = clock.elapsed();
    std::printf("burst of %d replies: sent in %lld ms, %d listed after %lld ms, %d lost\n", cameras,
                static_cast<long long>(sentMs), table->rowCount(), static_cast<long long>(listedMs),
                cameras - table->rowCount());
    return 0;
}
