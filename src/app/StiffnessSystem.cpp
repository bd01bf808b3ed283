#include "app/StiffnessSystem.h"

#include "app/Mechanisms.h"
#include "app/RunFailure.h"
#include "app/SoftMotions.h"
#include "app/SparseAssembly.h"
#include "core/Parallel.h"
#include "core/Units.h"
#include "solver/BandOrdering.h"
#include "solver/FactorStore.h"
#include "solver/NodeGraph.h"
#include "solver/NodeOrdering.h"
#include "solver/Refinement.h"
#include "solver/SolutionCheck.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <stdexcept>

namespace tarnvexo {

namespace {

// Pivots of sound models are 1e-6 of their diagonal entry and more. Those of mechanisms are round-off, which grows with
// the model: 1e-16 in a few elements, 5e-10 in a plate of 10,000. Below, all soft motions are looked for.
constexpr double LeastPivotRatio = 1e-8;

// Condition estimates above have cost displacements 1e-9 and more, whatever the loads: solutions are refined.
constexpr double LargestPlainCondition = 1e5;

constexpr const char* DofNames[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};

EngineKind KindFor(const ModelStore& model, SolverKind kind)
{
    switch (kind) {
    case SolverKind::Sparse:
        return EngineKind::Multifrontal;
    case SolverKind::Cholmod:
        return EngineKind::Cholmod;
    case SolverKind::Skyline:
        return EngineKind::Skyline;
    case SolverKind::Automatic:
        break;
    }
    const bool isSmall = std::int64_t(DofsPerNode) * model.NPOIN <= FewEquations;
    return isSmall ? EngineKind::Skyline : EngineKind::Multifrontal;
}

// Work with the factor, which may stand on a disk.
template <class Work> auto WithFactor(const Work& work, const SolverReport& report)
{
    try {
        return work();
    } catch (const ScratchFailure& refusal) {
        char expected[120];
        std::snprintf(expected, sizeof expected, "%.3g GB of room in a directory that takes files",
                      report.factorGigabytes);
        throw RunFailure(ExitFile, report.scratchDirectory +
                                       ": error: the scratch file for the factor of the equations failed: " +
                                       refusal.what() + "\n  expected: " + expected +
                                       "\n  to do:    make room there, or choose another directory with -o DIR");
    }
}

// Elements of one kind that have the node, as "quads 3, 17, 20".
template <class Connectivity> std::string ElementsAt(int node, const char* kind, const Connectivity& connectivity)
{
    constexpr int most = 8;
    std::string text;
    int found = 0;
    for (std::size_t e = 0; e < connectivity.size(); ++e) {
        if (std::find(connectivity[e].begin(), connectivity[e].end(), node) != connectivity[e].end()) {
            if (found++ < most) {
                text += (text.empty() ? std::string(kind) + " " : ", ") + std::to_string(e);
            }
        }
    }
    return found > most ? text + ", ..." : text;
}

std::string AllElementsAt(const ModelStore& model, int node)
{
    std::string text;
    for (const std::string& kind : {ElementsAt(node, "four-node shells", model.QuadConnectivity),
                                    ElementsAt(node, "three-node shells", model.TriConnectivity),
                                    ElementsAt(node, "beams", model.BeamConnectivity)}) {
        text += (text.empty() || kind.empty() ? "" : "; ") + kind;
    }
    return text.empty() ? "no elements" : text;
}

} // namespace

StiffnessSystem::StiffnessSystem(const ModelStore& model, SolverKind kind)
    : model(model), engineKind(KindFor(model, kind))
{
    try {
        engine = MakeSparseEngine(engineKind, ThreadCount());
    } catch (const EngineMissing& missing) {
        throw RunFailure(ExitFile, std::string("error: ") + missing.what());
    }
    report.engine = engine->Name();
    report.kernels = engine->Kernels();
    report.threads = ThreadCount();
}

void StiffnessSystem::Order()
{
    const NodeGraph graph = BuildNodeGraph(model);
    if (engineKind == EngineKind::Skyline) {
        const std::vector<int> position = ReverseCuthillMcKee(graph);
        std::vector<int> nodeAt(position.size());
        for (std::size_t n = 0; n < position.size(); ++n) { nodeAt[position[n]] = static_cast<int>(n); }
        order = OrderFromSequence(std::move(nodeAt));
        report.ordering = "reverse Cuthill-McKee on nodes";
    } else {
        ChosenOrder chosen = OrderNodes(graph, model.NodeCoordinates);
        order = std::move(chosen.order);
        report.ordering = chosen.method + " on nodes";
    }
    matrix.pattern = LowerPattern(graph, order);
}

void StiffnessSystem::Analyse(const std::string& modelFile)
{
    try {
        size = engine->Analyse(matrix.pattern);
    } catch (const std::length_error& tooLong) {
        throw RunFailure(ExitBadModel, modelFile + ": error: " + tooLong.what() +
                                           "\n"
                                           "  expected: a factor that can be addressed\n"
                                           "  to do:    use --solver sparse");
    }
    report.factorEntries = size.entries;
    report.factorGigabytes = static_cast<double>(size.entries) * sizeof(double) * GigabytesPerByte;
    report.factorOperations = size.operations;
}

void StiffnessSystem::KeepFactorOnDisk(const std::string& directory, const std::string& modelFile)
{
    if (!engine->KeepFactorIn(directory)) {
        throw RunFailure(ExitUsage, modelFile + ": error: this solver cannot keep its factor on disk (" +
                                        report.engine +
                                        ")\n"
                                        "  expected: --factor disk with --solver sparse\n"
                                        "  to do:    add --solver sparse, or leave --factor out");
    }
    report.scratchDirectory = directory;
}

void StiffnessSystem::Assemble()
{
    AssembleBlockMatrix(model, order, matrix);
}

void StiffnessSystem::Factorise(const std::vector<unsigned char>& isHeld, const std::string& modelFile)
{
    held.resize(isHeld.size());
    for (std::size_t position = 0; position < order.nodeAt.size(); ++position) {
        const std::size_t node = static_cast<std::size_t>(order.nodeAt[position]);
        std::copy_n(&isHeld[DofsPerNode * node], DofsPerNode, &held[DofsPerNode * position]);
    }
    EliminateEquations(matrix, held);
    const std::vector<double> diagonal = DiagonalOf(matrix);
    const PivotReport pivots = FactoriseMatrix();
    const bool isPositive = ReportPivots(diagonal, pivots);
    if (!isPositive && engineKind == EngineKind::Multifrontal) { // the others stop at the first
        const Inertia inertia = InertiaOf(pivots);
        inertiaLine = "\n  pivots:   " + std::to_string(inertia.negative) + " negative, " +
                      std::to_string(inertia.leftOut) + " zero or no number, of " +
                      std::to_string(pivots.pivots.size());
    }
    if (!isPositive || report.smallestPivotRatio < LeastPivotRatio) {
        TraceMechanisms(isPositive, modelFile);
        FactoriseMatrix(); // which the search has replaced
    }
}

PivotReport StiffnessSystem::FactoriseMatrix()
{
    return WithFactor([&] { return engine->Factorise(matrix); }, report);
}

// True: all pivots are positive numbers.
bool StiffnessSystem::ReportPivots(const std::vector<double>& diagonal, const PivotReport& pivots)
{
    // The first pivot that is not a positive number, else the one that lost most of its diagonal entry.
    std::size_t worst = 0;
    double smallest = 1.0;
    bool isPositive = true;
    for (std::size_t i = 0; i < diagonal.size() && isPositive; ++i) {
        const double ratio = pivots.pivots[i] / diagonal[i];
        isPositive = pivots.pivots[i] > 0.0 && std::isfinite(ratio);
        if (!isPositive || ratio < smallest) {
            smallest = ratio;
            worst = i;
        }
    }
    report.smallestPivot = {order.nodeAt.empty() ? 0 : order.nodeAt[worst / DofsPerNode],
                            static_cast<Dof>(worst % DofsPerNode)};
    report.smallestPivotRatio = smallest;
    report.conditionEstimate = 1.0 / smallest;
    return isPositive;
}

void StiffnessSystem::TraceMechanisms(bool isPositive, const std::string& modelFile)
{
    const std::vector<double> stiffness = StiffnessOfDirections(model);
    SoftMotions found =
        WithFactor([&] { return FindSoftMotions(*engine, matrix, ToEliminationOrder(stiffness)); }, report);
    for (SoftMotion& motion : found.motions) { motion.motion = ToModelOrder(motion.motion); }
    if (!found.motions.empty()) {
        const std::string text = MechanismText(model, found, stiffness, !isPositive, modelFile);
        if (!isPositive || std::any_of(found.motions.begin(), found.motions.end(), EndsTheRun)) {
            throw RunFailure(ExitNumerical, text + inertiaLine);
        }
        warning = text;
    }
    if (isPositive) {
        return;
    }
    // Entries that are no numbers have no motions: the first pivot tells the place.
    const int node = report.smallestPivot.node;
    const Vector3 place = model.NodeCoordinates[node] + model.StructureCentroid; // as in the model file
    char text[700];
    std::snprintf(text, sizeof text,
                  ": error: the stiffness is not positive definite at node %d, direction %s (%.6g, %.6g, %.6g)\n"
                  "  there:    %s\n"
                  "  expected: positive pivots: every node stiffened by elements of sound shape, material and size\n"
                  "  to do:    look there for zero or negative moduli, thicknesses or sections, for elements without\n"
                  "            area or length, and for nodes that only a mechanism holds",
                  node, DofNames[report.smallestPivot.dof], place[0], place[1], place[2],
                  AllElementsAt(model, node).c_str());
    throw RunFailure(ExitNumerical, modelFile + text + inertiaLine);
}

std::vector<double> StiffnessSystem::ToEliminationOrder(const std::vector<double>& vector) const
{
    std::vector<double> result(vector.size());
    for (std::size_t position = 0; position < order.nodeAt.size(); ++position) {
        const std::size_t node = static_cast<std::size_t>(order.nodeAt[position]);
        std::copy_n(&vector[DofsPerNode * node], DofsPerNode, &result[DofsPerNode * position]);
    }
    return result;
}

std::vector<double> StiffnessSystem::ToModelOrder(const std::vector<double>& vector) const
{
    std::vector<double> result(vector.size());
    for (std::size_t position = 0; position < order.nodeAt.size(); ++position) {
        const std::size_t node = static_cast<std::size_t>(order.nodeAt[position]);
        std::copy_n(&vector[DofsPerNode * position], DofsPerNode, &result[DofsPerNode * node]);
    }
    return result;
}

std::vector<double> StiffnessSystem::Solve(const std::vector<double>& loads)
{
    std::vector<double> f = ToEliminationOrder(loads);
    for (std::size_t i = 0; i < f.size(); ++i) { f[i] = held[i] != 0 ? 0.0 : f[i]; }
    std::vector<double> u = f;
    const Corrections corrections =
        report.conditionEstimate > LargestPlainCondition ? Corrections::Always : Corrections::WhereNeeded;
    const RefinedSolution refined = WithFactor(
        [&] {
            engine->Solve(u.data(), 1);
            return RefineSolutions(*engine, matrix, corrections, f.data(), u.data(), 1).front();
        },
        report);
    report.relativeResidual = refined.residual;
    report.refinementSteps = refined.steps;
    report.residualBeforeRefinement = refined.residualBefore;
    report.displacementErrorBefore = refined.errorBefore;
    report.displacementError = refined.error;
    strainEnergy = refined.strainEnergy;
    return ToModelOrder(u);
}

} // namespace tarnvexo
