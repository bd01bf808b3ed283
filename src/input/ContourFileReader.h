// input/ContourFileReader.h
// Reads Tarn+Vexo_AverageStrs.txt, the results of a run that output/ContourFile writes, into plain arrays: for all that
// shows or converts results. The grammar is in docs/formats/contour-file.md.
//
// The reader is strict: it takes what the writer writes and nothing else. A number must be the text that writing it
// gives ("0.5", "1e-05", "-nan", but not "+1", "0.50", "1E5" or seven digits), node numbers must be in their table,
// beams in order, and nothing may follow the last line. Lines end with "\n", or with "\r\n" as on Windows.
// Counts are checked against the rest of the text before anything is allocated: the arrays never take more than four
// times the bytes of the text.
// Units: those of the model file; nothing is converted.
#pragma once

#include "core/Dofs.h"
#include "core/Vector3.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvexo {

// One line of stresses: SX ... TYZ as in StressComponent, then the equivalent stress.
enum { EquivalentStressColumn = StressCount, ContourStressCount };
using ContourStress = std::array<double, ContourStressCount>;

using ContourDisplacement = std::array<double, DofsPerNode>;

struct ContourNodes {
    std::vector<Vector3> coordinates;               // global axes                                    length
    std::vector<ContourDisplacement> displacements; // per node, dx dy dz rx ry rz                    length, –
};

template <int Nodes> struct ContourShells {
    std::vector<std::array<int, Nodes>> connectivity;
    std::vector<std::array<ContourStress, Nodes>> positiveFace; // per element and node               force/length²
    std::vector<std::array<ContourStress, Nodes>> negativeFace;
};

// A beam with the shell model of its section walls, which has nodes of its own.
struct ContourBeam {
    Vector3 end1 = {};
    Vector3 end2 = {};
    ContourNodes nodes;
    ContourShells<QuadNodeCount> walls;
};

struct ContourModel {
    ContourNodes nodes;
    ContourShells<QuadNodeCount> quads;
    ContourShells<TriNodeCount> tris;
    std::vector<ContourBeam> beams;
};

// Fills the model from a text in memory. Returns the message of the first fault, without a line end behind it, or an
// empty text; after a fault the model is filled only in part.
std::string ReadContourText(ContourModel& model, std::string_view text, const char* fileName);

// Fills the model from a file and returns what ReadContourText does. Without value: the file cannot be read, errno
// tells why.
std::optional<std::string> TryReadContourFile(ContourModel& model, const char* fileName);

} // namespace tarnvexo
