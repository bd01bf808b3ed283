#include "app/PartGaps.h"

#include <algorithm>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr int MixedParts = -1;

class NodeTree {
public:
    NodeTree(const ModelStore& model, const ConnectedParts& parts) : model(model), parts(parts), nodes(parts.nodes)
    {
        if (!nodes.empty()) {
            Build(0, static_cast<int>(nodes.size()));
        }
    }

    // Nearest node that is not of the part, no farther than `distance`, which becomes its distance; -1: none.
    int NearestOutside(int part, const Vector3& place, double& distance) const
    {
        double square = distance * distance;
        int nearest = -1;
        if (!nodes.empty()) {
            Search(0, part, place, square, nearest);
        }
        distance = nearest >= 0 ? Length(model.NodeCoordinates[nearest] - place) : distance;
        return nearest;
    }

private:
    static constexpr int LeafNodes = 8;

    struct Branch {
        Vector3 low, high;
        int part; // of all its nodes, or MixedParts
        int begin, end;
        int children[2] = {-1, -1};
    };

    int Build(int begin, int end)
    {
        const int number = static_cast<int>(branches.size());
        Branch branch = {model.NodeCoordinates[nodes[begin]],
                         model.NodeCoordinates[nodes[begin]],
                         parts.partOfNode[nodes[begin]],
                         begin,
                         end,
                         {-1, -1}};
        for (int k = begin; k < end; ++k) {
            const Vector3& place = model.NodeCoordinates[nodes[k]];
            for (int d = 0; d < 3; ++d) {
                branch.low[d] = std::min(branch.low[d], place[d]);
                branch.high[d] = std::max(branch.high[d], place[d]);
            }
            branch.part = parts.partOfNode[nodes[k]] == branch.part ? branch.part : MixedParts;
        }
        branches.push_back(branch);
        if (end - begin > LeafNodes) {
            const Vector3 sides = branch.high - branch.low;
            const auto longest = std::max_element(sides.begin(), sides.end()) - sides.begin();
            const int middle = begin + (end - begin) / 2;
            std::nth_element(nodes.begin() + begin, nodes.begin() + middle, nodes.begin() + end, [&](int a, int b) {
                const double xa = model.NodeCoordinates[a][longest], xb = model.NodeCoordinates[b][longest];
                return xa != xb ? xa < xb : a < b;
            });
            const int left = Build(begin, middle);
            const int right = Build(middle, end);
            branches[number].children[0] = left;
            branches[number].children[1] = right;
        }
        return number;
    }

    static double SquareToBox(const Branch& branch, const Vector3& place)
    {
        Vector3 way;
        for (int d = 0; d < 3; ++d) { way[d] = place[d] - std::clamp(place[d], branch.low[d], branch.high[d]); }
        return Dot(way, way);
    }

    void Search(int number, int part, const Vector3& place, double& square, int& nearest) const
    {
        const Branch& branch = branches[number];
        if (branch.part == part) {
            return;
        }
        if (branch.children[0] < 0) {
            for (int k = branch.begin; k < branch.end; ++k) {
                const Vector3 way = model.NodeCoordinates[nodes[k]] - place;
                const double found = Dot(way, way);
                if (parts.partOfNode[nodes[k]] != part && (found < square || (found == square && nearest < 0))) {
                    square = found;
                    nearest = nodes[k];
                }
            }
            return;
        }
        const double squares[2] = {SquareToBox(branches[branch.children[0]], place),
                                   SquareToBox(branches[branch.children[1]], place)};
        const int nearer = squares[1] < squares[0] ? 1 : 0;
        for (const int child : {nearer, 1 - nearer}) {
            if (squares[child] <= square) {
                Search(branch.children[child], part, place, square, nearest);
            }
        }
    }

    const ModelStore& model;
    const ConnectedParts& parts;
    std::vector<int> nodes;
    std::vector<Branch> branches;
};

} // namespace

std::vector<PartGap> FindPartGaps(const ModelStore& model, const ConnectedParts& parts, const std::vector<int>& wanted,
                                  double tolerance)
{
    const NodeTree tree(model, parts);
    std::vector<PartGap> gaps;
    for (const int part : wanted) {
        PartGap gap;
        for (int k = parts.firstOfPart[part]; k < parts.firstOfPart[part + 1]; ++k) {
            const int node = parts.nodes[k];
            double distance = std::max(gap.distance, tolerance);
            const int other = tree.NearestOutside(part, model.NodeCoordinates[node], distance);
            if (other < 0) {
                continue;
            }
            gap.meetingNodes += distance <= tolerance ? 1 : 0;
            if (distance < gap.distance) {
                gap.distance = distance;
                gap.node = node;
                gap.otherNode = other;
            }
        }
        gaps.push_back(gap);
    }
    return gaps;
}

} // namespace tarnvexo
