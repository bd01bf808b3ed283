// export/GltfResults.h
// The results as one picture in space: results.glb, binary glTF 2.0 (Khronos Group, 2021; ISO/IEC 12113:2022), for
// browsers, slides and every 3D program (docs/formats/gltf.md). Shells and section walls as triangles, coloured by
// equivalent stress; the deformation as a morph target.
// Numbers of glTF are of single precision: a picture, not a record of the results.
#pragma once

#include "core/ModelStore.h"
#include "export/ResultPoints.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

constexpr const char* GltfFileName = "results.glb";

// deformationScale: what displacements are multiplied by in the morph target (output/DxfDrawing).
// Errors: told in the result, also that the file would pass the 4 GB that glTF can address.
FileResult WriteGltf(const ModelStore& model, const ShellPoints& shells, const SectionPoints& sections,
                     double deformationScale, const std::string& path);

} // namespace tarnvexo
