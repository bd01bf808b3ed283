#include "output/BeamJointAveraging.h"

#include "output/NodalAveraging.h"
#include "output/PointGrid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

struct Corner {
    int beam;
    int patch;
    int position; // corner of the patch
};

// All nodes of all section meshes that carry patches, and the corners that stand on each.
struct CornerTable {
    std::vector<Vector3> places;    // per node
    std::vector<std::size_t> first; // corners of node n: corners[first[n]] ... corners[first[n + 1] - 1]
    std::vector<Corner> corners;    // by beam, patch, position within a node
};

CornerTable FindCorners(const std::vector<BeamSectionModel>& records)
{
    CornerTable table;
    table.first.push_back(0);
    for (const BeamSectionModel& record : records) {
        const std::size_t base = table.places.size();
        table.places.insert(table.places.end(), record.nodes.begin(), record.nodes.end());
        table.first.resize(table.places.size() + 1, 0);
        for (const SectionPatch& patch : record.patches) {
            for (int node : patch.nodes) { ++table.first[base + node + 1]; }
        }
    }
    for (std::size_t n = 1; n < table.first.size(); ++n) { table.first[n] += table.first[n - 1]; }
    table.corners.resize(table.first.back());
    std::vector<std::size_t> next(table.first.begin(), table.first.end() - 1);
    std::size_t base = 0;
    for (std::size_t b = 0; b < records.size(); ++b) {
        for (std::size_t p = 0; p < records[b].patches.size(); ++p) {
            for (int k = 0; k < QuadNodeCount; ++k) {
                table.corners[next[base + records[b].patches[p].nodes[k]]++] = {static_cast<int>(b),
                                                                                static_cast<int>(p), k};
            }
        }
        base += records[b].nodes.size();
    }
    return table;
}

// Beam b itself, then the other beams that have an end near one of its ends, in beam order.
class CandidateBeams {
public:
    explicit CandidateBeams(const std::vector<BeamElement>& beams)
        : ends(EndPoints(beams)), grid(ends, JointTolerance), rank(beams.size(), NotCandidate)
    {
    }

    void Select(int beam)
    {
        for (int b : selected) { rank[b] = NotCandidate; }
        selected.clear();
        for (int end = 0; end < BeamNodeCount; ++end) {
            grid.FindNear(ends[BeamNodeCount * beam + end], near);
            for (int point : near) { selected.push_back(point / BeamNodeCount); }
        }
        std::sort(selected.begin(), selected.end());
        for (int b : selected) { rank[b] = b; }
        selected.push_back(beam);
        rank[beam] = First;
    }

    bool IsCandidate(int beam) const { return rank[beam] != NotCandidate; }
    bool IsFirst(int beam) const { return rank[beam] == First; }
    int Rank(int beam) const { return rank[beam]; } // order of summation

private:
    static constexpr int NotCandidate = -2;
    static constexpr int First = -1;

    static std::vector<Vector3> EndPoints(const std::vector<BeamElement>& beams)
    {
        std::vector<Vector3> points;
        for (const BeamElement& beam : beams) {
            points.push_back(beam.node1);
            points.push_back(beam.node2);
        }
        return points;
    }

    std::vector<Vector3> ends;
    PointGrid grid;
    std::vector<int> rank;
    std::vector<int> selected;
    std::vector<int> near;
};

// Corners of candidate beams at the places, in the order of summation: beam b itself, then by beam, patch, position.
void CollectJoint(const CornerTable& table, const std::vector<int>& places, const CandidateBeams& candidates,
                  std::vector<Corner>& joint)
{
    joint.clear();
    for (int place : places) {
        for (std::size_t c = table.first[place]; c < table.first[place + 1]; ++c) {
            if (candidates.IsCandidate(table.corners[c].beam)) {
                joint.push_back(table.corners[c]);
            }
        }
    }
    const auto before = [&](const Corner& left, const Corner& right) {
        return std::array{candidates.Rank(left.beam), left.patch, left.position} <
               std::array{candidates.Rank(right.beam), right.patch, right.position};
    };
    // Places come by beam and node, so corners mostly stand in order already once beam b's own are in front.
    std::stable_partition(joint.begin(), joint.end(),
                          [&](const Corner& corner) { return candidates.IsFirst(corner.beam); });
    if (!std::is_sorted(joint.begin(), joint.end(), before)) {
        std::sort(joint.begin(), joint.end(), before);
    }
}

} // namespace

void AverageBeamJoints(ModelStore& model)
{
    std::vector<BeamSectionModel>& records = model.BeamStressRecords;
    const CornerTable table = FindCorners(records);
    const PointGrid grid(table.places, JointTolerance);
    CandidateBeams candidates(model.BeamElements);
    std::vector<int> places;
    std::vector<Corner> joint;

    for (std::size_t b = 0; b < records.size(); ++b) {
        BeamSectionModel& record = records[b];
        record.averaged.assign(record.nodes.size(), {});
        std::vector<bool> known(record.nodes.size(), false);
        candidates.Select(static_cast<int>(b));
        for (const SectionPatch& patch : record.patches) {
            for (int node : patch.nodes) {
                if (known[node]) {
                    continue; // the first corner visited decides
                }
                grid.FindNear(record.nodes[node], places);
                CollectJoint(table, places, candidates, joint);
                FaceStressMean mean;
                for (const Corner& corner : joint) {
                    const SectionPatch& other = records[corner.beam].patches[corner.patch];
                    mean.Add(other.positiveFace[corner.position], other.negativeFace[corner.position],
                             MatchFaces(patch.normal, patch.thickness, other.normal, other.thickness));
                }
                mean.Store(record.averaged[node].positiveFace, record.averaged[node].negativeFace);
                known[node] = true;
            }
        }
    }
}

} // namespace tarnvexo
