#include "cli/RenumberCommand.h"

#include "app/ModelLoading.h"
#include "app/UnfinishedFile.h"
#include "cli/CommandFiles.h"
#include "cli/ModelFiles.h"
#include "output/ModelFileWriter.h"
#include "platform/Platform.h"
#include "refine/NodeRenumbering.h"

namespace tarnvexo {

int RunRenumberCommand(const RenumberCommand& command)
{
    platform::ExitOnInterrupt();
    ModelStore model;
    RequireDirectoryOf(command.outputFile);
    LoadModel(model, ModelFileOf(command.model));
    const ModelSize before = SizeOfModel(model);
    RenumberNodes(model);
    WriteWhole(command.outputFile, [&](const std::string& path) { return WriteModelFile(model, path); });
    WriteOutput(SizeChangeText(before, SizeOfModel(model), command.outputFile));
    return ExitGood;
}

} // namespace tarnvexo
