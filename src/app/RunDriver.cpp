#include "app/RunDriver.h"

#include "app/AssemblyDriver.h"
#include "core/Console.h"
#include "core/Failure.h"
#include "core/Messages.h"
#include "inertia/StructureCentroid.h"
#include "input/ModelFileReader.h"
#include "output/BeamSectionStress.h"
#include "output/ContourFile.h"
#include "output/DxfDrawing.h"
#include "output/NodalAveraging.h"
#include "output/NodalDisplacementFile.h"
#include "output/ResultCheck.h"
#include "output/ShellStressFiles.h"
#include "output/ShellStressRecovery.h"
#include "platform/Platform.h"
#include "solver/SkylineSolver.h"
#include "solver/SolutionCheck.h"

#include <cstdint>
#include <cstdio>

namespace tarnvexo {

namespace {

constexpr const char* ViewerFileName = "Tarn+Vexo_Contour.exe";

void PrintBanner()
{
    PrintConsoleLine(messages::BannerRule);
    PrintConsoleLine(messages::BannerProgram);
    PrintConsoleLine(messages::BannerSubject);
    PrintConsoleLine(messages::BannerRevision);
    PrintConsoleLine(messages::BannerRule);
}

// The reader reports the failure in its own way and ends the run; this notice comes first.
void WarnIfModelFileIsMissing()
{
    if (std::FILE* file = std::fopen(ModelFileName, "r")) {
        std::fclose(file);
    } else {
        platform::ShowWarningBox(messages::FileReadWarning);
    }
}

void SolveTimed(ModelStore& model)
{
    const std::vector<double> assembledDiagonal = StiffnessDiagonal(model);
    const std::int64_t frequency = platform::PerformanceFrequency();
    const std::int64_t start = platform::PerformanceCounter();
    PrintConsole("%s", messages::Solving);
    SolveSkyline(model);
    const std::int64_t end = platform::PerformanceCounter();
    PrintConsole(messages::SolutionTime,
                 (static_cast<double>(end) - static_cast<double>(start)) / static_cast<double>(frequency));
    FlushConsole();
    Warn(PivotWarning(model, assembledDiagonal, ModelFileName));
}

// Every file behind the displacements needs a node.
void RequireNodes(const ModelStore& model)
{
    if (model.NPOIN < 1) {
        FailWithDiagnostic(
            "deformation.dxf: error: the model has no nodes, so there is nothing to draw\n"
            "  expected: NPOIN of 1 or more\n"
            "  to do:    add the nodes to the model file; if they are there, mend the first place that the\n"
            "            warnings above name");
    }
}

void StartViewer()
{
    if (platform::FileExists(ViewerFileName)) {
        platform::RunProgram(ViewerFileName);
    } else {
        platform::ShowWarningBox(messages::ViewerMissing);
    }
}

} // namespace

int RunConsole()
{
    ModelStore model;
    PrintBanner();
    WarnIfModelFileIsMissing();
    AssembleGlobalSystem(model);
    SolveTimed(model);
    PrintBanner();

    // Results carry the model file's coordinates.
    ShiftOrigin(model, model.StructureCentroid);
    RequireCreated(WriteNodalDisplacements(model, NodalDisplacementFileName), messages::DisplacementFileError);
    RequireNodes(model);
    RequireCreated(WriteDeformedDrawing(model, DeformationDrawingFileName), messages::DxfFileError);
    RecoverShellStresses(model);
    RequireCreated(WriteShellStresses(model, ShellStressFileName), messages::ShellStressFileError);
    AverageShellStresses(model);
    RequireCreated(WriteAveragedShellStresses(model, AveragedShellStressFileName), messages::ShellStressFileError);
    RequireBeamSections(model);
    RecoverBeamSectionStresses(model);
    RequireCreated(WriteContourFile(model, ContourFileName), messages::ContourFileError);
    Warn(ResultWarning(model));
    Warn(ReadingReminder(model, ModelFileName)); // once more at the end, where it is seen

    ReleaseModel(model);
    StartViewer();
    return 0;
}

void ReleaseModel(ModelStore& model)
{
    model = ModelStore();
}

} // namespace tarnvexo
