#include "platform/FileReplacement.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <system_error>
#include <utility>
#include <windows.h>

namespace tarnvexo::platform {

namespace {

std::wstring Wide(const std::string& text)
{
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

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
    return MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
               ? ERROR_SUCCESS
               : GetLastError();
}

// From any point of the steps back to their begin: a new file that is not at its place has taken its name.
void MoveBack(const std::vector<FileToReplace>& files)
{
    for (const FileToReplace& file : files) {
        if (!Exists(file.unfinished)) {
            Move(file.target, file.unfinished);
        }
        if (Exists(file.earlier)) {
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
    const auto refusal = [](std::size_t file, DWORD error) {
        return Refusal{file, std::system_category().message(static_cast<int>(error))};
    };
    const auto refuse = [&](std::size_t file, DWORD error) {
        MoveBack(files);
        return refusal(file, error);
    };
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!Exists(files[i].unfinished)) { // gone with its directory, or someone has cleared up
            return refusal(i, ERROR_FILE_NOT_FOUND);
        }
        if (IsDirectory(files[i].target)) {
            return refusal(i, ERROR_DIRECTORY);
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
