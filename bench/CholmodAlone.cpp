// cholmod_alone MODEL [small-pages]
// The equations of a model solved by CHOLMOD's public interface alone, set as well as we know how: the least time that
// a whole run can be compared with. The model is read, balanced and assembled by our code and none of that is timed;
// then, each with its time: ordering of the node graph by METIS and AMD at the same time, the cheaper one taken;
// symbolic analysis of the equations, which come in that order, with 32-bit indices; supernodal LLᵀ with OpenBLAS on
// all processors; solution of one right-hand side. CHOLMOD permutes nothing. Its large arrays stand on large pages
// unless small-pages is given. JSON on standard output.
#include "BalancedModel.h"
#include "Equations.h"
#include "ReadyEnvironment.h"
#include "Stopwatch.h"
#include "core/Parallel.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cholmod.h>
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

void Require(bool done, const char* step, const cholmod_common& common)
{
    if (!done || common.status != CHOLMOD_OK) {
        throw std::runtime_error(std::string(step) + ": CHOLMOD reports status " + std::to_string(common.status));
    }
}

// The lower triangle of a block matrix in CHOLMOD's compressed columns.
cholmod_sparse* SparseOf(const BlockMatrix& matrix, cholmod_common& common)
{
    const std::size_t order = DofsPerNode * static_cast<std::size_t>(matrix.pattern.Size());
    cholmod_sparse* sparse =
        cholmod_allocate_sparse(order, order, LowerEntries(matrix), true, true, -1, CHOLMOD_REAL, &common);
    Require(sparse != nullptr, "allocate", common);
    auto* const starts = static_cast<int*>(sparse->p);
    auto* const rows = static_cast<int*>(sparse->i);
    auto* const values = static_cast<double*>(sparse->x);
    int next = 0;
    ForEachLowerEntry(matrix, [&](int row, int column, double value) {
        if (row == column) {
            starts[column] = next;
        }
        rows[next] = row;
        values[next++] = value;
    });
    starts[order] = next;
    return sparse;
}

void Run(const char* modelFile, bool largePages)
{
    const ModelStore model = BalancedModel(modelFile);
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
    common.postorder = false; // the order is one already

    Stopwatch watch;
    const ChosenOrder chosen = OrderByLibraries(graph);
    const double orderSeconds = watch.Lap();

    const Equations equations = AssembleEquations(model, LowerPattern(graph, chosen.order), chosen.order);
    cholmod_sparse* sparse = SparseOf(equations.matrix, common);
    cholmod_dense* f = cholmod_zeros(sparse->nrow, 1, CHOLMOD_REAL, &common);
    Require(f != nullptr, "allocate", common);
    std::copy(equations.loads.begin(), equations.loads.end(), static_cast<double*>(f->x));

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
                RelativeResidual(equations.matrix, static_cast<double*>(u->x), equations.loads.data()), orderSeconds,
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
