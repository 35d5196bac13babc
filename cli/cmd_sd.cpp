#include "cli/cliargs.h"
#include "cli/commands.h"
#include "cli/findcamera.h"
#include "cli/password.h"
#include "cli/sdactions.h"
#include "cli/targets.h"
#include "discovery/protocolconstants.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QTextStream>

namespace veltor::cli {

namespace {

const char kDescription[] =
    "The SD card of a camera: its status, its folders, copies of them, formatting.\n"
    "\n"
    "  veltor-cli sd status --user U TARGET\n"
    "  veltor-cli sd ls [PATH] --user U TARGET\n"
    "  veltor-cli sd get PATH DEST --user U TARGET\n"
    "  veltor-cli sd format --yes --user U TARGET\n"
    "\n"
    "TARGET is the camera's MAC or IP address; a search finds its family and HTTP\n"
    "port. PATH is / (the card), a day folder (20261123), one of its sub-folders\n"
    "(20261123/images001) or a file in one. get copies a folder with everything\n"
    "below it into DEST, made when missing; a file arrives whole or not at all,\n"
    "and files already in DEST are kept unless --overwrite is given.\n"
    "Exit status: 0 done, 1 failed (also: no card, or a file not fetched), 2 bad usage.";

// Action, and how many words it takes between itself and TARGET.
struct Action
{
    const char *name;
    int fewest;
    int most;
    int (*run)(const SdJob &, Io);
    const char *synopsis;
};

constexpr Action kActions[] = {
    {"status", 0, 0, showSdStatus, "status TARGET"},
    {"ls", 0, 1, listSdFolder, "ls [PATH] TARGET"},
    {"get", 2, 2, fetchSdPath, "get PATH DEST TARGET"},
    {"format", 0, 0, formatSdCard, "format --yes TARGET"},
};

const Action *findAction(const QString &name)
{
    for (const Action &action : kActions) {
        if (name == QLatin1String(action.name))
            return &action;
    }
    return nullptr;
}

void addSdOptions(QCommandLineParser &parser)
{
    addCredentialOptions(parser);
    parser.addOptions({
        {QStringLiteral("yes"), QStringLiteral("Confirms format: every file on the card is lost.")},
        {QStringLiteral("overwrite"),
         QStringLiteral("get: replace files already in DEST (each once it arrived whole).")},
        {QStringLiteral("format"),
         QStringLiteral("Output of status and ls: text (default) or json."),
         QStringLiteral("FORMAT"), QStringLiteral("text")},
        {QStringLiteral("wait"),
         QStringLiteral("Milliseconds to wait for answers after each search round (100 to "
                        "60000, default 2000)."),
         QStringLiteral("MS"), QStringLiteral("2000")},
    });
    parser.addPositionalArgument(QStringLiteral("action"),
                                 QStringLiteral("status, ls [PATH], get PATH DEST or format"));
    parser.addPositionalArgument(QStringLiteral("TARGET"),
                                 QStringLiteral("The camera's MAC or IP address."));
}

bool isTarget(const QString &text)
{
    QHostAddress address;
    return !normalizedMac(text).isEmpty() ||
           (address.setAddress(text) && address.protocol() == QAbstractSocket::IPv4Protocol);
}

// Everything the words and options say, or the usage error they make.
std::optional<int> readJob(const QCommandLineParser &parser, const Action &action, SdJob *job,
                           Io io)
{
    const QString command = QStringLiteral("sd");
    const QStringList words = parser.positionalArguments().mid(1);
    const int between = words.size() - 1;
    if (between < action.fewest || between > action.most)
        return usageError(
            command,
            QStringLiteral("usage: veltor-cli sd %1 --user U").arg(QLatin1String(action.synopsis)),
            io);
    if (!isTarget(words.last()))
        return usageError(
            command,
            QStringLiteral("\"%1\" is neither a MAC nor an IPv4 address").arg(words.last()), io);
    if (action.run == formatSdCard && !parser.isSet(QStringLiteral("yes")))
        return usageError(command, QStringLiteral("format erases the card; confirm with --yes"),
                          io);
    const QString format = parser.value(QStringLiteral("format"));
    if (format != QLatin1String("text") && format != QLatin1String("json"))
        return usageError(command,
                          QStringLiteral("--format is text or json, not \"%1\"").arg(format), io);
    QString error;
    const std::optional<SdPath> path = parseSdPath(between > 0 ? words.first() : QString(), &error);
    if (!path)
        return usageError(command, error, io);
    if (action.run == listSdFolder && path->depth() > 2)
        return usageError(
            command, QStringLiteral("ls lists folders; \"%1\" names a file").arg(words.first()),
            io);
    job->path = *path;
    job->dest = between > 1 ? words.at(1) : QString();
    job->overwrite = parser.isSet(QStringLiteral("overwrite"));
    job->json = format == QLatin1String("json");
    return std::nullopt;
}

} // namespace

int runSd(const QStringList &arguments, Io io)
{
    QCommandLineParser parser;
    addSdOptions(parser);
    if (const std::optional<int> stop =
            parseOrStop(parser, arguments, QLatin1String(kDescription), io))
        return *stop;
    const QString verb = parser.positionalArguments().value(0);
    const Action *action = findAction(verb);
    if (!action)
        return usageError(QStringLiteral("sd"),
                          verb.isEmpty() ? QStringLiteral("an action is missing")
                                         : QStringLiteral("unknown action \"%1\"").arg(verb),
                          io);
    SdJob job;
    if (const std::optional<int> stop = readJob(parser, *action, &job, io))
        return *stop;
    const std::optional<int> waitMs =
        intOption(parser, QStringLiteral("sd"), QStringLiteral("wait"), 2000, 100, 60000, io);
    if (!waitMs)
        return Usage;
    int exitCode = Success;
    const std::optional<Credentials> credentials =
        credentialsFrom(parser, QStringLiteral("sd"), io, &exitCode);
    if (!credentials)
        return exitCode;
    const std::optional<SeenCamera> camera =
        findCamera(parser.positionalArguments().last(), *waitMs, QStringLiteral("sd"), io);
    if (!camera)
        return Failure;
    if (camera->family == QLatin1String(kWinbondFamily)) {
        io.err << "veltor-cli sd: VGA-Cameras do not support SD cards\n";
        return Failure;
    }
    QNetworkAccessManager manager;
    job.manager = &manager;
    job.camera =
        SdCamera{camera->record.ip, camera->record.port, credentials->user, credentials->password};
    return action->run(job, io);
}

} // namespace veltor::cli
