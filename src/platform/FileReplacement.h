// platform/FileReplacement.h
// Files that take their names together: all of them, or none. One source per system, like Platform.h.
//
// Order of the steps, so that files of two runs never stand under the names together:
//   1. what bears a name is moved aside, name after name
//   2. the new files are moved in
//   3. what was moved aside is removed
// When the system refuses a step of 1 or 2, everything is moved back.
//
// On POSIX systems a process of its own takes the steps. It is started early, while this one is small, has a session of
// its own and heeds no signal: whatever ends the program, `kill -9` included, the steps are taken to their end or not
// at all, and files that have not taken their names are removed. Where no process can be had, and on Windows, the
// program takes the steps itself.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tarnvexo::platform {

struct FileToReplace {
    std::string unfinished; // the new file, complete by the time of Commit
    std::string earlier;    // where what bears the name is moved meanwhile
    std::string target;     // the name; a link is replaced, not followed, and a directory refused
};

class FileReplacement {
public:
    explicit FileReplacement(std::vector<FileToReplace> files);
    ~FileReplacement(); // removes new files that have not taken their names

    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    struct Refusal {
        std::size_t file; // index of the first one that could not
        std::string reason;
    };

    // Nothing when all files have taken their names; otherwise all names are borne by what bore them before. A new file
    // that is missing is refused before the first step: from then on one that is not at its place has taken its name.
    std::optional<Refusal> Commit();

private:
    std::vector<FileToReplace> files;
    int process = -1; // takes the steps; -1: this one does
    int channel = -1; // to it and back
};

} // namespace tarnvexo::platform
