#include "cli/cliargs.h"
#include "cli/commands.h"
#include "cli/targets.h"
#include "cli/upgraderunner.h"
#include "cli/upgradetargets.h"
#include "discovery/protocolconstants.h"
#include "update/uploadrequest.h"

#include <QFileInfo>
#include <QTextStream>

namespace veltor::cli {

namespace {

const QString kCommand = QStringLiteral("upgrade");
const QString kDefaultStateFile = QStringLiteral("veltor-upgrade-state.json");

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
        {QStringLiteral("search-time"),
         QStringLiteral("Seconds to keep searching for targets that have not answered "
                        "(default 10)."),
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
    const std::optional<int> search =
        intOption(parser, kCommand, QStringLiteral("search-time"), 10, 1, 3600, io);
    if (!parallel || !reboot || !search)
        return std::nullopt;
    options.searchSeconds = *search;
    options.parallel = *parallel;
    options.rebootSeconds = *reboot;
    options.statePath = parser.value(QStringLiteral("state-file"));
    if (options.statePath.isEmpty())
        options.statePath = parser.isSet(QStringLiteral("only-failed"))
                                ? parser.value(QStringLiteral("only-failed"))
                                : kDefaultStateFile;
    return options;
}

// Targets named on the command line or left over in the state file, each
// with its camera; empty after printing why there are none.
std::optional<QVector<UpgradeTarget>> collectTargets(const QCommandLineParser &parser,
                                                     const UpgradeRun &run, int searchSeconds,
                                                     QHash<int, SeenCamera> *cameras, Io io)
{
    QVector<UpgradeTarget> earlier;
    if (parser.isSet(QStringLiteral("only-failed"))) {
        QString error;
        const std::optional<UpgradeRun> loaded =
            loadState(parser.value(QStringLiteral("only-failed")), &error);
        if (!loaded) {
            io.err << "veltor-cli upgrade: " << error << '\n';
            return std::nullopt;
        }
        if (loaded->kind != run.kind) {
            io.err << "veltor-cli upgrade: the state file is of a " << loaded->kind
                   << " upgrade, not of a " << run.kind << " upgrade\n";
            return std::nullopt;
        }
        earlier = loaded->targets;
    }
    QStringList names =
        parser.positionalArguments() + namesToRedo(earlier, !run.expectVersion.isEmpty());
    const QString family = parser.value(QStringLiteral("all-family"));
    // A state file with every target done needs no search.
    const QVector<SeenCamera> seen = names.isEmpty() && family.isEmpty()
                                         ? QVector<SeenCamera>()
                                         : searchUntilFound(names, searchSeconds, io);
    if (!family.isEmpty()) {
        for (const SeenCamera &camera : selectFamily(seen, family))
            names << camera.record.mac;
        if (names.isEmpty()) {
            io.err << "veltor-cli upgrade: no " << family << " camera answered the search\n";
            return std::nullopt;
        }
    }
    return planTargets(names, earlier, seen, run, cameras);
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
            QStringLiteral(
                "Uploads a firmware image or web interface to cameras, a few at a time,\n"
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
    const std::optional<QVector<UpgradeTarget>> targets =
        collectTargets(parser, run, options->searchSeconds, &cameras, io);
    if (!targets)
        return Failure;
    run.targets = *targets;
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
