// app/UnfinishedFile.h
// A file that takes its name only when it is complete: until then it is "NAME.<process>.unfinished" beside it, removed
// when it is given up or the program is interrupted. What bears the name stays as it was to that moment, and of two
// runs each has its own. A link is followed. A pipe or device has no earlier content: it is written under its own name.
// Errors: RunFailure (file error) with the final name and the system's reason.
#pragma once

#include "output/TextFile.h"

#include <cstdint>
#include <functional>
#include <string>

namespace tarnvexo {

// Writes a file under the name it is given.
using FileWriter = std::function<FileResult(const std::string& path)>;

class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::string& name);
    ~UnfinishedFile(); // removes what has not taken its name

    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    // Returns the bytes written. Throws when it could not be created or written to its end.
    std::uint64_t Write(const FileWriter& write);

    // Throws when a directory bears the name.
    void CheckName() const;

    // Takes the name. Throws when the system refuses.
    void Commit();

private:
    std::string name;     // as the user knows it
    std::string target;   // the same, links followed
    std::string place;    // where it is written
    bool isThere = false; // something of this run may be at `place`
};

// One file, from its first byte to its name.
void WriteWhole(const std::string& name, const FileWriter& write);

} // namespace tarnvexo
