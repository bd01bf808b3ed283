// libFuzzer target: any bytes as a model file through all stages of a run, result files included (written into a
// directory of its own under /tmp). Whatever the reader lets pass must not lead outside an array, however degenerate.
//   build-fuzz/fuzz/run_fuzz -dict=fuzz/model_file.dict -close_fd_mask=3 -max_len=4096 -max_total_time=300 FOUND SEEDS
// with absolute paths; SEEDS: small models, for example those of examples/elements and tests/cases/single_*.
// Built and kept as ReaderFuzz.cpp tells.
#include "app/AssemblyDriver.h"
#include "elements/BeamSection.h"
#include "inertia/InertiaRelief.h"
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
#include "solver/SkylineSolver.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace {

using namespace tarnvexo;

// A run of an input takes milliseconds at most, and ends by no message of its own.
bool IsSmallAndKnown(const ModelStore& model)
{
    constexpr int mostNodes = 40;
    constexpr double mostSlices = 50.0;
    if (model.NPOIN < 1 || model.NPOIN > mostNodes) {
        return false;
    }
    for (int b = 0; b < model.NELEM_B; ++b) {
        const int type = model.BeamSectionRefs[b].BeamSecType;
        if (type != TSection && type != LSection && type != CSection) {
            return false;
        }
        if (SliceCount(BeamLength(model.BeamElements[b]), OutlineOfBeam(model, b)) > mostSlices) {
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const std::filesystem::path directory = std::filesystem::temp_directory_path() / "tarnvexo-run-fuzz";
    std::filesystem::create_directories(directory);
    std::filesystem::current_path(directory);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ModelStore model;
    const ModelReading reading = ReadModelText(model, {reinterpret_cast<const char*>(data), size}, ModelFileName);
    if (reading.end != ModelReading::End::Complete || !IsSmallAndKnown(model)) {
        return -1; // not kept
    }
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    LayOutSkyline(model);
    WriteStructureDrawing(model, StructureDrawingFileName);
    AssembleStiffness(model);
    AssembleLoads(model);
    ApplyRestraints(model);
    BalanceByInertiaRelief(model);
    SolveSkyline(model);
    ShiftOrigin(model, model.StructureCentroid);
    WriteNodalDisplacements(model, NodalDisplacementFileName);
    WriteDeformedDrawing(model, DeformationDrawingFileName);
    RecoverShellStresses(model);
    WriteShellStresses(model, ShellStressFileName);
    AverageShellStresses(model);
    WriteAveragedShellStresses(model, AveragedShellStressFileName);
    RecoverBeamSectionStresses(model);
    WriteContourFile(model, ContourFileName);
    ResultWarning(model);
    return 0;
}
