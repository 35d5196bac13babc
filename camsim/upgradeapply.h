#pragma once

#include <QString>

namespace veltor::camsim {

class SimCamera;

// What a camera does with an upload it accepted on `path`: it restarts
// (silent to searches for its reboot time) and then reports the versions it
// was set up to take on. Winbond's two CGIs change one version each; Haisi's
// one CGI takes either kind of package, so both apply.
void takeOnUpgrade(SimCamera &camera, const QString &path);

} // namespace veltor::camsim
