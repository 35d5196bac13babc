#include "cli/password.h"

#include "cli/cliargs.h"

#include <QFile>
#include <QTextStream>
#include <cstdio>
#include <termios.h>
#include <unistd.h>

namespace veltor::cli {

namespace {

constexpr char kPasswordVariable[] = "VELTOR_PASSWORD";
constexpr qint64 kLongestPasswordFile = 4096;

QString firstLine(const QByteArray &bytes)
{
    const int end = bytes.indexOf('\n');
    QByteArray line = end < 0 ? bytes : bytes.left(end);
    if (line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

std::optional<QString> promptWithoutEcho(Io io)
{
    if (!isatty(STDIN_FILENO))
        return std::nullopt;
    termios saved{};
    if (tcgetattr(STDIN_FILENO, &saved) != 0)
        return std::nullopt;
    termios quiet = saved;
    quiet.c_lflag &= ~tcflag_t(ECHO);
    // Echo goes off before the prompt shows: whatever is typed once it is
    // visible must not appear on the screen.
    if (tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet) != 0)
        return std::nullopt;
    io.err << "Password: " << Qt::flush;
    QTextStream in(stdin);
    const QString line = in.readLine();
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
    io.err << '\n' << Qt::flush;
    return line;
}

} // namespace

void addCredentialOptions(QCommandLineParser &parser)
{
    parser.addOption(
        {QStringLiteral("user"), QStringLiteral("Camera user name."), QStringLiteral("U")});
    parser.addOption({QStringLiteral("password-file"),
                      QStringLiteral("Read the password from the first line of F (else "
                                     "$VELTOR_PASSWORD, else a prompt on a terminal)."),
                      QStringLiteral("F")});
}

std::optional<QString> readPassword(const QString &passwordFile, Io io, QString *error)
{
    if (!passwordFile.isEmpty()) {
        QFile file(passwordFile);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("cannot read the password file %1: %2")
                         .arg(passwordFile, file.errorString());
            return std::nullopt;
        }
        return firstLine(file.read(kLongestPasswordFile));
    }
    if (qEnvironmentVariableIsSet(kPasswordVariable))
        return qEnvironmentVariable(kPasswordVariable);
    if (std::optional<QString> typed = promptWithoutEcho(io))
        return typed;
    *error = QStringLiteral("no password: give --password-file F or set %1")
                 .arg(QLatin1String(kPasswordVariable));
    return std::nullopt;
}

std::optional<Credentials> credentialsFrom(const QCommandLineParser &parser, const QString &command,
                                           Io io, int *exitCode)
{
    const QString user = parser.value(QStringLiteral("user"));
    if (user.isEmpty()) {
        *exitCode = usageError(command, QStringLiteral("--user is required"), io);
        return std::nullopt;
    }
    QString error;
    const std::optional<QString> password =
        readPassword(parser.value(QStringLiteral("password-file")), io, &error);
    if (!password) {
        io.err << "veltor-cli " << command << ": " << error << '\n';
        *exitCode = Failure;
        return std::nullopt;
    }
    return Credentials{user, *password};
}

} // namespace veltor::cli
