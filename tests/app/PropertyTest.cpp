// What must hold for every model, on random ones: the two kinds of run agree, results follow the description of the
// structure (axes, units, numbers, node orders) as physics says and only so, and they are linear in the loads.
// TARNVEXO_PROPERTY_SEEDS=first:count takes other models than the suite's. A model that fails is written to
// property_failures/ in the current directory, the changed one beside it. With TARNVEXO_PROPERTY_PRINT set, every
// comparison is printed with what it allows.
#include "app/SolveDriver.h"
#include "app/SparseAssembly.h"
#include "app/SupportReactions.h"
#include "inertia/StructureCentroid.h"
#include "output/BeamSectionStress.h"
#include "output/ModelFileWriter.h"
#include "output/NodalAveraging.h"
#include "output/ShellStressRecovery.h"
#include "solver/NodeOrdering.h"
#include "support/ChangedModel.h"
#include "support/MeshBuilder.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"
#include "support/SolveSteps.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <numbers>
#include <numeric>
#include <random>

namespace tarnvexo {
namespace {

using namespace test;

// Largest difference beside the largest value of the quantity, where nothing is solved.
constexpr double Tolerance = 1e-10;

// Displacements of section walls come through links 1e3 to 1e6 times as stiff as the walls.
constexpr double WallTolerance = 1e-6;

std::vector<unsigned> Seeds()
{
    unsigned first = 0, count = 40;
    if (const char* range = std::getenv("TARNVEXO_PROPERTY_SEEDS")) {
        if (std::sscanf(range, "%u:%u", &first, &count) != 2) {
            ADD_FAILURE() << "TARNVEXO_PROPERTY_SEEDS=" << range << " is not first:count";
        }
    }
    std::vector<unsigned> seeds(count);
    std::iota(seeds.begin(), seeds.end(), first);
    return seeds;
}

// ------------------------------------------------------------ models

Supports SupportsOf(unsigned seed)
{
    constexpr Supports kinds[] = {Supports::None, Supports::ThreeTwoOne, Supports::Clamped, Supports::More};
    return kinds[seed % 4];
}

// Warped quadrilaterals only where they are held: a free one depends on the holds, which rigid motions strain.
ModelStore ModelOf(unsigned seed)
{
    return StoreOf(
        RandomAssembly(seed, SupportsOf(seed), SupportsOf(seed) == Supports::None ? Quads::Flat : Quads::Warped));
}
ModelStore FlatModelOf(unsigned seed)
{
    return StoreOf(RandomAssembly(seed, SupportsOf(seed), Quads::Flat));
}

class Random {
public:
    explicit Random(unsigned seed) : generator(seed + 12345u) {}

    double Between(double low, double high) { return low + (high - low) * (generator() / 4294967296.0); }
    int Below(int count) { return static_cast<int>(generator() % static_cast<unsigned>(count)); }
    std::vector<int> Permutation(int count)
    {
        std::vector<int> numbers(static_cast<std::size_t>(count));
        std::iota(numbers.begin(), numbers.end(), 0);
        for (int k = count; k > 1; --k) { std::swap(numbers[k - 1], numbers[Below(k)]); }
        return numbers;
    }

private:
    std::mt19937 generator;
};

// Rotation about a random axis (Rodrigues).
Matrix3 RandomRotation(Random& random)
{
    const Vector3 n = Normalised({random.Between(-1, 1), random.Between(-1, 1), random.Between(0.1, 1)});
    const double angle = random.Between(0.3, 2.0 * std::numbers::pi);
    const double c = std::cos(angle), s = std::sin(angle);
    Matrix3 Q;
    for (int i = 0; i < 3; ++i) {
        Vector3 unit = {};
        unit[i] = 1.0;
        const Vector3 turned = c * unit + s * Cross(n, unit) + (1.0 - c) * Dot(n, unit) * n;
        for (int j = 0; j < 3; ++j) { Q[j][i] = turned[j]; }
    }
    return Q;
}

// ------------------------------------------------------------ a run with all its results

struct Results {
    SolveSteps steps;
    std::vector<double> reactions; // per restrained equation, all six of a node
};

Results ResultsOf(const ModelStore& model, SolverKind kind, BalanceKind balance = BalanceKind::Exact)
{
    Results results = {RunSolveSteps(model, kind, balance), {}};
    ModelStore& solved = results.steps.model;
    std::vector<int> equations(results.steps.held.size());
    std::iota(equations.begin(), equations.end(), 0);
    results.reactions = ReactionsAt(solved, equations, results.steps.held, solved.GLOAD);
    for (std::size_t i = 0; i < equations.size(); ++i) { results.reactions[i] *= results.steps.free.restrained[i]; }
    AverageShellStresses(solved);
    ShiftOrigin(solved, solved.StructureCentroid);
    return results;
}

// Round-off of the solution. Entries of K that are off by the share ε of their size change the energy uᵀ·K·u by at most
// ε·|u|ᵀ·|K|·|u|: many times more where large displacements strain little, as in a thin plate.
double SolutionTolerance(const SolveSteps& steps)
{
    constexpr double share = 100.0 * std::numeric_limits<double>::epsilon(); // sums of some terms, element and matrix
    const int count = steps.model.NPOIN;
    std::vector<int> sequence(static_cast<std::size_t>(count));
    std::iota(sequence.begin(), sequence.end(), 0);
    const NodeGraph graph = BuildNodeGraph(steps.model);
    const EliminationOrder order = OrderFromSequence(sequence);
    BlockMatrix K;
    K.pattern = LowerPattern(graph, order);
    AssembleBlockMatrix(steps.model, order, K);
    std::vector<double> u(steps.held.size()), f(u.size()), size(u.size());
    for (int p = 0; p < count; ++p) {
        std::copy_n(&steps.held[std::size_t(DofsPerNode) * order.nodeAt[p]], DofsPerNode, &u[DofsPerNode * p]);
    }
    MultiplyBlockMatrix(K, u.data(), f.data(), size.data());
    double terms = 0.0;
    for (std::size_t i = 0; i < u.size(); ++i) { terms += std::fabs(u[i]) * size[i]; }
    return std::max(Tolerance, share * terms / (2.0 * steps.strainEnergy));
}

SolverKind EngineOf(unsigned seed)
{
    return seed % 2 == 0 ? SolverKind::Skyline : SolverKind::Sparse;
}

// ------------------------------------------------------------ comparison

// Expected and actual values of one quantity.
class Comparison {
public:
    explicit Comparison(std::string quantity) : quantity(std::move(quantity)) {}

    void Add(double expected, double actual)
    {
        largest = std::max(largest, std::fabs(expected));
        const double d = std::fabs(expected - actual);
        difference = d <= difference ? difference : d; // also of what is not a number
    }
    void Add(const Vector3& expected, const Vector3& actual)
    {
        for (int k = 0; k < 3; ++k) { Add(expected[k], actual[k]); }
    }

    // At least so large is what the values are differences of.
    void ScaleIsAtLeast(double scale) { largest = std::max(largest, scale); }

    double Relative() const { return largest == 0.0 ? difference : difference / largest; }
    const std::string& Quantity() const { return quantity; }

private:
    std::string quantity;
    double largest = 0.0;
    double difference = 0.0;
};

class Property {
public:
    // solutionTolerance: for what comes from solving the model.
    Property(const char* name, unsigned seed, const ModelStore& model, const ModelStore& changed,
             double solutionTolerance)
        : name(name), seed(seed), model(model), changed(changed), solutionTolerance(solutionTolerance)
    {
    }

    void Expect(const Comparison& comparison) { Expect(comparison, solutionTolerance); }

    void Expect(const Comparison& comparison, double tolerance)
    {
        if (std::getenv("TARNVEXO_PROPERTY_PRINT")) {
            std::printf("%-28s %6u %-30s %.1e of %.1e\n", name, seed, comparison.Quantity().c_str(),
                        comparison.Relative(), tolerance);
        }
        if (comparison.Relative() <= tolerance) {
            return;
        }
        const std::filesystem::path directory = std::filesystem::absolute("property_failures");
        std::filesystem::create_directories(directory);
        const std::string file = (directory / (std::string(name) + "-" + std::to_string(seed))).string();
        WriteModelFile(model, file + ".txt");
        WriteModelFile(changed, file + "-changed.txt");
        ADD_FAILURE() << name << ", seed " << seed << ": " << comparison.Quantity() << " differ by "
                      << comparison.Relative() << " of the largest, allowed " << tolerance << "; the model is " << file
                      << ".txt";
    }

private:
    const char* name;
    unsigned seed;
    const ModelStore& model;
    const ModelStore& changed;
    double solutionTolerance;
};

Vector3 Part(const std::vector<double>& values, int node, int first)
{
    const double* at = &values[std::size_t(DofsPerNode) * node + first];
    return {at[0], at[1], at[2]};
}

// Q·σ·Qᵀ, with σ in the order of StressComponent.
std::array<double, StressCount> Turned(const Matrix3& Q, const double* s)
{
    const Matrix3 old = {{{s[SX], s[TXY], s[TZX]}, {s[TXY], s[SY], s[TYZ]}, {s[TZX], s[TYZ], s[SZ]}}};
    Matrix3 turned = {};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k < 3; ++k) {
                for (int l = 0; l < 3; ++l) { turned[i][j] += Q[i][k] * old[k][l] * Q[j][l]; }
            }
        }
    }
    return {turned[0][0], turned[1][1], turned[2][2], turned[0][1], turned[2][0], turned[1][2]};
}

void AddStress(const ModelChange& change, const double* old, const double* changed, Comparison& comparison)
{
    const std::array<double, StressCount> expected = Turned(change.Q, old);
    for (int k = 0; k < StressCount; ++k) {
        comparison.Add(change.force / (change.length * change.length) * expected[k], changed[k]);
    }
}

template <int Nodes>
void AddShell(const ModelChange& change, NodeOrder order, const ShellElement<Nodes>& old,
              const ShellElement<Nodes>& changed, Comparison& raw, Comparison& averaged)
{
    const bool turned = change.TurnsNormal(order);
    for (int i = 0; i < Nodes; ++i) {
        const int o = order.Old(i, Nodes);
        AddStress(change, turned ? old.negativeFace[o] : old.positiveFace[o], changed.positiveFace[i], raw);
        AddStress(change, turned ? old.positiveFace[o] : old.negativeFace[o], changed.negativeFace[i], raw);
        AddStress(change, turned ? old.averagedNegativeFace[o] : old.averagedPositiveFace[o],
                  changed.averagedPositiveFace[i], averaged);
        AddStress(change, turned ? old.averagedPositiveFace[o] : old.averagedNegativeFace[o],
                  changed.averagedNegativeFace[i], averaged);
    }
}

void ExpectSameNodes(const Results& old, const Results& changed, const ModelChange& change, Property& property)
{
    Comparison translations("translations"), rotations("rotations"), forces("reaction forces"),
        moments("reaction moments");
    for (int n = 0; n < old.steps.model.NPOIN; ++n) {
        const auto& u = old.steps.model.GlobalDisplacement;
        const auto& v = changed.steps.model.GlobalDisplacement;
        const int m = change.Node(n);
        translations.Add(change.length * change.Polar(Part(u, n, DX)), Part(v, m, DX));
        rotations.Add(change.Axial(Part(u, n, RX)), Part(v, m, RX));
        forces.Add(change.force * change.Polar(Part(old.reactions, n, DX)), Part(changed.reactions, m, DX));
        moments.Add(change.force * change.length * change.Axial(Part(old.reactions, n, RX)),
                    Part(changed.reactions, m, RX));
    }
    forces.ScaleIsAtLeast(change.force * old.steps.balance.forceSize);
    moments.ScaleIsAtLeast(change.force * change.length * old.steps.balance.momentSize);
    for (const Comparison& comparison : {translations, rotations, forces, moments}) { property.Expect(comparison); }
}

void ExpectSameStresses(const ModelStore& old, const ModelStore& changed, const ModelChange& change, Property& property)
{
    Comparison raw("shell stresses"), averaged("averaged shell stresses");
    for (int e = 0; e < old.NELEM_S_4ND; ++e) {
        AddShell(change, change.QuadOrder(e), old.QuadElements[e], changed.QuadElements[change.Quad(e)], raw, averaged);
    }
    for (int e = 0; e < old.NELEM_S_3ND; ++e) {
        AddShell(change, change.TriOrder(e), old.TriElements[e], changed.TriElements[change.Tri(e)], raw, averaged);
    }
    property.Expect(raw);
    property.Expect(averaged);
}

void ExpectSameBalance(const SolveSteps& old, const SolveSteps& changed, const ModelChange& change, Property& property)
{
    const BalanceSheet &a = old.balance, &b = changed.balance;
    const double F = change.force, L = change.length, T = change.time, M = F * T * T / L;
    Comparison mass("mass"), centres("centroid and centre of gravity"), inertia("inertia"),
        principal("principal moments");
    mass.Add(M * a.mass.mass, b.mass.mass);
    centres.Add(change.Point(a.mass.volumeCentroid), b.mass.volumeCentroid);
    centres.Add(change.Point(a.mass.centreOfGravity), b.mass.centreOfGravity);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            double turned = 0.0;
            for (int k = 0; k < 3; ++k) {
                for (int l = 0; l < 3; ++l) { turned += change.Q[i][k] * a.mass.inertia[k][l] * change.Q[j][l]; }
            }
            inertia.Add(M * L * L * turned, b.mass.inertia[i][j]);
        }
        principal.Add(M * L * L * a.mass.principalMoments[i], b.mass.principalMoments[i]);
    }
    Comparison forces("load resultants"), moments("moments of the loads"), linear("accelerations"),
        angular("angular accelerations"), energies("energies");
    forces.Add(F * change.Polar(a.appliedAboutCentroid.force), b.appliedAboutCentroid.force);
    forces.Add(F * a.forceSize, b.forceSize);
    moments.Add(F * L * change.Axial(a.appliedAboutCentroid.moment), b.appliedAboutCentroid.moment);
    moments.Add(F * L * a.momentSize, b.momentSize);
    const Vector3 turnedForce = F * change.Polar(a.appliedAboutOrigin.force);
    moments.Add(F * L * change.Axial(a.appliedAboutOrigin.moment) + Cross(change.shift, turnedForce),
                b.appliedAboutOrigin.moment);
    linear.Add(L / (T * T) * change.Polar(a.applied.a), b.applied.a);
    angular.Add(1.0 / (T * T) * change.Axial(a.applied.alpha), b.applied.alpha);
    energies.Add(F * L * old.strainEnergy, changed.strainEnergy);
    for (const Comparison& comparison : {mass, centres, inertia, principal, forces, moments, linear, angular}) {
        property.Expect(comparison, Tolerance);
    }
    property.Expect(energies);
}

void ExpectSameStructure(const char* name, unsigned seed, const ModelStore& model, const ModelChange& change)
{
    const ModelStore changed = Changed(model, change);
    const Results a = ResultsOf(model, EngineOf(seed)), b = ResultsOf(changed, EngineOf(seed));
    Property property(name, seed, model, changed, std::max(SolutionTolerance(a.steps), SolutionTolerance(b.steps)));
    ExpectSameNodes(a, b, change, property);
    ExpectSameStresses(a.steps.model, b.steps.model, change, property);
    ExpectSameBalance(a.steps, b.steps, change, property);
}

// ------------------------------------------------------------ another description of the same structure

// Supports that hold single directions allow only axes that are the old ones in another order.
Matrix3 OtherAxes(unsigned seed, Random& random)
{
    if (SupportsOf(seed) == Supports::None || SupportsOf(seed) == Supports::Clamped) {
        return RandomRotation(random);
    }
    return {{{0, 0, -1}, {1, 0, 0}, {0, -1, 0}}};
}

TEST(Results, TurnWithTheAxes)
{
    for (const unsigned seed : Seeds()) {
        Random random(seed);
        ModelChange change;
        change.Q = OtherAxes(seed, random);
        ExpectSameStructure("TurnWithTheAxes", seed, ModelOf(seed), change);
    }
}

TEST(Results, DoNotDependOnTheOrigin)
{
    for (const unsigned seed : Seeds()) {
        ModelChange change;
        change.shift = {-31.0, 17.5, 8.25};
        ExpectSameStructure("DoNotDependOnTheOrigin", seed, ModelOf(seed), change);
    }
}

TEST(Results, AreMirroredWithTheModel)
{
    for (const unsigned seed : Seeds()) {
        ModelChange change;
        change.Q = {{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};
        ExpectSameStructure("AreMirroredWithTheModel", seed, ModelOf(seed), change);
    }
}

TEST(Results, FollowTheNumbersOfNodesAndElements)
{
    for (const unsigned seed : Seeds()) {
        const ModelStore model = ModelOf(seed);
        Random random(seed);
        ModelChange change;
        change.nodes = random.Permutation(model.NPOIN);
        change.quads = random.Permutation(model.NELEM_S_4ND);
        change.tris = random.Permutation(model.NELEM_S_3ND);
        change.beams = random.Permutation(model.NELEM_B);
        ExpectSameStructure("FollowTheNumbers", seed, model, change);
    }
}

TEST(Results, OfFlatElementsDoNotDependOnTheirNodeOrder)
{
    for (const unsigned seed : Seeds()) {
        const ModelStore model = FlatModelOf(seed);
        Random random(seed);
        ModelChange change;
        for (int e = 0; e < model.NELEM_S_4ND; ++e) {
            change.quadOrders.push_back({random.Below(4), random.Below(2) == 1});
        }
        for (int e = 0; e < model.NELEM_S_3ND; ++e) {
            change.triOrders.push_back({random.Below(3), random.Below(2) == 1});
        }
        for (int b = 0; b < model.NELEM_B; ++b) { change.beamsReversed.push_back(random.Below(2) == 1); }
        ExpectSameStructure("NodeOrder", seed, model, change);
    }
}

TEST(Results, FollowTheUnits)
{
    for (const unsigned seed : Seeds()) {
        Random random(seed);
        ModelChange change;
        if (seed % 2 == 0) { // metre, kilogram, newton to millimetre, tonne, newton
            change.length = 1000.0;
        } else {
            change.length = random.Between(0.01, 100.0);
            change.force = random.Between(0.001, 1000.0);
            change.time = random.Between(0.01, 100.0);
        }
        ExpectSameStructure("FollowTheUnits", seed, ModelOf(seed), change);
    }
}

// The plane of a warped quadrilateral is that of its first three nodes: the twin of the statement above that must fail.
TEST(Results, OfWarpedQuadrilateralsDependOnTheFirstNode)
{
    int warped = 0;
    for (const unsigned seed : Seeds()) {
        const ModelStore model = StoreOf(RandomAssembly(seed, Supports::Clamped, Quads::Warped));
        if (model.NELEM_S_4ND < 4) {
            continue;
        }
        ModelChange change;
        change.quadOrders.assign(std::size_t(model.NELEM_S_4ND), {1, false});
        const double before = RunSolveSteps(model, SolverKind::Skyline, BalanceKind::Exact).strainEnergy;
        const double after =
            RunSolveSteps(Changed(model, change), SolverKind::Skyline, BalanceKind::Exact).strainEnergy;
        EXPECT_GT(std::fabs(after - before), 1e-6 * before) << "seed " << seed;
        ++warped;
    }
    EXPECT_TRUE(warped > 0 || Seeds().size() < 20) << "no model had quadrilaterals";
}

// ------------------------------------------------------------ section walls of beams

void ExpectSameWalls(const char* name, unsigned seed, const ModelStore& model, const ModelChange& change)
{
    const ModelStore changed = Changed(model, change);
    Results a = ResultsOf(model, EngineOf(seed)), b = ResultsOf(changed, EngineOf(seed));
    Property property(name, seed, model, changed, std::max(SolutionTolerance(a.steps), SolutionTolerance(b.steps)));
    RecoverBeamSectionStresses(a.steps.model);
    RecoverBeamSectionStresses(b.steps.model);
    Comparison places("wall coordinates"), translations("wall translations"), stresses("wall stresses"),
        averaged("averaged wall stresses");
    for (int e = 0; e < model.NELEM_B; ++e) {
        const BeamSectionModel& old = a.steps.model.BeamStressRecords[e];
        const BeamSectionModel& now = b.steps.model.BeamStressRecords[change.Beam(e)];
        ASSERT_EQ(old.nodes.size(), now.nodes.size());
        ASSERT_EQ(old.patches.size(), now.patches.size());
        for (int n = 0; n < int(old.nodes.size()); ++n) {
            places.Add(change.Point(old.nodes[n]), now.nodes[n]);
            translations.Add(change.length * change.Polar(Part(old.displacements, n, DX)),
                             Part(now.displacements, n, DX));
            if (change.length == 1.0) { // joints are found within an absolute distance
                AddStress(change, old.averaged[n].positiveFace, now.averaged[n].positiveFace, averaged);
                AddStress(change, old.averaged[n].negativeFace, now.averaged[n].negativeFace, averaged);
            }
        }
        for (std::size_t p = 0; p < old.patches.size(); ++p) {
            for (int i = 0; i < QuadNodeCount; ++i) {
                AddStress(change, old.patches[p].positiveFace[i], now.patches[p].positiveFace[i], stresses);
                AddStress(change, old.patches[p].negativeFace[i], now.patches[p].negativeFace[i], stresses);
            }
        }
    }
    property.Expect(places, Tolerance);
    for (const Comparison& comparison : {translations, stresses, averaged}) {
        property.Expect(comparison, WallTolerance);
    }
}

TEST(Results, OfSectionWallsTurnWithTheAxesAndFollowTheNumbers)
{
    for (const unsigned seed : Seeds()) {
        if (seed % 20 != 2) { // many equations each
            continue;
        }
        const ModelStore model = ModelOf(seed);
        Random random(seed);
        ModelChange change;
        change.Q = OtherAxes(seed, random);
        change.nodes = random.Permutation(model.NPOIN);
        change.beams = random.Permutation(model.NELEM_B);
        ExpectSameWalls("WallsTurn", seed, model, change);
    }
}

TEST(Results, OfSectionWallsFollowTheUnits)
{
    for (const unsigned seed : Seeds()) {
        if (seed % 20 != 2) {
            continue;
        }
        ModelChange change;
        change.length = 1000.0;
        ExpectSameWalls("WallsFollowTheUnits", seed, ModelOf(seed), change);
    }
}

// ------------------------------------------------------------ engines and kinds of run

std::string FileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void ExpectSameSolution(const char* name, unsigned seed, const ModelStore& model, const SolveSteps& steps,
                        const ModelStore& b)
{
    const ModelStore& a = steps.model;
    Property property(name, seed, model, model, SolutionTolerance(steps));
    Comparison translations("translations"), rotations("rotations");
    for (int n = 0; n < model.NPOIN; ++n) {
        translations.Add(Part(a.GlobalDisplacement, n, DX), Part(b.GlobalDisplacement, n, DX));
        rotations.Add(Part(a.GlobalDisplacement, n, RX), Part(b.GlobalDisplacement, n, RX));
    }
    property.Expect(translations);
    property.Expect(rotations);
    ExpectSameStresses(a, b, ModelChange(), property);
}

TEST(Results, AreTheSameOfEitherEngine)
{
    for (const unsigned seed : Seeds()) {
        const ModelStore model = ModelOf(seed);
        ExpectSameSolution("EitherEngine", seed, model, ResultsOf(model, SolverKind::Skyline).steps,
                           ResultsOf(model, SolverKind::Sparse).steps.model);
    }
}

TEST(Results, OfTheConsoleRunAreThoseOfSolveWithItsBalanceAndHolds)
{
    for (const unsigned seed : Seeds()) {
        if (SupportsOf(seed) == Supports::None) { // the console run needs supports
            continue;
        }
        const ModelStore model = ModelOf(seed);
        ModelStore console = model;
        SolveFree(console);
        RecoverShellStresses(console);
        AverageShellStresses(console);
        for (const SolverKind engine : {SolverKind::Skyline, SolverKind::Sparse}) {
            const Results solve = ResultsOf(model, engine, BalanceKind::Classic);
            ExpectSameSolution("ConsoleRun", seed, model, solve.steps, console);
        }
    }
}

// All six files of both kinds of run, compared as the cases are. (With the other engine the statement before this says
// the same of the numbers.)
TEST(Results, OfTheConsoleRunAreInTheFilesOfSolveToo)
{
    for (const unsigned seed : Seeds()) {
        if (seed % 40 != 3) { // seconds each
            continue;
        }
        const std::string model = RandomAssembly(seed, SupportsOf(seed), Quads::Warped).Text();
        const TemporaryDirectory directory;
        const auto inDirectory = [&](const std::string& name, const std::string& command) {
            std::filesystem::create_directory(name);
            std::ofstream(name + "/fem_solving.txt") << model;
            const std::string whole = "cd " + name + " && " + command + " > report.txt 2>&1 < /dev/null";
            EXPECT_EQ(std::system(whole.c_str()), 0) << "seed " << seed << ": " << command;
        };
        inDirectory("console", TARNVEXO_PROGRAM);
        inDirectory("solve",
                    TARNVEXO_PROGRAM " solve . --balance classic --displacements held --quiet --solver sparse");
        EXPECT_EQ(
            std::system(TARNVEXO_PYTHON " " TARNVEXO_SOURCE_DIR "/tests/cases/compare.py console solve > compared.txt"),
            0)
            << "seed " << seed << "\n"
            << FileText("compared.txt");
    }
}

// ------------------------------------------------------------ linear in the loads

// A share of the loads, record by record: those with flag 1, the others become zero.
ModelStore WithLoads(ModelStore model, Random& random, std::vector<bool>& taken, bool complement)
{
    std::size_t record = 0;
    const auto isTaken = [&] {
        if (record == taken.size()) {
            taken.push_back(random.Below(2) == 1);
        }
        return taken[record++] != complement;
    };
    for (NodalForce& load : model.NodalForces) {
        if (!isTaken()) {
            load = {load.node, {}};
        }
    }
    for (auto* loads : {&model.QuadDistributedLoads, &model.TriDistributedLoads}) {
        for (ShellDistributedLoad& load : *loads) {
            if (!isTaken()) {
                load = {load.element, {}};
            }
        }
    }
    for (BeamDistributedLoad& load : model.BeamDistributedLoads) {
        if (!isTaken()) {
            load = {load.element, 0.0, 0.0};
        }
    }
    return model;
}

// The loads of a model in two shares.
struct LoadCases {
    ModelStore first, second;

    LoadCases(const ModelStore& model, unsigned seed)
    {
        Random random(seed);
        std::vector<bool> taken;
        first = WithLoads(model, random, taken, false);
        second = WithLoads(model, random, taken, true);
    }
};

std::vector<double> StressesAndDisplacements(const Results& results)
{
    std::vector<double> all = ShellStresses(results.steps.model);
    const std::vector<double>& u = results.steps.model.GlobalDisplacement;
    all.insert(all.end(), u.begin(), u.end());
    return all;
}

TEST(Results, OfDoubledLoadsAreTwiceAsLargeToTheLastBit)
{
    for (const unsigned seed : Seeds()) {
        const ModelStore model = ModelOf(seed);
        ModelStore doubled = model;
        for (NodalForce& load : doubled.NodalForces) {
            for (double& component : load.components) { component *= 2.0; }
        }
        for (auto* loads : {&doubled.QuadDistributedLoads, &doubled.TriDistributedLoads}) {
            for (ShellDistributedLoad& load : *loads) {
                for (double& pressure : load.pressure) { pressure *= 2.0; }
            }
        }
        for (BeamDistributedLoad& load : doubled.BeamDistributedLoads) {
            load = {load.element, 2.0 * load.q1, 2.0 * load.q2};
        }
        std::vector<double> once = StressesAndDisplacements(ResultsOf(model, EngineOf(seed)));
        for (double& value : once) { value *= 2.0; }
        EXPECT_TRUE(once == StressesAndDisplacements(ResultsOf(doubled, EngineOf(seed)))) << "seed " << seed;
    }
}

TEST(Results, OfTwoLoadCasesAddUp)
{
    for (const unsigned seed : Seeds()) {
        const ModelStore model = ModelOf(seed);
        const LoadCases cases(model, seed);
        const Results both = ResultsOf(model, EngineOf(seed));
        const Results a = ResultsOf(cases.first, EngineOf(seed)), b = ResultsOf(cases.second, EngineOf(seed));
        Property property("AddUp", seed, model, cases.first, SolutionTolerance(both.steps));
        const auto expectSum = [&](const char* quantity, const std::vector<double>& x, const std::vector<double>& y,
                                   const std::vector<double>& sum) {
            Comparison comparison(quantity);
            for (std::size_t i = 0; i < sum.size(); ++i) {
                comparison.Add(x[i] + y[i], sum[i]);
                comparison.ScaleIsAtLeast(std::max(std::fabs(x[i]), std::fabs(y[i])));
            }
            property.Expect(comparison);
        };
        expectSum("displacements", a.steps.model.GlobalDisplacement, b.steps.model.GlobalDisplacement,
                  both.steps.model.GlobalDisplacement);
        expectSum("shell stresses", ShellStresses(a.steps.model), ShellStresses(b.steps.model),
                  ShellStresses(both.steps.model));
        expectSum("balanced loads", a.steps.model.GLOAD, b.steps.model.GLOAD, both.steps.model.GLOAD);
    }
}

// Betti (1872): the loads of one case do the same work on the displacements of the other as the other way round.
// Supports do none, and neither do balanced loads on rigid motions.
TEST(Results, OfTwoLoadCasesAreReciprocal)
{
    for (const unsigned seed : Seeds()) {
        const ModelStore model = ModelOf(seed);
        const LoadCases cases(model, seed);
        const SolveSteps a = RunSolveSteps(cases.first, EngineOf(seed), BalanceKind::Exact);
        const SolveSteps b = RunSolveSteps(cases.second, EngineOf(seed), BalanceKind::Exact);
        const auto work = [](const SolveSteps& loads, const SolveSteps& displaced) {
            const std::vector<double>& f = loads.model.GLOAD;
            return std::inner_product(f.begin(), f.end(), displaced.model.GlobalDisplacement.begin(), 0.0);
        };
        Property property("Reciprocal", seed, cases.first, cases.second,
                          std::max(SolutionTolerance(a), SolutionTolerance(b)));
        Comparison works("works");
        works.Add(work(a, b), work(b, a));
        works.ScaleIsAtLeast(std::sqrt(std::max(0.0, work(a, a) * work(b, b)))); // neither can be larger
        property.Expect(works);
    }
}

} // namespace
} // namespace tarnvexo
