#include "checks/ShellOrientation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <utility>

namespace tarnvexo {

namespace {

// Union–find whose members know whether they look as their leader does. The lowest member leads.
class Sides {
public:
    explicit Sides(int count) : leader(count), turned(count, false) { std::iota(leader.begin(), leader.end(), 0); }

    // Leader of the set; afterwards leader[member] is it, and turned[member] is against it.
    int Find(int member)
    {
        // Up to the leader, then down again: each on the path comes directly below the leader.
        path.clear();
        while (leader[member] != member) {
            path.push_back(member);
            member = leader[member];
        }
        for (auto at = path.rbegin(); at != path.rend(); ++at) {
            turned[*at] = char(turned[*at] != turned[leader[*at]]);
            leader[*at] = member;
        }
        return member;
    }

    bool IsTurned(int member) const { return turned[member]; } // after Find

    // False: they are in one set already, and not as said.
    bool Join(int a, int b, bool opposed)
    {
        int leaderA = Find(a), leaderB = Find(b);
        const bool crossed = (bool(turned[a]) != bool(turned[b])) != opposed;
        if (leaderA == leaderB) {
            return !crossed;
        }
        if (leaderB < leaderA) {
            std::swap(leaderA, leaderB);
        }
        leader[leaderB] = leaderA;
        turned[leaderB] = crossed;
        return true;
    }

private:
    std::vector<int> leader;
    std::vector<char> turned; // a leader itself is not
    std::vector<int> path;
};

// Both shells run through the edge in the same direction.
bool RunAlike(const ShellEdge& edge)
{
    return edge.uses[0].forward == edge.uses[1].forward;
}

} // namespace

double FoldAngle(const ModelStore& model, const ShellEdge& edge)
{
    const Vector3 one = ShellNormal(model, edge.uses[0].shell);
    const Vector3 other = ShellNormal(model, edge.uses[1].shell);
    // Run through in the same direction, a plane has opposite normals.
    const double cosine = RunAlike(edge) ? -Dot(one, other) : Dot(one, other);
    const double sine = Length(Cross(one, other));
    return Length(one) > 0.0 && Length(other) > 0.0 ? std::atan2(sine, cosine) * 180.0 / std::numbers::pi
                                                    : std::numeric_limits<double>::quiet_NaN();
}

ShellOrientation FindOrientation(const ModelStore& model, const ShellEdges& edges, double sharpestFold)
{
    ShellOrientation found;
    edges.ForEach([&](const ShellEdge& edge) {
        if (JoinsTwoShells(edge) && RunAlike(edge) && FoldAngle(model, edge) <= sharpestFold) {
            found.opposed.push_back(edge);
        }
    });
    if (found.opposed.empty()) {
        return found;
    }

    // Patches first, so that what is not mended is counted at opposed edges only.
    const int count = ShellCount(model);
    Sides patches(count), panels(count);
    edges.ForEach([&](const ShellEdge& edge) {
        if (JoinsTwoShells(edge) && !RunAlike(edge) && FoldAngle(model, edge) <= sharpestFold) {
            patches.Join(edge.uses[0].shell, edge.uses[1].shell, false);
            panels.Join(edge.uses[0].shell, edge.uses[1].shell, false);
        }
    });
    std::vector<char> isOpposed(count, false); // by the patch's lowest shell
    for (const ShellEdge& edge : found.opposed) {
        found.twisted += !panels.Join(edge.uses[0].shell, edge.uses[1].shell, true);
        for (const EdgeUse& use : edge.uses) { isOpposed[patches.Find(use.shell)] = true; }
    }

    found.patch.resize(count);
    found.patchSize.assign(count, 0);
    std::vector<int> panelSize(count, 0), turnedOfPanel(count, 0);
    for (int shell = 0; shell < count; ++shell) {
        found.patch[shell] = patches.Find(shell);
        ++found.patchSize[found.patch[shell]];
        const int panel = panels.Find(shell);
        ++panelSize[panel];
        turnedOfPanel[panel] += panels.IsTurned(shell);
    }
    found.turn.resize(count);
    for (int shell = 0; shell < count; ++shell) {
        const int panel = panels.Find(shell);
        const bool turnTheTurned = 2 * turnedOfPanel[panel] <= panelSize[panel];
        found.turn[shell] = char(panels.IsTurned(shell) == turnTheTurned);
        found.shellsToTurn += found.turn[shell];
    }
    found.opposedPatches = int(std::count(isOpposed.begin(), isOpposed.end(), true));
    return found;
}

} // namespace tarnvexo
