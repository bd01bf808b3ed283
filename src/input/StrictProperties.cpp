#include "input/StrictProperties.h"

#include "core/ModelFileFormats.h"

#include <utility>

namespace tarnvexo {

namespace {

void ReadWebFlangeSections(StrictTables& tables, RecordChecks& checks, TableId id, const char* countFormat, int& count,
                           std::vector<WebFlangeSection>& sections)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(id);
        WebFlangeSection& section = sections.emplace_back();
        if (!tables.SkipLabelLine(id)) {
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
            const ScanResult scan = tables.Scanner().Scan(field.format, field.value);
            if (!tables.Fits(scan, name)) {
                return false;
            }
            checks.CheckSize(RuleId::SectionValue, field.value, field.mayBeZero, field.key, scan.fieldBegin[0], name);
        }
        return true;
    };
    tables.ReadTable(id, countFormat, formats::ShortestWebFlangeSection, count, readRecord, sections);
}

} // namespace

void ReadMaterials(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Materials);
        Material& material = model.Materials.emplace_back();
        int label = 0;
        const ScanResult labelScan = tables.Scanner().Scan(formats::MaterialLabel, label);
        if (!tables.Fits(labelScan, name)) {
            return false;
        }
        std::size_t positions[3];
        const std::pair<const char*, double*> fields[3] = {{formats::MaterialE, &material.E},
                                                           {formats::MaterialMu, &material.Mu},
                                                           {formats::MaterialDensity, &material.Density}};
        for (int i = 0; i < 3; ++i) {
            const ScanResult scan = tables.Scanner().Scan(fields[i].first, *fields[i].second);
            if (!tables.Fits(scan, name)) {
                return false;
            }
            positions[i] = scan.fieldBegin[0];
        }
        tables.CheckLabel(label, Materials, labelScan);
        checks.CheckMaterial(material, positions, name);
        return true;
    };
    tables.ReadTable(Materials, formats::MaterialCount, formats::ShortestMaterial, model.NMT, readRecord,
                     model.Materials);
}

void ReadThicknesses(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Thicknesses);
        double& TK = model.Thicknesses.emplace_back();
        int label = 0;
        const ScanResult labelScan = tables.Scanner().Scan(formats::ThicknessLabel, label);
        if (!tables.Fits(labelScan, name)) {
            return false;
        }
        const ScanResult scan = tables.Scanner().Scan(formats::ThicknessTK, TK);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        tables.CheckLabel(label, Thicknesses, labelScan);
        checks.CheckSize(RuleId::ThicknessValue, TK, false, "TK", scan.fieldBegin[0], name);
        return true;
    };
    tables.ReadTable(Thicknesses, formats::ThicknessCount, formats::ShortestThickness, model.NTK, readRecord,
                     model.Thicknesses);
}

void ReadTSections(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    ReadWebFlangeSections(tables, checks, TSections, formats::TSectionCount, model.NTBS, model.TBeamSections);
}

void ReadLSections(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    ReadWebFlangeSections(tables, checks, LSections, formats::LSectionCount, model.NLBS, model.LBeamSections);
}

void ReadTubeSections(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(CSections);
        CBeamSection& section = model.CBeamSections.emplace_back();
        if (!tables.SkipLabelLine(CSections)) {
            return false;
        }
        const ScanResult radius = tables.Scanner().Scan(formats::SectionR, section.R);
        if (!tables.Fits(radius, name)) {
            return false;
        }
        checks.CheckSize(RuleId::SectionValue, section.R, false, "R", radius.fieldBegin[0], name);
        const ScanResult wall = tables.Scanner().Scan(formats::SectionT, section.T);
        if (!tables.Fits(wall, name)) {
            return false;
        }
        checks.CheckSize(RuleId::SectionValue, section.T, false, "T", wall.fieldBegin[0], name);
        checks.CheckWall(section, radius.fieldBegin[0], wall.fieldBegin[0], name);
        return true;
    };
    tables.ReadTable(CSections, formats::CSectionCount, formats::ShortestTubeSection, model.NCBS, readRecord,
                     model.CBeamSections);
}

} // namespace tarnvexo
