// app/ResultFiles.h
// The result files of one run in a directory. They are written under names of their own (app/UnfinishedFile) and take
// their final names together at the end, all or none (platform/FileReplacement). A run that fails, is interrupted or
// killed leaves nothing of its own and the results of an earlier run as they were.
// Nothing is written elsewhere: a link, pipe or device under one of the names makes way for the file.
// While the object lives the directory is locked: a second run is refused.
// Errors: RunFailure (file error).
#pragma once

#include "app/SolveReport.h"
#include "app/UnfinishedFile.h"
#include "platform/DirectoryLock.h"
#include "platform/FileReplacement.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace tarnvexo {

class ResultFiles {
public:
    // Makes the directory if it is missing, and clears away what runs that were killed left there, with a note on
    // standard error. Throws when the directory cannot be made or named so, when another run writes into it, and when a
    // directory or a write-protected file bears one of the names.
    // sets: names of result files that are written together by some run (app/ResultFormats), for clearing away; without
    // it, `names` alone.
    ResultFiles(const std::string& directory, const std::vector<std::string>& names,
                const std::vector<std::vector<std::string>>& sets = {});

    // write(path) writes the file, which has one of the names. Throws when it could not be created or written to its
    // end.
    void Write(const std::string& name, const FileWriter& write);

    // All files, which must have been written, take their names; an interruption comes before or after. Throws when one
    // cannot: then none has.
    void Commit();

    // In the order of writing, by their final names.
    const std::vector<ResultFile>& Written() const { return written; }

private:
    std::string directory;
    std::vector<std::string> names;
    std::optional<platform::DirectoryLock> lock;
    std::deque<UnfinishedFile> files; // one per name
    std::optional<platform::FileReplacement> replacement;
    std::vector<ResultFile> written;
};

} // namespace tarnvexo
