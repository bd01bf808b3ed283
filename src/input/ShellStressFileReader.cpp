#include "input/ShellStressFileReader.h"

#include "core/NumberText.h"
#include "input/FileText.h"
#include "input/ScanDiagnostics.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>

namespace tarnvexo {

namespace {

constexpr int Width = 15; // of a column
constexpr std::string_view Labels =
    "           Node             SX             SY             SZ            TXY            TXZ            TYZ"
    "             SE";

class StressTextReader {
public:
    StressTextReader(std::string_view text, const char* fileName)
        : source{text, fileName}, at(text.data()), end(text.data() + text.size())
    {
    }

    // True when all of the text has been taken; otherwise Fault tells what is wrong.
    bool Read(ShellStresses& stresses)
    {
        return ReadShells("Four-nodes shell element:", stresses.quads) &&
               ReadShells("Three-nodes shell element:", stresses.tris) &&
               (at == end || Mismatch(at, "the title of a shell, or the end of the file"));
    }

    const std::string& Fault() const { return fault; }

private:
    template <int Nodes> bool ReadShells(std::string_view title, ContourShells<Nodes>& shells)
    {
        for (std::size_t e = 0; StartsWith(title); ++e) {
            const char* const titleBegin = at;
            at += title.size();
            std::size_t number = 0;
            if (!TakeInteger(number, 0) || !TakeLineEnd()) {
                return false;
            }
            if (number != e) {
                return Mismatch(titleBegin, Joined({"\"", title, std::to_string(e), "\""}));
            }
            if (!StartsWith(Labels)) {
                return Mismatch(at, "the titles of the columns");
            }
            at += Labels.size();
            if (!TakeLineEnd() || !ReadShell(shells)) {
                return false;
            }
        }
        return true;
    }

    template <int Nodes> bool ReadShell(ContourShells<Nodes>& shells)
    {
        auto& nodes = shells.connectivity.emplace_back();
        auto& positive = shells.positiveFace.emplace_back();
        auto& negative = shells.negativeFace.emplace_back();
        for (std::size_t i = 0; i < Nodes; ++i) {
            const char* lineBegin = at;
            int nodeAgain = 0;
            if (!TakeStressLine(nodes[i], positive[i])) {
                return false;
            }
            lineBegin = at;
            if (!TakeStressLine(nodeAgain, negative[i])) {
                return false;
            }
            if (nodeAgain != nodes[i]) {
                return Mismatch(lineBegin, Joined({"the negative face of node ", std::to_string(nodes[i])}));
            }
        }
        return true;
    }

    bool TakeStressLine(int& node, ContourStress& stress)
    {
        std::size_t number = 0;
        if (!TakeInteger(number, Width - 1)) {
            return false;
        }
        node = static_cast<int>(number);
        if (at == end || *at != ':') {
            return Mismatch(at, "\":\" behind the number of the node");
        }
        ++at;
        return std::all_of(stress.begin(), stress.end(), [&](double& value) { return TakeNumber(value); }) &&
               TakeLineEnd();
    }

    bool StartsWith(std::string_view text) const
    {
        return static_cast<std::size_t>(end - at) >= text.size() && std::memcmp(at, text.data(), text.size()) == 0;
    }

    bool TakeLineEnd()
    {
        const char* lineFeed = end - at >= 2 && *at == '\r' ? at + 1 : at;
        if (lineFeed == end || *lineFeed != '\n') {
            return Mismatch(at, "the end of the line");
        }
        at = lineFeed + 1;
        return true;
    }

    // Both take a field that is, blanks included, what writing its value gives.
    bool TakeInteger(std::size_t& value, int width)
    {
        int number = 0;
        const char* const begin = std::find_if(at, end, [](char c) { return c != ' '; });
        const auto [next, error] = std::from_chars(begin, end, number);
        char text[Width + NumberTextCapacity];
        if (error != std::errc() || number < 0 || !IsWritten(text, WriteInteger(text, number, width), next)) {
            return Mismatch(begin, width == 0 ? Joined({"an integer from 0 to ", std::to_string(INT_MAX)})
                                              : "the number of a node in a column of 14 characters");
        }
        value = static_cast<std::size_t>(number);
        at = next;
        return true;
    }

    bool TakeNumber(double& value)
    {
        const char* const begin = std::find_if(at, end, [](char c) { return c != ' '; });
        const auto [next, error] = std::from_chars(begin, end, value);
        char text[Width + NumberTextCapacity];
        if (error != std::errc() || !IsWritten(text, WriteNumber(text, value, Width), next)) {
            return Mismatch(begin, "a number with six significant digits, in a column of 15 characters");
        }
        at = next;
        return true;
    }

    bool IsWritten(const char* text, const char* textEnd, const char* next) const
    {
        return textEnd - text == next - at && std::memcmp(text, at, static_cast<std::size_t>(next - at)) == 0;
    }

    bool Mismatch(const char* position, const std::string& expected)
    {
        fault = FaultMessage(source, {static_cast<std::size_t>(position - source.text.data()),
                                      "the text does not match the format of the shell stress file", expected,
                                      "solve the model again; the file was cut off or altered"});
        return false;
    }

    NamedText source;
    const char* at;
    const char* end;
    std::string fault;
};

} // namespace

std::string ReadShellStressText(ShellStresses& stresses, std::string_view text, const char* fileName)
{
    stresses = {};
    StressTextReader reader(text, fileName);
    return reader.Read(stresses) ? std::string() : reader.Fault();
}

std::optional<std::string> TryReadShellStressFile(ShellStresses& stresses, const char* fileName)
{
    const FileText file(fileName);
    if (!file.IsRead()) {
        return std::nullopt;
    }
    return ReadShellStressText(stresses, file.Bytes(), fileName);
}

} // namespace tarnvexo
