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
    EXPECT_EQ(estimate.pivots, 4 * 18 * 8.0);
    EXPECT_EQ(estimate.vectors, 10 * 18 * 8.0 + 2 * 12.0);
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
    estimate.vectors = 0.5;
    EXPECT_EQ(estimate.Peak(), 16.5);
    estimate.sections = 6.0;
    estimate.systems = 1.0;
    estimate.joints = 2.0;
    EXPECT_EQ(estimate.Peak(), 18.0);
    estimate.buffers = 3.0;
    EXPECT_EQ(estimate.Peak(), 19.0);
}

// 4 GB for the factor and 1 GB for the rest, of that 0.5 GB beside the factor on disk.
MemoryEstimate LargeFactor()
{
    MemoryEstimate estimate;
    estimate.held = 1e9;
    estimate.matrix = 0.5e9;
    estimate.workspace = 0.5e9;
    estimate.factor = 4e9;
    return estimate;
}

FactorSize SizeOfLargeFactor(double bytesWithScratchFile)
{
    FactorSize size;
    size.bytesWithScratchFile = bytesWithScratchFile;
    return size;
}

TEST(MemoryEstimate, RefusesWhatIsNotFreeWithBothFigures)
{
    const FactorSize size = SizeOfLargeFactor(0.5e9);
    EXPECT_EQ(PlaceFactor(FactorPlace::Memory, LargeFactor(), size, 5e9, "m.txt").fault, "");
    EXPECT_EQ(PlaceFactor(FactorPlace::Memory, LargeFactor(), size, 0.0, "m.txt").fault, ""); // not known
    const std::string fault = PlaceFactor(FactorPlace::Memory, LargeFactor(), size, 3e9, "m.txt").fault;
    EXPECT_EQ(fault.find("m.txt: error: to be solved, the model needs 5 GB of memory beside the 1 GB held now\n"
                         "  most of it: the factor of its equations, 4 GB\n"
                         "  expected: at most 3 GB, "),
              0u)
        << fault;
    EXPECT_NE(fault.find("leave out --factor memory"), std::string::npos) << fault;
}

TEST(MemoryEstimate, NamesTheSectionMeshesWhereTheyAreTooLarge)
{
    MemoryEstimate estimate = LargeFactor();
    estimate.sections = 9e9;
    const std::string fault =
        PlaceFactor(FactorPlace::Automatic, estimate, SizeOfLargeFactor(0.5e9), 6e9, "m.txt").fault;
    EXPECT_NE(fault.find("the section meshes of its beams, 9 GB"), std::string::npos) << fault;
}

TEST(FactorPlacing, AutomaticTakesTheDiskOnlyWhereThatHelps)
{
    const FactorSize size = SizeOfLargeFactor(0.5e9);
    EXPECT_FALSE(PlaceFactor(FactorPlace::Automatic, LargeFactor(), size, 6e9, "m.txt").isOnDisk);
    const FactorPlacing onDisk = PlaceFactor(FactorPlace::Automatic, LargeFactor(), size, 2e9, "m.txt");
    EXPECT_TRUE(onDisk.isOnDisk);
    EXPECT_EQ(onDisk.fault, "");
    EXPECT_EQ(onDisk.memory.More(), 1e9);
    const FactorPlacing tooLarge = PlaceFactor(FactorPlace::Automatic, LargeFactor(), size, 0.9e9, "m.txt");
    EXPECT_FALSE(tooLarge.isOnDisk);
    EXPECT_NE(tooLarge.fault.find("the factor of its equations, 4 GB"), std::string::npos) << tooLarge.fault;
}

TEST(FactorPlacing, OnDiskTheMatrixAndTheFrontsMayStillBeTooLarge)
{
    const FactorPlacing placing =
        PlaceFactor(FactorPlace::Disk, LargeFactor(), SizeOfLargeFactor(0.5e9), 0.9e9, "m.txt");
    EXPECT_TRUE(placing.isOnDisk);
    EXPECT_NE(placing.fault.find("the matrix and the fronts of its equations, 1 GB"), std::string::npos)
        << placing.fault;
}

TEST(FactorPlacing, AnEngineWithoutScratchFileIsNotSentToTheDisk)
{
    const FactorPlacing placing =
        PlaceFactor(FactorPlace::Automatic, LargeFactor(), SizeOfLargeFactor(0.0), 2e9, "m.txt");
    EXPECT_FALSE(placing.isOnDisk);
    EXPECT_NE(placing.fault.find("use --solver sparse, which needs less"), std::string::npos) << placing.fault;
}

} // namespace
} // namespace tarnvexo
