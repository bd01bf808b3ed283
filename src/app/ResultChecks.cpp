#include "app/ResultChecks.h"

#include "output/ContourFile.h"
#include "output/DxfDrawing.h"
#include "output/NodalDisplacementFile.h"
#include "output/ShellStressFiles.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <limits>

namespace tarnvexo {

namespace {

constexpr double NoFailure = std::numeric_limits<double>::infinity();

// Below this share of the other a kind of load has no size of its own.
constexpr double LeastScale = 1e-3;

// Balanced loads below this share of the applied ones are round-off.
constexpr double NothingLeft = 1e-6;

constexpr const char* NoLoads = "the model has no loads: there is nothing to compare";

[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...)
{
    char text[800];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

// A value that is not a number fails.
Verdict VerdictOn(double value, const CheckLimits& limits)
{
    return value <= limits.warn ? Verdict::Pass : value <= limits.fail ? Verdict::Warn : Verdict::Fail;
}

ResultCheck Judged(const char* name, double value, const CheckLimits& limits)
{
    ResultCheck check;
    check.name = name;
    check.value = value;
    check.warnLimit = limits.warn;
    check.failLimit = limits.fail;
    check.verdict = VerdictOn(value, limits);
    return check;
}

double Share(double part, double whole)
{
    return part == 0.0 ? 0.0 : part / whole;
}

// The larger one; what is not a number wins.
double Larger(double a, double b)
{
    return std::isnan(a) || a > b ? a : b;
}

std::string PlaceText(const Vector3& place)
{
    return Format("(%.6g, %.6g, %.6g)", place[0], place[1], place[2]);
}

} // namespace

LoadScales ScalesOfLoads(const BalanceSheet& balance, double modelSize)
{
    LoadScales scales = {balance.forceSize, balance.momentSize};
    if (modelSize > 0.0) {
        scales.force = std::max(balance.forceSize, LeastScale * balance.momentSize / modelSize);
        scales.moment = std::max(balance.momentSize, LeastScale * balance.forceSize * modelSize);
    }
    return scales;
}

ResultCheck JudgeResidual(const SolverReport& solver)
{
    ResultCheck check = Judged("residual", solver.relativeResidual, ResidualLimits);
    check.text =
        check.verdict == Verdict::Pass
            ? "K·u = f within round-off"
            : Format("the displacements do not satisfy K·u = f within round-off; the smallest pivot, %.2g of "
                     "its stiffness, is at node %d: look there for stiffnesses of very different size, and try "
                     "the other --solver",
                     solver.smallestPivotRatio, solver.smallestPivot.node);
    return check;
}

ResultCheck JudgeBalance(const BalanceSheet& balance, const LoadScales& scales)
{
    const double value = Larger(Share(Length(balance.remaining.force), scales.force),
                                Share(Length(balance.remaining.moment), scales.moment));
    const bool isByDesign = balance.kind == BalanceKind::Classic || !balance.aboutLine.empty();
    const double warn = balance.kind == BalanceKind::Classic ? ClassicBalanceLimit : BalanceLimits.warn;
    ResultCheck check = Judged("balance", value, {warn, isByDesign ? NoFailure : BalanceLimits.fail});
    if (!scales.HasLoads()) {
        check.text = NoLoads;
    } else if (check.verdict == Verdict::Pass) {
        check.text = "inertia leaves no force and no moment";
    } else if (!balance.aboutLine.empty()) {
        check.text = balance.aboutLine;
    } else {
        const Vector3 &force = balance.remaining.force, &moment = balance.remaining.moment;
        check.text = Format("the force %s and the moment %s about the centroid remain, and supports or holds carry "
                            "them: %s",
                            PlaceText(force).c_str(), PlaceText(moment).c_str(),
                            balance.kind == BalanceKind::Classic
                                ? "the classic way leaves them in models with beams or several densities; use "
                                  "--balance exact"
                                : "look for loads that are very large and cancel, and for coordinates far from the "
                                  "origin");
    }
    return check;
}

ResultCheck JudgeReactions(const std::vector<SupportReaction>& reactions, const BalanceSheet& balance,
                           const LoadScales& scales, int redundantSupports)
{
    double value = 0.0;
    const SupportReaction* largest = nullptr;
    for (const SupportReaction& reaction : reactions) {
        const double share = Share(std::fabs(reaction.value), reaction.at.dof <= DZ ? scales.force : scales.moment);
        if (largest == nullptr || (!(share <= value) && !std::isnan(value))) {
            value = share;
            largest = &reaction;
        }
    }
    // What the balance leaves has to go somewhere.
    const bool isLeft = JudgeBalance(balance, scales).verdict != Verdict::Pass;
    const bool isByDesign = redundantSupports > 0 || isLeft;
    ResultCheck check = Judged("reactions", value, {ReactionLimits.warn, isByDesign ? NoFailure : ReactionLimits.fail});
    if (largest == nullptr) {
        check.text = "no direction is restrained or held";
    } else if (!scales.HasLoads()) {
        check.text = NoLoads;
    } else if (check.verdict == Verdict::Pass) {
        check.text = "supports and holds carry next to nothing of the balanced loads";
    } else {
        check.text =
            Format("the %s of node %d carries %.6g: ", largest->hold ? "hold" : "support", largest->at.node,
                   largest->value) +
            (isLeft ? "what the balance leaves, see there"
             : redundantSupports > 0
                 ? Format("%d restrained directions are more than hold the structure, so they hinder its "
                          "deformation; take them away, and do not use these results for a structure that "
                          "stands on its supports",
                          redundantSupports)
                 : "warped quadrilaterals tie the structure to the ground (see rigid rotations); look for them, and "
                   "for parts that are nearly mechanisms");
    }
    return check;
}

ResultCheck JudgeEnergy(const SolveReport& report, double elementEnergy, const LoadScales& scales,
                        const LoadSizes& balanced)
{
    const double work = report.externalWork;
    const bool isNothing =
        balanced.forces <= NothingLeft * scales.force && balanced.moments <= NothingLeft * scales.moment;
    double value = 0.0;
    if (!isNothing) {
        const double largest = std::max({std::fabs(report.strainEnergy), std::fabs(elementEnergy), std::fabs(work)});
        value = Share(Larger(std::fabs(report.strainEnergy - work), std::fabs(elementEnergy - work)), largest);
    }
    ResultCheck check = Judged("energy", value, EnergyLimits);
    if (!scales.HasLoads()) {
        check.text = NoLoads;
    } else if (isNothing) {
        check.text = "inertia takes the loads up node by node: there is nothing left to compare";
    } else if (check.verdict == Verdict::Pass) {
        check.text = "the strain energy is the work of the loads";
    } else {
        check.text = Format("the strain energy is %.9g (%.9g summed over the elements), the work of the loads %.9g: "
                            "round-off is part of the results; the smallest pivot, %.2g of its stiffness, is at node "
                            "%d: look there for stiffnesses of very different size side by side, and for a mechanism",
                            report.strainEnergy, elementEnergy, work, report.solver.smallestPivotRatio,
                            report.solver.smallestPivot.node);
    }
    return check;
}

ResultCheck JudgeRigidTranslations(const ElementEnergies& energies)
{
    double value = 0.0;
    for (const MotionEnergies& part : energies.ofParts) {
        for (int m = 0; m < 3; ++m) { value = Larger(part[m].Share(), value); }
    }
    ResultCheck check = Judged("rigid translations", value, RigidTranslationLimits);
    check.text = check.verdict == Verdict::Pass
                     ? "no part resists a translation"
                     : Format("moved as a whole, a part resists, as if tied to the ground: look at %s %d, node %d, for "
                              "sizes and moduli beyond all measure",
                              energies.worst.kind, energies.worst.element, energies.worst.node);
    return check;
}

ResultCheck JudgeRigidRotations(const ElementEnergies& energies)
{
    double ofParts = 0.0;
    for (const MotionEnergies& part : energies.ofParts) {
        for (int m = 3; m < ElementMotionCount; ++m) { ofParts = Larger(part[m].Share(), ofParts); }
    }
    ResultCheck check = Judged("rigid rotations", energies.worst.share, RigidRotationLimits);
    if (check.verdict == Verdict::Pass) {
        check.text = "no element resists being turned";
    } else {
        check.text =
            Format("turned as a whole, %s %d resists as if tied to the ground, most at node %d (of the part it "
                   "is in at most %.2g): it is warped; cut it into triangles or refine the mesh there",
                   energies.worst.kind, energies.worst.element, energies.worst.node, ofParts);
    }
    return check;
}

ResultCheck JudgeDisplacement(const ExtremeValue& largest, double modelSize)
{
    const double value = modelSize > 0.0 ? Share(largest.value, modelSize) : 0.0;
    ResultCheck check = Judged("largest displacement", value, DisplacementLimits);
    check.text = check.verdict == Verdict::Pass
                     ? "displacements are small against the model"
                     : Format("node %d moves by %.6g, the model measures %.6g: linear theory holds for small "
                              "displacements only; look for a mechanism and for units that do not fit together",
                              largest.node, largest.value, modelSize);
    return check;
}

ResultCheck JudgeRotation(const ExtremeValue& largest)
{
    ResultCheck check = Judged("largest rotation", largest.value, RotationLimits);
    check.text = check.verdict == Verdict::Pass
                     ? "rotations are small"
                     : Format("node %d turns by %.6g rad: linear theory takes sin θ for θ; look for thin plates under "
                              "large loads, a mechanism, and units that do not fit together",
                              largest.node, largest.value);
    return check;
}

ResultCheck JudgeFiniteNumbers(const std::vector<NonFiniteResults>& counts, const ResultFormats& formats)
{
    long long bad = 0;
    bool areFiles[3] = {}; // of displacements, of shell stresses, of beam stresses
    for (std::size_t k = 0; k < counts.size(); ++k) {
        bad += counts[k].bad;
        const int file = k == 0 ? 0 : k + 1 == counts.size() ? 2 : 1;
        areFiles[file] = areFiles[file] || counts[k].bad > 0;
    }
    ResultCheck check = Judged("finite numbers", static_cast<double>(bad), {0.0, 0.0});
    if (check.verdict == Verdict::Pass) {
        check.text = "every displacement and every stress is a number";
        return check;
    }
    check.text = "displacements or stresses are not numbers at " + NonFiniteText(counts) +
                 ": look there for zero thicknesses, sections, lengths, areas or moduli";
    if (formats != ResultFormats{ResultFormat::Text}) {
        return check; // other formats have everything in every file
    }
    if (areFiles[0]) {
        check.files = {NodalDisplacementFileName, DeformationDrawingFileName};
    }
    if (areFiles[1]) {
        check.files.insert(check.files.end(), {ShellStressFileName, AveragedShellStressFileName});
    }
    check.files.push_back(ContourFileName);
    return check;
}

std::string CheckSummary(const std::vector<ResultCheck>& checks)
{
    std::string text;
    const std::pair<Verdict, const char*> verdicts[] = {
        {Verdict::Pass, " passed"}, {Verdict::Warn, " warned"}, {Verdict::Fail, " failed"}};
    for (const auto& [verdict, word] : verdicts) {
        int count = 0;
        std::string names;
        for (const ResultCheck& check : checks) {
            if (check.verdict == verdict) {
                ++count;
                names += (names.empty() ? ": " : ", ") + check.name;
            }
        }
        if (count > 0) {
            text += (text.empty() ? "" : "; ") + std::to_string(count) + word + (verdict == Verdict::Pass ? "" : names);
        }
    }
    return text;
}

std::string FailedChecksMessage(const SolveReport& report)
{
    std::string found, files;
    bool areAll = false;
    for (const ResultCheck& check : report.resultChecks) {
        if (check.verdict == Verdict::Fail) {
            found += "\n  found:    " + check.name + ": " + check.text;
            areAll = areAll || check.files.empty();
            for (const std::string& file : check.files) { files += (files.empty() ? "" : ", ") + file; }
        }
    }
    if (found.empty()) {
        return "";
    }
    return report.modelFile + ": error: the results do not pass their checks" + found +
           "\n  not to be trusted: " + (areAll ? "all results, in the files and in this report" : files) +
           "\n  to do:    correct the model, and solve it again";
}

} // namespace tarnvexo
