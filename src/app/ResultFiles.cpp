#include "app/ResultFiles.h"

#include "app/RunFailure.h"
#include "platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace tarnvexo {

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

void ResultFiles::Write(const char* name, const FileWriter& write)
{
    const std::string path = (std::filesystem::path(directory) / name).string();
    const std::uint64_t bytes = files.emplace_back(path).Write(write);
    written.push_back({path, bytes});
}

void ResultFiles::Commit()
{
    const platform::InterruptionHold hold; // all or none
    for (const UnfinishedFile& file : files) { file.CheckName(); }
    for (UnfinishedFile& file : files) { file.Commit(); }
}

} // namespace tarnvexo
