// app/ResultFiles.h
// The six result files of a directory. Each is written beside its place under a name of its own and takes its name only
// when it is complete: a file that bears the name of a result is whole. Files of an earlier run stay until then.
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

    // write(path) writes the file. Errors: throws RunFailure when it could not be created or written to its end.
    void Write(const char* name, const std::function<FileResult(const std::string& path)>& write);

    const std::vector<ResultFile>& Written() const { return written; }

private:
    std::string directory;
    std::vector<ResultFile> written;
};

} // namespace tarnvexo
