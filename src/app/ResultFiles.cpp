#include "app/ResultFiles.h"

#include "app/RunFailure.h"
#include "platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace tarnvexo {

namespace {

std::string UnfinishedName(const std::string& path)
{
    return path + ".unfinished";
}

[[noreturn]] void FailAt(const std::string& path, const std::error_code& error)
{
    throw RunFailure(ExitFile,
                     path + ": error: this result file was not written" +
                         (error ? ": " + error.message() : std::string()) +
                         "\n"
                         "  expected: a directory with room for the results, and no directory of this name in it\n"
                         "  to do:    make room or choose another directory with -o DIR, then run again");
}

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

ResultFiles::~ResultFiles()
{
    for (std::size_t i = committed; i < written.size(); ++i) {
        std::error_code ignored;
        std::filesystem::remove(UnfinishedName(written[i].path), ignored);
        platform::KeepOnInterrupt(UnfinishedName(written[i].path));
    }
}

void ResultFiles::Write(const char* name, const std::function<FileResult(const std::string& path)>& write)
{
    written.push_back({(std::filesystem::path(directory) / name).string(), 0});
    const std::string unfinished = UnfinishedName(written.back().path);
    platform::RemoveOnInterrupt(unfinished);
    const FileResult result = write(unfinished); // tells on standard error what went wrong
    if (result.outcome != FileOutcome::Written) {
        FailAt(written.back().path, {});
    }
    written.back().bytes = result.bytes;
}

void ResultFiles::Commit()
{
    for (; committed < written.size(); ++committed) {
        const std::string& path = written[committed].path;
        std::error_code error;
        std::filesystem::rename(UnfinishedName(path), path, error);
        if (error) {
            FailAt(path, error);
        }
        platform::KeepOnInterrupt(UnfinishedName(path));
    }
}

} // namespace tarnvexo
