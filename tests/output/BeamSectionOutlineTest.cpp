#include "output/BeamSectionOutline.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

void ExpectPoints(const SectionOutline& outline, const std::vector<OutlinePoint>& expected)
{
    ASSERT_EQ(outline.points.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(outline.points[i].y, expected[i].y) << "point " << i;
        EXPECT_EQ(outline.points[i].z, expected[i].z) << "point " << i;
    }
}

void ExpectSegments(const SectionOutline& outline, const std::vector<OutlineSegment>& expected)
{
    ASSERT_EQ(outline.segments.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(outline.segments[i].from, expected[i].from) << "segment " << i;
        EXPECT_EQ(outline.segments[i].to, expected[i].to) << "segment " << i;
        EXPECT_EQ(outline.segments[i].thickness, expected[i].thickness) << "segment " << i;
    }
}

TEST(BeamSectionOutline, OfATIsTheWebInThirdsAndTheFlangeInHalvesAtTheWebsEnd)
{
    const SectionOutline outline = TOutline({6.0, 0.5, 4.0, 0.25}, 0.125);
    ExpectPoints(outline, {{0, 0.125}, {0, 2.125}, {0, 4.125}, {0, 6.125}, {-2, 6.125}, {2, 6.125}});
    ExpectSegments(outline, {{0, 1, 0.5}, {1, 2, 0.5}, {2, 3, 0.5}, {3, 4, 0.25}, {3, 5, 0.25}});
    EXPECT_EQ(outline.leadingSize, 6.0);
}

TEST(BeamSectionOutline, OfAnLIsTheWebInThirdsAndTheLegInHalvesToOneSide)
{
    const SectionOutline outline = LOutline({6.0, 0.5, 4.0, 0.25}, -0.125, false);
    ExpectPoints(outline, {{0, -0.125}, {0, 1.875}, {0, 3.875}, {0, 5.875}, {2, 5.875}, {4, 5.875}});
    ExpectSegments(outline, {{0, 1, 0.5}, {1, 2, 0.5}, {2, 3, 0.5}, {3, 4, 0.25}, {4, 5, 0.25}});
    EXPECT_EQ(outline.leadingSize, 6.0);
}

TEST(BeamSectionOutline, OfAMirroredLHasItsLegOnTheOtherSide)
{
    const SectionOutline outline = LOutline({6.0, 0.5, 4.0, 0.25}, 0.0, true);
    ExpectPoints(outline, {{0, 0}, {0, 2}, {0, 4}, {0, 6}, {-2, 6}, {-4, 6}});
    ExpectSegments(outline, {{0, 1, 0.5}, {1, 2, 0.5}, {2, 3, 0.5}, {3, 4, 0.25}, {4, 5, 0.25}});
}

TEST(BeamSectionOutline, WithoutFlangeIsTheWebWhicheverFlangeValueIsZero)
{
    const WebFlangeSection withoutWidth = {6.0, 0.5, 0.0, 0.25}, withoutThickness = {6.0, 0.5, 4.0, 0.0};
    for (const WebFlangeSection& section : {withoutWidth, withoutThickness}) {
        for (const SectionOutline& outline :
             {TOutline(section, 1.0), LOutline(section, 1.0, false), LOutline(section, 1.0, true)}) {
            ExpectPoints(outline, {{0, 1}, {0, 3}, {0, 5}, {0, 7}});
            ExpectSegments(outline, {{0, 1, 0.5}, {1, 2, 0.5}, {2, 3, 0.5}});
        }
    }
}

TEST(BeamSectionOutline, OfATubeHasTwelvePointsFromTheSideUpwards)
{
    const double pi = std::acos(-1.0);
    const SectionOutline outline = TubeOutline({2.0, 0.1}, 0.5);
    std::vector<OutlinePoint> points;
    std::vector<OutlineSegment> segments;
    for (int k = 0; k < 12; ++k) {
        points.push_back({2.0 * std::cos(2 * pi * k / 12), 2.0 * std::sin(2 * pi * k / 12) + 0.5});
        segments.push_back({k, k < 11 ? k + 1 : 0, 0.1});
    }
    ExpectPoints(outline, points);
    ExpectSegments(outline, segments);
    EXPECT_EQ(outline.points[0].y, 2.0);
    EXPECT_NEAR(outline.points[3].z, 2.5, 1e-15);
    EXPECT_EQ(outline.leadingSize, 2.0);
}

TEST(BeamSectionOutline, LongestSegmentIsThatOfWebOrFlange)
{
    EXPECT_EQ(LongestSegment(TOutline({6.0, 0.5, 3.0, 0.25}, 0.0)), 2.0);
    EXPECT_EQ(LongestSegment(TOutline({6.0, 0.5, 5.0, 0.25}, 0.0)), 2.5);
    EXPECT_EQ(LongestSegment(LOutline({6.0, 0.5, 5.0, 0.25}, 0.0, true)), 2.5);
    EXPECT_NEAR(LongestSegment(TubeOutline({2.0, 0.1}, 0.0)), 4.0 * std::sin(std::acos(-1.0) / 12), 1e-14);
}

} // namespace
} // namespace tarnvexo
