#include "cli/upgradestate.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSaveFile>

namespace veltor::cli {

namespace {

constexpr qint64 kLongestStateFile = 16 << 20;

const char *const kStateNames[] = {"queued",   "uploading", "sent", "waiting for reboot",
                                   "verified", "failed"};

QJsonObject targetJson(const UpgradeTarget &target)
{
    return QJsonObject{{QStringLiteral("target"), target.target},
                       {QStringLiteral("mac"), target.mac},
                       {QStringLiteral("ip"), target.ip},
                       {QStringLiteral("family"), target.family},
                       {QStringLiteral("state"), stateName(target.state)},
                       {QStringLiteral("detail"), target.detail}};
}

std::optional<UpgradeTarget> targetFromJson(const QJsonObject &json)
{
    UpgradeTarget target;
    target.target = json.value(QStringLiteral("target")).toString();
    target.mac = json.value(QStringLiteral("mac")).toString();
    target.ip = json.value(QStringLiteral("ip")).toString();
    target.family = json.value(QStringLiteral("family")).toString();
    target.detail = json.value(QStringLiteral("detail")).toString();
    const std::optional<TargetState> state =
        stateFromName(json.value(QStringLiteral("state")).toString());
    if (!state || (target.target.isEmpty() && target.mac.isEmpty()))
        return std::nullopt;
    target.state = *state;
    return target;
}

} // namespace

QString stateName(TargetState state)
{
    return QLatin1String(kStateNames[int(state)]);
}

std::optional<TargetState> stateFromName(const QString &name)
{
    for (int i = 0; i <= int(TargetState::Failed); ++i) {
        if (name == QLatin1String(kStateNames[i]))
            return TargetState(i);
    }
    return std::nullopt;
}

bool isDone(const UpgradeTarget &target, bool verifying)
{
    return target.state == TargetState::Verified ||
           (!verifying && target.state == TargetState::Sent);
}

QByteArray stateJson(const UpgradeRun &run)
{
    QJsonArray targets;
    for (const UpgradeTarget &target : run.targets)
        targets.append(targetJson(target));
    const QJsonObject json{{QStringLiteral("kind"), run.kind},
                           {QStringLiteral("file"), run.file},
                           {QStringLiteral("expectVersion"), run.expectVersion},
                           {QStringLiteral("targets"), targets}};
    return QJsonDocument(json).toJson();
}

std::optional<UpgradeRun> runFromJson(const QByteArray &json, QString *error)
{
    QJsonParseError parseError{};
    const QJsonObject root = QJsonDocument::fromJson(json, &parseError).object();
    const QJsonValue targets = root.value(QStringLiteral("targets"));
    if (parseError.error != QJsonParseError::NoError || !targets.isArray()) {
        *error = parseError.error != QJsonParseError::NoError
                     ? QStringLiteral("not JSON: %1").arg(parseError.errorString())
                     : QStringLiteral("no list of targets");
        return std::nullopt;
    }
    UpgradeRun run;
    run.kind = root.value(QStringLiteral("kind")).toString();
    run.file = root.value(QStringLiteral("file")).toString();
    run.expectVersion = root.value(QStringLiteral("expectVersion")).toString();
    for (const QJsonValue &value : targets.toArray()) {
        const std::optional<UpgradeTarget> target = targetFromJson(value.toObject());
        if (!target) {
            *error = QStringLiteral("target %1 has no name or an unknown state")
                         .arg(run.targets.size() + 1);
            return std::nullopt;
        }
        run.targets << *target;
    }
    return run;
}

bool saveState(const QString &path, const UpgradeRun &run, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(stateJson(run)) >= 0 && file.commit())
        return true;
    *error = QStringLiteral("cannot write the state file %1: %2").arg(path, file.errorString());
    return false;
}

std::optional<UpgradeRun> loadState(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read the state file %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    if (file.size() > kLongestStateFile) {
        *error = QStringLiteral("the state file %1 is too large to be one").arg(path);
        return std::nullopt;
    }
    QString why;
    std::optional<UpgradeRun> run = runFromJson(file.readAll(), &why);
    if (!run)
        *error = QStringLiteral("the state file %1 is damaged: %2").arg(path, why);
    return run;
}

QString summaryTable(const UpgradeRun &run)
{
    QString table = QStringLiteral("%1 %2 %3 %4 %5\n")
                        .arg(QStringLiteral("MAC"), -17)
                        .arg(QStringLiteral("IP"), -15)
                        .arg(QStringLiteral("FAMILY"), -7)
                        .arg(QStringLiteral("STATE"), -18)
                        .arg(QStringLiteral("DETAIL"));
    QMap<int, int> counts;
    for (const UpgradeTarget &target : run.targets) {
        ++counts[int(target.state)];
        table += QStringLiteral("%1 %2 %3 %4 %5\n")
                     .arg(target.mac.isEmpty() ? target.target : target.mac, -17)
                     .arg(target.ip.isEmpty() ? QStringLiteral("-") : target.ip, -15)
                     .arg(target.family.isEmpty() ? QStringLiteral("-") : target.family, -7)
                     .arg(stateName(target.state), -18)
                     .arg(target.detail);
    }
    QStringList totals;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        totals << QStringLiteral("%1 %2").arg(it.value()).arg(stateName(TargetState(it.key())));
    return table + totals.join(QStringLiteral(", ")) + QLatin1Char('\n');
}

} // namespace veltor::cli
