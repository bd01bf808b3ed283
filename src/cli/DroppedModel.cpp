#include "cli/DroppedModel.h"

#include "platform/FilePath.h"

#include <filesystem>

namespace tarnvexo {

std::vector<std::string> CommandForDroppedModel(const std::string& path)
{
    const std::filesystem::path model = platform::PathOf(path);
    std::error_code ignored;
    const std::filesystem::path place = std::filesystem::is_directory(model, ignored) ? model : model.parent_path();
    return {"solve", path, "-o", place.empty() ? "." : place.string()};
}

} // namespace tarnvexo
