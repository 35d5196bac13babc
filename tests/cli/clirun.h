#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// veltor-cli run as a user runs it, the password in $VELTOR_PASSWORD.
struct CliRun
{
    int exitCode = -1; // -1: it crashed or did not end in time
    QString out;
    QString err;
};

CliRun runCli(const QStringList &arguments, const QString &password, int timeoutMs);
