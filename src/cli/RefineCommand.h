// cli/RefineCommand.h
// `tarnvexo refine`: reads a model, cuts its elements, renumbers its nodes, writes it.
#pragma once

#include "cli/CommandParser.h"

namespace tarnvexo {

// Returns ExitGood, or ExitFile after the writer's message; throws RunFailure.
int RunRefineCommand(const RefineCommand& command);

} // namespace tarnvexo
