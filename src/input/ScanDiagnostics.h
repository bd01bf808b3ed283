// input/ScanDiagnostics.h
// Messages about a model file, for standard error: warnings of one line for scans that did not match, and the error
// that ends a run. Lines and columns count from 1, columns in bytes; they are worked out only when there is a message.
// In a warning of one line, bytes of the file other than printable ASCII are shown as "?".
#pragma once

#include "input/FormatScanner.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tarnvexo {

// Warnings shown in full; of the others only the number is told. A damaged file would give one per field.
constexpr int ShownWarnings = 20;

// What a scan or a message is about: "node 7", or only "NPOIN" with number -1.
struct RecordName {
    const char* kind;
    int number = -1;
};

struct TextPlace {
    std::size_t line;
    std::size_t column;
};

// A model text and the file name that messages give it.
struct NamedText {
    std::string_view text;
    const char* fileName;
};

// Why a run cannot go on: where, what, what was expected there, what the user can do.
struct TextFault {
    std::size_t position;
    std::string what;
    std::string expected;
    std::string toDo;
};

// The parts one behind the other.
std::string Joined(std::initializer_list<std::string_view> parts);

TextPlace PlaceInText(std::string_view text, std::size_t position);

// "node 7", "NPOIN".
std::string NameOf(const RecordName& record);

// What a format asks for at the place where a scan stopped: "an integer", "\"E=\"".
std::string ExpectedText(const char* format);

// What stands at a position: the rest of its line in quotation marks, "the end of the line".
std::string FoundText(std::string_view text, std::size_t position);

// One line: "fem_solving.txt:12:4: warning: node 7: expected ",", found ";0.5"".
std::string ScanWarning(const NamedText& source, const ScanResult& scan, const RecordName& record);

// Five lines: place and fault, the line of the file, a mark under the fault, what was expected, what to do.
// Without a line end behind the last.
std::string FaultMessage(const NamedText& source, const TextFault& fault, const char* severity = "error");

// The warnings of one reading.
class ScanWarnings {
public:
    void Add(const NamedText& source, const ScanResult& scan, const RecordName& record);

    long long Count() const { return count; }

    // The lines shown and, where there were more, a last line with their number.
    std::string Lines(const NamedText& source) const;

private:
    std::string shown;
    long long count = 0;
};

} // namespace tarnvexo
