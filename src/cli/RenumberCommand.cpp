#include "cli/RenumberCommand.h"

#include "app/ModelLoading.h"
#include "app/UnfinishedFile.h"
#include "cli/CommandFiles.h"
#include "cli/ModelFiles.h"
#include "core/Failure.h"
#include "output/ModelFileWriter.h"
#include "platform/Platform.h"
#include "refine/NodeRenumbering.h"

namespace tarnvexo {

int RunRenumberCommand(const RenumberCommand& command)
{
    platform::ExitOnInterrupt();
    ModelStore model;
    RequirePlaceOf(command.outputFile);
    for (const std::string& warning : LoadModel(model, ModelFileOf(command.model))) { Warn(warning); }
    const ModelSize before = SizeOfModel(model);
    RenumberNodes(model);
    WriteWhole(command.outputFile, [&](const std::string& path) { return WriteModelFile(model, path); });
    WriteOutput(SizeChangeText(before, SizeOfModel(model), command.outputFile));
    return ExitGood;
}

} // namespace tarnvexo
