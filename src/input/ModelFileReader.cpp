#include "input/ModelFileReader.h"

#include "core/Failure.h"
#include "core/Messages.h"
#include "core/ModelFileFormats.h"
#include "elements/ModelSetUp.h"
#include "input/FileText.h"
#include "input/FormatScanner.h"
#include "input/ModelTables.h"
#include "input/ScanDiagnostics.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"

#include <cerrno>

namespace tarnvexo {

namespace {

class ModelTextReader {
public:
    ModelTextReader(ModelStore& model, std::string_view text, const char* fileName)
        : model(model), source{text, fileName}, scanner(text)
    {
    }

    ModelReading Read();

private:
    // One per section, in file order; false: the run cannot go on, `fault` says why.
    bool ReadMaterials();
    bool ReadThicknesses();
    bool ReadWebFlangeSections(const char* countFormat, Table& table, int& count,
                               std::vector<WebFlangeSection>& sections);
    bool ReadTubeSections();
    bool ReadNodes();
    bool ReadQuads();
    bool ReadTris();
    bool ReadBeams();
    bool ReadRestraints();
    bool ReadForces();
    bool ReadShellLoads(const char* countFormat, Table& loads, int& count, const Table& elements,
                        std::vector<ShellDistributedLoad>& records);
    bool ReadBeamLoads();

    // A scan, with a warning when it did not match; the first with a format that the compiler knows.
    template <const auto& Format, class... Destinations>
    ScanResult Scan(const RecordName& record, Destinations&... destinations);
    template <class... Destinations>
    ScanResult Scan(const RecordName& record, const char* format, Destinations&... destinations);
    void SkipLabelLine(const RecordName& record);
    bool ReadCount(const char* format, std::size_t shortestRecord, Table& table, int& count);
    bool InTable(int index, const Table& table, const ScanResult& scan, int field, const RecordName& user)
    {
        return (index >= 0 && index < table.count) || OutsideTable(index, table, scan, field, user);
    }
    bool OutsideTable(int index, const Table& table, const ScanResult& scan, int field, const RecordName& user);
    template <std::size_t NodeCount>
    bool NodesInTable(const std::array<int, NodeCount>& nodes, const ScanResult& scan, const RecordName& user);
    bool BeamIndicesInTables(int materialIndex, const BeamSectionRef& section, const ScanResult& scan,
                             const RecordName& name);
    bool Fault(const TextFault& found);

    ModelStore& model;
    NamedText source;
    FormatScanner scanner;
    ScanWarnings warnings;
    std::string fault;

    Table materials = ModelTables[Materials];
    Table thicknesses = ModelTables[Thicknesses];
    Table tSections = ModelTables[TSections];
    Table lSections = ModelTables[LSections];
    Table cSections = ModelTables[CSections];
    Table nodes = ModelTables[Nodes];
    Table quads = ModelTables[Quads];
    Table tris = ModelTables[Tris];
    Table beams = ModelTables[Beams];
    Table restraints = ModelTables[Restraints];
    Table forces = ModelTables[Forces];
    Table quadLoads = ModelTables[QuadLoads];
    Table triLoads = ModelTables[TriLoads];
    Table beamLoads = ModelTables[BeamLoads];
};

ModelReading ModelTextReader::Read()
{
    ModelReading reading;
    double release = 0.0;
    const ScanResult header = Scan({"release"}, formats::Release, release);
    if (release != formats::SupportedRelease) {
        reading.end = ModelReading::End::WrongRelease;
        if (header.stored == 1) { // otherwise the scan's own warning says what stands there
            Fault({header.fieldBegin[0], "the file is of another release than this program reads", "release=3.0",
                   "write the model again with a pre-processor of that release"});
        }
    } else {
        const bool complete =
            ReadMaterials() && ReadThicknesses() &&
            ReadWebFlangeSections(formats::TSectionCount, tSections, model.NTBS, model.TBeamSections) &&
            ReadWebFlangeSections(formats::LSectionCount, lSections, model.NLBS, model.LBeamSections) &&
            ReadTubeSections() && ReadNodes() && ReadQuads() && ReadTris() && ReadBeams() && ReadRestraints() &&
            ReadForces() &&
            ReadShellLoads(formats::QuadLoadCount, quadLoads, model.NDL_S_4ND, quads, model.QuadDistributedLoads) &&
            ReadShellLoads(formats::TriLoadCount, triLoads, model.NDL_S_3ND, tris, model.TriDistributedLoads) &&
            ReadBeamLoads();
        reading.end = complete ? ModelReading::End::Complete : ModelReading::End::Fault;
    }
    reading.warnings = warnings.Lines(source);
    model.UnmatchedScans = warnings.Count();
    reading.fault = fault;
    return reading;
}

bool ModelTextReader::ReadMaterials()
{
    if (!ReadCount(formats::MaterialCount, formats::ShortestMaterial, materials, model.NMT)) {
        return false;
    }
    model.Materials.assign(std::size_t(model.NMT), {});
    int label = 0;
    for (int m = 0; m < model.NMT; ++m) {
        const RecordName name = {materials.record, m};
        Material& material = model.Materials[std::size_t(m)];
        Scan(name, formats::MaterialLabel, label);
        Scan(name, formats::MaterialE, material.E);
        Scan(name, formats::MaterialMu, material.Mu);
        Scan(name, formats::MaterialDensity, material.Density);
    }
    return true;
}

bool ModelTextReader::ReadThicknesses()
{
    if (!ReadCount(formats::ThicknessCount, formats::ShortestThickness, thicknesses, model.NTK)) {
        return false;
    }
    model.Thicknesses.assign(std::size_t(model.NTK), 0.0);
    int label = 0;
    for (int t = 0; t < model.NTK; ++t) {
        const RecordName name = {thicknesses.record, t};
        Scan(name, formats::ThicknessLabel, label);
        Scan(name, formats::ThicknessTK, model.Thicknesses[std::size_t(t)]);
    }
    return true;
}

bool ModelTextReader::ReadWebFlangeSections(const char* countFormat, Table& table, int& count,
                                            std::vector<WebFlangeSection>& sections)
{
    if (!ReadCount(countFormat, formats::ShortestWebFlangeSection, table, count)) {
        return false;
    }
    sections.assign(std::size_t(count), {});
    for (int s = 0; s < count; ++s) {
        const RecordName name = {table.record, s};
        WebFlangeSection& section = sections[std::size_t(s)];
        SkipLabelLine(name);
        Scan(name, formats::SectionHw, section.Hw);
        Scan(name, formats::SectionTw, section.Tw);
        Scan(name, formats::SectionBf, section.Bf);
        Scan(name, formats::SectionTf, section.Tf);
    }
    return true;
}

bool ModelTextReader::ReadTubeSections()
{
    if (!ReadCount(formats::CSectionCount, formats::ShortestTubeSection, cSections, model.NCBS)) {
        return false;
    }
    model.CBeamSections.assign(std::size_t(model.NCBS), {});
    for (int s = 0; s < model.NCBS; ++s) {
        const RecordName name = {cSections.record, s};
        CBeamSection& section = model.CBeamSections[std::size_t(s)];
        SkipLabelLine(name);
        Scan(name, formats::SectionR, section.R);
        Scan(name, formats::SectionT, section.T);
    }
    return true;
}

bool ModelTextReader::ReadNodes()
{
    if (!ReadCount(formats::NodeCount, formats::ShortestNode, nodes, model.NPOIN)) {
        return false;
    }
    Reserve(model.NodeCoordinates, std::size_t(model.NPOIN));
    int label = 0;
    for (int n = 0; n < model.NPOIN; ++n) {
        Vector3& node = model.NodeCoordinates.emplace_back();
        Scan<formats::Node>({nodes.record, n}, label, node[0], node[1], node[2]);
    }
    return true;
}

bool ModelTextReader::ReadQuads()
{
    if (!ReadCount(formats::QuadCount, formats::ShortestQuad, quads, model.NELEM_S_4ND)) {
        return false;
    }
    Reserve(model.QuadElements, std::size_t(model.NELEM_S_4ND));
    Reserve(model.QuadConnectivity, std::size_t(model.NELEM_S_4ND));
    Reserve(model.QuadProperties, std::size_t(model.NELEM_S_4ND));
    int label = 0, materialIndex = 0, thicknessIndex = 0;
    for (int e = 0; e < model.NELEM_S_4ND; ++e) {
        const RecordName name = {quads.record, e};
        std::array<int, QuadNodeCount>& corners = model.QuadConnectivity.emplace_back();
        Scan<formats::ElementLabel>(name, label);
        const ScanResult scan =
            Scan<formats::Quad>(name, corners[0], corners[1], corners[2], corners[3], materialIndex, thicknessIndex);
        if (!NodesInTable(corners, scan, name) || !InTable(materialIndex, materials, scan, QuadNodeCount, name) ||
            !InTable(thicknessIndex, thicknesses, scan, QuadNodeCount + 1, name)) {
            return false;
        }
        model.QuadProperties.push_back({materialIndex, thicknessIndex});
        model.QuadElements.emplace_back();
        SetUpQuad(model, std::size_t(e));
    }
    return true;
}

bool ModelTextReader::ReadTris()
{
    if (!ReadCount(formats::TriCount, formats::ShortestTri, tris, model.NELEM_S_3ND)) {
        return false;
    }
    Reserve(model.TriElements, std::size_t(model.NELEM_S_3ND));
    Reserve(model.TriConnectivity, std::size_t(model.NELEM_S_3ND));
    Reserve(model.TriProperties, std::size_t(model.NELEM_S_3ND));
    int label = 0, materialIndex = 0, thicknessIndex = 0;
    for (int e = 0; e < model.NELEM_S_3ND; ++e) {
        const RecordName name = {tris.record, e};
        std::array<int, TriNodeCount>& corners = model.TriConnectivity.emplace_back();
        Scan<formats::ElementLabel>(name, label);
        const ScanResult scan =
            Scan<formats::Tri>(name, corners[0], corners[1], corners[2], materialIndex, thicknessIndex);
        if (!NodesInTable(corners, scan, name) || !InTable(materialIndex, materials, scan, TriNodeCount, name) ||
            !InTable(thicknessIndex, thicknesses, scan, TriNodeCount + 1, name)) {
            return false;
        }
        model.TriProperties.push_back({materialIndex, thicknessIndex});
        model.TriElements.emplace_back();
        SetUpTri(model, std::size_t(e));
    }
    return true;
}

bool ModelTextReader::ReadBeams()
{
    if (!ReadCount(formats::BeamCount, formats::ShortestBeam, beams, model.NELEM_B)) {
        return false;
    }
    Reserve(model.BeamElements, std::size_t(model.NELEM_B));
    Reserve(model.BeamConnectivity, std::size_t(model.NELEM_B));
    Reserve(model.BeamSectionRefs, std::size_t(model.NELEM_B));
    Reserve(model.BeamProperties, std::size_t(model.NELEM_B));
    int label = 0, materialIndex = 0, mirrored = 0;
    Vector3 orientation = {};
    for (int e = 0; e < model.NELEM_B; ++e) {
        const RecordName name = {beams.record, e};
        std::array<int, BeamNodeCount>& ends = model.BeamConnectivity.emplace_back();
        BeamSectionRef& section = model.BeamSectionRefs.emplace_back();
        Scan<formats::ElementLabel>(name, label);
        const ScanResult scan =
            Scan<formats::Beam>(name, ends[0], ends[1], orientation[0], orientation[1], orientation[2], materialIndex,
                                section.BeamSecType, section.BeamSecIndex, section.BeamSecOz, mirrored);
        section.BeamSecMirrored = mirrored != 0;
        model.BeamProperties.push_back({materialIndex, orientation});
        if (!NodesInTable(ends, scan, name) || !BeamIndicesInTables(materialIndex, section, scan, name)) {
            return false;
        }
        model.BeamElements.emplace_back();
        SetUpBeam(model, std::size_t(e));
    }
    return true;
}

// Those of a beam of unknown section type mean nothing; it is reported when beam stresses are recovered.
bool ModelTextReader::BeamIndicesInTables(int materialIndex, const BeamSectionRef& section, const ScanResult& scan,
                                          const RecordName& name)
{
    const int type = section.BeamSecType;
    if (type != TSection && type != LSection && type != CSection) {
        return true;
    }
    const Table& sections = type == TSection ? tSections : type == LSection ? lSections : cSections;
    return InTable(materialIndex, materials, scan, BeamMaterial, name) &&
           InTable(section.BeamSecIndex, sections, scan, BeamIndex, name);
}

bool ModelTextReader::ReadRestraints()
{
    if (!ReadCount(formats::RestraintCount, formats::ShortestRestraint, restraints, model.NRN)) {
        return false;
    }
    model.Restraints.assign(std::size_t(model.NRN), {});
    for (int r = 0; r < model.NRN; ++r) {
        const RecordName name = {restraints.record, r};
        Restraint& restraint = model.Restraints[std::size_t(r)];
        const ScanResult scan = Scan(name, formats::RestraintNode, restraint.node);
        if (!InTable(restraint.node, nodes, scan, 0, name)) {
            return false;
        }
        for (int k = DX; k < RZ; ++k) { Scan(name, formats::RestraintFlag, restraint.flags[k]); }
        Scan(name, formats::LastRestraintFlag, restraint.flags[RZ]);
    }
    return true;
}

bool ModelTextReader::ReadForces()
{
    if (!ReadCount(formats::ForceCount, formats::ShortestForce, forces, model.NFOR)) {
        return false;
    }
    model.NodalForces.assign(std::size_t(model.NFOR), {});
    for (int f = 0; f < model.NFOR; ++f) {
        const RecordName name = {forces.record, f};
        NodalForce& force = model.NodalForces[std::size_t(f)];
        const ScanResult scan = Scan<formats::ForceNode>(name, force.node);
        if (!InTable(force.node, nodes, scan, 0, name)) {
            return false;
        }
        for (int k = DX; k < RZ; ++k) { Scan<formats::ForceComponent>(name, force.components[k]); }
        Scan<formats::LastForceComponent>(name, force.components[RZ]);
    }
    return true;
}

bool ModelTextReader::ReadShellLoads(const char* countFormat, Table& loads, int& count, const Table& elements,
                                     std::vector<ShellDistributedLoad>& records)
{
    if (!ReadCount(countFormat, formats::ShortestShellLoad, loads, count)) {
        return false;
    }
    records.assign(std::size_t(count), {});
    for (int l = 0; l < count; ++l) {
        const RecordName name = {loads.record, l};
        ShellDistributedLoad& load = records[std::size_t(l)];
        const ScanResult scan =
            Scan<formats::ShellLoad>(name, load.element, load.pressure[0], load.pressure[1], load.pressure[2]);
        if (!InTable(load.element, elements, scan, 0, name)) {
            return false;
        }
    }
    return true;
}

bool ModelTextReader::ReadBeamLoads()
{
    if (!ReadCount(formats::BeamLoadCount, formats::ShortestBeamLoad, beamLoads, model.NDL_B)) {
        return false;
    }
    model.BeamDistributedLoads.assign(std::size_t(model.NDL_B), {});
    for (int l = 0; l < model.NDL_B; ++l) {
        const RecordName name = {beamLoads.record, l};
        BeamDistributedLoad& load = model.BeamDistributedLoads[std::size_t(l)];
        const ScanResult scan = Scan<formats::BeamLoad>(name, load.element, load.q1, load.q2);
        if (!InTable(load.element, beams, scan, 0, name)) {
            return false;
        }
    }
    return true;
}

template <const auto& Format, class... Destinations>
ScanResult ModelTextReader::Scan(const RecordName& record, Destinations&... destinations)
{
    const ScanResult scan = scanner.Scan<Format>(destinations...);
    if (!scan.Matched()) {
        warnings.Add(source, scan, record);
    }
    return scan;
}

template <class... Destinations>
ScanResult ModelTextReader::Scan(const RecordName& record, const char* format, Destinations&... destinations)
{
    const ScanResult scan = scanner.Scan(format, destinations...);
    if (!scan.Matched()) {
        warnings.Add(source, scan, record);
    }
    return scan;
}

void ModelTextReader::SkipLabelLine(const RecordName& record)
{
    if (!scanner.SkipLine()) {
        ScanResult scan;
        scan.expected = formats::LabelCharacter;
        scan.stoppedAt = scanner.Position();
        warnings.Add(source, scan, record);
    }
}

bool ModelTextReader::ReadCount(const char* format, std::size_t shortestRecord, Table& table, int& count)
{
    const ScanResult scan = Scan({table.key}, format, count);
    table.count = count;
    table.countPosition = scan.stored == 1 ? scan.fieldBegin[0] : scan.stoppedAt;
    const std::string announced = Joined({table.key, "=", std::to_string(count)});
    if (count < 0) {
        return Fault({table.countPosition, Joined({announced, " is negative"}),
                      Joined({"the number of ", table.records, " that follow, 0 or more"}),
                      Joined({"correct ", table.key})});
    }
    const std::size_t most = scanner.BytesLeft() / shortestRecord;
    if (std::size_t(count) > most) {
        return Fault(
            {table.countPosition, Joined({announced, ", but the rest of the file cannot hold so many ", table.records}),
             Joined({"at most ", std::to_string(most), " (", std::to_string(scanner.BytesLeft()), " bytes follow, one ",
                     table.record, " takes ", std::to_string(shortestRecord), " or more)"}),
             Joined({"correct ", table.key, ", or write the file again if it was cut off"})});
    }
    return true;
}

// The fault of an index that the table does not have. `field` is the conversion of the scan that reads the index.
bool ModelTextReader::OutsideTable(int index, const Table& table, const ScanResult& scan, int field,
                                   const RecordName& user)
{
    const std::size_t position = field < scan.stored ? scan.fieldBegin[field] : scan.stoppedAt;
    return Fault(tarnvexo::OutsideTable(source.text, table, index, position, user));
}

// The nodes are the first conversions of the scan.
template <std::size_t NodeCount>
bool ModelTextReader::NodesInTable(const std::array<int, NodeCount>& indices, const ScanResult& scan,
                                   const RecordName& user)
{
    for (std::size_t i = 0; i < NodeCount; ++i) {
        if (!InTable(indices[i], nodes, scan, int(i), user)) {
            return false;
        }
    }
    return true;
}

bool ModelTextReader::Fault(const TextFault& found)
{
    fault = FaultMessage(source, found);
    return false;
}

} // namespace

ModelReading ReadModelText(ModelStore& model, std::string_view text, const char* fileName)
{
    return ModelTextReader(model, text, fileName).Read();
}

void ReadModelFile(ModelStore& model, const char* fileName)
{
    const FileText file(fileName);
    if (!file.IsRead()) {
        Warn(std::string(fileName) + ": error: the model file cannot be read: " + platform::ReasonOfFile(errno) +
             "\n"
             "  expected: a readable file of this name in the current directory\n"
             "  to do:    change to the directory of the model and start the program there");
        FailWithPause(messages::PreprocessorFileError);
    }
    const ModelReading reading = ReadModelText(model, file.Bytes(), fileName);
    platform::WriteErrorOutput(reading.warnings);
    switch (reading.end) {
    case ModelReading::End::Complete:
        return;
    case ModelReading::End::WrongRelease:
        Warn(reading.fault);
        FailWithKey(messages::ReleaseError);
    case ModelReading::End::Fault:
        FailWithDiagnostic(reading.fault.c_str());
    }
}

std::string ReadingReminder(const ModelStore& model, const char* fileName)
{
    if (model.UnmatchedScans == 0) {
        return "";
    }
    std::string text = fileName;
    text += ": warning: " + std::to_string(model.UnmatchedScans) + " scans of this file did not match its text\n";
    text += "  expected: none; what was not read kept its previous value or 0\n"
            "  to do:    mend the first of the places named at the start of the run; do not use these results";
    return text;
}

} // namespace tarnvexo
