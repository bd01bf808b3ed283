#include "app/CheckDriver.h"

#include "app/LoadBalance.h"
#include "app/ModelCheck.h"
#include "app/ModelCounting.h"
#include "app/ModelFindings.h"
#include "app/ModelLoading.h"
#include "app/StageClock.h"
#include "checks/ModelChecks.h"
#include "core/Units.h"
#include "inertia/StructureCentroid.h"
#include "output/BeamSectionStress.h"
#include "platform/Platform.h"

#include <algorithm>

namespace tarnvexo {

namespace {

void AddMessage(Severity severity, const std::string& text, CheckReport& report)
{
    if (!text.empty()) {
        report.messages.push_back({severity, text});
    }
}

// False: there is no model to look at, and a message says why.
bool Read(ModelStore& model, const RuleBook& rules, CheckReport& report)
{
    report.reading = TryLoadModel(model, report.modelFile, rules);
    if (!report.reading.IsUsable()) {
        return false;
    }
    const std::string fault = ModelFault(model, report.modelFile);
    AddMessage(Severity::Error, fault, report);
    return fault.empty();
}

// What a rule has found needs no second message.
bool HaveSoundElements(const ModelStore& model, CheckReport& report)
{
    if (!HaveSoundElements(report.findings)) {
        return false;
    }
    const std::string fault = ElementFault(model, report.modelFile);
    if (!TellsOfShape(report.findings)) {
        AddMessage(Severity::Error, fault, report);
    }
    return fault.empty();
}

// Beams whose section meshes nothing can hold.
void MeasureSections(const ModelStore& model, CheckReport& report)
{
    const SectionMeshSize meshes = MeasureSectionMeshes(model);
    if (!meshes.fault.empty()) {
        const Severity severity = meshes.isBeyondMemory ? Severity::Warning : Severity::Error; // of this machine
        AddMessage(severity, report.modelFile + ": " + SeverityName(severity) + ": " + meshes.fault, report);
    }
}

void Balance(ModelStore& model, const RuleBook& rules, CheckReport& report)
{
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    const BalancedLoads loads = BalanceModelLoads(model, report.modelFile, BalanceKind::Exact, rules);
    report.parts = ReportParts(loads.free, DisplacementKind::MassOrthogonal);
    if (JoinedMessages(FindingsFault(loads.findings, report.modelFile), loads.fault).empty()) {
        report.balance = loads.sheet;
    }
    AddFindings(loads.findings, report.findings);
    AddMessage(Severity::Error, loads.fault, report);
    if (!loads.sheet.aboutLine.empty()) {
        AddMessage(Severity::Warning, report.modelFile + ": warning: " + loads.sheet.aboutLine, report);
    }
}

} // namespace

CheckReport Check(const CheckOptions& options, const ProgressListener& listener)
{
    platform::ExitOnInterrupt();
    StageClock clock({"read", "check", "balance"}, listener);
    CheckReport report;
    report.modelFile = options.modelFile;

    clock.Next(); // read
    ModelStore model;
    report.isRead = Read(model, options.rules, report);
    if (report.isRead) {
        model.EquationCount = DofsPerNode * model.NPOIN;
        report.counts = CountsOf(model);

        clock.Next(); // check
        report.findings = CheckModel(model, options.rules);
        if (HaveSoundElements(model, report)) {
            MeasureSections(model, report);
            clock.Next(); // balance
            Balance(model, options.rules, report);
        }
    }
    clock.End();
    report.stages = clock.Times();
    report.seconds = clock.Seconds();
    report.peakMemoryGigabytes = static_cast<double>(platform::PeakMemory()) * GigabytesPerByte;
    return report;
}

int CountOf(const CheckReport& report, Severity severity)
{
    const auto isOfIt = [severity](const auto& one) { return one.severity == severity; };
    return static_cast<int>(report.reading.CountOf(severity) +
                            std::count_if(report.findings.begin(), report.findings.end(), isOfIt) +
                            std::count_if(report.messages.begin(), report.messages.end(), isOfIt));
}

} // namespace tarnvexo
