// engine_rates MODEL ENGINE [THREADS [TURNS]]     or     engine_rates MODEL sparse profile
// The stages of one sparse engine (sparse, cholmod, skyline) on the equations of a model, each the best of some turns:
// analysis, factorisation, solution of one and of eight right-hand sides; first_factorise is the one whose memory has
// never been used. The model is read, balanced, ordered and assembled first. JSON on standard output. With profile, a
// table of the fronts by height instead (FrontProfile.h).
#include "BalancedModel.h"
#include "Equations.h"
#include "FrontProfile.h"
#include "ReadyEnvironment.h"
#include "core/Parallel.h"
#include "solver/SparseEngine.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

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

struct OrderedModel {
    ModelStore model;
    NodeGraph graph;
    ChosenOrder chosen;
    double orderSeconds = 0.0;
};

OrderedModel ReadAndOrder(const char* modelFile)
{
    OrderedModel result;
    result.model = BalancedModel(modelFile);
    result.graph = BuildNodeGraph(result.model);
    result.orderSeconds = Seconds([&] { result.chosen = OrderNodes(result.graph, result.model.NodeCoordinates); });
    return result;
}

void Profile(const char* modelFile)
{
    const OrderedModel ordered = ReadAndOrder(modelFile);
    PrintFrontProfile(LowerPattern(ordered.graph, ordered.chosen.order));
}

void Run(const char* modelFile, EngineKind kind, int threads, int turns)
{
    SetThreadCount(threads);
    const OrderedModel ordered = ReadAndOrder(modelFile);
    const ChosenOrder& chosen = ordered.chosen;
    BlockPattern pattern;
    const double patternSeconds = Seconds([&] { pattern = LowerPattern(ordered.graph, chosen.order); });
    const auto [matrix, f] = AssembleEquations(ordered.model, std::move(pattern), chosen.order);

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
                " \"relative_residual\": %.3g, \"order\": %.6f, \"pattern\": %.6f, \"analyse\": %.6f, "
                "\"first_factorise\": %.6f,\n"
                " \"factorise\": %.6f, \"solve\": %.6f, \"solve_%d\": %.6f, \"exact_rate\": %.4g}\n",
                engine->Name().c_str(), engine->Kernels().c_str(), threads, chosen.method.c_str(), f.size(),
                chosen.cost.operations, size.operations, static_cast<double>(size.entries), size.bytes,
                RelativeResidual(matrix, u.data(), f.data()), ordered.orderSeconds, patternSeconds, analyseSeconds,
                firstSeconds, factoriseSeconds, solveSeconds, SeveralVectors, severalSeconds,
                chosen.cost.operations / std::min(firstSeconds, factoriseSeconds));
}

} // namespace

int main(int argc, char** argv)
{
    StartWithBlasEnvironment(argv);
    const std::map<std::string, EngineKind> engines = {
        {"sparse", EngineKind::Multifrontal}, {"cholmod", EngineKind::Cholmod}, {"skyline", EngineKind::Skyline}};
    if (argc < 3 || argc > 5 || !engines.contains(argv[2])) {
        std::fprintf(stderr, "usage: engine_rates MODEL sparse|cholmod|skyline [THREADS [TURNS]]\n"
                             "       engine_rates MODEL sparse profile\n");
        return 2;
    }
    try {
        if (argc == 4 && std::strcmp(argv[2], "sparse") == 0 && std::strcmp(argv[3], "profile") == 0) {
            Profile(argv[1]);
            return 0;
        }
        Run(argv[1], engines.at(argv[2]), argc > 3 ? std::atoi(argv[3]) : ThreadCount(),
            argc > 4 ? std::atoi(argv[4]) : 3);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
