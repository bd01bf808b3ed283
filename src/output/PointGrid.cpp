#include "output/PointGrid.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace tarnvexo {

namespace {

constexpr double CellsPerRadius = 8.0;

Vector3 CellOf(const Vector3& point, double cellSize)
{
    return {std::floor(point[0] / cellSize), std::floor(point[1] / cellSize), std::floor(point[2] / cellSize)};
}

} // namespace

PointGrid::PointGrid(const std::vector<Vector3>& gridPoints, double searchRadius)
    : points(gridPoints), radius(searchRadius), cellSize(CellsPerRadius * searchRadius),
      mask(std::bit_ceil(std::max<std::uint64_t>(gridPoints.size(), 1)) - 1)
{
    // Counting sort by bucket keeps the points of a bucket in increasing order.
    std::vector<std::uint64_t> bucketOf(points.size());
    first.assign(mask + 2, 0);
    for (std::size_t i = 0; i < points.size(); ++i) {
        bucketOf[i] = Bucket(CellOf(points[i], cellSize));
        ++first[bucketOf[i] + 1];
    }
    for (std::size_t b = 1; b < first.size(); ++b) { first[b] += first[b - 1]; }
    members.resize(points.size());
    std::vector<int> next(first.begin(), first.end() - 1);
    for (std::size_t i = 0; i < points.size(); ++i) { members[next[bucketOf[i]]++] = static_cast<int>(i); }
}

std::uint64_t PointGrid::Bucket(const Vector3& cell) const
{
    std::uint64_t hash = 0;
    for (double index : cell) {
        // + 0.0 makes one zero of two.
        hash = (hash ^ std::bit_cast<std::uint64_t>(index + 0.0)) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    return hash & mask;
}

void PointGrid::FindNear(const Vector3& place, std::vector<int>& near) const
{
    near.clear();
    const double wider = radius * (1.0 + 1e-9); // a distance a little above the radius may round to it
    const Vector3 reach = {wider, wider, wider};
    const Vector3 low = CellOf(place - reach, cellSize);
    const Vector3 high = CellOf(place + reach, cellSize);
    std::uint64_t visited[8];
    int visitedCount = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const Vector3 cell = {corner & 1 ? high[0] : low[0], corner & 2 ? high[1] : low[1],
                              corner & 4 ? high[2] : low[2]};
        const std::uint64_t bucket = Bucket(cell);
        if (std::find(visited, visited + visitedCount, bucket) != visited + visitedCount) {
            continue;
        }
        visited[visitedCount++] = bucket;
        for (int m = first[bucket]; m < first[bucket + 1]; ++m) {
            if (Length(points[members[m]] - place) <= radius) {
                near.push_back(members[m]);
            }
        }
    }
    std::sort(near.begin(), near.end());
}

} // namespace tarnvexo
