#include "cli/RefineCommand.h"

#include "app/ModelLoading.h"
#include "cli/CommandFiles.h"
#include "cli/ModelFiles.h"
#include "output/ModelFileWriter.h"
#include "refine/NodeRenumbering.h"
#include "refine/Refinement.h"

namespace tarnvexo {

int RunRefineCommand(const RefineCommand& command)
{
    ModelStore coarse;
    ModelStore fine;
    RequireDirectoryOf(command.outputFile);
    LoadModel(coarse, ModelFileOf(command.model));
    RefineModel(coarse, command.k, fine);
    if (command.renumber) {
        RenumberNodes(fine);
    }
    if (WriteModelFile(fine, command.outputFile).outcome != FileOutcome::Written) {
        return ExitFile;
    }
    WriteOutput(SizeChangeText(SizeOfModel(coarse), SizeOfModel(fine), command.outputFile));
    return ExitGood;
}

} // namespace tarnvexo
