#include "input/SourceDiagnostics.h"

#include <algorithm>
#include <utility>

namespace tarnvexo {

namespace {

// A message without the line of the file.
std::string MessageWithoutLine(const NamedText& source, const TextFault& fault, const char* severity)
{
    const TextPlace place = PlaceInText(source.text, fault.position);
    return Joined({source.fileName, ":", std::to_string(place.line), ":", std::to_string(place.column), ": ", severity,
                   ": ", fault.what, "\n  expected: ", fault.expected, "\n  to do:    ", fault.toDo});
}

std::string OthersText(long long others, const char* kind, const std::string& fileName)
{
    return Joined({fileName, ": ", kind, ": ", std::to_string(others), " more ", kind, "s are not shown"});
}

} // namespace

// What does not fit the format cannot be used, whatever a user wishes.
Severity SourceDiagnostics::SeverityOf(RuleId rule) const
{
    return rule == RuleId::Format ? Severity::Error : rules.SeverityOf(rule);
}

bool SourceDiagnostics::Adds(RuleId rule, std::size_t position)
{
    if (position == lastError) {
        return false;
    }
    switch (SeverityOf(rule)) {
    case Severity::Off:
        return false;
    case Severity::Note:
        ++notes;
        break;
    case Severity::Warning:
        ++warnings;
        break;
    case Severity::Error:
        ++errors;
        lastError = position;
        return keptErrors < ShownDiagnostics;
    }
    return remarks[static_cast<std::size_t>(rule)] < ShownRemarksPerRule;
}

void SourceDiagnostics::Keep(RuleId rule, TextFault fault)
{
    const Severity severity = SeverityOf(rule);
    if (severity == Severity::Error) {
        ++keptErrors;
    } else {
        ++remarks[static_cast<std::size_t>(rule)];
    }
    kept.push_back({rule, severity, std::move(fault), true});
}

void SourceDiagnostics::KeepWithoutLine(RuleId rule, TextFault fault)
{
    Keep(rule, std::move(fault));
    kept.back().quotesLine = false;
}

long long StrictReading::CountOf(Severity severity) const
{
    switch (severity) {
    case Severity::Error:
        return errors;
    case Severity::Warning:
        return warnings;
    case Severity::Note:
        return notes;
    case Severity::Off:
        break;
    }
    return 0;
}

StrictReading SourceDiagnostics::Result() const
{
    std::vector<const Kept*> shown;
    for (const Kept& one : kept) { shown.push_back(&one); }
    const auto isWorse = [](const Kept* a, const Kept* b) { return a->severity > b->severity; };
    const auto isEarlier = [](const Kept* a, const Kept* b) { return a->fault.position < b->fault.position; };
    std::stable_sort(shown.begin(), shown.end(), isEarlier);
    std::stable_sort(shown.begin(), shown.end(), isWorse);
    shown.resize(std::min(shown.size(), ShownDiagnostics));
    std::stable_sort(shown.begin(), shown.end(), isEarlier);

    StrictReading reading;
    reading.errors = errors;
    reading.warnings = warnings;
    reading.notes = notes;
    for (const Kept* one : shown) {
        const TextFault& fault = one->fault;
        TextFault named = fault;
        named.what += Joined({" [", RuleOf(one->rule).name, "]"});
        const char* const severity = SeverityName(one->severity);
        const TextPlace place = PlaceInText(source.text, fault.position);
        reading.diagnostics.push_back(
            {one->rule, one->severity, place.line, place.column, fault.what, fault.expected, fault.toDo,
             one->quotesLine ? FaultMessage(source, named, severity) : MessageWithoutLine(source, named, severity)});
    }
    return reading;
}

std::string ErrorText(const StrictReading& reading, const std::string& fileName)
{
    std::string text;
    long long shown = 0;
    for (const SourceDiagnostic& one : reading.diagnostics) {
        if (one.severity == Severity::Error) {
            text += (text.empty() ? "" : "\n") + one.text;
            ++shown;
        }
    }
    return shown == reading.errors ? text : text + "\n" + OthersText(reading.errors - shown, "error", fileName);
}

std::vector<std::string> WarningTexts(const StrictReading& reading, const std::string& fileName)
{
    std::vector<std::string> texts;
    for (const SourceDiagnostic& one : reading.diagnostics) {
        if (one.severity == Severity::Warning) {
            texts.push_back(one.text);
        }
    }
    const long long shown = static_cast<long long>(texts.size());
    if (shown < reading.warnings) {
        texts.push_back(OthersText(reading.warnings - shown, "warning", fileName));
    }
    return texts;
}

} // namespace tarnvexo
