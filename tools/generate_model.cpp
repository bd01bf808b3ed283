// generate_model plate|box|ship|barrel|lattice EQUATIONS OUT
// Writes the model file OUT of a structure made by formula with about that many equations (refine/GeneratedModels.h).
#include "output/ModelFileWriter.h"
#include "refine/GeneratedModels.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace {

using namespace tarnvexo;

struct Kind {
    const char* name;
    const char* description;
    ModelStore (*make)(int equations);
};

constexpr Kind Kinds[] = {
    {"plate", "stiffened plate", StiffenedPlateModel},
    {"box", "box girder with bulkheads", BoxGirderModel},
    {"ship", "hold of a ship with web frames and longitudinals", ShipHoldModel},
    {"barrel", "fuselage barrel with frames, stringers and floor", BarrelModel},
    {"lattice", "space frame of T, L and tube beams", BeamLatticeModel},
};

constexpr int MostEquations = 100000000;

int PrintUsage()
{
    std::fprintf(stderr, "usage: generate_model KIND EQUATIONS OUT\n"
                         "writes the model file OUT with about EQUATIONS equations (6 per node); KIND is one of\n");
    for (const Kind& kind : Kinds) { std::fprintf(stderr, "  %-8s %s\n", kind.name, kind.description); }
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        return PrintUsage();
    }
    const Kind* chosen = nullptr;
    for (const Kind& kind : Kinds) {
        if (std::strcmp(kind.name, argv[1]) == 0) {
            chosen = &kind;
        }
    }
    if (chosen == nullptr) {
        std::fprintf(stderr, "error: \"%s\" is no kind of structure\n", argv[1]);
        return PrintUsage();
    }
    int equations = 0;
    const char* end = argv[2] + std::strlen(argv[2]);
    const std::from_chars_result read = std::from_chars(argv[2], end, equations);
    if (read.ec != std::errc() || read.ptr != end || equations < 1 || equations > MostEquations) {
        std::fprintf(stderr, "error: EQUATIONS is \"%s\", expected a whole number from 1 to %d\n", argv[2],
                     MostEquations);
        return PrintUsage();
    }
    const ModelStore model = chosen->make(equations);
    const FileResult file = WriteModelFile(model, argv[3]);
    if (file.outcome != FileOutcome::Written) {
        std::fprintf(stderr, "%s\n", FileFault(file).c_str());
        return 1;
    }
    std::printf("%s: %d nodes, %lld equations, %d four-node shells, %d three-node shells, %d beams\n", argv[3],
                model.NPOIN, static_cast<long long>(DofsPerNode) * model.NPOIN, model.NELEM_S_4ND, model.NELEM_S_3ND,
                model.NELEM_B);
    return 0;
}
