// Dense fronts of the multifrontal factorisation on one thread, by width and height: time, rate, and the time that
// solver/FrontCost expects, of eliminating them and of adding what is left of them to their parents. front_cost.py fits
// the constants of FrontCost to them.
//     tarnvexo_bench --benchmark_filter=Front
#include "LoneFront.h"
#include "Stopwatch.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

using namespace tarnvexo;

constexpr int UnknownsOfNode = 6;
constexpr double LeastSeconds = 0.1;

// Runs the case; the counters are the seconds that the model of cost expects and how many times they were needed.
template <class Work> void MeasureAgainst(double expectedSeconds, benchmark::State& state, const Work& work)
{
    Stopwatch watch;
    for (auto _ : state) { work(); }
    const double seconds = watch.Lap() / static_cast<double>(state.iterations());
    state.counters["expected_us"] = 1e6 * expectedSeconds;
    state.counters["of_expected"] = seconds / expectedSeconds;
}

void FrontElimination(benchmark::State& state)
{
    const FrontSize size = {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
    LoneFront front(PanelEntries(size), UpdateEntries(size));
    MeasureAgainst(SecondsOf(size), state, [&] { front.Eliminate(size); });
    state.counters["Gop"] =
        benchmark::Counter(1e-9 * OperationsOf(size), benchmark::Counter::kIsIterationInvariantRate);
}

// Rows of the child go to the parent in runs of eight blocks with a block between them.
void FrontAddition(benchmark::State& state)
{
    constexpr int run = 8;
    const int below = static_cast<int>(state.range(0)), blocks = below / UnknownsOfNode;
    constexpr int stripBlocks = StripColumns / UnknownsOfNode;
    const int parentRows = UnknownsOfNode * (blocks + blocks / run + 1);
    const FrontSize child = {0, below}, parent = {parentRows, parentRows};
    std::vector<int> blockInParent(static_cast<std::size_t>(blocks));
    for (int k = 0; k < blocks; ++k) { blockInParent[k] = k + k / run; }
    LargeArray from(UpdateEntries(child)), to(PanelEntries(parent));
    std::fill_n(from.Data(), from.Size(), 0.0);
    std::fill_n(to.Data(), to.Size(), 0.0);
    const FrontUpdate U = {from.Data(), child};
    const FrontArray L = PanelAt(to.Data(), parent);
    MeasureAgainst(SecondsToAdd(child), state, [&] {
        for (int strip = 0; strip < U.Strips(); ++strip) {
            const int begin = stripBlocks * strip;
            AddUpdate(U.Strip(strip), child.width, blockInParent.data(), blocks,
                      {begin, std::min(begin + stripBlocks, blocks)}, L);
        }
    });
}

void WidthsAndHeights(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"width", "height"});
    for (int height = 24; height <= 3072; height *= 2) {
        for (int width = 6; width <= height; width *= 2) { bench->Args({width, height}); }
    }
}

void Heights(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"below"});
    for (int below = 24; below <= 3072; below *= 2) { bench->Args({below}); }
}

BENCHMARK(FrontElimination)->Apply(WidthsAndHeights)->MinTime(LeastSeconds)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrontAddition)->Apply(Heights)->MinTime(LeastSeconds)->Unit(benchmark::kMicrosecond);

} // namespace
