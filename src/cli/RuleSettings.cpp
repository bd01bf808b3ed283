#include "cli/RuleSettings.h"

#include "cli/NearestName.h"
#include "cli/UsageFault.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <system_error>

namespace tarnvexo {

namespace {

constexpr const char* SettingForm = "NAME=off|note|warning|error, or NAME=LIMIT";
constexpr Severity Severities[] = {Severity::Off, Severity::Note, Severity::Warning, Severity::Error};

const Rule& NamedRule(const std::string& name)
{
    if (const Rule* rule = RuleNamed(name.c_str())) {
        return *rule;
    }
    std::vector<std::string> names;
    for (std::size_t i = 0; i < RuleCount; ++i) { names.emplace_back(RuleOf(static_cast<RuleId>(i)).name); }
    throw UsageFault{"--rule: there is no rule \"" + name + "\"", "a name that tarnvexo check --rules lists",
                     NearestName(name, names)};
}

std::optional<Severity> NamedSeverity(const std::string& text)
{
    const auto* named = std::find_if(std::begin(Severities), std::end(Severities),
                                     [&](Severity severity) { return text == SeverityName(severity); });
    return named == std::end(Severities) ? std::nullopt : std::optional(*named);
}

// The whole text is a number.
std::optional<double> Number(const std::string& text)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

void ApplyOne(const std::string& text, RuleBook& rules)
{
    const std::size_t equals = text.find('=');
    const Rule& rule = NamedRule(text.substr(0, equals));
    if (equals == std::string::npos) {
        throw UsageFault{"--rule \"" + text + "\" has no setting", SettingForm, ""};
    }
    const std::string setting = text.substr(equals + 1);
    if (const std::optional<Severity> severity = NamedSeverity(setting)) {
        if (rule.id == RuleId::Format && *severity != Severity::Error) {
            throw UsageFault{"--rule: \"format\" cannot be \"" + setting + "\"",
                             "error: what the text does not say cannot be solved", ""};
        }
        rules.SetSeverity(rule.id, *severity);
        return;
    }
    const std::optional<double> limit = Number(setting);
    if (!limit) {
        std::vector<std::string> names;
        for (const Severity severity : Severities) { names.emplace_back(SeverityName(severity)); }
        throw UsageFault{"--rule: \"" + std::string(rule.name) + "\" cannot be \"" + setting + "\"",
                         rule.limit == NoLimit ? "off, note, warning or error"
                                               : "off, note, warning or error, or a limit above 0",
                         NearestName(setting, names)};
    }
    if (rule.limit == NoLimit) {
        throw UsageFault{"--rule: \"" + std::string(rule.name) + "\" has no limit that could be " + setting,
                         "off, note, warning or error", ""};
    }
    if (!(*limit > 0.0) || !std::isfinite(*limit)) {
        throw UsageFault{"--rule: the limit of \"" + std::string(rule.name) + "\" cannot be " + setting,
                         "a number above 0 (" + std::string(rule.measure) + ")", ""};
    }
    rules.SetLimit(rule.id, *limit);
}

} // namespace

void ApplyRuleSettings(const std::vector<std::string>& texts, RuleBook& rules)
{
    for (const std::string& text : texts) {
        std::istringstream pieces(text);
        for (std::string one; std::getline(pieces, one, ',');) { ApplyOne(one, rules); }
    }
}

} // namespace tarnvexo
