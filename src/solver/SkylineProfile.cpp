#include "solver/SkylineProfile.h"

#include <algorithm>
#include <numeric>

namespace tarnvexo {

void RaiseColumns(const int* map, int n, std::vector<int>& columnHeight)
{
    const int lowest = *std::min_element(map, map + n);
    for (int i = 0; i < n; ++i) { columnHeight[map[i]] = std::max(columnHeight[map[i]], map[i] - lowest + 1); }
}

namespace {

template <int NodeCount, class Connectivity>
void RaiseElementColumns(const Connectivity& connectivity, std::vector<int>& columnHeight)
{
    int map[NodeCount * DofsPerNode];
    for (const auto& nodes : connectivity) {
        ElementDofMap<NodeCount>(nodes.data(), map);
        RaiseColumns(map, NodeCount * DofsPerNode, columnHeight);
    }
}

} // namespace

void BuildSkylineProfile(ModelStore& model)
{
    if (model.EquationCount < 1) {
        return;
    }
    model.ColumnHeight.assign(model.EquationCount, 1);
    RaiseElementColumns<QuadNodeCount>(model.QuadConnectivity, model.ColumnHeight);
    RaiseElementColumns<TriNodeCount>(model.TriConnectivity, model.ColumnHeight);
    RaiseElementColumns<BeamNodeCount>(model.BeamConnectivity, model.ColumnHeight);
}

std::int64_t SkylineEntries(const std::vector<int>& columnHeight)
{
    return std::accumulate(columnHeight.begin(), columnHeight.end(), std::int64_t(0));
}

std::vector<int> DiagonalAddresses(const std::vector<int>& columnHeight)
{
    std::vector<int> diagonalAddress(columnHeight.size());
    std::exclusive_scan(columnHeight.begin(), columnHeight.end(), diagonalAddress.begin(), 0);
    return diagonalAddress;
}

void AddElementMatrix(const double* Ke, const int* map, int n, const std::vector<int>& diagonalAddress,
                      std::vector<double>& stiffness)
{
    for (int i = 0; i < n; ++i) {
        for (int j = i; j < n; ++j) {
            const int row = std::min(map[i], map[j]);
            const int column = std::max(map[i], map[j]);
            stiffness[diagonalAddress[column] + (column - row)] += Ke[i * n + j];
        }
    }
}

} // namespace tarnvexo
