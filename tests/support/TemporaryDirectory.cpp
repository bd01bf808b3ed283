#include "support/TemporaryDirectory.h"

#include "platform/Browser.h"
#include "platform/FilePath.h"

#include <stdexcept>
#include <string>

namespace tarnvexo::test {

TemporaryDirectory::TemporaryDirectory() : previous(std::filesystem::current_path())
{
    std::string reason;
    path = platform::PathOf(platform::MakePrivateDirectory("tarnvexo-", reason));
    if (path.empty()) {
        throw std::runtime_error("temporary directory: cannot be made: " + reason);
    }
    std::filesystem::current_path(path);
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::current_path(previous, ignored);
    std::filesystem::remove_all(path, ignored);
}

} // namespace tarnvexo::test
