// make_examples DIR
// Writes the model files of the examples, DIR/<name>/fem_solving.txt. Each is computed from formulas alone, so that the
// files can be made again at any time and come out the same, byte for byte.
#include "ElementsExample.h"
#include "ExampleModelFile.h"
#include "JibExample.h"
#include "MidshipExample.h"
#include "WingExample.h"

#include <cstdio>

namespace {

using namespace tarnvexo::examples;

void Write(const ExampleModel& model, const std::filesystem::path& directory)
{
    WriteModelFile(model, directory);
    std::printf("%s: %zu nodes, %zu quads, %zu triangles, %zu beams\n", directory.string().c_str(), model.nodes.size(),
                model.quads.size(), model.tris.size(), model.beams.size());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_examples DIR\nwrites DIR/{elements,jib,midship,wing}/fem_solving.txt\n");
        return 2;
    }
    const std::filesystem::path directory = argv[1];
    Write(ElementsExample(), directory / "elements");
    Write(JibExample(), directory / "jib");
    Write(MidshipExample(), directory / "midship");
    Write(WingExample(), directory / "wing");
    return 0;
}
