#include "cli/upgradetargets.h"

#include "cli/search.h"
#include "cli/targets.h"
#include "update/uploadrequest.h"

#include <QDeadlineTimer>
#include <QSet>

namespace veltor::cli {

namespace {

constexpr int kSearchRounds = 2;
constexpr int kSearchWaitMs = 1500;

const SeenCamera *findTarget(const QVector<SeenCamera> &cameras, const QString &name)
{
    QStringList missing;
    const QVector<SeenCamera> chosen = selectTargets(cameras, {name}, &missing);
    return chosen.isEmpty() ? nullptr : findByMac(cameras, chosen.constFirst().record.mac);
}

void mergeByMac(QVector<SeenCamera> *into, const QVector<SeenCamera> &cameras)
{
    for (const SeenCamera &camera : cameras) {
        const SeenCamera *known = findByMac(*into, camera.record.mac);
        if (known)
            (*into)[int(known - into->constData())] = camera;
        else
            into->append(camera);
    }
}

// An earlier upload that went through and a camera that shows its version.
bool alreadyTaken(const UpgradeTarget &earlier, const SeenCamera &camera, const UpgradeRun &run)
{
    const bool uploaded =
        earlier.state == TargetState::Sent || earlier.state == TargetState::WaitingForReboot;
    const int kind = run.kind == QLatin1String("webui") ? WebUiUpdate : FirmwareUpdate;
    return uploaded && !run.expectVersion.isEmpty() &&
           reportedVersion(camera.record, kind) == run.expectVersion;
}

UpgradeTarget targetFor(const QString &name, const SeenCamera *camera)
{
    UpgradeTarget target;
    target.target = name;
    if (!camera) {
        target.state = TargetState::Failed;
        target.detail = QStringLiteral("did not answer the search");
        return target;
    }
    target.mac = camera->record.mac;
    target.ip = camera->record.ip;
    target.family = camera->family;
    return target;
}

} // namespace

QString reportedVersion(const DeviceRecord &record, int kind)
{
    return kind == WebUiUpdate ? record.webui : record.firmware;
}

QVector<SeenCamera> searchUntilFound(const QStringList &names, int seconds, Io io)
{
    const QDeadlineTimer deadline(seconds * 1000LL);
    QVector<SeenCamera> seen;
    QStringList missing;
    do {
        mergeByMac(&seen,
                   searchAllInterfaces(QStringLiteral("upgrade"), kSearchRounds, kSearchWaitMs, io)
                       .cameras);
        missing.clear();
        selectTargets(seen, names, &missing);
    } while (!missing.isEmpty() && !deadline.hasExpired());
    return seen;
}

QStringList namesToRedo(const QVector<UpgradeTarget> &earlier, bool verifying)
{
    QStringList names;
    for (const UpgradeTarget &target : earlier) {
        if (!isDone(target, verifying))
            names << (target.mac.isEmpty() ? target.target : target.mac);
    }
    return names;
}

QVector<UpgradeTarget> planTargets(const QStringList &names, const QVector<UpgradeTarget> &earlier,
                                   const QVector<SeenCamera> &seen, const UpgradeRun &run,
                                   QHash<int, SeenCamera> *cameras)
{
    const bool verifying = !run.expectVersion.isEmpty();
    QVector<UpgradeTarget> targets;
    QSet<QString> macs;
    for (const QString &name : names) {
        const SeenCamera *camera = findTarget(seen, name);
        if (camera && macs.contains(camera->record.mac))
            continue;
        UpgradeTarget target = targetFor(name, camera);
        if (camera) {
            macs << camera->record.mac;
            const auto before = std::find_if(earlier.cbegin(), earlier.cend(), [&](const auto &t) {
                return t.mac == camera->record.mac;
            });
            if (before != earlier.cend() && alreadyTaken(*before, *camera, run)) {
                target.state = TargetState::Verified;
                target.detail = run.expectVersion;
            } else {
                cameras->insert(targets.size(), *camera);
            }
        }
        targets << target;
    }
    for (const UpgradeTarget &target : earlier) {
        if (isDone(target, verifying))
            targets << target;
    }
    return targets;
}

} // namespace veltor::cli
