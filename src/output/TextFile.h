// output/TextFile.h
// A result file being written: created or emptied in text mode, filled through one large buffer.
//
//     TextFile file;
//     if (!file.Open("Node_Dis.txt")) { ... }
//     file.Text().Integer(7).Text(":").EndLine();
//     file.Close();
//
// Errors are reported on standard error with the file's name and the system's reason. Open also returns false, since
// every file has its own console message for that. After a later failure (disk full, medium gone), reported once, the
// run goes on: the other files may still be good.
#pragma once

#include "core/TextWriter.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace tarnvexo {

class TextFile {
public:
    TextFile();
    ~TextFile(); // closes

    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    // False when the file cannot be created; text written then goes nowhere.
    bool Open(const char* name);

    // The file's text. What is written before Open or after Close goes nowhere.
    TextWriter& Text() { return writer; }

    // True when every byte since Open has been taken by the system.
    bool Close();

private:
    void Write(std::string_view text);
    void ReportFailure(int error);

    std::string name;
    std::FILE* file = nullptr;
    bool failed = false;
    TextWriter writer;
};

} // namespace tarnvexo
