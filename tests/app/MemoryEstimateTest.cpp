#include "app/MemoryEstimate.h"

#include "core/Parallel.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

// Three block columns: two with a block below the diagonal.
BlockPattern ChainOfThree()
{
    return {{0, 2, 4, 5}, {0, 1, 1, 2, 2}};
}

TEST(MemoryEstimate, PartsAreThoseOfTheirClosedForms)
{
    SetThreadCount(2);
    FactorSize size;
    size.entries = 1000;
    size.bytes = 8000.0 + 512.0;
    SectionMeshSize meshes;
    meshes.patches = 10.0;
    meshes.nodes = 20.0;
    meshes.bytes = 900.0;
    meshes.systemBytes = 300.0;
    const MemoryEstimate estimate = EstimateMemory(2.0, size, ChainOfThree(), meshes, 5e6, 6e6);
    SetThreadCount(0);
    EXPECT_EQ(estimate.matrix, 5 * 36 * 8.0);
    EXPECT_EQ(estimate.factor, 8000.0);
    EXPECT_EQ(estimate.workspace, 512.0);
    EXPECT_EQ(estimate.vectors, 5 * 18 * 8.0);
    EXPECT_EQ(estimate.sections, 600.0);
    EXPECT_EQ(estimate.systems, 150.0);
    EXPECT_EQ(estimate.joints, 10 * 48.0 + 20 * (24.0 + 8.0 + 10.0));
    EXPECT_EQ(estimate.buffers, 12 * 728.0);
}

TEST(MemoryEstimate, PeakIsThatOfTheLargestStage)
{
    MemoryEstimate estimate;
    estimate.held = 10.0;
    estimate.met = 15.0;
    EXPECT_EQ(estimate.Peak(), 15.0); // what reading met
    estimate.matrix = 1.0;
    estimate.factor = 5.0;
    EXPECT_EQ(estimate.Peak(), 16.0);
    estimate.sections = 6.0;
    estimate.systems = 1.0;
    estimate.joints = 2.0;
    EXPECT_EQ(estimate.Peak(), 18.0);
    estimate.buffers = 3.0;
    EXPECT_EQ(estimate.Peak(), 19.0);
}

TEST(MemoryEstimate, RefusesWhatIsNotFreeWithBothFigures)
{
    MemoryEstimate estimate;
    estimate.held = 1e9;
    estimate.factor = 4e9;
    EXPECT_EQ(MemoryFault(estimate, 4e9, "multifrontal LLᵀ", "m.txt"), "");
    EXPECT_EQ(MemoryFault(estimate, 0.0, "multifrontal LLᵀ", "m.txt"), ""); // not known
    const std::string fault = MemoryFault(estimate, 3e9, "multifrontal LLᵀ", "m.txt");
    EXPECT_EQ(fault.find("m.txt: error: to be solved, the model needs 4 GB of memory beside the 1 GB held now\n"), 0u)
        << fault;
    EXPECT_NE(fault.find("\n  expected: at most 3 GB, "), std::string::npos) << fault;
    EXPECT_NE(MemoryFault(estimate, 3e9, "skyline LDLᵀ", "m.txt").find("--solver sparse"), std::string::npos);
    estimate.sections = 9e9;
    EXPECT_NE(MemoryFault(estimate, 5e9, "multifrontal LLᵀ", "m.txt").find("the section meshes of its beams, 9 GB"),
              std::string::npos);
}

} // namespace
} // namespace tarnvexo
