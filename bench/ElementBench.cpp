// Element kernels on one distorted element that lies askew to the global axes: stiffness in global axes of the
// quadrilateral, the triangle (alone and in full batches) and the L beam with offset, and the quadrilateral's
// consistent mass. Counter: elements/s.
//     tarnvexo_bench --benchmark_filter=Element
#include "elements/BeamSection.h"
#include "elements/BeamStiffness.h"
#include "elements/ShellSetUp.h"
#include "elements/ShellStiffness.h"
#include "elements/ShellStiffnessBatch.h"
#include "inertia/ConsistentMass.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

using namespace tarnvexo;

constexpr Material Steel = {2.1e11, 0.3, 7850.0}; // N, m, kg
constexpr double Thickness = 0.01;

// From a plane whose axes are orthogonal and along no global one.
Vector3 Placed(double x, double y)
{
    const Vector3 origin = {0.7, -0.4, 0.9};
    const Vector3 e1 = {2.0 / 3.0, 2.0 / 3.0, 1.0 / 3.0};
    const Vector3 e2 = {-2.0 / 3.0, 1.0 / 3.0, 2.0 / 3.0};
    return origin + x * e1 + y * e2;
}

QuadShellElement Quad()
{
    const Vector3 nodes[QuadNodeCount] = {Placed(0.0, 0.0), Placed(2.1, 0.2), Placed(1.7, 1.4), Placed(-0.3, 1.1)};
    QuadShellElement quad;
    QuadShellSetUp(quad, nodes, QuadNodeCount, Steel.E, Steel.Mu, Steel.Density, Thickness);
    return quad;
}

TriShellElement Tri()
{
    const Vector3 nodes[TriNodeCount] = {Placed(0.2, 0.1), Placed(2.3, 0.6), Placed(0.9, 1.8)};
    TriShellElement tri;
    TriShellSetUp(tri, nodes, TriNodeCount, Steel.E, Steel.Mu, Thickness, Steel.Density);
    return tri;
}

BeamElement Beam()
{
    const LBeamSection section = {0.2, 0.008, 0.1, 0.01};
    BeamElement beam;
    LBeamSetUp(beam, Placed(0.0, 0.0), Placed(2.1, 0.2), Placed(-0.3, 1.1), Steel, section, 0.005, false);
    return beam;
}

// The element is opaque to the compiler in every run, so nothing of the kernel moves out of the loop.
template <class Element, class Kernel> void RunKernel(benchmark::State& state, Element element, Kernel kernel)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(&element);
        benchmark::ClobberMemory();
        kernel(element);
    }
    state.counters["elements"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

void ElementQuadStiffness(benchmark::State& state)
{
    double K[QuadDofCount][QuadDofCount];
    RunKernel(state, Quad(), [&K](const QuadShellElement& quad) {
        QuadShellStiffness(quad, K);
        benchmark::DoNotOptimize(K);
    });
}
BENCHMARK(ElementQuadStiffness)->Unit(benchmark::kMicrosecond);

void ElementTriStiffness(benchmark::State& state)
{
    double K[TriDofCount][TriDofCount];
    RunKernel(state, Tri(), [&K](const TriShellElement& tri) {
        TriShellStiffness(tri, K);
        benchmark::DoNotOptimize(K);
    });
}
BENCHMARK(ElementTriStiffness)->Unit(benchmark::kMicrosecond);

// ShellBatch copies of the element.
template <class Element, class Kernel> void RunBatch(benchmark::State& state, const Element& element, Kernel kernel)
{
    const std::vector<Element> copies(ShellBatch, element);
    const Element* batch[ShellBatch];
    for (int e = 0; e < ShellBatch; ++e) { batch[e] = &copies[e]; }
    double K[ShellBatch][Element::DofCount][Element::DofCount];
    for (auto _ : state) {
        kernel(batch, ShellBatch, K);
        benchmark::DoNotOptimize(K);
        benchmark::ClobberMemory();
    }
    state.counters["elements"] =
        benchmark::Counter(ShellBatch * double(state.iterations()), benchmark::Counter::kIsRate);
}

void ElementQuadStiffnessBatch(benchmark::State& state)
{
    RunBatch(state, Quad(), QuadShellStiffnessBatch);
}
BENCHMARK(ElementQuadStiffnessBatch)->Unit(benchmark::kMicrosecond);

void ElementTriStiffnessBatch(benchmark::State& state)
{
    RunBatch(state, Tri(), TriShellStiffnessBatch);
}
BENCHMARK(ElementTriStiffnessBatch)->Unit(benchmark::kMicrosecond);

void ElementBeamStiffness(benchmark::State& state)
{
    double K[BeamDofCount][BeamDofCount];
    RunKernel(state, Beam(), [&K](const BeamElement& beam) {
        BeamStiffness(beam, K);
        benchmark::DoNotOptimize(K);
    });
}
BENCHMARK(ElementBeamStiffness)->Unit(benchmark::kMicrosecond);

void ElementQuadMass(benchmark::State& state)
{
    double m[QuadNodeCount][QuadNodeCount];
    RunKernel(state, Quad(), [&m](const QuadShellElement& quad) {
        QuadMass(quad, m);
        benchmark::DoNotOptimize(m);
    });
}
BENCHMARK(ElementQuadMass)->Unit(benchmark::kMicrosecond);

} // namespace
