#include "support/ModelText.h"

#include <cstdio>

namespace tarnvexo::test {

namespace {

int Append(std::vector<std::string>& records, const std::string& record)
{
    records.push_back(record);
    return int(records.size()) - 1;
}

// "a,b,c"
template <class Values> std::string List(const Values& values)
{
    std::string text;
    for (const auto value : values) { text += (text.empty() ? "" : ",") + NumberText(double(value)); }
    return text;
}

std::string Label(const std::vector<std::string>& records, const char* before, const char* after)
{
    return before + std::to_string(records.size()) + after;
}

std::string WebFlange(const std::vector<std::string>& records, double Hw, double Tw, double Bf, double Tf)
{
    return Label(records, "#", ":\n") + "Hw=" + NumberText(Hw) + "\nTw=" + NumberText(Tw) + "\nBf=" + NumberText(Bf) +
           "\nTf=" + NumberText(Tf) + "\n";
}

std::string Section(const char* header, const std::vector<std::string>& records)
{
    std::string text = header + std::to_string(records.size()) + "\n";
    for (const std::string& record : records) { text += record; }
    return text;
}

} // namespace

std::string NumberText(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

int ModelText::Material(double E, double Mu, double Density)
{
    return Append(materials, Label(materials, "#", ":\n") + "E=" + NumberText(E) + "\nMu=" + NumberText(Mu) +
                                 "\nDensity=" + NumberText(Density) + "\n");
}

int ModelText::Thickness(double TK)
{
    return Append(thicknesses, Label(thicknesses, "#", ":\n") + "TK=" + NumberText(TK) + "\n");
}

int ModelText::TSection(double Hw, double Tw, double Bf, double Tf)
{
    return Append(tSections, WebFlange(tSections, Hw, Tw, Bf, Tf));
}

int ModelText::LSection(double Hw, double Tw, double Bf, double Tf)
{
    return Append(lSections, WebFlange(lSections, Hw, Tw, Bf, Tf));
}

int ModelText::CSection(double R, double T)
{
    return Append(cSections, Label(cSections, "#", ":\n") + "R=" + NumberText(R) + "\nT=" + NumberText(T) + "\n");
}

int ModelText::Node(double x, double y, double z)
{
    return Append(nodes, Label(nodes, "", ":") + List(std::array{x, y, z}) + "\n");
}

int ModelText::Quad(std::array<int, 4> corners, int material, int thickness)
{
    return Append(quads, Label(quads, "", ":") + List(corners) + "[" + List(std::array{material, thickness}) + "]\n");
}

int ModelText::Tri(std::array<int, 3> corners, int material, int thickness)
{
    return Append(tris, Label(tris, "", ":") + List(corners) + "[" + List(std::array{material, thickness}) + "]\n");
}

int ModelText::Beam(std::array<int, 2> ends, Vector3 orientation, int material, int sectionType, int sectionIndex,
                    double offset, int mirrored)
{
    return Append(beams, Label(beams, "", ":") + List(ends) + "<" + List(orientation) + ">[" +
                             std::to_string(material) + ",BeamSecType=" + std::to_string(sectionType) +
                             ",BeamSecIndex=" + std::to_string(sectionIndex) + ",BeamSecOz=" + NumberText(offset) +
                             ",BeamSecMirrored=" + std::to_string(mirrored) + "]\n");
}

int ModelText::Restrain(int node, std::array<int, 6> flags)
{
    std::string record = std::to_string(node) + ":";
    for (const int flag : flags) { record += (record.back() == ':' ? "" : " ") + std::to_string(flag); }
    return Append(restraints, record + "\n");
}

int ModelText::Force(int node, std::array<double, 6> components)
{
    return Append(forces, std::to_string(node) + "<" + List(components) + ">\n");
}

int ModelText::QuadLoad(int element, double p1, double p2, double p3)
{
    return Append(quadLoads, std::to_string(element) + ":" + List(std::array{p1, p2, p3}) + "\n");
}

int ModelText::TriLoad(int element, double p1, double p2, double p3)
{
    return Append(triLoads, std::to_string(element) + ":" + List(std::array{p1, p2, p3}) + "\n");
}

int ModelText::BeamLoad(int element, double q1, double q2)
{
    return Append(beamLoads, std::to_string(element) + ":" + List(std::array{q1, q2}) + "\n");
}

std::string ModelText::Text() const
{
    return "### Quor_Tarn+Vexo release=3.0 ###\n" + Section("Number of materials:NMT=", materials) +
           Section("Number of shell thicknesses:NTK=", thicknesses) +
           Section("Number of T_beam sections:NTBS=", tSections) +
           Section("Number of L_beam sections:NLBS=", lSections) +
           Section("Number of C_beam sections:NCBS=", cSections) + Section("Number of nodal points:NPOIN=", nodes) +
           Section("Number of four-nodes shell elements:NELEM_S_4ND=", quads) +
           Section("Number of three-nodes shell elements:NELEM_S_3ND=", tris) +
           Section("Number of beam elements:NELEM_B=", beams) +
           Section("Number of restricted nodal points:NRN=", restraints) + Section("Number of forces:NFOR=", forces) +
           Section("Number of distributed loads on four-nodes shell elements:NDL_S_4ND=", quadLoads) +
           Section("Number of distributed loads on three-nodes shell elements:NDL_S_3ND=", triLoads) +
           Section("Number of distributed loads on beam elements:NDL_B=", beamLoads);
}

} // namespace tarnvexo::test
