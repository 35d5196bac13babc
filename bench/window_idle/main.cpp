// CPU used by the main window while it only waits: one search that nobody
// answers, and the Winbond reboot progress at its designed step. Prints CPU
// seconds against wall seconds for each; run through run.sh, which puts it in
// a private network namespace so the search cannot leave this machine.
#include "app/mainwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTextStream>
#include <QTimer>
#include <functional>
#include <sys/resource.h>

namespace {

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &t) { return double(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
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
