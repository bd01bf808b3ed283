// The convergence tables of docs/verification.md, on finer meshes than the other tests have time for. Disabled, so that
// it runs only on request; it prints the page's tables and tests their last columns:
//     app_tests --gtest_also_run_disabled_tests --gtest_filter='VerificationTables.*'
#include "support/FreeBeam.h"
#include "support/VerificationModels.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tarnvexo::test {
namespace {

void PrintHeading(const char* first, const std::vector<std::string>& columns)
{
    std::printf("\n| %s |", first);
    for (const std::string& column : columns) { std::printf(" %s |", column.c_str()); }
    std::printf("\n|---|");
    for (std::size_t i = 0; i < columns.size(); ++i) { std::printf("---|"); }
    std::printf("\n");
}

// One row: value and ratio to the published one per mesh; the ratio on the finest mesh is tested.
void PrintRow(const char* name, double published, const std::vector<int>& meshes, double share,
              const std::function<double(int n)>& value)
{
    std::printf("| %s |", name);
    double ratio = 0.0;
    for (const int n : meshes) {
        const double v = value(n);
        ratio = v / published;
        std::printf(" %.5g (%.3f) |", v, ratio);
        std::fflush(stdout);
    }
    std::printf(" %.5g |\n", published);
    EXPECT_NEAR(ratio, 1.0, share) << name;
}

TEST(VerificationTables, DISABLED_SquarePlates)
{
    struct Row {
        const char* name;
        SquarePlate plate;
        double published;
        double share;
    };
    const auto navier = [](double t, PlateLoad load, bool shear) { return NavierCentre(t, load, shear); };
    const auto print = [](const std::vector<Row>& rows) {
        PrintHeading("plate", {"2 x 2", "4 x 4", "8 x 8", "16 x 16", "32 x 32", "series"});
        for (const Row& row : rows) {
            PrintRow(row.name, row.published, {2, 4, 8, 16, 32}, row.share,
                     [&](int n) { return PlateCentre(row.plate, n); });
        }
    };
    const PlateLoad uniform = PlateLoad::Uniform, central = PlateLoad::Central;
    const PlateEdge soft = PlateEdge::SoftSupport, clamped = PlateEdge::Clamped;

    print({{"supported, uniform, t/a = 1/1000", {.thickness = 0.001}, navier(0.001, uniform, true), 0.001},
           {"supported, uniform, 1/100", {.thickness = 0.01}, navier(0.01, uniform, true), 0.001},
           {"supported, uniform, 1/10", {.thickness = 0.1}, navier(0.1, uniform, true), 0.001},
           {"supported softly, uniform, 1/10", {.thickness = 0.1, .edge = soft}, 0.00461691, 0.002},
           {"supported, central, 1/1000", {.load = central}, navier(0.001, central, false), 0.001},
           {"supported, central, 1/100", {.thickness = 0.01, .load = central}, navier(0.01, central, false), 0.005},
           {"clamped, uniform, 1/1000", {.edge = clamped}, 0.00126532, 0.001},
           {"clamped, uniform, 1/100", {.thickness = 0.01, .edge = clamped}, 0.00126786, 0.001},
           {"clamped, uniform, 1/10", {.thickness = 0.1, .edge = clamped}, 0.00150463, 0.001},
           {"clamped, central, 1/1000", {.edge = clamped, .load = central}, 0.0056120, 0.001},
           {"clamped, central, 1/100", {.thickness = 0.01, .edge = clamped, .load = central}, 0.0056120, 0.005}});
    print({{"supported, uniform, t/a = 1/1000", {.distortion = 0.25}, navier(0.001, uniform, true), 0.001},
           {"supported, uniform, 1/10", {.thickness = 0.1, .distortion = 0.25}, navier(0.1, uniform, true), 0.001},
           {"clamped, uniform, 1/1000", {.edge = clamped, .distortion = 0.25}, 0.00126532, 0.001},
           {"clamped, uniform, 1/10", {.thickness = 0.1, .edge = clamped, .distortion = 0.25}, 0.00150463, 0.002},
           {"clamped, central, 1/1000", {.edge = clamped, .load = central, .distortion = 0.25}, 0.0056120, 0.001}});
    const Cell tri = Cell::TriAlternating;
    print({{"supported, uniform", {.cell = tri}, navier(0.001, uniform, false), 0.001},
           {"supported, central", {.load = central, .cell = tri}, navier(0.001, central, false), 0.001},
           {"clamped, uniform", {.edge = clamped, .cell = tri}, 0.00126532, 0.001},
           {"clamped, central", {.edge = clamped, .load = central, .cell = tri}, 0.0056120, 0.001},
           {"clamped, uniform, distorted, parallel diagonals",
            {.edge = clamped, .cell = Cell::Tri, .distortion = 0.25},
            0.00126532,
            0.002}});
}

TEST(VerificationTables, DISABLED_CurvedShells)
{
    const std::vector<int> meshes = {4, 8, 16, 32, 64};
    PrintHeading("shell", {"4", "8", "16", "32", "64", "published"});
    for (const Cell cell : {Cell::Quad, Cell::Tri}) {
        PrintRow("Scordelis-Lo roof", 0.3024, meshes, 0.02, [&](int n) { return ScordelisLoRoof(n, cell); });
        PrintRow("pinched cylinder", 1.8248e-5, meshes, 0.01, [&](int n) { return PinchedCylinder(n, cell); });
        PrintRow("hemisphere with hole", 0.0940, meshes, 0.015, [&](int n) { return HemisphereWithHole(n, cell); });
        PrintRow("hemisphere, meridians", 0.0924, meshes, 0.02, [&](int n) { return HemisphereOfMeridians(n, cell); });
    }
    PrintHeading("shell", {"2", "4", "8", "16", "32", "64", "published"});
    PrintRow("hemisphere, three blocks, triangles", 0.0924, {2, 4, 8, 16, 32, 64}, 0.01,
             [](int n) { return HemisphereOfBlocks(n, Cell::Tri); });
    PrintRow("hemisphere, three blocks, warped quads", 0.0924, {2, 4, 8, 16, 32, 64}, 0.15,
             [](int n) { return HemisphereOfBlocks(n, Cell::Quad); });
    for (const Cell cell : {Cell::Tri, Cell::Quad}) {
        PrintRow("twisted beam, in plane", 5.424e-3, {2, 4, 8, 16, 32, 64}, 0.02,
                 [&](int n) { return TwistedBeam(n, cell, TwistedBeamLoad::InPlane); });
        PrintRow("twisted beam, out of plane", 1.754e-3, {2, 4, 8, 16, 32, 64}, 0.02,
                 [&](int n) { return TwistedBeam(n, cell, TwistedBeamLoad::OutOfPlane); });
    }
    PrintHeading("hook", {"9 x 1", "18 x 3", "36 x 5", "72 x 10", "144 x 20", "288 x 40", "published"});
    const auto width = [](int n) { return n == 1 ? 1 : n == 2 ? 3 : 5 * n / 4; };
    PrintRow("Raasch's hook, quads", 5.02, {1, 2, 4, 8, 16, 32}, 0.01,
             [&](int n) { return RaaschHook(n, width(n), Cell::Quad); });
    PrintRow("Raasch's hook, triangles", 5.02, {1, 2, 4, 8, 16, 32}, 0.07,
             [&](int n) { return RaaschHook(n, width(n), Cell::Tri); });
}

// Deflections of the free beams and strips as multiples of the closed forms.
TEST(VerificationTables, DISABLED_FreeStrips)
{
    PrintHeading("free strip", {"12", "24", "48", "96", "192", "closed form"});
    FreeStrip strip;
    const double F = strip.force, L = strip.length;
    for (const Cell cell : {Cell::Quad, Cell::TriAlternating}) {
        const double shear = cell == Cell::Quad ? F * L / strip.ShearRigidity() : 0.0;
        const double bending = F * L * L * L / strip.EI();
        const std::string name = cell == Cell::Quad ? "quads" : "triangles";
        const std::vector<int> meshes = {12, 24, 48, 96, 192};
        PrintRow(("tips behind the middle, mid force, " + name).c_str(), bending / 128.0 + shear / 8.0, meshes, 0.001,
                 [&](int n) {
                     strip.columns = n;
                     const FreeStripResult result = SolveFreeStrip(strip, cell, n / 2);
                     return result.deflection[n / 2] - result.deflection[0];
                 });
        PrintRow(("sag, end force, " + name).c_str(), 5.0 / 384.0 * bending + shear / 8.0, meshes, 0.001, [&](int n) {
            strip.columns = n;
            const FreeStripResult result = SolveFreeStrip(strip, cell, n);
            return 0.5 * (result.deflection[0] + result.deflection[n]) - result.deflection[n / 2];
        });
    }
    strip.columns = 48;
    const FreeStripResult mid = SolveFreeStrip(strip, Cell::Quad, 24);
    const FreeStripResult end = SolveFreeStrip(strip, Cell::Quad, 48);
    std::printf("\nx/L, moments/(F L) of the strip of 48 quads: mid force, end force\n");
    for (int i = 0; i < strip.columns; ++i) {
        std::printf("%.5f %.6f %.6f\n", (i + 0.5) / strip.columns, mid.moment[i] / (F * L), end.moment[i] / (F * L));
    }
    FreeBeam beam;
    beam.isTube = true;
    beam.tube = {0.1, 0.01};
    beam.elements = 12;
    const FreeBeamResult beamMid = SolveFreeBeam(beam, 6), beamEnd = SolveFreeBeam(beam, 12);
    std::printf("\nx/L, moments/(F L) of 12 tubes: mid force, end force\n");
    for (int i = 0; i <= beam.elements; ++i) {
        std::printf("%.5f %.6f %.6f\n", static_cast<double>(i) / beam.elements,
                    beamMid.moment[i] / (beam.force * beam.length), beamEnd.moment[i] / (beam.force * beam.length));
    }
}

} // namespace
} // namespace tarnvexo::test
