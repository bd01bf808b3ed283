// output/DxfDrawing.h
// Wire-frame drawings of the shell mesh: DXF text with one LINE per element edge on layer 0; beams are not drawn.
// Errors: a file that cannot be opened ends the run with a message, after one key.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

constexpr const char* StructureDrawingFileName = "structure.dxf";
constexpr const char* DeformationDrawingFileName = "deformation.dxf";

// The mesh where NodeCoordinates stand when this is called.
// Deliberate: the run calls it while the origin is at the structure's centroid, so this drawing is offset from the
// deformed one by the centroid.
void WriteStructureDrawing(const ModelStore& model);

// The mesh displaced by the solution, magnified so that the largest translation is 5 % of the largest extent of the
// nodes. Without any translation the scale, and so the drawing, is not finite.
void WriteDeformedDrawing(const ModelStore& model, const char* fileName);

// Factor of that magnification: extent / largest |dx|, |dy|, |dz| · 0.05. Needs at least one node.
double DeformationScale(const ModelStore& model);

} // namespace tarnvexo
