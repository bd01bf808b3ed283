#include "Equations.h"

#include "app/FreeParts.h"
#include "app/SparseAssembly.h"
#include "core/Parallel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnvexo {

Equations AssembleEquations(const ModelStore& model, BlockPattern pattern, const EliminationOrder& order)
{
    Equations equations;
    equations.matrix.pattern = std::move(pattern);
    AssembleBlockMatrix(model, order, equations.matrix);
    const std::vector<unsigned char> isHeld = FindFreeParts(model).isHeld;
    std::vector<unsigned char> held(isHeld.size());
    equations.loads.resize(isHeld.size());
    for (std::size_t i = 0; i < isHeld.size(); ++i) {
        const std::size_t at = DofsPerNode * order.positionOf[i / DofsPerNode] + i % DofsPerNode;
        held[at] = isHeld[i];
        equations.loads[at] = isHeld[i] != 0 ? 0.0 : model.GLOAD[i];
    }
    EliminateEquations(equations.matrix, held);
    return equations;
}

ChosenOrder OrderByLibraries(const NodeGraph& graph)
{
    ChosenOrder tried[2];
    ParallelFor(2, 1, [&](std::size_t method, std::size_t) {
        PostorderedTree found = BuildEliminationTree(graph, method == 0 ? OrderByMetis(graph) : OrderByAmd(graph));
        const FactorCost cost = CostOfFactor(found.tree);
        tried[method] = {method == 0 ? "METIS" : "AMD", std::move(found.order), std::move(found.tree), cost};
    });
    return std::move(tried[tried[1].cost.operations < tried[0].cost.operations ? 1 : 0]);
}

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

std::size_t LowerEntries(const BlockMatrix& matrix)
{
    constexpr std::size_t aboveDiagonal = DofsPerNode * (DofsPerNode - 1) / 2; // of a diagonal block
    return BlockEntries * matrix.pattern.rows.size() - aboveDiagonal * static_cast<std::size_t>(matrix.pattern.Size());
}

} // namespace tarnvexo
