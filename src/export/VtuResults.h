// export/VtuResults.h
// The results for ParaView and everything else that reads VTK files (docs/formats/vtu.md): three grids, and one file
// that opens them together as blocks.
// Errors: told in the result.
#pragma once

#include "core/ModelStore.h"
#include "export/ResultPoints.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

constexpr const char* VtuBlocksFileName = "results.vtm";
constexpr const char* VtuShellsFileName = "shells.vtu";
constexpr const char* VtuWallsFileName = "beams.vtu";
constexpr const char* VtuBeamLinesFileName = "beam_lines.vtu";

// Names the other three.
FileResult WriteVtuBlocks(const std::string& path);

// Quadrilaterals, then triangles, with averaged stresses.
FileResult WriteVtuShells(const ModelStore& model, const ShellPoints& shells, const std::string& path);

// Walls of the section meshes.
FileResult WriteVtuWalls(const ModelStore& model, const SectionPoints& sections, const std::string& path);

// One line per beam, between its nodes.
FileResult WriteVtuBeamLines(const ModelStore& model, const std::string& path);

} // namespace tarnvexo
