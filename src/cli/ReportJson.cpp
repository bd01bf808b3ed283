#include "cli/ReportJson.h"

#include "app/ModelFindings.h"
#include "cli/ReportFigures.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

namespace tarnvexo {

namespace {

using Json = nlohmann::ordered_json;

// The library writes numbers that are not finite as null.

Json CountsJson(const ModelCounts& counts)
{
    return {{"nodes", counts.nodes},
            {"quads", counts.quads},
            {"tris", counts.tris},
            {"beams", counts.beams},
            {"materials", counts.materials},
            {"thicknesses", counts.thicknesses},
            {"beam_sections", counts.beamSections},
            {"restrained_dofs", counts.restrainedDofs},
            {"nodal_forces", counts.nodalForces},
            {"distributed_loads", counts.distributedLoads},
            {"equations", counts.equations},
            {"box_min", counts.boxMin},
            {"box_max", counts.boxMax}};
}

Json NodeDofJson(const NodeDof& at)
{
    return {{"node", at.node}, {"dof", DofName(at.dof)}};
}

Json PartsJson(const std::vector<PartReport>& parts)
{
    Json list = Json::array();
    for (const PartReport& part : parts) {
        Json holds = Json::array();
        for (const NodeDof& hold : part.holds) { holds.push_back(NodeDofJson(hold)); }
        list.push_back({{"nodes", part.nodes},
                        {"elements", part.elements},
                        {"first_node", part.firstNode},
                        {"restrained_dofs", part.restrainedDofs},
                        {"middle", part.middle},
                        {"free_motions", part.freeMotions},
                        {"free_motion_texts", part.freeMotionTexts},
                        {"holds", holds},
                        {"mass_orthogonal", part.massOrthogonal}});
    }
    return list;
}

Json MassJson(const MassSummary& mass)
{
    Json axes = Json::array();
    for (const Vector3& axis : mass.principalAxes) { axes.push_back(axis); }
    return {{"mass", mass.mass},
            {"volume_centroid", mass.volumeCentroid},
            {"centre_of_gravity", mass.centreOfGravity},
            {"inertia", mass.inertia},
            {"principal_moments", mass.principalMoments},
            {"principal_axes", axes}};
}

Json ResultantJson(const LoadResultant& resultant)
{
    return {{"force", resultant.force}, {"moment", resultant.moment}};
}

// Accelerations in g only when the units are named.
Json AccelerationJson(const RigidAcceleration& acceleration, const UnitTexts& unit)
{
    Json json = {{"a", acceleration.a}, {"alpha", acceleration.alpha}};
    if (unit.standardGravity > 0.0) {
        json["a_in_g"] = acceleration.a / unit.standardGravity;
    }
    return json;
}

Json BalanceJson(const BalanceSheet& balance, const UnitTexts& unit)
{
    return {{"kind", BalanceName(balance.kind)},
            {"closed", IsBalanced(balance)},
            {"applied_about_centroid", ResultantJson(balance.appliedAboutCentroid)},
            {"applied_about_origin", ResultantJson(balance.appliedAboutOrigin)},
            {"force_size", balance.forceSize},
            {"moment_size", balance.momentSize},
            {"acceleration", AccelerationJson(balance.applied, unit)},
            {"remaining", ResultantJson(balance.remaining)},
            {"relative_force", balance.relativeForce},
            {"relative_moment", balance.relativeMoment},
            {"classic",
             {{"acceleration", AccelerationJson(balance.classic, unit)},
              {"remaining", ResultantJson(balance.classicRemaining)}}}};
}

// What is known before anything is solved.
Json EngineJson(const SolverReport& solver)
{
    return {{"engine", solver.engine},
            {"ordering", solver.ordering},
            {"kernels", solver.kernels},
            {"threads", solver.threads},
            {"factor_entries", solver.factorEntries},
            {"factor_gigabytes", solver.factorGigabytes},
            {"factor_on_disk", !solver.scratchDirectory.empty()},
            {"factor_operations", solver.factorOperations}};
}

Json OrNull(const std::optional<double>& number)
{
    return number ? Json(*number) : Json();
}

Json SolverJson(const SolveReport& report)
{
    Json json = EngineJson(report.solver);
    json["factorise_operations_per_second"] = FactoriseRate(report);
    json["smallest_pivot_ratio"] = report.solver.smallestPivotRatio;
    json["smallest_pivot"] = NodeDofJson(report.solver.smallestPivot);
    json["condition_at_least"] = report.solver.conditionEstimate;
    json["relative_residual"] = report.solver.relativeResidual;
    json["refinement"] = {{"steps", report.solver.refinementSteps},
                          {"residual_before", report.solver.residualBeforeRefinement},
                          {"displacement_error_before", OrNull(report.solver.displacementErrorBefore)},
                          {"displacement_error", OrNull(report.solver.displacementError)}};
    return json;
}

Json ReactionsJson(const SolveReport& report)
{
    Json list = Json::array();
    for (const SupportReaction& reaction : report.reactions) {
        list.push_back({{"node", reaction.at.node},
                        {"dof", DofName(reaction.at.dof)},
                        {"value", reaction.value},
                        {"hold", reaction.hold}});
    }
    return {{"largest_force", report.largestReaction},
            {"sum_of_forces", SumOfReactionForces(report.reactions)},
            {"list", list}};
}

Json NumberOrNull(int number)
{
    return number >= 0 ? Json(number) : Json();
}

// null where the model has nothing of the kind
Json ExtremeJson(const ExtremeValue& extreme)
{
    if (extreme.node < 0 && extreme.element < 0) {
        return Json();
    }
    return {{"value", extreme.value},
            {"node", NumberOrNull(extreme.node)},
            {"element", NumberOrNull(extreme.element)},
            {"kind", extreme.kind.empty() ? Json() : Json(extreme.kind)},
            {"place", extreme.place}};
}

Json ChecksJson(const std::vector<ResultCheck>& checks)
{
    Json list = Json::array();
    for (const ResultCheck& check : checks) {
        list.push_back({{"name", check.name},
                        {"verdict", VerdictName(check.verdict)},
                        {"value", check.value},
                        {"warn_limit", check.warnLimit},
                        {"fail_limit", check.failLimit},
                        {"text", check.text}});
    }
    return list;
}

Json FilesJson(const std::vector<ResultFile>& files)
{
    Json list = Json::array();
    for (const ResultFile& file : files) { list.push_back({{"path", file.path}, {"bytes", file.bytes}}); }
    return list;
}

Json StagesJson(const std::vector<StageTime>& stages)
{
    Json list = Json::array();
    for (const StageTime& stage : stages) {
        list.push_back({{"name", stage.name}, {"seconds", stage.seconds}, {"memory_gigabytes", stage.memoryGigabytes}});
    }
    return list;
}

Json OffenderJson(const Offender& offender)
{
    return {{"kind", offender.kind},
            {"number", offender.number},
            {"value", offender.value},
            {"place", HasPlace(offender) ? Json(offender.place) : Json()},
            {"detail", offender.detail}};
}

Json ChecksJson(const std::vector<Finding>& findings)
{
    Json list = Json::array();
    for (const Finding& finding : findings) {
        const Rule& rule = RuleOf(finding.rule);
        const bool hasLimit = finding.limit != NoLimit;
        Json worst = Json::array();
        for (const Offender& offender : finding.worst) { worst.push_back(OffenderJson(offender)); }
        list.push_back({{"rule", rule.name},
                        {"severity", SeverityName(finding.severity)},
                        {"count", finding.count},
                        {"limit", hasLimit ? Json(finding.limit) : Json()},
                        {"measure", hasLimit ? Json(rule.measure) : Json()},
                        {"finding", rule.finding},
                        {"to_do", rule.toDo},
                        {"summary", finding.summary},
                        {"worst", worst}});
    }
    return list;
}

Json MessagesJson(const std::vector<CheckMessage>& messages)
{
    Json list = Json::array();
    for (const CheckMessage& message : messages) {
        list.push_back({{"severity", SeverityName(message.severity)}, {"text", message.text}});
    }
    return list;
}

Json TextDiagnosticsJson(const StrictReading& reading)
{
    Json list = Json::array();
    for (const SourceDiagnostic& one : reading.diagnostics) {
        list.push_back({{"rule", RuleOf(one.rule).name},
                        {"severity", SeverityName(one.severity)},
                        {"line", one.line},
                        {"column", one.column},
                        {"what", one.what},
                        {"expected", one.expected},
                        {"to_do", one.toDo}});
    }
    return list;
}

Json ReportHead(const char* command, const std::string& modelFile, const UnitTexts& unit)
{
    return {{"report_version", ReportJsonVersion},
            {"program_version", TARNVEXO_VERSION},
            {"command", command},
            {"model_file", modelFile},
            {"units", *unit.name == '\0' ? Json() : Json(unit.name)}};
}

// A path may hold bytes that are no UTF-8; they are replaced.
std::string ScalarText(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool HoldsScalarsOnly(const Json& json)
{
    return std::none_of(json.begin(), json.end(), [](const Json& one) { return one.is_structured(); });
}

// Indented text in which lists and records of scalars stand on one line: [1.0, 2.0, 3.0], {"node": 12, "dof": "dx"}.
std::string IndentedText(const Json& json, std::size_t indent)
{
    constexpr std::size_t mostOnALine = 8;
    if (!json.is_structured()) {
        return ScalarText(json);
    }
    const bool oneLine = HoldsScalarsOnly(json) && json.size() <= mostOnALine;
    const std::string lineBegin = oneLine ? "" : "\n" + std::string(indent + 2, ' ');
    std::string text = json.is_object() ? "{" : "[";
    const char* separator = "";
    for (const auto& [key, value] : json.items()) {
        text += separator + lineBegin;
        if (json.is_object()) {
            text += ScalarText(key) + ": ";
        }
        text += IndentedText(value, indent + 2);
        separator = oneLine ? ", " : ",";
    }
    text += oneLine ? "" : "\n" + std::string(indent, ' ');
    return text + (json.is_object() ? "}" : "]");
}

std::string JsonText(const Json& json)
{
    return IndentedText(json, 0) + "\n";
}

} // namespace

std::string SolveReportJson(const SolveReport& report, UnitSystem units)
{
    const UnitTexts& unit = TextsOfUnits(units);
    Json json = ReportHead("solve", report.modelFile, unit);
    json["model"] = CountsJson(report.counts);
    json["parts"] = PartsJson(report.parts);
    json["mass"] = MassJson(report.balance.mass);
    json["balance"] = BalanceJson(report.balance, unit);
    json["reactions"] = ReactionsJson(report);
    json["energy"] = {{"strain_energy", report.strainEnergy},
                      {"external_work", report.externalWork},
                      {"relative_difference", EnergyDifference(report)}};
    json["solver"] = SolverJson(report);
    json["extremes"] = {{"displacement", ExtremeJson(report.largestDisplacement)},
                        {"rotation", ExtremeJson(report.largestRotation)},
                        {"shell_stress", ExtremeJson(report.largestShellStress)},
                        {"beam_stress", ExtremeJson(report.largestBeamStress)}};
    json["result_checks"] = ChecksJson(report.resultChecks);
    json["files"] = FilesJson(report.files);
    json["stages"] = StagesJson(report.stages);
    json["seconds"] = report.seconds;
    json["peak_memory_gigabytes"] = report.peakMemoryGigabytes;
    json["expected_memory_gigabytes"] = report.expectedMemoryGigabytes;
    json["model_checks"] = ChecksJson(report.findings);
    json["warnings"] = report.warnings;
    return JsonText(json);
}

std::string InfoReportJson(const InfoReport& report, UnitSystem units)
{
    const UnitTexts& unit = TextsOfUnits(units);
    Json json = ReportHead("info", report.modelFile, unit);
    json["model"] = CountsJson(report.counts);
    json["parts"] = PartsJson(report.parts);
    json["mass"] = MassJson(report.balance.mass);
    json["balance"] = BalanceJson(report.balance, unit);
    json["solver"] = EngineJson(report.solver);
    json["skyline"] = {{"entries", report.skylineEntries},
                       {"gigabytes", report.skylineGigabytes},
                       {"operations", report.skylineOperations}};
    json["expected"] = {{"seconds", report.expectedSeconds},
                        {"skyline_seconds", report.expectedSkylineSeconds},
                        {"memory_gigabytes", report.expectedMemoryGigabytes},
                        {"available_memory_gigabytes", report.availableMemoryGigabytes}};
    json["model_checks"] = ChecksJson(report.findings);
    json["warnings"] = report.warnings;
    json["fault"] = report.fault.empty() ? Json() : Json(report.fault);
    return JsonText(json);
}

std::string CheckReportJson(const CheckReport& report, UnitSystem units)
{
    const UnitTexts& unit = TextsOfUnits(units);
    Json json = ReportHead("check", report.modelFile, unit);
    json["verdict"] = {{"ready", CountOf(report, Severity::Error) == 0},
                       {"errors", CountOf(report, Severity::Error)},
                       {"warnings", CountOf(report, Severity::Warning)},
                       {"notes", CountOf(report, Severity::Note)}};
    json["model_checks"] = ChecksJson(report.findings);
    json["text_checks"] = TextDiagnosticsJson(report.reading);
    json["messages"] = MessagesJson(report.messages);
    json["model"] = report.isRead ? CountsJson(report.counts) : Json();
    json["parts"] = PartsJson(report.parts);
    json["mass"] = report.balance ? MassJson(report.balance->mass) : Json();
    json["balance"] = report.balance ? BalanceJson(*report.balance, unit) : Json();
    json["stages"] = StagesJson(report.stages);
    json["seconds"] = report.seconds;
    json["peak_memory_gigabytes"] = report.peakMemoryGigabytes;
    return JsonText(json);
}

} // namespace tarnvexo
