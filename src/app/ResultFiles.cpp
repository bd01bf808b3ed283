#include "app/ResultFiles.h"

#include "app/SolveDriver.h"
#include "platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace tarnvexo {

namespace {

constexpr const char* UnfinishedSuffix = ".unfinished";

} // namespace

ResultFiles::ResultFiles(const std::string& resultDirectory) : directory(resultDirectory)
{
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (!std::filesystem::is_directory(directory)) {
        throw RunFailure(ExitFile, directory + ": error: the directory for the results cannot be made: " +
                                       (error ? error.message() : "a file of this name is in the way") +
                                       "\n"
                                       "  expected: a directory, or a place where one can be made\n"
                                       "  to do:    choose another directory with -o DIR");
    }
}

void ResultFiles::Write(const char* name, const std::function<FileResult(const std::string& path)>& write)
{
    const std::string path = (std::filesystem::path(directory) / name).string();
    const std::string unfinished = path + UnfinishedSuffix;
    const platform::RemovedOnInterrupt guard(unfinished);
    const FileResult result = write(unfinished); // tells on standard error what went wrong
    std::error_code error;
    if (result.outcome == FileOutcome::Written) {
        std::filesystem::rename(unfinished, path, error);
    }
    if (result.outcome != FileOutcome::Written || error) {
        std::error_code ignored;
        std::filesystem::remove(unfinished, ignored);
        throw RunFailure(ExitFile, path + ": error: this result file was not written" +
                                       (error ? ": " + error.message() : std::string()) +
                                       "\n"
                                       "  expected: a directory with room for the results\n"
                                       "  to do:    make room or choose another directory with -o DIR, then run again");
    }
    written.push_back({path, result.bytes});
}

} // namespace tarnvexo
