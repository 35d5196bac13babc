#include "camsim/features.h"

#include <QByteArray>
#include <QMap>

namespace veltor::camsim {

namespace {

// Filled during static initialisation, so built on first use.
QMap<QByteArray, CameraInstaller> &registry()
{
    static QMap<QByteArray, CameraInstaller> features;
    return features;
}

} // namespace

int registerCameraFeature(const char *name, CameraInstaller installer)
{
    registry().insert(name, installer);
    return registry().size();
}

void installFeatures(SimCamera &camera)
{
    for (CameraInstaller installer : qAsConst(registry()))
        installer(camera);
}

} // namespace veltor::camsim
