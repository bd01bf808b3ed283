#include "support/ContourText.h"

#include "core/TextWriter.h"

namespace tarnvexo::test {

namespace {

TextWriter& Write(TextWriter& text, double value)
{
    return text.Number(value);
}
TextWriter& Write(TextWriter& text, int value)
{
    return text.Integer(value);
}

template <class Values> void WriteLine(TextWriter& text, const Values& values)
{
    Write(text, values[0]);
    for (std::size_t i = 1; i < values.size(); ++i) { Write(text.Text(","), values[i]); }
    text.EndLine();
}

void WriteNodes(TextWriter& text, const ContourNodes& nodes)
{
    text.Text("NPOIN=").Integer(static_cast<long long>(nodes.coordinates.size())).EndLine();
    for (const Vector3& node : nodes.coordinates) { WriteLine(text, node); }
    for (const ContourDisplacement& displacement : nodes.displacements) { WriteLine(text, displacement); }
}

template <int Nodes> void WriteShells(TextWriter& text, const char* key, const ContourShells<Nodes>& shells)
{
    const std::size_t count = shells.connectivity.size();
    text.Text(key).Integer(static_cast<long long>(count)).EndLine();
    for (std::size_t e = 0; e < count; ++e) {
        WriteLine(text, shells.connectivity[e]);
        for (int i = 0; i < Nodes; ++i) {
            WriteLine(text, shells.positiveFace[e][i]);
            WriteLine(text, shells.negativeFace[e][i]);
        }
    }
}

void WriteEnd(TextWriter& text, const char* key, const Vector3& end)
{
    text.Text(key).Number(end[0]).Text(",").Number(end[1]).Text(",").Number(end[2]).Text(")").EndLine();
}

} // namespace

std::string ContourText(const ContourModel& model)
{
    std::string written;
    {
        TextWriter text([&](std::string_view piece) { written += piece; }, 4096);
        WriteNodes(text, model.nodes);
        WriteShells(text, "NELEM_S_4ND=", model.quads);
        WriteShells(text, "NELEM_S_3ND=", model.tris);
        text.Text("NELEM_B=").Integer(static_cast<long long>(model.beams.size())).EndLine();
        for (std::size_t b = 0; b < model.beams.size(); ++b) {
            const ContourBeam& beam = model.beams[b];
            text.Text("BEI=").Integer(static_cast<long long>(b)).EndLine();
            WriteEnd(text, "SND(", beam.end1);
            WriteEnd(text, "END(", beam.end2);
            WriteNodes(text, beam.nodes);
            WriteShells(text, "NELEM=", beam.walls);
        }
    }
    return written;
}

} // namespace tarnvexo::test
