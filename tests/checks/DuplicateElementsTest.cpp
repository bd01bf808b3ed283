#include "checks/DuplicateElements.h"

#include "support/SmallModels.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;

ModelText FourNodes()
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Thickness(0.01);
    model.TSection(0.1, 0.01, 0.06, 0.008);
    model.LSection(0.1, 0.01, 0.06, 0.008);
    model.CSection(0.05, 0.004);
    model.Node(0.0, 0.0, 0.0);
    model.Node(2.0, 0.1, 0.0);
    model.Node(2.2, 1.0, 0.3);
    model.Node(0.1, 1.2, 0.0);
    return model;
}

int DuplicateBeamCount(const ModelText& model)
{
    return static_cast<int>(FindDuplicateElements(StoreOf(model)).beams.size());
}

TEST(DuplicateElements, QuadOnTheSameNodesInAnyOrderIsOne)
{
    for (const std::array<int, 4>& nodes : {std::array{0, 1, 2, 3}, {2, 3, 0, 1}, {3, 2, 1, 0}, {0, 2, 1, 3}}) {
        ModelText model = FourNodes();
        model.Quad({0, 1, 2, 3});
        model.Quad(nodes);
        const DuplicateElements found = FindDuplicateElements(StoreOf(model));
        ASSERT_EQ(found.quads.size(), 1u);
        EXPECT_EQ(found.quads[0].element, 1);
        EXPECT_EQ(found.quads[0].original, 0);
    }
}

TEST(DuplicateElements, EveryCopyIsToldAgainstTheFirst)
{
    ModelText model = FourNodes();
    model.Tri({1, 2, 3});
    model.Tri({0, 1, 2});
    model.Tri({3, 1, 2});
    model.Tri({2, 0, 1});
    model.Tri({2, 1, 3});
    const DuplicateElements found = FindDuplicateElements(StoreOf(model));
    ASSERT_EQ(found.tris.size(), 3u);
    const int expected[3][2] = {{2, 0}, {3, 1}, {4, 0}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(found.tris[i].element, expected[i][0]);
        EXPECT_EQ(found.tris[i].original, expected[i][1]);
    }
}

TEST(DuplicateElements, TrianglesOfAQuadAreNone)
{
    ModelText model = FourNodes();
    model.Quad({0, 1, 2, 3});
    model.Tri({0, 1, 2});
    model.Tri({0, 2, 3});
    const DuplicateElements found = FindDuplicateElements(StoreOf(model));
    EXPECT_TRUE(found.quads.empty());
    EXPECT_TRUE(found.tris.empty());
}

TEST(DuplicateElements, BeamWithEqualSectionIsOneInEitherDirection)
{
    for (const std::array<int, 2>& nodes : {std::array{0, 1}, {1, 0}}) {
        for (const int type : {TSection, CSection}) {
            ModelText model = FourNodes();
            model.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, type, 0, 0.02);
            model.Beam(nodes, {0.5, 0.025, -3.0}, 0, type, 0, 0.02); // the same z': a part along the beam is no matter
            EXPECT_EQ(DuplicateBeamCount(model), 1) << "section type " << type;
        }
    }
}

TEST(DuplicateElements, BeamWithOtherSectionOffsetOrOrientationIsNone)
{
    ModelText section = FourNodes();
    section.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, TSection, 0);
    section.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, LSection, 0);
    section.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, CSection, 0);
    EXPECT_EQ(DuplicateBeamCount(section), 0);

    ModelText offset = FourNodes();
    offset.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, TSection, 0, 0.0);
    offset.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, TSection, 0, 0.005);
    EXPECT_EQ(DuplicateBeamCount(offset), 0);

    ModelText orientation = FourNodes();
    orientation.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, TSection, 0);
    orientation.Beam({0, 1}, {0.0, 0.0, 1.0}, 0, TSection, 0);
    EXPECT_EQ(DuplicateBeamCount(orientation), 0);
}

// Two angles back to back; turning the nodes round and mirroring the section gives the same body.
TEST(DuplicateElements, AngleBackToBackIsNoneButTheSameBodyIs)
{
    ModelText backToBack = FourNodes();
    backToBack.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, LSection, 0, 0.0, 0);
    backToBack.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, LSection, 0, 0.0, 1);
    EXPECT_EQ(DuplicateBeamCount(backToBack), 0);

    ModelText turned = FourNodes();
    turned.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, LSection, 0, 0.0, 0);
    turned.Beam({1, 0}, {0.0, 0.0, -1.0}, 0, LSection, 0, 0.0, 1);
    EXPECT_EQ(DuplicateBeamCount(turned), 1);
}

// The third beam is like the first, the fourth like the second.
TEST(DuplicateElements, BeamsOfDifferentKindsOnTheSameNodesAreToldApart)
{
    ModelText model = FourNodes();
    for (int copy = 0; copy < 2; ++copy) {
        model.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, TSection, 0);
        model.Beam({0, 1}, {0.0, 1.0, 0.0}, 0, TSection, 0);
    }
    const DuplicateElements found = FindDuplicateElements(StoreOf(model));
    ASSERT_EQ(found.beams.size(), 2u);
    EXPECT_EQ(found.beams[0].original, 0);
    EXPECT_EQ(found.beams[1].original, 1);
}

} // namespace
} // namespace tarnvexo
