// output/PointGrid.h
// Finds the points within a fixed distance of a place, in constant time per query: points hashed by cells some times as
// wide as that distance, so that most queries look into one or two cells.
#pragma once

#include "core/Vector3.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

class PointGrid {
public:
    // Keeps a reference: points must stay as they are while the grid is used.
    PointGrid(const std::vector<Vector3>& points, double radius);

    // Numbers of the points no farther than the radius from `place`, in increasing order. A point or place with a
    // coordinate that is not a number is near nothing.
    void FindNear(const Vector3& place, std::vector<int>& near) const;

private:
    std::uint64_t Bucket(const Vector3& cell) const;

    const std::vector<Vector3>& points;
    double radius;
    double cellSize;
    std::uint64_t mask;
    std::vector<int> first; // points of bucket b: members[first[b]] ... members[first[b + 1] - 1]
    std::vector<int> members;
};

} // namespace tarnvexo
