#include "app/UnfinishedFile.h"

#include "app/SolveDriver.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace tarnvexo {

namespace {

namespace fs = std::filesystem;
using platform::PathOf;

constexpr const char* WriteProtected = "the file of this name is write-protected";
constexpr std::size_t LongestName = 255; // of a file, without its directory, on usual file systems

std::string LinksFollowed(const std::string& name)
{
    std::error_code error;
    const fs::path path = PathOf(name);
    const fs::path followed = fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : path;
    return error ? name : followed.string();
}

bool IsPipeOrDevice(const std::string& path)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(PathOf(path), ignored);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

struct Advice {
    const char* expected;
    const char* toDo;
};

Advice AdviceOn(const std::string& reason)
{
    const auto is = [&](std::errc error) { return reason == std::make_error_code(error).message(); };
    if (is(std::errc::permission_denied) || is(std::errc::operation_not_permitted) ||
        is(std::errc::read_only_file_system) || reason == WriteProtected) {
        return {"a place that may be written to", "name another place, or have its permissions changed"};
    }
    if (is(std::errc::no_such_file_or_directory)) {
        return {"a directory that is there", "make the directory, or name another place"};
    }
    if (is(std::errc::is_a_directory)) {
        return {"no directory of this name", "move the directory away, or name another place"};
    }
    if (is(std::errc::no_space_on_device) || is(std::errc::file_too_large)) {
        return {"room for the file", "make room or name another place"};
    }
    if (reason == platform::FileIsOpenElsewhere) {
        return {"a file that no other program has open", "close it there, or name another place"};
    }
    return {"a place that may be written to and has room", "make room or name another place"};
}

} // namespace

void RequireName(const std::string& name)
{
    const std::string fault = platform::NameFault(name);
    if (!fault.empty()) {
        throw RunFailure(ExitFile, name + ": error: nothing can be written under this name: " + fault +
                                       "\n  expected: a name that a file or folder can have"
                                       "\n  to do:    choose another name");
    }
}

std::string NameBeside(const std::string& target, const char* suffix)
{
    const std::string own = "." + std::to_string(platform::ProcessId()) + suffix;
    const fs::path path = PathOf(target);
    const std::string file = path.filename().string();
    if (file.size() + own.size() <= LongestName || file.size() > LongestName) {
        return target + own;
    }
    std::size_t begin = own.size();
    while ((file[begin] & 0xC0) == 0x80) { ++begin; } // within a character
    return (path.parent_path() / PathOf(file.substr(begin) + own)).string();
}

UnfinishedFile::UnfinishedFile(const std::string& finalName, Bearers bearers) : name(finalName)
{
    if (bearers == Bearers::AreReplaced) {
        target = name;
    } else if (IsPipeOrDevice(name)) {
        target = place = name;
        return;
    } else {
        target = LinksFollowed(name);
    }
    place = NameBeside(target, UnfinishedSuffix);
}

UnfinishedFile::~UnfinishedFile()
{
    if (isThere) {
        std::error_code ignored;
        fs::remove(PathOf(place), ignored);
        platform::KeepOnInterrupt(place);
    }
}

void UnfinishedFile::Refuse(const std::string& reason) const
{
    const Advice advice = AdviceOn(reason);
    throw RunFailure(ExitFile, name + ": error: this file was not written: " + reason + "\n  expected: " +
                                   advice.expected + "\n  to do:    " + advice.toDo + ", then run again");
}

std::uint64_t UnfinishedFile::Write(const FileWriter& write)
{
    if (place != target) {
        std::error_code ignored;
        if (fs::is_symlink(PathOf(place), ignored)) { // not of this program; it would lead elsewhere
            fs::remove(PathOf(place), ignored);
        }
        isThere = true;
        platform::RemoveOnInterrupt(place);
    }
    const FileResult result = write(place);
    if (result.outcome != FileOutcome::Written) {
        Refuse(result.reason);
    }
    if (isThere) {
        platform::BeginFlush(place);
    }
    return result.bytes;
}

void UnfinishedFile::CheckName() const
{
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(PathOf(target), ignored))) {
        Refuse(std::make_error_code(std::errc::is_a_directory).message());
    }
    if (platform::IsWriteProtected(target)) {
        Refuse(WriteProtected);
    }
}

void UnfinishedFile::Flush() const
{
    std::string reason;
    if (isThere && !platform::FlushToDisk(place, reason)) {
        Refuse(reason);
    }
}

void UnfinishedFile::Commit()
{
    Flush(); // may take long: not within the hold
    const platform::InterruptionHold hold;
    if (isThere) {
        CheckName();
        std::string reason;
        if (!platform::RenameFile(place, target, reason)) {
            Refuse(reason);
        }
        HasTakenName();
    }
    platform::TellOnInterruptOfWrittenFiles();
}

void UnfinishedFile::HasTakenName()
{
    isThere = false;
    platform::KeepOnInterrupt(place);
}

void WriteWhole(const std::string& name, const FileWriter& write)
{
    UnfinishedFile file(name);
    file.CheckName();
    file.Write(write);
    file.Commit();
}

} // namespace tarnvexo
