// libFuzzer target: any bytes as a model file for the strict reader. It must end, keep its promises about counts and
// places, and be strict: where it finds nothing that makes a model unusable, the reader of the console run matches every
// scan and fills the same store (behind a byte-order mark, which only the strict reader knows). This holds whatever the
// rules are set to, since those that may be switched off concern values, not text.
// Built, run and kept as ReaderFuzz.cpp tells.
#include "input/ModelFileReader.h"
#include "input/StrictReader.h"
#include "support/SameModel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace tarnvexo;

void Require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

void ReadBothWays(std::string_view text, const RuleBook& rules)
{
    ModelStore strict;
    const StrictReading reading = ReadModelStrictly(strict, text, "fem_solving.txt", rules);
    Require(reading.diagnostics.size() <= ShownDiagnostics);
    Require(reading.errors + reading.warnings + reading.notes >= static_cast<long long>(reading.diagnostics.size()));
    for (const SourceDiagnostic& one : reading.diagnostics) {
        Require(one.line >= 1 && one.column >= 1 && one.column <= text.size() + 1);
        Require(!one.what.empty() && !one.expected.empty() && !one.toDo.empty() && !one.text.empty());
    }
    Require(reading.IsUsable() == ErrorText(reading, "fem_solving.txt").empty());
    if (!reading.IsUsable()) {
        return;
    }
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark) {
        text.remove_prefix(byteOrderMark.size());
    }
    ModelStore loose;
    const ModelReading other = ReadModelText(loose, text, "fem_solving.txt");
    Require(other.end == ModelReading::End::Complete && other.warnings.empty());
    Require(test::DifferentTable(strict, loose).empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    RuleBook allOff;
    for (std::size_t rule = 0; rule < RuleCount; ++rule) {
        allOff.SetSeverity(static_cast<RuleId>(rule), Severity::Off);
    }
    ReadBothWays(text, RuleBook());
    ReadBothWays(text, allOff);
    return 0;
}
