#include "cli/cliargs.h"
#include "cli/commands.h"
#include "cli/search.h"
#include "cli/targets.h"
#include "cli/upgraderunner.h"
#include "discovery/protocolconstants.h"
#include "update/uploadrequest.h"

#include <QFileInfo>
#include <QTextStream>

namespace veltor::cli {

namespace {

const QString kCommand = QStringLiteral("upgrade");
const QString kDefaultStateFile = QStringLiteral("veltor-upgrade-state.json");
constexpr int kSearchRounds = 2;
constexpr int kSearchWaitMs = 1500;

void addUpgradeOptions(QCommandLineParser &parser)
{
    parser.addPositionalArgument(QStringLiteral("TARGET"),
                                 QStringLiteral("Cameras by MAC or IP address."),
                                 QStringLiteral("[TARGET...]"));
    parser.addOptions({
        {QStringLiteral("firmware"), QStringLiteral("Upload a firmware image.")},
        {QStringLiteral("webui"), QStringLiteral("Upload a web interface.")},
        {QStringLiteral("file"), QStringLiteral("The file to upload."), QStringLiteral("F")},
        {QStringLiteral("all-family"),
         QStringLiteral("Every camera of a family that answers: Haisi or Winbond."),
         QStringLiteral("FAMILY")},
        {QStringLiteral("only-failed"),
         QStringLiteral("Take up the targets of an earlier run's state file that did not end "
                        "verified (sent, without --expect-version)."),
         QStringLiteral("STATEFILE")},
        {QStringLiteral("parallel"), QStringLiteral("Uploads at once (default 4)."),
         QStringLiteral("N")},
        {QStringLiteral("expect-version"),
         QStringLiteral("Search again after the reboot until each camera reports V."),
         QStringLiteral("V")},
        {QStringLiteral("reboot-timeout"),
         QStringLiteral("Seconds a camera may take to report the version (default 300)."),
         QStringLiteral("S")},
        {QStringLiteral("state-file"),
         QStringLiteral("Where each target's state is kept (default %1, or the --only-failed "
                        "file).")
             .arg(kDefaultStateFile),
         QStringLiteral("FILE")},
    });
    addCredentialOptions(parser);
}

// Exactly one way of naming the targets.
QString targetProblem(const QCommandLineParser &parser)
{
    const int ways = int(!parser.positionalArguments().isEmpty()) +
                     int(parser.isSet(QStringLiteral("all-family"))) +
                     int(parser.isSet(QStringLiteral("only-failed")));
    if (ways == 0)
        return QStringLiteral("no targets: give MACs or IPs, --all-family or --only-failed");
    if (ways > 1)
        return QStringLiteral("targets, --all-family and --only-failed exclude each other");
    const QString family = parser.value(QStringLiteral("all-family"));
    if (parser.isSet(QStringLiteral("all-family")) &&
        family.compare(QLatin1String(kHaisiFamily), Qt::CaseInsensitive) != 0 &&
        family.compare(QLatin1String(kWinbondFamily), Qt::CaseInsensitive) != 0)
        return QStringLiteral("--all-family wants Haisi or Winbond, not \"%1\"").arg(family);
    return QString();
}

// The options that need no network, or empty after a usage message.
std::optional<UpgradeOptions> optionsFrom(const QCommandLineParser &parser, Io io)
{
    const bool firmware = parser.isSet(QStringLiteral("firmware"));
    if (firmware == parser.isSet(QStringLiteral("webui"))) {
        usageError(kCommand, QStringLiteral("give one of --firmware and --webui"), io);
        return std::nullopt;
    }
    const QString problem = parser.value(QStringLiteral("file")).isEmpty()
                                ? QStringLiteral("--file is required")
                                : targetProblem(parser);
    if (!problem.isEmpty()) {
        usageError(kCommand, problem, io);
        return std::nullopt;
    }
    UpgradeOptions options;
    options.kind = firmware ? FirmwareUpdate : WebUiUpdate;
    options.file = parser.value(QStringLiteral("file"));
    options.expectVersion = parser.value(QStringLiteral("expect-version"));
    const std::optional<int> parallel =
        intOption(parser, kCommand, QStringLiteral("parallel"), 4, 1, 64, io);
    const std::optional<int> reboot =
        intOption(parser, kCommand, QStringLiteral("reboot-timeout"), 300, 1, 3600, io);
    if (!parallel || !reboot)
        return std::nullopt;
    options.parallel = *parallel;
    options.rebootSeconds = *reboot;
    options.statePath = parser.value(QStringLiteral("state-file"));
    if (options.statePath.isEmpty())
        options.statePath = parser.isSet(QStringLiteral("only-failed"))
                                ? parser.value(QStringLiteral("only-failed"))
                                : kDefaultStateFile;
    return options;
}

UpgradeTarget targetFor(const QString &name, const SeenCamera *camera)
{
    UpgradeTarget target;
    target.target = name;
    if (camera) {
        target.mac = camera->record.mac;
        target.ip = camera->record.ip;
        target.family = camera->family;
    } else {
        target.state = TargetState::Failed;
        target.detail = QStringLiteral("did not answer the search");
    }
    return target;
}

const SeenCamera *findTarget(const QVector<SeenCamera> &cameras, const QString &name)
{
    QStringList missing;
    const QVector<SeenCamera> chosen = selectTargets(cameras, {name}, &missing);
    if (chosen.isEmpty())
        return nullptr;
    return findByMac(cameras, chosen.constFirst().record.mac);
}

// Fills `run` with the targets named by the command line and `found` with
// their cameras; targets already done in the state file keep their entries.
bool collectTargets(const QCommandLineParser &parser, const QVector<SeenCamera> &seen,
                    UpgradeRun *run, QHash<int, SeenCamera> *found, Io io)
{
    const bool verifying = !run->expectVersion.isEmpty();
    QStringList names = parser.positionalArguments();
    if (parser.isSet(QStringLiteral("all-family"))) {
        for (const SeenCamera &camera :
             selectFamily(seen, parser.value(QStringLiteral("all-family"))))
            names << camera.record.mac;
        if (names.isEmpty()) {
            io.err << "veltor-cli upgrade: no " << parser.value(QStringLiteral("all-family"))
                   << " camera answered the search\n";
            return false;
        }
    }
    QVector<UpgradeTarget> earlier;
    if (parser.isSet(QStringLiteral("only-failed"))) {
        QString error;
        const std::optional<UpgradeRun> loaded =
            loadState(parser.value(QStringLiteral("only-failed")), &error);
        if (!loaded) {
            io.err << "veltor-cli upgrade: " << error << '\n';
            return false;
        }
        earlier = loaded->targets;
    }
    for (const UpgradeTarget &target : qAsConst(earlier)) {
        if (isDone(target, verifying))
            run->targets << target;
        else
            names << (target.mac.isEmpty() ? target.target : target.mac);
    }
    QSet<QString> macs;
    for (const QString &name : qAsConst(names)) {
        const SeenCamera *camera = findTarget(seen, name);
        if (camera && macs.contains(camera->record.mac))
            continue; // named twice, by MAC and by address
        if (camera) {
            macs << camera->record.mac;
            found->insert(run->targets.size(), *camera);
        }
        run->targets << targetFor(name, camera);
    }
    return true;
}

std::optional<int> checkFile(const QString &path, Io io)
{
    const QFileInfo info(path);
    if (info.isFile() && info.isReadable())
        return std::nullopt;
    io.err << "veltor-cli upgrade: cannot read the file " << path << '\n';
    return Failure;
}

} // namespace

int runUpgrade(const QStringList &arguments, Io io)
{
    QCommandLineParser parser;
    addUpgradeOptions(parser);
    if (const std::optional<int> stop = parseOrStop(
            parser, arguments,
            QStringLiteral("Uploads a firmware image or web interface to cameras, a few at a time, "
                           "and can check the version they report after their restart."),
            io))
        return *stop;
    std::optional<UpgradeOptions> options = optionsFrom(parser, io);
    if (!options)
        return Usage;
    int exitCode = Success;
    const std::optional<Credentials> credentials = credentialsFrom(parser, kCommand, io, &exitCode);
    if (!credentials)
        return exitCode;
    options->credentials = *credentials;
    if (const std::optional<int> unreadable = checkFile(options->file, io))
        return *unreadable;

    UpgradeRun run;
    run.kind =
        options->kind == FirmwareUpdate ? QStringLiteral("firmware") : QStringLiteral("webui");
    run.file = QFileInfo(options->file).absoluteFilePath();
    run.expectVersion = options->expectVersion;
    QHash<int, SeenCamera> cameras;
    const FleetSearchResult found = searchAllInterfaces(kSearchRounds, kSearchWaitMs, io);
    if (!collectTargets(parser, found.cameras, &run, &cameras, io))
        return Failure;
    UpgradeRunner(run, cameras, *options, io).exec();
    io.out << summaryTable(run);
    io.out << "state: " << options->statePath << '\n';
    const bool verifying = !run.expectVersion.isEmpty();
    const bool allDone =
        std::all_of(run.targets.cbegin(), run.targets.cend(),
                    [verifying](const UpgradeTarget &t) { return isDone(t, verifying); });
    return allDone ? Success : Failure;
}

} // namespace veltor::cli
