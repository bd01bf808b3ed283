#include "input/StrictReader.h"

#include "core/ModelFileFormats.h"
#include "elements/BeamSection.h"
#include "elements/ModelSetUp.h"
#include "input/FormatScanner.h"
#include "input/ModelTables.h"
#include "input/SectionHeaders.h"
#include "input/SourceExcerpt.h"
#include "input/TextKind.h"
#include "platform/Platform.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

namespace tarnvexo {

namespace {

constexpr double SmallestSine = 1e-6; // between a beam and its orientation
// Of the largest component of an orientation: its products with coordinates stay within the range of a double.
constexpr double ShortestOrientation = 1e-100, LongestOrientation = 1e100;
constexpr std::size_t LongestWritten = 40;

constexpr const char* ReleaseLine = "### Quor_Tarn+Vexo release=3.0 ###";

// By TableId, as a user writes them.
constexpr const char* RecordLayouts[TableCount] = {
    "#number: E=... Mu=... Density=...",
    "#number: TK=...",
    "a label line, Hw=... Tw=... Bf=... Tf=...",
    "a label line, Hw=... Tw=... Bf=... Tf=...",
    "a label line, R=... T=...",
    "number:x,y,z",
    "number:n1,n2,n3,n4[material,thickness]",
    "number:n1,n2,n3[material,thickness]",
    "number:n1,n2<vx,vy,vz>[material,BeamSecType=...,BeamSecIndex=...,BeamSecOz=...,BeamSecMirrored=...]",
    "node:dx dy dz rx ry rz",
    "node<Fx,Fy,Fz,Mx,My,Mz>",
    "element:q1,q2,q3",
    "element:q1,q2,q3",
    "element:q1,q2",
};

// Where a table stands in the text and how it was read.
struct TableReading : Table {
    explicit TableReading(const Table& table = {}) : Table(table) {}

    bool isThere = false;
    bool isCounted = false; // the count can be believed
    bool isSound = false;   // every record fitted, as many as counted
    int recordCount = 0;    // found
    int damages = 0;        // places that do not fit: each may be a record, or part of one, or none
    int limit = INT_MAX;    // indices below it are accepted
    bool labelsTold = false;
};

// Which record was the first to name a node or an element.
class FirstUses {
public:
    explicit FirstUses(std::size_t count) : recordOf(count, -1) {}

    // The record that named it before, -1: none.
    int Before(int index, int record)
    {
        if (static_cast<std::size_t>(index) >= recordOf.size()) {
            return -1;
        }
        int& first = recordOf[static_cast<std::size_t>(index)];
        if (first < 0) {
            first = record;
            return -1;
        }
        return first;
    }

private:
    std::vector<int> recordOf;
};

class StrictTextReader {
public:
    StrictTextReader(ModelStore& model, std::string_view text, const char* fileName, const RuleBook& rules)
        : model(model), text(text), source{text, fileName}, scanner(text), diagnostics(source, rules)
    {
        for (int t = 0; t < TableCount; ++t) { tables[t] = TableReading(ModelTables[t]); }
    }

    StrictReading Read();

private:
    bool ReadRelease();
    void ReadMaterials();
    void ReadThicknesses();
    void ReadWebFlangeSections(TableId id, const char* countFormat, int& count,
                               std::vector<WebFlangeSection>& sections);
    void ReadTubeSections();
    void ReadNodes();
    void ReadQuads();
    void ReadTris();
    void ReadBeams();
    void ReadRestraints();
    void ReadForces();
    void ReadShellLoads(TableId id, const char* countFormat, TableId elements, int& count,
                        std::vector<ShellDistributedLoad>& loads);
    void ReadBeamLoads();
    void ReadEnd();

    // A table: its count, then its records with readRecord(), which returns whether the text of one fitted.
    // The arrays get room for as many as the text can hold.
    template <class ReadRecord, class... Records>
    void ReadTable(TableId id, const char* countFormat, std::size_t shortestRecord, int& count,
                   const ReadRecord& readRecord, std::vector<Records>&... arrays);
    bool OpenTable(TableId id, const char* countFormat);
    bool OpenBehindFault(TableId id, const char* countFormat, ScanResult scan);
    void ReportTextBetween(TableId last, std::size_t begin, std::size_t end, const char* countFormat);
    void TakeCount(TableId id, const ScanResult& scan, int count);
    void SkipTextBehindCount(TableId id, std::size_t behind);
    void CloseTable(TableId id, int doubtful);
    struct Recovery {
        int records;  // that the fault used up
        int doubtful; // lines skipped that may be records
        bool isEnd;   // of the table
    };
    Recovery Recover(TableId id);
    std::size_t NextRecord(std::size_t lineBegin, TableId id, int& doubtful) const;

    // True: the scan matched. Its values may still be none that the text says, which is told.
    bool Fits(const ScanResult& scan, const RecordName& record)
    {
        return (scan.Matched() && scan.oddField < 0) || FitsOddly(scan, record);
    }
    bool FitsOddly(const ScanResult& scan, const RecordName& record);
    bool SkipLabelLine();

    void CheckLabel(int label, TableId id, const ScanResult& scan)
    {
        if (label != tables[id].recordCount && !tables[id].labelsTold) {
            TellLabel(label, id, scan);
        }
    }
    void TellLabel(int label, TableId id, const ScanResult& scan);
    bool InTable(int index, TableId id, std::size_t position, const RecordName& user)
    {
        return (index >= 0 && index < tables[id].limit) || IsOutside(index, id, position, user);
    }
    bool IsOutside(int index, TableId id, std::size_t position, const RecordName& user);
    template <std::size_t Count>
    bool NodesInTable(const std::array<int, Count>& nodes, const ScanResult& scan, const RecordName& user);
    bool IsFinite(double value, std::size_t position, const RecordName& record)
    {
        return std::isfinite(value) || IsNotFinite(position, record);
    }
    bool IsNotFinite(std::size_t position, const RecordName& record);
    void CheckMaterial(const Material& material, const std::size_t positions[3], const RecordName& name);
    // Of a dimension that was read at a position: above 0, or 0 as well.
    void CheckSize(RuleId rule, double value, bool mayBeZero, const char* key, std::size_t position,
                   const RecordName& name);
    void CheckOrientation(const std::array<int, BeamNodeCount>& ends, const Vector3& orientation, std::size_t position,
                          const RecordName& name);
    void CheckConstants(const BeamSectionConstants& section, std::size_t position, const RecordName& name);
    void CheckFlag(int flag, std::size_t position, const char* expected, const RecordName& name);
    void CheckFirst(FirstUses& uses, RuleId rule, int index, const char* what, std::size_t position,
                    const RecordName& name);

    void Report(RuleId rule, TextFault fault)
    {
        if (diagnostics.Adds(rule, fault.position)) {
            diagnostics.Keep(rule, std::move(fault));
        }
    }
    void ReportMismatch(const ScanResult& scan, const std::string& subject, const std::string& layout);
    void ReportTextBehind(std::size_t position, const std::string& subject);
    void ReportCount(TableId id, long long records);
    void ReportMore(TableId id, int more);
    void ReportEnd(const std::string& where, const std::string& expected);

    bool IsSoundSoFar() const { return diagnostics.Errors() == 0; }
    RecordName NameOfRecord(TableId id) const { return {tables[id].record, tables[id].recordCount}; }
    std::string NameOfPrevious(TableId id) const;
    std::size_t Ahead(std::size_t position) const;
    std::size_t EndBefore(std::size_t position) const;
    bool IsFirstOfLine(std::size_t position) const;
    std::size_t NextLine(std::size_t position) const { return std::min(text.size(), text.find('\n', position)) + 1; }
    std::string Written(std::size_t position) const;

    ModelStore& model;
    std::string_view text;
    NamedText source;
    FormatScanner scanner;
    SourceDiagnostics diagnostics;
    TableReading tables[TableCount];
    bool hasEnded = false; // nothing more can be read
    int firstTold = 0;     // tables before this one are known to be missing
    ScanResult failed;     // the last scan that did not match
    std::size_t recordBegin = 0, previousBegin = 0;
};

// ------------------------------------------------------------ the file

StrictReading StrictTextReader::Read()
{
    if (const TextFault fault = FaultOfTextKind(text); !fault.what.empty()) {
        diagnostics.Adds(RuleId::Format, fault.position);
        diagnostics.KeepWithoutLine(RuleId::Format, fault);
    } else if (ReadRelease()) {
        ReadMaterials();
        ReadThicknesses();
        ReadWebFlangeSections(TSections, formats::TSectionCount, model.NTBS, model.TBeamSections);
        ReadWebFlangeSections(LSections, formats::LSectionCount, model.NLBS, model.LBeamSections);
        ReadTubeSections();
        ReadNodes();
        ReadQuads();
        ReadTris();
        ReadBeams();
        ReadRestraints();
        ReadForces();
        ReadShellLoads(QuadLoads, formats::QuadLoadCount, Quads, model.NDL_S_4ND, model.QuadDistributedLoads);
        ReadShellLoads(TriLoads, formats::TriLoadCount, Tris, model.NDL_S_3ND, model.TriDistributedLoads);
        ReadBeamLoads();
        ReadEnd();
    }
    return diagnostics.Result();
}

bool StrictTextReader::ReadRelease()
{
    constexpr std::size_t farEnough = 10000; // for the first section of a file whose first line is damaged
    double release = 0.0;
    const ScanResult scan = scanner.Scan(formats::Release, release);
    if (scan.stored == 1 && release != formats::SupportedRelease) {
        Report(RuleId::Format, {scan.fieldBegin[0], "the file is of another release than this program reads",
                                Joined({"release=", formats::SupportedReleaseText}),
                                "write the model again with a pre-processor of that release"});
        return false;
    }
    if (Fits(scan, {"release"})) {
        return true;
    }
    const SectionHeader first = NextHeader(text.substr(0, std::min(text.size(), farEnough)), 0);
    if (first.IsThere()) {
        ReportMismatch(scan, "the first line", ReleaseLine);
        scanner.Seek(first.begin);
        return true;
    }
    if (Ahead(scan.stoppedAt) == text.size()) {
        ReportEnd("within its first line", "a model file from its first line to its last");
        return false;
    }
    Report(RuleId::Format, {Ahead(0), "the file does not begin as a model file does", ReleaseLine,
                            "name a model file; this seems to be something else"});
    return false;
}

void StrictTextReader::ReadMaterials()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Materials);
        Material& material = model.Materials.emplace_back();
        int label = 0;
        const ScanResult labelScan = scanner.Scan(formats::MaterialLabel, label);
        if (!Fits(labelScan, name)) {
            return false;
        }
        std::size_t positions[3];
        const std::pair<const char*, double*> fields[3] = {{formats::MaterialE, &material.E},
                                                           {formats::MaterialMu, &material.Mu},
                                                           {formats::MaterialDensity, &material.Density}};
        for (int i = 0; i < 3; ++i) {
            const ScanResult scan = scanner.Scan(fields[i].first, *fields[i].second);
            if (!Fits(scan, name)) {
                return false;
            }
            positions[i] = scan.fieldBegin[0];
        }
        CheckLabel(label, Materials, labelScan);
        CheckMaterial(material, positions, name);
        return true;
    };
    ReadTable(Materials, formats::MaterialCount, formats::ShortestMaterial, model.NMT, readRecord, model.Materials);
}

void StrictTextReader::ReadThicknesses()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Thicknesses);
        double& TK = model.Thicknesses.emplace_back();
        int label = 0;
        const ScanResult labelScan = scanner.Scan(formats::ThicknessLabel, label);
        if (!Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan = scanner.Scan(formats::ThicknessTK, TK);
        if (!Fits(scan, name)) {
            return false;
        }
        CheckLabel(label, Thicknesses, labelScan);
        CheckSize(RuleId::ThicknessValue, TK, false, "TK", scan.fieldBegin[0], name);
        return true;
    };
    ReadTable(Thicknesses, formats::ThicknessCount, formats::ShortestThickness, model.NTK, readRecord,
              model.Thicknesses);
}

void StrictTextReader::ReadWebFlangeSections(TableId id, const char* countFormat, int& count,
                                             std::vector<WebFlangeSection>& sections)
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(id);
        WebFlangeSection& section = sections.emplace_back();
        if (!SkipLabelLine()) {
            return false;
        }
        struct Field {
            const char* format;
            const char* key;
            double& value;
            bool mayBeZero; // a section without flange is the rectangle of its web
        };
        const Field fields[] = {{formats::SectionHw, "Hw", section.Hw, false},
                                {formats::SectionTw, "Tw", section.Tw, false},
                                {formats::SectionBf, "Bf", section.Bf, true},
                                {formats::SectionTf, "Tf", section.Tf, true}};
        for (const Field& field : fields) {
            const ScanResult scan = scanner.Scan(field.format, field.value);
            if (!Fits(scan, name)) {
                return false;
            }
            CheckSize(RuleId::SectionValue, field.value, field.mayBeZero, field.key, scan.fieldBegin[0], name);
        }
        return true;
    };
    ReadTable(id, countFormat, formats::ShortestWebFlangeSection, count, readRecord, sections);
}

void StrictTextReader::ReadTubeSections()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(CSections);
        CBeamSection& section = model.CBeamSections.emplace_back();
        if (!SkipLabelLine()) {
            return false;
        }
        const ScanResult radius = scanner.Scan(formats::SectionR, section.R);
        if (!Fits(radius, name)) {
            return false;
        }
        CheckSize(RuleId::SectionValue, section.R, false, "R", radius.fieldBegin[0], name);
        const ScanResult wall = scanner.Scan(formats::SectionT, section.T);
        if (!Fits(wall, name)) {
            return false;
        }
        CheckSize(RuleId::SectionValue, section.T, false, "T", wall.fieldBegin[0], name);
        if (section.R > 0.0 && section.T > 2.0 * section.R &&
            diagnostics.Adds(RuleId::SectionValue, wall.fieldBegin[0])) {
            diagnostics.Keep(RuleId::SectionValue,
                             {wall.fieldBegin[0],
                              Joined({NameOf(name), ": the wall, T=", Written(wall.fieldBegin[0]),
                                      ", is thicker than the whole tube with R=", Written(radius.fieldBegin[0])}),
                              "T of at most 2*R, the bar without a hole", "correct T, or R, the mean radius"});
        }
        return true;
    };
    ReadTable(CSections, formats::CSectionCount, formats::ShortestTubeSection, model.NCBS, readRecord,
              model.CBeamSections);
}

void StrictTextReader::ReadNodes()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Nodes);
        Vector3& node = model.NodeCoordinates.emplace_back();
        int label = 0;
        const ScanResult scan = scanner.Scan<formats::Node>(label, node[0], node[1], node[2]);
        if (!Fits(scan, name)) {
            return false;
        }
        CheckLabel(label, Nodes, scan);
        bool isPlace = scan.oddField < 0;
        for (int k = 0; k < 3; ++k) { isPlace = IsFinite(node[k], scan.fieldBegin[1 + k], name) && isPlace; }
        tables[Nodes].isSound = tables[Nodes].isSound && isPlace;
        return true;
    };
    ReadTable(Nodes, formats::NodeCount, formats::ShortestNode, model.NPOIN, readRecord, model.NodeCoordinates);
}

void StrictTextReader::ReadQuads()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Quads);
        std::array<int, QuadNodeCount> nodes;
        ShellPropertyRef property;
        int label = 0;
        const ScanResult labelScan = scanner.Scan<formats::ElementLabel>(label);
        if (!Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan =
            scanner.Scan<formats::Quad>(nodes[0], nodes[1], nodes[2], nodes[3], property.material, property.thickness);
        if (!Fits(scan, name)) {
            return false;
        }
        CheckLabel(label, Quads, labelScan);
        NodesInTable(nodes, scan, name);
        InTable(property.material, Materials, scan.fieldBegin[QuadNodeCount], name);
        InTable(property.thickness, Thicknesses, scan.fieldBegin[QuadNodeCount + 1], name);
        if (IsSoundSoFar()) {
            model.QuadElements.emplace_back();
            model.QuadConnectivity.push_back(nodes);
            model.QuadProperties.push_back(property);
            SetUpQuad(model, model.QuadElements.size() - 1);
        }
        return true;
    };
    ReadTable(Quads, formats::QuadCount, formats::ShortestQuad, model.NELEM_S_4ND, readRecord, model.QuadElements,
              model.QuadConnectivity, model.QuadProperties);
}

void StrictTextReader::ReadTris()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Tris);
        std::array<int, TriNodeCount> nodes;
        ShellPropertyRef property;
        int label = 0;
        const ScanResult labelScan = scanner.Scan<formats::ElementLabel>(label);
        if (!Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan =
            scanner.Scan<formats::Tri>(nodes[0], nodes[1], nodes[2], property.material, property.thickness);
        if (!Fits(scan, name)) {
            return false;
        }
        CheckLabel(label, Tris, labelScan);
        NodesInTable(nodes, scan, name);
        InTable(property.material, Materials, scan.fieldBegin[TriNodeCount], name);
        InTable(property.thickness, Thicknesses, scan.fieldBegin[TriNodeCount + 1], name);
        if (IsSoundSoFar()) {
            model.TriElements.emplace_back();
            model.TriConnectivity.push_back(nodes);
            model.TriProperties.push_back(property);
            SetUpTri(model, model.TriElements.size() - 1);
        }
        return true;
    };
    ReadTable(Tris, formats::TriCount, formats::ShortestTri, model.NELEM_S_3ND, readRecord, model.TriElements,
              model.TriConnectivity, model.TriProperties);
}

void StrictTextReader::ReadBeams()
{
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Beams);
        std::array<int, BeamNodeCount> ends;
        BeamPropertyRef property;
        BeamSectionRef section;
        Vector3& v = property.orientation;
        int label = 0, mirrored = 0;
        const ScanResult labelScan = scanner.Scan<formats::ElementLabel>(label);
        if (!Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan =
            scanner.Scan<formats::Beam>(ends[0], ends[1], v[0], v[1], v[2], property.material, section.BeamSecType,
                                        section.BeamSecIndex, section.BeamSecOz, mirrored);
        if (!Fits(scan, name)) {
            return false;
        }
        const std::size_t* const at = scan.fieldBegin;
        CheckLabel(label, Beams, labelScan);
        CheckFlag(mirrored, at[BeamMirrored], "0; 1 for an L section whose flange points to -y'", name);
        section.BeamSecMirrored = mirrored != 0;
        bool isSound = NodesInTable(ends, scan, name);
        for (int k = 0; k < 3; ++k) { isSound = IsFinite(v[k], at[BeamVx + k], name) && isSound; }
        InTable(property.material, Materials, at[BeamMaterial], name);
        IsFinite(section.BeamSecOz, at[BeamOz], name);
        const int type = section.BeamSecType;
        if (type == TSection || type == LSection || type == CSection) {
            const TableId sections = type == TSection ? TSections : type == LSection ? LSections : CSections;
            InTable(section.BeamSecIndex, sections, at[BeamIndex], name);
        } else {
            Report(RuleId::Format, {at[BeamType], Joined({NameOf(name), " has section type ", std::to_string(type)}),
                                    "BeamSecType=0 (T), 1 (L) or 2 (tube)", "correct the record of this beam"});
        }
        if (isSound && tables[Nodes].isSound) {
            CheckOrientation(ends, v, at[BeamVx], name);
        }
        if (IsSoundSoFar()) {
            model.BeamElements.emplace_back();
            model.BeamConnectivity.push_back(ends);
            model.BeamProperties.push_back(property);
            model.BeamSectionRefs.push_back(section);
            SetUpBeam(model, model.BeamElements.size() - 1);
            CheckConstants(model.BeamElements.back().section, at[BeamIndex], name);
        }
        return true;
    };
    ReadTable(Beams, formats::BeamCount, formats::ShortestBeam, model.NELEM_B, readRecord, model.BeamElements,
              model.BeamConnectivity, model.BeamProperties, model.BeamSectionRefs);
}

void StrictTextReader::ReadRestraints()
{
    FirstUses uses(model.NodeCoordinates.size());
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Restraints);
        Restraint& restraint = model.Restraints.emplace_back();
        const ScanResult nodeScan = scanner.Scan(formats::RestraintNode, restraint.node);
        if (!Fits(nodeScan, name)) {
            return false;
        }
        for (int k = DX; k < DofsPerNode; ++k) {
            const ScanResult scan =
                scanner.Scan(k < RZ ? formats::RestraintFlag : formats::LastRestraintFlag, restraint.flags[k]);
            if (!Fits(scan, name)) {
                return false;
            }
            CheckFlag(restraint.flags[k], scan.fieldBegin[0], "1 holds the direction, 0 leaves it free", name);
        }
        if (InTable(restraint.node, Nodes, nodeScan.fieldBegin[0], name)) {
            CheckFirst(uses, RuleId::DuplicateRestraint, restraint.node, "node", nodeScan.fieldBegin[0], name);
        }
        return true;
    };
    ReadTable(Restraints, formats::RestraintCount, formats::ShortestRestraint, model.NRN, readRecord, model.Restraints);
}

void StrictTextReader::ReadForces()
{
    FirstUses uses(model.NodeCoordinates.size());
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(Forces);
        NodalForce& force = model.NodalForces.emplace_back();
        const ScanResult nodeScan = scanner.Scan<formats::ForceNode>(force.node);
        if (!Fits(nodeScan, name)) {
            return false;
        }
        for (int k = DX; k < DofsPerNode; ++k) {
            const ScanResult scan = k < RZ ? scanner.Scan<formats::ForceComponent>(force.components[k])
                                           : scanner.Scan<formats::LastForceComponent>(force.components[k]);
            if (!Fits(scan, name)) {
                return false;
            }
            IsFinite(force.components[k], scan.fieldBegin[0], name);
        }
        if (InTable(force.node, Nodes, nodeScan.fieldBegin[0], name)) {
            CheckFirst(uses, RuleId::DuplicateLoad, force.node, "node", nodeScan.fieldBegin[0], name);
        }
        return true;
    };
    ReadTable(Forces, formats::ForceCount, formats::ShortestForce, model.NFOR, readRecord, model.NodalForces);
}

void StrictTextReader::ReadShellLoads(TableId id, const char* countFormat, TableId elements, int& count,
                                      std::vector<ShellDistributedLoad>& loads)
{
    FirstUses uses(static_cast<std::size_t>(tables[elements].recordCount));
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(id);
        ShellDistributedLoad& load = loads.emplace_back();
        const ScanResult scan =
            scanner.Scan<formats::ShellLoad>(load.element, load.pressure[0], load.pressure[1], load.pressure[2]);
        if (!Fits(scan, name)) {
            return false;
        }
        for (int k = 0; k < 3; ++k) { IsFinite(load.pressure[k], scan.fieldBegin[1 + k], name); }
        if (InTable(load.element, elements, scan.fieldBegin[0], name)) {
            CheckFirst(uses, RuleId::DuplicateLoad, load.element, tables[elements].record, scan.fieldBegin[0], name);
        }
        return true;
    };
    ReadTable(id, countFormat, formats::ShortestShellLoad, count, readRecord, loads);
}

void StrictTextReader::ReadBeamLoads()
{
    FirstUses uses(static_cast<std::size_t>(tables[Beams].recordCount));
    const auto readRecord = [&] {
        const RecordName name = NameOfRecord(BeamLoads);
        BeamDistributedLoad& load = model.BeamDistributedLoads.emplace_back();
        const ScanResult scan = scanner.Scan<formats::BeamLoad>(load.element, load.q1, load.q2);
        if (!Fits(scan, name)) {
            return false;
        }
        IsFinite(load.q1, scan.fieldBegin[1], name);
        IsFinite(load.q2, scan.fieldBegin[2], name);
        if (InTable(load.element, Beams, scan.fieldBegin[0], name)) {
            CheckFirst(uses, RuleId::DuplicateLoad, load.element, "beam", scan.fieldBegin[0], name);
        }
        return true;
    };
    ReadTable(BeamLoads, formats::BeamLoadCount, formats::ShortestBeamLoad, model.NDL_B, readRecord,
              model.BeamDistributedLoads);
}

void StrictTextReader::ReadEnd()
{
    const std::size_t rest = Ahead(scanner.Position());
    const TableReading& last = tables[BeamLoads];
    if (hasEnded || !last.isThere || rest == text.size()) {
        return;
    }
    if (last.isCounted && BeginsRecord(text, rest, BeamLoads)) {
        ReportMore(BeamLoads, CountRecords(text.substr(rest), BeamLoads));
    } else if (last.recordCount > 0 && !IsFirstOfLine(rest)) {
        ReportTextBehind(rest, NameOfPrevious(BeamLoads));
    } else {
        Report(RuleId::TrailingText, {rest, "text behind the last section, which is not read", "the end of the file",
                                      "take the text away, or correct the counts above it"});
    }
}

// ------------------------------------------------------------ tables

template <class ReadRecord, class... Records>
void StrictTextReader::ReadTable(TableId id, const char* countFormat, std::size_t shortestRecord, int& count,
                                 const ReadRecord& readRecord, std::vector<Records>&... arrays)
{
    (arrays.clear(), ...);
    count = 0;
    if (!OpenTable(id, countFormat)) {
        return;
    }
    TableReading& table = tables[id];
    const int announced = table.isCounted ? table.count : INT_MAX;
    if (table.isCounted) {
        const std::size_t room = std::min(static_cast<std::size_t>(announced), scanner.BytesLeft() / shortestRecord);
        (Reserve(arrays, room), ...);
    }
    int doubtful = 0;
    previousBegin = table.countPosition;
    while (table.recordCount < announced) {
        recordBegin = scanner.Position();
        if (readRecord()) {
            previousBegin = recordBegin;
            ++table.recordCount;
            continue;
        }
        const Recovery recovery = Recover(id);
        table.recordCount += recovery.records;
        table.damages += recovery.isEnd ? 0 : 1;
        doubtful += recovery.doubtful;
        if (recovery.isEnd) {
            break;
        }
    }
    CloseTable(id, doubtful);
    count = table.count;
}

// The count of a table. False: the table is not there.
bool StrictTextReader::OpenTable(TableId id, const char* countFormat)
{
    if (hasEnded) {
        return false;
    }
    int count = 0;
    const std::size_t begin = scanner.Position();
    const ScanResult scan = scanner.Scan(countFormat, count);
    if (!scan.Matched()) {
        scanner.Seek(begin);
        return OpenBehindFault(id, countFormat, scan);
    }
    TakeCount(id, scan, count);
    return true;
}

// The text is not the header of the section: it stands further on, is written otherwise, or is not there.
bool StrictTextReader::OpenBehindFault(TableId id, const char* countFormat, ScanResult scan)
{
    if (id < firstTold) {
        return false;
    }
    const std::string key = tables[id].key;
    std::size_t begin = Ahead(scanner.Position());
    if (Ahead(scan.stoppedAt) == text.size()) {
        ReportEnd(begin == text.size() ? "before the section " + key : "within the header of the section " + key,
                  Joined({ExpectedText(countFormat), " and what follows it"}));
        hasEnded = true;
        return false;
    }
    SectionHeader header = NextHeader(text, begin);
    while (header.IsThere() && header.table < id) { // one that has its place further up
        if (tables[header.table].isThere) {
            Report(RuleId::Format,
                   {header.begin, Joined({"the section ", tables[header.table].key, " stands here again"}),
                    Joined({"the section ", key}), "keep one of the two"});
        }
        header = NextHeader(text, header.count);
        begin = header.begin;
    }
    if (header.table != id) {
        Report(RuleId::Format, {begin, Joined({"the section ", key, " is missing, or its header is damaged"}),
                                ExpectedText(countFormat) + " and its records",
                                "add the section in its place, with a count of 0 if it is empty"});
        firstTold = header.IsThere() ? header.table : TableCount;
        hasEnded = !header.IsThere();
        scanner.Seek(header.begin);
        return false;
    }
    if (header.begin > begin && id == 0) {
        ReportTextBehind(begin, "the first line");
    } else if (header.begin > begin && tables[id - 1].isThere) {
        ReportTextBetween(static_cast<TableId>(id - 1), begin, header.begin, countFormat);
    }
    scanner.Seek(header.begin);
    int count = 0;
    scan = scanner.Scan(countFormat, count);
    if (!scan.Matched()) {
        ReportMismatch(scan, "the header of the section " + key,
                       ExpectedText(countFormat) + " and the number of records");
        scanner.Seek(header.count);
        scan = scanner.Scan("%d\n", count);
        if (!scan.Matched()) {
            scanner.Seek(std::min(text.size(), NextLine(header.count)));
        }
    }
    TakeCount(id, scan, count);
    return true;
}

// What stands between the records of a table, as many as counted, and the header of the next section.
void StrictTextReader::ReportTextBetween(TableId last, std::size_t begin, std::size_t end, const char* countFormat)
{
    if (!IsFirstOfLine(begin) && !BeginsRecord(text, begin, last)) {
        ReportTextBehind(begin, NameOfPrevious(last));
        begin = std::min(end, Ahead(NextLine(begin)));
    }
    const TableReading& table = tables[last];
    const int more =
        begin < end && BeginsRecord(text, begin, last) ? CountRecords(text.substr(begin, end - begin), last) : 0;
    if (more > 0) {
        ReportMore(last, more);
    } else if (begin < end) {
        Report(RuleId::Format, {begin, Joined({"text between the ", table.records, " and the next section"}),
                                ExpectedText(countFormat), "take the text away"});
    }
}

void StrictTextReader::TakeCount(TableId id, const ScanResult& scan, int count)
{
    TableReading& table = tables[id];
    table.isThere = true;
    table.countPosition = scan.stored == 1 ? scan.fieldBegin[0] : scan.stoppedAt;
    if (scan.stored != 1) {
        return; // already told
    }
    const std::size_t behind = text.find_first_not_of("+-0123456789", table.countPosition);
    if (behind != std::string_view::npos &&
        std::string_view(".,:;<[eExX").find(text[behind]) != std::string_view::npos) {
        const bool isMissing = IsFirstOfLine(table.countPosition); // and what was read is that of a record
        Report(RuleId::Format, {isMissing ? EndBefore(table.countPosition) : table.countPosition,
                                Joined({table.key, " has no whole number as its count"}),
                                Joined({"the number of ", table.records, " that follow, as ", table.key, "=12"}),
                                Joined({"correct ", table.key})});
        scanner.Seek(isMissing ? LineAround(text, table.countPosition).begin : std::min(text.size(), NextLine(behind)));
        return;
    }
    if (scan.oddField >= 0) {
        Report(RuleId::Format,
               {table.countPosition, Joined({table.key, "=", Written(table.countPosition), " is beyond all integers"}),
                Joined({"the number of ", table.records, " that follow"}), Joined({"correct ", table.key})});
        return;
    }
    table.count = count;
    table.isCounted = table.isSound = count >= 0;
    SkipTextBehindCount(id, behind);
}

// Behind a count stands the end of its line, a record or the next section. (The label line of a section is any text.)
void StrictTextReader::SkipTextBehindCount(TableId id, std::size_t behind)
{
    const std::size_t at = Ahead(behind);
    const bool isLabel = id == TSections || id == LSections || id == CSections;
    if (at < text.size() && !isLabel && !IsFirstOfLine(at) && !BeginsRecord(text, at, id) && !IsAtHeader(text, at)) {
        ReportTextBehind(at, NameOfPrevious(id));
        scanner.Seek(std::min(text.size(), NextLine(at)));
    }
}

void StrictTextReader::CloseTable(TableId id, int doubtful)
{
    TableReading& table = tables[id];
    if (!table.isCounted) {
        if (table.count < 0) {
            ReportCount(id, table.recordCount);
        }
        return; // any index may be right
    }
    table.limit = table.count;
    if (table.recordCount < table.count) {
        table.isSound = false;
        if (!hasEnded && static_cast<long long>(table.recordCount) + table.damages + doubtful < table.count) {
            ReportCount(id, table.recordCount);
        }
    }
}

StrictTextReader::Recovery StrictTextReader::Recover(TableId id)
{
    TableReading& table = tables[id];
    const std::size_t begin = Ahead(recordBegin);
    if (begin == text.size()) {
        if (id != BeamLoads && table.isCounted) {
            const std::string count = std::to_string(table.count);
            ReportEnd(
                Joined({"after ", std::to_string(table.recordCount), " of ", count, " ", table.record, " records"}),
                Joined({table.key, "=", count, " records and the sections behind them"}));
            hasEnded = true;
        }
        return {0, 0, true};
    }
    if (IsAtHeader(text, begin)) {
        return {0, 0, true};
    }
    table.isSound = false;
    const std::size_t at = failed.stoppedAt;
    if (Ahead(at) == text.size()) {
        ReportEnd("within " + NameOf(NameOfRecord(id)), Joined({"a whole record, ", RecordLayouts[id]}));
        hasEnded = true;
        return {1, 0, true};
    }

    // A record that is too short takes what it misses from the next one: the line of that one begins behind its own.
    const bool beginsWithinLine = at == begin && !IsFirstOfLine(begin);
    const std::size_t spanBegin = beginsWithinLine ? Ahead(previousBegin) : begin;
    const std::size_t lineBegin = LineAround(text, at).begin;
    Recovery recovery = {1, 0, false};
    std::size_t resume = NextLine(at);
    // (Not if the fault is right behind a label line, which nothing can tell from the line of another record.)
    const bool isBehindLabel = failed.expected == formats::SectionHw || failed.expected == formats::SectionR;
    if (lineBegin > spanBegin && !isBehindLabel && BeginsRecord(text, lineBegin, id)) {
        const std::string subject = beginsWithinLine ? NameOfPrevious(id) : NameOf(NameOfRecord(id));
        if (id <= CSections) { // records of several lines
            ReportMismatch(failed, subject, RecordLayouts[id]);
        } else {
            Report(RuleId::Format, {EndBefore(lineBegin), subject + ": the line ends too early", RecordLayouts[id],
                                    "complete the record"});
        }
        recovery.records = beginsWithinLine ? 0 : 1;
        resume = lineBegin;
    } else if (beginsWithinLine) {
        ReportTextBehind(begin, NameOfPrevious(id));
        recovery.records = 0;
    } else {
        ReportMismatch(failed, NameOf(NameOfRecord(id)), RecordLayouts[id]);
        if (IsFirstOfLine(at) && at > begin && IsAtHeader(text, at)) {
            resume = lineBegin;
        }
    }
    scanner.Seek(NextRecord(resume, id, recovery.doubtful));
    return recovery;
}

// The next line, from the one that begins at a position on, with a record of the table or a header in it.
std::size_t StrictTextReader::NextRecord(std::size_t lineBegin, TableId id, int& doubtful) const
{
    const SectionHeader header = NextHeader(text, std::min(lineBegin, text.size()));
    while (lineBegin < header.begin && !BeginsRecord(text, lineBegin, id)) {
        if (Ahead(lineBegin) < NextLine(lineBegin)) {
            ++doubtful;
        }
        lineBegin = NextLine(lineBegin);
    }
    return std::min(lineBegin, header.begin);
}

// ------------------------------------------------------------ records

bool StrictTextReader::FitsOddly(const ScanResult& scan, const RecordName& record)
{
    if (!scan.Matched()) {
        failed = scan;
        return false;
    }
    const std::size_t position = scan.fieldBegin[scan.oddField];
    Report(RuleId::Format,
           {position, Joined({NameOf(record), ": \"", Written(position), "\" is no number that can be used"}),
            "an integer of 32 bits, or a complete number", "correct the number"});
    return true;
}

// Without a label line in front, a section would lose its first size, and the last table its next header.
bool StrictTextReader::SkipLabelLine()
{
    if (!IsAtHeader(text, scanner.Position()) && scanner.SkipLine()) {
        return true;
    }
    failed = ScanResult();
    failed.expected = formats::LabelCharacter;
    failed.stoppedAt = scanner.Position();
    return false;
}

void StrictTextReader::TellLabel(int label, TableId id, const ScanResult& scan)
{
    tables[id].labelsTold = true;
    const RecordName name = NameOfRecord(id);
    Report(RuleId::LabelOrder,
           {scan.fieldBegin[0],
            Joined({NameOf(name), " carries the number ", std::to_string(label), ", which means nothing"}),
            Joined({"the ", tables[id].records, " numbered 0, 1, 2, ...: references count positions in the table"}),
            "nothing, if references count positions from 0; else number the records by position"});
}

bool StrictTextReader::IsOutside(int index, TableId id, std::size_t position, const RecordName& user)
{
    if (index >= 0 && tables[id].limit == INT_MAX) {
        return true;
    }
    if (diagnostics.Adds(RuleId::Format, position)) {
        diagnostics.Keep(RuleId::Format, OutsideTable(text, tables[id], index, position, user));
    }
    return false;
}

// The nodes are the first conversions of the scan.
template <std::size_t Count>
bool StrictTextReader::NodesInTable(const std::array<int, Count>& nodes, const ScanResult& scan, const RecordName& user)
{
    bool areInTable = true;
    for (std::size_t i = 0; i < Count; ++i) {
        areInTable = InTable(nodes[i], Nodes, scan.fieldBegin[i], user) && areInTable;
    }
    return areInTable;
}

bool StrictTextReader::IsNotFinite(std::size_t position, const RecordName& record)
{
    Report(RuleId::Format, {position, Joined({NameOf(record), ": \"", Written(position), "\" is not a finite number"}),
                            "a finite number", "correct the number"});
    return false;
}

void StrictTextReader::CheckMaterial(const Material& material, const std::size_t positions[3], const RecordName& name)
{
    const auto check = [&](double value, bool isGood, std::size_t position, const char* key, const char* expected) {
        if (IsFinite(value, position, name) && !isGood && diagnostics.Adds(RuleId::MaterialValue, position)) {
            diagnostics.Keep(RuleId::MaterialValue,
                             {position, Joined({NameOf(name), " has ", key, "=", Written(position)}), expected,
                              "correct the material"});
        }
    };
    check(material.E, material.E > 0.0, positions[0], "E", "E above 0");
    check(material.Mu, material.Mu >= 0.0 && material.Mu < 0.5, positions[1], "Mu", "Mu from 0 to below 0.5");
    check(material.Density, material.Density >= 0.0, positions[2], "Density", "Density of 0 or more");
}

void StrictTextReader::CheckSize(RuleId rule, double value, bool mayBeZero, const char* key, std::size_t position,
                                 const RecordName& name)
{
    const bool isGood = value > 0.0 || (mayBeZero && value == 0.0);
    if (IsFinite(value, position, name) && !isGood && diagnostics.Adds(rule, position)) {
        diagnostics.Keep(rule, {position, Joined({NameOf(name), " has ", key, "=", Written(position)}),
                                Joined({key, mayBeZero ? " of 0 (no flange) or above" : " above 0"}),
                                Joined({"correct the ", name.kind})});
    }
}

// A beam without length has no direction of its own; that is a question of shape.
void StrictTextReader::CheckOrientation(const std::array<int, BeamNodeCount>& ends, const Vector3& orientation,
                                        std::size_t position, const RecordName& name)
{
    // Scaled to a largest component of 1, so that no product leaves the range of a double.
    const auto scaled = [](const Vector3& v) {
        const double largest = std::max({std::fabs(v[0]), std::fabs(v[1]), std::fabs(v[2])});
        return largest > 0.0 ? v / largest : v;
    };
    const Vector3& start = model.NodeCoordinates[static_cast<std::size_t>(ends[0])];
    const Vector3 d = scaled(model.NodeCoordinates[static_cast<std::size_t>(ends[1])] - start);
    const Vector3 v = scaled(orientation);
    const bool isZero = Length(v) == 0.0;
    // The element keeps the point that the orientation leads to: beside large coordinates a short one is rounded away.
    const Vector3 kept = (start + orientation) - start;
    double size = 0.0, lost = 0.0;
    for (int k = 0; k < 3; ++k) {
        size = std::max(size, std::fabs(orientation[k]));
        lost = std::max(lost, std::fabs(kept[k] - orientation[k]));
    }
    const bool hasSize = size >= ShortestOrientation && size <= LongestOrientation && lost <= SmallestSine * size;
    if (!isZero && !hasSize && diagnostics.Adds(RuleId::BeamOrientation, position)) {
        diagnostics.Keep(RuleId::BeamOrientation,
                         {position,
                          Joined({NameOf(name), " has an orientation too ", size < 1.0 ? "short" : "long",
                                  " to give a direction beside its coordinates"}),
                          "a vector about as long as the beam", "give the same direction with another length"});
        return;
    }
    const bool isAlong = Length(Cross(v, d)) <= SmallestSine * Length(v) * Length(d) && Length(d) > 0.0;
    if ((isZero || isAlong) && diagnostics.Adds(RuleId::BeamOrientation, position)) {
        diagnostics.Keep(
            RuleId::BeamOrientation,
            {position, Joined({NameOf(name), isZero ? " has an orientation of length 0" : " is oriented along itself"}),
             "a direction across the beam, from its first node towards the top of its section",
             "give a vector across the beam"});
    }
}

// Sizes that are good one by one may still be beyond all measure together.
void StrictTextReader::CheckConstants(const BeamSectionConstants& section, std::size_t position, const RecordName& name)
{
    for (const double value : {section.A, section.I1, section.I2, section.J}) {
        if (!(value > 0.0) || !std::isfinite(value)) {
            Report(RuleId::SectionValue,
                   {position, Joined({NameOf(name), " has a section whose area or stiffness is 0 or not finite"}),
                    "sizes whose fourth powers a double can hold", "correct the sizes of the section"});
            return;
        }
    }
}

void StrictTextReader::CheckFlag(int flag, std::size_t position, const char* expected, const RecordName& name)
{
    if (flag != 0 && flag != 1 && diagnostics.Adds(RuleId::FlagValue, position)) {
        const bool isRestraint = name.kind == tables[Restraints].record;
        diagnostics.Keep(RuleId::FlagValue,
                         {position,
                          Joined({NameOf(name), " has the flag ", std::to_string(flag),
                                  isRestraint ? ", which leaves the direction free" : ", which counts as 1"}),
                          expected, "write 0 or 1"});
    }
}

void StrictTextReader::CheckFirst(FirstUses& uses, RuleId rule, int index, const char* what, std::size_t position,
                                  const RecordName& name)
{
    const int before = uses.Before(index, name.number);
    if (before >= 0 && diagnostics.Adds(rule, position)) {
        diagnostics.Keep(rule, {position,
                                Joined({NameOf(name), " is for ", what, " ", std::to_string(index), ", as is ",
                                        NameOf({name.kind, before})}),
                                Joined({"one record for each ", what}),
                                rule == RuleId::DuplicateRestraint ? "keep one of the two: all of them hold"
                                                                   : "check that the sum of the two is meant"});
    }
}

// ------------------------------------------------------------ messages and places

void StrictTextReader::ReportMismatch(const ScanResult& scan, const std::string& subject, const std::string& layout)
{
    const std::size_t at = scan.stoppedAt, before = EndBefore(at);
    const bool endsLine = scan.expected[0] == '%' && at != Ahead(recordBegin) &&
                          text.substr(before, at - before).find('\n') != std::string_view::npos;
    const bool hasPoint = at > 0 && text[at] == '.' && text[at - 1] >= '0' && text[at - 1] <= '9';
    const std::size_t position = endsLine ? before : at;
    if (!diagnostics.Adds(RuleId::Format, position)) {
        return;
    }
    const std::string found = endsLine ? "the end of the line" : FoundText(text, at);
    std::string what = Joined({subject, ": found ", found, " where ", ExpectedText(scan.expected), " belongs"});
    if (hasPoint) {
        what = subject + ": a whole number is written with a decimal point";
    }
    diagnostics.Keep(RuleId::Format, {position, what, layout, "write it as the format has it"});
}

void StrictTextReader::ReportTextBehind(std::size_t position, const std::string& subject)
{
    if (diagnostics.Adds(RuleId::Format, position)) {
        diagnostics.Keep(RuleId::Format,
                         {position, Joined({subject, " is followed by ", FoundText(text, position)}),
                          "the end of the line", "take the text away, or correct what stands in front of it"});
    }
}

void StrictTextReader::ReportCount(TableId id, long long records)
{
    TableReading& table = tables[id];
    table.isSound = false;
    table.limit = static_cast<int>(std::clamp<long long>(records, table.limit, INT_MAX));
    const std::string count = std::to_string(table.count), found = std::to_string(records);
    const char* const follow = records == 1 ? " record follows" : " records follow";
    Report(RuleId::Format,
           {table.countPosition, Joined({table.key, "=", count, ", but ", found, " ", table.record, follow}),
            Joined({table.key, "=", found, table.count < 0 ? "" : ", or ", table.count < 0 ? "" : count,
                    table.count < 0 ? "" : " records"}),
            Joined({"correct ", table.key, ", or the records behind it"})});
}

// Records behind as many as counted. What damages explain is not the fault of the count.
void StrictTextReader::ReportMore(TableId id, int more)
{
    TableReading& table = tables[id];
    const long long records = static_cast<long long>(table.recordCount) + more;
    if (table.isCounted && more > table.damages) {
        ReportCount(id, records);
    }
    table.limit = static_cast<int>(std::clamp<long long>(records, table.limit, INT_MAX));
}

void StrictTextReader::ReportEnd(const std::string& where, const std::string& expected)
{
    Report(RuleId::Format, {EndBefore(text.size()), "the file ends " + where, expected,
                            "write the file again if it was cut off, or complete it"});
}

// The record in front of the one that is read, or the count.
std::string StrictTextReader::NameOfPrevious(TableId id) const
{
    const TableReading& table = tables[id];
    return table.recordCount == 0 ? std::string("the count ") + table.key
                                  : NameOf({table.record, table.recordCount - 1});
}

// The next position from this one on that is not white space.
std::size_t StrictTextReader::Ahead(std::size_t position) const
{
    const char* const end = text.data() + text.size();
    return static_cast<std::size_t>(SkipSpace(text.data() + std::min(position, text.size()), end) - text.data());
}

// Behind the last character in front of a position that is not white space.
std::size_t StrictTextReader::EndBefore(std::size_t position) const
{
    while (position > 0 && IsSpace(text[position - 1])) { --position; }
    return position;
}

bool StrictTextReader::IsFirstOfLine(std::size_t position) const
{
    return Ahead(LineAround(text, position).begin) == position;
}

// The number that stands at a position, as it is written.
std::string StrictTextReader::Written(std::size_t position) const
{
    const std::size_t end = text.find_first_of(",:;<>[]= \t\r\n", position);
    return std::string(text.substr(position, std::min(end - position, LongestWritten)));
}

} // namespace

StrictReading ReadModelStrictly(ModelStore& model, std::string_view text, const char* fileName, const RuleBook& rules)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    return StrictTextReader(model, text, fileName, rules).Read();
}

std::optional<StrictReading> ReadModelFileStrictly(ModelStore& model, const char* fileName, const RuleBook& rules)
{
    const platform::MappedFile mapped(fileName);
    if (!mapped.Bytes().empty()) {
        return ReadModelStrictly(model, mapped.Bytes(), fileName, rules);
    }
    std::string copy;
    if (!platform::ReadStream(fileName, SilenceSeconds, MayBeModelText, copy)) {
        return std::nullopt;
    }
    if (copy.size() > LongestStream) {
        SourceDiagnostics endless({"", fileName}, rules);
        endless.Adds(RuleId::Format, 0);
        endless.KeepWithoutLine(RuleId::Format, {0, "the stream does not end",
                                                 Joined({"at most ", std::to_string(LongestStream >> 20), " MB"}),
                                                 "write the model to a file first"});
        return endless.Result();
    }
    return ReadModelStrictly(model, copy, fileName, rules);
}

} // namespace tarnvexo
