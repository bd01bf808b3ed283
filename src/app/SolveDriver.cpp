#include "app/SolveDriver.h"

#include "app/AssemblyDriver.h"
#include "app/CostModel.h"
#include "app/FreeParts.h"
#include "app/ModelLoading.h"
#include "app/ResultExtremes.h"
#include "app/ResultFiles.h"
#include "app/StageClock.h"
#include "app/StiffnessSystem.h"
#include "app/SupportReactions.h"
#include "inertia/BalanceCheck.h"
#include "inertia/MassOrthogonal.h"
#include "inertia/StructureCentroid.h"
#include "output/BeamSectionStress.h"
#include "output/ContourFile.h"
#include "output/DxfDrawing.h"
#include "output/NodalAveraging.h"
#include "output/NodalDisplacementFile.h"
#include "output/ResultCheck.h"
#include "output/ShellStressFiles.h"
#include "output/ShellStressRecovery.h"
#include "platform/Platform.h"
#include "solver/BandOrdering.h"
#include "solver/NodeGraph.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <future>
#include <numeric>
#include <optional>

namespace tarnvexo {

namespace {

constexpr double BytesToGigabytes = 1.0 / (1 << 30);

// Sound models differ by 1e-9 and less.
constexpr double EnergyTolerance = 1e-6;

void AddWarning(const std::string& text, std::vector<std::string>& warnings)
{
    if (!text.empty()) {
        warnings.push_back(text);
    }
}

// The model, with the origin at its centroid.
void ReadAndShift(ModelStore& model, const std::string& modelFile, std::vector<std::string>& warnings)
{
    std::string reading = LoadModel(model, modelFile);
    if (!reading.empty()) {
        reading.pop_back(); // the last line end
    }
    AddWarning(reading, warnings);
    if (model.NPOIN < 1) {
        throw RunFailure(ExitBadModel, modelFile + ": error: the model has no nodes\n"
                                                   "  expected: NPOIN of 1 or more\n"
                                                   "  to do:    add the nodes to the model file");
    }
    for (std::size_t b = 0; b < model.BeamSectionRefs.size(); ++b) {
        const int type = model.BeamSectionRefs[b].BeamSecType;
        if (type < TSection || type > CSection) {
            throw RunFailure(ExitBadModel, modelFile + ": error: beam " + std::to_string(b) + " has section type " +
                                               std::to_string(type) +
                                               "\n"
                                               "  expected: BeamSecType=0 (T), 1 (L) or 2 (tube)\n"
                                               "  to do:    correct the record of this beam");
        }
    }
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
}

ModelCounts CountsOf(const ModelStore& model)
{
    ModelCounts counts;
    counts.nodes = model.NPOIN;
    counts.quads = model.NELEM_S_4ND;
    counts.tris = model.NELEM_S_3ND;
    counts.beams = model.NELEM_B;
    counts.materials = model.NMT;
    counts.thicknesses = model.NTK;
    counts.beamSections = model.NTBS + model.NLBS + model.NCBS;
    const std::vector<unsigned char> restrained = RestrainedEquations(model);
    counts.restrainedDofs = static_cast<int>(std::count(restrained.begin(), restrained.end(), 1));
    counts.nodalForces = model.NFOR;
    counts.distributedLoads = model.NDL_S_4ND + model.NDL_S_3ND + model.NDL_B;
    counts.equations = model.EquationCount;
    Vector3 low = model.NodeCoordinates.front(), high = low;
    for (const Vector3& node : model.NodeCoordinates) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], node[k]);
            high[k] = std::max(high[k], node[k]);
        }
    }
    counts.boxMin = low + model.StructureCentroid;
    counts.boxMax = high + model.StructureCentroid;
    return counts;
}

std::vector<SupportReaction> Reactions(const ModelStore& model, const FreeParts& free,
                                       const std::vector<double>& displacements)
{
    std::vector<int> equations;
    for (std::size_t i = 0; i < free.isHeld.size(); ++i) {
        if (free.isHeld[i] != 0 && free.parts.partOfNode[i / DofsPerNode] >= 0) {
            equations.push_back(static_cast<int>(i));
        }
    }
    const std::vector<double> values = ReactionsAt(model, equations, displacements, model.GLOAD);
    std::vector<SupportReaction> reactions;
    for (std::size_t k = 0; k < equations.size(); ++k) {
        const int equation = equations[k];
        reactions.push_back({{equation / DofsPerNode, static_cast<Dof>(equation % DofsPerNode)},
                             values[k],
                             free.restrained[equation] == 0});
    }
    return reactions;
}

// Both energies are the same number unless round-off has its part in the displacements.
std::string EnergyWarning(const SolveReport& report)
{
    const double larger = std::max(std::fabs(report.strainEnergy), std::fabs(report.externalWork));
    if (std::fabs(report.strainEnergy - report.externalWork) <= EnergyTolerance * larger) {
        return "";
    }
    char text[600];
    std::snprintf(text, sizeof text,
                  ": warning: the strain energy is %.6g, the work of the loads %.6g: round-off is part of the results\n"
                  "  there:    the smallest pivot, %.2g of its stiffness, is at node %d\n"
                  "  expected: the same energy within %g\n"
                  "  to do:    look there for stiffnesses of very different size side by side, and for a mechanism",
                  report.strainEnergy, report.externalWork, report.solver.smallestPivotRatio,
                  report.solver.smallestPivot.node, EnergyTolerance);
    return report.modelFile + text;
}

double LargestForce(const std::vector<SupportReaction>& reactions)
{
    double largest = 0.0;
    for (const SupportReaction& reaction : reactions) {
        if (reaction.at.dof <= DZ) {
            largest = std::max(largest, std::fabs(reaction.value));
        }
    }
    return largest;
}

} // namespace

SolveReport Solve(const SolveOptions& options, const ProgressListener& listener)
{
    platform::ExitOnInterrupt();
    std::vector<const char*> stages = {"read",      "order", "analyse",  "assemble",
                                       "factorise", "solve", "stresses", "beam sections"};
    if (options.writeResults) {
        stages.push_back("write");
    }
    StageClock clock(stages, listener);
    SolveReport report;
    report.modelFile = options.modelFile;

    clock.Next(); // read
    std::optional<ResultFiles> files;
    if (options.writeResults) {
        files.emplace(options.outputDirectory);
    }
    ModelStore model;
    ReadAndShift(model, options.modelFile, report.warnings);
    report.counts = CountsOf(model);
    clock.Expect("order", OrderingSeconds(model.NodeCoordinates.size()));
    clock.Expect("assemble", AssemblySeconds(model));
    clock.Expect("stresses", StressSeconds(model));
    clock.Expect("beam sections", BeamSectionSeconds(model));
    if (files) {
        clock.Expect("write", WritingSeconds(model));
    }

    // The ordering is the work of one thread: the loads are balanced meanwhile.
    clock.Next(); // order
    StiffnessSystem system(model, options.solver);
    std::future<void> ordering = std::async(std::launch::async | std::launch::deferred, [&] { system.Order(); });
    AssembleLoads(model);
    const LoadSizes applied = SizesOfLoads(model);
    const std::vector<NodeInertia> shellInertia = ShellInertia(model);
    report.balance = BalanceLoads(model, shellInertia, options.balance);
    if (!report.balance.shortage.empty()) {
        throw RunFailure(ExitBadModel, options.modelFile + ": error: " + report.balance.shortage);
    }
    AddWarning(BalanceWarning(model, applied, options.modelFile.c_str()), report.warnings);
    AddWarning(SupportWarning(model, applied, options.modelFile.c_str()), report.warnings);
    const FreeParts free = FindFreeParts(model);
    report.parts = ReportParts(free, options.displacements);
    AddWarning(CheckPartLoads(model, free, applied, options), report.warnings);
    ordering.get();

    clock.Next(); // analyse
    system.Analyse(options.modelFile);
    clock.Expect("factorise", FactorisationSeconds(system.Size()));
    clock.Expect("solve", SolutionSeconds(system.Size()));

    clock.Next(); // assemble
    system.Assemble();

    clock.Next(); // factorise
    system.Factorise(free.isHeld, options.modelFile);

    clock.Next(); // solve
    model.GlobalDisplacement = system.Solve(model.GLOAD);
    report.solver = system.Report();
    report.strainEnergy = system.StrainEnergy();
    report.externalWork =
        0.5 * std::inner_product(model.GLOAD.begin(), model.GLOAD.end(), model.GlobalDisplacement.begin(), 0.0);
    AddWarning(EnergyWarning(report), report.warnings);
    report.reactions = Reactions(model, free, model.GlobalDisplacement);
    report.largestReaction = LargestForce(report.reactions);
    if (options.displacements == DisplacementKind::MassOrthogonal) {
        MakeMassOrthogonal(model, shellInertia, free.parts, free.motions, model.GlobalDisplacement);
    }

    clock.Next(); // stresses
    RecoverShellStresses(model);
    AverageShellStresses(model);

    if (files) {
        files->Write(StructureDrawingFileName,
                     [&](const std::string& path) { return WriteStructureDrawing(model, path); });
    }
    ShiftOrigin(model, model.StructureCentroid); // results carry the model file's coordinates

    clock.Next(); // beam sections
    RecoverBeamSectionStresses(model);

    if (files) {
        clock.Next(); // write
        files->Write(NodalDisplacementFileName,
                     [&](const std::string& path) { return WriteNodalDisplacements(model, path); });
        files->Write(DeformationDrawingFileName,
                     [&](const std::string& path) { return WriteDeformedDrawing(model, path); });
        files->Write(ShellStressFileName, [&](const std::string& path) { return WriteShellStresses(model, path); });
        files->Write(AveragedShellStressFileName,
                     [&](const std::string& path) { return WriteAveragedShellStresses(model, path); });
        files->Write(ContourFileName, [&](const std::string& path) { return WriteContourFile(model, path); });
        report.files = files->Written();
    }
    report.largestDisplacement = LargestTranslation(model);
    report.largestRotation = LargestRotation(model);
    report.largestShellStress = LargestShellStress(model);
    report.largestBeamStress = LargestBeamStress(model);
    AddWarning(ResultWarning(model), report.warnings);
    clock.End();

    report.stages = clock.Times();
    report.seconds = clock.Seconds();
    report.peakMemoryGigabytes = static_cast<double>(platform::PeakMemory()) * BytesToGigabytes;
    return report;
}

InfoReport Info(const std::string& modelFile, const ProgressListener& listener)
{
    platform::ExitOnInterrupt();
    StageClock clock({"read", "order", "analyse"}, listener);
    InfoReport report;
    report.modelFile = modelFile;

    clock.Next(); // read
    ModelStore model;
    ReadAndShift(model, modelFile, report.warnings);
    report.counts = CountsOf(model);
    clock.Expect("order", OrderingSeconds(model.NodeCoordinates.size()));

    clock.Next(); // order
    StiffnessSystem system(model, SolverKind::Sparse);
    system.Order();
    AssembleLoads(model);
    const LoadSizes applied = SizesOfLoads(model);
    report.balance = BalanceLoads(model, ShellInertia(model), BalanceKind::Exact);
    AddWarning(report.balance.shortage.empty() ? "" : modelFile + ": error: " + report.balance.shortage,
               report.warnings);
    AddWarning(SupportWarning(model, applied, modelFile.c_str()), report.warnings);
    report.parts = ReportParts(FindFreeParts(model), DisplacementKind::MassOrthogonal);

    std::vector<int> numbers(model.NodeCoordinates.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    const SkylineCost skyline = SkylineCostWith(BuildNodeGraph(model), numbers);
    report.skylineEntries = skyline.entries;
    report.skylineGigabytes = static_cast<double>(skyline.entries) * sizeof(double) * BytesToGigabytes;
    report.skylineOperations = skyline.operations;

    clock.Next(); // analyse
    report.availableMemoryGigabytes = static_cast<double>(platform::AvailableMemory()) * BytesToGigabytes;
    try {
        system.Analyse(modelFile);
    } catch (const RunFailure& tooLarge) {
        report.warnings.push_back(tooLarge.what());
    }
    report.solver = system.Report();
    const double outside = ReadingSeconds(std::filesystem::file_size(modelFile)) + StressSeconds(model) +
                           BeamSectionSeconds(model) + WritingSeconds(model);
    report.expectedSeconds = outside + OrderingSeconds(model.NodeCoordinates.size()) + AssemblySeconds(model) +
                             FactorisationSeconds(system.Size()) + SolutionSeconds(system.Size());
    report.expectedSkylineSeconds = outside + SkylineSeconds(skyline.operations);
    report.expectedMemoryGigabytes =
        (static_cast<double>(platform::ResidentMemory()) + FactorisationBytes(system.Size(), system.Pattern())) *
        BytesToGigabytes;
    clock.End();
    return report;
}

} // namespace tarnvexo
