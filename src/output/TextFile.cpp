#include "output/TextFile.h"

#include <cerrno>
#include <cstring>

namespace tarnvexo {

TextFile::TextFile() : writer([this](std::string_view text) { Write(text); }) {}

TextFile::~TextFile()
{
    Close();
}

bool TextFile::Open(const char* fileName)
{
    Close();
    failed = false;
    name = fileName;
    file = std::fopen(fileName, "w");
    if (file == nullptr) {
        std::fprintf(stderr,
                     "%s: error: the file cannot be created: %s\n"
                     "  expected: a directory that can be written, with no directory or protected file of this name\n"
                     "  to do:    make room for it, or copy the model to another directory, then run again\n",
                     fileName, std::strerror(errno));
        return false;
    }
    std::setvbuf(file, nullptr, _IONBF, 0); // the writer's buffer is the only one
    return true;
}

bool TextFile::Close()
{
    writer.Flush();
    if (file != nullptr) {
        // Some systems tell of a full disk only here.
        const bool closed = std::fclose(file) == 0;
        file = nullptr;
        if (!closed) {
            ReportFailure(errno);
        }
    }
    return !failed;
}

void TextFile::Write(std::string_view text)
{
    if (file == nullptr || failed) {
        return;
    }
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size()) {
        ReportFailure(errno);
    }
}

void TextFile::ReportFailure(int error)
{
    if (!failed) {
        failed = true;
        std::fprintf(stderr,
                     "%s: error: the file could not be written to its end: %s\n"
                     "  expected: room for the whole file where it is written\n"
                     "  to do:    do not use this file; make room or choose another directory, then run again\n",
                     name.c_str(), std::strerror(error));
    }
}

} // namespace tarnvexo
