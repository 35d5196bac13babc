#include "discovery/devicerecord.h"

namespace veltor {

QString DeviceRecord::column(int column) const
{
    switch (column) {
    case 0:
        return name;
    case 1:
        return ip;
    case 2:
        return port;
    case 3:
        return mac;
    case 4:
        return dhcp;
    case 5:
        return subnet;
    case 6:
        return gateway;
    case 7:
        return dns;
    case 8:
        return firmware;
    case 9:
        return webui;
    default:
        return QString();
    }
}

QString dhcpText(const QString &flag)
{
    if (flag == QLatin1String("1"))
        return QStringLiteral("on");
    if (flag == QLatin1String("0"))
        return QStringLiteral("off");
    return QString();
}

} // namespace veltor
