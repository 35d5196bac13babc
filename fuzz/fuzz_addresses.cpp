// Typed addresses and ports: the validators and the byte encoding must take
// any text without crashing.
#include "netconf/validators.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    veltor::checkIp(text);
    veltor::checkPort(text);
    veltor::isNum(text);
    veltor::isAddr(text);
    veltor::ipToKey(text);
    QByteArray bytes;
    veltor::appendWinbondIP(text.split(QLatin1Char('.')), &bytes, 0);
    return 0;
}
