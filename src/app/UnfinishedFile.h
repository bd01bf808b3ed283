// app/UnfinishedFile.h
// A file that takes its name only when it is complete: until then it is "NAME.<process>.unfinished" beside it, removed
// when it is given up or the program is interrupted. What bears the name stays as it was to that moment, and of two
// runs each has its own. Before it takes its name its bytes are on the disk, so that a power failure leaves the one or
// the other as well.
// Errors: RunFailure (file error) with the final name and the system's reason.
#pragma once

#include "output/TextFile.h"

#include <cstdint>
#include <functional>
#include <string>

namespace tarnvexo {

// Writes a file under the name it is given.
using FileWriter = std::function<FileResult(const std::string& path)>;

// Behind the final name and a dot stand the number of the process and one of these.
constexpr const char* UnfinishedSuffix = ".unfinished"; // not complete, or without its name yet
constexpr const char* EarlierSuffix = ".earlier";       // bore the name; while the files of a run take their names

// Throws when no file or directory can have this name (platform::NameFault).
void RequireName(const std::string& name);

// The name beside `target` that is this process's own. Shortened in front where the system would find it too long.
std::string NameBeside(const std::string& target, const char* suffix);

// A link, a pipe or a device under the name:
enum class Bearers {
    AreUsed,    // a link is followed; a pipe or device has no earlier content and is written under its own name
    AreReplaced // makes way for the file like an earlier file, so that nothing is written elsewhere
};

class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::string& name, Bearers bearers = Bearers::AreUsed);
    ~UnfinishedFile(); // removes what has not taken its name

    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    // Returns the bytes written. Throws when it could not be created or written to its end.
    std::uint64_t Write(const FileWriter& write);

    // Throws when a directory or a write-protected file bears the name.
    void CheckName() const;

    // Throws when the disk does not take what has been written.
    void Flush() const;

    // Takes the name. Throws when the system refuses.
    void Commit();

    // It has taken its name together with others.
    void HasTakenName();

    // Throws: it was not written, for the system's reason.
    [[noreturn]] void Refuse(const std::string& reason) const;

    const std::string& Name() const { return name; }
    const std::string& Target() const { return target; }
    const std::string& Place() const { return place; }

private:
    std::string name;     // as the user knows it
    std::string target;   // the same, links followed
    std::string place;    // where it is written
    bool isThere = false; // something of this run may be at `place`
};

// One file, from its first byte to its name.
void WriteWhole(const std::string& name, const FileWriter& write);

} // namespace tarnvexo
