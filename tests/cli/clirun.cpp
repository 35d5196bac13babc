#include "clirun.h"

#include <QProcess>
#include <QProcessEnvironment>

CliRun runCli(const QStringList &arguments, const QString &password, int timeoutMs)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VELTOR_PASSWORD"), password);
    process.setProcessEnvironment(environment);
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
    return run;
}
