#include "cli/cliargs.h"

#include <QTextStream>

namespace veltor::cli {

namespace {

// QCommandLineParser names the program by its path in the usage line; the
// reader wants the command as typed.
QString helpText(const QCommandLineParser &parser, const QString &command)
{
    QString text = parser.helpText();
    const QString usage = QStringLiteral("Usage: ");
    const int end = text.indexOf(QStringLiteral(" [options]"));
    if (text.startsWith(usage) && end > 0)
        text.replace(usage.size(), end - usage.size(), QStringLiteral("veltor-cli ") + command);
    return text;
}

} // namespace

std::optional<int> parseOrStop(QCommandLineParser &parser, const QStringList &arguments,
                               const QString &description, Io io)
{
    const QString command = arguments.value(0);
    parser.setApplicationDescription(description);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    parser.addOption(help);
    // QCommandLineParser takes the first entry as the program's name.
    if (!parser.parse(QStringList{QStringLiteral("veltor-cli ") + command} + arguments.mid(1)))
        return usageError(command, parser.errorText(), io);
    if (parser.isSet(help)) {
        io.out << helpText(parser, command);
        return Success;
    }
    return std::nullopt;
}

int usageError(const QString &command, const QString &message, Io io)
{
    io.err << "veltor-cli " << command << ": " << message << '\n'
           << "Try \"veltor-cli " << command << " --help\".\n";
    return Usage;
}

std::optional<int> intOption(const QCommandLineParser &parser, const QString &command,
                             const QString &name, int fallback, int min, int max, Io io)
{
    if (!parser.isSet(name))
        return fallback;
    bool ok = false;
    const int value = parser.value(name).toInt(&ok);
    if (ok && value >= min && value <= max)
        return value;
    usageError(command,
               QStringLiteral("--%1 wants a number from %2 to %3, not \"%4\"")
                   .arg(name)
                   .arg(min)
                   .arg(max)
                   .arg(parser.value(name)),
               io);
    return std::nullopt;
}

} // namespace veltor::cli
