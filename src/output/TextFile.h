// output/TextFile.h
// A result file being written: created or emptied, filled through one large buffer.
//
//     TextFile file;
//     if (!file.Open("Node_Dis.txt")) { ... }
//     file.Text().Integer(7).Text(":").EndLine();
//     file.Close();
//
// Errors: nothing is printed and nothing ends the process. Every procedure that writes a file hands what became of it,
// with the system's reason, on to the caller.
#pragma once

#include "core/TextWriter.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace tarnvexo {

enum class FileOutcome {
    Written,    // every byte has been taken by the system
    NotCreated, // no file, or another one of this name that stays as it was
    Incomplete  // a file that ends early: disk full, medium gone
};

// What became of a result file.
struct FileResult {
    FileOutcome outcome = FileOutcome::Written;
    std::uint64_t bytes = 0; // taken by the system, line ends as they stand in the file
    std::string path;
    std::string reason; // of the system, why it is not written
};

// Message for a file that is not written whole, without a line end behind it; "" for one that is.
std::string FileFault(const FileResult& file);

// For the console run: tells on standard error what is wrong with the file. One that could not be created ends the run
// after `message` and one key. After an incomplete one the run goes on, since the other files may still be good.
void RequireCreated(const FileResult& file, const char* message);

// Text: line ends as the system has them. Binary: bytes as they are given.
enum class FileMode { Text, Binary };

class TextFile {
public:
    TextFile();
    ~TextFile(); // closes

    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    // False when the file cannot be created; text written then goes nowhere.
    bool Open(const std::string& path, FileMode mode = FileMode::Text);

    // The file's text. What is written before Open or after Close goes nowhere.
    TextWriter& Text() { return writer; }

    // Text that has been gathered elsewhere, behind what Text() has got so far.
    void Append(std::string_view text);

    // What became of the file that was opened last.
    FileResult Close();

private:
    void Write(std::string_view text);
    void Fail(int error);

    std::FILE* file = nullptr;
    std::size_t lineEnd = 1; // bytes
    FileResult result;
    TextWriter writer;
};

} // namespace tarnvexo
