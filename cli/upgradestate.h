#pragma once

#include <QString>
#include <QVector>
#include <optional>

// What an upgrade run knows of each target, kept in a JSON file that is
// rewritten at every change, so an interrupted run can be taken up again with
// --only-failed. It holds no user name and no password.
namespace veltor::cli {

enum class TargetState { Queued, Uploading, Sent, WaitingForReboot, Verified, Failed };

// "queued", "uploading", "sent", "waiting for reboot", "verified", "failed".
QString stateName(TargetState state);
std::optional<TargetState> stateFromName(const QString &name);

struct UpgradeTarget
{
    QString target; // as named on the command line, or the MAC for --all-family
    QString mac;    // empty while the camera has not been found
    QString ip;
    QString family;
    TargetState state = TargetState::Queued;
    QString detail; // the version read back, or why it failed
};

struct UpgradeRun
{
    QString kind; // "firmware" or "webui"
    QString file;
    QString expectVersion; // empty: no verification after the reboot
    QVector<UpgradeTarget> targets;
};

// Done for good: verified, or sent when the run does not verify. Everything
// else is taken again by --only-failed.
bool isDone(const UpgradeTarget &target, bool verifying);

QByteArray stateJson(const UpgradeRun &run);
// Empty with `error` set for anything that is not such a file.
std::optional<UpgradeRun> runFromJson(const QByteArray &json, QString *error);

// Written whole or not at all (QSaveFile), so a kill never leaves half a file.
bool saveState(const QString &path, const UpgradeRun &run, QString *error);
std::optional<UpgradeRun> loadState(const QString &path, QString *error);

// One line per target and a count of each state, for the end of a run.
QString summaryTable(const UpgradeRun &run);

} // namespace veltor::cli
