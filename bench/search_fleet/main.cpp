// One search of the real main window (offscreen) against a large simulated
// fleet; run through run.sh, which starts the fleet in the namespace harness.
// Prints rows listed, lost and doubled, how long after the fleet's last reply
// of the first round the last row was listed, the window's longest stall
// while listing, and the tool's peak RSS.
#include "app/mainwindow.h"
#include "camsimfleet.h"
#include "probe.h"

#include <QApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QSet>
#include <QTableWidget>
#include <QTextStream>
#include <QTimer>
#include <algorithm>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QString why;
    const QVector<camsimfleet::Camera> fleet = camsimfleet::load(&why);
    if (fleet.isEmpty()) {
        out << "search_fleet: " << why << '\n';
        return 77;
    }
    const qint64 rssBefore = peakRssKb();
    MainWindow window;
    window.show();
    auto *table = window.findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_1"));
    QVector<qint64> rowTimes;
    QObject::connect(table->model(), &QAbstractItemModel::rowsInserted,
                     [&] { rowTimes << QDateTime::currentMSecsSinceEpoch(); });

    // The window's first layout and paint are not listing.
    QEventLoop shown;
    QTimer::singleShot(500, &shown, &QEventLoop::quit);
    shown.exec();
    StallMeter stalls;
    const qint64 started = QDateTime::currentMSecsSinceEpoch();
    QMetaObject::invokeMethod(&window, "on_searchButton_clicked");
    // Late replies are still handled after the rounds.
    QEventLoop settle;
    QTimer::singleShot(2000, &settle, &QEventLoop::quit);
    settle.exec();

    QSet<QString> listed;
    int doubled = 0;
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *mac = table->item(row, 3);
        if (mac && listed.contains(mac->text()))
            ++doubled;
        else if (mac)
            listed.insert(mac->text());
    }
    int lost = 0;
    for (const camsimfleet::Camera &camera : fleet)
        lost += listed.contains(camera.mac) ? 0 : 1;

    const QJsonObject stats = camsimfleet::fetchJson(fleet.first(), "/camsim/fleet", 20000);
    const QJsonArray rounds = stats.value("rounds").toArray();
    const qint64 firstRoundLastReply =
        rounds.isEmpty() ? 0 : qint64(rounds.first().toObject().value("lastReplyMs").toDouble());
    const qint64 lastRowMs = rowTimes.isEmpty() ? 0 : rowTimes.last();
    // Replies lost to a full receive buffer in one round come back in the next.
    const qint64 round2 =
        rounds.size() > 1 ? qint64(rounds.at(1).toObject().value("firstSearchMs").toDouble()) : 0;
    out << "cameras in the fleet:              " << fleet.size() << '\n'
        << "rows listed:                       " << table->rowCount() << '\n'
        << "cameras lost:                      " << lost << '\n'
        << "cameras listed twice:              " << doubled << '\n'
        << "rows listed before round 2 began:  "
        << std::count_if(rowTimes.begin(), rowTimes.end(), [&](qint64 t) { return t < round2; })
        << '\n'
        << "search rounds seen by the fleet:   " << rounds.size() << '\n'
        << "replies sent by the fleet:         " << stats.value("repliesSent").toInt() << '\n'
        << "first round, search to last reply: "
        << (rounds.isEmpty()
                ? 0
                : firstRoundLastReply -
                      qint64(rounds.first().toObject().value("firstSearchMs").toDouble()))
        << " ms\n"
        << "last reply of round 1 to last row: " << lastRowMs - firstRoundLastReply << " ms\n"
        << "search start to last row:          " << lastRowMs - started << " ms\n"
        << "window's longest stall:            " << stalls.longestStallMs() << " ms\n"
        << "tool peak RSS:                     " << peakRssKb()
        << " KiB (before the window: " << rssBefore << " KiB)\n"
        << "simulator peak RSS:                " << stats.value("peakRssKb").toInt() << " KiB\n";
    return lost == 0 && doubled == 0 ? 0 : 1;
}
