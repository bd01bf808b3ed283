// libFuzzer target: any bytes as a contour file. The reader must stay inside its tables, keep its arrays of one size,
// and take nothing but what the writer writes: the arrays written again are the text, but for "\r" before line ends.
//   build-fuzz/fuzz/contour_fuzz -dict=fuzz/contour_file.dict -max_len=8192 -max_total_time=300 FOUND SEEDS
// with SEEDS tests/input/contour_corpus.
// Built and kept as ReaderFuzz.cpp tells.
#include "input/ContourFileReader.h"
#include "support/ContourText.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace tarnvexo;

void Require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

template <int Nodes> void RequireSound(const ContourShells<Nodes>& shells, const ContourNodes& nodes)
{
    const std::size_t count = shells.connectivity.size();
    Require(shells.positiveFace.size() == count && shells.negativeFace.size() == count);
    Require(nodes.displacements.size() == nodes.coordinates.size());
    for (const auto& element : shells.connectivity) {
        for (const int node : element) { Require(node >= 0 && std::size_t(node) < nodes.coordinates.size()); }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    ContourModel model;
    if (!ReadContourText(model, text, "contour.txt").empty()) {
        return 0;
    }
    RequireSound(model.quads, model.nodes);
    RequireSound(model.tris, model.nodes);
    for (const ContourBeam& beam : model.beams) { RequireSound(beam.walls, beam.nodes); }
    std::string withoutReturns(text);
    std::erase(withoutReturns, '\r');
    Require(test::ContourText(model) == withoutReturns);
    return 0;
}
