// cholmod_alone MODEL [small-pages]
// The equations of a model solved by CHOLMOD's public interface alone, set as well as we know how: the least time that
// a whole run can be compared with. The model is read, balanced and assembled by our code and none of that is timed;
// then, each with its time: ordering of the node graph, the cheapest of several taken; symbolic analysis of the
// equations, which come in that order, with 32-bit indices; supernodal LLᵀ with OpenBLAS on all processors; solution of
// one right-hand side. CHOLMOD permutes nothing. Its large arrays stand on large pages unless small-pages is given.
// JSON on standard output.
#include "BalancedModel.h"
#include "ReadyEnvironment.h"
#include "app/FreeParts.h"
#include "app/SparseAssembly.h"
#include "core/Parallel.h"
#include "platform/Platform.h"
#include "solver/NodeGraph.h"
#include "solver/NodeOrdering.h"

#include <algorithm>
#include <cholmod.h>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

extern "C" {
char* openblas_get_corename();
void openblas_set_num_threads(int threads);
}

namespace {

using namespace tarnvexo;

constexpr std::size_t LargeBlock = std::size_t(4) << 20;

void* AllocateLarge(std::size_t bytes)
{
    void* const block = std::malloc(bytes);
    if (block != nullptr && bytes >= LargeBlock) {
        platform::PreferLargePages(block, bytes);
    }
    return block;
}

class Stopwatch {
public:
    double Lap() // seconds since the last one
    {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - last).count();
        last = now;
        return seconds;
    }

private:
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
};

void Require(bool done, const char* step, const cholmod_common& common)
{
    if (!done || common.status != CHOLMOD_OK) {
        throw std::runtime_error(std::string(step) + ": CHOLMOD reports status " + std::to_string(common.status));
    }
}

// The lower triangle of a block matrix in CHOLMOD's compressed columns.
cholmod_sparse* SparseOf(const BlockMatrix& matrix, cholmod_common& common)
{
    const BlockPattern& pattern = matrix.pattern;
    const std::size_t order = DofsPerNode * static_cast<std::size_t>(pattern.Size());
    constexpr std::size_t triangle = DofsPerNode * (DofsPerNode - 1) / 2; // of a diagonal block
    const std::size_t entries =
        BlockEntries * pattern.rows.size() - triangle * static_cast<std::size_t>(pattern.Size());
    cholmod_sparse* sparse = cholmod_allocate_sparse(order, order, entries, true, true, -1, CHOLMOD_REAL, &common);
    Require(sparse != nullptr, "allocate", common);
    auto* const starts = static_cast<int*>(sparse->p);
    auto* const rows = static_cast<int*>(sparse->i);
    auto* const values = static_cast<double*>(sparse->x);
    int next = 0;
    for (int J = 0; J < pattern.Size(); ++J) {
        const int blocks = pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            const double* const column = matrix.Column(J) + DofsPerNode * blocks * v;
            starts[DofsPerNode * J + v] = next;
            for (int row = v; row < DofsPerNode * blocks; ++row) {
                const int I = pattern.rows[pattern.first[J] + static_cast<std::size_t>(row / DofsPerNode)];
                rows[next] = DofsPerNode * I + row % DofsPerNode;
                values[next++] = column[row];
            }
        }
    }
    starts[order] = next;
    return sparse;
}

std::vector<unsigned char> ToEliminationOrder(const std::vector<unsigned char>& isHeld, const EliminationOrder& order)
{
    std::vector<unsigned char> result(isHeld.size());
    for (std::size_t i = 0; i < isHeld.size(); ++i) {
        result[DofsPerNode * order.positionOf[i / DofsPerNode] + i % DofsPerNode] = isHeld[i];
    }
    return result;
}

// ‖f − K·u‖ / (‖|K|·|u|‖ + ‖f‖), largest entries: shows that the equations were solved.
double RelativeResidual(const BlockMatrix& matrix, const double* u, const double* f)
{
    const std::size_t order = DofsPerNode * static_cast<std::size_t>(matrix.pattern.Size());
    std::vector<double> Ku(order), KuSize(order);
    MultiplyBlockMatrix(matrix, u, Ku.data(), KuSize.data());
    double residual = 0.0, scale = 0.0, load = 0.0;
    for (std::size_t i = 0; i < order; ++i) {
        residual = std::max(residual, std::fabs(f[i] - Ku[i]));
        scale = std::max(scale, KuSize[i]);
        load = std::max(load, std::fabs(f[i]));
    }
    return residual / (scale + load);
}

void Run(const char* modelFile, bool largePages)
{
    const ModelStore model = BalancedModel(modelFile);
    const std::vector<unsigned char> isHeld = FindFreeParts(model).isHeld;
    const NodeGraph graph = BuildNodeGraph(model);

    openblas_set_num_threads(ThreadCount());
    cholmod_common common;
    cholmod_start(&common);
    if (largePages) {
        SuiteSparse_config.malloc_func = AllocateLarge;
    }
    common.print = 0;
    common.supernodal = CHOLMOD_SUPERNODAL;
    common.final_ll = true;
    common.nmethods = 1;
    common.method[0].ordering = CHOLMOD_NATURAL;
    common.postorder = false; // OrderNodes has done it

    Stopwatch watch;
    const ChosenOrder chosen = OrderNodes(graph, model.NodeCoordinates);
    const double orderSeconds = watch.Lap();

    BlockMatrix matrix;
    matrix.pattern = LowerPattern(graph, chosen.order);
    AssembleBlockMatrix(model, chosen.order, matrix);
    const std::vector<unsigned char> held = ToEliminationOrder(isHeld, chosen.order);
    EliminateEquations(matrix, held);
    cholmod_sparse* sparse = SparseOf(matrix, common);
    cholmod_dense* f = cholmod_zeros(sparse->nrow, 1, CHOLMOD_REAL, &common);
    Require(f != nullptr, "allocate", common);
    for (std::size_t i = 0; i < sparse->nrow; ++i) {
        const std::size_t at = DofsPerNode * chosen.order.positionOf[i / DofsPerNode] + i % DofsPerNode;
        static_cast<double*>(f->x)[at] = held[at] != 0 ? 0.0 : model.GLOAD[i];
    }

    watch.Lap();
    cholmod_factor* factor = cholmod_analyze(sparse, &common);
    const double analyseSeconds = watch.Lap();
    Require(factor != nullptr, "analyse", common);
    const bool factorised = cholmod_factorize(sparse, factor, &common) != 0;
    const double factoriseSeconds = watch.Lap();
    Require(factorised, "factorise", common);
    cholmod_dense* u = cholmod_solve(CHOLMOD_A, factor, f, &common);
    const double solveSeconds = watch.Lap();
    Require(u != nullptr, "solve", common);

    std::printf("{\"kernels\": \"OpenBLAS %s\", \"threads\": %d, \"ordering\": \"%s\", \"large_pages\": %s,\n"
                " \"factor_entries\": %.0f, \"factor_operations\": %.6g, \"relative_residual\": %.3g,\n"
                " \"order\": %.6f, \"analyse\": %.6f, \"factorise\": %.6f, \"solve\": %.6f}\n",
                openblas_get_corename(), ThreadCount(), chosen.method.c_str(), largePages ? "true" : "false",
                static_cast<double>(factor->xsize), common.fl,
                RelativeResidual(matrix, static_cast<double*>(u->x), static_cast<double*>(f->x)), orderSeconds,
                analyseSeconds, factoriseSeconds, solveSeconds);
    cholmod_free_dense(&u, &common);
    cholmod_free_dense(&f, &common);
    cholmod_free_factor(&factor, &common);
    cholmod_free_sparse(&sparse, &common);
    cholmod_finish(&common);
}

} // namespace

int main(int argc, char** argv)
{
    StartWithBlasEnvironment(argv);
    const bool smallPages = argc == 3 && std::strcmp(argv[2], "small-pages") == 0;
    if (argc != 2 && !smallPages) {
        std::fprintf(stderr, "usage: cholmod_alone MODEL [small-pages]\n");
        return 2;
    }
    try {
        Run(argv[1], !smallPages);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
