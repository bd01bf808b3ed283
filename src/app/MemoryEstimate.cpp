#include "app/MemoryEstimate.h"

#include "core/Parallel.h"
#include "core/Units.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace tarnvexo {

namespace {

// Doubles per equation that live while factorising: diagonal, and pivots as the engine has them, with their signs, and
// as it tells them.
constexpr double PivotsPerEquation = 4.0;

// While solving, the loads being held already: signs and pivots of the engine, f, u, residual, |K|·|u| + |f|, the
// correction, the solution before it, and in the engine the vector in the order of the fronts, with what waits on the
// stacks.
constexpr double VectorsPerEquation = 10.0;

// A block below the diagonal, to be found from its row (LeftBlocks).
constexpr double BytesPerLeftBlock = sizeof(std::size_t) + sizeof(int);

// Of each writing thread. The file has one more.
constexpr double BufferBytes = 1 << 19;

// Text in the largest result file: four corners with two faces of seven numbers each.
constexpr double TextPerShell = 4.0 * 2.0 * 7.0 * 13.0;

// A column of a section's skyline reaches back to its own neighbour in the ring before; at most to the first one there,
// which is what the upper bound of MeasureSectionMeshes counts for all.
constexpr double ShareOfSystemBound = 0.5;

// To find the corners that meet: per patch, four of three numbers each; per node, its place, its first corner and its
// share of the grid's buckets and members.
constexpr double JointBytesPerPatch = 4.0 * 3.0 * sizeof(int);
constexpr double JointBytesPerNode = 3.0 * sizeof(double) + sizeof(std::size_t) + 2.5 * sizeof(int);

// The part of the need that is named, and what to do where it is the factor.
std::string MemoryFault(const MemoryEstimate& estimate, double available, const char* adviceOnFactor,
                        const std::string& modelFile)
{
    const bool isEquations = std::max(estimate.Factorising(), estimate.Solving()) > available;
    const char* const largest = !isEquations            ? "the section meshes of its beams,"
                                : estimate.factor > 0.0 ? "the factor of its equations,"
                                                        : "the matrix and the fronts of its equations,";
    const double bytes = !isEquations            ? estimate.sections
                         : estimate.factor > 0.0 ? estimate.factor
                                                 : estimate.matrix + estimate.workspace;
    char text[900];
    std::snprintf(text, sizeof text,
                  ": error: to be solved, the model needs %.3g GB of memory beside the %.3g GB held now\n"
                  "  most of it: %s %.3g GB\n"
                  "  expected: at most %.3g GB, the memory that is free now, limits of this process included\n"
                  "  to do:    close other programs, take a machine with more memory, %s",
                  estimate.More() * GigabytesPerByte, estimate.held * GigabytesPerByte, largest,
                  bytes * GigabytesPerByte, available * GigabytesPerByte,
                  isEquations ? adviceOnFactor : "or leave out beams whose wall stresses are not needed");
    return modelFile + text;
}

} // namespace

double MemoryEstimate::More() const
{
    return std::max({Factorising(), Solving(), Sections(), Writing()});
}

double MemoryEstimate::Peak() const
{
    return std::max(met, held + More());
}

MemoryEstimate EstimateMemory(double shells, const FactorSize& size, const BlockPattern& pattern,
                              const SectionMeshSize& meshes, double held, double met)
{
    const double equations = static_cast<double>(DofsPerNode) * pattern.Size();
    MemoryEstimate estimate;
    estimate.held = held;
    estimate.met = met;
    estimate.matrix = static_cast<double>(pattern.rows.size()) * BlockEntries * sizeof(double);
    estimate.factor = static_cast<double>(size.entries) * sizeof(double);
    estimate.workspace = size.bytes - estimate.factor;
    estimate.pivots = PivotsPerEquation * equations * sizeof(double);
    estimate.vectors = VectorsPerEquation * equations * sizeof(double) +
                       BytesPerLeftBlock * (static_cast<double>(pattern.rows.size()) - pattern.Size());
    estimate.sections = meshes.bytes - meshes.systemBytes;
    estimate.systems = ShareOfSystemBound * meshes.systemBytes;
    estimate.joints = JointBytesPerPatch * meshes.patches + JointBytesPerNode * meshes.nodes;
    estimate.buffers = std::min(BufferBytes * (ThreadCount() + 1), TextPerShell * (shells + meshes.patches));
    return estimate;
}

MemoryEstimate WithScratchFile(MemoryEstimate estimate, const FactorSize& size)
{
    estimate.factor = 0.0;
    estimate.workspace = size.bytesWithScratchFile;
    return estimate;
}

FactorPlacing PlaceFactor(FactorPlace place, const MemoryEstimate& inMemory, const FactorSize& size, double available,
                          const std::string& modelFile)
{
    const auto fits = [&](const MemoryEstimate& estimate) { return available == 0.0 || estimate.More() <= available; };
    const MemoryEstimate withScratchFile = WithScratchFile(inMemory, size);
    const bool canUseDisk = size.bytesWithScratchFile > 0.0;
    const bool diskHelps = canUseDisk && !fits(inMemory) && fits(withScratchFile);
    FactorPlacing placing;
    placing.isOnDisk = place == FactorPlace::Disk || (place == FactorPlace::Automatic && diskHelps);
    placing.memory = placing.isOnDisk ? withScratchFile : inMemory;
    if (!fits(placing.memory)) {
        placing.fault = MemoryFault(placing.memory, available,
                                    diskHelps     ? "or leave out --factor memory: the disk may hold the factor"
                                    : !canUseDisk ? "coarsen the mesh, or use --solver sparse, which needs less"
                                                  : "or coarsen the mesh; under a limit of addresses (ulimit -v) "
                                                    "--threads 1 needs less",
                                    modelFile);
    }
    return placing;
}

} // namespace tarnvexo
