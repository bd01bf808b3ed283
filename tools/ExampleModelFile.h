// ExampleModelFile.h
// Writes an ExampleModel as a model file, one record a line, ten significant digits.
// Errors: a file that cannot be written ends the program with a message.
#pragma once

#include "ExampleModel.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace tarnvexo::examples {

inline std::string NumberText(double value)
{
    char text[32];
    const double written = std::fabs(value) < 1e-12 ? 0.0 : value; // no "-0", no round-off of a cosine
    const auto end = std::to_chars(text, text + sizeof text, written, std::chars_format::general, 10);
    return std::string(text, end.ptr);
}

// Values with one separator between them: "1,2.5,3".
template <class Values> std::string JoinedText(const Values& values, const char* separator)
{
    std::string text;
    const char* before = "";
    for (const double value : values) {
        text += before;
        text += NumberText(value);
        before = separator;
    }
    return text;
}

inline void WriteWebFlangeSections(std::ofstream& file, const std::vector<NamedWebFlangeSection>& sections)
{
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const WebFlangeSection& size = sections[i].size;
        file << "#" << i << ": " << sections[i].name << "\n";
        file << "Hw=" << NumberText(size.Hw) << "\nTw=" << NumberText(size.Tw) << "\n";
        file << "Bf=" << NumberText(size.Bf) << "\nTf=" << NumberText(size.Tf) << "\n";
    }
}

template <int Nodes> void WritePlates(std::ofstream& file, const std::vector<PlateRecord<Nodes>>& plates)
{
    for (std::size_t e = 0; e < plates.size(); ++e) {
        file << e << ":" << JoinedText(plates[e].nodes, ",") << "[0," << plates[e].thickness << "]\n";
    }
}

inline void WritePlateLoads(std::ofstream& file, const std::vector<ShellDistributedLoad>& loads)
{
    for (const ShellDistributedLoad& load : loads) {
        file << load.element << ":" << JoinedText(load.pressure, ",") << "\n";
    }
}

inline void WriteModelFile(const ExampleModel& model, const std::filesystem::path& directory)
{
    std::filesystem::create_directories(directory);
    const std::filesystem::path path = directory / "fem_solving.txt";
    std::ofstream file(path, std::ios::binary); // "\n" on every system: the files are compared byte by byte

    file << "### Quor_Tarn+Vexo release=3.0 ###\n";
    file << "Number of materials:NMT=1\n#0:\n";
    file << "E=" << NumberText(model.material.E) << "\nMu=" << NumberText(model.material.Mu)
         << "\nDensity=" << NumberText(model.material.Density) << "\n";
    file << "Number of shell thicknesses:NTK=" << model.thicknesses.size() << "\n";
    for (std::size_t i = 0; i < model.thicknesses.size(); ++i) {
        file << "#" << i << ":\nTK=" << NumberText(model.thicknesses[i]) << "\n";
    }
    file << "Number of T_beam sections:NTBS=" << model.tSections.size() << "\n";
    WriteWebFlangeSections(file, model.tSections);
    file << "Number of L_beam sections:NLBS=" << model.lSections.size() << "\n";
    WriteWebFlangeSections(file, model.lSections);
    file << "Number of C_beam sections:NCBS=" << model.tubeSections.size() << "\n";
    for (std::size_t i = 0; i < model.tubeSections.size(); ++i) {
        file << "#" << i << ": " << model.tubeSections[i].name << "\n";
        file << "R=" << NumberText(model.tubeSections[i].size.R) << "\nT=" << NumberText(model.tubeSections[i].size.T)
             << "\n";
    }

    file << "Number of nodal points:NPOIN=" << model.nodes.size() << "\n";
    for (std::size_t n = 0; n < model.nodes.size(); ++n) {
        file << n << ":" << JoinedText(model.nodes[n], ",") << "\n";
    }
    file << "Number of four-nodes shell elements:NELEM_S_4ND=" << model.quads.size() << "\n";
    WritePlates(file, model.quads);
    file << "Number of three-nodes shell elements:NELEM_S_3ND=" << model.tris.size() << "\n";
    WritePlates(file, model.tris);
    file << "Number of beam elements:NELEM_B=" << model.beams.size() << "\n";
    for (std::size_t e = 0; e < model.beams.size(); ++e) {
        const BeamRecord& beam = model.beams[e];
        file << e << ":" << JoinedText(beam.nodes, ",") << "<" << JoinedText(beam.orientation, ",")
             << ">[0,BeamSecType=" << beam.section.BeamSecType << ",BeamSecIndex=" << beam.section.BeamSecIndex
             << ",BeamSecOz=" << NumberText(beam.section.BeamSecOz)
             << ",BeamSecMirrored=" << (beam.section.BeamSecMirrored ? 1 : 0) << "]\n";
    }

    file << "Number of restricted nodal points:NRN=" << model.restraints.size() << "\n";
    for (const Restraint& restraint : model.restraints) {
        file << restraint.node << ":" << JoinedText(restraint.flags, " ") << "\n";
    }
    file << "Number of forces:NFOR=" << model.forces.size() << "\n";
    for (const NodalForce& force : model.forces) {
        file << force.node << "<" << JoinedText(force.components, ",") << ">\n";
    }
    file << "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=" << model.quadLoads.size() << "\n";
    WritePlateLoads(file, model.quadLoads);
    file << "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=" << model.triLoads.size() << "\n";
    WritePlateLoads(file, model.triLoads);
    file << "Number of distributed loads on beam elements:NDL_B=" << model.beamLoads.size() << "\n";
    for (const BeamDistributedLoad& load : model.beamLoads) {
        file << load.element << ":" << NumberText(load.q1) << "," << NumberText(load.q2) << "\n";
    }

    file.close();
    if (!file) {
        std::fprintf(stderr, "%s cannot be written\n", path.string().c_str());
        std::exit(1);
    }
}

} // namespace tarnvexo::examples
