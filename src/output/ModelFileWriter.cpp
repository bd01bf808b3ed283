#include "output/ModelFileWriter.h"

#include "core/ModelFileFormats.h"
#include "output/TextFile.h"

#include <cassert>
#include <charconv>
#include <cstddef>
#include <cstring>

namespace tarnvexo {

namespace {

void PrintValue(TextWriter& text, int value)
{
    text.Integer(value);
}

void PrintValue(TextWriter& text, double value)
{
    char digits[32]; // "-1.7976931348623157e+308" is the longest
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value);
    text.Text({digits, std::size_t(end.ptr - digits)});
}

void PrintValue(TextWriter& text, const char* value)
{
    text.Text(value);
}

// Prints the literal text before the next conversion and the value in place of it; returns what follows.
template <class Value> const char* PrintField(TextWriter& text, const char* format, const Value& value)
{
    const std::size_t literal = std::strcspn(format, "%");
    assert(format[literal] == '%');
    text.Text({format, literal});
    PrintValue(text, value);
    return format + literal + std::strlen(format[literal + 1] == 'l' ? "%lf" : "%d");
}

// Prints a format of the grammar with one value for each of its conversions.
template <class... Values> void Print(TextWriter& text, const char* format, const Values&... values)
{
    ((format = PrintField(text, format, values)), ...);
    text.Text(format);
}

void PrintMaterials(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::MaterialCount, model.NMT);
    for (int m = 0; m < model.NMT; ++m) {
        const Material& material = model.Materials[std::size_t(m)];
        Print(text, formats::MaterialLabel, m);
        Print(text, formats::MaterialE, material.E);
        Print(text, formats::MaterialMu, material.Mu);
        Print(text, formats::MaterialDensity, material.Density);
    }
}

void PrintThicknesses(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::ThicknessCount, model.NTK);
    for (int t = 0; t < model.NTK; ++t) {
        Print(text, formats::ThicknessLabel, t);
        Print(text, formats::ThicknessTK, model.Thicknesses[std::size_t(t)]);
    }
}

// The label line of a section may be any text: it is labelled as a material is.
void PrintSectionLabel(TextWriter& text, int section)
{
    Print(text, formats::MaterialLabel, section);
}

void PrintWebFlangeSections(TextWriter& text, const char* countFormat, const std::vector<WebFlangeSection>& sections)
{
    Print(text, countFormat, int(sections.size()));
    for (int s = 0; s < int(sections.size()); ++s) {
        const WebFlangeSection& section = sections[std::size_t(s)];
        PrintSectionLabel(text, s);
        Print(text, formats::SectionHw, section.Hw);
        Print(text, formats::SectionTw, section.Tw);
        Print(text, formats::SectionBf, section.Bf);
        Print(text, formats::SectionTf, section.Tf);
    }
}

void PrintTubeSections(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::CSectionCount, model.NCBS);
    for (int s = 0; s < model.NCBS; ++s) {
        const CBeamSection& section = model.CBeamSections[std::size_t(s)];
        PrintSectionLabel(text, s);
        Print(text, formats::SectionR, section.R);
        Print(text, formats::SectionT, section.T);
    }
}

void PrintNodes(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::NodeCount, model.NPOIN);
    for (int n = 0; n < model.NPOIN; ++n) {
        const Vector3& X = model.NodeCoordinates[std::size_t(n)];
        Print(text, formats::Node, n, X[0], X[1], X[2]);
    }
}

void PrintShells(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::QuadCount, model.NELEM_S_4ND);
    for (int e = 0; e < model.NELEM_S_4ND; ++e) {
        const auto& [n1, n2, n3, n4] = model.QuadConnectivity[std::size_t(e)];
        const ShellPropertyRef& property = model.QuadProperties[std::size_t(e)];
        Print(text, formats::ElementLabel, e);
        Print(text, formats::Quad, n1, n2, n3, n4, property.material, property.thickness);
    }
    Print(text, formats::TriCount, model.NELEM_S_3ND);
    for (int e = 0; e < model.NELEM_S_3ND; ++e) {
        const auto& [n1, n2, n3] = model.TriConnectivity[std::size_t(e)];
        const ShellPropertyRef& property = model.TriProperties[std::size_t(e)];
        Print(text, formats::ElementLabel, e);
        Print(text, formats::Tri, n1, n2, n3, property.material, property.thickness);
    }
}

void PrintBeams(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::BeamCount, model.NELEM_B);
    for (int e = 0; e < model.NELEM_B; ++e) {
        const auto& [n1, n2] = model.BeamConnectivity[std::size_t(e)];
        const BeamPropertyRef& property = model.BeamProperties[std::size_t(e)];
        const Vector3& v = property.orientation;
        const BeamSectionRef& section = model.BeamSectionRefs[std::size_t(e)];
        Print(text, formats::ElementLabel, e);
        Print(text, formats::Beam, n1, n2, v[0], v[1], v[2], property.material, section.BeamSecType,
              section.BeamSecIndex, section.BeamSecOz, section.BeamSecMirrored ? 1 : 0);
    }
}

void PrintRestraints(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::RestraintCount, model.NRN);
    for (const Restraint& restraint : model.Restraints) {
        Print(text, formats::RestraintNode, restraint.node);
        for (int k = DX; k < RZ; ++k) {
            Print(text, formats::RestraintFlag, restraint.flags[k]);
            text.Text(" ");
        }
        Print(text, formats::LastRestraintFlag, restraint.flags[RZ]);
    }
}

void PrintForces(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::ForceCount, model.NFOR);
    for (const NodalForce& force : model.NodalForces) {
        Print(text, formats::ForceNode, force.node);
        for (int k = DX; k < RZ; ++k) { Print(text, formats::ForceComponent, force.components[k]); }
        Print(text, formats::LastForceComponent, force.components[RZ]);
    }
}

void PrintShellLoads(TextWriter& text, const char* countFormat, const std::vector<ShellDistributedLoad>& loads)
{
    Print(text, countFormat, int(loads.size()));
    for (const ShellDistributedLoad& load : loads) {
        Print(text, formats::ShellLoad, load.element, load.pressure[0], load.pressure[1], load.pressure[2]);
    }
}

void PrintBeamLoads(TextWriter& text, const ModelStore& model)
{
    Print(text, formats::BeamLoadCount, model.NDL_B);
    for (const BeamDistributedLoad& load : model.BeamDistributedLoads) {
        Print(text, formats::BeamLoad, load.element, load.q1, load.q2);
    }
}

} // namespace

void WriteModelText(const ModelStore& model, TextWriter& text)
{
    Print(text, formats::Release, formats::SupportedReleaseText);
    PrintMaterials(text, model);
    PrintThicknesses(text, model);
    PrintWebFlangeSections(text, formats::TSectionCount, model.TBeamSections);
    PrintWebFlangeSections(text, formats::LSectionCount, model.LBeamSections);
    PrintTubeSections(text, model);
    PrintNodes(text, model);
    PrintShells(text, model);
    PrintBeams(text, model);
    PrintRestraints(text, model);
    PrintForces(text, model);
    PrintShellLoads(text, formats::QuadLoadCount, model.QuadDistributedLoads);
    PrintShellLoads(text, formats::TriLoadCount, model.TriDistributedLoads);
    PrintBeamLoads(text, model);
}

bool WriteModelFile(const ModelStore& model, const char* fileName)
{
    TextFile file;
    if (!file.Open(fileName)) {
        return false;
    }
    WriteModelText(model, file.Text());
    return file.Close();
}

} // namespace tarnvexo
