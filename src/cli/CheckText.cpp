#include "cli/CheckText.h"

#include "app/ModelFindings.h"
#include "checks/FindingText.h"
#include "cli/ReportPhrases.h"
#include "cli/TextPage.h"

#include <algorithm>
#include <cctype>

namespace tarnvexo {

namespace {

constexpr Severity WorstFirst[] = {Severity::Error, Severity::Warning, Severity::Note};

// Columns of a line per finding or rule.
constexpr std::size_t SeverityWidth = 9, NameWidth = 20, FigureWidth = 10;

constexpr std::size_t PartsShown = 12;

std::vector<const Finding*> OfSeverity(const std::vector<Finding>& findings, Severity severity)
{
    std::vector<const Finding*> chosen;
    for (const Finding& finding : findings) {
        if (finding.severity == severity) {
            chosen.push_back(&finding);
        }
    }
    return chosen;
}

std::string LimitText(double limit)
{
    return limit == NoLimit ? "" : NumberText(limit);
}

std::string FirstColumns(Severity severity, const char* name)
{
    return "  " + PaddedRight(SeverityName(severity), SeverityWidth) + PaddedRight(name, NameWidth);
}

// "ERRORS"
std::string HeadingOf(Severity severity)
{
    std::string name = SeverityName(severity);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    return name + "S";
}

std::string PlaceOf(const Offender& offender)
{
    return HasPlace(offender) ? "at " + PlaceText(offender.place) : "";
}

std::string Joined(const std::string& one, const std::string& other)
{
    return one.empty() || other.empty() ? one + other : one + ", " + other;
}

// Severity, name, count, limit, worst value, and what was found behind them.
void AddFindingLine(ReportPage& page, const Finding& finding, const std::string& text)
{
    const bool hasWorst = finding.limit != NoLimit && !finding.worst.empty() && finding.worst.front().value != 0.0;
    page.Paragraph(FirstColumns(finding.severity, RuleOf(finding.rule).name) +
                       PaddedLeft(std::to_string(finding.count), FigureWidth) +
                       PaddedLeft(LimitText(finding.limit), FigureWidth) + " " +
                       PaddedLeft(hasWorst ? NumberText(finding.worst.front().value) : "", FigureWidth - 1) + "  ",
                   text);
}

void AddFindingTitles(ReportPage& page, const std::string& title)
{
    page.Heading(PaddedRight(title, 2 + SeverityWidth + NameWidth) + PaddedLeft("count", FigureWidth) +
                 PaddedLeft("limit", FigureWidth) + PaddedLeft("worst", FigureWidth));
}

void AddFindingTable(ReportPage& page, const std::vector<Finding>& findings)
{
    if (findings.empty()) {
        page.Heading("FINDINGS: none");
        return;
    }
    AddFindingTitles(page, "FINDINGS");
    for (const Severity severity : WorstFirst) {
        for (const Finding* finding : OfSeverity(findings, severity)) {
            AddFindingLine(page, *finding, RuleOf(finding->rule).finding);
        }
    }
}

//     quad 211        23.4  at (11.5, 4, 0), corner at node 4
void AddOffenders(ReportPage& page, const Finding& finding, std::size_t most)
{
    constexpr std::size_t offenderWidth = 16;
    const std::size_t shown = std::min(finding.worst.size(), most);
    for (std::size_t i = 0; i < shown; ++i) {
        const Offender& offender = finding.worst[i];
        const std::string value =
            finding.limit == NoLimit ? "" : PaddedLeft(NumberText(offender.value), FigureWidth) + "  ";
        page.Paragraph("    " + PaddedRight(OffenderName(offender), offenderWidth) + value,
                       Joined(PlaceOf(offender), offender.detail));
    }
    const std::int64_t more = finding.count - static_cast<std::int64_t>(shown);
    if (more > 0 && shown > 0) {
        page.Line("  and " + std::to_string(more) + " more" +
                  (finding.worst.size() > shown
                       ? "; the worst " + std::to_string(finding.worst.size()) + " with --verbose"
                       : ""));
    }
}

void AddDetails(ReportPage& page, const Finding& finding, std::size_t most)
{
    const Rule& rule = RuleOf(finding.rule);
    page.Paragraph("  " + std::string(rule.name) + ": ", rule.finding + (": " + std::to_string(finding.count)));
    if (finding.limit != NoLimit) {
        page.Paragraph("    measure:  ", std::string(rule.measure) + "; limit " + NumberText(finding.limit));
    }
    AddOffenders(page, finding, most);
    if (!finding.summary.empty()) {
        page.Paragraph("    in all:   ", finding.summary);
    }
    page.Paragraph("    to do:    ", rule.toDo);
}

// As they are, since a mark stands under what it marks.
void AddTextDiagnostics(ReportPage& page, const StrictReading& reading, Severity severity)
{
    long long shown = 0;
    for (const SourceDiagnostic& one : reading.diagnostics) {
        if (one.severity == severity) {
            for (std::size_t begin = 0; begin < one.text.size();) {
                const std::size_t end = std::min(one.text.find('\n', begin), one.text.size());
                page.Line(one.text.substr(begin, end - begin));
                begin = end + 1;
            }
            ++shown;
        }
    }
    if (const long long more = reading.CountOf(severity) - shown; more > 0) {
        page.Line("and " + std::to_string(more) + " more in the text of the file");
    }
}

// What the text of the file, messages and findings have of one severity.
void AddSeverity(ReportPage& page, const CheckReport& report, Severity severity, std::size_t mostOffenders)
{
    const int count = CountOf(report, severity);
    if (count == 0) {
        return;
    }
    page.Heading(HeadingOf(severity) + ": " + std::to_string(count));
    AddTextDiagnostics(page, report.reading, severity);
    for (const CheckMessage& message : report.messages) {
        if (message.severity == severity) {
            page.Paragraph("  ", message.text);
        }
    }
    for (const Finding* finding : OfSeverity(report.findings, severity)) { AddDetails(page, *finding, mostOffenders); }
}

void AddParts(ReportPage& page, const std::vector<PartReport>& parts)
{
    page.Heading("CONNECTED PARTS: " + std::to_string(parts.size()));
    for (std::size_t i = 0; i < std::min(parts.size(), PartsShown); ++i) {
        page.Paragraph("  part " + std::to_string(i + 1) + ": ", PartText(parts[i]));
    }
    if (parts.size() > PartsShown) {
        page.Line("and " + CountText(static_cast<std::int64_t>(parts.size() - PartsShown), "more part"));
    }
}

// Rules that the text of the file breaks, each once.
std::vector<std::string> RulesOfText(const StrictReading& reading, Severity severity)
{
    std::vector<std::string> names;
    for (const SourceDiagnostic& one : reading.diagnostics) {
        const std::string name = RuleOf(one.rule).name;
        if (one.severity == severity && std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    return names;
}

// "2: zero-area, warping", with "others" for messages that no rule names.
std::string SeveritySummary(const CheckReport& report, Severity severity)
{
    const int count = CountOf(report, severity);
    if (count == 0) {
        return "none";
    }
    std::string names;
    const std::vector<const Finding*> findings = OfSeverity(report.findings, severity);
    for (const Finding* finding : findings) { names = Joined(names, RuleOf(finding->rule).name); }
    for (const std::string& name : RulesOfText(report.reading, severity)) { names = Joined(names, name); }
    const auto messages = std::count_if(report.messages.begin(), report.messages.end(),
                                        [&](const CheckMessage& one) { return one.severity == severity; });
    if (messages > 0) {
        names = Joined(names, CountText(messages, "message") + " above");
    }
    return std::to_string(count) + ": " + names;
}

std::string VerdictText(const CheckReport& report)
{
    const int errors = CountOf(report, Severity::Error), warnings = CountOf(report, Severity::Warning);
    return errors > 0     ? "not ready: " + CountText(errors, "error")
           : warnings > 0 ? "ready to solve; look at the " + CountText(warnings, "warning") + " first"
                          : "ready to solve";
}

std::string RunText(const CheckReport& report)
{
    std::string stages;
    for (const StageTime& stage : report.stages) {
        stages = Joined(stages, stage.name + " " + DurationText(stage.seconds));
    }
    return DurationText(report.seconds) + " (" + stages + "), " + MemoryText(report.peakMemoryGigabytes);
}

void AddSummary(ReportPage& page, const CheckReport& report, const UnitTexts& unit)
{
    page.Heading("SUMMARY");
    if (report.isRead) {
        const ModelCounts& counts = report.counts;
        page.SummaryLine("model", CountText(counts.nodes, "node") + ", " + CountText(counts.quads, "quadrilateral") +
                                      ", " + CountText(counts.tris, "triangle") + ", " +
                                      CountText(counts.beams, "beam") + ", " +
                                      CountText(std::int64_t(counts.nodalForces) + counts.distributedLoads, "load"));
        page.SummaryLine("bounding box", PlaceText(counts.boxMin) + " to " + PlaceText(counts.boxMax) +
                                             (*unit.length == '\0' ? "" : " " + std::string(unit.length)));
    }
    if (report.balance) {
        page.SummaryLine("mass", WithUnit(report.balance->mass.mass, unit.mass));
        page.SummaryLine("balance", BalanceSummary(*report.balance));
        page.SummaryLine("balanced by", AccelerationSummary(*report.balance, unit));
    }
    page.SummaryLine("run", RunText(report));
    page.SummaryLine("errors", SeveritySummary(report, Severity::Error));
    page.SummaryLine("warnings", SeveritySummary(report, Severity::Warning));
    page.SummaryLine("notes", SeveritySummary(report, Severity::Note));
    page.SummaryLine("verdict", VerdictText(report));
}

} // namespace

std::string CheckReportText(const CheckReport& report, UnitSystem units, bool verbose)
{
    TextPage page;
    page.Heading("tarnvexo check " + report.modelFile);
    page.Line(VerdictText(report));
    if (report.isRead) {
        AddFindingTable(page, report.findings);
    }
    const std::size_t offenders = verbose ? WorstKept : OffendersShown;
    AddSeverity(page, report, Severity::Error, offenders);
    AddSeverity(page, report, Severity::Warning, offenders);
    if (verbose) {
        AddSeverity(page, report, Severity::Note, offenders);
    }
    if (!report.parts.empty()) {
        AddParts(page, report.parts);
    }
    AddSummary(page, report, TextsOfUnits(units));
    return page.Result();
}

void AddModelChecks(ReportPage& page, const std::vector<Finding>& findings)
{
    if (findings.empty()) {
        page.Heading("MODEL CHECKS: no errors, no warnings");
        return;
    }
    AddFindingTitles(page, "MODEL CHECKS");
    for (const Severity severity : WorstFirst) {
        for (const Finding* finding : OfSeverity(findings, severity)) {
            std::string text = RuleOf(finding->rule).finding;
            if (!finding->worst.empty()) {
                const Offender& worst = finding->worst.front();
                text += "\n" + OffenderName(worst) + (HasPlace(worst) ? " " + PlaceOf(worst) : "");
            }
            if (!finding->summary.empty()) {
                text += "\n" + finding->summary;
            }
            AddFindingLine(page, *finding, text);
        }
    }
}

std::string FindingsSummary(const std::vector<Finding>& findings)
{
    std::string text;
    for (const Severity severity : WorstFirst) {
        if (const std::size_t count = OfSeverity(findings, severity).size(); count > 0) {
            text = Joined(text, CountText(static_cast<std::int64_t>(count), SeverityName(severity)));
        }
    }
    return text.empty() ? "no errors, no warnings" : text + ", see MODEL CHECKS";
}

std::string RuleTableText(const RuleBook& rules)
{
    TextPage page;
    page.Heading("  " + PaddedRight("severity", SeverityWidth) + PaddedRight("rule", NameWidth) +
                 PaddedLeft("limit", FigureWidth) + "  what is found; what the limit is of");
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const RuleId id = static_cast<RuleId>(i);
        const Rule& rule = RuleOf(id);
        const std::string measure = *rule.measure == '\0' ? "" : "\n(" + std::string(rule.measure) + ")";
        page.Paragraph(FirstColumns(rules.SeverityOf(id), rule.name) +
                           PaddedLeft(LimitText(rules.LimitOf(id)), FigureWidth) + "  ",
                       rule.finding + measure);
    }
    return page.Result();
}

} // namespace tarnvexo
