// Hostile cameras against the real main window (offscreen) in the namespace
// harness; run through run.sh. One row per scenario: result, the window's
// longest stall, the tool's peak RSS, whether user files suffered. An
// argument, a regular expression, picks scenarios by name ("flood|upload").
#include "app/mainwindow.h"
#include "app/startup.h"
#include "scenarios.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTextStream>
#include <algorithm>
#include <functional>

namespace {

using Scenario = std::function<Outcome()>;

// Every scenario by name, in the order they run.
QVector<QPair<QString, Scenario>> scenarios(Harness &harness)
{
    QVector<QPair<QString, Scenario>> all{{"udp sizes", [&] { return udpSizes(harness); }},
                                          {"udp flood", [&] { return replyFlood(harness); }}};
    for (const char *mode :
         {"never", "drip", "garbage", "cut", "401", "500", "redirect", "noequals", "noquotes"})
        all.append({QStringLiteral("sd status ") + mode,
                    [&harness, mode] { return sdStatus(harness, QLatin1String(mode)); }});
    for (const char *mode : {"never", "garbage", "cut", "401", "500", "redirect"})
        all.append({QStringLiteral("credentials ") + mode,
                    [&harness, mode] { return credentials(harness, QLatin1String(mode)); }});
    for (const char *mode : {"millionlines", "longlines", "garbage"})
        all.append({QStringLiteral("sd listing ") + mode,
                    [&harness, mode] { return sdListing(harness, QLatin1String(mode)); }});
    all.append({"upload reset", [&] { return uploadReset(harness); }});
    all.append({"sd download cut", [&] { return sdDownloadCut(harness); }});
    return all;
}

// The scenarios whose name matches `filter`, a regular expression.
QVector<Outcome> runAll(Harness &harness, const QString &filter)
{
    const QRegularExpression wanted(filter);
    QVector<Outcome> rows;
    for (const auto &scenario : scenarios(harness)) {
        if (scenario.first.contains(wanted))
            rows << scenario.second();
    }
    return rows;
}

void print(const QVector<Outcome> &rows)
{
    QTextStream out(stdout);
    out << QStringLiteral("%1 | %2 | %3 | %4 | %5 | %6\n")
               .arg("scenario", -40)
               .arg("result", -36)
               .arg("stall ms", 8)
               .arg("peak RSS KiB", 12)
               .arg("files lost", -10)
               .arg("note");
    for (const Outcome &row : rows) {
        out << QStringLiteral("%1 | %2 | %3 | %4 | %5 | %6\n")
                   .arg(row.scenario, -40)
                   .arg(row.result, -36)
                   .arg(row.stallMs, 8)
                   .arg(row.rssKb, 12)
                   .arg(row.files, -10)
                   .arg(row.note.simplified().left(120));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    veltor::initResources();
    QString why;
    const QVector<camsimfleet::Camera> fleet = camsimfleet::load(&why);
    if (fleet.isEmpty()) {
        QTextStream(stderr) << "hostile-matrix: " << why << '\n';
        return 77;
    }
    MainWindow window;
    window.show();
    Harness harness(&window, fleet);
    harness.search();
    if (!Harness::waitFor([&] { return harness.searchTable->rowCount() == fleet.size(); }, 15000)) {
        QTextStream(stderr) << "hostile-matrix: the fleet was not listed\n";
        return 1;
    }
    const QVector<Outcome> rows = runAll(harness, app.arguments().value(1));
    print(rows);
    return std::all_of(rows.begin(), rows.end(),
                       [](const Outcome &row) { return row.result == QLatin1String("ok"); })
               ? 0
               : 1;
}
