// output/BeamSectionStress.h
// Beam stresses on the real section walls: every beam becomes a small shell model of its own length, whose end nodes
// are tied to the first and last ring of walls by very stiff links and receive the beam's end displacements. Fills
// ModelStore::BeamStressRecords: mesh, displacements, raw corner stresses and their averages. Callers check
// first: section types, and MeasureSectionMeshes for beams that need more wall patches than memory or 32-bit addresses
// hold.
#pragma once

#include "core/ModelStore.h"
#include "output/BeamSectionOutline.h"

#include <string>

namespace tarnvexo {

// Section types have been checked; one other than T, L, C throws std::invalid_argument.
void RecoverBeamSectionStresses(ModelStore& model);

// The checks of the console run: meshes too large end it with a diagnostic, an unknown section type with a message.
void RequireBeamSections(const ModelStore& model);

// What the section meshes of all beams will take, before the first is built: upper bounds. Beams behind one of unknown
// type do not count.
struct SectionMeshSize {
    double patches = 0.0;
    double nodes = 0.0;
    double bytes = 0.0;       // of meshes and systems
    double systemBytes = 0.0; // of the largest systems that are solved at the same time, one per thread
    bool isBeyondMemory = false;
    // What, expected, to do, without the severity in front:
    std::string fault; // of the first beam whose mesh cannot be addressed or held beside those before it; empty: none
};
SectionMeshSize MeasureSectionMeshes(const ModelStore& model);

// Outline of the section of beam b. A section type other than T, L, C throws std::invalid_argument.
SectionOutline OutlineOfBeam(const ModelStore& model, int b);

// Slices along the beam: its length in longest wall segments, rounded down, at least one; one also where the quotient
// is not finite (a section without size, a length that is not a number). May exceed what an int holds.
double SliceCount(double length, const SectionOutline& outline);

// One beam's model, solved, with raw corner stresses; endDisplacements [12] of node 1 and node 2, global axes.
BeamSectionModel SolveBeamSection(const BeamElement& beam, const SectionOutline& outline,
                                  const double endDisplacements[BeamDofCount]);

} // namespace tarnvexo
