#include "checks/ShellOrientation.h"

#include <algorithm>
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

} // namespace

ShellOrientation FindOrientation(const ModelStore& model, const ShellEdges& edges)
{
    const int count = ShellCount(model);
    ShellOrientation found;

    // Patches first, so that what is not mended is counted at opposed edges only.
    Sides patches(count), panels(count);
    edges.ForEach([&](const ShellEdge& edge) {
        if (JoinsTwoShells(edge) && !IsOpposed(edge)) {
            patches.Join(edge.uses[0].shell, edge.uses[1].shell, false);
            panels.Join(edge.uses[0].shell, edge.uses[1].shell, false);
        }
    });
    std::vector<char> isOpposed(count, false); // by the patch's lowest shell
    edges.ForEach([&](const ShellEdge& edge) {
        if (IsOpposed(edge)) {
            found.twisted += !panels.Join(edge.uses[0].shell, edge.uses[1].shell, true);
            for (const EdgeUse& use : edge.uses) { isOpposed[patches.Find(use.shell)] = true; }
        }
    });

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
