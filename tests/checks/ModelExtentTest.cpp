#include "checks/ModelExtent.h"

#include "support/CheckedModels.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

TEST(ModelExtent, IsTheDiagonalOfTheBoxAroundTheElements)
{
    ModelStore model = QuadModel({{{-1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 2.0, 0.0}, {-1.0, 2.0, 0.0}}});
    AddBeam(model, {2, AddNode(model, {1.0, 2.0, 1.0})});
    AddTri(model, {0, 1, AddNode(model, {0.0, -1.0, 0.0})});
    EXPECT_DOUBLE_EQ(ModelExtent(model), std::sqrt(4.0 + 9.0 + 1.0));
}

TEST(ModelExtent, LeavesOutNodesWithoutElements)
{
    ModelStore model = TriModel({{{5.0, 5.0, 5.0}, {8.0, 5.0, 5.0}, {5.0, 9.0, 5.0}}});
    AddNode(model, {1e9, 0.0, 0.0});
    EXPECT_DOUBLE_EQ(ModelExtent(model), 5.0);
}

TEST(ModelExtent, OfNoElementsIsZero)
{
    ModelStore model = EmptyModel();
    EXPECT_EQ(ModelExtent(model), 0.0);
    AddNode(model, {1.0, 2.0, 3.0});
    EXPECT_EQ(ModelExtent(model), 0.0);
}

} // namespace
} // namespace tarnvexo
