// cli/RefineCommand.h
// `tarnvexo refine`: reads a model, cuts its elements, renumbers its nodes, writes it.
#pragma once

#include "cli/CommandParser.h"

namespace tarnvexo {

// Returns ExitGood; throws RunFailure. The file is replaced when the new one is complete: MODEL and OUT may be the
// same.
int RunRefineCommand(const RefineCommand& command);

} // namespace tarnvexo
