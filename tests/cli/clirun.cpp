#include "clirun.h"

#include <QCryptographicHash>
#include <QFile>
#include <QProcess>
#include <QUrl>

CliRun runCli(const QStringList &arguments, const QString &password, int timeoutMs)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VELTOR_PASSWORD"), password);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStringLiteral(VELTOR_CLI), arguments);
    CliRun run;
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        run.exitCode = process.exitCode();
    }
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    // Whatever happened, the password is nowhere in what the user sees, not even in a URL.
    for (const QString &form : {password, QString::fromLatin1(QUrl::toPercentEncoding(password))}) {
        if (!password.isEmpty() && (run.out.contains(form) || run.err.contains(form)))
            run.exitCode = -2;
    }
    return run;
}

QString sha256Hex(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
