#pragma once

namespace veltor::camsim {

class SimCamera;

// Each feature's camera side lives in a file of its own under camsim/ and
// registers itself there with one line:
//
//     static void installAuth(SimCamera &camera) { camera.http().route(...); }
//     VELTOR_CAMSIM_FEATURE(auth, installAuth);
//
// and adds the file to camsim/CMakeLists.txt. Every camera of every fleet then
// runs the installer once, features in the order of their names. The library
// is an object library so that no registration is dropped by the linker.
using CameraInstaller = void (*)(SimCamera &camera);

int registerCameraFeature(const char *name, CameraInstaller installer);
void installFeatures(SimCamera &camera);

} // namespace veltor::camsim

#define VELTOR_CAMSIM_FEATURE(name, installer)                                                     \
    [[maybe_unused]] static const int camsimFeature_##name =                                       \
        veltor::camsim::registerCameraFeature(#name, installer)
