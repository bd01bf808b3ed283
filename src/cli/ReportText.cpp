#include "cli/ReportText.h"

#include "app/ResultChecks.h"
#include "checks/FindingText.h"
#include "cli/CheckText.h"
#include "cli/HtmlPage.h"
#include "cli/ReportFigures.h"
#include "cli/ReportPhrases.h"
#include "cli/TextPage.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

namespace tarnvexo {

namespace {

// Vector and its length as columns.
std::vector<std::string> WithSize(const Vector3& v)
{
    return {NumberText(v[0]), NumberText(v[1]), NumberText(v[2]), NumberText(Length(v))};
}

// ---- sections that both reports have

void AddModel(ReportPage& page, const ModelCounts& counts, const UnitTexts& unit)
{
    page.Heading("MODEL");
    page.Row("nodes", {std::to_string(counts.nodes)});
    page.Row("elements", {std::to_string(std::int64_t(counts.quads) + counts.tris + counts.beams)},
             CountText(counts.quads, "quadrilateral") + ", " + CountText(counts.tris, "triangle") + ", " +
                 CountText(counts.beams, "beam"));
    page.Row("materials", {std::to_string(counts.materials)});
    page.Row("shell thicknesses", {std::to_string(counts.thicknesses)});
    page.Row("beam sections", {std::to_string(counts.beamSections)});
    page.Row("restrained directions", {std::to_string(counts.restrainedDofs)});
    page.Row("loads", {std::to_string(std::int64_t(counts.nodalForces) + counts.distributedLoads)},
             CountText(counts.nodalForces, "nodal force") + ", " +
                 CountText(counts.distributedLoads, "distributed load"));
    page.Row("equations", {std::to_string(counts.equations)});
    page.ColumnTitles({"x", "y", "z"});
    page.Row("bounding box from", counts.boxMin, unit.length);
    page.Row("to", counts.boxMax, unit.length);
}

// "node 12 dx dy dz, node 40 dy"
std::string HoldsText(const std::vector<NodeDof>& holds)
{
    std::string text;
    for (std::size_t i = 0; i < holds.size(); ++i) {
        if (i == 0 || holds[i].node != holds[i - 1].node) {
            text += (i == 0 ? "node " : ", node ") + std::to_string(holds[i].node);
        }
        text += std::string(" ") + DofName(holds[i].dof);
    }
    return text;
}

std::string SolvedPartText(const PartReport& part)
{
    std::string text = PartText(part);
    if (!part.holds.empty()) {
        text += "; held at " + HoldsText(part.holds);
    }
    if (part.massOrthogonal) {
        text += "; displacements are mass-orthogonal to " +
                (part.freeMotions == 1 ? std::string("this rigid motion")
                                       : "these " + CountText(part.freeMotions, "rigid motion"));
    } else if (part.freeMotions > 0) {
        text += "; displacements are relative to the holds";
    }
    return text;
}

void AddParts(ReportPage& page, const std::vector<PartReport>& parts)
{
    page.Heading("CONNECTED PARTS");
    for (std::size_t i = 0; i < std::min(parts.size(), PartLimit); ++i) {
        page.Paragraph("  part " + std::to_string(i + 1) + ": ", SolvedPartText(parts[i]));
    }
    if (parts.size() > PartLimit) {
        page.Paragraph("  ", "and " + CountText(std::int64_t(parts.size() - PartLimit), "more part"));
    }
}

void AddMass(ReportPage& page, const MassSummary& mass, const UnitTexts& unit)
{
    static constexpr const char* inertiaLabels[3] = {"inertia about it  xx xy xz", "                  yx yy yz",
                                                     "                  zx zy zz"};
    page.Heading("MASS");
    page.Row("mass", mass.mass, unit.mass);
    page.ColumnTitles({"x", "y", "z"});
    page.Row("centroid of the volume", mass.volumeCentroid, unit.length);
    page.Row("centre of gravity", mass.centreOfGravity, unit.length);
    for (std::size_t i = 0; i < 3; ++i) { page.Row(inertiaLabels[i], mass.inertia[i], unit.inertia); }
    page.ColumnTitles({"moment", "axis x", "axis y", "axis z"});
    for (std::size_t i = 0; i < 3; ++i) {
        const Vector3& axis = mass.principalAxes[i];
        page.Row("principal moment " + std::to_string(i + 1),
                 {NumberText(mass.principalMoments[i]), NumberText(axis[0]), NumberText(axis[1]), NumberText(axis[2])},
                 unit.inertia);
    }
}

// What the classic way leaves, or would leave, on one line.
std::string ClassicText(const BalanceSheet& balance)
{
    const double force = Length(balance.classicRemaining.force);
    const double moment = Length(balance.classicRemaining.moment);
    if (!std::isfinite(force + moment)) { // it divides by the mass and by its inertia
        return "gives no numbers here: mass or inertia is 0";
    }
    return std::string(balance.kind == BalanceKind::Classic ? "leaves" : "would leave") + " a force of " +
           NumberText(force) + " (" + ShareText(RelativeTo(balance.forceSize, force)) +
           " of the loads) and a moment of " + NumberText(moment) + " (" +
           ShareText(RelativeTo(balance.momentSize, moment)) + ")";
}

void AddBalance(ReportPage& page, const BalanceSheet& balance, const UnitTexts& unit)
{
    page.Heading("BALANCE BY INERTIA RELIEF: " + std::string(BalanceName(balance.kind)));
    page.ColumnTitles({"x", "y", "z", "size"});
    page.Row("applied force", WithSize(balance.appliedAboutCentroid.force), unit.force);
    page.Row("applied moment about centroid", WithSize(balance.appliedAboutCentroid.moment), unit.moment);
    page.Row("applied moment about (0, 0, 0)", WithSize(balance.appliedAboutOrigin.moment), unit.moment);
    page.Row("acceleration of the centroid", WithSize(balance.applied.a), unit.acceleration);
    if (unit.standardGravity > 0.0) {
        page.Row("  in g", WithSize(balance.applied.a / unit.standardGravity), "g");
    }
    page.Row("angular acceleration", WithSize(balance.applied.alpha), unit.angularAcceleration);
    page.Row("remaining force", WithSize(balance.remaining.force), unit.force);
    page.Row("remaining moment about centroid", WithSize(balance.remaining.moment), unit.moment);
    page.ColumnTitles({"relative", "loads"});
    page.Row("remaining force of Σ|F|", {ShareText(balance.relativeForce), NumberText(balance.forceSize)}, unit.force);
    page.Row("moment of Σ(|r|·|F| + |M|)", {ShareText(balance.relativeMoment), NumberText(balance.momentSize)},
             unit.moment);
    page.Text("the classic way", ClassicText(balance));
}

void AddWarnings(ReportPage& page, const std::vector<std::string>& warnings)
{
    page.Heading(warnings.empty() ? "OTHER WARNINGS: none" : "OTHER WARNINGS: " + std::to_string(warnings.size()));
    for (const std::string& warning : warnings) { page.Paragraph("  ", warning); }
}

void AddEngine(ReportPage& page, const SolverReport& solver)
{
    const std::pair<const char*, const std::string&> rows[] = {
        {"engine", solver.engine}, {"ordering", solver.ordering}, {"kernels", solver.kernels}};
    for (const auto& [label, text] : rows) {
        if (!text.empty()) {
            page.Text(label, text);
        }
    }
}

std::string WarningSummary(const std::vector<std::string>& warnings)
{
    return warnings.empty() ? "none" : std::to_string(warnings.size()) + ", see above";
}

// ---- sections of a solved model

// "force" or "moment" of a reaction.
const char* ReactionUnit(const SupportReaction& reaction, const UnitTexts& unit)
{
    return reaction.at.dof <= DZ ? unit.force : unit.moment;
}

void AddReactions(ReportPage& page, const SolveReport& report, const UnitTexts& unit)
{
    page.Heading("SUPPORT REACTIONS");
    if (report.reactions.empty()) {
        page.Paragraph("  ", "none: no direction is restrained or held");
        return;
    }
    page.Row("largest force", report.largestReaction,
             (*unit.force == '\0' ? "" : std::string(unit.force) + ", ") +
                 ShareText(RelativeTo(report.balance.forceSize, report.largestReaction)) + " of Σ|F|");
    page.ColumnTitles({"x", "y", "z", "size"});
    page.Row("sum of forces", WithSize(SumOfReactionForces(report.reactions)), unit.force);

    std::vector<SupportReaction> largest = report.reactions;
    const auto hasLargerShare = [&](const SupportReaction& one, const SupportReaction& other) {
        return ShareOfLoads(one, report.balance) > ShareOfLoads(other, report.balance);
    };
    std::stable_sort(largest.begin(), largest.end(), hasLargerShare);
    page.ColumnTitles({"reaction", "of the loads"});
    for (std::size_t i = 0; i < std::min(largest.size(), ReactionLimit); ++i) {
        const SupportReaction& reaction = largest[i];
        page.Row("node " + std::to_string(reaction.at.node) + " " + DofName(reaction.at.dof) +
                     (reaction.hold ? ", hold" : ", support"),
                 {NumberText(reaction.value), ShareText(ShareOfLoads(reaction, report.balance))},
                 ReactionUnit(reaction, unit));
    }
    if (largest.size() > ReactionLimit) {
        page.Paragraph("  ", "and " + std::to_string(largest.size() - ReactionLimit) + " with a smaller share");
    }
}

void AddEnergy(ReportPage& page, const SolveReport& report, const UnitTexts& unit)
{
    page.Heading("ENERGY");
    page.Row("strain energy", report.strainEnergy, unit.energy);
    page.Row("external work", report.externalWork, unit.energy);
    page.Row("relative difference", {ShareText(EnergyDifference(report))});
}

void AddSolution(ReportPage& page, const SolveReport& report)
{
    const SolverReport& solver = report.solver;
    const double rate = FactoriseRate(report);
    page.Heading("SOLUTION");
    AddEngine(page, solver);
    page.Row("threads", {std::to_string(solver.threads)});
    page.Row("entries of the factor", {std::to_string(solver.factorEntries)},
             MemoryText(solver.factorGigabytes) +
                 (solver.scratchDirectory.empty() ? std::string() : ", on disk in " + solver.scratchDirectory));
    page.Row("operations", solver.factorOperations,
             rate > 0.0 ? NumberText(rate / 1e9) + " GF/s while factorising" : std::string());
    page.Row("smallest pivot ratio", {ShareText(solver.smallestPivotRatio)},
             "at node " + std::to_string(solver.smallestPivot.node) + " " + DofName(solver.smallestPivot.dof));
    page.Row("condition at least", {ShareText(solver.conditionEstimate)});
    const bool isRefined = solver.refinementSteps > 0;
    page.Row("relative residual", {ShareText(solver.relativeResidual)},
             isRefined ? ShareText(solver.residualBeforeRefinement) + " before refinement" : std::string());
    page.Row("steps of refinement", {std::to_string(solver.refinementSteps)});
    if (solver.displacementError && solver.displacementErrorBefore) {
        page.Row("digits of the displacements", {DigitsText(*solver.displacementError)},
                 isRefined ? DigitsText(*solver.displacementErrorBefore) + " before refinement, estimates"
                           : "estimate");
    }
}

// "quad 211, node 512 at (1, 2, 3)"; empty when the model has nothing of the kind.
std::string WhereText(const ExtremeValue& extreme)
{
    std::string text;
    if (extreme.element >= 0) {
        text = extreme.kind + " " + std::to_string(extreme.element);
    }
    if (extreme.node >= 0) {
        text += (text.empty() ? "node " : ", node ") + std::to_string(extreme.node);
    }
    return text.empty() ? text : text + " at " + PlaceText(extreme.place);
}

void AddExtreme(ReportPage& page, const char* label, const ExtremeValue& extreme, const char* unit)
{
    const std::string where = WhereText(extreme);
    if (where.empty()) {
        page.Row(label, {"none"});
    } else {
        page.Row(label, extreme.value, (*unit == '\0' ? "" : std::string(unit) + "  ") + where);
    }
}

void AddExtremes(ReportPage& page, const SolveReport& report, const UnitTexts& unit)
{
    page.Heading("LARGEST RESULTS");
    AddExtreme(page, "displacement", report.largestDisplacement, unit.length);
    AddExtreme(page, "rotation", report.largestRotation, "rad");
    AddExtreme(page, "averaged stress in shells", report.largestShellStress, unit.stress);
    AddExtreme(page, "averaged stress in beams", report.largestBeamStress, unit.stress);
}

void AddComponents(ReportPage& page, const char* title, const std::vector<ComponentExtremes>& extremes,
                   const char* unit)
{
    if (extremes.empty()) {
        return;
    }
    page.Heading(title);
    page.ColumnTitles({"smallest", "largest"});
    for (const ComponentExtremes& component : extremes) {
        const bool isRotation = component.name.starts_with('r');
        page.Row(component.name, {NumberText(component.smallest.value), NumberText(component.largest.value)},
                 (isRotation      ? "rad; "
                  : *unit != '\0' ? std::string(unit) + "; "
                                  : std::string()) +
                     WhereText(component.smallest) + "; " + WhereText(component.largest));
    }
}

// The texts of checks that did not pass, and of those that had nothing to compare.
void AddChecks(ReportPage& page, const std::vector<ResultCheck>& checks)
{
    page.Heading("RESULT CHECKS");
    page.ColumnTitles({"verdict", "value", "warns above", "fails above"});
    for (const ResultCheck& check : checks) {
        page.Row(check.name, {VerdictName(check.verdict), ShareText(check.value), NumberText(check.warnLimit),
                              std::isinf(check.failLimit) ? "never" : NumberText(check.failLimit)});
    }
    for (const ResultCheck& check : checks) {
        if (check.verdict != Verdict::Pass) {
            page.Paragraph("  " + check.name + ": ", check.text);
        }
    }
}

void AddFiles(ReportPage& page, const SolveReport& report)
{
    page.Heading("RESULT FILES");
    if (!report.fileFault.empty()) {
        page.Paragraph("  ", report.fileFault);
    } else if (report.files.empty()) {
        page.Paragraph("  ", "none were asked for");
    }
    for (const ResultFile& file : report.files) {
        page.Line(PaddedLeft(FileSizeText(file.bytes), 10) + "  " + file.path);
    }
}

void AddStages(ReportPage& page, const SolveReport& report)
{
    page.Heading("TIME AND MEMORY");
    for (const StageTime& stage : report.stages) {
        page.Row(stage.name, {DurationText(stage.seconds), MemoryText(stage.memoryGigabytes)});
    }
    page.Row("total, peak", {DurationText(report.seconds), MemoryText(report.peakMemoryGigabytes)},
             "expected " + MemoryText(report.expectedMemoryGigabytes));
}

// "0.0123 m, node 812 at (1, 2, 3)"
std::string ExtremeSummary(const ExtremeValue& extreme, const char* unit)
{
    const std::string where = WhereText(extreme);
    return where.empty() ? "none" : WithUnit(extreme.value, unit) + ", " + where;
}

std::string FilesSummary(const SolveReport& report)
{
    const std::vector<ResultFile>& files = report.files;
    if (!report.fileFault.empty()) {
        return "NOT WRITTEN, see RESULT FILES";
    }
    if (files.empty()) {
        return "none were asked for";
    }
    std::uint64_t bytes = 0;
    for (const ResultFile& file : files) { bytes += file.bytes; }
    const std::string& first = files.front().path;
    const std::size_t slash = first.find_last_of("/\\");
    return std::to_string(files.size()) + " written, " + FileSizeText(bytes) + ", in " +
           (slash == std::string::npos ? "the current directory" : first.substr(0, slash));
}

// Without loads every check passes, and none says anything.
std::string ChecksSummary(const SolveReport& report)
{
    const bool hasLoads = report.balance.forceSize != 0.0 || report.balance.momentSize != 0.0;
    return CheckSummary(report.resultChecks) + (hasLoads ? "" : " (the model has no loads)");
}

// What the reader of a report must know first and last.
std::string VerdictText(const SolveReport& report)
{
    const auto isWarned = [](const ResultCheck& check) { return check.verdict == Verdict::Warn; };
    const auto ofResults = std::count_if(report.resultChecks.begin(), report.resultChecks.end(), isWarned);
    const std::size_t ofModel = report.findings.size(), others = report.warnings.size();
    if (!FailedChecksMessage(report).empty()) {
        return "NOT TO BE TRUSTED: " + CheckSummary(report.resultChecks);
    }
    if (!report.fileFault.empty()) {
        return "solved, but the result files are NOT WRITTEN";
    }
    std::string text = "solved";
    if (ofModel > 0) {
        text += ", " + CountText(static_cast<std::int64_t>(ofModel), "warning") + " of the model";
    }
    if (ofResults > 0) {
        text += ", " + CountText(ofResults, "warning") + " of the results";
    }
    if (others > 0) {
        text += ", " + CountText(static_cast<std::int64_t>(others), "other warning");
    }
    return text;
}

void AddSolveSummary(ReportPage& page, const SolveReport& report, const UnitTexts& unit)
{
    page.Heading("SUMMARY");
    page.SummaryLine("balance", BalanceSummary(report.balance));
    page.SummaryLine("balanced by", AccelerationSummary(report.balance, unit));
    page.SummaryLine("largest displacement", ExtremeSummary(report.largestDisplacement, unit.length));
    page.SummaryLine("largest shell stress", ExtremeSummary(report.largestShellStress, unit.stress));
    page.SummaryLine("largest beam stress", ExtremeSummary(report.largestBeamStress, unit.stress));
    page.SummaryLine("result checks", ChecksSummary(report));
    page.SummaryLine("result files", FilesSummary(report));
    page.SummaryLine("model checks", FindingsSummary(report.findings));
    page.SummaryLine("other warnings", WarningSummary(report.warnings));
    page.SummaryLine("run", DurationText(report.seconds) + ", " + MemoryText(report.peakMemoryGigabytes));
    page.SummaryLine("verdict", VerdictText(report));
}

// ---- sections of a model that is not solved

void AddCost(ReportPage& page, const InfoReport& report)
{
    page.Heading("COST ON THIS MACHINE");
    page.ColumnTitles({"solve", "console run"});
    page.Row("entries of the factor",
             {std::to_string(report.solver.factorEntries), std::to_string(report.skylineEntries)});
    page.Row("their size", {MemoryText(report.solver.factorGigabytes), MemoryText(report.skylineGigabytes)},
             report.solver.scratchDirectory.empty() ? "" : "on disk: memory is too small");
    page.Row("operations", {NumberText(report.solver.factorOperations), NumberText(report.skylineOperations)});
    page.Row("expected time", {DurationText(report.expectedSeconds), DurationText(report.expectedSkylineSeconds)});
    page.Row("expected memory", {MemoryText(report.expectedMemoryGigabytes)},
             "of " + MemoryText(report.availableMemoryGigabytes) + " that can be had");
    AddEngine(page, report.solver);
}

// Why solve would not begin.
void AddFault(ReportPage& page, const std::string& fault)
{
    if (!fault.empty()) {
        page.Heading("ERRORS: tarnvexo solve refuses this model");
        page.Paragraph("  ", fault);
    }
}

int FreeMotions(const std::vector<PartReport>& parts)
{
    int count = 0;
    for (const PartReport& part : parts) { count += part.freeMotions; }
    return count;
}

void AddInfoSummary(ReportPage& page, const InfoReport& report, const UnitTexts& unit)
{
    const MassSummary& mass = report.balance.mass;
    page.Heading("SUMMARY");
    page.SummaryLine("parts",
                     std::to_string(report.parts.size()) + ", with " + FreeMotionText(FreeMotions(report.parts)));
    page.SummaryLine("mass", WithUnit(mass.mass, unit.mass) + ", centre of gravity " + PlaceText(mass.centreOfGravity));
    page.SummaryLine("applied force", WithUnit(Length(report.balance.appliedAboutCentroid.force), unit.force));
    page.SummaryLine("balance", BalanceSummary(report.balance));
    page.SummaryLine("balanced by", AccelerationSummary(report.balance, unit));
    page.SummaryLine("tarnvexo solve", report.fault.empty() ? EstimateText(report.expectedSeconds) + " and " +
                                                                  MemoryText(report.expectedMemoryGigabytes) + " of " +
                                                                  MemoryText(report.availableMemoryGigabytes)
                                                            : "refuses this model, see ERRORS");
    page.SummaryLine("model checks", FindingsSummary(report.findings));
    page.SummaryLine("other warnings", WarningSummary(report.warnings));
}

std::string TitleOf(const SolveReport& report)
{
    return "tarnvexo solve " + report.modelFile;
}

// All of the report but its title, its verdict and its summary.
void AddSolveSections(ReportPage& page, const SolveReport& report, const UnitTexts& unit)
{
    AddModel(page, report.counts, unit);
    AddParts(page, report.parts);
    AddMass(page, report.balance.mass, unit);
    AddBalance(page, report.balance, unit);
    AddReactions(page, report, unit);
    AddEnergy(page, report, unit);
    AddSolution(page, report);
    AddExtremes(page, report, unit);
    AddChecks(page, report.resultChecks);
    AddFiles(page, report);
    AddStages(page, report);
    AddModelChecks(page, report.findings);
    AddWarnings(page, report.warnings);
}

} // namespace

std::string SolveReportText(const SolveReport& report, UnitSystem units)
{
    const UnitTexts& unit = TextsOfUnits(units);
    TextPage page;
    page.Heading(TitleOf(report));
    page.Line(VerdictText(report));
    AddSolveSections(page, report, unit);
    AddSolveSummary(page, report, unit);
    return page.Result();
}

std::string SolveReportHtml(const SolveReport& report, UnitSystem units, const std::vector<ReportPicture>& pictures)
{
    const UnitTexts& unit = TextsOfUnits(units);
    HtmlPage page(TitleOf(report));
    page.Line(VerdictText(report));
    AddSolveSummary(page, report, unit);
    for (const ReportPicture& picture : pictures) { page.Picture(picture.caption, picture.png); }
    AddSolveSections(page, report, unit);
    AddComponents(page, "DISPLACEMENTS, SMALLEST AND LARGEST", report.displacementExtremes, unit.length);
    AddComponents(page, "AVERAGED STRESSES OF SHELLS, SMALLEST AND LARGEST", report.shellStressExtremes, unit.stress);
    AddComponents(page, "AVERAGED STRESSES OF BEAM WALLS, SMALLEST AND LARGEST", report.beamStressExtremes,
                  unit.stress);
    return page.Result();
}

std::string InfoReportText(const InfoReport& report, UnitSystem units)
{
    const UnitTexts& unit = TextsOfUnits(units);
    TextPage page;
    page.Heading("tarnvexo info " + report.modelFile);
    AddModel(page, report.counts, unit);
    AddParts(page, report.parts);
    AddMass(page, report.balance.mass, unit);
    AddBalance(page, report.balance, unit);
    AddCost(page, report);
    AddModelChecks(page, report.findings);
    AddWarnings(page, report.warnings);
    AddFault(page, report.fault);
    AddInfoSummary(page, report, unit);
    return page.Result();
}

} // namespace tarnvexo
