// core/ModelFileFormats.h
// Grammar of the model file, release 3.0: its sections in file order, each a count followed by that many records, each
// record one or several scans. input/ModelFileReader scans with these formats, output/ModelFileWriter prints with them.
// The language of the formats is explained in input/FormatScanner.h.
// They are arrays so that templates can take them.
#pragma once

#include <cstddef>

namespace tarnvexo::formats {

constexpr double SupportedRelease = 3.0;
inline constexpr const char* SupportedReleaseText = "3.0"; // as it is written
inline constexpr char Release[] = "### Quor_Tarn+Vexo release=%lf ###\n";

inline constexpr char MaterialCount[] = "Number of materials:NMT=%d\n";
inline constexpr char MaterialLabel[] = "#%d:\n";
inline constexpr char MaterialE[] = "E=%lf\n";
inline constexpr char MaterialMu[] = "Mu=%lf\n";
inline constexpr char MaterialDensity[] = "Density=%lf\n";

inline constexpr char ThicknessCount[] = "Number of shell thicknesses:NTK=%d\n";
inline constexpr char ThicknessLabel[] = "#%d:\n";
inline constexpr char ThicknessTK[] = "TK=%lf\n";

// Each section record begins with a label line of any text, read as LabelCharacter until a line feed has come.
inline constexpr char TSectionCount[] = "Number of T_beam sections:NTBS=%d\n";
inline constexpr char LSectionCount[] = "Number of L_beam sections:NLBS=%d\n";
inline constexpr char CSectionCount[] = "Number of C_beam sections:NCBS=%d\n";
inline constexpr char LabelCharacter[] = "%c";
inline constexpr char SectionHw[] = "Hw=%lf\n";
inline constexpr char SectionTw[] = "Tw=%lf\n";
inline constexpr char SectionBf[] = "Bf=%lf\n";
inline constexpr char SectionTf[] = "Tf=%lf\n";
inline constexpr char SectionR[] = "R=%lf\n";
inline constexpr char SectionT[] = "T=%lf\n";

inline constexpr char NodeCount[] = "Number of nodal points:NPOIN=%d\n";
inline constexpr char Node[] = "%d:%lf,%lf,%lf\n";

inline constexpr char ElementLabel[] = "%d:";
inline constexpr char QuadCount[] = "Number of four-nodes shell elements:NELEM_S_4ND=%d\n";
inline constexpr char Quad[] = "%d,%d,%d,%d[%d,%d]\n";
inline constexpr char TriCount[] = "Number of three-nodes shell elements:NELEM_S_3ND=%d\n";
inline constexpr char Tri[] = "%d,%d,%d[%d,%d]\n";
inline constexpr char BeamCount[] = "Number of beam elements:NELEM_B=%d\n";
inline constexpr char Beam[] =
    "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,BeamSecMirrored=%d]\n";

// Five times RestraintFlag, then LastRestraintFlag; five times ForceComponent, then LastForceComponent.
inline constexpr char RestraintCount[] = "Number of restricted nodal points:NRN=%d\n";
inline constexpr char RestraintNode[] = "%d:";
inline constexpr char RestraintFlag[] = "%d";
inline constexpr char LastRestraintFlag[] = "%d\n";
inline constexpr char ForceCount[] = "Number of forces:NFOR=%d\n";
inline constexpr char ForceNode[] = "%d<";
inline constexpr char ForceComponent[] = "%lf,";
inline constexpr char LastForceComponent[] = "%lf>\n";

inline constexpr char QuadLoadCount[] = "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n";
inline constexpr char TriLoadCount[] = "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n";
inline constexpr char ShellLoad[] = "%d:%lf,%lf,%lf\n";
inline constexpr char BeamLoadCount[] = "Number of distributed loads on beam elements:NDL_B=%d\n";
inline constexpr char BeamLoad[] = "%d:%lf,%lf\n";

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
