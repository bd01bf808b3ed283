#include "output/PointGrid.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tarnvexo {
namespace {

constexpr double Radius = 0.001;

std::vector<int> NearByComparingAll(const std::vector<Vector3>& points, const Vector3& place)
{
    std::vector<int> near;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (Length(points[i] - place) <= Radius) {
            near.push_back(int(i));
        }
    }
    return near;
}

// Every point is asked for as a place, and the places besides. Returns how many pairs were near.
std::size_t ExpectAllFound(const std::vector<Vector3>& points, const std::vector<Vector3>& places = {})
{
    const PointGrid grid(points, Radius);
    std::vector<int> near = {-1};
    std::size_t pairs = 0;
    for (const auto* list : {&points, &places}) {
        for (const Vector3& place : *list) {
            grid.FindNear(place, near);
            const std::vector<int> expected = NearByComparingAll(points, place);
            EXPECT_EQ(near, expected) << "at " << place[0] << ", " << place[1] << ", " << place[2];
            pairs += expected.size();
        }
    }
    return pairs;
}

TEST(PointGrid, FindsWhatComparingAllFindsAmongRandomPoints)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(-0.01, 0.01);
    std::vector<Vector3> points(2000);
    for (Vector3& point : points) { point = {coordinate(random), coordinate(random), coordinate(random)}; }
    EXPECT_GT(ExpectAllFound(points), 3000u);
}

// Multiples of the radius: distances of exactly the radius, places on the borders of cells, both signs.
TEST(PointGrid, FindsWhatComparingAllFindsOnBordersOfCells)
{
    std::vector<Vector3> points;
    for (int i = -17; i <= 17; ++i) {
        for (int j : {-8, -1, 0, 1, 7, 8, 9}) {
            for (int k : {-16, 0, 8}) { points.push_back({i * Radius, j * Radius, k * Radius}); }
        }
    }
    EXPECT_GT(ExpectAllFound(points), 2 * points.size());
}

// A coordinate that is zero but for round-off may lie in the cell below, while its distance rounds to the radius.
TEST(PointGrid, FindsAPointJustBelowACellAtExactlyTheRadius)
{
    std::vector<Vector3> points;
    for (int i = 0; i < 4000; ++i) {
        points.push_back({1.0 + i, 0.0, 0.0});
    } // enough for cells in buckets of their own
    for (int i = 0; i < 60; ++i) { points.push_back({std::ldexp(i % 2 == 0 ? 1e-3 : -1e-3, -i), 100.0 + i, 0.0}); }
    const PointGrid grid(points, Radius);
    std::vector<int> near;
    int atTheRadius = 0;
    for (int i = 0; i < 60; ++i) {
        for (double x : {-Radius, Radius}) {
            const Vector3 place = {x, 100.0 + i, 0.0};
            const std::vector<int> expected = NearByComparingAll(points, place);
            grid.FindNear(place, near);
            EXPECT_EQ(near, expected) << points[4000 + std::size_t(i)][0] << " from " << x;
            atTheRadius += expected.empty() ? 0 : 1;
        }
    }
    EXPECT_GT(atTheRadius, 60); // half of the points lie inside the radius of each place, and some on it
}

// Far from the origin neighbouring numbers are farther apart than the radius.
TEST(PointGrid, FindsWhatComparingAllFindsFarFromTheOrigin)
{
    std::mt19937 random(2);
    for (double far : {1e3, 1e9, 1e12, -1e13, 1e17, -1e300}) {
        std::vector<Vector3> points;
        for (int i = 0; i < 200; ++i) {
            Vector3 point = {far, -far, 1.0};
            for (double& x : point) {
                x += double(random() % 7) * Radius / 3;
                if (random() % 4 == 0) {
                    x = std::nextafter(x, 0.0);
                }
            }
            points.push_back(point);
        }
        EXPECT_GE(ExpectAllFound(points), points.size()) << far;
    }
}

TEST(PointGrid, FindsTheSamePlaceAnyNumberOfTimesInIncreasingOrder)
{
    const std::vector<Vector3> points(5, {1.0, -2.0, 3.0});
    std::vector<int> near;
    PointGrid(points, Radius).FindNear(points[0], near);
    EXPECT_EQ(near, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(PointGrid, FindsNothingNearWhatIsNotANumber)
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), infinity = std::numeric_limits<double>::infinity();
    const std::vector<Vector3> points = {
        {nan, 0.0, 0.0}, {0.0, -nan, 0.0}, {infinity, 0.0, 0.0}, {0.0, 0.0, -infinity}, {0.0, 0.0, 0.0}};
    EXPECT_EQ(ExpectAllFound(points, {{nan, nan, nan}, {-infinity, 0.0, 0.0}}), 1u);
}

TEST(PointGrid, OfNoPointsFindsNothing)
{
    EXPECT_EQ(ExpectAllFound({}, {{0.0, 0.0, 0.0}}), 0u);
}

} // namespace
} // namespace tarnvexo
