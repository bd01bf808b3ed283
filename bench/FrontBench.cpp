// Dense fronts of the multifrontal factorisation on one thread, by width and height: the rate that they are eliminated
// with and what share of that time solver/FrontCost expects, and the same for adding what is left of
// a front to its parent. front_cost.py fits the constants of FrontCost to them.
//     tarnvexo_bench --benchmark_filter=Front
#include "LoneFront.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

using namespace tarnvexo;

constexpr int UnknownsOfNode = 6;
constexpr double LeastSeconds = 0.1;

// The second counter is 1 where the model of cost is right, less where the front takes longer.
void CountAgainst(benchmark::State& state, double expectedSeconds)
{
    state.counters["expected_us"] = 1e6 * expectedSeconds;
    state.counters["expected/measured"] =
        benchmark::Counter(expectedSeconds, benchmark::Counter::kIsIterationInvariantRate);
}

void FrontElimination(benchmark::State& state)
{
    const FrontSize size = {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
    LoneFront front(PanelEntries(size), UpdateEntries(size));
    for (auto _ : state) { front.Eliminate(size); }
    state.counters["Gop/s"] =
        benchmark::Counter(1e-9 * OperationsOf(size), benchmark::Counter::kIsIterationInvariantRate);
    CountAgainst(state, SecondsOf(size));
}

// Rows of the child go to the parent in runs of eight blocks with a block between them.
void FrontAddition(benchmark::State& state)
{
    constexpr int run = 8;
    const int below = static_cast<int>(state.range(0)), blocks = below / UnknownsOfNode;
    const FrontSize child = {0, below}, parent = {0, UnknownsOfNode * (blocks + blocks / run + 1)};
    std::vector<int> blockInParent(static_cast<std::size_t>(blocks));
    for (int k = 0; k < blocks; ++k) { blockInParent[k] = k + k / run; }
    LargeArray from(UpdateEntries(child)), to(UpdateEntries(parent));
    std::fill_n(from.Data(), from.Size(), 0.0);
    std::fill_n(to.Data(), to.Size(), 0.0);
    const FrontArray U = UpdateAt(from.Data(), child), sum = UpdateAt(to.Data(), parent);
    for (auto _ : state) { AddUpdate(U, blockInParent.data(), blocks, {0, blocks}, sum); }
    CountAgainst(state, SecondsToAdd(child));
}

void WidthsAndHeights(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"width", "height"});
    for (int height = 24; height <= 3072; height *= 2) {
        for (int width = 6; width <= std::min(height, 1536); width *= 2) { bench->Args({width, height}); }
        bench->Args({height, height});
    }
}

BENCHMARK(FrontElimination)->Apply(WidthsAndHeights)->MinTime(LeastSeconds)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrontAddition)
    ->ArgName("below")
    ->RangeMultiplier(2)
    ->Range(24, 3072)
    ->MinTime(LeastSeconds)
    ->Unit(benchmark::kMicrosecond);

} // namespace
