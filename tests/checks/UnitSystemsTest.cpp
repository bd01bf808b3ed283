#include "checks/UnitSystems.h"

#include <gtest/gtest.h>
#include <string>

namespace tarnvexo {
namespace {

struct Pair {
    const char* system;
    double E, Density; // of steel
};

constexpr Pair Steel[] = {
    {"N, m, kg", 2.1e11, 7850.0},     {"N, mm, t", 2.1e5, 7.85e-9},     {"lbf, in, s", 3.05e7, 7.35e-4},
    {"kN, mm, kg, ms", 210, 7.85e-6}, {"kN, m, t", 2.1e8, 7.85},        {"kgf, cm, s", 2.14e6, 8.0e-6},
    {"N, cm, s", 2.1e7, 7.85e-5},     {"lbf, ft, slug", 4.39e9, 15.23}, {"kip, in, s", 3.05e4, 7.35e-7},
    {"N, mm, g, ms", 2.1e5, 7.85e-3},
};

std::string NamesOf(UnitSystemSet systems)
{
    std::string names;
    for (std::size_t s = 0; s < UnitSystems().size(); ++s) {
        if ((systems >> s & 1U) != 0) {
            names += names.empty() ? "" : " | ";
            names += UnitSystems()[s].name;
        }
    }
    return names;
}

TEST(UnitSystems, SteelBelongsToTheOneSystemThatItIsGivenIn)
{
    for (const Pair& pair : Steel) { EXPECT_EQ(NamesOf(SystemsOf(pair.E, pair.Density)), pair.system); }
}

TEST(UnitSystems, OtherMaterialsBelongToTheirSystem)
{
    EXPECT_EQ(NamesOf(SystemsOf(7e10, 2700.0)), "N, m, kg");     // aluminium
    EXPECT_EQ(NamesOf(SystemsOf(1.05e7, 2.6e-4)), "lbf, in, s"); // aluminium
    EXPECT_EQ(NamesOf(SystemsOf(1.6e7, 4.14e-4)), "lbf, in, s"); // titanium
    EXPECT_EQ(NamesOf(SystemsOf(1.14e5, 4.43e-9)), "N, mm, t");  // titanium
    EXPECT_EQ(NamesOf(SystemsOf(4.64e10, 1550.0)), "N, m, kg");  // carbon-fibre laminate
}

TEST(UnitSystems, ConsistentMaterialIsNoMixture)
{
    for (const Pair& pair : Steel) { EXPECT_FALSE(MixtureOf(pair.E, pair.Density)) << pair.system; }
}

// The first five are far from each other. Others have a unit of stress or density within a factor of ten of another
// one's: there, such a pair may as well be a heavier or lighter material made up in one of them.
TEST(UnitSystems, SteelWithTheDensityOfAnotherSystemIsAMixture)
{
    for (int one = 0; one < 5; ++one) {
        for (int other = 0; other < 5; ++other) {
            if (one == other) {
                continue;
            }
            const auto mixture = MixtureOf(Steel[one].E, Steel[other].Density);
            ASSERT_TRUE(mixture) << Steel[one].system << " with " << Steel[other].system;
            EXPECT_STREQ(mixture->material, "steel");
            EXPECT_STREQ(mixture->ofE->name, Steel[one].system);
        }
    }
}

TEST(UnitSystems, MixtureTellsBothSystemsAndWhatIsExpected)
{
    const auto density = MixtureOf(2.06e11, 7.85e-9);
    ASSERT_TRUE(density);
    EXPECT_STREQ(density->ofE->name, "N, m, kg");
    EXPECT_STREQ(density->ofDensity->name, "N, mm, t");
    EXPECT_DOUBLE_EQ(density->expectedDensity, 7850.0);
    EXPECT_DOUBLE_EQ(density->expectedE, 2.06e5);

    const auto stress = MixtureOf(2.06e5, 7850.0);
    ASSERT_TRUE(stress);
    EXPECT_STREQ(stress->ofE->name, "N, mm, t");
    EXPECT_STREQ(stress->ofDensity->name, "N, m, kg");
    EXPECT_DOUBLE_EQ(stress->expectedE, 2.06e11);
}

TEST(UnitSystems, WeightInPoundsPerCubicInchIsAMixtureWithoutAnExpectedE)
{
    const auto mixture = MixtureOf(3e7, 0.284);
    ASSERT_TRUE(mixture);
    EXPECT_STREQ(mixture->ofE->name, "lbf, in, s");
    EXPECT_STREQ(mixture->ofDensity->name, "lb/in3");
    EXPECT_EQ(mixture->expectedE, 0.0);
    EXPECT_NEAR(mixture->expectedDensity, 0.284 / 386.0886, 1e-9); // g = 386.0886 in/s²
}

TEST(UnitSystems, MadeUpMaterialIsNoMixture)
{
    EXPECT_FALSE(MixtureOf(2.1e11, 0.0));       // without mass
    EXPECT_FALSE(MixtureOf(2.1e11, 12000.0));   // steel with the weight of what stands on it
    EXPECT_FALSE(MixtureOf(2.1e11, 3000.0));    // plating thinned out
    EXPECT_FALSE(MixtureOf(1e7, 1500.0));       // rubber
    EXPECT_FALSE(MixtureOf(5e7, 80.0));         // foam
    EXPECT_FALSE(MixtureOf(1.6e10, 11340.0));   // lead
    EXPECT_FALSE(MixtureOf(3.3e11, 19300.0));   // tungsten
    EXPECT_FALSE(MixtureOf(2.1e11, 2.6159e-4)); // rigid aluminium in lbf, in, s
}

} // namespace
} // namespace tarnvexo
