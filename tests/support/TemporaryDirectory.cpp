#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace tarnvexo::test {

TemporaryDirectory::TemporaryDirectory() : previous(std::filesystem::current_path())
{
    std::string name = (std::filesystem::temp_directory_path() / "tarnvexo-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("temporary directory: cannot be made: " + name);
    }
    path = name;
    std::filesystem::current_path(path);
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::current_path(previous, ignored);
    std::filesystem::remove_all(path, ignored);
}

} // namespace tarnvexo::test
