#include "checks/CoincidentNodes.h"

#include <algorithm>
#include <numeric>

namespace tarnvexo {

namespace {

using Branch = std::size_t;

std::vector<int> EachAlone(int count)
{
    std::vector<int> leader(count);
    std::iota(leader.begin(), leader.end(), 0);
    return leader;
}

// Lowest of the set; every step halves the path.
int Leader(std::vector<int>& leader, int node)
{
    while (leader[node] != node) {
        leader[node] = leader[leader[node]];
        node = leader[node];
    }
    return node;
}

void Join(std::vector<int>& leader, int a, int b)
{
    a = Leader(leader, a);
    b = Leader(leader, b);
    leader[std::max(a, b)] = std::min(a, b);
}

// Distance of two boxes.
double Gap(const NodeTree::Box& a, const NodeTree::Box& b)
{
    Vector3 gap;
    for (int i = 0; i < 3; ++i) { gap[i] = std::max({0.0, b.low[i] - a.high[i], a.low[i] - b.high[i]}); }
    return Length(gap);
}

// Diagonal of the box around both.
double Span(const NodeTree::Box& a, const NodeTree::Box& b)
{
    Vector3 span;
    for (int i = 0; i < 3; ++i) { span[i] = std::max(a.high[i], b.high[i]) - std::min(a.low[i], b.low[i]); }
    return Length(span);
}

// The tree against itself.
class Grouping {
public:
    Grouping(const NodeTree& tree, double distance, std::vector<int>& leader)
        : tree(tree), distance(distance), leader(leader)
    {
    }

    void Within(Branch a)
    {
        const auto points = tree.PointsOf(a);
        if (IsOnePlace(a)) {
            for (const NodeTree::Point& point : points) { Join(leader, points[0].node, point.node); }
        } else if (tree.IsLeaf(a)) {
            for (std::size_t i = 0; i < points.size(); ++i) {
                for (std::size_t j = i + 1; j < points.size(); ++j) { Compare(points[i], points[j]); }
            }
        } else {
            Within(2 * a + 1);
            Within(2 * a + 2);
            Between(2 * a + 1, 2 * a + 2);
        }
    }

private:
    // Every node of it is at the place of every other.
    bool IsOnePlace(Branch a) const
    {
        const NodeTree::Box& box = tree.BoxOf(a);
        return Span(box, box) <= std::min(distance, box.leastReach);
    }

    void Compare(const NodeTree::Point& a, const NodeTree::Point& b)
    {
        if (Length(a.place - b.place) <= std::min({distance, a.reach, b.reach})) {
            Join(leader, a.node, b.node);
        }
    }

    // Both have been looked at within.
    void Between(Branch a, Branch b)
    {
        const NodeTree::Box &boxA = tree.BoxOf(a), &boxB = tree.BoxOf(b);
        if (Gap(boxA, boxB) > std::min({distance, boxA.mostReach, boxB.mostReach})) {
            return;
        }
        const auto pointsA = tree.PointsOf(a), pointsB = tree.PointsOf(b);
        if (IsOnePlace(a) && IsOnePlace(b)) {
            if (Leader(leader, pointsA[0].node) == Leader(leader, pointsB[0].node)) {
                return;
            }
            if (Span(boxA, boxB) <= std::min({distance, boxA.leastReach, boxB.leastReach})) {
                Join(leader, pointsA[0].node, pointsB[0].node);
                return;
            }
        }
        if (tree.IsLeaf(a)) { // all leaves are on one level
            for (const NodeTree::Point& one : pointsA) {
                for (const NodeTree::Point& other : pointsB) { Compare(one, other); }
            }
        } else {
            for (const Branch half : {2 * a + 1, 2 * a + 2}) {
                Between(half, 2 * b + 1);
                Between(half, 2 * b + 2);
            }
        }
    }

    const NodeTree& tree;
    double distance;
    std::vector<int>& leader;
};

template <std::size_t Nodes>
void JoinByElements(const std::vector<std::array<int, Nodes>>& connectivity, const CoincidentNodes& coincident,
                    std::vector<int>& connected)
{
    for (const auto& nodes : connectivity) {
        for (std::size_t i = 0; i < Nodes; ++i) {
            for (std::size_t j = i + 1; j < Nodes; ++j) {
                if (coincident.leader[nodes[i]] == coincident.leader[nodes[j]]) {
                    Join(connected, nodes[i], nodes[j]);
                }
            }
        }
    }
}

} // namespace

CoincidentNodes FindCoincidentNodes(const ModelStore& model, const NodeTree& tree, double distance)
{
    CoincidentNodes found{EachAlone(model.NPOIN), false};
    if (tree.IsEmpty()) {
        return found;
    }
    Grouping(tree, distance, found.leader).Within(0);
    for (int n = 0; n < model.NPOIN; ++n) {
        found.leader[n] = Leader(found.leader, n);
        found.any = found.any || found.leader[n] != n;
    }
    return found;
}

std::vector<int> UnconnectedNodes(const ModelStore& model, const CoincidentNodes& coincident)
{
    std::vector<int> unconnected;
    if (!coincident.any) {
        return unconnected;
    }
    std::vector<int> connected = EachAlone(model.NPOIN);
    JoinByElements(model.QuadConnectivity, coincident, connected);
    JoinByElements(model.TriConnectivity, coincident, connected);
    JoinByElements(model.BeamConnectivity, coincident, connected);
    for (int n = 0; n < model.NPOIN; ++n) {
        if (coincident.leader[n] != n && connected[n] == n) {
            unconnected.push_back(n);
        }
    }
    return unconnected;
}

} // namespace tarnvexo
