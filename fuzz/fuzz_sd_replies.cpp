// SD card status bodies and "/sd/" listings at every level and folder kind.
#include "sdcard/sdlisting.h"
#include "sdcard/sdstatus.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray body(reinterpret_cast<const char *>(data), int(size));
    veltor::sdSizeLabels(veltor::parseSdStatus(body));
    for (const QString &folder : {QStringLiteral("images001/"), QStringLiteral("record001/"),
                                 QStringLiteral("other/")}) {
        for (auto level : {veltor::SdLevel::Root, veltor::SdLevel::Folder,
                           veltor::SdLevel::SubFolder})
            veltor::parseSdListing(body, level, folder);
        veltor::sdFileNames(body, folder);
    }
    veltor::sdSubFolderNames(body);
    return 0;
}
