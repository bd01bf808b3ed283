// input/RecordChecks.h
// What the values of a record must be that fits the format: indices in their tables, finite numbers, materials and
// sections that can exist. Each says what is wrong with line, column and what to do; its severity is that of its rule.
#pragma once

#include "core/ModelStore.h"
#include "elements/BeamSection.h"
#include "input/SourceDiagnostics.h"
#include "input/TableReading.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnvexo {

// Which record was the first to name a node or an element.
class FirstUses {
public:
    explicit FirstUses(std::size_t count) : recordOf(count, -1) {}

    // The record that named it before, -1: none.
    int Before(int index, int record)
    {
        if (static_cast<std::size_t>(index) >= recordOf.size()) {
            return -1;
        }
        int& first = recordOf[static_cast<std::size_t>(index)];
        if (first < 0) {
            first = record;
            return -1;
        }
        return first;
    }

private:
    std::vector<int> recordOf;
};

class RecordChecks {
public:
    // `tables`: by TableId, as far as they have been read. All three must outlive the checks.
    RecordChecks(std::string_view text, const TableReading* tables, SourceDiagnostics& diagnostics)
        : text(text), tables(tables), diagnostics(diagnostics)
    {
    }

    // Positions are those of the values in the text; `name` is the record that holds them.

    bool InTable(int index, TableId id, std::size_t position, const RecordName& name)
    {
        return (index >= 0 && index < tables[id].limit) || IsOutside(index, id, position, name);
    }
    // The nodes are the first conversions of the scan.
    template <std::size_t Count>
    bool NodesInTable(const std::array<int, Count>& nodes, const ScanResult& scan, const RecordName& name)
    {
        bool areInTable = true;
        for (std::size_t i = 0; i < Count; ++i) {
            areInTable = InTable(nodes[i], Nodes, scan.fieldBegin[i], name) && areInTable;
        }
        return areInTable;
    }
    bool IsFinite(double value, std::size_t position, const RecordName& name)
    {
        return std::isfinite(value) || IsNotFinite(position, name);
    }

    // A number with a decimal comma is told where its rest does not fit the format.
    void CheckMaterial(const Material& material, const std::size_t positions[3], const RecordName& name);
    // A dimension: above 0, or 0 as well.
    void CheckSize(RuleId rule, double value, bool mayBeZero, const char* key, std::size_t position,
                   const RecordName& name);
    void CheckWall(const CBeamSection& section, std::size_t positionOfR, std::size_t positionOfT,
                   const RecordName& name);
    // That of a beam, which is none of the three.
    void ReportSectionType(int type, std::size_t position, const RecordName& name);
    // Of a beam from `start` to `end`. One without length has no direction of its own; that is a question of shape.
    void CheckOrientation(const Vector3& start, const Vector3& end, const Vector3& orientation, std::size_t position,
                          const RecordName& name);
    // Sizes that are good one by one may still be beyond all measure together.
    void CheckConstants(const BeamSectionConstants& section, std::size_t position, const RecordName& name);
    // `effect`: what a value other than 0 and 1 does.
    void CheckFlag(int flag, std::size_t position, const char* effect, const char* expected, const RecordName& name);
    void CheckFirst(FirstUses& uses, RuleId rule, int index, const char* what, std::size_t position,
                    const RecordName& name);

private:
    bool IsOutside(int index, TableId id, std::size_t position, const RecordName& name);
    bool IsNotFinite(std::size_t position, const RecordName& name);

    std::string_view text;
    const TableReading* tables;
    SourceDiagnostics& diagnostics;
};

} // namespace tarnvexo
