#include "input/StrictMesh.h"

#include "core/ModelFileFormats.h"
#include "elements/ModelSetUp.h"

namespace tarnvexo {

void ReadNodes(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Nodes);
        Vector3& node = model.NodeCoordinates.emplace_back();
        int label = 0;
        const ScanResult scan = tables.Scanner().Scan<formats::Node>(label, node[0], node[1], node[2]);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        tables.CheckLabel(label, Nodes, scan);
        bool isPlace = scan.oddField < 0;
        for (int k = 0; k < 3; ++k) { isPlace = checks.IsFinite(node[k], scan.fieldBegin[1 + k], name) && isPlace; }
        if (!isPlace) {
            tables.Doubt(Nodes);
        }
        return true;
    };
    tables.ReadTable(Nodes, formats::NodeCount, formats::ShortestNode, model.NPOIN, readRecord, model.NodeCoordinates);
}

void ReadQuads(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Quads);
        std::array<int, QuadNodeCount> nodes;
        ShellPropertyRef property;
        int label = 0;
        const ScanResult labelScan = tables.Scanner().Scan<formats::ElementLabel>(label);
        if (!tables.Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan = tables.Scanner().Scan<formats::Quad>(nodes[0], nodes[1], nodes[2], nodes[3],
                                                                     property.material, property.thickness);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        tables.CheckLabel(label, Quads, labelScan);
        checks.NodesInTable(nodes, scan, name);
        checks.InTable(property.material, Materials, scan.fieldBegin[QuadNodeCount], name);
        checks.InTable(property.thickness, Thicknesses, scan.fieldBegin[QuadNodeCount + 1], name);
        if (tables.IsSoundSoFar()) {
            model.QuadElements.emplace_back();
            model.QuadConnectivity.push_back(nodes);
            model.QuadProperties.push_back(property);
            SetUpQuad(model, model.QuadElements.size() - 1);
        }
        return true;
    };
    tables.ReadTable(Quads, formats::QuadCount, formats::ShortestQuad, model.NELEM_S_4ND, readRecord,
                     model.QuadElements, model.QuadConnectivity, model.QuadProperties);
}

void ReadTris(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Tris);
        std::array<int, TriNodeCount> nodes;
        ShellPropertyRef property;
        int label = 0;
        const ScanResult labelScan = tables.Scanner().Scan<formats::ElementLabel>(label);
        if (!tables.Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan =
            tables.Scanner().Scan<formats::Tri>(nodes[0], nodes[1], nodes[2], property.material, property.thickness);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        tables.CheckLabel(label, Tris, labelScan);
        checks.NodesInTable(nodes, scan, name);
        checks.InTable(property.material, Materials, scan.fieldBegin[TriNodeCount], name);
        checks.InTable(property.thickness, Thicknesses, scan.fieldBegin[TriNodeCount + 1], name);
        if (tables.IsSoundSoFar()) {
            model.TriElements.emplace_back();
            model.TriConnectivity.push_back(nodes);
            model.TriProperties.push_back(property);
            SetUpTri(model, model.TriElements.size() - 1);
        }
        return true;
    };
    tables.ReadTable(Tris, formats::TriCount, formats::ShortestTri, model.NELEM_S_3ND, readRecord, model.TriElements,
                     model.TriConnectivity, model.TriProperties);
}

void ReadBeams(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Beams);
        std::array<int, BeamNodeCount> ends;
        BeamPropertyRef property;
        BeamSectionRef section;
        Vector3& v = property.orientation;
        int label = 0, mirrored = 0;
        const ScanResult labelScan = tables.Scanner().Scan<formats::ElementLabel>(label);
        if (!tables.Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan = tables.Scanner().Scan<formats::Beam>(ends[0], ends[1], v[0], v[1], v[2],
                                                                     property.material, section.BeamSecType,
                                                                     section.BeamSecIndex, section.BeamSecOz, mirrored);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        const std::size_t* const at = scan.fieldBegin;
        tables.CheckLabel(label, Beams, labelScan);
        checks.CheckFlag(mirrored, at[BeamMirrored], "counts as 1", "0; 1 for an L section whose flange points to -y'",
                         name);
        section.BeamSecMirrored = mirrored != 0;
        bool isSound = checks.NodesInTable(ends, scan, name);
        for (int k = 0; k < 3; ++k) { isSound = checks.IsFinite(v[k], at[BeamVx + k], name) && isSound; }
        checks.InTable(property.material, Materials, at[BeamMaterial], name);
        checks.IsFinite(section.BeamSecOz, at[BeamOz], name);
        const int type = section.BeamSecType;
        if (type == TSection || type == LSection || type == CSection) {
            const TableId sections = type == TSection ? TSections : type == LSection ? LSections : CSections;
            checks.InTable(section.BeamSecIndex, sections, at[BeamIndex], name);
        } else {
            checks.ReportSectionType(type, at[BeamType], name);
        }
        if (isSound && tables[Nodes].isSound) {
            const auto node = [&](int end) { return model.NodeCoordinates[static_cast<std::size_t>(ends[end])]; };
            checks.CheckOrientation(node(0), node(1), v, at[BeamVx], name);
        }
        if (tables.IsSoundSoFar()) {
            model.BeamElements.emplace_back();
            model.BeamConnectivity.push_back(ends);
            model.BeamProperties.push_back(property);
            model.BeamSectionRefs.push_back(section);
            SetUpBeam(model, model.BeamElements.size() - 1);
            checks.CheckConstants(model.BeamElements.back().section, at[BeamIndex], name);
        }
        return true;
    };
    tables.ReadTable(Beams, formats::BeamCount, formats::ShortestBeam, model.NELEM_B, readRecord, model.BeamElements,
                     model.BeamConnectivity, model.BeamProperties, model.BeamSectionRefs);
}

} // namespace tarnvexo
