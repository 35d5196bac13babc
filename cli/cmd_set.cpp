#include "auth/cameraurl.h"
#include "auth/credentialcheck.h"
#include "cli/cliargs.h"
#include "cli/commands.h"
#include "cli/findcamera.h"
#include "cli/logincheck.h"
#include "cli/netconfsend.h"
#include "cli/search.h"
#include "cli/targets.h"
#include "discovery/protocolconstants.h"
#include "netconf/settingsverify.h"
#include "netconf/submitmessages.h"

#include <QDeadlineTimer>
#include <QTextStream>

namespace veltor::cli {

namespace {

const QString kCommand = QStringLiteral("set");
constexpr int kSearchWaitMs = 1500;
constexpr int kVerifyWaitMs = 1500;
// A Haisi camera takes about 150 s to come back (the window's reboot progress).
constexpr int kDefaultVerifySeconds = 180;

void addSetOptions(QCommandLineParser &parser)
{
    parser.addPositionalArgument(QStringLiteral("MAC"),
                                 QStringLiteral("The camera's MAC address."));
    parser.addOptions({
        {QStringLiteral("dhcp"), QStringLiteral("Let the camera take its address by DHCP.")},
        {QStringLiteral("ip"), QStringLiteral("Fixed IP address."), QStringLiteral("A")},
        {QStringLiteral("mask"), QStringLiteral("Subnet mask."), QStringLiteral("M")},
        {QStringLiteral("gateway"), QStringLiteral("Gateway."), QStringLiteral("G")},
        {QStringLiteral("dns"), QStringLiteral("DNS server."), QStringLiteral("D")},
        {QStringLiteral("port"), QStringLiteral("HTTP port."), QStringLiteral("P")},
        {QStringLiteral("verify"),
         QStringLiteral("Search again until the camera shows the new settings.")},
        {QStringLiteral("timeout"),
         QStringLiteral("Seconds --verify waits (default %1).").arg(kDefaultVerifySeconds),
         QStringLiteral("S")},
    });
    addCredentialOptions(parser);
}

// The change asked for, or empty after a usage message.
std::optional<SettingsChange> changeFrom(const QCommandLineParser &parser, Io io)
{
    SettingsChange change;
    change.dhcp = parser.isSet(QStringLiteral("dhcp"));
    change.ip = parser.value(QStringLiteral("ip"));
    change.subnet = parser.value(QStringLiteral("mask"));
    change.gateway = parser.value(QStringLiteral("gateway"));
    change.dns = parser.value(QStringLiteral("dns"));
    change.port = parser.value(QStringLiteral("port"));
    const bool addresses = addressGiven(change);
    if (change.dhcp && addresses) {
        usageError(kCommand, QStringLiteral("--dhcp and fixed addresses exclude each other"), io);
        return std::nullopt;
    }
    if (!change.dhcp && !addresses && change.port.isEmpty()) {
        usageError(kCommand, QStringLiteral("nothing to change: give --dhcp, --ip ... or --port"),
                   io);
        return std::nullopt;
    }
    return change;
}

// The window's checks, then the Winbond datagram's field limits.
bool passesChecks(const SeenCamera &camera, const Credentials &credentials,
                  const NetworkSettings &settings, Io io)
{
    QString problem = submitCheckMessage(firstFailedCheck(settings, camera.family));
    if (problem.isEmpty() && camera.family == QLatin1String(kWinbondFamily))
        problem = winbondFieldMessage(
            checkWinbondFields(camera.record.mac, credentials.user, credentials.password));
    if (problem.isEmpty())
        return true;
    usageError(kCommand, problem, io);
    return false;
}

// Like the window after a Haisi submit: the camera restarts on "/reboot.cgi",
// asked at its old address; out of the /24 it cannot be asked.
bool rebootIfHaisi(const SeenCamera &camera, const Credentials &credentials, Io io)
{
    if (camera.family != QLatin1String(kHaisiFamily) ||
        !sameSubnet24(camera.record.ip, camera.interfaceAddress.toString()))
        return true;
    const QUrl url =
        cameraUrl(camera.record.ip, camera.record.port, QStringLiteral("/reboot.cgi?user="),
                  credentials.user, QStringLiteral("&pwd="), credentials.password);
    if (getFromCamera(url) == QNetworkReply::NoError) {
        io.err << "The camera is rebooting now, please wait for a moment!\n";
        return true;
    }
    io.err << "veltor-cli set: reboot: Your request has failed, retry please!\n";
    return false;
}

int verify(const QString &mac, const NetworkSettings &expected, int seconds, Io io)
{
    QDeadlineTimer deadline(seconds * 1000LL);
    QStringList differences{QStringLiteral("the camera did not answer a search again")};
    do {
        const FleetSearchResult result = searchAllInterfaces(kCommand, 1, kVerifyWaitMs, io);
        if (const SeenCamera *camera = findByMac(result.cameras, mac)) {
            differences = settingsDifferences(camera->record, expected);
            if (differences.isEmpty()) {
                io.out << "verified: " << mac << " at " << camera->record.ip << " port "
                       << camera->record.port << '\n';
                return Success;
            }
        }
    } while (!deadline.hasExpired());
    io.out << "not verified after " << seconds << " s: " << mac << ": "
           << differences.join(QStringLiteral(", ")) << '\n';
    return Failure;
}

// False when nothing went out: refused credentials or a datagram not sent.
bool sendChange(const SeenCamera &camera, const Credentials &credentials,
                const NetworkSettings &settings, Io io)
{
    const LoginVerdict verdict = checkLogin(camera, credentials);
    if (verdict != LoginVerdict::Accepted)
        io.err << "veltor-cli set: " << loginMessage(verdict, camera) << '\n';
    if (verdict == LoginVerdict::Refused)
        return false;
    quint32 cseq = 0;
    const QString error = sendSettings(camera, credentials, settings, &cseq);
    if (!error.isEmpty()) {
        io.err << "veltor-cli set: " << error << '\n';
        return false;
    }
    io.out << "sent: " << camera.family << ' ' << camera.record.mac << " (was " << camera.record.ip
           << ")\n";
    io.out.flush();
    return true;
}

} // namespace

int runSet(const QStringList &arguments, Io io)
{
    QCommandLineParser parser;
    addSetOptions(parser);
    if (const std::optional<int> stop = parseOrStop(
            parser, arguments,
            QStringLiteral("Changes a camera's network settings with its family's command.\n"
                           "Settings not given keep the camera's current values."),
            io))
        return *stop;
    if (parser.positionalArguments().size() != 1)
        return usageError(kCommand, QStringLiteral("give exactly one MAC address"), io);
    const QString mac = normalizedMac(parser.positionalArguments().constFirst());
    if (mac.isEmpty())
        return usageError(kCommand,
                          QStringLiteral("\"%1\" is not a MAC address")
                              .arg(parser.positionalArguments().constFirst()),
                          io);
    const std::optional<SettingsChange> change = changeFrom(parser, io);
    const std::optional<int> seconds =
        intOption(parser, kCommand, QStringLiteral("timeout"), kDefaultVerifySeconds, 1, 3600, io);
    if (!change || !seconds)
        return Usage;
    int exitCode = Success;
    const std::optional<Credentials> credentials = credentialsFrom(parser, kCommand, io, &exitCode);
    if (!credentials)
        return exitCode;

    const std::optional<SeenCamera> camera = findCamera(mac, kSearchWaitMs, kCommand, io);
    if (!camera)
        return Failure;
    const NetworkSettings settings = settingsFor(camera->record, *change);
    if (!passesChecks(*camera, *credentials, settings, io))
        return Usage;
    if (!sendChange(*camera, *credentials, settings, io))
        return Failure;
    // Without --verify a failed reboot request is the only sign of trouble.
    const bool rebooting = rebootIfHaisi(*camera, *credentials, io);
    if (!parser.isSet(QStringLiteral("verify")))
        return rebooting ? Success : Failure;
    return verify(mac, expectedSettings(settings, camera->family), *seconds, io);
}

} // namespace veltor::cli
