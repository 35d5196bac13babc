// CPU used by the main window while it only waits: one search that nobody
// answers, and the Winbond reboot progress at its designed step. Prints CPU
// seconds against wall seconds for each; run through run.sh, which puts it in
// a private network namespace so the search cannot leave this machine.
#include "app/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTextStream>
#include <QTimer>
#include <functional>

namespace {

// CPU time of every thread of the process, from the scheduler's own account
// (nanoseconds): getrusage samples at the clock tick, and a program woken by
// timers tends to be running at the tick, so it would count too much.
double cpuSeconds()
{
    qint64 nanoseconds = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile schedstat(tasks.filePath(task + QStringLiteral("/schedstat")));
        if (schedstat.open(QIODevice::ReadOnly))
            nanoseconds += schedstat.readAll().split(' ').value(0).toLongLong();
    }
    return nanoseconds / 1e9;
}

void measure(QTextStream &out, const char *what, const std::function<void()> &wait)
{
    const double cpuBefore = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    wait();
    const double wallSeconds = wall.elapsed() / 1000.0;
    const double cpu = cpuSeconds() - cpuBefore;
    out << qSetFieldWidth(34) << Qt::left << what << qSetFieldWidth(0) << "wall "
        << QString::number(wallSeconds, 'f', 2) << " s, CPU " << QString::number(cpu, 'f', 3)
        << " s (" << QString::number(100.0 * cpu / wallSeconds, 'f', 2) << "% of one core)\n";
    out.flush();
}

// The final message box of the reboot progress is modal; close it as it opens.
void closeBoxesAsTheyOpen(QObject *parent)
{
    auto *timer = new QTimer(parent);
    QObject::connect(timer, &QTimer::timeout, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->accept();
    });
    timer->start(200);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    if (qEnvironmentVariableIsSet("VELTOR_NETNS_UNAVAILABLE")) {
        out << "window_idle: " << qgetenv("VELTOR_NETNS_UNAVAILABLE") << '\n';
        return 77;
    }
    MainWindow window;
    window.show();
    closeBoxesAsTheyOpen(&window);
    // The first layout and paint are not waiting.
    measure(out, "settling after show:", [&] { window.sleep(1000); });
    measure(out, "search, nobody answering:", [&] {
        QMetaObject::invokeMethod(&window, "on_searchButton_clicked");
    });
    measure(out, "Winbond reboot progress:", [&] { window.WinbondRebootProgressBar(); });
    return 0;
}
