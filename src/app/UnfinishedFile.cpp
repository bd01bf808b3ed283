#include "app/UnfinishedFile.h"

#include "app/SolveDriver.h"
#include "platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace tarnvexo {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailAt(const std::string& name, const std::string& reason)
{
    throw RunFailure(ExitFile,
                     name + ": error: this file was not written: " + reason +
                         "\n"
                         "  expected: a place that may be written to and has room, and no directory of this name\n"
                         "  to do:    make room or name another place, then run again");
}

std::string LinksFollowed(const std::string& name)
{
    std::error_code error;
    const fs::path followed = fs::is_symlink(name, error) ? fs::weakly_canonical(name, error) : fs::path(name);
    return error ? name : followed.string();
}

bool IsPipeOrDevice(const std::string& path)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

} // namespace

UnfinishedFile::UnfinishedFile(const std::string& finalName) : name(finalName)
{
    if (IsPipeOrDevice(name)) {
        target = place = name;
    } else {
        target = LinksFollowed(name);
        place = target + "." + std::to_string(platform::ProcessId()) + ".unfinished";
    }
}

UnfinishedFile::~UnfinishedFile()
{
    if (isThere) {
        std::error_code ignored;
        fs::remove(place, ignored);
        platform::KeepOnInterrupt(place);
    }
}

std::uint64_t UnfinishedFile::Write(const FileWriter& write)
{
    if (place != target) {
        isThere = true;
        platform::RemoveOnInterrupt(place);
    }
    const FileResult result = write(place);
    if (result.outcome != FileOutcome::Written) {
        FailAt(name, result.reason);
    }
    return result.bytes;
}

void UnfinishedFile::CheckName() const
{
    std::error_code ignored;
    if (fs::is_directory(target, ignored)) {
        FailAt(name, std::make_error_code(std::errc::is_a_directory).message());
    }
}

void UnfinishedFile::Commit()
{
    const platform::InterruptionHold hold;
    if (isThere) {
        CheckName();
        std::error_code error;
        fs::rename(place, target, error);
        if (error) {
            FailAt(name, error.message());
        }
        isThere = false;
        platform::KeepOnInterrupt(place);
    }
    platform::TellOnInterruptOfWrittenFiles();
}

void WriteWhole(const std::string& name, const FileWriter& write)
{
    UnfinishedFile file(name);
    file.Write(write);
    file.Commit();
}

} // namespace tarnvexo
