// engine_rates MODEL ENGINE [THREADS [TURNS]]
// The stages of one sparse engine (sparse, cholmod, skyline) on the equations of a model, each the best of some turns:
// analysis, factorisation, solution of one and of eight right-hand sides. The model is read, balanced, ordered and
// assembled first. JSON on standard output.
#include "BalancedModel.h"
#include "ReadyEnvironment.h"
#include "app/FreeParts.h"
#include "app/SparseAssembly.h"
#include "core/Parallel.h"
#include "solver/NodeGraph.h"
#include "solver/NodeOrdering.h"
#include "solver/SparseEngine.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>

namespace {

using namespace tarnvexo;

constexpr int SeveralVectors = 8;

template <class Work> double Seconds(const Work& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class Work> double BestSeconds(int turns, const Work& work)
{
    double best = std::numeric_limits<double>::infinity();
    for (int turn = 0; turn < turns; ++turn) { best = std::min(best, Seconds(work)); }
    return best;
}

double LargestResidual(const BlockMatrix& matrix, const std::vector<double>& u, const std::vector<double>& f)
{
    std::vector<double> Ku(f.size()), KuSize(f.size());
    MultiplyBlockMatrix(matrix, u.data(), Ku.data(), KuSize.data());
    double residual = 0.0, size = 0.0;
    for (std::size_t i = 0; i < f.size(); ++i) {
        residual = std::max(residual, std::fabs(f[i] - Ku[i]));
        size = std::max(size, KuSize[i] + std::fabs(f[i]));
    }
    return residual / size;
}

void Run(const char* modelFile, EngineKind kind, int threads, int turns)
{
    SetThreadCount(threads);
    const ModelStore model = BalancedModel(modelFile);
    const NodeGraph graph = BuildNodeGraph(model);
    ChosenOrder chosen;
    const double orderSeconds = Seconds([&] { chosen = OrderNodes(graph); });
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(graph, chosen.order);
    AssembleBlockMatrix(model, chosen.order, matrix);
    const std::vector<unsigned char> isHeld = FindFreeParts(model).isHeld;
    std::vector<unsigned char> held(isHeld.size());
    std::vector<double> f(isHeld.size());
    for (std::size_t i = 0; i < isHeld.size(); ++i) {
        const std::size_t at = DofsPerNode * chosen.order.positionOf[i / DofsPerNode] + i % DofsPerNode;
        held[at] = isHeld[i];
        f[at] = isHeld[i] != 0 ? 0.0 : model.GLOAD[i];
    }
    EliminateEquations(matrix, held);

    const std::unique_ptr<SparseEngine> engine = MakeSparseEngine(kind, threads);
    FactorSize size;
    const double analyseSeconds = Seconds([&] { size = engine->Analyse(matrix.pattern); });
    const double firstSeconds = Seconds([&] { engine->Factorise(matrix); });
    const double factoriseSeconds =
        turns > 1 ? BestSeconds(turns - 1, [&] { engine->Factorise(matrix); }) : firstSeconds;
    std::vector<double> u;
    const double solveSeconds = BestSeconds(turns, [&] {
        u = f;
        engine->Solve(u.data(), 1);
    });
    std::vector<double> several(f.size() * SeveralVectors);
    const double severalSeconds = BestSeconds(turns, [&] {
        for (int k = 0; k < SeveralVectors; ++k) { std::copy(f.begin(), f.end(), several.begin() + k * f.size()); }
        engine->Solve(several.data(), SeveralVectors);
    });
    std::printf("{\"engine\": \"%s\", \"kernels\": \"%s\", \"threads\": %d, \"ordering\": \"%s\", \"equations\": %zu,\n"
                " \"exact_operations\": %.6g, \"operations\": %.6g, \"factor_entries\": %.0f, \"bytes\": %.0f,\n"
                " \"relative_residual\": %.3g, \"order\": %.6f, \"analyse\": %.6f, \"first_factorise\": %.6f,\n"
                " \"factorise\": %.6f, \"solve\": %.6f, \"solve_%d\": %.6f, \"exact_rate\": %.4g}\n",
                engine->Name().c_str(), engine->Kernels().c_str(), threads, chosen.method.c_str(), f.size(),
                chosen.cost.operations, size.operations, static_cast<double>(size.entries), size.bytes,
                LargestResidual(matrix, u, f), orderSeconds, analyseSeconds, firstSeconds, factoriseSeconds,
                solveSeconds, SeveralVectors, severalSeconds,
                chosen.cost.operations / std::min(firstSeconds, factoriseSeconds));
}

} // namespace

int main(int argc, char** argv)
{
    StartWithBlasEnvironment(argv);
    const std::map<std::string, EngineKind> engines = {
        {"sparse", EngineKind::Multifrontal}, {"cholmod", EngineKind::Cholmod}, {"skyline", EngineKind::Skyline}};
    if (argc < 3 || argc > 5 || !engines.contains(argv[2])) {
        std::fprintf(stderr, "usage: engine_rates MODEL sparse|cholmod|skyline [THREADS [TURNS]]\n");
        return 2;
    }
    try {
        Run(argv[1], engines.at(argv[2]), argc > 3 ? std::atoi(argv[3]) : ThreadCount(),
            argc > 4 ? std::atoi(argv[4]) : 3);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
