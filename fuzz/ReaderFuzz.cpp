// libFuzzer target: any bytes as a model file. The reader must end in one of its three ways, stay inside its tables and
// keep its promises about messages.
//   cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++-14 -DTARNVEXO_FUZZ=ON
//   cmake --build build-fuzz --target reader_fuzz
//   build-fuzz/fuzz/reader_fuzz -dict=fuzz/model_file.dict -max_len=4096 -max_total_time=300 FOUND tests/input/corpus
// The smallest set of inputs with the same coverage, which the unit tests replay:
//   build-fuzz/fuzz/reader_fuzz -set_cover_merge=1 -use_counters=0 NEW_CORPUS FOUND tests/input/corpus
#include "input/ModelFileReader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void Require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

template <class Indices> void RequireInTable(const Indices& indices, int count)
{
    for (const int index : indices) { Require(index >= 0 && index < count); }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tarnvexo;

    ModelStore model;
    const ModelReading reading = ReadModelText(model, {reinterpret_cast<const char*>(data), size}, "fem_solving.txt");
    Require(reading.end != ModelReading::End::Fault || !reading.fault.empty());
    Require(reading.end != ModelReading::End::Complete || reading.fault.empty());
    Require(reading.warnings.empty() || reading.warnings.back() == '\n');
    if (reading.end != ModelReading::End::Complete) {
        return 0;
    }

    Require(model.NodeCoordinates.size() == std::size_t(model.NPOIN));
    Require(model.QuadElements.size() == std::size_t(model.NELEM_S_4ND));
    Require(model.TriElements.size() == std::size_t(model.NELEM_S_3ND));
    Require(model.BeamElements.size() == std::size_t(model.NELEM_B));
    for (const auto& nodes : model.QuadConnectivity) { RequireInTable(nodes, model.NPOIN); }
    for (const auto& nodes : model.TriConnectivity) { RequireInTable(nodes, model.NPOIN); }
    for (const auto& nodes : model.BeamConnectivity) { RequireInTable(nodes, model.NPOIN); }
    for (const Restraint& restraint : model.Restraints) { RequireInTable(std::array{restraint.node}, model.NPOIN); }
    for (const NodalForce& force : model.NodalForces) { RequireInTable(std::array{force.node}, model.NPOIN); }
    for (const ShellDistributedLoad& load : model.QuadDistributedLoads) {
        RequireInTable(std::array{load.element}, model.NELEM_S_4ND);
    }
    for (const ShellDistributedLoad& load : model.TriDistributedLoads) {
        RequireInTable(std::array{load.element}, model.NELEM_S_3ND);
    }
    for (const BeamDistributedLoad& load : model.BeamDistributedLoads) {
        RequireInTable(std::array{load.element}, model.NELEM_B);
    }
    return 0;
}
