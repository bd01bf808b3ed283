#include "cli/ModelFiles.h"

#include "app/ModelLoading.h"
#include "cli/CommandFiles.h"
#include "cli/TextPage.h"
#include "core/Failure.h"
#include "solver/SkylineProfile.h"

namespace tarnvexo {

void LoadModelTellingWarnings(const std::string& model, ModelStore& store)
{
    std::string warnings = LoadModel(store, ModelFileOf(model));
    if (!warnings.empty()) {
        warnings.pop_back(); // the last line end
    }
    Warn(warnings);
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
