#pragma once

#include <QFile>
#include <QProcess>
#include <QUrl>

// veltor-cli run as a script runs it: no terminal, the password in $VELTOR_PASSWORD.
struct CliRun
{
    int exitCode = -1; // -1: it crashed or did not end in time; -2: it showed the password
    QString out;
    QString err;
};

inline CliRun runCli(const QStringList &arguments, const QString &password = QString(),
                     int timeoutMs = 120000)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VELTOR_PASSWORD"), password);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStringLiteral(VELTOR_CLI), arguments);
    CliRun run;
    if (!process.waitForFinished(timeoutMs))
        process.kill();
    else if (process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    process.waitForFinished();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    // Whatever happened, the password is nowhere in what the user sees, not even in a URL.
    for (const QString &form : {password, QString::fromLatin1(QUrl::toPercentEncoding(password))}) {
        if (!password.isEmpty() && (run.out.contains(form) || run.err.contains(form)))
            run.exitCode = -2;
    }
    return run;
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString &path) // empty when unreadable
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
