// Averaging stresses against writing them: nodal averages of a plate of quads, joint averages of a space frame. Each
// case shows the shortest of its runs for either stage, their ratio, and both times per element, which stay level from
// size to size when a stage grows linearly. ShellStresses shows recovery and averaging with one and with two threads.
//     tarnvexo_bench --benchmark_filter=Averaging --benchmark_counters_tabular=true
#include "core/Parallel.h"
#include "elements/BeamSection.h"
#include "elements/ShellSetUp.h"
#include "output/BeamJointAveraging.h"
#include "output/BeamSectionStress.h"
#include "output/ContourFile.h"
#include "output/NodalAveraging.h"
#include "output/ShellStressFiles.h"
#include "output/ShellStressRecovery.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>
#include <string>

namespace {

using namespace tarnvexo;

constexpr int Runs = 5;

double Seconds(std::chrono::steady_clock::time_point since)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

class ScratchDirectory {
public:
    ScratchDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tarnvexo-bench-XXXXXX").string();
        path = mkdtemp(name.data());
    }
    ~ScratchDirectory() { std::filesystem::remove_all(path); }

    std::string File(const char* name) const { return (path / name).string(); }

private:
    std::filesystem::path path;
};

// Signed values of the magnitudes that stresses in Pa have.
class RandomStresses {
public:
    void Fill(double* values, int count)
    {
        for (int i = 0; i < count; ++i) { values[i] = distribution(generator); }
    }

private:
    std::mt19937_64 generator{64};
    std::normal_distribution<double> distribution{0.0, 1e8};
};

// Runs both stages `Runs` times and shows the shortest time of each.
template <class Average, class Write>
void CompareStages(benchmark::State& state, int elements, Average average, Write write)
{
    double averaging = std::numeric_limits<double>::infinity(), writing = averaging;
    for (auto run : state) {
        auto start = std::chrono::steady_clock::now();
        average();
        const double averagingNow = Seconds(start);
        start = std::chrono::steady_clock::now();
        write();
        const double writingNow = Seconds(start);
        averaging = std::min(averaging, averagingNow);
        writing = std::min(writing, writingNow);
        state.SetIterationTime(averagingNow + writingNow);
    }
    state.counters["average_s"] = averaging;
    state.counters["write_s"] = writing;
    state.counters["write/average"] = writing / averaging;
    state.counters["average_us_each"] = averaging / elements * 1e6;
    state.counters["write_us_each"] = writing / elements * 1e6;
}

// A wavy plate of about `count` quads, folded along every 20th row, in two thicknesses.
ModelStore Plate(int count)
{
    const int side = static_cast<int>(std::lround(std::sqrt(count)));
    ModelStore model;
    for (int i = 0; i <= side; ++i) {
        for (int j = 0; j <= side; ++j) {
            const double fold = std::abs(i % 40 - 20) * 0.5;
            model.NodeCoordinates.push_back({0.1 * i, 0.1 * j, 0.1 * fold + 0.02 * std::sin(0.3 * j)});
        }
    }
    RandomStresses stresses;
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            const int n = i * (side + 1) + j;
            model.QuadConnectivity.push_back({n, n + side + 1, n + side + 2, n + 1});
            Vector3 corners[QuadNodeCount];
            for (int k = 0; k < QuadNodeCount; ++k) {
                corners[k] = model.NodeCoordinates[static_cast<std::size_t>(model.QuadConnectivity.back()[k])];
            }
            QuadShellElement element;
            QuadShellSetUp(element, corners, QuadNodeCount, 2.1e11, 0.3, 7850.0, j % 30 < 15 ? 0.01 : 0.012);
            stresses.Fill(&element.positiveFace[0][0], QuadNodeCount * StressCount);
            stresses.Fill(&element.negativeFace[0][0], QuadNodeCount * StressCount);
            model.QuadElements.push_back(element);
        }
    }
    model.NPOIN = static_cast<int>(model.NodeCoordinates.size());
    model.NELEM_S_4ND = static_cast<int>(model.QuadElements.size());
    model.GlobalDisplacement.resize(model.NodeCoordinates.size() * DofsPerNode);
    stresses.Fill(model.GlobalDisplacement.data(), static_cast<int>(model.GlobalDisplacement.size()));
    return model;
}

void ShellAveraging(benchmark::State& state)
{
    ModelStore model = Plate(static_cast<int>(state.range(0)));
    const ScratchDirectory directory;
    CompareStages(
        state, model.NELEM_S_4ND, [&] { AverageShellStresses(model); },
        [&] {
            WriteAveragedShellStresses(model, directory.File("average.txt"));
            WriteContourFile(model, directory.File("contour.txt"));
        });
}
// Stresses of every quad and their averages, into elements whose memory is new; without and with all threads.
void ShellStresses(benchmark::State& state)
{
    const ModelStore plate = Plate(100000);
    const int threads = ThreadCount();
    SetThreadCount(static_cast<int>(state.range(0)));
    double recovery = std::numeric_limits<double>::infinity(), averaging = recovery;
    for (auto run : state) {
        ModelStore model = plate;
        const auto start = std::chrono::steady_clock::now();
        RecoverShellStresses(model);
        const double recoveryNow = Seconds(start);
        AverageShellStresses(model);
        const double both = Seconds(start);
        recovery = std::min(recovery, recoveryNow);
        averaging = std::min(averaging, both - recoveryNow);
        state.SetIterationTime(both);
    }
    SetThreadCount(threads);
    state.counters["recover_s"] = recovery;
    state.counters["average_s"] = averaging;
    state.counters["quads/s"] = plate.NELEM_S_4ND / (recovery + averaging);
}
BENCHMARK(ShellStresses)->Arg(1)->Arg(2)->Iterations(Runs)->UseManualTime()->Unit(benchmark::kSecond);

BENCHMARK(ShellAveraging)
    ->Arg(25000)
    ->Arg(50000)
    ->Arg(100000)
    ->Iterations(Runs)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

struct FrameMember {
    Vector3 direction;
    BeamElement beam; // from the origin
    BeamSectionModel section;
};

// T beams along x and y, tubes along z, of length 1.
std::vector<FrameMember> FrameMembers()
{
    const Material steel = {2.1e11, 0.3, 7850.0};
    const TBeamSection t = {0.6, 0.012, 0.38, 0.012};
    const CBeamSection tube = {0.5, 0.012};
    const double ends[BeamDofCount] = {};
    std::vector<FrameMember> members(3);
    for (int k = 0; k < 3; ++k) {
        FrameMember& member = members[static_cast<std::size_t>(k)];
        member.direction[static_cast<std::size_t>(k)] = 1.0;
        const Vector3 up = k == 2 ? Vector3{1, 0, 0} : Vector3{0, 0, 1};
        if (k < 2) {
            TBeamSetUp(member.beam, {}, member.direction, up, steel, t, 0.0);
        } else {
            TubeBeamSetUp(member.beam, {}, member.direction, up, steel, tube, 0.0);
        }
        const SectionOutline outline = k < 2 ? TOutline(t, 0.0) : TubeOutline(tube, 0.0);
        member.section = SolveBeamSection(member.beam, outline, ends);
    }
    return members;
}

// `count` beams of a cubic lattice: at every joint one along each axis. Stresses are drawn, not solved for.
ModelStore SpaceFrame(int count)
{
    const int side = static_cast<int>(std::ceil(std::cbrt(count / 3.0)));
    const std::vector<FrameMember> members = FrameMembers();
    RandomStresses stresses;
    ModelStore model;
    for (int b = 0; b < count; ++b) {
        const int joint = b / 3;
        const Vector3 at = {double(joint % side), double(joint / side % side), double(joint / side / side)};
        const FrameMember& member = members[static_cast<std::size_t>(b % 3)];
        BeamElement beam = member.beam;
        beam.node1 = beam.node1 + at;
        beam.node2 = beam.node2 + at;
        beam.reference = beam.reference + at;
        model.BeamElements.push_back(beam);
        model.BeamConnectivity.push_back({2 * b, 2 * b + 1});
        model.NodeCoordinates.push_back(beam.node1);
        model.NodeCoordinates.push_back(beam.node2);
        BeamSectionModel section = member.section;
        for (Vector3& node : section.nodes) { node = node + at; }
        stresses.Fill(section.displacements.data(), static_cast<int>(section.displacements.size()));
        for (SectionPatch& patch : section.patches) {
            stresses.Fill(&patch.positiveFace[0][0], QuadNodeCount * StressCount);
            stresses.Fill(&patch.negativeFace[0][0], QuadNodeCount * StressCount);
        }
        model.BeamStressRecords.push_back(std::move(section));
    }
    model.NPOIN = 2 * count;
    model.NELEM_B = count;
    model.GlobalDisplacement.resize(static_cast<std::size_t>(2 * count * DofsPerNode));
    return model;
}

void BeamAveraging(benchmark::State& state)
{
    ModelStore model = SpaceFrame(static_cast<int>(state.range(0)));
    std::size_t patches = 0;
    for (const BeamSectionModel& section : model.BeamStressRecords) { patches += section.patches.size(); }
    const ScratchDirectory directory;
    CompareStages(
        state, model.NELEM_B, [&] { AverageBeamJoints(model); },
        [&] { WriteContourFile(model, directory.File("contour.txt")); });
    state.counters["patches"] = static_cast<double>(patches);
}
BENCHMARK(BeamAveraging)
    ->Arg(5000)
    ->Arg(10000)
    ->Arg(20000)
    ->Iterations(Runs)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

} // namespace
