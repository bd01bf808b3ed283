#include "cli/ReportText.h"

#include "cli/SampleReports.h"
#include "cli/TextPage.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <sstream>

namespace tarnvexo {
namespace {

std::string FileText(const std::string& name)
{
    std::ifstream file(std::string(TARNVEXO_SOURCE_DIR) + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

const char* const SolveGolden = R"(tarnvexo solve wing/fem_solving.txt
  solved, 1 warning of the model, 1 warning of the results, 1 other warning

MODEL
  nodes                                     120
  elements                                  101  96 quadrilaterals, 4 triangles, 1 beam
  materials                                   1
  shell thicknesses                           2
  beam sections                               1
  restrained directions                       6
  loads                                      13  1 nodal force, 12 distributed loads
  equations                                 720
                                              x             y             z
  bounding box from                        -0.5             0             0  m
  to                                       11.5             4          2.25  m

CONNECTED PARTS
  part 1: 118 nodes, 100 elements, from node 0 on; 6 directions restrained; no free rigid motion
  part 2: 2 nodes, 1 element, from node 118 on; 0 directions restrained; 6 free rigid motions; free
          to move and rotate in every way; around (0, 2, 2); held at node 118 dx dy dz rx, node 119
          dy dz; displacements are mass-orthogonal to these 6 rigid motions

MASS
  mass                                    98.91  kg
                                              x             y             z
  centroid of the volume                    5.5             2      0.400476  m
  centre of gravity                         5.5             2      0.400481  m
  inertia about it  xx xy xz            7.38561         -0.25             0  kg·m²
                    yx yy yz              -0.25       8.56174       1.09677  kg·m²
                    zx zy zz                  0       1.09677       18.5523  kg·m²
                                         moment        axis x        axis y        axis z
  principal moment 1                      7.335          0.98         0.199             0  kg·m²
  principal moment 2                       8.49        -0.197         0.973        -0.118  kg·m²
  principal moment 3                    18.6747       -0.0235         0.116         0.993  kg·m²

BALANCE BY INERTIA RELIEF: exact
                                              x             y             z          size
  applied force                               0             0         -1000          1000  N
  applied moment about centroid        -599.524           500             0       780.659  N·m
  applied moment about (0, 0, 0)       -2599.52          6000             0       6538.92  N·m
  acceleration of the centroid                0             0      -10.1102       10.1102  m/s²
    in g                                      0             0      -1.03095       1.03095  g
  angular acceleration                 -81.1746        58.845       -3.4788        100.32  rad/s²
  remaining force                       2.1e-13             0      -1.1e-13   2.37065e-13  N
  remaining moment about centroid             0       4.5e-12             0       4.5e-12  N·m
                                       relative         loads
  remaining force of Σ|F|               2.4e-16          1000  N
  moment of Σ(|r|·|F| + |M|)            4.1e-15       1099.52  N·m
  the classic way                  would leave a force of 2.2e-13 (2.2e-16 of the loads) and a
                                   moment of 263.28 (0.24)

SUPPORT REACTIONS
  largest force                         2.5e-11  N, 2.5e-14 of Σ|F|
                                              x             y             z          size
  sum of forces                         1.5e-12        -1e-12       1.5e-11   1.51079e-11  N
                                       reaction  of the loads
  node 0 dz, support                    2.5e-11       2.5e-14  N
  node 1 dz, support                     -1e-11         1e-14  N
  node 3 rx, support                      8e-12       7.3e-15  N·m
  node 0 dy, support                     -3e-12         3e-15  N
  node 1 dy, support                      2e-12         2e-15  N
  node 0 dx, support                    1.5e-12       1.5e-15  N
  node 118 rx, hold                       4e-13       3.6e-16  N·m
  node 118 dz, hold                       2e-13         2e-16  N
  node 119 dz, hold                      -2e-13         2e-16  N
  node 118 dy, hold                       1e-13         1e-16  N
  node 119 dy, hold                      -1e-13         1e-16  N
  node 119 rx, hold                       1e-16       9.1e-20  N·m
  and 1 with a smaller share

ENERGY
  strain energy                       0.0123456  J
  external work                       0.0123457  J
  relative difference                   8.1e-06

SOLUTION
  engine                           multifrontal LLᵀ
  ordering                         bisection on nodes
  kernels                          Highway AVX3
  threads                                     2
  entries of the factor                   61206  456 kB
  operations                            6.5e+06  0.2 GF/s while factorising
  smallest pivot ratio                  3.2e-05  at node 57 rz
  condition at least                    3.1e+04
  relative residual                     1.7e-16  2.4e-16 before refinement
  steps of refinement                         1
  digits of the displacements                16  9 before refinement, estimates

LARGEST RESULTS
  displacement                          0.00214  m  node 87 at (11.5, 4, 0)
  rotation                              0.00031  rad  node 86 at (11.5, 2, 0)
  averaged stress in shells         1.23457e+08  Pa  quad 31, node 12 at (0.5, 1.5, 2.25)
  averaged stress in beams              8.1e+07  Pa  beam 0, node 118 at (3, 3, 1)

RESULT CHECKS
                                        verdict         value   warns above   fails above
  residual                                 pass       1.7e-16         1e-12         1e-08
  balance                                  pass       4.1e-15         1e-10         1e-06
  reactions                                pass       2.5e-14         0.001         never
  energy                                   warn       8.1e-06         1e-06          0.01
  energy: round-off is part of the results; the smallest pivot, 3.2e-05 of its stiffness, is at node
          57

RESULT FILES
     9.12 kB  run/Node_Dis.txt
     1.23 MB  run/Shell element node stress.txt

TIME AND MEMORY
  read                                   0.01 s       12.0 MB
  factorise                              0.03 s       31.0 MB
  write                                  0.21 s       45.0 MB
  total, peak                            0.27 s       46.2 MB  expected 48.1 MB

MODEL CHECKS                        count     limit     worst
  warning  warping                      4        10   23.4567  quadrilaterals that are not flat
                                                               quad 31 at (0.5, 1.5, 2.25)

OTHER WARNINGS: 1
  wing/fem_solving.txt:812:1: warning: force 1 is for node 25, as is force 0 [duplicate-load]
    expected: one record for each node
    to do:    check that the sum of the two is meant

SUMMARY
  balance               closed (exact): 2.4e-16 of force, 4.1e-15 of moment left
  balanced by           10.1102 m/s² (1.03095 g), 100.32 rad/s², not by supports
  largest displacement  0.00214 m, node 87 at (11.5, 4, 0)
  largest shell stress  1.23457e+08 Pa, quad 31, node 12 at (0.5, 1.5, 2.25)
  largest beam stress   8.1e+07 Pa, beam 0, node 118 at (3, 3, 1)
  result checks         3 passed; 1 warned: energy
  result files          2 written, 1.24 MB, in run
  model checks          1 warning, see MODEL CHECKS
  other warnings        1, see above
  run                   0.27 s, 46.2 MB
  verdict               solved, 1 warning of the model,
                        1 warning of the results, 1 other warning
)";

const char* const InfoGoldenEnd = R"(COST ON THIS MACHINE
                                          solve   console run
  entries of the factor                   61206        122400
  their size                             456 kB        912 kB
  operations                            6.5e+06       2.1e+07
  expected time                          0.30 s    1 min 14 s
  expected memory                       50.0 MB  of 6.90 GB that can be had
  engine                           multifrontal LLᵀ
  ordering                         bisection on nodes

MODEL CHECKS                        count     limit     worst
  warning  warping                      4        10   23.4567  quadrilaterals that are not flat
                                                               quad 31 at (0.5, 1.5, 2.25)

OTHER WARNINGS: none

SUMMARY
  parts                 2, with 6 free rigid motions
  mass                  98.91 kg, centre of gravity (5.5, 2, 0.400481)
  applied force         1000 N
  balance               closed (exact): 2.4e-16 of force, 4.1e-15 of moment left
  balanced by           10.1102 m/s² (1.03095 g), 100.32 rad/s², not by supports
  tarnvexo solve        less than 1 s and 50.0 MB of 6.90 GB
  model checks          1 warning, see MODEL CHECKS
  other warnings        none
)";

TEST(ReportText, OfTheSampleIsThis)
{
    EXPECT_EQ(SolveReportText(test::SampleSolveReport(), UnitSystem::SI), SolveGolden);
}

TEST(ReportText, OfInfoEndsWithTheCost)
{
    const std::string text = InfoReportText(test::SampleInfoReport(), UnitSystem::SI);
    EXPECT_EQ(text.substr(text.find("COST ON")), InfoGoldenEnd);
}

TEST(ReportText, OfSolveAndInfoHasTheSameModelPartsMassAndBalance)
{
    const std::string solve = SolveReportText(test::SampleSolveReport(), UnitSystem::SI);
    const std::string info = InfoReportText(test::SampleInfoReport(), UnitSystem::SI);
    const std::size_t begin = solve.find("MODEL\n");
    const std::size_t size = solve.find("SUPPORT REACTIONS") - begin;
    EXPECT_EQ(solve.substr(begin, size), info.substr(info.find("MODEL\n"), size));
}

TEST(ReportText, SamplesOfThePageAreWhatTheProgramPrints)
{
    const std::string page = FileText("docs/command-line.md");
    const std::string solve = SolveReportText(test::SampleSolveReport(), UnitSystem::SI);
    const std::string info = InfoReportText(test::SampleInfoReport(), UnitSystem::SI);
    EXPECT_TRUE(Contains(page, "<!-- sample: solve report -->\n```\n" + solve + "```\n"));
    EXPECT_TRUE(Contains(page, "<!-- sample: info report -->\n```\n" + info + "```\n"));
}

// The largest numbers in every column.
TEST(ReportText, FitsAHundredColumnsAndItsSummaryEighty)
{
    SolveReport report = test::SampleSolveReport();
    const Vector3 large = {-1.23457e-300, -1.23457e-300, -1.23457e-300};
    report.balance.appliedAboutCentroid = report.balance.remaining = {large, large};
    report.balance.applied = {large, large};
    report.balance.mass.inertia = {large, large, large};
    report.largestShellStress.place = report.largestDisplacement.place = large;
    for (const UnitSystem units : {UnitSystem::Unnamed, UnitSystem::SI, UnitSystem::MillimetreTonneSecond}) {
        std::istringstream lines(SolveReportText(report, units));
        std::size_t widest = 100;
        for (std::string line; std::getline(lines, line);) {
            widest = line == "SUMMARY" ? 80 : widest;
            EXPECT_LE(TextWidth(line), widest) << line;
        }
    }
}

TEST(ReportText, SummaryHasElevenEntriesAndEightWithoutResults)
{
    const auto entriesOfSummary = [](const std::string& text) {
        std::istringstream lines(text.substr(text.find("SUMMARY\n") + 8));
        int entries = 0;
        for (std::string line; std::getline(lines, line);) { entries += line.starts_with("   ") ? 0 : 1; }
        return entries;
    };
    EXPECT_EQ(entriesOfSummary(SolveReportText(test::SampleSolveReport(), UnitSystem::SI)), 11);
    EXPECT_EQ(entriesOfSummary(InfoReportText(test::SampleInfoReport(), UnitSystem::SI)), 8);
}

TEST(ReportText, TellsLoadsThatStayUnbalanced)
{
    SolveReport report = test::SampleSolveReport();
    report.balance.kind = BalanceKind::Classic;
    report.balance.relativeMoment = 0.24;
    const std::string text = SolveReportText(report, UnitSystem::SI);
    EXPECT_TRUE(Contains(text, "NOT CLOSED (classic): 2.4e-16 of force,\n")) << text;
    EXPECT_TRUE(Contains(text, "the classic way                  leaves a force of")) << text;
    report.balance.relativeMoment = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(Contains(SolveReportText(report, UnitSystem::SI), "NOT CLOSED"));
}

TEST(ReportText, WithoutUnitsNamesNoneAndGivesNoG)
{
    const std::string text = SolveReportText(test::SampleSolveReport(), UnitSystem::Unnamed);
    EXPECT_TRUE(Contains(text, "rad/time²\n"));
    EXPECT_FALSE(Contains(text, "in g"));
    EXPECT_FALSE(Contains(text, " Pa"));
    EXPECT_TRUE(Contains(text, "largest displacement  0.00214, node 87 at (11.5, 4, 0)\n"));
}

TEST(ReportText, SaysWhatAModelDoesNotHave)
{
    SolveReport report = test::SampleSolveReport();
    report.largestBeamStress = {};
    report.reactions.clear();
    report.files.clear();
    report.warnings.clear();
    const std::string text = SolveReportText(report, UnitSystem::SI);
    EXPECT_TRUE(Contains(text, "largest beam stress   none\n"));
    EXPECT_TRUE(Contains(text, "none: no direction is restrained or held\n"));
    EXPECT_TRUE(Contains(text, "result files          none were asked for\n"));
    EXPECT_TRUE(Contains(text, "\nOTHER WARNINGS: none\n"));
}

TEST(ReportText, TellsDigitsOnlyWhereTheyAreKnown)
{
    SolveReport report = test::SampleSolveReport();
    report.solver.refinementSteps = 0;
    report.solver.displacementErrorBefore = report.solver.displacementError = 1.0; // no correction helps
    std::string text = SolveReportText(report, UnitSystem::SI);
    EXPECT_TRUE(Contains(text, "  digits of the displacements                 0  estimate\n")) << text;
    EXPECT_FALSE(Contains(text, "before refinement")) << text;
    report.solver.displacementErrorBefore.reset();
    report.solver.displacementError.reset();
    text = SolveReportText(report, UnitSystem::SI);
    EXPECT_TRUE(Contains(text, "  steps of refinement                         0\n")) << text;
    EXPECT_FALSE(Contains(text, "digits of the displacements")) << text;
}

TEST(ReportText, CutsALongListOfParts)
{
    SolveReport report = test::SampleSolveReport();
    report.parts.resize(40, report.parts[0]);
    const std::string text = SolveReportText(report, UnitSystem::SI);
    EXPECT_TRUE(Contains(text, "  part 12: "));
    EXPECT_FALSE(Contains(text, "  part 13: "));
    EXPECT_TRUE(Contains(text, "  and 28 more parts\n"));
}

} // namespace
} // namespace tarnvexo
