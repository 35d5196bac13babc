#pragma once

#include "cli/commands.h"

#include <QCommandLineParser>
#include <optional>

namespace veltor::cli {

// Parses `arguments` (the command's name first) with the options already on
// `parser`. Gives an exit code when the command is to stop here: Success after
// --help (the help on out), Usage after a parse error (message and hint on err).
std::optional<int> parseOrStop(QCommandLineParser &parser, const QStringList &arguments,
                               const QString &description, Io io);

// Prints "veltor-cli COMMAND: message" and the --help hint; gives Usage.
int usageError(const QString &command, const QString &message, Io io);

// The value of an integer option within [min, max], or `fallback` when absent.
// Empty with a usage message on err when the value is not such a number.
std::optional<int> intOption(const QCommandLineParser &parser, const QString &command,
                             const QString &name, int fallback, int min, int max, Io io);

} // namespace veltor::cli
