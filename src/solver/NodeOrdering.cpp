#include "solver/NodeOrdering.h"

#include "core/Parallel.h"
#include "solver/CoordinateBisection.h"

#include <amd.h>
#include <metis.h>
#include <new>
#include <numeric>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace tarnvexo {

static_assert(std::is_same_v<idx_t, int>, "METIS is expected with 32-bit indices");

namespace {

// Any order is as good where there are no edges; the libraries want at least one.
EliminationOrder OrderWithoutEdges(const NodeGraph& graph)
{
    std::vector<int> nodeAt(graph.first.size() - 1);
    std::iota(nodeAt.begin(), nodeAt.end(), 0);
    return OrderFromSequence(std::move(nodeAt));
}

ChosenOrder Factored(const char* method, const NodeGraph& graph, const EliminationOrder& order)
{
    PostorderedTree found = BuildEliminationTree(graph, order);
    const FactorCost cost = CostOfFactor(found.tree);
    return {method, std::move(found.order), std::move(found.tree), cost};
}

} // namespace

EliminationOrder OrderByMetis(const NodeGraph& graph)
{
    if (graph.neighbours.empty()) {
        return OrderWithoutEdges(graph);
    }
    idx_t size = graph.Size();
    EliminationOrder order;
    order.nodeAt.resize(graph.first.size() - 1);
    order.positionOf.resize(graph.first.size() - 1);
    std::vector<int> first = graph.first, neighbours = graph.neighbours; // METIS renumbers them while it works
    const int status = METIS_NodeND(&size, first.data(), neighbours.data(), nullptr, nullptr, order.nodeAt.data(),
                                    order.positionOf.data());
    if (status == METIS_ERROR_MEMORY) {
        throw std::bad_alloc();
    }
    if (status != METIS_OK) {
        throw std::runtime_error("METIS_NodeND returned " + std::to_string(status));
    }
    return order;
}

EliminationOrder OrderByAmd(const NodeGraph& graph)
{
    if (graph.neighbours.empty()) {
        return OrderWithoutEdges(graph);
    }
    std::vector<int> nodeAt(graph.first.size() - 1);
    const int status =
        amd_order(graph.Size(), graph.first.data(), graph.neighbours.data(), nodeAt.data(), nullptr, nullptr);
    if (status == AMD_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (status != AMD_OK) {
        throw std::runtime_error("amd_order returned " + std::to_string(status));
    }
    return OrderFromSequence(std::move(nodeAt));
}

bool IsMetisWorthwhile(int nodes, const FactorCost& best)
{
    constexpr double OperationsPerSecond = 90e9; // of a factorisation on two threads with AVX-512: faster ones try less
    constexpr double MetisSecondsPerNode = 6e-6; // 5 on shells, 8 on space frames
    constexpr double LikelyGain = 0.05;          // share of the operations, where METIS gains at all
    return LikelyGain * best.operations / OperationsPerSecond > MetisSecondsPerNode * nodes;
}

ChosenOrder OrderNodes(const NodeGraph& graph, const std::vector<Vector3>& coordinates)
{
    constexpr int quickMethods = 2;
    ChosenOrder tried[quickMethods];
    ParallelFor(quickMethods, 1, [&](std::size_t method, std::size_t) {
        tried[method] = method == 0 ? Factored("bisection", graph, OrderByBisection(graph, coordinates))
                                    : Factored("AMD", graph, OrderByAmd(graph));
    });
    ChosenOrder best = std::move(tried[tried[1].cost.operations < tried[0].cost.operations ? 1 : 0]);
    if (IsMetisWorthwhile(graph.Size(), best.cost)) {
        ChosenOrder byMetis = Factored("METIS", graph, OrderByMetis(graph));
        if (byMetis.cost.operations < best.cost.operations) {
            return byMetis;
        }
    }
    return best;
}

} // namespace tarnvexo
