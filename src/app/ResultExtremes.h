// app/ResultExtremes.h
// Smallest and largest values of a solved model and where they are. In parallel. Of places whose values are the same to
// a millionth the first is named, in the order of nodes, or of quadrilaterals, triangles and beams.
#pragma once

#include "app/SolveReport.h"
#include "core/ModelStore.h"

namespace tarnvexo {

// Length of the translation and of the rotation vector of a node.
ExtremeValue LargestTranslation(const ModelStore& model);
ExtremeValue LargestRotation(const ModelStore& model);

// Equivalent stress at the nodes of the shells, averaged with the neighbours as in the result files, on both faces;
// kind "quad" or "tri".
ExtremeValue LargestShellStress(const ModelStore& model);

// The same on the section walls of the beams; kind "beam", node -1, place on the wall.
ExtremeValue LargestBeamStress(const ModelStore& model);

// Of every component; nothing where the model has no such results.
std::vector<ComponentExtremes> DisplacementExtremes(const ModelStore& model);
std::vector<ComponentExtremes> ShellStressExtremes(const ModelStore& model);
std::vector<ComponentExtremes> BeamStressExtremes(const ModelStore& model);

} // namespace tarnvexo
