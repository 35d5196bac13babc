#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// veltor-cli run as a script runs it: no terminal, the password in
// $VELTOR_PASSWORD.
struct CliRun
{
    int exitCode = -1; // -1: it crashed or did not end in time; -2: it showed the password
    QString out;
    QString err;
};

CliRun runCli(const QStringList &arguments, const QString &password = QString(),
              int timeoutMs = 120000);

QString sha256Hex(const QByteArray &bytes);
bool writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path); // empty when unreadable
