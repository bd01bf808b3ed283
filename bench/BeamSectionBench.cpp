// Beams on their real section walls: one T beam with flange, web 0.3 m, flange 0.2 m, ten slices of walls along it.
// Counter: beams/s; for the whole model also the averaging where walls meet.
//     tarnvexo_bench --benchmark_filter=BeamSection
#include "elements/BeamSection.h"
#include "output/BeamSectionStress.h"

#include <benchmark/benchmark.h>

namespace {

using namespace tarnvexo;

constexpr Material Steel = {2.1e11, 0.3, 7850.0}; // N, m, kg
constexpr TBeamSection Section = {0.3, 0.01, 0.2, 0.012};
constexpr double SectionOffset = 0.005;
constexpr double Length = 1.05; // ten and a half of the longest segments, 0.1

BeamElement BeamFrom(const Vector3& node1)
{
    const Vector3 along = {0.6, 0.8, 0.0};
    BeamElement beam;
    TBeamSetUp(beam, node1, node1 + Length * along, node1 + Vector3{0.1, 0.2, 1.0}, Steel, Section, SectionOffset);
    return beam;
}

constexpr double EndDisplacements[BeamDofCount] = {0.0,  1e-4,  0.0,  1e-4, 0.0,   2e-4,
                                                   1e-3, -2e-3, 1e-3, 2e-4, -3e-4, 1e-4};

void BeamSectionOfOneBeam(benchmark::State& state)
{
    const BeamElement beam = BeamFrom({0.7, -0.4, 0.9});
    const SectionOutline outline = TOutline(Section, SectionOffset);
    for (auto _ : state) {
        BeamSectionModel section = SolveBeamSection(beam, outline, EndDisplacements);
        benchmark::DoNotOptimize(section.displacements.data());
    }
    state.counters["beams"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BeamSectionOfOneBeam)->Unit(benchmark::kMicrosecond);

// Chains of ten beams, end to end.
void BeamSectionsOfAModel(benchmark::State& state)
{
    const int beams = static_cast<int>(state.range(0));
    ModelStore model;
    model.NELEM_B = beams;
    model.TBeamSections = {Section};
    model.BeamSectionRefs.assign(beams, {});
    for (int b = 0; b < beams; ++b) {
        model.BeamSectionRefs[b].BeamSecType = TSection;
        model.BeamSectionRefs[b].BeamSecOz = SectionOffset;
        const double inChain = (b % 10) * Length;
        const double chain = b / 10;
        model.BeamElements.push_back(BeamFrom({0.6 * inChain, 0.8 * inChain, chain}));
        model.BeamConnectivity.push_back({b, b + 1});
    }
    model.GlobalDisplacement.resize(DofsPerNode * (beams + 1));
    for (std::size_t i = 0; i < model.GlobalDisplacement.size(); ++i) {
        model.GlobalDisplacement[i] = EndDisplacements[i % BeamDofCount];
    }
    for (auto _ : state) {
        RecoverBeamSectionStresses(model);
        benchmark::DoNotOptimize(model.BeamStressRecords.data());
    }
    state.counters["beams"] =
        benchmark::Counter(double(beams) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BeamSectionsOfAModel)->Arg(2000)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
