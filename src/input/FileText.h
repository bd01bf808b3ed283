// input/FileText.h
// The bytes of a file in memory: mapped, or read where nothing can be mapped, from a pipe for example.
#pragma once

#include "platform/Platform.h"

#include <string>
#include <string_view>

namespace tarnvexo {

class FileText {
public:
    // What cannot be mapped is read as platform::ReadStream tells: to its end, however long it takes, unless told
    // otherwise.
    explicit FileText(const char* fileName, int silenceSeconds = platform::AnySilence,
                      platform::StreamJudge goesOn = nullptr);

    FileText(const FileText&) = delete;
    FileText& operator=(const FileText&) = delete;

    // False: the file cannot be read; right after construction errno tells why.
    bool IsRead() const { return isRead; }

    bool IsMapped() const { return !mapped.Bytes().empty(); }

    std::string_view Bytes() const { return IsMapped() ? mapped.Bytes() : std::string_view(copy); }

private:
    platform::MappedFile mapped;
    std::string copy;
    bool isRead;
};

} // namespace tarnvexo
