#include "cli/SampleReports.h"

#include <limits>

namespace tarnvexo::test {

namespace {

ModelCounts SampleCounts()
{
    ModelCounts counts;
    counts.nodes = 120;
    counts.quads = 96;
    counts.tris = 4;
    counts.beams = 1;
    counts.materials = 1;
    counts.thicknesses = 2;
    counts.beamSections = 1;
    counts.restrainedDofs = 6;
    counts.nodalForces = 1;
    counts.distributedLoads = 12;
    counts.equations = 720;
    counts.boxMin = {-0.5, 0, 0};
    counts.boxMax = {11.5, 4, 2.25};
    return counts;
}

std::vector<PartReport> SampleParts()
{
    PartReport held;
    held.nodes = 118;
    held.elements = 100;
    held.middle = {6, 2, 0.5};
    held.restrainedDofs = 6;
    PartReport free;
    free.nodes = 2;
    free.elements = 1;
    free.firstNode = 118;
    free.freeMotions = 6;
    free.freeMotionTexts = {"free to move and rotate in every way"};
    free.middle = {0, 2, 2};
    free.holds = {{118, DX}, {118, DY}, {118, DZ}, {118, RX}, {119, DY}, {119, DZ}};
    free.massOrthogonal = true;
    return {held, free};
}

BalanceSheet SampleBalance()
{
    BalanceSheet balance;
    balance.mass.mass = 98.91;
    balance.mass.volumeCentroid = {5.5, 2, 0.400476};
    balance.mass.centreOfGravity = {5.5, 2, 0.400481};
    balance.mass.inertia = {{{7.38561, -0.25, 0}, {-0.25, 8.56174, 1.09677}, {0, 1.09677, 18.5523}}};
    balance.mass.principalMoments = {7.335, 8.49, 18.6747};
    balance.mass.principalAxes[0] = {0.98, 0.199, 0};
    balance.mass.principalAxes[1] = {-0.197, 0.973, -0.118};
    balance.mass.principalAxes[2] = {-0.0235, 0.116, 0.993};
    balance.appliedAboutCentroid = {{0, 0, -1000}, {-599.524, 500, 0}};
    balance.appliedAboutOrigin = {{0, 0, -1000}, {-2599.52, 6000, 0}};
    balance.forceSize = 1000;
    balance.momentSize = 1099.52;
    balance.applied = {{0, 0, -10.1102}, {-81.1746, 58.845, -3.4788}};
    balance.remaining = {{2.1e-13, 0, -1.1e-13}, {0, 4.5e-12, 0}};
    balance.relativeForce = 2.37e-16;
    balance.relativeMoment = 4.09e-15;
    balance.classic = {{0, 0, -10.1102}, {-81.1746, 58.845, -3.4788}};
    balance.classicRemaining = {{0, 0, -2.2e-13}, {263.28, 0, 0}};
    return balance;
}

Finding WarpedQuads()
{
    Finding finding{RuleId::Warping, Severity::Warning, 10.0, 4, {}};
    finding.worst = {{"quad", 31, 23.4567, {0.5, 1.5, 2.25}, ""},
                     {"quad", 30, 21.5, {1.5, 1.5, 2.25}, ""},
                     {"quad", 7, 12.25, {7.5, 0.5, 0}, ""},
                     {"quad", 9, 10.5, {9.5, 0.5, 0}, ""}};
    return finding;
}

} // namespace

SolveReport SampleSolveReport()
{
    SolveReport report;
    report.modelFile = "wing/fem_solving.txt";
    report.counts = SampleCounts();
    report.findings = {WarpedQuads()};
    report.parts = SampleParts();
    report.balance = SampleBalance();
    report.solver.engine = "multifrontal LLᵀ";
    report.solver.ordering = "bisection on nodes";
    report.solver.kernels = "Highway AVX3";
    report.solver.threads = 2;
    report.solver.factorEntries = 61206;
    report.solver.factorGigabytes = 0.000456;
    report.solver.factorOperations = 6.5e6;
    report.solver.smallestPivotRatio = 3.21e-5;
    report.solver.smallestPivot = {57, RZ};
    report.solver.conditionEstimate = 31250.0;
    report.solver.relativeResidual = 1.7e-16;
    report.solver.refinementSteps = 1;
    report.solver.residualBeforeRefinement = 2.4e-16;
    report.solver.displacementErrorBefore = 2.6e-9;
    report.solver.displacementError = 1.1e-16;
    report.reactions = {{{0, DX}, 1.5e-12, false}, {{0, DY}, -3e-12, false},  {{0, DZ}, 2.5e-11, false},
                        {{1, DY}, 2e-12, false},   {{1, DZ}, -1e-11, false},  {{3, RX}, 8e-12, false},
                        {{118, DX}, 0, true},      {{118, DY}, 1e-13, true},  {{118, DZ}, 2e-13, true},
                        {{118, RX}, 4e-13, true},  {{119, DY}, -1e-13, true}, {{119, DZ}, -2e-13, true},
                        {{119, RX}, 1e-16, true}};
    report.largestReaction = 2.5e-11;
    report.strainEnergy = 0.0123456;
    report.externalWork = 0.0123457;
    report.largestDisplacement = {0.00214, 87, -1, "", {11.5, 4, 0}};
    report.largestRotation = {0.00031, 86, -1, "", {11.5, 2, 0}};
    report.largestShellStress = {1.23457e8, 12, 31, "quad", {0.5, 1.5, 2.25}};
    report.largestBeamStress = {8.1e7, 118, 0, "beam", {3, 3, 1}};
    const double never = std::numeric_limits<double>::infinity();
    report.resultChecks = {{"residual", Verdict::Pass, 1.7e-16, 1e-12, 1e-8, "K·u = f within round-off", {}},
                     {"balance", Verdict::Pass, 4.09e-15, 1e-10, 1e-6, "inertia leaves no force and no moment", {}},
                     {"reactions",
                      Verdict::Pass,
                      2.5e-14,
                      1e-3,
                      never,
                      "supports and holds carry next to nothing of the balanced loads",
                      {}},
                     {"energy",
                      Verdict::Warn,
                      8.1e-6,
                      1e-6,
                      0.01,
                      "round-off is part of the results; the smallest pivot, 3.2e-05 of its stiffness, is at node 57",
                      {}}};
    report.files = {{"run/Node_Dis.txt", 9120}, {"run/Shell element node stress.txt", 1234567}};
    report.stages = {{"read", 0.0123, 0.012}, {"factorise", 0.0325, 0.031}, {"write", 0.214, 0.045}};
    report.seconds = 0.2712;
    report.peakMemoryGigabytes = 0.0462;
    report.expectedMemoryGigabytes = 0.0481;
    report.warnings = {"wing/fem_solving.txt:812:1: warning: force 1 is for node 25, as is force 0 [duplicate-load]\n"
                       "  expected: one record for each node\n"
                       "  to do:    check that the sum of the two is meant"};
    return report;
}

InfoReport SampleInfoReport()
{
    InfoReport report;
    report.modelFile = "wing/fem_solving.txt";
    report.counts = SampleCounts();
    report.findings = {WarpedQuads()};
    report.parts = SampleParts();
    report.balance = SampleBalance();
    report.solver.engine = "multifrontal LLᵀ";
    report.solver.ordering = "bisection on nodes";
    report.solver.factorEntries = 61206;
    report.solver.factorGigabytes = 0.000456;
    report.solver.factorOperations = 6.5e6;
    report.skylineEntries = 122400;
    report.skylineGigabytes = 0.000912;
    report.skylineOperations = 2.1e7;
    report.expectedSeconds = 0.3;
    report.expectedSkylineSeconds = 74;
    report.expectedMemoryGigabytes = 0.05;
    report.availableMemoryGigabytes = 6.9;
    return report;
}

CheckReport SampleCheckReport()
{
    CheckReport report;
    report.modelFile = "wing/fem_solving.txt";
    report.isRead = true;
    report.counts = SampleCounts();
    report.messages = {{Severity::Error,
                        "wing/fem_solving.txt: error: the structure has the mass 0, which cannot balance its loads\n"
                        "  expected: mass above zero\n"
                        "  to do:    give the materials of the model a Density above 0"}};
    Finding edges{RuleId::FreeEdge, Severity::Note, NoLimit, 44, {}};
    edges.worst = {{"quad", 0, 0, {-0.5, 0.5, 0}, "nodes 0 and 5"}};
    Finding loads{RuleId::UnstiffenedLoad, Severity::Error, NoLimit, 2, {}};
    loads.worst = {{"node", 119, 0, {3, 3, 1}, ""}, {"node", 120, 0, {3, 3, 1.5}, ""}};
    report.findings = {WarpedQuads(), edges, loads};
    report.parts = SampleParts();
    report.stages = {{"read", 0.0123, 0.012}, {"check", 0.0325, 0.031}, {"balance", 0.0041, 0.031}};
    report.seconds = 0.0489;
    report.peakMemoryGigabytes = 0.0312;
    return report;
}

} // namespace tarnvexo::test
