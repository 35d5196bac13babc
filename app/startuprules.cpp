#include "app/startuprules.h"

#include "netconf/validators.h"

namespace veltor {

namespace {
const QString loopback = QStringLiteral("127.0.0.1");
}

bool wantsGerman(const QStringList &uiLanguages)
{
    if (uiLanguages.isEmpty())
        return false;
    return uiLanguages.first().split(QLatin1Char('-')).first() == QLatin1String("de");
}

QStringList interfaceChoices(const QList<QHostAddress> &addresses)
{
    QStringList items;
    for (const QHostAddress &address : addresses) {
        if (address.protocol() != QAbstractSocket::IPv4Protocol)
            continue;
        const QString text = address.toString();
        if (checkIp(text) && !text.contains(loopback))
            items << text;
    }
    items << loopback;
    return items;
}

} // namespace veltor
