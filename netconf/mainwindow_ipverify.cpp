#include "app/mainwindow.h"

#include "discovery/protocolconstants.h"
#include "ui_mainwindow.h"

#include <QMessageBox>

namespace {

// Tests shorten the reboot wait through this variable; users get the designed timing.
unsigned rebootStep(unsigned designedMs)
{
    bool ok = false;
    const int override = qEnvironmentVariableIntValue("VELTOR_REBOOT_STEP_MS", &ok);
    return ok && override >= 0 ? unsigned(override) : designedMs;
}

} // namespace

void MainWindow::WinbondRebootProgressBar()
{
    rebootProgress(rebootStep(veltor::kWinbondRebootStepMs));
}

void MainWindow::HaisiRebootProgressBar()
{
    rebootProgress(rebootStep(veltor::kHaisiRebootStepMs));
}

void MainWindow::rebootProgress(unsigned stepMs)
{
    QElapsedTimer waited;
    waited.start();
    // Disabled, not blocked: replies keep arriving while the camera restarts,
    // and the changed camera is searched for meanwhile.
    setEnabled(false);
    ui->progressBar->setValue(0);
    watchChange();
    sleep(stepMs);
    for (int value = 1; value <= 100; ++value) {
        ui->progressBar->setValue(value);
        watchChange();
        sleep(stepMs);
    }
    ui->progressBar->setValue(0);
    waitForChangedCamera();
    // Enabled before the box, so its button can be pressed.
    setEnabled(true);
    reportChange(waited.elapsed());
}

// Looks for the changed camera in the replies stored so far and, while it has
// not shown its new settings, searches again now and then. Replies are
// listed by the search as usual; a nested search that empties the stored
// replies only makes the watch read them from the start.
void MainWindow::watchChange()
{
    if (!changeWatch || changeWatch->look(winbondReplies, hdsReplies))
        return;
    if (lastWatchSearch.isValid() && lastWatchSearch.elapsed() < veltor::kChangeSearchIntervalMs)
        return;
    searchHaddle();
    lastWatchSearch.start();
}

// A camera that comes back a little later than the progress promised is
// still waited for, a while.
void MainWindow::waitForChangedCamera()
{
    QElapsedTimer grace;
    grace.start();
    while (changeWatch && !changeWatch->verified() && grace.elapsed() < veltor::kChangeGraceMs) {
        watchChange();
        sleep(veltor::kChangeLookMs);
    }
    if (changeWatch)
        changeWatch->look(winbondReplies, hdsReplies);
}

void MainWindow::reportChange(qint64 waitedMs)
{
    const std::optional<veltor::ChangeWatch> watch = std::exchange(changeWatch, std::nullopt);
    lastWatchSearch.invalidate();
    if (!watch || watch->verified()) {
        QMessageBox::information(this, tr("IP Configure"),
                                 tr("IP Config Successful! Please search again!"));
        return;
    }
    const QString what = watch->answered() ? watch->differences().join(QStringLiteral(", "))
                                           : tr("it did not answer the searches");
    QMessageBox::warning(this, tr("IP Configure"),
                         tr("The camera was not seen with the new settings after %1 s: %2")
                             .arg(QString::number(qRound(waitedMs / 1000.0)), what));
}
