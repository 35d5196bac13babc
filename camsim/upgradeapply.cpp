#include "camsim/upgradeapply.h"

#include "camsim/simcamera.h"

namespace veltor::camsim {

void takeOnUpgrade(SimCamera &camera, const QString &path)
{
    CameraSettings &config = camera.settings();
    const bool haisi = config.family == Family::Haisi;
    const bool firmware = haisi || path == QLatin1String("/upgrade_firmware.cgi");
    const bool web = haisi || path == QLatin1String("/upgrade_htmls.cgi");
    if (firmware && !config.upgradeFirmwareVersion.isEmpty())
        config.firmwareVersion = config.upgradeFirmwareVersion;
    if (web && !config.upgradeWebVersion.isEmpty())
        config.webVersion = config.upgradeWebVersion;
    camera.restartFor(config.upgradeRebootMs);
    camera.log(QStringLiteral("upload"),
               QStringLiteral("restarting for %1 ms, then firmware %2, web %3")
                   .arg(config.upgradeRebootMs)
                   .arg(config.firmwareVersion, config.webVersion));
}

} // namespace veltor::camsim
