#include "output/BeamJointAveraging.h"

#include "core/Parallel.h"
#include "output/NodalAveraging.h"
#include "output/PointGrid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t BeamsPerRange = 64; // that a thread takes at a time

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

// Ends of all beams.
class BeamEnds {
public:
    explicit BeamEnds(const std::vector<BeamElement>& beams) : points(EndPoints(beams)), grid(points, JointTolerance) {}

    // Beams that have an end near one of the ends of this one, itself among them unless its ends are not numbers;
    // ascending, each once.
    void FindJoined(int beam, std::vector<int>& near, std::vector<int>& joined) const
    {
        joined.clear();
        for (int end = 0; end < BeamNodeCount; ++end) {
            grid.FindNear(points[BeamNodeCount * beam + end], near);
            for (int point : near) { joined.push_back(point / BeamNodeCount); }
        }
        std::sort(joined.begin(), joined.end());
        joined.erase(std::unique(joined.begin(), joined.end()), joined.end());
    }

private:
    static std::vector<Vector3> EndPoints(const std::vector<BeamElement>& beams)
    {
        std::vector<Vector3> points;
        points.reserve(BeamNodeCount * beams.size());
        for (const BeamElement& beam : beams) {
            points.push_back(beam.node1);
            points.push_back(beam.node2);
        }
        return points;
    }

    std::vector<Vector3> points;
    PointGrid grid;
};

// What the averaging of one beam needs, used again for the next beam.
struct JointWork {
    std::vector<int> near;
    std::vector<int> joined; // beams
    std::vector<int> places;
    std::vector<Corner> joint;
    std::vector<bool> known; // nodes
};

// Corners at the places on the beam itself and on beams joined to it, in the order of summation: the beam itself, then
// by beam, patch, position.
void CollectJoint(const CornerTable& table, int beam, JointWork& work)
{
    std::vector<Corner>& joint = work.joint;
    joint.clear();
    for (int place : work.places) {
        for (std::size_t c = table.first[place]; c < table.first[place + 1]; ++c) {
            const int other = table.corners[c].beam;
            if (other == beam || std::binary_search(work.joined.begin(), work.joined.end(), other)) {
                joint.push_back(table.corners[c]);
            }
        }
    }
    const auto before = [beam](const Corner& left, const Corner& right) {
        const auto rank = [beam](const Corner& corner) { return corner.beam == beam ? -1 : corner.beam; };
        return std::array{rank(left), left.patch, left.position} < std::array{rank(right), right.patch, right.position};
    };
    // Places come by beam and node, so corners mostly stand in order already once the beam's own are in front.
    std::stable_partition(joint.begin(), joint.end(), [beam](const Corner& corner) { return corner.beam == beam; });
    if (!std::is_sorted(joint.begin(), joint.end(), before)) {
        std::sort(joint.begin(), joint.end(), before);
    }
}

// The averages of one beam; of the other beams only the raw stresses are read.
void AverageBeam(const CornerTable& table, const PointGrid& grid, const BeamEnds& ends,
                 std::vector<BeamSectionModel>& records, int beam, JointWork& work)
{
    BeamSectionModel& record = records[beam];
    record.averaged.assign(record.nodes.size(), {});
    work.known.assign(record.nodes.size(), false);
    ends.FindJoined(beam, work.near, work.joined);
    for (const SectionPatch& patch : record.patches) {
        for (int node : patch.nodes) {
            if (work.known[node]) {
                continue; // the first corner visited decides
            }
            grid.FindNear(record.nodes[node], work.places);
            CollectJoint(table, beam, work);
            FaceStressMean mean;
            for (const Corner& corner : work.joint) {
                const SectionPatch& other = records[corner.beam].patches[corner.patch];
                mean.Add(other.positiveFace[corner.position], other.negativeFace[corner.position],
                         MatchFaces(patch.normal, patch.thickness, other.normal, other.thickness));
            }
            mean.Store(record.averaged[node].positiveFace, record.averaged[node].negativeFace);
            work.known[node] = true;
        }
    }
}

} // namespace

void AverageBeamJoints(ModelStore& model)
{
    std::vector<BeamSectionModel>& records = model.BeamStressRecords;
    const CornerTable table = FindCorners(records);
    const PointGrid grid(table.places, JointTolerance);
    const BeamEnds ends(model.BeamElements);
    ParallelFor(records.size(), BeamsPerRange, [&](std::size_t begin, std::size_t end) {
        JointWork work;
        for (std::size_t b = begin; b < end; ++b) {
            AverageBeam(table, grid, ends, records, static_cast<int>(b), work);
        }
    });
}

} // namespace tarnvexo
