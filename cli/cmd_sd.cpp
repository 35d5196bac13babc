#include "cli/cliargs.h"
#include "cli/commands.h"

namespace veltor::cli {

int runSd(const QStringList &arguments, Io io)
{
    QCommandLineParser parser;
    if (const std::optional<int> stop =
            parseOrStop(parser, arguments, QStringLiteral("Not built yet."), io))
        return *stop;
    return usageError(arguments.value(0), QStringLiteral("not built yet"), io);
}

} // namespace veltor::cli
