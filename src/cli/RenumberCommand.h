// cli/RenumberCommand.h
// `tarnvexo renumber`: reads a model, renumbers its nodes, writes it.
#pragma once

#include "cli/CommandParser.h"

namespace tarnvexo {

// Returns ExitGood, or ExitFile after the writer's message; throws RunFailure.
int RunRenumberCommand(const RenumberCommand& command);

} // namespace tarnvexo
