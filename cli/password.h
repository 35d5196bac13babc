#pragma once

#include "cli/commands.h"

#include <QCommandLineParser>
#include <QString>
#include <optional>

namespace veltor::cli {

struct Credentials
{
    QString user;
    QString password;
};

// Adds --user and --password-file. Passwords are never taken from the
// command line, where other users see them in the process list.
void addCredentialOptions(QCommandLineParser &parser);

// The password, in this order: the first line of --password-file, the
// environment variable VELTOR_PASSWORD, a prompt without echo when standard
// input is a terminal. Empty with `error` set when none gives one.
std::optional<QString> readPassword(const QString &passwordFile, Io io, QString *error);

// User from --user (required) and the password as above. Empty after
// printing the reason: `*exitCode` is Usage or Failure.
std::optional<Credentials> credentialsFrom(const QCommandLineParser &parser, const QString &command,
                                           Io io, int *exitCode);

} // namespace veltor::cli
