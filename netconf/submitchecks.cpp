#include "netconf/submitchecks.h"

#include "netconf/validators.h"

#include <QStringList>

namespace veltor {

namespace {

bool dottedFormat(const QString &text)
{
    return text.split(QLatin1Char('.')).size() == 4 && isAddr(text);
}

bool byteValues(const QString &text)
{
    QByteArray scratch;
    return appendWinbondIP(text.split(QLatin1Char('.')), &scratch, 0);
}

} // namespace

SubmitCheck firstFailedCheck(const NetworkSettings &s, const QString &family)
{
    if (!isNum(s.port))
        return SubmitCheck::PortInvalid;
    // A digit string too long for an int reads as 0 and passes, as typed ports always have.
    const int port = s.port.toInt(nullptr, 10);
    if (port > 65535)
        return SubmitCheck::PortTooLarge;
    if (port < 0)
        return SubmitCheck::PortNegative;
    const QString *fields[] = {&s.ip, &s.subnet, &s.gateway, &s.dns};
    const SubmitCheck formatChecks[] = {SubmitCheck::IpFormat, SubmitCheck::SubnetFormat,
                                        SubmitCheck::GatewayFormat, SubmitCheck::DnsFormat};
    for (int i = 0; i < 4; ++i) {
        if (!dottedFormat(*fields[i]))
            return formatChecks[i];
    }
    if (family != QLatin1String("Winbond") || s.dhcp)
        return SubmitCheck::Passed;
    const SubmitCheck valueChecks[] = {SubmitCheck::IpValues, SubmitCheck::SubnetValues,
                                       SubmitCheck::GatewayValues, SubmitCheck::DnsValues};
    for (int i = 0; i < 4; ++i) {
        if (!byteValues(*fields[i]))
            return valueChecks[i];
    }
    return SubmitCheck::Passed;
}

} // namespace veltor
