#pragma once

#include <QCoreApplication>

namespace veltor {

// Texts of the SD card transfers, said by the browser: they share its
// translation context, so lupdate and the translator see one place.
struct SdTexts
{
    Q_DECLARE_TR_FUNCTIONS(sdmanager)
};

} // namespace veltor
