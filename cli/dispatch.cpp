#include "cli/commands.h"

#include <QTextStream>

namespace veltor::cli {

namespace {

struct Command
{
    const char *name;
    int (*run)(const QStringList &, Io);
    const char *summary;
};

constexpr Command kCommands[] = {
    {"discover", runDiscover, "find cameras on every interface that can broadcast"},
    {"set", runSet, "change a camera's network settings"},
    {"upgrade", runUpgrade, "upload firmware or a web interface to cameras"},
    {"sd", runSd, "SD card status, listing, download and format"},
};

void printOverview(QTextStream &stream)
{
    stream << "Usage: veltor-cli COMMAND [OPTIONS]\n"
              "Finds and manages VELTOR network cameras from scripts.\n\nCommands:\n";
    for (const Command &command : kCommands)
        stream << QStringLiteral("  %1 %2\n")
                      .arg(QLatin1String(command.name), -10)
                      .arg(QLatin1String(command.summary));
    stream << "\n\"veltor-cli COMMAND --help\" describes a command.\n"
              "Exit status: 0 done, 1 failed, 2 bad usage.\n";
}

} // namespace

int run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    return run(arguments, Io{out, err});
}

int run(const QStringList &arguments, Io io)
{
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        printOverview(io.out);
        return Success;
    }
    if (name == QLatin1String("--version")) {
        io.out << "veltor-cli " << VELTOR_VERSION << '\n';
        return Success;
    }
    for (const Command &command : kCommands) {
        if (name == QLatin1String(command.name))
            return command.run(arguments.mid(1), io);
    }
    if (name.isEmpty())
        io.err << "veltor-cli: a command is missing\n\n";
    else
        io.err << "veltor-cli: unknown command \"" << name << "\"\n\n";
    printOverview(io.err);
    return Usage;
}

} // namespace veltor::cli
