#pragma once

#include <QHostAddress>
#include <QList>
#include <QStringList>

namespace veltor {

// True when the first UI language, split at "-", starts with exactly "de".
// "de-DE" and "de" qualify; "de_DE", "DE-de" and "en-US" do not.
bool wantsGerman(const QStringList &uiLanguages);

// The items of the network-interface box for the host's addresses, in order:
// every IPv4 address that passes checkIp and is not loopback, then
// "127.0.0.1" last and only once.
QStringList interfaceChoices(const QList<QHostAddress> &addresses);

} // namespace veltor
