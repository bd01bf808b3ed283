// app/ResultFiles.h
// The result files of one run in a directory. They are written under names of their own and take their names together
// at the end: a run that fails or is interrupted leaves nothing of its own and the results of an earlier run as they
// were.
#pragma once

#include "app/SolveReport.h"
#include "core/ModelStore.h"
#include "output/TextFile.h"

#include <functional>
#include <string>
#include <vector>

namespace tarnvexo {

class ResultFiles {
public:
    // Makes the directory if it is missing. Errors: throws RunFailure (file error).
    explicit ResultFiles(const std::string& directory);
    ~ResultFiles(); // removes what has not been committed

    ResultFiles(const ResultFiles&) = delete;
    ResultFiles& operator=(const ResultFiles&) = delete;

    // write(path) writes the file. Errors: throws RunFailure when it could not be created or written to its end.
    void Write(const char* name, const std::function<FileResult(const std::string& path)>& write);

    // All files take their names. Errors: throws RunFailure at the first one that cannot.
    void Commit();

    // In the order of writing, by their final names.
    const std::vector<ResultFile>& Written() const { return written; }

private:
    std::string directory;
    std::vector<ResultFile> written;
    std::size_t committed = 0; // of these
};

} // namespace tarnvexo
