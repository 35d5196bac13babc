#pragma once

#include <QStringList>

class QTextStream;

namespace veltor::cli {

// Exit status of every command.
enum ExitCode { Success = 0, Failure = 1, Usage = 2 };

// Where a command writes: results to `out`, progress and diagnostics to `err`.
struct Io
{
    QTextStream &out;
    QTextStream &err;
};

// `arguments` as main() gets them: the program, the command, its options.
int run(const QStringList &arguments);
int run(const QStringList &arguments, Io io);

// Each command gets its own name first, then its options.
int runDiscover(const QStringList &arguments, Io io);
int runSet(const QStringList &arguments, Io io);
int runUpgrade(const QStringList &arguments, Io io);
int runSd(const QStringList &arguments, Io io);

} // namespace veltor::cli
