#include "cli/ModelFiles.h"

#include "app/SolveDriver.h"
#include "cli/CommandFiles.h"
#include "cli/TextPage.h"
#include "core/Failure.h"
#include "input/ModelFileReader.h"
#include "solver/SkylineProfile.h"

#include <fstream>
#include <iterator>

namespace tarnvexo {

namespace {

std::string TextOfFile(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad()) {
        throw RunFailure(ExitFile, name + ": error: the model file cannot be read"
                                          "\n  expected: a file that may be read"
                                          "\n  to do:    look at its permissions");
    }
    return text;
}

} // namespace

void LoadModel(const std::string& model, ModelStore& store)
{
    const std::string file = ModelFileOf(model);
    const ModelReading reading = ReadModelText(store, TextOfFile(file), file.c_str());
    const std::size_t warningEnd = reading.warnings.find_last_not_of('\n');
    Warn(warningEnd == std::string::npos ? "" : reading.warnings.substr(0, warningEnd + 1));
    if (reading.end != ModelReading::End::Complete) {
        throw RunFailure(ExitBadModel, reading.fault.empty()
                                           ? file + ": error: this is no model file"
                                                    "\n  expected: a text that begins with its release"
                                                    "\n  to do:    see docs/formats/model-file.md"
                                           : reading.fault);
    }
}

ModelSize SizeOfModel(ModelStore& store)
{
    store.EquationCount = DofsPerNode * store.NPOIN;
    BuildSkylineProfile(store);
    return {store.NPOIN, std::int64_t(store.NELEM_S_4ND) + store.NELEM_S_3ND + store.NELEM_B, store.EquationCount,
            SkylineEntries(store.ColumnHeight)};
}

std::string SizeChangeText(const ModelSize& before, const ModelSize& after, const std::string& writtenFile)
{
    TextPage page;
    page.ColumnTitles({"before", "after"});
    page.Row("nodes", {std::to_string(before.nodes), std::to_string(after.nodes)});
    page.Row("elements", {std::to_string(before.elements), std::to_string(after.elements)});
    page.Row("equations", {std::to_string(before.equations), std::to_string(after.equations)});
    page.Row("skyline entries", {std::to_string(before.skylineEntries), std::to_string(after.skylineEntries)});
    page.Text("written", writtenFile);
    return page.Result();
}

} // namespace tarnvexo
