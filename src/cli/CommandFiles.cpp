#include "cli/CommandFiles.h"

#include "app/AssemblyDriver.h"
#include "app/SolveDriver.h"
#include "app/UnfinishedFile.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace tarnvexo {

namespace {

namespace fs = std::filesystem;
using platform::PathOf;

} // namespace

std::string ModelFileOf(const std::string& model)
{
    if (model == "-") {
        throw RunFailure(ExitUsage, std::string("-: error: the model cannot come from standard input") +
                                        "\n  expected: a model file, or a directory with " + ModelFileName +
                                        " in it\n  to do:    write it into a file first; a file of this name is ./-");
    }
    std::error_code ignored;
    if (fs::is_regular_file(PathOf(model), ignored)) {
        return model;
    }
    if (!fs::exists(PathOf(model), ignored)) {
        throw RunFailure(ExitFile, model +
                                       ": error: there is no such file or directory"
                                       "\n  expected: a model file, or a directory with " +
                                       ModelFileName + " in it\n  to do:    correct the path");
    }
    if (!fs::is_directory(PathOf(model), ignored)) {
        return model; // a pipe, a device
    }
    constexpr char preferred = fs::path::preferred_separator;
    const bool hasSlash = model.ends_with('/') || model.ends_with(preferred);
    const char separator = model.find(preferred) != std::string::npos ? preferred : '/'; // the one that the user writes
    const std::string file = model + (hasSlash ? "" : std::string(1, separator)) + ModelFileName;
    if (!fs::exists(PathOf(file), ignored)) {
        throw RunFailure(ExitFile, model + ": error: this directory holds no " + ModelFileName +
                                       "\n  expected: a model file, or a directory with " + ModelFileName +
                                       " in it\n  to do:    name the model file itself");
    }
    return file;
}

void RequirePlaceOf(const std::string& file)
{
    RequireName(file);
    const fs::path directory = PathOf(file).parent_path();
    std::error_code ignored;
    if (!directory.empty() && !fs::is_directory(directory, ignored)) {
        throw RunFailure(ExitFile, file + ": error: the directory of this file does not exist"
                                          "\n  expected: a directory that may be written to"
                                          "\n  to do:    make the directory, or correct the path");
    }
}

void WriteTextFile(const std::string& file, const std::string& text)
{
    WriteWhole(file, [&](const std::string& path) {
        TextFile stream;
        stream.Open(path, FileMode::Binary);
        stream.Append(text);
        return stream.Close();
    });
}

void WriteBytes(const std::string& file, std::string_view bytes)
{
    WriteWhole(file, [&](const std::string& path) {
        FileResult result;
        result.path = path;
        std::FILE* const stream = platform::OpenFile(path.c_str(), "wb");
        if (stream == nullptr) {
            result.outcome = FileOutcome::NotCreated;
            result.reason = platform::ReasonOfFile(errno);
            return result;
        }
        result.bytes = std::fwrite(bytes.data(), 1, bytes.size(), stream);
        int error = errno;
        bool isWritten = result.bytes == bytes.size();
        if (std::fclose(stream) != 0 && isWritten) { // some systems tell of a full disk only here
            error = errno;
            isWritten = false;
        }
        if (!isWritten) {
            result.outcome = FileOutcome::Incomplete;
            result.reason = platform::ReasonOfFile(error);
        }
        return result;
    });
}

void WriteOutput(const std::string& text)
{
    if (!platform::WriteUtf8Output(text)) {
        throw RunFailure(ExitFile, std::string("standard output: error: the text cannot be written: ") +
                                       platform::ReasonOfFile(errno) +
                                       "\n  expected: a place that may be written to and has room"
                                       "\n  to do:    name another place");
    }
}

} // namespace tarnvexo
