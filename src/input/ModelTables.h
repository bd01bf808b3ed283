// input/ModelTables.h
// The counted tables of the model file as messages speak of them, in file order, and what both readers do with them.
#pragma once

#include "input/ScanDiagnostics.h"
#include "platform/Platform.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnvexo {

enum TableId {
    Materials,
    Thicknesses,
    TSections,
    LSections,
    CSections,
    Nodes,
    Quads,
    Tris,
    Beams,
    Restraints,
    Forces,
    QuadLoads,
    TriLoads,
    BeamLoads,
    TableCount
};

// Count and its place in the file are known once it has been read.
struct Table {
    const char* record;
    const char* records;
    const char* key;
    int count = 0;
    std::size_t countPosition = 0;
};

// By TableId.
constexpr Table ModelTables[TableCount] = {
    {"material", "materials", "NMT"},
    {"thickness", "thicknesses", "NTK"},
    {"T section", "T sections", "NTBS"},
    {"L section", "L sections", "NLBS"},
    {"C section", "C sections", "NCBS"},
    {"node", "nodes", "NPOIN"},
    {"four-node shell", "four-node shells", "NELEM_S_4ND"},
    {"three-node shell", "three-node shells", "NELEM_S_3ND"},
    {"beam", "beams", "NELEM_B"},
    {"restraint", "restraints", "NRN"},
    {"force", "forces", "NFOR"},
    {"four-node shell load", "four-node shell loads", "NDL_S_4ND"},
    {"three-node shell load", "three-node shell loads", "NDL_S_3ND"},
    {"beam load", "beam loads", "NDL_B"},
};

// Positions of the conversions of formats::Beam.
enum BeamField {
    BeamNode1,
    BeamNode2,
    BeamVx,
    BeamVy,
    BeamVz,
    BeamMaterial,
    BeamType,
    BeamIndex,
    BeamOz,
    BeamMirrored
};

// Room for `count` records that are then appended one by one: each is written once, into pages that are ready.
template <class Record> void Reserve(std::vector<Record>& table, std::size_t count)
{
    table.clear();
    table.reserve(count);
    platform::PreferLargePages(table.data(), sizeof(Record) * count);
}

// The fault of an index that the table does not have, used at a position of the text.
TextFault OutsideTable(std::string_view text, const Table& table, int index, std::size_t position,
                       const RecordName& user);

} // namespace tarnvexo
