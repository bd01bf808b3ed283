#include "platform/FileReplacement.h"
#include "platform/WindowsFiles.h"

#include <utility>

namespace tarnvexo::platform {

namespace {

bool Exists(const std::string& path)
{
    return GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsDirectory(const std::string& path)
{
    const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

DWORD Move(const std::string& from, const std::string& to)
{
    return Persistently([&] { return MoveNow(from, to); });
}

// From any point of the steps back to their begin: a new file that is not at its place has taken its name. A directory
// has not been moved aside: it was there before.
void MoveBack(const std::vector<FileToReplace>& files)
{
    for (const FileToReplace& file : files) {
        if (!Exists(file.unfinished)) {
            Move(file.target, file.unfinished);
        }
        if (Exists(file.earlier) && !IsDirectory(file.earlier)) {
            Move(file.earlier, file.target);
        }
    }
}

} // namespace

FileReplacement::FileReplacement(std::vector<FileToReplace> filesToReplace) : files(std::move(filesToReplace)) {}

FileReplacement::~FileReplacement()
{
    for (const FileToReplace& file : files) { DeleteFileW(Wide(file.unfinished).c_str()); }
}

std::optional<FileReplacement::Refusal> FileReplacement::Commit()
{
    const auto refuse = [&](std::size_t file, DWORD error) {
        MoveBack(files);
        return Refusal{file, ReasonOfFileError(error)};
    };
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!Exists(files[i].unfinished)) { // gone with its directory, or someone has cleared up
            return Refusal{i, ReasonOfFileError(ERROR_FILE_NOT_FOUND)};
        }
        if (IsDirectory(files[i].target)) {
            return Refusal{i, std::make_error_code(std::errc::is_a_directory).message()};
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        const DWORD error = Exists(files[i].target) ? Move(files[i].target, files[i].earlier) : ERROR_SUCCESS;
        if (error != ERROR_SUCCESS) { // a program has it open, say
            return refuse(i, error);
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (const DWORD error = Move(files[i].unfinished, files[i].target)) {
            return refuse(i, error);
        }
    }
    for (const FileToReplace& file : files) { DeleteFileW(Wide(file.earlier).c_str()); }
    return {};
}

} // namespace tarnvexo::platform
