// export/CsvTables.h
// The results as tables for spreadsheets and programs (docs/formats/csv.md): RFC 4180 (Y. Shafranovich, 2005), lines
// that end with CR LF, the first one with the names of the columns; numbers with nine significant digits and a point.
// No field needs quotes. Units are those of the model file. Errors: told in the result.
#pragma once

#include "core/ModelStore.h"
#include "output/TextFile.h"

#include <string>
#include <vector>

namespace tarnvexo {

constexpr const char* CsvNodesFileName = "nodes.csv";
constexpr const char* CsvQuadsFileName = "quads.csv";
constexpr const char* CsvTrisFileName = "tris.csv";
constexpr const char* CsvBeamNodesFileName = "beam_nodes.csv";
constexpr const char* CsvBeamsFileName = "beams.csv";
constexpr const char* CsvReactionsFileName = "reactions.csv";

// Coordinates and displacements of the nodes.
FileResult WriteCsvNodes(const ModelStore& model, const std::string& path);

// Stresses of the shells: a line per element, node and face, averaged and the element's own.
FileResult WriteCsvQuads(const ModelStore& model, const std::string& path);
FileResult WriteCsvTris(const ModelStore& model, const std::string& path);

// Coordinates and displacements of the nodes of the section meshes.
FileResult WriteCsvBeamNodes(const ModelStore& model, const std::string& path);

// Stresses of the section walls: a line per beam, patch, corner and face, averaged and the patch's own.
FileResult WriteCsvBeams(const ModelStore& model, const std::string& path);

// Force or moment of a support, or of a direction that was held while solving.
struct CsvReaction {
    int node;
    Dof dof;
    double value;
    bool isHold;
};

FileResult WriteCsvReactions(const std::vector<CsvReaction>& reactions, const std::string& path);

} // namespace tarnvexo
