// core/ModelFileFormats.h
// Grammar of the model file, release 3.0: its sections in file order, each a count followed by that many records, each
// record one or several scans. input/ModelFileReader scans with these formats, output/ModelFileWriter prints with them.
// The language of the formats is explained in input/FormatScanner.h.
#pragma once

#include <cstddef>

namespace tarnvexo::formats {

constexpr double SupportedRelease = 3.0;
constexpr const char* SupportedReleaseText = "3.0"; // as it is written
constexpr const char* Release = "### Quor_Tarn+Vexo release=%lf ###\n";

constexpr const char* MaterialCount = "Number of materials:NMT=%d\n";
constexpr const char* MaterialLabel = "#%d:\n";
constexpr const char* MaterialE = "E=%lf\n";
constexpr const char* MaterialMu = "Mu=%lf\n";
constexpr const char* MaterialDensity = "Density=%lf\n";

constexpr const char* ThicknessCount = "Number of shell thicknesses:NTK=%d\n";
constexpr const char* ThicknessLabel = "#%d:\n";
constexpr const char* ThicknessTK = "TK=%lf\n";

// Each section record begins with a label line of any text, read as LabelCharacter until a line feed has come.
constexpr const char* TSectionCount = "Number of T_beam sections:NTBS=%d\n";
constexpr const char* LSectionCount = "Number of L_beam sections:NLBS=%d\n";
constexpr const char* CSectionCount = "Number of C_beam sections:NCBS=%d\n";
constexpr const char* LabelCharacter = "%c";
constexpr const char* SectionHw = "Hw=%lf\n";
constexpr const char* SectionTw = "Tw=%lf\n";
constexpr const char* SectionBf = "Bf=%lf\n";
constexpr const char* SectionTf = "Tf=%lf\n";
constexpr const char* SectionR = "R=%lf\n";
constexpr const char* SectionT = "T=%lf\n";

constexpr const char* NodeCount = "Number of nodal points:NPOIN=%d\n";
constexpr const char* Node = "%d:%lf,%lf,%lf\n";

constexpr const char* ElementLabel = "%d:";
constexpr const char* QuadCount = "Number of four-nodes shell elements:NELEM_S_4ND=%d\n";
constexpr const char* Quad = "%d,%d,%d,%d[%d,%d]\n";
constexpr const char* TriCount = "Number of three-nodes shell elements:NELEM_S_3ND=%d\n";
constexpr const char* Tri = "%d,%d,%d[%d,%d]\n";
constexpr const char* BeamCount = "Number of beam elements:NELEM_B=%d\n";
constexpr const char* Beam = "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,BeamSecMirrored=%d]\n";

// Five times RestraintFlag, then LastRestraintFlag; five times ForceComponent, then LastForceComponent.
constexpr const char* RestraintCount = "Number of restricted nodal points:NRN=%d\n";
constexpr const char* RestraintNode = "%d:";
constexpr const char* RestraintFlag = "%d";
constexpr const char* LastRestraintFlag = "%d\n";
constexpr const char* ForceCount = "Number of forces:NFOR=%d\n";
constexpr const char* ForceNode = "%d<";
constexpr const char* ForceComponent = "%lf,";
constexpr const char* LastForceComponent = "%lf>\n";

constexpr const char* QuadLoadCount = "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n";
constexpr const char* TriLoadCount = "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n";
constexpr const char* ShellLoad = "%d:%lf,%lf,%lf\n";
constexpr const char* BeamLoadCount = "Number of distributed loads on beam elements:NDL_B=%d\n";
constexpr const char* BeamLoad = "%d:%lf,%lf\n";

// Bytes of the shortest text that matches a format: one per conversion and per literal character, none for blanks.
constexpr std::size_t ShortestText(const char* format)
{
    std::size_t length = 0;
    for (const char* f = format; *f != '\0'; ++f) {
        if (*f == '%') {
            f += f[1] == 'l' ? 2 : 1;
            ++length;
        } else if (*f != ' ' && *f != '\n') {
            ++length;
        }
    }
    return length;
}

// Shortest texts of whole records. A label line is at least its line feed.
constexpr std::size_t ShortestLabelLine = ShortestText(LabelCharacter);
constexpr std::size_t ShortestMaterial =
    ShortestText(MaterialLabel) + ShortestText(MaterialE) + ShortestText(MaterialMu) + ShortestText(MaterialDensity);
constexpr std::size_t ShortestThickness = ShortestText(ThicknessLabel) + ShortestText(ThicknessTK);
constexpr std::size_t ShortestWebFlangeSection = ShortestLabelLine + ShortestText(SectionHw) + ShortestText(SectionTw) +
                                                 ShortestText(SectionBf) + ShortestText(SectionTf);
constexpr std::size_t ShortestTubeSection = ShortestLabelLine + ShortestText(SectionR) + ShortestText(SectionT);
constexpr std::size_t ShortestNode = ShortestText(Node);
constexpr std::size_t ShortestQuad = ShortestText(ElementLabel) + ShortestText(Quad);
constexpr std::size_t ShortestTri = ShortestText(ElementLabel) + ShortestText(Tri);
constexpr std::size_t ShortestBeam = ShortestText(ElementLabel) + ShortestText(Beam);
constexpr std::size_t ShortestRestraint =
    ShortestText(RestraintNode) + 5 * ShortestText(RestraintFlag) + ShortestText(LastRestraintFlag);
constexpr std::size_t ShortestForce =
    ShortestText(ForceNode) + 5 * ShortestText(ForceComponent) + ShortestText(LastForceComponent);
constexpr std::size_t ShortestShellLoad = ShortestText(ShellLoad);
constexpr std::size_t ShortestBeamLoad = ShortestText(BeamLoad);

} // namespace tarnvexo::formats
