#include "app/MemoryEstimate.h"

#include "core/Parallel.h"
#include "core/Units.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace tarnvexo {

namespace {

// Doubles per equation that live while factorising and solving, beside the loads held already: diagonal and pivots,
// then f, u, K·u, |K|·|u| and the displacements.
constexpr double VectorsPerEquation = 5.0;

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

} // namespace

double MemoryEstimate::More() const
{
    return std::max({Factorising(), Sections(), Writing()});
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
    estimate.vectors = VectorsPerEquation * equations * sizeof(double);
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

std::string MemoryFault(const MemoryEstimate& estimate, double available, const std::string& engine,
                        const std::string& modelFile)
{
    if (available == 0.0 || estimate.More() <= available) {
        return "";
    }
    const bool isFactor = estimate.Factorising() > available;
    const bool isSkyline = engine.find("skyline") != std::string::npos;
    char text[900];
    std::snprintf(text, sizeof text,
                  ": error: to be solved, the model needs %.3g GB of memory beside the %.3g GB held now\n"
                  "  most of it: %s %.3g GB\n"
                  "  expected: at most %.3g GB, the memory that is free now, limits of this process included\n"
                  "  to do:    close other programs, take a machine with more memory, %s",
                  estimate.More() * GigabytesPerByte, estimate.held * GigabytesPerByte,
                  isFactor ? "the factor of its equations," : "the section meshes of its beams,",
                  (isFactor ? estimate.factor : estimate.sections) * GigabytesPerByte, available * GigabytesPerByte,
                  !isFactor   ? "or leave out beams whose wall stresses are not needed"
                  : isSkyline ? "coarsen the mesh, or use --solver sparse, which needs less"
                              : "or coarsen the mesh; under a limit of addresses (ulimit -v) --threads 1 needs less");
    return modelFile + text;
}

} // namespace tarnvexo
