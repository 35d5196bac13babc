#pragma once

#include "cli/password.h"
#include "discovery/fleetsearch.h"
#include "netconf/configmessages.h"

// Sending a camera its new network settings, in the window's datagrams.
namespace veltor::cli {

// What `set` was told to change; unset fields keep the camera's values, as the
// window's form holds them when the user edits only some.
struct SettingsChange
{
    bool dhcp = false;
    QString ip;
    QString subnet;
    QString gateway;
    QString dns;
    QString port;
};

// Any of --ip, --mask, --gateway, --dns: fixed addresses, DHCP off.
bool addressGiven(const SettingsChange &change);

// The form as the window would submit it: the camera's record, then the change.
NetworkSettings settingsFor(const DeviceRecord &current, const SettingsChange &change);

// Haisi: the netconf CMD and, unless the port is empty, the httpport CMD to the
// group; Winbond: the 84-byte datagram to the broadcast address. Sent from the
// interface that saw the camera. The error text, empty when all went out.
QString sendSettings(const SeenCamera &camera, const Credentials &credentials,
                     const NetworkSettings &settings, quint32 *cseq);

} // namespace veltor::cli
