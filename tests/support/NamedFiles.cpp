#include "support/NamedFiles.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarnvexo::test {

Files FilesThere()
{
    Files files;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        std::ifstream file(entry.path());
        files[entry.path().filename().string()] =
            entry.is_directory() ? "directory" : std::string(std::istreambuf_iterator<char>(file), {});
    }
    return files;
}

void Write(const Files& files)
{
    for (const auto& [name, content] : files) { std::ofstream(name) << content; }
}

const std::vector<platform::FileToReplace>& Three()
{
    static const std::vector<platform::FileToReplace> three = {
        {"a.new", "a.old", "a"}, {"b.new", "b.old", "b"}, {"c.new", "c.old", "c"}};
    return three;
}

} // namespace tarnvexo::test
