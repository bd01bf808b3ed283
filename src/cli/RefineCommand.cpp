#include "cli/RefineCommand.h"

#include "app/ModelLoading.h"
#include "app/UnfinishedFile.h"
#include "cli/CommandFiles.h"
#include "cli/ModelFiles.h"
#include "core/Failure.h"
#include "output/ModelFileWriter.h"
#include "platform/Platform.h"
#include "refine/NodeRenumbering.h"
#include "refine/Refinement.h"

#include <stdexcept>

namespace tarnvexo {

int RunRefineCommand(const RefineCommand& command)
{
    platform::ExitOnInterrupt();
    ModelStore coarse;
    ModelStore fine;
    RequirePlaceOf(command.outputFile);
    for (const std::string& warning : LoadModel(coarse, ModelFileOf(command.model))) { Warn(warning); }
    try {
        RefineModel(coarse, command.k, fine);
    } catch (const std::length_error& overflow) {
        throw RunFailure(ExitBadModel, command.model + ": " + overflow.what());
    }
    if (command.renumber) {
        RenumberNodes(fine);
    }
    WriteWhole(command.outputFile, [&](const std::string& path) { return WriteModelFile(fine, path); });
    WriteOutput(SizeChangeText(SizeOfModel(coarse), SizeOfModel(fine), command.outputFile));
    return ExitGood;
}

} // namespace tarnvexo
