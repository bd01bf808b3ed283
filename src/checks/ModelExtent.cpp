#include "checks/ModelExtent.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace tarnvexo {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

struct Box {
    Vector3 low = {Infinity, Infinity, Infinity};
    Vector3 high = {-Infinity, -Infinity, -Infinity};
};

template <std::size_t Nodes>
void AddNodes(const ModelStore& model, const std::vector<std::array<int, Nodes>>& connectivity, Box& box)
{
    for (const auto& nodes : connectivity) {
        for (const int node : nodes) {
            const Vector3& place = model.NodeCoordinates[node];
            for (int k = 0; k < 3; ++k) {
                box.low[k] = std::min(box.low[k], place[k]);
                box.high[k] = std::max(box.high[k], place[k]);
            }
        }
    }
}

} // namespace

double ModelExtent(const ModelStore& model)
{
    Box box;
    AddNodes(model, model.QuadConnectivity, box);
    AddNodes(model, model.TriConnectivity, box);
    AddNodes(model, model.BeamConnectivity, box);
    return box.low[0] <= box.high[0] ? Length(box.high - box.low) : 0.0;
}

} // namespace tarnvexo
