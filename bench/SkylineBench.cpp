// Factorisation of shell plates, textbook loop (-O2) and solver side by side, one thread. The plate of a x b nodes is
// numbered along its short side a, six equations to a node, so that the columns are about 6(a+2) high. Both run in
// turn; times are the best of all turns, ratios those of the textbook loop's times to the solver's.
//     tarnvexo_bench --benchmark_filter=Skyline
#include "solver/SkylineProfile.h"
#include "solver/SkylineSolver.h"
#include "support/LiteralSkyline.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace tarnvexo;

// Profile of the plate, random entries, diagonals larger than the sum of their row: positive definite.
struct Plate {
    Plate(int a, int b)
    {
        ModelStore model;
        model.EquationCount = DofsPerNode * a * b;
        for (int row = 0; row + 1 < b; ++row) {
            for (int i = 0; i + 1 < a; ++i) {
                const int node = row * a + i;
                model.QuadConnectivity.push_back({node, node + 1, node + a + 1, node + a});
            }
        }
        BuildSkylineProfile(model);
        height = model.ColumnHeight;
        address = DiagonalAddresses(height);
        std::mt19937_64 generator(4);
        std::uniform_real_distribution<double> value(-1.0, 1.0);
        assembled.resize(static_cast<std::size_t>(SkylineEntries(height)));
        for (double& entry : assembled) { entry = value(generator); }
        const int tallest = *std::max_element(height.begin(), height.end());
        for (const int diagonal : address) { assembled[diagonal] = 2.0 * tallest; }
        loads.assign(height.size(), 1.0);
        displacements.resize(height.size());
    }

    SkylineView Fresh()
    {
        values = assembled;
        return {static_cast<int>(height.size()), height.data(), address.data(), values.data()};
    }

    // Of the factorisation, the diagonal's terms left out.
    double MultiplyAdds() const
    {
        double count = 0.0;
        for (int j = 0; j < static_cast<int>(height.size()); ++j) {
            const int firstRow = j - height[j] + 1;
            for (int i = firstRow; i < j; ++i) { count += i - std::max(firstRow, i - height[i] + 1); }
        }
        return count;
    }

    std::vector<int> height;
    std::vector<int> address;
    std::vector<double> assembled;
    std::vector<double> values;
    std::vector<double> loads;
    std::vector<double> displacements;
};

double Seconds(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Stages {
    double factorise = std::numeric_limits<double>::infinity();
    double reduceAndSubstitute = std::numeric_limits<double>::infinity();
};

using Factorise = void (*)(const SkylineView&);
using Reduce = void (*)(const SkylineView&, double*);
using Substitute = void (*)(const SkylineView&, const double*, double*);

// Keeps the best time of each stage; returns the time of both together.
double SolveOnce(Plate& plate, Factorise factorise, Reduce reduce, Substitute substitute, Stages& best)
{
    const SkylineView matrix = plate.Fresh();
    std::vector<double> R = plate.loads;
    const auto start = std::chrono::steady_clock::now();
    factorise(matrix);
    const double factorised = Seconds(start);
    reduce(matrix, R.data());
    substitute(matrix, R.data(), plate.displacements.data());
    benchmark::DoNotOptimize(plate.displacements.data());
    const double solved = Seconds(start);
    best.factorise = std::min(best.factorise, factorised);
    best.reduceAndSubstitute = std::min(best.reduceAndSubstitute, solved - factorised);
    return solved;
}

void FactoriseByPanels(const SkylineView& matrix)
{
    FactoriseSkyline(matrix);
}

// Both solutions in turn, so that they meet the same state of the machine; the time of an iteration is the solver's.
void Skyline_Plate(benchmark::State& state)
{
    Plate plate(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    Stages textbook;
    Stages panels;
    for (auto _ : state) {
        SolveOnce(plate, literal::FactoriseSkyline, literal::ForwardReduce, literal::BackSubstitute, textbook);
        state.SetIterationTime(SolveOnce(plate, FactoriseByPanels, ForwardReduce, BackSubstitute, panels));
    }
    state.counters["equations"] = static_cast<double>(plate.height.size());
    state.counters["entries"] = static_cast<double>(plate.assembled.size());
    state.counters["factorise_s"] = panels.factorise;
    state.counters["madd/s"] = plate.MultiplyAdds() / panels.factorise;
    state.counters["textbook_s"] = textbook.factorise;
    state.counters["textbook_madd/s"] = plate.MultiplyAdds() / textbook.factorise;
    state.counters["ratio"] = textbook.factorise / panels.factorise;
    state.counters["solve_s"] = panels.reduceAndSubstitute;
    state.counters["solve_ratio"] = textbook.reduceAndSubstitute / panels.reduceAndSubstitute;
    state.counters["whole_ratio"] =
        (textbook.factorise + textbook.reduceAndSubstitute) / (panels.factorise + panels.reduceAndSubstitute);
}
BENCHMARK(Skyline_Plate)
    ->ArgNames({"a", "b"})
    ->Args({40, 42})
    ->Args({100, 100})
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

} // namespace
