#include "input/FileText.h"

#include <cstddef>
#include <cstdio>
#include <memory>

namespace tarnvexo {

namespace {

bool ReadWholeFile(const char* fileName, std::string& text)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fileName, "rb"), std::fclose);
    if (!file) {
        return false;
    }
    constexpr std::size_t chunk = std::size_t(1) << 20;
    std::size_t got = 0;
    do {
        const std::size_t size = text.size();
        text.resize(size + chunk);
        got = std::fread(text.data() + size, 1, chunk, file.get());
        text.resize(size + got);
    } while (got > 0);
    return std::ferror(file.get()) == 0; // a directory can be opened, but not read
}

} // namespace

FileText::FileText(const char* fileName) : mapped(fileName)
{
    isRead = !mapped.Bytes().empty() || ReadWholeFile(fileName, copy);
}

} // namespace tarnvexo
