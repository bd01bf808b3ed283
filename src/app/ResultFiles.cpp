#include "app/ResultFiles.h"

#include "app/CutOffRuns.h"
#include "app/RunFailure.h"
#include "core/Failure.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cassert>
#include <filesystem>
#include <system_error>

namespace tarnvexo {

ResultFiles::ResultFiles(const std::string& resultDirectory, const std::vector<std::string>& fileNames,
                         const std::vector<std::vector<std::string>>& sets)
    : directory(resultDirectory), names(fileNames)
{
    RequireName(directory);
    const std::error_code error = platform::MakeDirectories(directory);
    std::error_code notThere;
    if (!std::filesystem::is_directory(platform::PathOf(directory), notThere)) {
        throw RunFailure(ExitFile, directory + ": error: the directory for the results cannot be made: " +
                                       (error ? platform::ReasonOf(error) : "a file of this name is in the way") +
                                       "\n"
                                       "  expected: a directory, or a place where one can be made\n"
                                       "  to do:    choose another directory with -o DIR");
    }
    lock.emplace(directory);
    if (lock->State() == platform::LockState::Occupied) {
        throw RunFailure(ExitFile, directory + ": error: another run is writing its results into this directory\n"
                                               "  expected: a directory for each of the runs that go on at once\n"
                                               "  to do:    wait until that run has ended, or choose another directory "
                                               "with -o DIR");
    }
    if (lock->State() == platform::LockState::Held) {
        Warn(ClearCutOffRuns(directory, sets.empty() ? std::vector<std::vector<std::string>>{names} : sets));
    }
    std::vector<platform::FileToReplace> together;
    for (const std::string& name : names) {
        const std::string path = (platform::PathOf(directory) / platform::PathOf(name)).string();
        const UnfinishedFile& file = files.emplace_back(path, Bearers::AreReplaced);
        file.CheckName();
        together.push_back({file.Place(), NameBeside(path, EarlierSuffix), file.Target()});
    }
    replacement.emplace(together);
}

void ResultFiles::Write(const std::string& name, const FileWriter& write)
{
    const auto at = std::find(names.begin(), names.end(), name);
    assert(at != names.end());
    UnfinishedFile& file = files[static_cast<std::size_t>(at - names.begin())];
    const std::uint64_t bytes = file.Write(write);
    written.push_back({file.Name(), bytes});
}

void ResultFiles::Commit()
{
    assert(written.size() == files.size());
    for (const UnfinishedFile& file : files) { file.Flush(); }
    const platform::InterruptionHold hold;
    for (const UnfinishedFile& file : files) { file.CheckName(); }
    if (const auto refusal = replacement->Commit()) {
        files[refusal->file].Refuse(refusal->reason);
    }
    for (UnfinishedFile& file : files) { file.HasTakenName(); }
    platform::TellOnInterruptOfWrittenFiles();
}

} // namespace tarnvexo
