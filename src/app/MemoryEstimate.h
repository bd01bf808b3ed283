// app/MemoryEstimate.h
// The memory that `tarnvexo solve` will hold at its peak, from the symbolic analysis, before any of it is spent.
//
// What the process holds at that moment is measured: program and libraries, model with room for its stresses, ordering,
// pattern and symbolic factor. The rest is added up by what lives at the same time:
//   factorising        matrix + factor + workspace + pivots
//   solving            matrix + factor + vectors, those of the refinement among them
//   beam sections      section meshes + the systems of some, then the tables of joints (matrix and factor are gone)
//   writing            section meshes + buffers
// The peak is the largest of these on top of what is held, or what reading and ordering have met already.
#pragma once

#include "app/SolveOptions.h"
#include "output/BeamSectionStress.h"
#include "solver/SparseEngine.h"

#include <algorithm>
#include <string>

namespace tarnvexo {

// Bytes.
struct MemoryEstimate {
    double held = 0.0;      // now
    double met = 0.0;       // most that was held up to now
    double matrix = 0.0;    // stiffness, in node blocks
    double factor = 0.0;    // its entries
    double workspace = 0.0; // of the engine, while factorising
    double pivots = 0.0;    // diagonal, pivots and signs, while factorising
    double vectors = 0.0;   // loads, displacements, residuals and corrections, while solving
    double sections = 0.0;  // section meshes of beams with their stresses
    double systems = 0.0;   // of section meshes that are solved at the same time
    double joints = 0.0;    // tables that average the stresses where beams meet
    double buffers = 0.0;   // texts of result files

    double Factorising() const { return matrix + factor + workspace + pivots; }
    double Solving() const { return matrix + factor + vectors; }
    double Sections() const { return sections + std::max(systems, joints); }
    double Writing() const { return sections + buffers; }
    double More() const; // than is held now
    double Peak() const;
};

// held, met: what the system tells of the process after the symbolic analysis (platform::ResidentMemory, PeakMemory).
//   shells  of the model; their text, with that of nodes and section patches, is at most what the buffers fill
MemoryEstimate EstimateMemory(double shells, const FactorSize& size, const BlockPattern& pattern,
                              const SectionMeshSize& meshes, double held, double met);

// The same with the factor in a scratch file (SparseEngine::KeepFactorIn).
MemoryEstimate WithScratchFile(MemoryEstimate estimate, const FactorSize& size);

// Where the factor is to stand, and what the run needs then.
struct FactorPlacing {
    bool isOnDisk = false;
    MemoryEstimate memory;
    std::string fault; // message with both figures when that is more than there is; empty: it fits
};

// place Automatic: on disk where memory does not hold the factor and holds the rest.
//   available   bytes; 0: the system does not tell, and everything fits
FactorPlacing PlaceFactor(FactorPlace place, const MemoryEstimate& inMemory, const FactorSize& size, double available,
                          const std::string& modelFile);

} // namespace tarnvexo
