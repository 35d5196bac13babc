// The camera side of the configuration messages: HDS/1.0 "CMD" requests on
// 8002 (Haisi) and the 84-byte "MO_I" datagram on 10000 (Winbond). A message
// for this camera (its Device-ID, its MAC) with its credentials changes the
// network settings after a short restart (or at once, or never: --apply);
// anything malformed or refused is logged and ignored.
#include "camsim/features.h"
#include "camsim/networkchanger.h"
#include "camsim/simcamera.h"
#include "discovery/protocolconstants.h"
#include "netconf/configparse.h"

namespace veltor::camsim {

namespace {

QString bareMac(const QString &mac)
{
    return QString(mac).remove(QLatin1Char(':')).toUpper();
}

bool credentialsMatch(const SimCamera &camera, const QString &user, const QString &password)
{
    return user == camera.settings().user && password == camera.settings().password;
}

// A camera that ignores configuration messages still takes them as its own.
bool ignoresConfiguration(SimCamera &camera)
{
    if (camera.settings().apply != ApplyMode::Never)
        return false;
    camera.log(QStringLiteral("config"), QStringLiteral("configuration ignored (--apply never)"));
    return true;
}

void applyCommand(SimCamera &camera, const CameraCommand &command)
{
    NetworkChanger *changer = NetworkChanger::of(camera);
    if (command.kind == CameraCommand::HttpPort) {
        changer->setPort(command.settings.port.toUShort());
    } else if (!command.settings.dhcp && bareMac(command.mac) != bareMac(camera.settings().mac)) {
        camera.log(QStringLiteral("config"), QStringLiteral("netconf for another MAC ignored"));
        return;
    } else {
        changer->setAddresses(command.settings);
    }
    changer->restartSoon();
}

bool handleHdsCmd(SimCamera &camera, const SimDatagram &datagram)
{
    if (datagram.localPort != kHdsPort || !datagram.data.startsWith("CMD "))
        return false;
    const std::optional<HdsCmd> cmd = parseHdsCmd(datagram.data);
    if (!cmd) {
        camera.log(QStringLiteral("config"), QStringLiteral("malformed CMD ignored"));
        return false;
    }
    if (cmd->deviceId != camera.settings().deviceId)
        return false;
    if (!credentialsMatch(camera, cmd->user, cmd->password)) {
        camera.log(QStringLiteral("config"), QStringLiteral("CMD with wrong credentials ignored"));
        return true;
    }
    if (ignoresConfiguration(camera))
        return true;
    const std::optional<CameraCommand> command = parseCameraCommand(cmd->body);
    if (!command) {
        camera.log(QStringLiteral("config"), QStringLiteral("unknown command ignored"));
        return true;
    }
    applyCommand(camera, *command);
    return true;
}

bool handleWinbondConfig(SimCamera &camera, const SimDatagram &datagram)
{
    if (datagram.localPort != kBinarySearchPort || !datagram.data.startsWith("MO_I"))
        return false;
    const std::optional<WinbondConfig> config = parseWinbondConfig(datagram.data);
    if (!config) {
        camera.log(QStringLiteral("config"), QStringLiteral("malformed MO_I datagram ignored"));
        return false;
    }
    if (bareMac(config->mac) != bareMac(camera.settings().mac))
        return false;
    if (!credentialsMatch(camera, config->user, config->password)) {
        camera.log(QStringLiteral("config"),
                   QStringLiteral("configuration with wrong credentials ignored"));
        return true;
    }
    if (ignoresConfiguration(camera))
        return true;
    NetworkChanger *changer = NetworkChanger::of(camera);
    changer->setAddresses(config->settings);
    changer->setPort(config->settings.port.toUShort());
    changer->restartSoon();
    return true;
}

void installConfigReceiver(SimCamera &camera)
{
    if (camera.settings().family == Family::Haisi)
        camera.addDatagramHandler(
            [&camera](const SimDatagram &datagram) { return handleHdsCmd(camera, datagram); });
    else
        camera.addDatagramHandler([&camera](const SimDatagram &datagram) {
            return handleWinbondConfig(camera, datagram);
        });
}

} // namespace

VELTOR_CAMSIM_FEATURE(netconf, installConfigReceiver);

} // namespace veltor::camsim
