#include "app/ModelFindings.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace tarnvexo {

namespace {

// Offenders that the message of an error names.
constexpr std::size_t NamedInMessage = 3;

std::string Shortly(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", value + 0.0); // a zero has no sign
    return text;
}

// "quad 17 at (1, 2, 3): 0.0012, with quad 18"
std::string OffenderText(const Offender& offender, bool hasValue)
{
    std::string text = OffenderName(offender);
    if (HasPlace(offender)) {
        const Vector3& p = offender.place;
        text += " at (" + Shortly(p[0]) + ", " + Shortly(p[1]) + ", " + Shortly(p[2]) + ")";
    }
    if (hasValue) {
        text += ": " + Shortly(offender.value);
    }
    return offender.detail.empty() ? text : text + ", " + offender.detail;
}

std::string ErrorText(const Finding& finding, const std::string& modelFile)
{
    const Rule& rule = RuleOf(finding.rule);
    const bool hasLimit = finding.limit != NoLimit;
    std::string text =
        modelFile + ": error: " + rule.finding + ": " + std::to_string(finding.count) + " [" + rule.name + "]";
    const bool areParts = !finding.worst.empty() && std::string_view(finding.worst.front().kind) == "part";
    const std::size_t named = areParts ? finding.worst.size() : std::min(finding.worst.size(), NamedInMessage);
    for (std::size_t i = 0; i < named; ++i) {
        text += (i == 0 ? "\n  there:    " : "\n            ") + OffenderText(finding.worst[i], hasLimit);
    }
    if (finding.count > static_cast<std::int64_t>(named) && named > 0) {
        text += "\n            and " + std::to_string(finding.count - static_cast<std::int64_t>(named)) + " more";
    }
    if (!finding.summary.empty()) {
        text += "\n  in all:   " + finding.summary;
    }
    text += "\n  expected: none";
    if (hasLimit) {
        text += " beyond the limit " + Shortly(finding.limit) + " (" + rule.measure + ")";
    }
    return text + "\n  to do:    " + rule.toDo;
}

} // namespace

RuleBook RulesForSolving(RuleBook rules, BalanceKind balance)
{
    if (balance == BalanceKind::Classic) {
        for (const RuleId id : {RuleId::UnstiffenedLoad, RuleId::FloatingPart}) {
            if (!rules.IsSeveritySet(id)) {
                rules.SetSeverity(id, Severity::Warning);
            }
        }
    }
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const RuleId id = static_cast<RuleId>(i);
        if (rules.SeverityOf(id) == Severity::Note) {
            rules.SetSeverity(id, Severity::Off);
        }
    }
    return rules;
}

bool HaveSoundElements(const std::vector<Finding>& findings)
{
    static constexpr RuleId unsound[] = {RuleId::ZeroArea, RuleId::ZeroLengthBeam, RuleId::CollapsedElement};
    return std::none_of(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::Error &&
               std::find(std::begin(unsound), std::end(unsound), finding.rule) != std::end(unsound);
    });
}

bool TellsOfShape(const std::vector<Finding>& findings)
{
    return std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::Error &&
               (finding.rule == RuleId::SelfCrossing || finding.rule == RuleId::InvertedQuad ||
                finding.rule == RuleId::ConcaveQuad);
    });
}

std::string OffenderName(const Offender& offender)
{
    return std::string(offender.kind) + " " + std::to_string(offender.number);
}

bool HasPlace(const Offender& offender)
{
    const std::string_view kind = offender.kind;
    return kind == "node" || kind == "quad" || kind == "tri" || kind == "beam" || kind == "part";
}

std::string FindingsFault(const std::vector<Finding>& findings, const std::string& modelFile)
{
    std::string fault;
    for (const Finding& finding : findings) {
        if (finding.severity == Severity::Error) {
            fault += (fault.empty() ? "" : "\n") + ErrorText(finding, modelFile);
        }
    }
    return fault;
}

void AddFindings(const std::vector<Finding>& more, std::vector<Finding>& findings)
{
    findings.insert(findings.end(), more.begin(), more.end());
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& one, const Finding& other) { return one.rule < other.rule; });
}

std::string JoinedMessages(const std::string& one, const std::string& other)
{
    return one + (one.empty() || other.empty() ? "" : "\n") + other;
}

} // namespace tarnvexo
