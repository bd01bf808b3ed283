// app/ResultFiles.h
// The result files of one run in a directory. They are written under names of their own (app/UnfinishedFile) and take
// their final names together at the end. A run that fails or is interrupted before that leaves nothing of its own and
// the results of an earlier run as they were. A directory under one of the names is found before the first file is
// replaced; should the system refuse a later one for another reason (a disk that fails, a right withdrawn meanwhile),
// the files before it are new, those from it on are the earlier ones, and the failure names it.
#pragma once

#include "app/SolveReport.h"
#include "app/UnfinishedFile.h"

#include <deque>
#include <string>
#include <vector>

namespace tarnvexo {

class ResultFiles {
public:
    // Makes the directory if it is missing. Errors: throws RunFailure (file error).
    explicit ResultFiles(const std::string& directory);

    // write(path) writes the file. Errors: throws RunFailure when it could not be created or written to its end.
    void Write(const char* name, const FileWriter& write);

    // All files take their names; an interruption comes before or after. Errors: throws RunFailure at the first one
    // that cannot.
    void Commit();

    // In the order of writing, by their final names.
    const std::vector<ResultFile>& Written() const { return written; }

private:
    std::string directory;
    std::deque<UnfinishedFile> files; // which stay where they are
    std::vector<ResultFile> written;
};

} // namespace tarnvexo
