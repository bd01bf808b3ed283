#include "cli/ModelFiles.h"

#include "cli/TextPage.h"
#include "solver/SkylineProfile.h"

namespace tarnvexo {

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
