#pragma once

#include "netconf/configmessages.h"
#include "netconf/submitchecks.h"

#include <QString>

// The texts the user reads when a network configuration is refused. Shared by
// the window and the command line, so both say the same; translated in the
// window's context, where the German texts live.
namespace veltor {

// Empty for SubmitCheck::Passed.
QString submitCheckMessage(SubmitCheck check);

// Empty for WinbondFieldProblem::None.
QString winbondFieldMessage(WinbondFieldProblem problem);

} // namespace veltor
