#include "app/SolveDriver.h"

#include "app/CostModel.h"
#include "app/ElementEnergy.h"
#include "app/LoadBalance.h"
#include "app/MemoryEstimate.h"
#include "app/ModelCheck.h"
#include "app/ModelCounting.h"
#include "app/ModelFindings.h"
#include "app/ModelLoading.h"
#include "app/ResultChecks.h"
#include "app/ResultExtremes.h"
#include "app/ResultFiles.h"
#include "app/StageClock.h"
#include "app/StiffnessSystem.h"
#include "app/SupportReactions.h"
#include "checks/ModelChecks.h"
#include "checks/ModelExtent.h"
#include "core/Units.h"
#include "inertia/BalanceCheck.h"
#include "inertia/MassOrthogonal.h"
#include "inertia/StructureCentroid.h"
#include "output/BeamSectionStress.h"
#include "output/DxfDrawing.h"
#include "output/NodalAveraging.h"
#include "output/ResultCheck.h"
#include "output/ShellStressRecovery.h"
#include "platform/FilePath.h"
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
#include <system_error>

namespace tarnvexo {

namespace {

void AddWarning(const std::string& text, std::vector<std::string>& warnings)
{
    if (!text.empty()) {
        warnings.push_back(text);
    }
}

void RequireNoFault(const std::string& fault)
{
    if (!fault.empty()) {
        throw RunFailure(ExitBadModel, fault);
    }
}

// Returns the warnings of the reader.
std::vector<std::string> ReadModel(ModelStore& model, const std::string& modelFile, const RuleBook& rules)
{
    std::vector<std::string> warnings = LoadModel(model, modelFile, rules);
    RequireNoFault(ModelFault(model, modelFile));
    model.EquationCount = DofsPerNode * model.NPOIN;
    return warnings;
}

// What the rules find, and the origin at the centroid of the structure when its elements are sound.
std::vector<Finding> CheckAndShift(ModelStore& model, const std::string& modelFile, const RuleBook& rules)
{
    std::vector<Finding> findings = CheckModel(model, rules);
    if (!HaveSoundElements(findings)) {
        throw RunFailure(ExitBadModel, FindingsFault(findings, modelFile));
    }
    const std::string fault = ElementFault(model, modelFile);
    if (!fault.empty()) {
        throw RunFailure(ExitBadModel,
                         JoinedMessages(FindingsFault(findings, modelFile), TellsOfShape(findings) ? "" : fault));
    }
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    return findings;
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

// Of all parts.
int RedundantSupports(const FreeParts& free)
{
    int count = 0;
    for (const PartMotions& part : free.motions) { count += part.RedundantSupports(); }
    return count;
}

// After the symbolic analysis.
MemoryEstimate MemoryOf(const ModelStore& model, const StiffnessSystem& system, const SectionMeshSize& meshes)
{
    const double shells = static_cast<double>(model.QuadElements.size() + model.TriElements.size());
    return EstimateMemory(shells, system.Size(), system.Pattern(), meshes,
                          static_cast<double>(platform::ResidentMemory()), static_cast<double>(platform::PeakMemory()));
}

// Where the factor is wanted on disk, auto is the engine that can put it there.
SolverKind SolverFor(const SolveOptions& options)
{
    const bool wantsDisk = options.solver == SolverKind::Automatic && options.factor == FactorPlace::Disk;
    return wantsDisk ? SolverKind::Sparse : options.solver;
}

// The factor's place is chosen and told to the system; the memory that is needed with it.
// Errors: throws RunFailure when memory does not hold what must stand there.
MemoryEstimate PrepareFactor(StiffnessSystem& system, const SolveOptions& options, const MemoryEstimate& inMemory,
                             std::vector<std::string>& warnings)
{
    const double available = static_cast<double>(platform::AvailableMemory());
    const FactorPlacing placing = PlaceFactor(options.factor, inMemory, system.Size(), available, options.modelFile);
    if (placing.isOnDisk) {
        system.KeepFactorOnDisk(options.outputDirectory, options.modelFile);
    }
    if (!placing.fault.empty()) {
        throw RunFailure(ExitNumerical, placing.fault);
    }
    if (placing.isOnDisk && options.factor == FactorPlace::Automatic) {
        char text[300];
        std::snprintf(text, sizeof text,
                      ": warning: the factor of %.3g GB goes to a scratch file in %s: memory has %.3g GB free\n"
                      "  to do:    nothing; closing other programs would make the run faster",
                      inMemory.factor * GigabytesPerByte, options.outputDirectory.c_str(),
                      available * GigabytesPerByte);
        warnings.push_back(options.modelFile + text);
    }
    return placing.memory;
}

// The checks of displacements as solved for, with the origin at the centroid.
std::vector<ResultCheck> ChecksOfSolution(const ModelStore& model, const BalancedLoads& loads,
                                          const SolveReport& report)
{
    const LoadScales scales = ScalesOfLoads(report.balance, 0.5 * ModelExtent(model));
    const ElementEnergies energies = MeasureElementEnergies(model, loads.free.parts, model.GlobalDisplacement);
    return {JudgeResidual(report.solver),
            JudgeBalance(report.balance, scales),
            JudgeReactions(report.reactions, report.balance, scales, RedundantSupports(loads.free)),
            JudgeEnergy(report, energies.strainEnergy, scales, SizesOfLoads(model)),
            JudgeRigidTranslations(energies),
            JudgeRigidRotations(energies)};
}

// A model that bears the name of a result file is not lost to its own results. (A link under the name gives way, not
// what it leads to.)
void RequireModelApart(const std::string& modelFile, const std::string& directory,
                       const std::vector<std::string>& resultNames)
{
    for (const std::string& name : resultNames) {
        const std::filesystem::path result = platform::PathOf(directory) / platform::PathOf(name);
        std::error_code notThere;
        if (!std::filesystem::is_symlink(result, notThere) &&
            std::filesystem::equivalent(result, platform::PathOf(modelFile), notThere)) {
            throw RunFailure(ExitUsage, modelFile + ": error: the result file " + name +
                                            " would take the place of the model\n"
                                            "  expected: a model under a name that no result file has\n"
                                            "  to do:    choose another directory with -o DIR, or rename the model");
        }
    }
}

} // namespace

SolveReport Solve(const SolveOptions& options, const ProgressListener& listener)
{
    platform::ExitOnInterrupt();
    std::vector<const char*> stages = {"read",      "check", "order",    "analyse",      "assemble",
                                       "factorise", "solve", "stresses", "beam sections"};
    const bool writesFiles = !options.formats.empty();
    if (writesFiles) {
        stages.push_back("write");
    }
    StageClock clock(stages, listener);
    SolveReport report;
    report.modelFile = options.modelFile;

    std::optional<ResultFiles> files;
    if (writesFiles) {
        RequireModelApart(options.modelFile, options.outputDirectory, FilesOf(options.formats));
        files.emplace(options.outputDirectory, FilesOf(options.formats), FilesOfAllFormats());
    }
    clock.Next(); // read
    ModelStore model;
    report.warnings = ReadModel(model, options.modelFile, options.rules);
    report.counts = CountsOf(model);
    if (writesFiles) {
        AddWarning(WarningOfOtherFiles(options.outputDirectory, options.formats), report.warnings);
    }

    clock.Next(); // check
    const RuleBook rules = RulesForSolving(options.rules, options.balance);
    report.findings = CheckAndShift(model, options.modelFile, rules);
    clock.Expect("order", OrderingSeconds(model.NodeCoordinates.size()));
    clock.Expect("assemble", AssemblySeconds(model));
    clock.Expect("stresses", StressSeconds(model));
    const SectionMeshSize meshes = MeasureSectionMeshes(model);
    if (!meshes.fault.empty()) {
        throw RunFailure(meshes.isBeyondMemory ? ExitNumerical : ExitBadModel,
                         options.modelFile + ": error: " + meshes.fault);
    }
    clock.Expect("beam sections", BeamSectionSeconds(meshes.patches));
    if (files) {
        clock.Expect("write", WritingSeconds(model, meshes.patches, options.formats));
    }

    // The ordering is the work of one thread: the loads are balanced and the structure is drawn, about its centroid,
    // meanwhile. (Where no thread can be had, the ordering waits for get.)
    clock.Next(); // order
    auto system = std::make_unique<StiffnessSystem>(model, SolverFor(options));
    std::future<void> ordering = std::async([&] { system->Order(); });
    const BalancedLoads loads = BalanceModelLoads(model, options.modelFile, options.balance, rules);
    AddFindings(loads.findings, report.findings);
    RequireNoFault(JoinedMessages(FindingsFault(report.findings, options.modelFile), loads.fault));
    report.balance = loads.sheet;
    report.parts = ReportParts(loads.free, options.displacements);
    if (options.formats.contains(ResultFormat::Text)) {
        files->Write(StructureDrawingFileName,
                     [&](const std::string& path) { return WriteStructureDrawing(model, path); });
    }
    ordering.get();

    clock.Next(); // analyse
    system->Analyse(options.modelFile);
    const MemoryEstimate memory = PrepareFactor(*system, options, MemoryOf(model, *system, meshes), report.warnings);
    report.expectedMemoryGigabytes = memory.Peak() * GigabytesPerByte;
    clock.Expect("factorise", FactorisationSeconds(system->Size()));
    clock.Expect("solve", SolutionSeconds(system->Size()));

    clock.Next(); // assemble
    system->Assemble();

    clock.Next(); // factorise
    system->Factorise(loads.free.isHeld, options.modelFile);
    AddWarning(system->Warning(), report.warnings);

    clock.Next(); // solve
    model.GlobalDisplacement = system->Solve(model.GLOAD);
    RequireFiniteDisplacements(model, options.modelFile);
    report.solver = system->Report();
    report.strainEnergy = system->StrainEnergy();
    system.reset(); // the factor is not needed any more
    report.externalWork =
        0.5 * std::inner_product(model.GLOAD.begin(), model.GLOAD.end(), model.GlobalDisplacement.begin(), 0.0);
    report.reactions = Reactions(model, loads.free, model.GlobalDisplacement);
    report.largestReaction = LargestForce(report.reactions);
    report.resultChecks = ChecksOfSolution(model, loads, report);
    if (options.displacements == DisplacementKind::MassOrthogonal) {
        MakeMassOrthogonal(model, loads.shellInertia, loads.free.parts, loads.free.motions, model.GlobalDisplacement);
    }

    clock.Next(); // stresses
    RecoverShellStresses(model);
    AverageShellStresses(model);
    ShiftOrigin(model, model.StructureCentroid); // results carry the model file's coordinates

    clock.Next(); // beam sections
    RecoverBeamSectionStresses(model);

    report.largestDisplacement = LargestTranslation(model);
    report.largestRotation = LargestRotation(model);
    report.largestShellStress = LargestShellStress(model);
    report.largestBeamStress = LargestBeamStress(model);
    report.displacementExtremes = DisplacementExtremes(model);
    report.shellStressExtremes = ShellStressExtremes(model);
    report.beamStressExtremes = BeamStressExtremes(model);
    report.resultChecks.push_back(JudgeDisplacement(report.largestDisplacement, ModelExtent(model)));
    report.resultChecks.push_back(JudgeRotation(report.largestRotation));
    report.resultChecks.push_back(JudgeFiniteNumbers(CountNonFiniteResults(model), options.formats));

    const auto takeTimes = [&] {
        report.stages = clock.Times();
        report.seconds = clock.Seconds();
        report.peakMemoryGigabytes = static_cast<double>(platform::PeakMemory()) * GigabytesPerByte;
    };
    if (files) {
        clock.Next(); // write
        takeTimes();
        try {
            WriteResults(model, report, options.formats, options.jsonText, *files);
            report.files = files->Written();
        } catch (const RunFailure& failure) { // the report is not lost with the files
            report.fileFault = failure.what();
        }
    }
    clock.End();
    takeTimes();
    return report;
}

InfoReport Info(const CheckOptions& options, const ProgressListener& listener)
{
    platform::ExitOnInterrupt();
    StageClock clock({"read", "check", "order", "analyse"}, listener);
    const std::string& modelFile = options.modelFile;
    InfoReport report;
    report.modelFile = modelFile;

    clock.Next(); // read
    ModelStore model;
    report.warnings = ReadModel(model, modelFile, options.rules);
    report.counts = CountsOf(model);

    clock.Next(); // check
    const RuleBook rules = RulesForSolving(options.rules, BalanceKind::Exact);
    report.findings = CheckAndShift(model, modelFile, rules);
    clock.Expect("order", OrderingSeconds(model.NodeCoordinates.size()));

    clock.Next(); // order
    StiffnessSystem system(model, SolverKind::Automatic);
    system.Order();
    const BalancedLoads loads = BalanceModelLoads(model, modelFile, BalanceKind::Exact, rules);
    AddFindings(loads.findings, report.findings);
    report.fault = JoinedMessages(FindingsFault(report.findings, modelFile), loads.fault);
    report.balance = loads.sheet;
    report.parts = ReportParts(loads.free, DisplacementKind::MassOrthogonal);
    if (!loads.sheet.aboutLine.empty()) {
        report.warnings.push_back(modelFile + ": warning: " + loads.sheet.aboutLine);
    }

    std::vector<int> numbers(model.NodeCoordinates.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    const SkylineCost skyline = SkylineCostWith(BuildNodeGraph(model), numbers);
    report.skylineEntries = skyline.entries;
    report.skylineGigabytes = static_cast<double>(skyline.entries) * sizeof(double) * GigabytesPerByte;
    report.skylineOperations = skyline.operations;

    clock.Next(); // analyse
    const double available = static_cast<double>(platform::AvailableMemory());
    report.availableMemoryGigabytes = available * GigabytesPerByte;
    try {
        system.Analyse(modelFile);
    } catch (const RunFailure& tooLong) {
        report.fault = JoinedMessages(report.fault, tooLong.what());
    }
    const SectionMeshSize meshes = MeasureSectionMeshes(model);
    if (!meshes.fault.empty()) {
        report.fault = JoinedMessages(report.fault, modelFile + ": error: " + meshes.fault);
    }
    const FactorPlacing placing =
        PlaceFactor(FactorPlace::Automatic, MemoryOf(model, system, meshes), system.Size(), available, modelFile);
    if (placing.isOnDisk) {
        system.KeepFactorOnDisk(SolveOptions().outputDirectory, modelFile);
    }
    report.solver = system.Report();
    report.fault = JoinedMessages(report.fault, placing.fault);
    report.expectedMemoryGigabytes = placing.memory.Peak() * GigabytesPerByte;
    std::error_code noFile; // a pipe has no size
    const std::uintmax_t fileBytes = std::filesystem::file_size(platform::PathOf(modelFile), noFile);
    const double outside = ReadingSeconds(noFile ? 0 : fileBytes) + StressSeconds(model) +
                           BeamSectionSeconds(meshes.patches) +
                           WritingSeconds(model, meshes.patches, {ResultFormat::Text});
    report.expectedSeconds = outside + OrderingSeconds(model.NodeCoordinates.size()) + AssemblySeconds(model) +
                             FactorisationSeconds(system.Size()) + SolutionSeconds(system.Size());
    report.expectedSkylineSeconds = outside + SkylineSeconds(skyline.operations);
    clock.End();
    return report;
}

} // namespace tarnvexo
