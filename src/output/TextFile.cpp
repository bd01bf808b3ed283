#include "output/TextFile.h"

#include "core/Failure.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cerrno>

namespace tarnvexo {

std::string FileFault(const FileResult& file)
{
    switch (file.outcome) {
    case FileOutcome::NotCreated:
        return file.path + ": error: the file cannot be created: " + file.reason +
               "\n"
               "  expected: a directory that can be written, with no directory or protected file of this name\n"
               "  to do:    make room for it, or copy the model to another directory, then run again";
    case FileOutcome::Incomplete:
        return file.path + ": error: the file could not be written to its end: " + file.reason +
               "\n"
               "  expected: room for the whole file where it is written\n"
               "  to do:    do not use this file; make room or choose another directory, then run again";
    case FileOutcome::Written:
        break;
    }
    return "";
}

void RequireCreated(const FileResult& file, const char* message)
{
    Warn(FileFault(file));
    if (file.outcome == FileOutcome::NotCreated) {
        FailWithKey(message);
    }
}

TextFile::TextFile() : writer([this](std::string_view text) { Write(text); }) {}

TextFile::~TextFile()
{
    Close();
}

bool TextFile::Open(const std::string& path, FileMode mode)
{
    Close();
    result = {};
    result.path = path;
    lineEnd = mode == FileMode::Text ? platform::BytesOfLineEnd() : 1;
    file = platform::OpenFile(path.c_str(), mode == FileMode::Text ? "w" : "wb");
    if (file == nullptr) {
        result.outcome = FileOutcome::NotCreated;
        result.reason = platform::ReasonOfFile(errno);
        return false;
    }
    std::setvbuf(file, nullptr, _IONBF, 0); // the writer's buffer is the only one
    return true;
}

FileResult TextFile::Close()
{
    writer.Flush();
    if (file != nullptr) {
        // Some systems tell of a full disk only here.
        const bool closed = std::fclose(file) == 0;
        file = nullptr;
        if (!closed) {
            Fail(errno);
        }
    }
    return result;
}

void TextFile::Append(std::string_view text)
{
    writer.Flush();
    Write(text);
}

void TextFile::Write(std::string_view text)
{
    if (file == nullptr || result.outcome != FileOutcome::Written) {
        return;
    }
    const std::size_t taken = std::fwrite(text.data(), 1, text.size(), file);
    result.bytes += taken;
    if (lineEnd > 1) {
        const std::size_t lines = static_cast<std::size_t>(std::count(text.begin(), text.begin() + taken, '\n'));
        result.bytes += lines * (lineEnd - 1);
    }
    if (taken != text.size()) {
        Fail(errno);
    }
}

void TextFile::Fail(int error)
{
    if (result.outcome == FileOutcome::Written) {
        result.outcome = FileOutcome::Incomplete;
        result.reason = platform::ReasonOfFile(error);
    }
}

} // namespace tarnvexo
