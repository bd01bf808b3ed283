#include "cli/DroppedModel.h"

#include "app/AssemblyDriver.h"
#include "platform/FilePath.h"

#include <filesystem>
#include <system_error>

namespace tarnvexo {

std::string ResultsOfDroppedModel(const std::string& path)
{
    const std::filesystem::path model = platform::PathOf(path);
    std::error_code ignored;
    if (std::filesystem::is_directory(model, ignored)) {
        return path;
    }
    std::filesystem::path place = model.parent_path();
    if (model.filename().string() != ModelFileName) {
        place /= platform::PathOf(model.stem().string() + " results");
    }
    return place.empty() ? "." : place.string();
}

} // namespace tarnvexo
