// Configuration requests as a camera receives them: the CMD reader, the
// console-command reader and the 84-byte datagram reader must take any bytes.
#include "netconf/configparse.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    if (const auto cmd = veltor::parseHdsCmd(bytes))
        veltor::parseCameraCommand(cmd->body);
    veltor::parseCameraCommand(bytes);
    veltor::parseWinbondConfig(bytes);
    return 0;
}
