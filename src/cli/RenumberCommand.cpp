#include "cli/RenumberCommand.h"

#include "app/ModelLoading.h"
#include "cli/CommandFiles.h"
#include "cli/ModelFiles.h"
#include "output/ModelFileWriter.h"
#include "refine/NodeRenumbering.h"

namespace tarnvexo {

int RunRenumberCommand(const RenumberCommand& command)
{
    ModelStore model;
    RequireDirectoryOf(command.outputFile);
    LoadModel(model, ModelFileOf(command.model));
    const ModelSize before = SizeOfModel(model);
    RenumberNodes(model);
    if (WriteModelFile(model, command.outputFile).outcome != FileOutcome::Written) {
        return ExitFile;
    }
    WriteOutput(SizeChangeText(before, SizeOfModel(model), command.outputFile));
    return ExitGood;
}

} // namespace tarnvexo
