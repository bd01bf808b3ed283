// input/SourceDiagnostics.h
// What a strict reading has to say about the text of a model file: all counted, the first of them kept with their
// messages.
#pragma once

#include "core/Rules.h"
#include "input/ScanDiagnostics.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tarnvexo {

// Diagnostics of one reading that are shown; of these, not more than so many notes and warnings of one rule.
constexpr std::size_t ShownDiagnostics = 20;
constexpr int ShownRemarksPerRule = 5;

struct SourceDiagnostic {
    RuleId rule;
    Severity severity;
    std::size_t line;   // from 1
    std::size_t column; // from 1, in bytes
    std::string what;
    std::string expected;
    std::string toDo;
    std::string text; // the complete message with the name of the rule, without a line end behind it
};

// Those shown in the order of the file; errors come before others where there are too many.
struct StrictReading {
    std::vector<SourceDiagnostic> diagnostics;
    long long errors = 0; // all, shown or not
    long long warnings = 0;
    long long notes = 0;

    long long CountOf(Severity severity) const;
    bool IsUsable() const { return errors == 0; }
};

// Messages are built only for what may be shown:
//     if (diagnostics.Adds(rule, position)) { diagnostics.Keep(rule, {position, what, expected, toDo}); }
class SourceDiagnostics {
public:
    SourceDiagnostics(const NamedText& source, const RuleBook& rules) : source(source), rules(rules) {}

    // Counts one. True: it may be shown, and Keep must follow. A rule that is off adds nothing, and neither does what
    // follows an error at its own place: a number that is none has no size either.
    bool Adds(RuleId rule, std::size_t position);
    void Keep(RuleId rule, TextFault fault);

    // Both, where the message costs little or is rare.
    void Report(RuleId rule, TextFault fault)
    {
        if (Adds(rule, fault.position)) {
            Keep(rule, std::move(fault));
        }
    }

    // A fault of the file as a whole: its message quotes no line.
    void KeepWithoutLine(RuleId rule, TextFault fault);

    long long Errors() const { return errors; }

    StrictReading Result() const;

private:
    struct Kept {
        RuleId rule;
        Severity severity;
        TextFault fault;
        bool quotesLine;
    };

    Severity SeverityOf(RuleId rule) const;

    NamedText source;
    const RuleBook& rules;
    std::vector<Kept> kept;
    long long errors = 0, warnings = 0, notes = 0;
    std::size_t lastError = std::string::npos; // its position
    int remarks[RuleCount] = {};               // kept notes and warnings
    std::size_t keptErrors = 0;
};

// The messages of all errors that are shown and, where there are more, the number of the others. Empty without errors.
std::string ErrorText(const StrictReading& reading, const std::string& fileName);

// Each warning that is shown and, where there are more, the number of the others.
std::vector<std::string> WarningTexts(const StrictReading& reading, const std::string& fileName);

} // namespace tarnvexo
