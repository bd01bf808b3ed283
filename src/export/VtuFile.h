// export/VtuFile.h
// Writes one unstructured grid as a VTU file: XML in front, then every array as blocks of raw bytes that zlib has
// compressed. W. Schroeder, K. Martin, B. Lorensen, The Visualization Toolkit, 4th ed., Kitware 2006; "VTK File
// Formats".
// Deliberate: the VTK library is not linked. It would add hundreds of megabytes to every installation for what is a
// page of XML and a call of zlib; the tests read the files back with its own reader (tests/export/read_vtu.py).
#pragma once

#include "output/TextFile.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace tarnvexo {

// One array of a grid: `tuples` of `components` numbers. fill writes tuples begin ... end - 1 to out; several threads
// call it at once.
struct VtuArray {
    std::string name;
    const char* type = "";                   // "Float64", "Int64", "Int32", "UInt8"
    std::vector<const char*> componentNames; // none, or one per component
    std::size_t components = 1;
    std::size_t tuples = 0;
    std::size_t tupleBytes = 0;
    std::function<void(std::size_t begin, std::size_t end, unsigned char* out)> fill;
};

template <class Value> constexpr const char* VtuTypeName()
{
    static_assert(std::is_same_v<Value, double> || std::is_same_v<Value, std::int64_t> ||
                  std::is_same_v<Value, std::int32_t> || std::is_same_v<Value, std::uint8_t>);
    return std::is_same_v<Value, double>         ? "Float64"
           : std::is_same_v<Value, std::int64_t> ? "Int64"
           : std::is_same_v<Value, std::int32_t> ? "Int32"
                                                 : "UInt8";
}

// valuesOf(i, out) writes the numbers of tuple i to out[0] ... out[Components - 1].
template <class Value, std::size_t Components = 1, class ValuesOf>
VtuArray MakeVtuArray(std::string name, std::size_t tuples, ValuesOf valuesOf)
{
    VtuArray array;
    array.name = std::move(name);
    array.type = VtuTypeName<Value>();
    array.components = Components;
    array.tuples = tuples;
    array.tupleBytes = Components * sizeof(Value);
    array.fill = [valuesOf](std::size_t begin, std::size_t end, unsigned char* out) {
        for (std::size_t i = begin; i < end; ++i) {
            Value values[Components] = {};
            valuesOf(i, values);
            std::memcpy(out, values, sizeof values);
            out += sizeof values;
        }
    };
    return array;
}

constexpr std::uint8_t VtkLine = 3;
constexpr std::uint8_t VtkTriangle = 5;
constexpr std::uint8_t VtkQuad = 9;

struct VtuGrid {
    VtuArray points;       // three components
    VtuArray connectivity; // points of the cells, one cell behind the other
    VtuArray offsets;      // per cell: where in `connectivity` the next one begins
    VtuArray types;        // VtkLine, VtkTriangle, VtkQuad
    std::vector<VtuArray> pointData;
    std::string scalars; // of the point data, what a viewer colours by at first; none: ""
    std::string vectors; // and what it displaces by
    std::vector<VtuArray> cellData;
};

// The bytes do not depend on the number of threads. Memory: the compressed arrays. Errors: told in the result.
FileResult WriteVtu(const VtuGrid& grid, const std::string& path);

} // namespace tarnvexo
