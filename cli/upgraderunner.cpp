#include "cli/upgraderunner.h"

#include "cli/logincheck.h"
#include "cli/search.h"
#include "cli/upgradetargets.h"
#include "update/uploadjob.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

namespace veltor::cli {

namespace {

constexpr int kIdleSliceMs = 200;
constexpr int kVerifySearchWaitMs = 1500;
constexpr int kVerifyIntervalMs = 2000;

void idle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

UpgradeRunner::UpgradeRunner(UpgradeRun &run, const QHash<int, SeenCamera> &cameras,
                             const UpgradeOptions &options, Io io)
    : run(run), cameras(cameras), options(options), io(io)
{
}

void UpgradeRunner::exec()
{
    QString error;
    if (!saveState(options.statePath, run, &error)) {
        saveFailed = true;
        io.err << "veltor-cli upgrade: " << error << '\n';
    }
    startUploads();
    QElapsedTimer sinceSearch;
    sinceSearch.start();
    while (active > 0 || count(TargetState::Queued) > 0 ||
           count(TargetState::WaitingForReboot) > 0) {
        if (count(TargetState::WaitingForReboot) > 0 &&
            sinceSearch.elapsed() >= kVerifyIntervalMs) {
            verifyWaiting();
            sinceSearch.restart();
        } else {
            idle(kIdleSliceMs);
        }
    }
    printUploadFigures();
}

void UpgradeRunner::printUploadFigures()
{
    if (!uploading.isValid())
        return;
    const double mib = double(uploadsSent) * QFileInfo(options.file).size() / (1 << 20);
    io.err << QStringLiteral("uploads: %1 sent, %2 MiB of file in %3 s (%4 MiB/s)\n")
                  .arg(uploadsSent)
                  .arg(mib, 0, 'f', 1)
                  .arg(uploadingMs / 1000.0, 0, 'f', 2)
                  .arg(uploadingMs ? mib * 1000 / uploadingMs : 0.0, 0, 'f', 1);
}

void UpgradeRunner::startUploads()
{
    for (int i = 0; i < run.targets.size() && active < options.parallel; ++i) {
        if (run.targets.at(i).state == TargetState::Queued)
            begin(i);
    }
}

// The camera's own credential check first, as the window asks before its
// Update tab opens; a refusal ends the target without a byte sent.
void UpgradeRunner::begin(int index)
{
    ++active;
    setState(index, TargetState::Uploading, QStringLiteral("checking credentials"));
    auto *check = new LoginCheck(this);
    connect(check, &LoginCheck::finished, this, [this, index, check](LoginVerdict verdict) {
        check->deleteLater();
        const QString message = loginMessage(verdict, cameras.value(index));
        if (verdict == LoginVerdict::Refused) {
            uploaded(index, false, message);
            return;
        }
        if (!message.isEmpty())
            io.err << run.targets.at(index).mac << ": " << message << '\n';
        upload(index);
    });
    check->start(cameras.value(index), options.credentials);
}

void UpgradeRunner::upload(int index)
{
    const SeenCamera camera = cameras.value(index);
    UploadTarget target;
    target.family = camera.family;
    target.kind = options.kind;
    target.ip = camera.record.ip;
    target.port = camera.record.port;
    target.user = options.credentials.user;
    target.password = options.credentials.password;
    if (!uploading.isValid())
        uploading.start();
    auto *job = new UploadJob(target, options.file, this);
    connect(job, &UploadJob::finished, this, [this, index, job](bool sent, const QString &error) {
        job->deleteLater();
        uploaded(index, sent, error);
    });
    setState(index, TargetState::Uploading);
    job->start();
}

void UpgradeRunner::uploaded(int index, bool sent, const QString &error)
{
    --active;
    if (uploading.isValid())
        uploadingMs = uploading.elapsed();
    if (!sent) {
        setState(index, TargetState::Failed, error);
        startUploads();
        return;
    }
    ++uploadsSent;
    setState(index, TargetState::Sent);
    if (!options.expectVersion.isEmpty()) {
        sentAt[index].start();
        setState(index, TargetState::WaitingForReboot);
    }
    startUploads();
}

// One search for all cameras that are restarting; each is judged by the
// version it reports under its MAC.
void UpgradeRunner::verifyWaiting()
{
    const FleetSearchResult result =
        searchAllInterfaces(QStringLiteral("upgrade"), 1, kVerifySearchWaitMs, io);
    for (int i = 0; i < run.targets.size(); ++i) {
        if (run.targets.at(i).state != TargetState::WaitingForReboot)
            continue;
        if (const SeenCamera *seen = findByMac(result.cameras, run.targets.at(i).mac)) {
            const QString version = reportedVersion(seen->record, options.kind);
            run.targets[i].ip = seen->record.ip;
            if (version == options.expectVersion) {
                setState(i, TargetState::Verified, version);
                continue;
            }
            run.targets[i].detail = QStringLiteral("reports %1").arg(version);
        }
        expire(i);
    }
}

void UpgradeRunner::expire(int index)
{
    if (sentAt.value(index).elapsed() < options.rebootSeconds * 1000LL)
        return;
    const QString seen = run.targets.at(index).detail;
    setState(index, TargetState::Failed,
             QStringLiteral("not verified within %1 s: %2")
                 .arg(options.rebootSeconds)
                 .arg(seen.isEmpty() ? QStringLiteral("not seen again") : seen));
}

void UpgradeRunner::setState(int index, TargetState state, const QString &detail)
{
    UpgradeTarget &target = run.targets[index];
    target.state = state;
    target.detail = detail;
    const int width = QString::number(run.targets.size()).size();
    io.err << QStringLiteral("[%1/%2] %3 %4 %5 %6")
                  .arg(index + 1, width)
                  .arg(run.targets.size())
                  .arg(target.mac, -17)
                  .arg(target.ip, -15)
                  .arg(target.family, -7)
                  .arg(stateName(state))
           << (detail.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(detail)) << '\n';
    io.err.flush();
    QString error;
    if (!saveState(options.statePath, run, &error) && !saveFailed) {
        saveFailed = true; // said once; the run goes on without a way back in
        io.err << "veltor-cli upgrade: " << error << '\n';
    }
}

int UpgradeRunner::count(TargetState state) const
{
    return int(std::count_if(run.targets.cbegin(), run.targets.cend(),
                             [state](const UpgradeTarget &t) { return t.state == state; }));
}

} // namespace veltor::cli
