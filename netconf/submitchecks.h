#pragma once

#include "netconf/configmessages.h"

// The checks of an IP configuration submit, in the order the user meets them.
namespace veltor {

enum class SubmitCheck {
    Passed = 0,
    PortInvalid,   // 1
    PortTooLarge,  // 2
    PortNegative,  // 3
    IpFormat,      // 4
    SubnetFormat,  // 5
    GatewayFormat, // 6
    DnsFormat,     // 7
    IpValues,      // 8
    SubnetValues,  // 9
    GatewayValues, // 10
    DnsValues,     // 11
};

// The first check that fails. The per-part range checks (8 to 11) apply only
// to Winbond cameras with DHCP off: a Haisi camera gets its address as typed.
SubmitCheck firstFailedCheck(const NetworkSettings &settings, const QString &family);

} // namespace veltor
