// input/FileText.h
// The bytes of a file in memory: mapped, or read to the end where nothing can be mapped, a pipe for example.
#pragma once

#include "platform/Platform.h"

#include <string>
#include <string_view>

namespace tarnvexo {

class FileText {
public:
    explicit FileText(const char* fileName);

    FileText(const FileText&) = delete;
    FileText& operator=(const FileText&) = delete;

    // False: the file cannot be read; right after construction errno tells why.
    bool IsRead() const { return isRead; }

    std::string_view Bytes() const { return mapped.Bytes().empty() ? std::string_view(copy) : mapped.Bytes(); }

private:
    platform::MappedFile mapped;
    std::string copy;
    bool isRead;
};

} // namespace tarnvexo
