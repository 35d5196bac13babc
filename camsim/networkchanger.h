#pragma once

#include "netconf/configmessages.h"

#include <QObject>
#include <optional>

class QTimer;

namespace veltor::camsim {

class SimCamera;

// Network settings a camera has been sent but not yet taken on: like a real
// camera it keeps answering at its old address for a moment (or until
// "/reboot.cgi"), then moves, web server included, so that the next search
// lists it with the new settings.
class NetworkChanger : public QObject
{
    Q_OBJECT

public:
    explicit NetworkChanger(SimCamera &camera);
    static NetworkChanger *of(SimCamera &camera);

    // DHCP on, or the four addresses.
    void setAddresses(const NetworkSettings &settings);
    // 0 keeps the current port: the Winbond datagram carries 0 for an empty field.
    void setPort(quint16 port);
    // After $VELTOR_CAMSIM_APPLY_DELAY_MS (default 1500 ms); at once for a
    // camera that applies instantly.
    void restartSoon();
    void restartNow();

private:
    void apply();
    bool rebindHttp(const QString &oldIp);

    SimCamera &camera;
    std::optional<NetworkSettings> addresses;
    quint16 port = 0;
    QTimer *restart;
};

} // namespace veltor::camsim
