// output/DxfDrawing.h
// Wire-frame drawings of the shell mesh: DXF text with one LINE per element edge on layer 0; beams are not drawn.
// Errors: reported on standard error (output/TextFile.h) and told in the result.
#pragma once

#include "core/ModelStore.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

constexpr const char* StructureDrawingFileName = "structure.dxf";
constexpr const char* DeformationDrawingFileName = "deformation.dxf";

// The mesh where NodeCoordinates stand when this is called.
// Deliberate: the run calls it while the origin is at the structure's centroid, so this drawing is offset from the
// deformed one by the centroid.
FileResult WriteStructureDrawing(const ModelStore& model, const std::string& path);

// The mesh displaced by the solution, magnified so that the largest translation is 5 % of the largest extent of the
// nodes. Without any translation the scale, and so the drawing, is not finite; without nodes it holds no line.
FileResult WriteDeformedDrawing(const ModelStore& model, const std::string& path);
FileResult WriteDeformedDrawing(const ModelStore& model, double scale, const std::string& path);

// Factor of that magnification: extent / largest |dx|, |dy|, |dz| · 0.05. Needs at least one node.
double DeformationScale(const ModelStore& model);

} // namespace tarnvexo
