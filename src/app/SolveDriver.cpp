#include "app/SolveDriver.h"

#include "app/CostModel.h"
#include "app/LoadBalance.h"
#include "app/ModelCheck.h"
#include "app/ModelLoading.h"
#include "app/ResultExtremes.h"
#include "app/ResultFiles.h"
#include "app/StageClock.h"
#include "app/StiffnessSystem.h"
#include "app/SupportReactions.h"
#include "core/Units.h"
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
#include <memory>
#include <numeric>
#include <optional>

namespace tarnvexo {

namespace {

// Sound models differ by 1e-9 and less.
constexpr double EnergyTolerance = 1e-6;

void AddWarning(const std::string& text, std::vector<std::string>& warnings)
{
    if (!text.empty()) {
        warnings.push_back(text);
    }
}

// The model, with the origin at its centroid. Returns the warnings of its reading.
std::vector<std::string> ReadAndShift(ModelStore& model, const std::string& modelFile, const RuleBook& rules)
{
    std::vector<std::string> warnings = LoadModel(model, modelFile, rules);
    const std::string fault = ModelFault(model, modelFile);
    if (!fault.empty()) {
        throw RunFailure(ExitBadModel, fault);
    }
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    return warnings;
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

// Both energies are the same number unless round-off has its part in the displacements. Loads that the inertia of the
// structure balances away node by node leave only round-off of both.
std::string EnergyWarning(const SolveReport& report, double balancedForces)
{
    const double larger = std::max(std::fabs(report.strainEnergy), std::fabs(report.externalWork));
    if (std::fabs(report.strainEnergy - report.externalWork) <= EnergyTolerance * larger ||
        balancedForces <= EnergyTolerance * report.balance.forceSize) {
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

void RequireFiniteDisplacements(const ModelStore& model, const std::string& modelFile)
{
    const std::vector<double>& u = model.GlobalDisplacement;
    const auto bad = std::find_if(u.begin(), u.end(), [](double value) { return !std::isfinite(value); });
    if (bad != u.end()) {
        throw RunFailure(ExitNumerical, modelFile + ": error: the displacement of node " +
                                            std::to_string((bad - u.begin()) / DofsPerNode) +
                                            " is not a number\n"
                                            "  expected: finite numbers everywhere\n"
                                            "  to do:    look there for moduli, thicknesses, sections or coordinates "
                                            "beyond all measure");
    }
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

void WriteResults(const ModelStore& model, ResultFiles& files)
{
    files.Write(NodalDisplacementFileName,
                [&](const std::string& path) { return WriteNodalDisplacements(model, path); });
    files.Write(DeformationDrawingFileName, [&](const std::string& path) { return WriteDeformedDrawing(model, path); });
    files.Write(ShellStressFileName, [&](const std::string& path) { return WriteShellStresses(model, path); });
    files.Write(AveragedShellStressFileName,
                [&](const std::string& path) { return WriteAveragedShellStresses(model, path); });
    files.Write(ContourFileName, [&](const std::string& path) { return WriteContourFile(model, path); });
    files.Commit();
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
    report.warnings = ReadAndShift(model, options.modelFile, options.rules);
    report.counts = CountsOf(model);
    clock.Expect("order", OrderingSeconds(model.NodeCoordinates.size()));
    clock.Expect("assemble", AssemblySeconds(model));
    clock.Expect("stresses", StressSeconds(model));
    const SectionMeshSize meshes = MeasureSectionMeshes(model);
    if (!meshes.fault.empty()) {
        throw RunFailure(meshes.isBeyondMemory ? ExitNumerical : ExitBadModel, meshes.fault);
    }
    clock.Expect("beam sections", BeamSectionSeconds(meshes.patches));
    if (files) {
        clock.Expect("write", WritingSeconds(model, meshes.patches));
    }

    // The ordering is the work of one thread: the loads are balanced and the structure is drawn, about its centroid,
    // meanwhile. (Where no thread can be had, the ordering waits for get.)
    clock.Next(); // order
    auto system = std::make_unique<StiffnessSystem>(model, options.solver);
    std::future<void> ordering = std::async([&] { system->Order(); });
    const BalancedLoads loads = BalanceModelLoads(model, options.modelFile, options.balance);
    if (!loads.fault.empty()) {
        throw RunFailure(ExitBadModel, loads.fault);
    }
    report.balance = loads.sheet;
    report.parts = ReportParts(loads.free, options.displacements);
    report.warnings.insert(report.warnings.end(), loads.warnings.begin(), loads.warnings.end());
    if (files) {
        files->Write(StructureDrawingFileName,
                     [&](const std::string& path) { return WriteStructureDrawing(model, path); });
    }
    ordering.get();

    clock.Next(); // analyse
    system->Analyse(options.modelFile);
    clock.Expect("factorise", FactorisationSeconds(system->Size()));
    clock.Expect("solve", SolutionSeconds(system->Size()));

    clock.Next(); // assemble
    system->Assemble();

    clock.Next(); // factorise
    system->Factorise(loads.free.isHeld, options.modelFile);

    clock.Next(); // solve
    model.GlobalDisplacement = system->Solve(model.GLOAD);
    RequireFiniteDisplacements(model, options.modelFile);
    report.solver = system->Report();
    report.strainEnergy = system->StrainEnergy();
    system.reset(); // the factor is not needed any more
    report.externalWork =
        0.5 * std::inner_product(model.GLOAD.begin(), model.GLOAD.end(), model.GlobalDisplacement.begin(), 0.0);
    AddWarning(EnergyWarning(report, SizesOfLoads(model).forces), report.warnings);
    report.reactions = Reactions(model, loads.free, model.GlobalDisplacement);
    report.largestReaction = LargestForce(report.reactions);
    if (options.displacements == DisplacementKind::MassOrthogonal) {
        MakeMassOrthogonal(model, loads.shellInertia, loads.free.parts, loads.free.motions, model.GlobalDisplacement);
    }

    clock.Next(); // stresses
    RecoverShellStresses(model);
    AverageShellStresses(model);
    ShiftOrigin(model, model.StructureCentroid); // results carry the model file's coordinates

    clock.Next(); // beam sections
    RecoverBeamSectionStresses(model);

    if (files) {
        clock.Next(); // write
        try {
            WriteResults(model, *files);
            report.files = files->Written();
        } catch (const RunFailure& failure) { // the report is not lost with the files
            report.fileFault = failure.what();
        }
    }
    report.largestDisplacement = LargestTranslation(model);
    report.largestRotation = LargestRotation(model);
    report.largestShellStress = LargestShellStress(model);
    report.largestBeamStress = LargestBeamStress(model);
    AddWarning(ResultWarning(model), report.warnings);
    clock.End();

    report.stages = clock.Times();
    report.seconds = clock.Seconds();
    report.peakMemoryGigabytes = static_cast<double>(platform::PeakMemory()) * GigabytesPerByte;
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
    report.warnings = ReadAndShift(model, modelFile, RuleBook());
    report.counts = CountsOf(model);
    clock.Expect("order", OrderingSeconds(model.NodeCoordinates.size()));

    clock.Next(); // order
    StiffnessSystem system(model, SolverKind::Automatic);
    system.Order();
    const BalancedLoads loads = BalanceModelLoads(model, modelFile, BalanceKind::Exact);
    report.balance = loads.sheet;
    report.parts = ReportParts(loads.free, DisplacementKind::MassOrthogonal);
    report.warnings.insert(report.warnings.end(), loads.warnings.begin(), loads.warnings.end());
    AddWarning(loads.fault, report.warnings); // what solve would refuse

    std::vector<int> numbers(model.NodeCoordinates.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    const SkylineCost skyline = SkylineCostWith(BuildNodeGraph(model), numbers);
    report.skylineEntries = skyline.entries;
    report.skylineGigabytes = static_cast<double>(skyline.entries) * sizeof(double) * GigabytesPerByte;
    report.skylineOperations = skyline.operations;

    clock.Next(); // analyse
    report.availableMemoryGigabytes = static_cast<double>(platform::AvailableMemory()) * GigabytesPerByte;
    try {
        system.Analyse(modelFile);
    } catch (const RunFailure& tooLarge) {
        report.warnings.push_back(tooLarge.what());
    }
    report.solver = system.Report();
    const SectionMeshSize meshes = MeasureSectionMeshes(model);
    AddWarning(meshes.fault, report.warnings);
    std::error_code noFile; // a pipe has no size
    const std::uintmax_t fileBytes = std::filesystem::file_size(modelFile, noFile);
    const double outside = ReadingSeconds(noFile ? 0 : fileBytes) + StressSeconds(model) +
                           BeamSectionSeconds(meshes.patches) + WritingSeconds(model, meshes.patches);
    report.expectedSeconds = outside + OrderingSeconds(model.NodeCoordinates.size()) + AssemblySeconds(model) +
                             FactorisationSeconds(system.Size()) + SolutionSeconds(system.Size());
    report.expectedSkylineSeconds = outside + SkylineSeconds(skyline.operations);
    // The factor is gone before the section meshes come.
    report.expectedMemoryGigabytes = (static_cast<double>(platform::ResidentMemory()) +
                                      std::max(FactorisationBytes(system.Size(), system.Pattern()), meshes.bytes)) *
                                     GigabytesPerByte;
    clock.End();
    return report;
}

} // namespace tarnvexo
