#pragma once

#include "discovery/devicerecord.h"
#include "netconf/configmessages.h"

#include <QStringList>

// Whether a camera took on the network settings it was sent, judged from its
// search replies. Shared by the window and the command line, so both accept
// and report a change alike.
namespace veltor {

// The settings the camera should show once it has taken them on: a Haisi
// camera's gateway moves into the address's /24 before it is sent.
NetworkSettings expectedSettings(const NetworkSettings &sent, const QString &family);

// "what: seen (wanted ...)" for each setting the camera does not show yet;
// empty when it shows them all. Under DHCP only the flag and the port count.
QStringList settingsDifferences(const DeviceRecord &seen, const NetworkSettings &expected);

// Follows one camera, by MAC, through the replies the window keeps of the
// current search (Winbond: hex text; Haisi: reply text) until one shows the
// expected settings.
class ChangeWatch
{
public:
    ChangeWatch(const QString &mac, const QString &family, const NetworkSettings &expected);

    // Reads the replies stored since the last look; a list shorter than then
    // was emptied by a new search and is read from its start. True once the
    // camera has shown the settings.
    bool look(const QStringList &winbondReplies, const QStringList &hdsReplies);
    // Only replies stored after now count: those before show the old settings.
    void skipStored(const QStringList &winbondReplies, const QStringList &hdsReplies);

    bool verified() const { return seenAsWanted; }
    // Of the camera's newest reply; empty while it has not answered.
    QStringList differences() const { return lastDifferences; }
    bool answered() const { return seenAtAll; }

private:
    void judge(const DeviceRecord &record);
    const QStringList &ownReplies(const QStringList &winbondReplies,
                                  const QStringList &hdsReplies) const;

    QString mac;
    QString family;
    NetworkSettings expected;
    int read = 0;
    bool seenAtAll = false;
    bool seenAsWanted = false;
    QStringList lastDifferences;
};

} // namespace veltor
