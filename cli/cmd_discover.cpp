#include "cli/cliargs.h"
#include "cli/commands.h"
#include "cli/discoverreport.h"
#include "discovery/discoveroutput.h"

#include <QTextStream>
#include <algorithm>

namespace veltor::cli {

namespace {

const QString kCommand = QStringLiteral("discover");

const char kDescription[] =
    "Finds cameras with both searches (binary on UDP 10000, HDS/1.0 on 239.255.250.150:8002)\n"
    "on every up IPv4 interface that can broadcast, or on the interfaces given.\n"
    "Cameras are merged by MAC. Findings per camera: ip-conflict (another MAC claims its IP),\n"
    "other-subnet (outside the receiving interface's subnet: change its address to reach it),\n"
    "source-differs (the reply came from another address than the camera claims).\n"
    "Results on stdout, diagnostics on stderr.\n"
    "Exit status: 0 cameras found, 1 none found or the search could not run, 2 bad usage.";

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {"interface", "Search on the interface with this IPv4 address (repeatable).", "ADDR"},
        {"rounds", "Search rounds (1 to 100, default 2).", "N"},
        {"wait", "Milliseconds to wait for replies after each round (0 to 600000, default 2000).",
         "MS"},
        {"format", "Output: table (default), csv or json.", "FORMAT"},
    });
}

// The interfaces named by --interface, or every one that can broadcast.
std::optional<QVector<SearchInterface>> chosenInterfaces(const QCommandLineParser &parser, Io io)
{
    const QStringList given = parser.values(QStringLiteral("interface"));
    if (given.isEmpty())
        return broadcastInterfaces();
    QVector<SearchInterface> chosen;
    for (const QString &text : given) {
        const QHostAddress address(text);
        if (address.protocol() != QAbstractSocket::IPv4Protocol) {
            usageError(kCommand,
                       QStringLiteral("--interface wants an IPv4 address, not \"%1\"").arg(text),
                       io);
            return std::nullopt;
        }
        const std::optional<SearchInterface> found = interfaceWithAddress(address);
        if (!found) {
            usageError(kCommand,
                       QStringLiteral("no interface of this host has the address %1").arg(text),
                       io);
            return std::nullopt;
        }
        if (std::none_of(chosen.cbegin(), chosen.cend(),
                         [&](const SearchInterface &each) { return each.address == address; }))
            chosen << *found;
    }
    return chosen;
}

std::optional<FleetSearchOptions> searchOptions(const QCommandLineParser &parser, Io io)
{
    FleetSearchOptions options;
    const std::optional<int> rounds =
        intOption(parser, kCommand, QStringLiteral("rounds"), options.rounds, 1, 100, io);
    const std::optional<int> wait =
        rounds ? intOption(parser, kCommand, QStringLiteral("wait"), options.waitMs, 0, 600000, io)
               : std::nullopt;
    const auto interfaces = wait ? chosenInterfaces(parser, io) : std::nullopt;
    if (!interfaces)
        return std::nullopt;
    options.rounds = *rounds;
    options.waitMs = *wait;
    options.interfaces = *interfaces;
    return options;
}

} // namespace

int runDiscover(const QStringList &arguments, Io io)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (const std::optional<int> stop =
            parseOrStop(parser, arguments, QLatin1String(kDescription), io))
        return *stop;
    if (!parser.positionalArguments().isEmpty())
        return usageError(
            kCommand,
            QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first()),
            io);
    const QString formatName = parser.isSet(QStringLiteral("format"))
                                   ? parser.value(QStringLiteral("format"))
                                   : QStringLiteral("table");
    const std::optional<OutputFormat> format = outputFormat(formatName);
    if (!format)
        return usageError(
            kCommand,
            QStringLiteral("--format wants table, csv or json, not \"%1\"").arg(formatName), io);
    const std::optional<FleetSearchOptions> options = searchOptions(parser, io);
    if (!options)
        return Usage;
    if (options->interfaces.isEmpty()) {
        io.err << "veltor-cli discover: no IPv4 interface that can broadcast is up; "
                  "name one with --interface ADDR\n";
        return Failure;
    }
    reportInterfaces(io.err, options->interfaces);
    const FleetSearchResult result = searchFleet(*options);
    reportSearch(io.err, result);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    io.out.setEncoding(QStringConverter::Utf8);
#else
    io.out.setCodec("UTF-8");
#endif
    writeDiscoverOutput(io.out, *format, result.cameras);
    return result.cameras.isEmpty() ? Failure : Success;
}

} // namespace veltor::cli
