// cli/RenumberCommand.h
// `tarnvexo renumber`: reads a model, renumbers its nodes, writes it.
#pragma once

#include "cli/CommandParser.h"

namespace tarnvexo {

// Returns ExitGood; throws RunFailure. The file is replaced when the new one is complete: MODEL and OUT may be the
// same.
int RunRenumberCommand(const RenumberCommand& command);

} // namespace tarnvexo
