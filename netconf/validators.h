#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Checks of typed addresses and ports, and the two address encodings the
// configuration flow needs. Pure functions: no state, no widgets.
namespace veltor {

// Exact match of the dotted IPv4 pattern; one leading zero per part is allowed.
bool checkIp(const QString &text);
bool checkSubnet(const QString &text);
bool checkGateway(const QString &text);
bool checkDns(const QString &text);
// Decimal 0..65535 without leading zeros.
bool checkPort(const QString &text);

// True when every character is an ASCII digit; true for the empty text.
bool isNum(const QString &text);
// True when every character is an ASCII digit or "."; true for the empty text.
bool isAddr(const QString &text);

// Ordering key of a camera row: the four parts joined as decimal text and read
// as a signed 32-bit number, 0 when that fails. Deliberately not the numeric
// address: 192.168.10.1 sorts before 192.168.1.99, and 200.200.200.200 first.
int ipToKey(const QString &dotted);

// Inserts each part as one byte at start + i (growing the array). Stops with
// false at the first part that is not a number below 256; bytes already
// inserted stay.
bool appendWinbondIP(const QStringList &ipValues, QByteArray *data, int start);

} // namespace veltor
