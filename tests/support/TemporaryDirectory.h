// support/TemporaryDirectory.h
// A fresh empty directory that is the current one while the object lives and is removed, with its files, afterwards.
#pragma once

#include <filesystem>

namespace tarnvexo::test {

class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& Path() const { return path; }

private:
    std::filesystem::path path;
    std::filesystem::path previous;
};

} // namespace tarnvexo::test
